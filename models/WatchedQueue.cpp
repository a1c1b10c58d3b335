#include "WatchedQueue.h"

#include <QHash>

#include <algorithm>
#include <optional>

#include "ServerReading.h"
#include "ServerThread.h"
#include <quire/session/QuireCOMMutex.h>
#include <quire/tree/QueueUpdateMgr.h>

namespace Quire {

// ---- what several models share --------------------------------------------------------------------------------------

std::shared_ptr<QueueWatch> QueueWatch::of(qint32 queueId)
{
    // Never destroyed, as the thread that it belongs to.
    static auto *const all = new QHash<qint32, std::weak_ptr<QueueWatch>>;
    std::weak_ptr<QueueWatch> &known = (*all)[queueId];
    std::shared_ptr<QueueWatch> watch = known.lock();
    if (!watch) {
        watch = std::make_shared<QueueWatch>();
        known = watch;
    }
    return watch;
}

void QueueWatch::remove(WatchedQueue *queue)
{
    m_queues.erase(std::remove(m_queues.begin(), m_queues.end(), queue), m_queues.end());
}

void QueueWatch::goOn()
{
    if (m_queues.empty())
        return;
    try {
        QueueUpdateMgr::BeginQueueUpdates(m_queues.front());
    } catch (...) {
        // The models that read the queue anew now have it begin again.
    }
    noteChange(); // nobody has told of those in between
}

// ---- the queue ------------------------------------------------------------------------------------------------------

WatchedQueue::WatchedQueue(const IDispatchPtr &handle)
    : Queue(handle)
    , m_watch(QueueWatch::of(QueueID()))
    , m_changesAtFirst(m_watch->changes())
{
    m_watch->add(this);
}

WatchedQueue::~WatchedQueue()
{
    cancelQueueLoad(true);
    m_watch->remove(this);
}

std::shared_ptr<WatchedQueue> WatchedQueue::open(const IDispatchPtr &handle)
{
    // The worker calls the server before anything of this class, so it waits until all of the object is made.
    std::optional<QuireCOMMutex> made;
    if (useThreading)
        made.emplace("QueueModel::open");
    auto queue = ServerThread::own(std::unique_ptr<WatchedQueue>(new WatchedQueue(handle)), &WatchedQueue::end);
    static const bool isFirst = (ServerThread::endBeforeLoads(), true);
    Q_UNUSED(isFirst)
    return queue;
}

void WatchedQueue::end(WatchedQueue *queue)
{
    const std::shared_ptr<QueueWatch> watch = queue->m_watch;
    const bool live = queue->GetLiveRefresh();
    delete queue;
    if (live)
        watch->goOn();
}

void WatchedQueue::SetUpdate(bool on)
{
    if (on)
        takeReport(); // the manager forgets it when this returns
    Queue::SetUpdate(on);
}

void WatchedQueue::takeReport()
{
    if (QueueUpdateMgr::NeedsRefresh(this, true))
        m_watch->noteChange();
}

} // namespace Quire
