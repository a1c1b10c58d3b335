#pragma once

#include <QMutex>
#include <QStringList>
#include <QVector>
#include <QtGlobal>

#include <functional>

/// What goes to the debugger output while this object lives; one at a time.
class DebuggerOutput
{
public:
    DebuggerOutput();
    ~DebuggerOutput();

    QStringList lines() const;
    void add(const char *line);

private:
    Q_DISABLE_COPY(DebuggerOutput)
    QStringList m_lines;
    mutable QMutex m_mutex;
    void *m_handler = nullptr;
};

/// One message of the framework's log.
struct LogMessage
{
    QtMsgType type;
    QString file;
    QString function;
    QString text;
};

/// What goes to the framework's log while this object lives; while there are several, the newest gets it.
class FrameworkLog
{
public:
    FrameworkLog();
    ~FrameworkLog();

    QVector<LogMessage> messages() const;
    QStringList texts() const;
    void add(const LogMessage &message);

    std::function<void()> onMessage; ///< Called for each message, on the thread that logs.

private:
    Q_DISABLE_COPY(FrameworkLog)
    QVector<LogMessage> m_messages;
    mutable QMutex m_mutex;
    FrameworkLog *const m_outer;
    QtMessageHandler m_before;
};

/// Debugging of the server access lock for one scope, with all that it writes caught.
class LockDebugging
{
public:
    LockDebugging();
    ~LockDebugging();

    FrameworkLog log;
    DebuggerOutput output;

private:
    Q_DISABLE_COPY(LockDebugging)
};
