#include <quire/tree/Queue.h>

#include <algorithm>
#include <limits>
#include <utility>

#include "EntryFlags.h"
#include "QueueListThread.h"
#include "QueueLoad.h"
#include "ServerCall.h"
#include "WorkerPresence.h"
#include <quire/notify/Search.h>
#include <quire/platform/Bstr.h>
#include <quire/session/Dispatch2.h>
#include <quire/session/QuireCOM.h>
#include <quire/session/QuireCOMMutex.h>
#include <quire/story/Story.h>
#include <quire/tree/ListMutexLocker.h>
#include <quire/tree/QueueUpdateMgr.h>

// Making and loading a queue.

namespace Quire {

bool Queue::useThreading = true;
qint32 Queue::sLoadIncrement = 200;

namespace {

const qint32 threadedChunk = 20;
const qint32 synchronousChunk = 100;
const int longestWait = 100; // milliseconds
const int endOfWorker = 50;  // milliseconds, for one that has nothing more to do than to end

constexpr auto notLoggedIn = static_cast<HRESULT>(0x80040416);
constexpr auto objectGone = static_cast<HRESULT>(0x8004040B);

Mutex<LockRank::LoadIncrement, QBasicMutex> incrementMutex; // guards Queue::sLoadIncrement; a leaf

/// The same queue as what its stories are listed from, without asking the server for it.
Orvex::IQueuePtr asList(const Orvex::IQueue2Ptr &queue)
{
    return Orvex::IQueuePtr(static_cast<Orvex::IQueue *>(queue.GetInterfacePtr()));
}

/// Why the session does not find a queue.
HRESULT whyMissing()
{
    QuireCOM *const session = QuireCOM::TheQuireCOM;
    return session && session->IsConnected() ? objectGone : notLoggedIn;
}

thread_local const Queue *refreshedQueue = nullptr;

/// This thread refreshes a queue, for one scope: what it is going to read at once replaces whatever is there by then.
class Refreshing
{
public:
    explicit Refreshing(const Queue *queue)
        : m_outer(std::exchange(refreshedQueue, queue))
    {}
    ~Refreshing() { refreshedQueue = m_outer; }
    Refreshing(const Refreshing &) = delete;
    Refreshing &operator=(const Refreshing &) = delete;

