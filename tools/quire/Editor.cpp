#include "Editor.h"

#include <cstdlib>

#include <QFile>
#include <QFileInfo>

#ifdef Q_OS_WIN
#include <windows.h>
#else
#include <csignal>
#include <sys/wait.h>
#endif

#include "Failure.h"

namespace Tool {

namespace {

#ifdef Q_OS_WIN

const QLatin1String systemEditor("notepad");

QString shellQuoted(const QString &path)
{
    return QLatin1Char('"') + path + QLatin1Char('"');
}

/// While it lives, Ctrl-C is the editor's alone.
class KeyboardForEditor
{
public:
    KeyboardForEditor() { SetConsoleCtrlHandler(ignore, TRUE); }
    ~KeyboardForEditor() { SetConsoleCtrlHandler(ignore, FALSE); }
    KeyboardForEditor(const KeyboardForEditor &) = delete;
    KeyboardForEditor &operator=(const KeyboardForEditor &) = delete;

private:
    static BOOL WINAPI ignore(DWORD event) { return event == CTRL_C_EVENT || event == CTRL_BREAK_EVENT; }
};

int runInShell(const QString &command)
{
    const KeyboardForEditor keyboard;
    // The shell takes the outermost quotes away.
    return _wsystem(reinterpret_cast<const wchar_t *>(shellQuoted(command).utf16()));
}

#else

const QLatin1String systemEditor("vi");

QString shellQuoted(const QString &path)
{
    QString inner = path;
    return QLatin1Char('\'') + inner.replace(QLatin1Char('\''), QLatin1String("'\\''")) + QLatin1Char('\'');
}

/// The program ignores closed pipes, what it starts must not.
class UsualPipes
{
public:
    UsualPipes()
        : m_before(std::signal(SIGPIPE, SIG_DFL))
    {}
    ~UsualPipes() { std::signal(SIGPIPE, m_before); }
    UsualPipes(const UsualPipes &) = delete;
    UsualPipes &operator=(const UsualPipes &) = delete;

private:
    void (*m_before)(int);
};

int runInShell(const QString &command)
{
    const UsualPipes pipes;
    const int status = std::system(QFile::encodeName(command).constData()); // leaves Ctrl-C to the editor
    return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

#endif

QString editorCommand()
{
    for (const char *variable : {"VISUAL", "EDITOR"}) {
        const QString command = qEnvironmentVariable(variable).trimmed();
        if (command.isEmpty())
            continue;
        const QFileInfo program(command);
        return program.isAbsolute() && program.isFile() ? shellQuoted(command) : command;
    }
    return systemEditor;
}

} // namespace

void editFile(const QString &path)
{
    const QString command = editorCommand();
    const int code = runInShell(command + QLatin1Char(' ') + shellQuoted(path));
    if (code != 0)
        throw Failure(ExitCode::Failed, QStringLiteral("the editor \"%1\" failed (exit code %2); $VISUAL or $EDITOR "
                                                       "names another")
                                            .arg(command, QString::number(code)));
}

} // namespace Tool
