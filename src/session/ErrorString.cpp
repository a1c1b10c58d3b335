#include <quire/session/ErrorString.h>

#include <QCoreApplication>

#include <memory>

#include <quire/platform/Automation.h>

namespace Quire {

namespace {

/// A text with the comment that tells translators where it belongs.
struct Text
{
    const char *text;
    const char *comment;
};

struct ErrorRow
{
    quint32 number; ///< The low 10 bits of the code.
    Text text;
};

// clang-format off
const ErrorRow commandErrors[] = {
    {1, QT_TRANSLATE_NOOP3("QObject", "Input command has insufficient arguments.", "orvex error")},
    {2, QT_TRANSLATE_NOOP3("QObject", "Input argument not recognized.", "orvex error")},
    {4, QT_TRANSLATE_NOOP3("QObject", "Subdirectory limit reached.", "orvex error")},
    {5, QT_TRANSLATE_NOOP3("QObject", "Command is not authorized.", "orvex error")},
    {6, QT_TRANSLATE_NOOP3("QObject", "Improper command syntax.", "orvex error")},
    {8, QT_TRANSLATE_NOOP3("QObject", "Queue only allowed at lowest level.", "orvex error")},
    {9, QT_TRANSLATE_NOOP3("QObject", "System error.", "orvex error")},
    {10, QT_TRANSLATE_NOOP3("QObject", "Entry already exists.", "orvex error")},
    {11, QT_TRANSLATE_NOOP3("QObject", "Entry no longer exists.", "orvex error")},
    {12, QT_TRANSLATE_NOOP3("QObject", "Destination invalid.", "orvex error")},
    {14, QT_TRANSLATE_NOOP3("QObject", "Story currently being edited.", "orvex error")},
    {15, QT_TRANSLATE_NOOP3("QObject", "Story/directory/queue locked.", "orvex error")},
    {16, QT_TRANSLATE_NOOP3("QObject", "Queue is purge locked (purge/remove).", "orvex error")},
    {17, QT_TRANSLATE_NOOP3("QObject", "Queue is not empty.", "orvex error")},
    {18, QT_TRANSLATE_NOOP3("QObject", "Invalid from current special mode.", "orvex error")},
    {19, QT_TRANSLATE_NOOP3("QObject", "Can't find a keyword.", "orvex error")},
    {20, QT_TRANSLATE_NOOP3("QObject", "Queue doesn't allow batch operation.", "orvex error")},
    {21, QT_TRANSLATE_NOOP3("QObject", "No such user.", "orvex error")},
    {22, QT_TRANSLATE_NOOP3("QObject", "User not logged in.", "orvex error")},
    {24, QT_TRANSLATE_NOOP3("QObject", "User logged in (no message to send).", "orvex error")},
    {26, QT_TRANSLATE_NOOP3("QObject", "Read-only, no typing allowed.", "orvex error")},
    {27, QT_TRANSLATE_NOOP3("QObject", "Could not open map story.", "orvex error")},
    {28, QT_TRANSLATE_NOOP3("QObject", "No entry in map story.", "orvex error")},
    {32, QT_TRANSLATE_NOOP3("QObject", "User identification not accepted.", "orvex error")},
    {34, QT_TRANSLATE_NOOP3("QObject", "Directory or queue is empty.", "orvex error")},
    {46, QT_TRANSLATE_NOOP3("QObject", "Move converted to duplicate.", "orvex error")},
    {56, QT_TRANSLATE_NOOP3("QObject", "System offline message.", "orvex error")},
    {66, QT_TRANSLATE_NOOP3("QObject", "Refresh mode on.", "orvex error")},
    {67, QT_TRANSLATE_NOOP3("QObject", "Print the message in the packet.", "orvex error")},
    {73, QT_TRANSLATE_NOOP3("QObject", "Unable to send mail.", "orvex error")},
    {78, QT_TRANSLATE_NOOP3("QObject", "Password requested was too short.", "orvex error")},
    {80, QT_TRANSLATE_NOOP3("QObject", "Batch MOVE, DUP, KILL partial failure.", "orvex error")},
    {81, QT_TRANSLATE_NOOP3("QObject", "Command in progress.", "orvex error")},
    {82, QT_TRANSLATE_NOOP3("QObject", "Database element name too long.", "orvex error")},
    {83, QT_TRANSLATE_NOOP3("QObject", "Queue is being ordered.", "orvex error")},
    {84, QT_TRANSLATE_NOOP3("QObject", "This name is being used for a group.", "orvex error")},
    {85, QT_TRANSLATE_NOOP3("QObject", "Read-only wire story.", "orvex error")},
    {86, QT_TRANSLATE_NOOP3("QObject", "Queue is up to date.", "orvex error")},
    {87, QT_TRANSLATE_NOOP3("QObject", "No form for new story.", "orvex error")},
    {88, QT_TRANSLATE_NOOP3("QObject", "ZEKO syntax error on story save.", "orvex error")},
    {89, QT_TRANSLATE_NOOP3("QObject", "Open of old version for copying failed.", "orvex error")},
    {90, QT_TRANSLATE_NOOP3("QObject", "No devices to monitor.", "orvex error")},
    {91, QT_TRANSLATE_NOOP3("QObject", "Queue doesn't allow batch print.", "orvex error")},
    {92, QT_TRANSLATE_NOOP3("QObject", "Queue is production locked.", "orvex error")},
};

const ErrorRow loginErrors[] = {
    {2, QT_TRANSLATE_NOOP3("QObject", "The news system is offline.", "nrcs login error")},
    {3, QT_TRANSLATE_NOOP3("QObject", "Your client system is not part of the news system configuration.", "nrcs login error")},
    {5, QT_TRANSLATE_NOOP3("QObject", "Resource is not available. Please attempt to connect to a different server.", "nrcs login error")},
    {6, QT_TRANSLATE_NOOP3("QObject", "The news system has run out of resources for new sessions.", "nrcs login error")},
    {7, QT_TRANSLATE_NOOP3("QObject", "Your client system is not listed as authorized for connection to the news system.", "nrcs login error")},
    {9, QT_TRANSLATE_NOOP3("QObject", "Your client application version is incompatible with your selected News Server.  Please select another server.", "nrcs login error")},
    {14, QT_TRANSLATE_NOOP3("QObject", "Your client application version is incompatible with your selected News Server.  Please select another server.", "nrcs login error")},
};
// clang-format on

const Text invalidUser = QT_TRANSLATE_NOOP3("QObject", "Invalid user name or password.", "nrcs login error");
const Text noServer = QT_TRANSLATE_NOOP3("QObject", "News server not found.", "nrcs login error");
const Text unexpected = QT_TRANSLATE_NOOP3("QObject", "Unexpected error, code = x%1.", "error message");

QString translated(const Text &text)
{
    return QCoreApplication::translate("QObject", text.text, text.comment);
}

template<std::size_t Size>
QString textOf(const ErrorRow (&table)[Size], quint32 number)
{
    for (const ErrorRow &row : table) {
        if (row.number == number)
            return translated(row.text);
    }
    return QString();
}

bool isServerCode(quint32 code)
{
    const quint32 group = code & 0xFC00;
    return (code & 0x1FFF0000) == 0x00040000 && (group == 0x0400 || group == 0x0800);
}

QString serverMessage(quint32 code)
{
    const quint32 number = code & 0x3FF;
    return (code & 0xFC00) == 0x0400 ? textOf(commandErrors, number) : textOf(loginErrors, number);
}

struct LocalFreer
{
    void operator()(char *text) const { LocalFree(text); }
};

/// The system's text for the code in the user's language, null when it has none.
QString systemText(quint32 code)
{
    char *buffer = nullptr;
    const DWORD flags = FORMAT_MESSAGE_ALLOCATE_BUFFER | FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS;
    // When it allocates, the function takes the address of a pointer where its signature says text.
    const DWORD length = FormatMessageA(flags, nullptr, code, MAKELANGID(LANG_NEUTRAL, SUBLANG_DEFAULT),
                                        reinterpret_cast<LPSTR>(&buffer), 0, nullptr);
    const std::unique_ptr<char, LocalFreer> text(buffer);
    return length == 0 || !text ? QString() : QString::fromLocal8Bit(text.get(), static_cast<int>(length));
}

QString systemMessage(quint32 code)
{
    const QString number = QString::number(code, 16);
    QString text = systemText(code);
    if (text.isNull())
        return translated(unexpected).arg(number);
    text.remove(QLatin1Char('\n'));
    text.remove(QLatin1Char('\r'));
    return text + QStringLiteral(" (x%1)").arg(number);
}

} // namespace

QString getErrorString(long code, bool login)
{
    const auto bits = static_cast<quint32>(code);
    if (isServerCode(bits))
        return serverMessage(bits);
    if (login) {
        switch (bits & 0xFFFF) {
        case 87:    // invalid parameter
        case 10061: // connection refused
            return translated(invalidUser);
        case 10049: // address not available
            return translated(noServer);
        default:
            break;
        }
    }
    return systemMessage(bits);
}

} // namespace Quire
