#include <quire/tree/ListMutexLocker.h>

#include <QMessageLogger>

#include <atomic>

#include <quire/platform/Automation.h>
#include <quire/session/Mutex.h>

namespace Quire {

bool ListMutexLocker::sDebugListLocks = false;

namespace {

QMessageLogger lockLogger(const char *function)
{
    return QMessageLogger("quireDir", 0, function);
}

} // namespace

/// The records that own a mutex which does not know its holder itself, of all threads. Chained through the records
/// themselves, so that nothing can fail between acquiring a mutex and being found here. Guarded by a leaf mutex.
class ActiveLockers
{
public:
    static bool contains(const QMutex *mutex, quint32 threadId)
    {
        if (!s_first.load(std::memory_order_relaxed))
            return false; // whoever asks would see a record of its own
        const MutexLocker guard(s_mutex);
        // By thread as well: another thread that has just released the mutex may still have its record here.
        for (const ListMutexLocker *record = s_first; record; record = record->m_next) {
            if (record->m_mutex == mutex && record->m_threadId == threadId)
                return true;
        }
        return false;
    }

    static void add(ListMutexLocker *record)
    {
        const MutexLocker guard(s_mutex);
        record->m_next = s_first.load(std::memory_order_relaxed);
        if (record->m_next)
            record->m_next->m_previous = record;
        s_first.store(record, std::memory_order_relaxed);
    }

    static void remove(ListMutexLocker *record)
    {
        const MutexLocker guard(s_mutex);
        if (record->m_previous)
            record->m_previous->m_next = record->m_next;
        else
            s_first.store(record->m_next, std::memory_order_relaxed);
        if (record->m_next)
            record->m_next->m_previous = record->m_previous;
    }

    /// Name and thread of a record on \a mutex; false when there is none.
    static bool holder(const QMutex *mutex, QString *name, quint32 *threadId)
    {
        const MutexLocker guard(s_mutex);
        for (const ListMutexLocker *record = s_first; record; record = record->m_next) {
            if (record->m_mutex == mutex) {
                *name = record->name();
                *threadId = record->m_threadId;
                return true;
            }
        }
        return false;
    }

private:
    static Mutex<LockRank::ActiveLockers, QBasicMutex> s_mutex;
    static std::atomic<ListMutexLocker *> s_first; // read without the mutex only to see that there is none
};

Mutex<LockRank::ActiveLockers, QBasicMutex> ActiveLockers::s_mutex;
std::atomic<ListMutexLocker *> ActiveLockers::s_first{nullptr};

ListMutexLocker::ListMutexLocker(const QString &name, QMutex *mutex, bool tryOnly)
    : ListMutexLocker(name, nullptr, mutex, nullptr, tryOnly)
{}

ListMutexLocker::ListMutexLocker(const QString &name, const char *label, QMutex *mutex, ListMutex *listMutex,
                                 bool tryOnly)
    : m_name(name)
    , m_label(label)
    , m_mutex(mutex)
    , m_listMutex(listMutex)
    , m_threadId(static_cast<quint32>(GetCurrentThreadId()))
{
    if (isHeldHere())
        m_locked = true;
    else if (tryOnly)
        tryLock();
    else
        lock();
}

ListMutexLocker::~ListMutexLocker()
{
    if (!m_owns)
        return;
    if constexpr (LockOrder::isChecked)
        LockOrder::gives(m_mutex);
    if (m_listMutex)
        m_listMutex->m_holder.store(0, std::memory_order_relaxed);
    m_mutex->unlock();
    if (!m_listMutex)
        ActiveLockers::remove(this);
    if (sDebugListLocks)
        lockLogger("ListMutexLocker::unlock").debug("%s unlocked (thread %d)", qUtf8Printable(name()), int(m_threadId));
}

QString ListMutexLocker::name() const
{
    return m_label ? QString::fromUtf8(m_label) : m_name;
}

bool ListMutexLocker::isHeldHere() const
{
    return m_listMutex ? m_listMutex->m_holder.load(std::memory_order_relaxed) == m_threadId
                       : ActiveLockers::contains(m_mutex, m_threadId);
}

/// Name and thread of whoever holds the mutex; false when nobody does.
bool ListMutexLocker::findHolder(QString *name, quint32 *threadId) const
{
    if (!m_listMutex)
        return ActiveLockers::holder(m_mutex, name, threadId);
    *threadId = m_listMutex->m_holder.load(std::memory_order_relaxed);
    *name = QString::fromUtf8(m_listMutex->m_label.load(std::memory_order_relaxed));
    return *threadId != 0;
}

void ListMutexLocker::traceWaiting() const
{
    QString holder;
    quint32 holderThread = 0;
    if (findHolder(&holder, &holderThread)) {
        lockLogger("ListMutexLocker::lock")
            .debug("%s (thread %d) blocked on %s (thread %d)", qUtf8Printable(name()), int(m_threadId),
                   qUtf8Printable(holder), int(holderThread));
    }
}

void ListMutexLocker::lock()
{
    if (sDebugListLocks)
        traceWaiting();
    if constexpr (LockOrder::isChecked)
        LockOrder::wants(LockRank::List, m_mutex, {m_label, &m_name});
    m_mutex->lock();
    noteLocked();
    m_locked = true;
    m_owns = true;
    if (sDebugListLocks)
        lockLogger("ListMutexLocker::lock").debug("%s locked (thread %d)", qUtf8Printable(name()), int(m_threadId));
}

void ListMutexLocker::noteLocked()
{
    if constexpr (LockOrder::isChecked)
        LockOrder::has(LockRank::List, m_mutex, {m_label, &m_name});
    if (!m_listMutex)
        return ActiveLockers::add(this);
    m_listMutex->m_label.store(m_label, std::memory_order_relaxed);
    m_listMutex->m_holder.store(m_threadId, std::memory_order_relaxed);
}

void ListMutexLocker::tryLock()
{
    if (!m_mutex->tryLock())
        return;
    noteLocked();
    if (sDebugListLocks)
        lockLogger("ListMutexLocker::trylock")
            .debug("%s trylocked (thread %d)", qUtf8Printable(name()), int(m_threadId));
    m_locked = true;
    m_owns = true;
}

} // namespace Quire
