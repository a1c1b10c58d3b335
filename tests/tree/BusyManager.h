#pragma once

#include <future>
#include <utility>

#include <quire/tree/Queue.h>
#include <quire/tree/QueueUpdateMgr.h>

/// Stays in the first SetUpdate(true) after its own load, so in the manager, until it is let go.
class BlockingQueue : public Quire::Queue
{
public:
    BlockingQueue(const IDispatchPtr &object, std::promise<void> &inside, std::promise<void> &leave)
        : Quire::Queue(object)
        , m_inside(inside)
        , m_leave(leave)
    {}

    void SetUpdate(bool on) override
    {
        if (on) {
            m_inside.set_value();
            m_leave.get_future().wait();
        }
        Quire::Queue::SetUpdate(on);
    }

private:
    std::promise<void> &m_inside;
    std::promise<void> &m_leave;
};

/// Another thread that is registering a live queue: it has the manager's mutex but not the access lock, so that workers
/// come as far as the manager.
class BusyManager
{
public:
    explicit BusyManager(const IDispatchPtr &liveQueue)
        : m_queue(withoutThreading(liveQueue), m_inside, m_leave)
        , m_registering(std::async(std::launch::async, [this] { Quire::QueueUpdateMgr::BeginQueueUpdates(&m_queue); }))
    {
        m_inside.get_future().wait();
        Quire::Queue::useThreading = true;
    }
    ~BusyManager() { finish(); }

    /// Lets the thread go on.
    void leave()
    {
        if (!std::exchange(m_isLeaving, true))
            m_leave.set_value();
    }
    /// Lets the thread go on and waits for its end.
    void finish()
    {
        leave();
        if (m_registering.valid())
            m_registering.get();
    }

private:
    Q_DISABLE_COPY(BusyManager)

    static const IDispatchPtr &withoutThreading(const IDispatchPtr &object)
    {
        Quire::Queue::useThreading = false;
        return object;
    }

    std::promise<void> m_inside;
    std::promise<void> m_leave;
    bool m_isLeaving = false;
    BlockingQueue m_queue;
    std::future<void> m_registering;
};
