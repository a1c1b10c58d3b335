#include <quire/session/QuireCOMMutex.h>

#include <QMessageLogger>
#include <QMutex>

#include <cstdio>
#include <utility>

#include <quire/session/LockOrder.h>

namespace Quire {

bool QuireCOMMutex::sMutexDebugging = false;

QuireCOMMutex::QuireCOMMutex(QString name)
    : m_name(std::move(name))
{
    threadlock();
}

QuireCOMMutex::QuireCOMMutex()
{
    threadlock();
}

void QuireCOMMutex::lock()
{
    QTime start;
    if (sMutexDebugging)
        start = QTime::currentTime();
    if constexpr (LockOrder::isChecked)
        LockOrder::wants(LockRank::ServerAccess, &QuireCOM::m_ComMutex, {m_label, &m_name});
    QuireCOM::m_ComMutex.lock();
    if constexpr (LockOrder::isChecked)
        LockOrder::has(LockRank::ServerAccess, &QuireCOM::m_ComMutex, {m_label, &m_name});
    QuireCOM::m_LockThreadID.storeRelaxed(GetCurrentThreadId());
    if (sMutexDebugging)
        traceLocked(start);
}

bool QuireCOMMutex::tryLock()
{
    return QuireCOM::m_ComMutex.tryLock(0);
}

void QuireCOMMutex::unlock()
{
    QuireCOM::m_LockThreadID.storeRelaxed(0);
    if constexpr (LockOrder::isChecked)
        LockOrder::gives(&QuireCOM::m_ComMutex);
    QuireCOM::m_ComMutex.unlock();
    if (sMutexDebugging)
        traceUnlocked();
}

bool QuireCOMMutex::locked()
{
    if (!tryLock())
        return true;
    QuireCOM::m_ComMutex.unlock();
    return false;
}

QString QuireCOMMutex::name() const
{
    return m_label ? QString::fromUtf8(m_label) : m_name;
}

// The mutex is held here, so m_LockStr is this thread's. It was the last holder's until now.
void QuireCOMMutex::traceLocked(const QTime &start)
try {
    const QString ownName = name();
    const int waited = start.msecsTo(QTime::currentTime());
    if (waited > 0) {
        char line[256] = {};
        std::snprintf(line, sizeof line, "locked(%s) %d ms [%s]\n", ownName.toLatin1().constData(), waited,
                      QuireCOM::m_LockStr.toLatin1().constData());
        OutputDebugStringA(line);
    }
    QuireCOM::m_LockStr = ownName;
} catch (...) {
    // A line that cannot be written must not leave the mutex acquired without an owner.
}

void QuireCOMMutex::traceUnlocked() const
try {
    const QString ownName = name();
    if (!ownName.isEmpty())
        QMessageLogger("quireCom", 0, nullptr).debug("%s unlocked", ownName.toLatin1().constData());
} catch (...) {
    // Called from a destructor: the line is lost.
}

} // namespace Quire
