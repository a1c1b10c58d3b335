#pragma once

#include <QByteArray>
#include <QString>

namespace Tool {

/// One of the program's standard streams: texts go out as UTF-8 into files and pipes, and as wide text to a Windows
/// console, whatever code page it has. One per stream and program; used by the main thread only.
class Stream
{
public:
    enum class Which { Output, Error };

    /// What became of a write.
    enum class Result {
        Done,
        ReaderGone, ///< The other end of the pipe was closed: nobody wants more.
        Failed      ///< For another reason; errorText() says which.
    };

    explicit Stream(Which which);

    /// Whether a person looks at it.
    bool isTerminal() const noexcept { return m_isTerminal; }
    /// Whether that person wants colours and the terminal has them: not with NO_COLOR set, nor with TERM "dumb".
    bool hasColours() const noexcept { return m_hasColours; }
    /// The columns of the terminal; 0 when it is none, or when it does not tell.
    int terminalColumns() const;

    /// Writes everything, unbuffered.
    Result write(const QString &text);
    Result writeBytes(const QByteArray &bytes);
    /// The system's words for the last failure.
    QString errorText() const { return m_errorText; }

private:
#ifdef Q_OS_WIN
    Result lastFailure();

    void *m_handle;
#else
    int m_handle;
#endif
    bool m_isTerminal;
    bool m_hasColours = false;
    QString m_errorText;
};

/// Reads all of the standard input, as bytes. False when reading fails.
bool readStandardInput(QByteArray &bytes);

/// Once, before anything else is opened. A closed pipe then ends in an answer, not in a signal, and a standard stream
/// that is closed from the beginning stays unusable; otherwise the next file to be opened would take its place.
void prepareStreams();

} // namespace Tool
