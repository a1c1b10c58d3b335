#include "ServerThread.h"

#include <QDeadlineTimer>
#include <QMutex>
#include <QMutexLocker>
#include <QThread>
#include <QWaitCondition>

#include <deque>
#include <utility>

#include <quire/platform/Apartment.h>

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
    std::unique_ptr<Runner> runner; // the last one, which may have ended
};

/// Never destroyed: a thread that hangs until the process ends still finds it.
Jobs &jobs()
{
    static auto *const all = new Jobs;
    return *all;
}

/// The next job; an empty one ends the thread.
std::function<void()> takeNext()
{
    Jobs &all = jobs();
    const QMutexLocker lock(&all.mutex);
    if (all.waiting.empty()) {
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

} // namespace

void ServerThread::post(std::function<void()> job)
{
    Jobs &all = jobs();
    const QMutexLocker lock(&all.mutex);
    all.waiting.push_back(std::move(job));
    if (all.running)
        return;
    if (all.runner)
        all.runner->wait(); // past its last job: it only leaves
    all.runner = std::make_unique<Runner>();
    all.running = true;
    all.runner->start();
}

bool ServerThread::waitUntilIdle(int milliseconds)
{
    const QDeadlineTimer deadline(milliseconds);
    Jobs &all = jobs();
    const QMutexLocker lock(&all.mutex);
    while (all.running && !deadline.hasExpired())
        all.idle.wait(&all.mutex, deadline);
    return !all.running && (!all.runner || all.runner->wait(deadline));
}

} // namespace Quire
