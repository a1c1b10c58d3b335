#include "support/DebugCapture.h"

#include <QMutexLocker>

#include <quire/platform/Automation.h>
#include <quire/platform/System.h>
#include <quire/session/QuireCOMMutex.h>

namespace {

/// A copy that shares nothing with \a list: Qt lets the last owner of shared elements change them in place without
/// waiting for what other threads did with them before they let go.
template<typename List>
List ownCopy(const List &list)
{
    List copy = list;
    copy.detach();
    return copy;
}

DebuggerOutput *theOutput = nullptr;
FrameworkLog *theLog = nullptr;

void logMessage(QtMsgType type, const QMessageLogContext &context, const QString &text)
{
    theLog->add({type, QString::fromLatin1(context.file), QString::fromLatin1(context.function), text});
}

#ifdef Q_OS_WIN

/// The debugger output reaches a program without a debugger as an exception that carries the text.
LONG CALLBACK debuggerText(EXCEPTION_POINTERS *pointers)
{
    const EXCEPTION_RECORD *record = pointers->ExceptionRecord;
    const DWORD debugPrint = 0x40010006;
    if (record->ExceptionCode != debugPrint || record->NumberParameters < 2)
        return EXCEPTION_CONTINUE_SEARCH;
    theOutput->add(reinterpret_cast<const char *>(record->ExceptionInformation[1]));
    return EXCEPTION_CONTINUE_EXECUTION;
}

#else

void debuggerText(const char *line)
{
    theOutput->add(line);
}

#endif

} // namespace

DebuggerOutput::DebuggerOutput()
{
    theOutput = this;
#ifdef Q_OS_WIN
    m_handler = AddVectoredExceptionHandler(1, debuggerText);
#else
    Platform::setDebugOutputHandler(debuggerText);
#endif
}

DebuggerOutput::~DebuggerOutput()
{
#ifdef Q_OS_WIN
    RemoveVectoredExceptionHandler(m_handler);
#else
    Platform::setDebugOutputHandler(nullptr);
#endif
    theOutput = nullptr;
}

QStringList DebuggerOutput::lines() const
{
    const QMutexLocker guard(&m_mutex);
    return ownCopy(m_lines);
}

void DebuggerOutput::add(const char *line)
{
    const QMutexLocker guard(&m_mutex);
    m_lines.append(QString::fromLatin1(line));
}

FrameworkLog::FrameworkLog()
    : m_outer(theLog)
{
    theLog = this;
    // NOLINTNEXTLINE(cppcoreguidelines-prefer-member-initializer): from then on lines come, and want theLog
    m_before = qInstallMessageHandler(logMessage);
}

FrameworkLog::~FrameworkLog()
{
    qInstallMessageHandler(m_before);
    theLog = m_outer;
}

QVector<LogMessage> FrameworkLog::messages() const
{
    const QMutexLocker guard(&m_mutex);
    return ownCopy(m_messages);
}

QStringList FrameworkLog::texts() const
{
    QStringList all;
    const QVector<LogMessage> logged = messages();
    for (const LogMessage &message : logged)
        all.append(message.text);
    return all;
}

void FrameworkLog::add(const LogMessage &message)
{
    {
        const QMutexLocker guard(&m_mutex);
        m_messages.append(message);
    }
    if (onMessage)
        onMessage();
}

LockDebugging::LockDebugging()
{
    Quire::QuireCOMMutex::sMutexDebugging = true;
}

LockDebugging::~LockDebugging()
{
    Quire::QuireCOMMutex::sMutexDebugging = false;
    Quire::QuireCOM::m_LockStr = QString();
}
