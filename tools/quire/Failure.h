#pragma once

#include <exception>

#include <QByteArray>
#include <QString>

#include "ExitCode.h"

namespace Tool {

/// Ends a verb: thrown where it cannot go on, caught once in CommandLine::run(), which prints the message after
/// "quire: " on the standard error output and answers the exit code.
class Failure : public std::exception
{
public:
    /// \a message is one line: what failed on what, and what to do about it where that is known.
    Failure(ExitCode code, const QString &message);

    ExitCode code() const noexcept { return m_code; }
    const QString &message() const noexcept { return m_message; }
    const char *what() const noexcept override { return m_what.constData(); }

private:
    ExitCode m_code;
    QString m_message;
    QByteArray m_what;
};

} // namespace Tool
