#include "ServerThread.h"

#include <QDeadlineTimer>
#include <QMutex>
#include <QMutexLocker>
#include <QThread>
#include <QWaitCondition>

#include <deque>
#include <utility>

#include <quire/platform/Apartment.h>
#include <quire/platform/Unloading.h>

namespace Quire {

namespace {

class Runner;

/// What the callers and the thread share.
struct Jobs
{
    QMutex mutex; // a leaf; guards what follows
    QWaitCondition idle;
    std::deque<std::function<void()>> waiting;
    bool running = false;
    std::unique_ptr<Runner> runner;                    // the last one, which may have ended
    std::unique_ptr<Runner> previous;                  // which may still be about to leave the mutex of its QThread
    QDeadlineTimer end{QDeadlineTimer::Forever};       // no job begins after that
    bool isEnding() const { return !end.isForever(); } // the process is
};

void endAll();

Jobs *makeJobs()
{
    Platform::stayLoaded();
    Platform::beforeProcessEnds<endAll>();
    return new Jobs;
}

/// Never destroyed: a thread that hangs until the process ends still finds it.
Jobs &jobs()
{
    static auto *const all = makeJobs();
    return *all;
}

/// The next job; an empty one ends the thread.
std::function<void()> takeNext()
{
    Jobs &all = jobs();
    const QMutexLocker lock(&all.mutex);
    if (all.waiting.empty() || all.end.hasExpired()) {
        all.running = false;
        all.idle.wakeAll();
        return {};
    }
    std::function<void()> job = std::move(all.waiting.front());
    all.waiting.pop_front();
    return job;
}

void perform(const std::function<void()> &job) noexcept
{
    try {
        job();
    } catch (...) {
        // Nobody waits for it: jobs that tell how they ended catch for themselves.
    }
}

class Runner : public QThread
{
protected:
    void run() override
    {
        const Platform::Apartment apartment;
        while (const std::function<void()> job = takeNext())
            perform(job); // and lets go of what it holds before the next
    }
};

/// Makes sure that a thread takes what waits. False when the system gives none, or the process ends. Under the mutex.
bool begin(Jobs &all)
{
    if (all.running || all.end.hasExpired())
        return all.running && !all.end.hasExpired();
    if (all.runner)
        all.runner->wait(); // past its last job: it only leaves
    all.previous = std::exchange(all.runner, std::make_unique<Runner>());
    all.runner->start();
    all.running = all.runner->isRunning(); // it cannot have ended already: that takes the mutex
    if (!all.running)
        all.runner.reset();
    return all.running;
}

/// What is static goes after this: the thread must not meet it half gone. What somebody has set is still saved, if that
/// takes no longer than the moment; what hangs in the server gets no more.
void endAll()
{
    if (Platform::isEndingProcess())
        return; // too late: all other threads have ended, wherever they were, and with whatever locks they held
    const int moment = 2000; // ms
    Jobs &all = jobs();
    {
        const QMutexLocker lock(&all.mutex);
        if (all.isEnding())
            return;
        all.end.setRemainingTime(moment);
    }
    ServerThread::waitUntilIdle(moment);
    const QMutexLocker lock(&all.mutex);
    all.end.setRemainingTime(0);
}

} // namespace

bool ServerThread::post(std::function<void()> job)
{
    Jobs &all = jobs();
    const QMutexLocker lock(&all.mutex);
    all.waiting.push_back(std::move(job));
    if (begin(all))
        return true;
    job = std::move(all.waiting.back()); // goes without the mutex
    all.waiting.pop_back();
    return false;
}

void ServerThread::postPatiently(std::function<void()> job)
{
    Jobs &all = jobs();
    const QMutexLocker lock(&all.mutex);
    all.waiting.push_back(std::move(job));
    begin(all);
}

bool ServerThread::waitUntilIdle(int milliseconds)
{
    const QDeadlineTimer deadline(milliseconds);
    Jobs &all = jobs();
    const QMutexLocker lock(&all.mutex);
    if (!all.waiting.empty())
        begin(all);
    while (all.running && !deadline.hasExpired())
        all.idle.wait(&all.mutex, deadline);
    return !all.running && all.waiting.empty() && (!all.runner || all.runner->wait(deadline));
}

bool ServerThread::isEnding()
{
    Jobs &all = jobs();
    const QMutexLocker lock(&all.mutex);
    return all.isEnding();
}

void ServerThread::endBeforeLoads()
{
    Platform::beforeProcessEnds<endAll>(); // what is registered last comes first
}

} // namespace Quire
