#include "Stream.h"

#include <algorithm>
#include <cstdio>

#include <QtGlobal>

#ifdef Q_OS_WIN
#include <fcntl.h>
#include <io.h>
#include <windows.h>
#else
#include <cerrno>
#include <csignal>
#include <cstring>
#include <fcntl.h>
#include <sys/ioctl.h>
#include <unistd.h>
#endif

namespace Tool {

namespace {

bool areColoursWelcome()
{
    return qEnvironmentVariableIsEmpty("NO_COLOR") && qgetenv("TERM") != "dumb";
}

} // namespace

#ifdef Q_OS_WIN

namespace {

// One write to a console fails as a whole when it is too long.
constexpr int longestConsoleWrite = 8000;

} // namespace

Stream::Stream(Which which)
    : m_handle(GetStdHandle(which == Which::Output ? STD_OUTPUT_HANDLE : STD_ERROR_HANDLE))
{
    DWORD mode = 0;
    m_isTerminal = GetConsoleMode(m_handle, &mode) != 0;
    // A console shows colours when it is asked to; those of old cannot.
    m_hasColours =
        m_isTerminal && areColoursWelcome() && SetConsoleMode(m_handle, mode | ENABLE_VIRTUAL_TERMINAL_PROCESSING) != 0;
}

int Stream::terminalColumns() const
{
    CONSOLE_SCREEN_BUFFER_INFO info;
    if (!m_isTerminal || !GetConsoleScreenBufferInfo(m_handle, &info))
        return 0;
    return info.srWindow.Right - info.srWindow.Left + 1;
}

Stream::Result Stream::lastFailure()
{
    const DWORD code = GetLastError();
    if (code == ERROR_BROKEN_PIPE || code == ERROR_NO_DATA || code == ERROR_PIPE_NOT_CONNECTED)
        return Result::ReaderGone;
    m_errorText = qt_error_string(int(code));
    return Result::Failed;
}

Stream::Result Stream::write(const QString &text)
{
    if (!m_isTerminal)
        return writeBytes(text.toUtf8());
    int start = 0;
    while (start < text.size()) {
        int length = std::min(text.size() - start, longestConsoleWrite);
        if (start + length < text.size() && text.at(start + length - 1).isHighSurrogate())
            --length;
        DWORD written = 0;
        if (!WriteConsoleW(m_handle, text.utf16() + start, DWORD(length), &written, nullptr) || written == 0)
            return lastFailure();
        start += int(written);
    }
    return Result::Done;
}

Stream::Result Stream::writeBytes(const QByteArray &bytes)
{
    int start = 0;
    while (start < bytes.size()) {
        DWORD written = 0;
        if (!WriteFile(m_handle, bytes.constData() + start, DWORD(bytes.size() - start), &written, nullptr))
            return lastFailure();
        start += int(written);
    }
    return Result::Done;
}

void prepareStreams()
{
    _setmode(_fileno(stdin), _O_BINARY);
}

#else

Stream::Stream(Which which)
    : m_handle(which == Which::Output ? STDOUT_FILENO : STDERR_FILENO)
    , m_isTerminal(isatty(m_handle) == 1)
    , m_hasColours(m_isTerminal && areColoursWelcome())
{}

int Stream::terminalColumns() const
{
    winsize size{};
    if (!m_isTerminal || ioctl(m_handle, TIOCGWINSZ, &size) != 0)
        return 0;
    return size.ws_col;
}

Stream::Result Stream::write(const QString &text)
{
    return writeBytes(text.toUtf8());
}

Stream::Result Stream::writeBytes(const QByteArray &bytes)
{
    ssize_t start = 0;
    while (start < bytes.size()) {
        const ssize_t written = ::write(m_handle, bytes.constData() + start, size_t(bytes.size() - start));
        if (written >= 0) {
            start += written;
        } else if (errno == EPIPE) {
            return Result::ReaderGone;
        } else if (errno != EINTR) {
            m_errorText = QString::fromLocal8Bit(std::strerror(errno));
            return Result::Failed;
        }
    }
    return Result::Done;
}

void prepareStreams()
{
    std::signal(SIGPIPE, SIG_IGN);
    // What is opened takes the lowest free descriptor. Each is opened the wrong way round, so that using it fails.
    for (const int descriptor : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO}) {
        if (fcntl(descriptor, F_GETFD) == -1)
            open("/dev/null", descriptor == STDIN_FILENO ? O_WRONLY : O_RDONLY);
    }
}

#endif

// By the C library, since QFile takes the end of a pipe for an error on Windows.
bool readStandardInput(QByteArray &bytes)
{
    char buffer[65536];
    while (const std::size_t count = std::fread(buffer, 1, sizeof buffer, stdin))
        bytes.append(buffer, static_cast<int>(count));
    return std::ferror(stdin) == 0;
}

} // namespace Tool
