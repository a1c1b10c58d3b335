#pragma once

/// \file
/// Whether a worker is inside a queue. Not part of the public surface.

#include <QDeadlineTimer>
#include <QWaitCondition>

#include <memory>

#include <quire/session/Mutex.h>

namespace Quire {

/// Lets a queue go while one of its workers may be running the queue's Completed: its destructor waits until they have
/// left. A worker that calls the server from there is outside for that long, since nobody knows for how long; it must
/// not touch the queue afterwards unless it got inside again.
///
/// Shared by a queue and its workers. Any thread; a leaf lock.
class WorkerPresence
{
public:
    /// This thread is going to be inside. The caller makes sure that the queue is still there.
    void enter();
    /// This thread is not inside any more; nothing happens when it was not.
    void leave();
    /// Whether this thread is inside.
    bool isInside() const;

    /// The queue goes: nobody gets inside any more. Waits until all have left but for this thread.
    void close();
    bool isClosed() const;

    /// Waits until all have left but for this thread, at most until \a deadline. Whether there was anybody.
    bool waitForOthers(const QDeadlineTimer &deadline);

    /// The queue went while this thread was outside: nothing of it may be touched any more, so that this goes through
    /// the host's overrides up to whoever called the first of them.
    class QueueGone
    {};

    /// Leaves for one scope if this thread was inside.
    class Outside
    {
    public:
        explicit Outside(std::shared_ptr<WorkerPresence> presence);
        ~Outside();
        /// Gets inside again. Raises QueueGone when the queue went meanwhile.
        void comeBack();
        Outside(const Outside &) = delete;
        Outside &operator=(const Outside &) = delete;

    private:
        std::shared_ptr<WorkerPresence> m_presence;
        bool m_isOutside;
    };

private:
    bool enterAgain();
    bool isClosedHere() const;
    bool waitForOthersLocked(const QDeadlineTimer &deadline) QUIRE_REQUIRES(m_mutex);

    mutable Mutex<LockRank::WorkersInside> m_mutex;
    QWaitCondition m_left;
    int m_inside QUIRE_GUARDED_BY(m_mutex) = 0;
    bool m_closed QUIRE_GUARDED_BY(m_mutex) = false;
    Qt::HANDLE m_closer QUIRE_GUARDED_BY(m_mutex) = nullptr; // the thread that has closed it
};

} // namespace Quire
