#include "WorkerPresence.h"

#include <QThread>

#include <utility>

namespace Quire {

namespace {

/// Where this thread, a worker, has entered. A worker belongs to one queue.
struct Visit
{
    const WorkerPresence *presence = nullptr;
    const WorkerPresence::Pass *pass = nullptr;
    bool isInside = false;
};

thread_local Visit visit;

} // namespace

bool WorkerPresence::enter(const Pass &pass)
{
    visit = {this, &pass, false};
    const bool entered = comeIn();
    if (!entered)
        visit = {};
    return entered;
}

void WorkerPresence::leave()
{
    if (visit.presence != this)
        return;
    if (visit.isInside)
        goOut();
    visit = {};
}

bool WorkerPresence::isInside() const
{
    return visit.presence == this && visit.isInside;
}

bool WorkerPresence::isShutOut() const
{
    return visit.presence == this && !visit.isInside;
}

bool WorkerPresence::comeIn()
{
    const MutexLocker lock(m_mutex);
    if (m_closed || visit.pass->isWithdrawn())
        return false;
    ++m_inside;
    visit.isInside = true;
    return true;
}

void WorkerPresence::goOut()
{
    const MutexLocker lock(m_mutex);
    --m_inside;
    visit.isInside = false;
    m_left.wakeAll();
}

bool WorkerPresence::close()
{
    const MutexLocker lock(m_mutex);
    m_closed = true;
    m_closer = QThread::currentThreadId();
    return waitForOthersLocked(QDeadlineTimer(QDeadlineTimer::Forever));
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

WorkerPresence::Outside::Outside(std::shared_ptr<WorkerPresence> presence)
    : m_presence(std::move(presence))
    , m_isOutside(m_presence->isInside() && !m_presence->isClosedHere())
{
    if (m_isOutside)
        m_presence->goOut();
}

WorkerPresence::Outside::~Outside()
{
    if (m_isOutside)
        m_presence->comeIn();
}

void WorkerPresence::Outside::comeBack()
{
    if (std::exchange(m_isOutside, false) && !m_presence->comeIn())
        throw QueueGone();
}

} // namespace Quire
