#pragma once

#include <functional>
#include <memory>

namespace Newsroom {

/// The server's own thread, on which events go out to the sinks, one after the other in the order of post().
///
/// The thread starts with the first event. Any thread may call any operation, also from inside an event.
class Delivery
{
public:
    /// One call of a sink.
    using Event = std::function<void()>;

    Delivery();

    /// As close().
    ~Delivery();

    Delivery(const Delivery &) = delete;
    Delivery &operator=(const Delivery &) = delete;

    /// Queues an event; after close() it is dropped. An exception that leaves the event is dropped, too.
    void post(Event event);

    /// Holds the events back until resume(); one that runs goes on.
    void pause();
    /// Lets events go out again.
    void resume();

    /// Waits until no event is queued or runs; false when there still is one after that time. From inside an event,
    /// while paused and after close() it does not wait.
    bool waitUntilIdle(int milliseconds) const;

    /// Drops the queued events and ends the thread, after the event that runs; from inside an event it does not wait
    /// for that one.
    void close();

private:
    struct State;

    static void run(const std::shared_ptr<State> &state);

    const std::shared_ptr<State> m_state; // shared with the thread, which may outlive this object
};

} // namespace Newsroom
