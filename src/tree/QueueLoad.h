#pragma once

/// \file
/// One load of a queue's stories. Not part of the public surface.

#include <QDeadlineTimer>
#include <QMutex>
#include <QString>
#include <QWaitCondition>

#include <atomic>
#include <memory>

#include "WorkerPresence.h"
#include <quire/orvex/Orvex.h>
#include <quire/session/Mutex.h>
#include <quire/tree/ListMutexLocker.h>

namespace Quire {

class Queue;

/// Reads chunks of stories from the server into a queue's list, for as long as it is the queue's load: once abandoned
/// it never touches the queue again, which may then be gone.
///
/// Shared by the queue and the worker. The server's queue is read by the worker alone; the rest may be called on any
/// thread.
class QueueLoad
{
public:
    /// A load of at most up to \a limit stories, -1 for all.
    QueueLoad(Queue *queue, qint32 limit);

    /// Reads one chunk; see Queue::LoadListChunk. Also true once abandoned.
    bool loadChunk(const Orvex::IQueuePtr &server, int &position);

    /// No further chunk is to be read.
    void cancel() { m_cancelled = true; }
    bool isCancelled() const { return m_cancelled; }
    /// Nothing of this load reaches the queue from now on.
    void abandon();
    /// The worker gets no further in the queue's Completed than it is, as soon as it calls the server or waits for it.
    void shutOut() { m_pass.withdraw(); }

    /// The load ends with a failure: there is more to load.
    void fail(HRESULT error);
    /// Calls the queue's Completed. Nothing leaves.
    void complete();
    /// The load whose complete() runs on this thread, null when none does.
    static const QueueLoad *completing();

    /// Has the worker switch the server's reports off when it ends; false when it has ended already.
    bool switchOffWhenEnded(const QString &queueName, qint32 queueId);
    /// The worker's last word.
    void end();
    bool hasEnded() const;
    /// Whether it has ended, waiting for that at most until \a deadline.
    bool waitForEnd(const QDeadlineTimer &deadline) const;

private:
    template<typename Change>
    bool publish(Change change);
    bool append(const IDispatchPtr &handle);
    void tell(Queue &queue) QUIRE_REQUIRES(*m_listMutex);

    // Constant after construction.
    const std::shared_ptr<ListMutex> m_listMutex;
    const std::shared_ptr<WorkerPresence> m_presence;
    const qint32 m_chunkSize;
    const qint32 m_limit;

    std::atomic<bool> m_cancelled{false};
    WorkerPresence::Pass m_pass;
    Queue *m_queue QUIRE_GUARDED_BY(*m_listMutex);         // null once abandoned
    bool m_hasNews QUIRE_GUARDED_BY(*m_listMutex) = false; // stories of which the host has not been told

    mutable Mutex<LockRank::LoadEnd> m_endMutex; // a leaf
    mutable QWaitCondition m_end;
    bool m_ended QUIRE_GUARDED_BY(m_endMutex) = false;
    bool m_switchOff QUIRE_GUARDED_BY(m_endMutex) = false;
    QString m_queueName QUIRE_GUARDED_BY(m_endMutex);
    qint32 m_queueId QUIRE_GUARDED_BY(m_endMutex) = 0;
};

} // namespace Quire
