#pragma once

/// \file
/// Which queues have changed on the server.

#include <QObject>
#include <QString>

#include <vector>

#include <quire/platform/Export.h>
#include <quire/session/Mutex.h>
#include <quire/session/QuireCOM.h>

namespace Quire {

class Queue;

/// Remembers which queues are watched and which of them the server has reported as changed since the host last looked.
///
/// One for the process; hosts call the static operations, on any thread. Queues with live refresh begin and end their
/// updates by themselves, and the server's notices call Update. Queues are known by their numbers, so that two objects
/// of one queue count as one.
///
/// Begin and End call the server with the manager's mutex held: do not call them while holding the server access lock
/// or the lock of a list. Update and NeedsRefresh never wait for the server, so that it may report while it is being
/// asked to.
class QUIRE_EXPORT QueueUpdateMgr : public QObject
{
public:
    /// Turns the server's reports on for \a queue, watches it, and forgets a change reported before. Raises what
    /// Queue::SetUpdate raises; the queue is then not watched. A null queue does nothing, here as below.
    static void BeginQueueUpdates(Queue *queue) QUIRE_EXCLUDES(serverAccess);
    /// Turns the server's reports off and forgets the queue. Raises what Queue::SetUpdate raises, having forgotten it.
    static void EndQueueUpdates(Queue *queue) QUIRE_EXCLUDES(serverAccess);
    /// The server reports a change of queue number \a queueId. Ignored unless it is watched.
    static void Update(qint32 queueId);
    /// Whether \a queue has been reported as changed. With \a clear the report is taken.
    static bool NeedsRefresh(Queue *queue, bool clear);

private:
    Q_DISABLE_COPY(QueueUpdateMgr)
    friend class Queue;
    friend class QueueLoad;
    friend struct QueueUpdateMgrProbe; // the tests look at the lists

    QueueUpdateMgr();
    ~QueueUpdateMgr() override;

    class Beginning;

    /// Forgets the queue without calling the server.
    static void Forget(qint32 queueId);
    /// Turns the server's reports off for a queue that has gone, unless another object of it has begun meanwhile.
    static void SwitchOffUnlessWatched(const QString &queueName, qint32 queueId) QUIRE_EXCLUDES(serverAccess);

    void pBeginQueueUpdates(Queue *queue) QUIRE_EXCLUDES(serverAccess);
    void pEndQueueUpdates(Queue *queue) QUIRE_EXCLUDES(serverAccess);
    void pUpdate(qint32 queueId);
    bool pNeedsRefresh(Queue *queue, bool clear);
    void pForget(qint32 queueId);
    void pSwitchOffUnlessWatched(const QString &queueName, qint32 queueId) QUIRE_EXCLUDES(serverAccess);

    static QueueUpdateMgr sManager;

    Mutex<LockRank::UpdateManager, QRecursiveMutex> m_mutex; // held while the server is asked to report or not
    Mutex<LockRank::UpdateState> m_stateMutex;
    std::vector<qint32> m_watchedQueues QUIRE_GUARDED_BY(m_stateMutex);
    std::vector<qint32> m_pendingQueues QUIRE_GUARDED_BY(m_stateMutex);
    std::vector<Beginning *> m_beginnings QUIRE_GUARDED_BY(m_stateMutex); // queues that are about to be watched
};

} // namespace Quire
