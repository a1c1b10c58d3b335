#include <quire/tree/Queue.h>

#include <algorithm>
#include <utility>

#include "QueueListThread.h"
#include "QueueLoad.h"
#include "WorkerPresence.h"
#include <quire/tree/QueueUpdateMgr.h>

// How a queue and its loads end.

namespace Quire {

namespace {

const int longestWait = 100; // milliseconds
const int endOfWorker = 50;  // milliseconds, for one that has nothing more to do than to end

} // namespace

// ---- of a queue -----------------------------------------------------------------------------------------------------

Queue::~Queue()
{
    // Loads that were abandoned before have had their time.
    QDeadlineTimer deadline(AbandonLoad());
    if (m_presence->close())
        deadline.setRemainingTime(endOfWorker); // the host's Completed has used it up
    if (m_liveRefresh)
        StopUpdates(deadline);
}

/// Ends the reports of a queue that goes.
void Queue::StopUpdates(const QDeadlineTimer &deadline)
try {
    if (SwitchOffLater(deadline))
        QueueUpdateMgr::Forget(m_queueId);
    else
        QueueUpdateMgr::EndQueueUpdates(this);
} catch (...) {
    // A server that does not want to stop reporting is not listened to: the queue's number is forgotten.
}

/// Has the loads that still hang, this one's or those that were abandoned before, switch the server's reports off when
/// they end: they may hold the access lock until then. Each of them, since each may be about to switch them on. False
/// when none hangs.
bool Queue::SwitchOffLater(const QDeadlineTimer &deadline)
{
    const MutexLocker guard(m_workerMutex);
    bool later = false;
    for (const std::shared_ptr<QueueLoad> &load : m_outdatedLoads) {
        if (!load->waitForEnd(deadline) && load->switchOffWhenEnded(Name(), m_queueId))
            later = true;
    }
    return later;
}

// ---- of a load ------------------------------------------------------------------------------------------------------

void Queue::Completed()
{
    const std::shared_ptr<WorkerPresence> presence = m_presence;
    if (m_liveRefresh)
        QueueUpdateMgr::BeginQueueUpdates(this);
    if (!presence->isShutOut())
        MarkComplete(QueueLoad::completing());
}

/// Under the list's lock, so that no load before it has the last word.
void Queue::MarkStarted(const QueueLoad *load, bool threaded)
{
    const MutexLocker guard(m_stateMutex);
    m_lastLoad = load;
    m_loadError = S_OK;
    ++m_loadsBegun;
    if (threaded)
        m_threadedLoad = Threaded::Awaited;
}

/// A load that has been abandoned meanwhile tells nothing about the one that was started in its place. Null: somebody
/// else says so.
void Queue::MarkComplete(const QueueLoad *load)
{
    const MutexLocker guard(m_stateMutex);
    if (!load || load == m_lastLoad)
        m_threadedLoad = Threaded::Complete;
}

bool Queue::IsMarkedComplete()
{
    const MutexLocker guard(m_stateMutex);
    return m_threadedLoad == Threaded::Complete;
}

quint32 Queue::LoadsBegun()
{
    const MutexLocker guard(m_stateMutex);
    return m_loadsBegun;
}

/// Whether no load has begun since there were so many, and the last threaded one has not told its end.
bool Queue::IsAwaited(quint32 loadsBegun)
{
    const MutexLocker guard(m_stateMutex);
    return m_loadsBegun == loadsBegun && m_threadedLoad == Threaded::Awaited;
}

/// Ends a threaded load in whose place no other came; a host may be waiting for it.
void Queue::EndAwaited(quint32 loadsBegun, HRESULT error)
{
    const MutexLocker guard(m_stateMutex);
    if (m_loadsBegun != loadsBegun || m_threadedLoad != Threaded::Awaited)
        return;
    m_loadError = error;
    m_threadedLoad = Threaded::Complete;
}

void Queue::MarkFailed(const QueueLoad *load, HRESULT error)
{
    const MutexLocker guard(m_stateMutex);
    if (load == m_lastLoad)
        m_loadError = error;
}

bool Queue::IsComplete()
{
    std::unique_ptr<QueueListThread> worker;
    {
        const MutexLocker guard(m_workerMutex);
        if (!IsMarkedComplete())
            return false;
        if (m_loadThread && QThread::currentThread() != m_loadThread.get())
            worker = TakeWorkerLocked();
    }
    // It is as good as at its end, unless the host has much to do in its Completed.
    LetGo(std::move(worker), QDeadlineTimer(longestWait));
    return true;
}

bool Queue::IsFinished()
{
    const MutexLocker guard(m_workerMutex);
    if (!m_loadThread)
        return m_workersTaken == 0;
    if (!m_loadThread->isFinished())
        return false;
    QueueListThread::retire(std::move(m_loadThread));
    return true;
}

long Queue::GetError()
{
    const MutexLocker guard(m_stateMutex);
    return m_loadError;
}

void Queue::cancelQueueLoad(bool wait)
{
    if (wait) {
        AbandonLoad();
        return;
    }
    const MutexLocker guard(m_workerMutex);
    if (m_loadThread)
        m_loadThread->load()->cancel();
}

/// Takes the worker out of the queue, for Retire(); null when there is none. Its load goes on until it is abandoned.
std::unique_ptr<QueueListThread> Queue::TakeWorker()
{
    const MutexLocker guard(m_workerMutex);
    return TakeWorkerLocked();
}

std::unique_ptr<QueueListThread> Queue::TakeWorkerLocked()
{
    ForgetEnded();
    if (m_loadThread) {
        m_outdatedLoads.push_back(m_loadThread->load());
        ++m_workersTaken;
    }
    return std::move(m_loadThread);
}

void Queue::ForgetEnded()
{
    m_outdatedLoads.erase(std::remove_if(m_outdatedLoads.begin(), m_outdatedLoads.end(),
                                         [](const auto &candidate) { return candidate->hasEnded(); }),
                          m_outdatedLoads.end());
}

/// Nothing arrives any more of loads whose workers were taken, also of one that another thread is still waiting for.
/// Under the list's lock.
void Queue::AbandonOutdated()
{
    const MutexLocker guard(m_workerMutex);
    for (const std::shared_ptr<QueueLoad> &load : m_outdatedLoads)
        load->abandon();
}

/// Cancels the load and lets go of it, at the latest when longestWait is over; also of the host's Completed for a load
/// before it. Returns what is left of that time, which is none without a worker.
QDeadlineTimer Queue::AbandonLoad()
{
    QDeadlineTimer deadline(longestWait);
    std::unique_ptr<QueueListThread> worker = TakeWorker();
    const bool hasWorker = worker != nullptr;
    if (hasWorker) {
        worker->load()->cancel();
        WaitFor(*worker, QDeadlineTimer(longestWait / 2));
    }
    ShutOutdatedOut(); // with time left for those that are just inside
    LetGo(std::move(worker), deadline);
    const bool hadOthers = m_presence->waitForOthers(deadline);
    return hasWorker || hadOthers ? deadline : QDeadlineTimer();
}

/// No worker that was taken gets any further into the queue, but for this one.
void Queue::ShutOutdatedOut()
{
    const MutexLocker guard(m_workerMutex);
    for (const std::shared_ptr<QueueLoad> &load : m_outdatedLoads) {
        if (load.get() != QueueLoad::completing())
            load->shutOut();
    }
}

void Queue::WaitFor(QueueListThread &worker, const QDeadlineTimer &deadline)
{
    if (!deadline.hasExpired() && QThread::currentThread() != &worker)
        worker.wait(deadline);
}

/// Nothing arrives of its load any more, at the latest after \a deadline.
void Queue::LetGo(std::unique_ptr<QueueListThread> worker, const QDeadlineTimer &deadline)
{
    if (!worker)
        return;
    WaitFor(*worker, deadline);
    worker->load()->abandon();
    Retire(std::move(worker));
}

/// Leaves a worker that was taken to itself; null allowed.
void Queue::Retire(std::unique_ptr<QueueListThread> worker)
{
    if (!worker)
        return;
    QueueListThread::retire(std::move(worker));
    const MutexLocker guard(m_workerMutex);
    --m_workersTaken;
}

/// The number of workers, of all queues, that were abandoned and have not ended yet.
int Queue::HangingWorkers()
{
    return QueueListThread::retire(nullptr);
}

} // namespace Quire
