#pragma once

/// \file
/// The mutexes inside the library.

#include <QMutex>
#include <QtGlobal>

#include <type_traits>

#include <quire/platform/ThreadSafety.h>
#include <quire/session/LockOrder.h>

namespace Quire {

/// A mutex with a place in the order of locks, which it keeps to where that is checked. As large as the mutex inside,
/// and as fast where nothing is checked.
///
/// \a Native is QMutex, QRecursiveMutex or, for those that outlive the static objects, QBasicMutex.
template<LockRank Rank, typename Native = QMutex>
class QUIRE_CAPABILITY("mutex") Mutex
{
public:
    Mutex() = default;
    ~Mutex() = default;

    /// Takes the mutex, waiting as long as that takes.
    void lock() QUIRE_ACQUIRE()
    {
        if constexpr (LockOrder::isChecked)
            LockOrder::wants(Rank, this, {}, std::is_same_v<Native, QRecursiveMutex>);
        m_native.lock();
        if constexpr (LockOrder::isChecked)
            LockOrder::has(Rank, this);
    }
    /// Releases what lock() took.
    void unlock() QUIRE_RELEASE()
    {
        if constexpr (LockOrder::isChecked)
            LockOrder::gives(this);
        m_native.unlock();
    }

    /// The mutex inside, for a QWaitCondition, which releases and takes it again.
    Native &native() { return m_native; }

private:
    Q_DISABLE_COPY(Mutex)

    Native m_native;
};

/// Holds a Mutex for one scope.
template<typename Lock>
class QUIRE_SCOPED_CAPABILITY MutexLocker
{
public:
    /// Takes \a mutex.
    explicit MutexLocker(Lock &mutex) QUIRE_ACQUIRE(mutex)
        : m_mutex(mutex)
    {
        m_mutex.lock();
    }
    ~MutexLocker() QUIRE_RELEASE() { m_mutex.unlock(); }

private:
    Q_DISABLE_COPY(MutexLocker)

    Lock &m_mutex;
};

} // namespace Quire
