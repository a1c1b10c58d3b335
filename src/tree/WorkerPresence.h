#pragma once

/// \file
/// Whether a worker is inside a queue. Not part of the public surface.

#include <QDeadlineTimer>
#include <QWaitCondition>

#include <atomic>
#include <memory>

#include <quire/session/Mutex.h>

namespace Quire {

/// Lets a queue go, or let go of a load, while one of its workers may be running the queue's Completed: who does that
/// waits until they have left. A worker that calls the server from there is outside for that long, since nobody knows
/// for how long; it must not touch the queue afterwards unless it got inside again.
///
/// Shared by a queue and its workers. Any thread; a leaf lock.
class WorkerPresence
{
public:
    /// With what the worker of one load gets inside. Any thread.
    class Pass
    {
    public:
        /// Nobody gets inside with it any more, nor inside again. Who is inside stays until it leaves.
        void withdraw() { m_withdrawn = true; }
        bool isWithdrawn() const { return m_withdrawn; }

    private:
        std::atomic<bool> m_withdrawn{false};
    };

    /// This thread is going to be inside, with a pass that lasts until it leaves. False when it does not get in. The
    /// caller makes sure that the queue is still there.
    bool enter(const Pass &pass);
    /// This thread is not inside any more; nothing happens when it was not.
    void leave();
    /// Whether this thread is inside.
    bool isInside() const;
    /// Whether this thread has entered and did not get in again: it touches nothing of the queue any more.
    bool isShutOut() const;

    /// The queue goes: nobody gets inside any more. Waits until all have left but for this thread. Whether there was
    /// anybody.
    bool close();
    bool isClosed() const;

    /// Waits until all have left but for this thread, at most until \a deadline. Whether there was anybody.
    bool waitForOthers(const QDeadlineTimer &deadline);

    /// The queue went, or let go of the load, while this thread was outside: nothing of it may be touched any more, so
    /// that this goes through the host's overrides up to whoever called the first of them.
    class QueueGone
    {};

    /// Leaves for one scope if this thread was inside.
    class Outside
    {
    public:
        explicit Outside(std::shared_ptr<WorkerPresence> presence);
        ~Outside();
        /// Gets inside again. Raises QueueGone when that is not possible any more.
        void comeBack();
        Outside(const Outside &) = delete;
        Outside &operator=(const Outside &) = delete;

    private:
        std::shared_ptr<WorkerPresence> m_presence;
        bool m_isOutside;
    };

private:
    bool comeIn();
    void goOut();
    bool isClosedHere() const;
    bool waitForOthersLocked(const QDeadlineTimer &deadline) QUIRE_REQUIRES(m_mutex);

    mutable Mutex<LockRank::WorkersInside> m_mutex;
    QWaitCondition m_left;
    int m_inside QUIRE_GUARDED_BY(m_mutex) = 0;
    bool m_closed QUIRE_GUARDED_BY(m_mutex) = false;
    Qt::HANDLE m_closer QUIRE_GUARDED_BY(m_mutex) = nullptr; // the thread that has closed it
};

} // namespace Quire
