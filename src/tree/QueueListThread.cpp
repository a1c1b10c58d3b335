#include "QueueListThread.h"

#include <QDeadlineTimer>

#include <algorithm>
#include <map>
#include <utility>
#include <vector>

#include "QueueLoad.h"
#include "ServerCall.h"
#include <quire/platform/Apartment.h>
#include <quire/platform/Unloading.h>
#include <quire/session/Mutex.h>

namespace Quire {

/// Those that are not destroyed yet, for the end of the process to find.
class QueueListThread::Workers
{
public:
    static Workers &all()
    {
        static auto *const workers = makeAll(); // never destroyed: a worker that hangs outlives the static objects
        return *workers;
    }

    void add(QueueListThread *worker)
    {
        const MutexLocker lock(m_mutex);
        m_loads.emplace(worker, worker->m_load);
        if (m_isEnding)
            worker->m_load->cancel();
    }
    void remove(QueueListThread *worker)
    {
        const MutexLocker lock(m_mutex);
        m_loads.erase(worker);
    }

private:
    Workers() = default;

    static Workers *makeAll()
    {
        Platform::stayLoaded();
        Platform::beforeProcessEnds<endAll>();
        return new Workers;
    }

    /// What is static goes after this: a worker must not meet it half gone. Nor should a system that ends the threads
    /// of a process do that to one that allocates memory.
    static void endAll() { all().end(); }

    /// A worker that hangs in the server gets the moment, and no more.
    void end()
    {
        if (Platform::isEndingProcess())
            return; // too late: all other threads have ended, wherever they were, and with whatever locks they held
        const QDeadlineTimer deadline(moment);
        // Without the mutex: a host's Completed may make, collect and destroy queues.
        for (const std::shared_ptr<QueueLoad> &load : cancelAll())
            load->waitForEnd(deadline);
        const MutexLocker lock(m_mutex);
        for (const auto &[worker, load] : m_loads) {
            if (worker != QThread::currentThread())
                worker->wait(deadline); // for the thread's very end, where it still frees memory
        }
    }

    /// Also those that begin from now on; gives those that have begun.
    std::vector<std::shared_ptr<QueueLoad>> cancelAll()
    {
        std::vector<std::shared_ptr<QueueLoad>> loads;
        const MutexLocker lock(m_mutex);
        m_isEnding = true;
        for (const auto &[worker, load] : m_loads) {
            load->cancel();
            if (load.get() != QueueLoad::completing()) // this thread may be a worker itself
                loads.push_back(load);
        }
        return loads;
    }

    static constexpr int moment = 2000; // ms

    Mutex<LockRank::RunningWorkers> m_mutex;
    std::map<QueueListThread *, std::shared_ptr<QueueLoad>> m_loads QUIRE_GUARDED_BY(m_mutex);
    bool m_isEnding QUIRE_GUARDED_BY(m_mutex) = false; // the process is
};

// NOLINTNEXTLINE(performance-unnecessary-value-param): a reference of its own while the call lasts
QueueListThread::QueueListThread(std::shared_ptr<QueueLoad> load, Orvex::IQueuePtr server, int position,
                                 std::shared_ptr<QMutex> gate)
    : m_load(std::move(load))
    , m_gate(std::move(gate))
    , m_server(server)
    , m_position(position)
{
    Workers::all().add(this);
}

QueueListThread::~QueueListThread()
{
    Workers::all().remove(this);
}

bool QueueListThread::begin()
{
    start(QThread::InheritPriority);
    // Whether a thread that never ran counts as finished differs between systems; a load ends in one that ran.
    return isRunning() || m_load->hasEnded();
}

void QueueListThread::run()
{
    const Platform::Apartment apartment;
    bool ended = true;
    try {
        ended = readChunks();
    } catch (...) {
        m_load->fail(currentFailure());
    }
    m_server = nullptr; // while the apartment lasts
    if (ended && !m_load->isCancelled()) {
        exit(0);
        m_load->complete(); // cppcheck-suppress unreachableCode; QThread::exit returns
    }
    m_load->end();
}

/// False when the load was cancelled before its end.
bool QueueListThread::readChunks()
{
    while (!m_load->isCancelled()) {
        m_gate->lock();
        m_gate->unlock();
        if (m_load->loadChunk(m_server, m_position))
            return true;
    }
    return false;
}

int QueueListThread::retire(std::unique_ptr<QueueListThread> worker)
{
    // Never destroyed: a worker that hangs until the process ends must not meet the end of its own thread object.
    static Mutex<LockRank::RetiredWorkers, QBasicMutex> mutex;
    static auto *const retired = new std::vector<std::unique_ptr<QueueListThread>>;
    // Kept until the next time, when they are past their very end: one that says that it has finished may still be
    // about to leave the mutex of its QThread.
    static auto *const ended = new std::vector<std::unique_ptr<QueueListThread>>;
    std::vector<std::unique_ptr<QueueListThread>> gone; // destroyed without the mutex
    int running = 0;
    {
        const MutexLocker lock(mutex);
        gone.swap(*ended);
        if (worker)
            retired->push_back(std::move(worker));
        const auto firstEnded = std::stable_partition(retired->begin(), retired->end(),
                                                      [](const auto &candidate) { return !candidate->isFinished(); });
        std::move(firstEnded, retired->end(), std::back_inserter(*ended));
        retired->erase(firstEnded, retired->end());
        running = static_cast<int>(retired->size());
    }
    for (const std::unique_ptr<QueueListThread> &candidate : gone)
        candidate->wait(); // the next time may have come at once
    return running;
}

} // namespace Quire
