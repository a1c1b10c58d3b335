#include <quire/newsroom/server/Delivery.h>

#include <chrono>
#include <condition_variable>
#include <deque>
#include <mutex>
#include <thread>

#include <quire/platform/Automation.h>

namespace Newsroom {

struct Delivery::State
{
    std::mutex mutex; // guards what follows; a leaf
    std::condition_variable changed;
    std::deque<Event> events;
    std::thread thread;
    std::thread::id threadId; // stays when the thread is joined or detached
    bool running = false;
    bool paused = false;
    bool closed = false;

    bool isIdle() const { return events.empty() && !running; }
};

namespace {

/// The thread belongs to no user interface, so it enters the apartment in which any thread may call.
class Apartment
{
public:
    Apartment()
        : m_entered(SUCCEEDED(CoInitializeEx(nullptr, COINIT_MULTITHREADED)))
    {}
    ~Apartment()
    {
        if (m_entered)
            CoUninitialize();
    }
    Apartment(const Apartment &) = delete;
    Apartment &operator=(const Apartment &) = delete;

private:
    const bool m_entered;
};

} // namespace

Delivery::Delivery()
    : m_state(std::make_shared<State>())
{}

Delivery::~Delivery()
{
    close();
}

void Delivery::post(Event event)
{
    const std::lock_guard<std::mutex> lock(m_state->mutex);
    if (m_state->closed)
        return;
    m_state->events.push_back(std::move(event));
    if (!m_state->thread.joinable()) {
        m_state->thread = std::thread([state = m_state] { run(state); });
        m_state->threadId = m_state->thread.get_id();
    }
    m_state->changed.notify_all();
}

void Delivery::pause()
{
    const std::lock_guard<std::mutex> lock(m_state->mutex);
    m_state->paused = true;
}

void Delivery::resume()
{
    const std::lock_guard<std::mutex> lock(m_state->mutex);
    m_state->paused = false;
    m_state->changed.notify_all();
}

bool Delivery::waitUntilIdle(int milliseconds) const
{
    std::unique_lock<std::mutex> lock(m_state->mutex);
    const auto mustNotWait = [this] {
        return m_state->closed || m_state->paused || m_state->threadId == std::this_thread::get_id();
    };
    m_state->changed.wait_for(lock, std::chrono::milliseconds(milliseconds),
                              [&] { return m_state->isIdle() || mustNotWait(); });
    return m_state->isIdle();
}

void Delivery::close()
{
    std::deque<Event> dropped; // what the events hold may call anything when it goes, so it goes without the mutex
    std::thread thread;
    {
        const std::lock_guard<std::mutex> lock(m_state->mutex);
        m_state->closed = true;
        dropped.swap(m_state->events);
        thread.swap(m_state->thread);
        m_state->changed.notify_all();
    }
    if (!thread.joinable())
        return;
    if (thread.get_id() == std::this_thread::get_id())
        thread.detach();
    else
        thread.join();
}

void Delivery::run(const std::shared_ptr<State> &state)
{
    const Apartment apartment;
    std::unique_lock<std::mutex> lock(state->mutex);
    for (;;) {
        state->changed.wait(lock, [&state] { return state->closed || (!state->paused && !state->events.empty()); });
        if (state->closed)
            return;
        Event event = std::move(state->events.front());
        state->events.pop_front();
        state->running = true;
        lock.unlock();
        try {
            event();
            event = nullptr;
        } catch (...) { // NOLINT(bugprone-empty-catch): a sink's exception is not the next sink's business
        }
        lock.lock();
        state->running = false;
        state->changed.notify_all();
    }
}

} // namespace Newsroom
