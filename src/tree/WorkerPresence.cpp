#include "WorkerPresence.h"

#include <QThread>

#include <utility>

namespace Quire {

namespace {

/// The queue that this thread is inside of; a worker belongs to one.
thread_local const WorkerPresence *currentPresence = nullptr;

} // namespace

void WorkerPresence::enter()
{
    const MutexLocker lock(m_mutex);
    ++m_inside;
    currentPresence = this;
}

void WorkerPresence::leave()
{
    if (!isInside())
        return;
    const MutexLocker lock(m_mutex);
    --m_inside;
    currentPresence = nullptr;
    m_left.wakeAll();
}

bool WorkerPresence::isInside() const
{
    return currentPresence == this;
}

void WorkerPresence::close()
{
    const MutexLocker lock(m_mutex);
    m_closed = true;
    m_closer = QThread::currentThreadId();
    waitForOthersLocked(QDeadlineTimer(QDeadlineTimer::Forever));
}

bool WorkerPresence::waitForOthers(const QDeadlineTimer &deadline)
{
    const MutexLocker lock(m_mutex);
    return waitForOthersLocked(deadline);
}

bool WorkerPresence::waitForOthersLocked(const QDeadlineTimer &deadline)
{
    const int own = isInside() ? 1 : 0;
    const bool others = m_inside > own;
    while (m_inside > own && m_left.wait(&m_mutex.native(), deadline)) {
    }
    return others;
}

bool WorkerPresence::isClosed() const
{
    const MutexLocker lock(m_mutex);
    return m_closed;
}

/// Whether it is this thread that ends the queue.
bool WorkerPresence::isClosedHere() const
{
    const MutexLocker lock(m_mutex);
    return m_closed && m_closer == QThread::currentThreadId();
}

bool WorkerPresence::enterAgain()
{
    const MutexLocker lock(m_mutex);
    if (m_closed)
        return false;
    ++m_inside;
    currentPresence = this;
    return true;
}

WorkerPresence::Outside::Outside(std::shared_ptr<WorkerPresence> presence)
    : m_presence(std::move(presence))
    , m_isOutside(m_presence->isInside() && !m_presence->isClosedHere())
{
    if (m_isOutside)
        m_presence->leave();
}

WorkerPresence::Outside::~Outside()
{
    if (m_isOutside)
        m_presence->enterAgain(); // an exception is on its way: it does what QueueGone would do
}

void WorkerPresence::Outside::comeBack()
{
    if (std::exchange(m_isOutside, false) && !m_presence->enterAgain())
        throw QueueGone();
}

} // namespace Quire
