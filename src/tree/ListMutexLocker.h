#pragma once

/// \file
/// Holds the mutex of an item list for one scope.

#include <QMutex>
#include <QString>
#include <QtGlobal>

#include <atomic>
#include <cstddef>

#include <quire/platform/Export.h>
#include <quire/platform/ThreadSafety.h>

namespace Quire {

/// The mutex of an item list, which only a ListMutexLocker takes. It knows who has it: lists are locked for each item
/// that is loaded, and a search through the records of all lists would be felt.
class QUIRE_CAPABILITY("list lock") ListMutex : private QMutex
{
    friend class ListMutexLocker;

    std::atomic<quint32> m_holder{0};           // the thread; 0 for none. Each thread looks for itself, or only reports
    std::atomic<const char *> m_label{nullptr}; // the holder's, a literal
};

/// Holds the mutex of one item list while it lives, and makes it re-entrant: a thread that holds a list's mutex through
/// one record may make more of them for the same list, which acquire nothing.
///
/// Records are destroyed by the thread that made them, innermost first, and must not outlive the list. The name says
/// what is about to be done with the list; it shows only in the lines that sDebugListLocks turns on.
class QUIRE_EXPORT QUIRE_SCOPED_CAPABILITY ListMutexLocker
{
public:
    /// Writes a line to the debug log, with "quireDir" as the source file, whenever a list's mutex is acquired, waited
    /// for or released. Initially false; nothing in the library sets it. Set it before other threads use lists.
    static bool sDebugListLocks;

    /// Takes \a mutex under the literal \a name, which must outlive the record. With \a tryOnly it does not wait: ask
    /// IsLocked.
    template<std::size_t Size>
    ListMutexLocker(const char (&name)[Size], QMutex *mutex, bool tryOnly = false)
        : ListMutexLocker(QString(), name, mutex, nullptr, tryOnly)
    {}
    /// The same for the mutex of a list.
    template<std::size_t Size>
    ListMutexLocker(const char (&name)[Size], ListMutex *mutex, bool tryOnly = false) QUIRE_ACQUIRE(mutex)
        : ListMutexLocker(QString(), name, mutex, mutex, tryOnly)
    {}
    /// The same under a name of any kind.
    ListMutexLocker(const QString &name, QMutex *mutex, bool tryOnly = false);
    /// Releases the mutex if this record acquired it.
    ~ListMutexLocker() QUIRE_RELEASE();

    /// True when this thread holds the mutex, through this record or an earlier one.
    bool IsLocked() const { return m_locked; }
    /// True when this record acquired the mutex.
    bool Owns() const { return m_owns; }

private:
    Q_DISABLE_COPY(ListMutexLocker)
    friend class ActiveLockers;

    ListMutexLocker(const QString &name, const char *label, QMutex *mutex, ListMutex *listMutex, bool tryOnly);
    QString name() const;
    bool isHeldHere() const;
    bool findHolder(QString *name, quint32 *threadId) const;
    void lock();
    void tryLock();
    void noteLocked();
    void traceWaiting() const;

    QString m_name;
    const char *m_label = nullptr; // in place of m_name when the name is a literal
    QMutex *m_mutex = nullptr;
    ListMutex *m_listMutex = nullptr; // the same mutex, when it is that of a list
    quint32 m_threadId = 0;
    bool m_locked = false;
    bool m_owns = false;
    ListMutexLocker *m_previous = nullptr; // neighbours among the records that own a mutex
    ListMutexLocker *m_next = nullptr;
};

} // namespace Quire
