#pragma once

#include <QTemporaryFile>

namespace ToolFuzz {

/// Takes what the program writes to its standard output, into a file, for as long as it lives. One at a time; a
/// Tool::Output has to be made meanwhile.
class CapturedOutput
{
public:
    CapturedOutput();
    ~CapturedOutput();
    CapturedOutput(const CapturedOutput &) = delete;
    CapturedOutput &operator=(const CapturedOutput &) = delete;

    /// What was written.
    QString text();

private:
    QTemporaryFile m_file;
#ifdef Q_OS_WIN
    void *m_former;
#else
    int m_former;
#endif
};

} // namespace ToolFuzz