    static bool is(const Queue *queue) { return refreshedQueue == queue; }

private:
    const Queue *const m_outer;
};

} // namespace

int Queue::getLoadIncrement()
{
    const MutexLocker guard(incrementMutex);
    return sLoadIncrement;
}

void Queue::setLoadIncrement(int increment)
{
    const MutexLocker guard(incrementMutex);
    if (increment > 0)
        sLoadIncrement = increment;
}

// ---- making and ending one ------------------------------------------------------------------------------------------

// NOLINTNEXTLINE(performance-unnecessary-value-param): a reference of its own while the call lasts
Queue::Queue(IDispatchPtr object)
    : Queue(object, true)
{}

Queue::Queue(const IDispatchPtr &object, bool registerNow)
    : m_chunkSize(useThreading ? threadedChunk : synchronousChunk)
    , m_presence(std::make_shared<WorkerPresence>())
    , m_registerNow(registerNow)
{
    if (Describe(object))
        Queue::Populate(object);
}

/// Reads what the queue is called and how it behaves; false when the object is no queue.
bool Queue::Describe(const IDispatchPtr &object)
{
    const QuireCOMMutex lock("Queue::Queue");
    const Orvex::IQueue2Ptr queue = Dispatch2Queue(object);
    if (!queue)
        return false;
    Platform::Bstr name;
    check(queue->get_Name(name.out()), queue);
    ItemList::SetName(name.toString());
    check(queue->get_QueueID(&m_identifier), queue);
    m_queueId = static_cast<qint32>(m_identifier.number);
    EntryFlags flags;
    check(readFlags(queue, &flags), queue);
    m_flags1 = flags.word1;
    m_flags2 = flags.word2;
    m_flags3 = flags.word3;
    m_liveRefresh = flags.isLive();
    return true;
}

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

bool Queue::IsDirectory()
{
    return false;
}

bool Queue::IsQueue()
{
    return true;
}

// ---- loading --------------------------------------------------------------------------------------------------------

void Queue::Refresh()
{
    if (!QuireCOM::TheQuireCOM)
        return;
    std::unique_ptr<QueueListThread> worker;
    quint32 loadsBegun = 0;
    {
        // At one moment: nothing of the load arrives beside the same stories read anew, and no load that another thread
        // starts goes on behind stories that are gone.
        const ListMutexLocker lock("Queue::Refresh()", listMutex().get());
        worker = TakeWorker();
        AbandonOutdated();
        Clear();
        loadsBegun = LoadsBegun();
    }
    Retire(std::move(worker));
    const Refreshing scope(this);
    try {
        Reread();
    } catch (...) {
        EndAwaited(loadsBegun, currentFailure());
        throw;
    }
    if (IsAwaited(loadsBegun))
        EndAwaited(loadsBegun, whyMissing());
}

void Queue::Populate()
{
    m_moreAvailable = false;
    Directory::Populate();
}

void Queue::Populate(IDispatchPtr object)
{
    Orvex::IQueue2Ptr queue;
    {
        const QuireCOMMutex lock("Queue::Populate");
        queue = Dispatch2Queue(object);
    }
    if (!queue)
        return;
    if (useThreading)
        StartThread(queue);
    else
        LoadNow(queue);
}

/// The number of stories at which a load from now on stops, -1 for none. Under the list's lock.
qint32 Queue::NextLimit()
{
    if (m_liveRefresh)
        return -1;
    const qint64 limit = qint64{u_Size()} + getLoadIncrement();
    return static_cast<qint32>(qMin<qint64>(limit, std::numeric_limits<qint32>::max()));
}

/// Lets a worker go on behind the stories that are there. A worker that is still running is abandoned at the same
/// moment: under the list's lock, so that nothing of it arrives after the stories have been counted.
void Queue::StartThread(const Orvex::IQueue2Ptr &queue)
{
    std::unique_ptr<QueueListThread> outdated;
    std::unique_ptr<QueueListThread> unable;
    {
        const ListMutexLocker lock("Queue::Populate()", listMutex().get());
        m_loadLimit = NextLimit();
        const auto load = std::make_shared<QueueLoad>(this, m_loadLimit);
        auto worker = std::make_unique<QueueListThread>(load, asList(queue), u_Size(), m_loadGate);
        MarkStarted(load.get(), true);
        outdated = TakeWorker();
        AbandonOutdated();
        const MutexLocker guard(m_workerMutex);
        if (worker->begin())
            m_loadThread = std::move(worker);
        else
            unable = std::move(worker);
    }
    Retire(std::move(outdated));
    if (unable)
        EndUnable(*unable->load());
}

/// Ends a load for which there is no thread, so that nobody waits for it.
void Queue::EndUnable(QueueLoad &load)
{
    load.fail(E_OUTOFMEMORY);
    load.end();
    MarkComplete(&load);
}

void Queue::LoadNow(const Orvex::IQueue2Ptr &queue)
{
    ReadAll(*StartNow(), asList(queue));
    if (!m_liveRefresh)
        return;
    if (m_registerNow)
        QueueUpdateMgr::BeginQueueUpdates(this);
    else
        m_registrationDue = true;
}

/// A load without a worker, which other threads can abandon as they can any other.
std::shared_ptr<QueueLoad> Queue::StartNow()
{
    std::unique_ptr<QueueListThread> outdated;
    std::shared_ptr<QueueLoad> load;
    {
        const ListMutexLocker lock("Queue::Populate()", listMutex().get());
        outdated = TakeWorker();
        AbandonOutdated();
        if (Refreshing::is(this) && u_Size() > 0)
            Clear(); // somebody else has refreshed it meanwhile
        m_loadLimit = NextLimit();
        load = std::make_shared<QueueLoad>(this, m_loadLimit);
        MarkStarted(load.get(), false);
        const MutexLocker guard(m_workerMutex);
        m_outdatedLoads.push_back(load);
    }
    Retire(std::move(outdated));
    return load;
}

void Queue::ReadAll(QueueLoad &load, const Orvex::IQueuePtr &list)
{
    int position = 0;
    try {
        while (!load.loadChunk(list, position)) {
        }
    } catch (...) {
        load.fail(currentFailure());
        EndNow(load);
        throw;
    }
    EndNow(load);
}

/// Ends a load without a worker; also the wait for a threaded one in whose place it came.
void Queue::EndNow(QueueLoad &load)
{
    load.end();
    const MutexLocker guard(m_stateMutex);
    if (&load == m_lastLoad && m_threadedLoad == Threaded::Awaited)
        m_threadedLoad = Threaded::Complete;
}

/// Does what was put off while the access lock was held around the making of this queue.
void Queue::RegisterIfLoaded()
{
    m_registerNow = true;
    if (std::exchange(m_registrationDue, false))
        QueueUpdateMgr::BeginQueueUpdates(this);
}

// NOLINTNEXTLINE(performance-unnecessary-value-param): a reference of its own while the call lasts
bool Queue::LoadListChunk(Orvex::IQueuePtr queue, int &position)
{
    return QueueLoad(this, m_loadLimit).loadChunk(queue, position);
}

Item Queue::MakeItem(const IDispatchPtr &handle)
{
    const auto story = [&] {
        const QuireCOMMutex lock("Queue::LoadListChunk:Story");
        return Dispatch2Story(handle);
    };
    Item item(QString(), Item_Story);
    Story::InitStoryItem(item, story()); // as it comes: one reference and no more
    return item;
}

bool Queue::MoreStoriesAvailable()
{
    return m_moreAvailable;
}

void Queue::LoadMore()
{
    // Of several threads that ask for more at once, one gets it.
    if (!m_moreAvailable.exchange(false))
        return;
    const quint32 loadsBegun = LoadsBegun();
    try {
        Populate();
    } catch (...) {
        if (LoadsBegun() == loadsBegun) // else the load has told
            m_moreAvailable = true;
        throw;
    }
}

// ---- the end of a load ----------------------------------------------------------------------------------------------

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
    if (QThread::currentThread() == m_loadThread.get() || !m_loadThread->isFinished())
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

SearchList *Queue::StartSearch(const QString &text)
{
    Search *const searcher = Search::GetSearcherIfMade();
    if (!searcher)
        return nullptr;
    const QString root = QStringLiteral(".");
    return searcher->StartSearch(Name() == root ? QString() : Name(), text);
}

} // namespace Quire
