#include "trace/CallTrace.h"

#include <QJsonDocument>
#include <QJsonObject>

#include <quire/platform/System.h>
#include <quire/session/QuireCOMMutex.h>

#include "Failure.h"
#include "Words.h"

namespace Tool {

namespace {

/// What the library calls that which the calling thread does on the server. Whether it holds the lock is looked up.
QString currentLabel() QUIRE_NO_THREAD_SAFETY_ANALYSIS
{
    using Quire::QuireCOM;
    return QuireCOM::m_LockThreadID.loadRelaxed() == GetCurrentThreadId() ? QuireCOM::m_LockStr : QString();
}

[[noreturn]] void fail(const QFile &file)
{
    throw Failure(ExitCode::Failed,
                  QStringLiteral("cannot write the trace %1: %2").arg(file.fileName(), file.errorString()));
}

#ifndef Q_OS_WIN
void drop(const char * /*text*/) {}
#endif

/// With the labels the library also tells a debugger who waits for whom; without one that would be on the terminal.
void silenceDebugOutput(bool silent)
{
#ifdef Q_OS_WIN
    Q_UNUSED(silent)
#else
    Platform::setDebugOutputHandler(silent ? drop : nullptr);
#endif
}

} // namespace

CallTrace::CallTrace(const QString &fileName)
    : m_file(fileName)
{
    if (!m_file.open(QIODevice::WriteOnly | QIODevice::Unbuffered))
        fail(m_file);
    Quire::QuireCOMMutex::sMutexDebugging = true;
    silenceDebugOutput(true);
}

CallTrace::~CallTrace()
{
    Quire::QuireCOMMutex::sMutexDebugging = false;
    silenceDebugOutput(false);
}

void CallTrace::write(const Call &call) noexcept
try {
    using std::chrono::duration_cast;
    using std::chrono::microseconds;
    QJsonObject line{{QStringLiteral("label"), currentLabel()},
                     {QStringLiteral("operation"), QLatin1String(call.operation)},
                     {QStringLiteral("microseconds"), qint64(duration_cast<microseconds>(call.duration).count())},
                     {QStringLiteral("hresult"), hexCode(call.result)}};
    if (call.raised)
        line.insert(QStringLiteral("raised"), true);
    const QByteArray bytes = QJsonDocument(line).toJson(QJsonDocument::Compact) + '\n';
    const std::lock_guard<std::mutex> guard(m_mutex);
    m_failed |= m_file.write(bytes) != bytes.size();
} catch (...) {
    m_failed = true; // the call goes its way; finish() tells
}

void CallTrace::finish()
{
    const std::lock_guard<std::mutex> guard(m_mutex);
    if (m_failed)
        fail(m_file);
}

} // namespace Tool
