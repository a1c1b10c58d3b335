#include "QueueLoad.h"

#include <limits>
#include <utility>

#include "ObjectArray.h"
#include "ServerCall.h"
#include <quire/platform/Variant.h>
#include <quire/session/QuireCOMMutex.h>
#include <quire/tree/ListMutexLocker.h>
#include <quire/tree/Queue.h>
#include <quire/tree/QueueUpdateMgr.h>

namespace Quire {

namespace {

thread_local const QueueLoad *completingLoad = nullptr;

} // namespace

QueueLoad::QueueLoad(Queue *queue, qint32 limit)
    : m_listMutex(queue->listMutex())
    , m_presence(queue->m_presence)
    , m_chunkSize(queue->m_chunkSize)
    , m_limit(limit)
    , m_queue(queue)
{}

/// Does \a change to the queue under its list's lock; false when the load has been abandoned.
template<typename Change>
bool QueueLoad::publish(Change change)
{
    const ListMutexLocker lock("Queue::LoadListChunk()", m_listMutex.get());
    if (!m_queue)
        return false;
    change(*m_queue);
    return true;
}

bool QueueLoad::loadChunk(const Orvex::IQueuePtr &server, int &position)
{
    if (!server)
        return true;
    Platform::Variant answer;
    {
        const QuireCOMMutex lock("Queue::LoadListChunk:GetList");
        check(server->GetList(position, m_chunkSize, answer.out()), server);
    }
    const ObjectArray stories(answer);
    const int count = stories.size();
    if (count < 1) {
        publish([](Queue &queue) { queue.m_moreAvailable = false; });
        return true;
    }
    for (int index = 0; index < count; ++index) {
        if (!append(stories.at(index).object()))
            return true;
    }
    position = count > std::numeric_limits<int>::max() - position ? std::numeric_limits<int>::max() : position + count;
    const bool last = count != m_chunkSize;
    const bool finished = last || (m_limit >= 1 && position >= m_limit);
    const bool current = publish([&](Queue &queue) QUIRE_NO_THREAD_SAFETY_ANALYSIS { // publish() has the lock
        tell(queue);
        if (finished)
            queue.m_moreAvailable = !last;
    });
    return finished || !current;
}

/// Makes an item of the story and appends it; an empty handle is passed over. False when abandoned.
bool QueueLoad::append(const IDispatchPtr &handle)
{
    if (!handle)
        return true;
    Item item = Queue::MakeItem(handle);
    return publish([&](Queue &queue) QUIRE_NO_THREAD_SAFETY_ANALYSIS { // publish() has the lock
        queue.u_Append(std::move(item));
        m_hasNews = true;
    });
}

/// The host is to look at what has arrived.
void QueueLoad::tell(Queue &queue)
{
    queue.u_SetChanged();
    m_hasNews = false;
}

void QueueLoad::abandon()
{
    cancel();
    const ListMutexLocker lock("Queue::cancelQueueLoad()", m_listMutex.get());
    if (m_queue && m_hasNews)
        tell(*m_queue);
    m_queue = nullptr;
}

void QueueLoad::fail(HRESULT error)
{
    publish([&](Queue &queue) QUIRE_NO_THREAD_SAFETY_ANALYSIS { // publish() has the lock
        queue.MarkFailed(this, error);
        queue.m_moreAvailable = true;
        if (m_hasNews)
            tell(queue);
    });
}

void QueueLoad::complete()
{
    Queue *queue = nullptr;
    publish([&](Queue &current) {
        if (m_presence->enter(m_pass))
            queue = &current;
    });
    if (!queue)
        return;
    HRESULT error = S_OK;
    completingLoad = this;
    try {
        queue->Completed();
    } catch (...) {
        error = currentFailure();
    }
    completingLoad = nullptr;
    if (FAILED(error) && m_presence->isInside()) {
        queue->MarkFailed(this, error);
        queue->MarkComplete(this); // whatever went wrong, the host waits for it
    }
    m_presence->leave();
}

const QueueLoad *QueueLoad::completing()
{
    return completingLoad;
}

bool QueueLoad::switchOffWhenEnded(const QString &queueName, qint32 queueId)
{
    const MutexLocker lock(m_endMutex);
    if (m_ended)
        return false;
    m_switchOff = true;
    m_queueName = queueName;
    m_queueId = queueId;
    return true;
}

void QueueLoad::end()
try {
    bool switchOff = false;
    QString queueName;
    qint32 queueId = 0;
    {
        const MutexLocker lock(m_endMutex);
        m_ended = true;
        m_end.wakeAll();
        switchOff = m_switchOff;
        queueName = m_queueName;
        queueId = m_queueId;
    }
    if (switchOff)
        QueueUpdateMgr::SwitchOffUnlessWatched(queueName, queueId);
} catch (...) {
    // The queue is gone, and with it whoever would be told.
}

bool QueueLoad::hasEnded() const
{
    return waitForEnd(QDeadlineTimer());
}

bool QueueLoad::waitForEnd(const QDeadlineTimer &deadline) const
{
    const MutexLocker lock(m_endMutex);
    while (!m_ended && !deadline.hasExpired())
        m_end.wait(&m_endMutex.native(), deadline);
    return m_ended;
}

} // namespace Quire
