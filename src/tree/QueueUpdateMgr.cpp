#include <quire/tree/QueueUpdateMgr.h>

#include <QThread>

#include <algorithm>
#include <memory>
#include <utility>

#include "WorkerPresence.h"
#include <quire/tree/Queue.h>

namespace Quire {

QueueUpdateMgr QueueUpdateMgr::sManager;

namespace {

constexpr int endOfThreads = 1000; // ms, for those that are going to give the mutex back

bool contains(const std::vector<qint32> &numbers, qint32 number)
{
    return std::find(numbers.begin(), numbers.end(), number) != numbers.end();
}

void addOnce(std::vector<qint32> &numbers, qint32 number)
{
    if (!contains(numbers, number))
        numbers.push_back(number);
}

bool removeOne(std::vector<qint32> &numbers, qint32 number)
{
    const auto found = std::find(numbers.begin(), numbers.end(), number);
    if (found == numbers.end())
        return false;
    numbers.erase(found);
    return true;
}

} // namespace

/// A queue that is about to be watched: what other threads report of it meanwhile counts. What the server reports on
/// this very thread, out of the call that asks it to, tells nothing new.
class QueueUpdateMgr::Beginning
{
public:
    Beginning(QueueUpdateMgr &manager, qint32 queueId)
        : m_manager(manager)
        , m_queueId(queueId)
        , m_thread(QThread::currentThreadId())
    {
        const MutexLocker state(m_manager.m_stateMutex);
        m_manager.m_beginnings.push_back(this);
    }
    ~Beginning()
    {
        const MutexLocker state(m_manager.m_stateMutex);
        m_manager.m_beginnings.pop_back(); // they are nested: the manager's mutex is held
    }
    Beginning(const Beginning &) = delete;
    Beginning &operator=(const Beginning &) = delete;

    /// A change of a queue is reported. Under the state mutex, as the next.
    void note(qint32 queueId)
    {
        if (queueId == m_queueId && QThread::currentThreadId() != m_thread)
            m_changed = true;
    }
    bool hasChanged() const { return m_changed; }

private:
    QueueUpdateMgr &m_manager;
    const qint32 m_queueId;
    const Qt::HANDLE m_thread;
    bool m_changed = false;
};

QueueUpdateMgr::QueueUpdateMgr() = default;

QueueUpdateMgr::~QueueUpdateMgr()
{
    // Windows ends all other threads before it destroys what is static: then nobody gives the mutex back any more.
    const bool locked = m_stateMutex.native().tryLock(endOfThreads);
    m_watchedQueues.clear();
    m_pendingQueues.clear();
    if (locked)
        m_stateMutex.native().unlock();
}

void QueueUpdateMgr::BeginQueueUpdates(Queue *queue)
{
    if (queue)
        sManager.pBeginQueueUpdates(queue);
}

void QueueUpdateMgr::EndQueueUpdates(Queue *queue)
{
    if (queue)
        sManager.pEndQueueUpdates(queue);
}

void QueueUpdateMgr::Update(qint32 queueId)
{
    sManager.pUpdate(queueId);
}

bool QueueUpdateMgr::NeedsRefresh(Queue *queue, bool clear)
{
    return queue && sManager.pNeedsRefresh(queue, clear);
}

void QueueUpdateMgr::Forget(qint32 queueId)
{
    sManager.pForget(queueId);
}

void QueueUpdateMgr::SwitchOffUnlessWatched(const QString &queueName, qint32 queueId)
{
    sManager.pSwitchOffUnlessWatched(queueName, queueId);
}

void QueueUpdateMgr::pBeginQueueUpdates(Queue *queue)
{
    const std::shared_ptr<WorkerPresence> presence = queue->m_presence;
    const qint32 queueId = queue->m_queueId;
    // Who has the mutex may be waiting for the server, and the queue may go meanwhile.
    WorkerPresence::Outside outside(presence);
    const MutexLocker lock(m_mutex);
    outside.comeBack();
    Beginning beginning(*this, queueId);
    queue->SetUpdate(true);
    const MutexLocker state(m_stateMutex);
    if (presence->isShutOut())
        return; // its SetUpdate kept to itself that the queue has gone, whose load switches the reports off again
    removeOne(m_pendingQueues, queueId);
    addOnce(m_watchedQueues, queueId);
    if (beginning.hasChanged())
        m_pendingQueues.push_back(queueId);
}

void QueueUpdateMgr::pEndQueueUpdates(Queue *queue)
{
    const MutexLocker lock(m_mutex);
    const qint32 queueId = queue->m_queueId;
    try {
        queue->SetUpdate(false);
    } catch (...) {
        pForget(queueId);
        throw;
    }
    pForget(queueId);
}

void QueueUpdateMgr::pUpdate(qint32 queueId)
{
    const MutexLocker state(m_stateMutex);
    if (contains(m_watchedQueues, queueId))
        addOnce(m_pendingQueues, queueId);
    for (Beginning *const beginning : m_beginnings)
        beginning->note(queueId);
}

bool QueueUpdateMgr::pNeedsRefresh(Queue *queue, bool clear)
{
    const MutexLocker state(m_stateMutex);
    const qint32 queueId = queue->m_queueId;
    return clear ? removeOne(m_pendingQueues, queueId) : contains(m_pendingQueues, queueId);
}

void QueueUpdateMgr::pForget(qint32 queueId)
{
    const MutexLocker state(m_stateMutex);
    removeOne(m_watchedQueues, queueId);
    removeOne(m_pendingQueues, queueId);
}

void QueueUpdateMgr::pSwitchOffUnlessWatched(const QString &queueName, qint32 queueId)
{
    const MutexLocker lock(m_mutex);
    {
        const MutexLocker state(m_stateMutex);
        if (contains(m_watchedQueues, queueId))
            return;
    }
    Queue::SwitchUpdate(queueName, queueId, false);
}

} // namespace Quire
