#include <quire/tree/Queue.h>

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

// Making and loading a queue. How both end is told in QueueEnds.cpp.

namespace Quire {

bool Queue::useThreading = true;
qint32 Queue::sLoadIncrement = 200;

namespace {

const qint32 threadedChunk = 20;
const qint32 synchronousChunk = 100;

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

// ---- making one -----------------------------------------------------------------------------------------------------

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

// ---- searching ------------------------------------------------------------------------------------------------------

SearchList *Queue::StartSearch(const QString &text)
{
    Search *const searcher = Search::GetSearcherIfMade();
    if (!searcher)
        return nullptr;
    const QString root = QStringLiteral(".");
    return searcher->StartSearch(Name() == root ? QString() : Name(), text);
}

} // namespace Quire
