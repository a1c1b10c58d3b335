#pragma once

/// \file
/// What one model has the server do. Not part of the public surface.

#include <QObject>

#include <functional>
#include <initializer_list>
#include <memory>

#include <quire/platform/Automation.h>

namespace Quire {

/// What \a call raises, always a failure; S_OK when it raises nothing.
HRESULT failureOf(const std::function<void()> &call);

/// Has jobs run on the ServerThread, and what comes of them on the thread of a model. When this goes, nothing of it
/// reaches the model any more, whatever still runs; it waits for nothing. Belongs to the model's thread.
class ServerWork
{
    class Mailbox;

public:
    /// What is to be done with a job's result, on the model's thread.
    using Delivery = std::function<void()>;

    /// How long a model stays at what it is at: slots may have it turn to something else, which takes another
    /// ServerWork, or destroy it. Who emits asks before going on. Of the model's thread.
    class Turn
    {
    public:
        explicit Turn(const ServerWork &work)
            : m_mailbox(work.m_mailbox)
        {}
        bool isOver() const;
        /// Takes one step after the other, each of which may emit, until it is over.
        void take(std::initializer_list<std::function<void()>> steps) const;

    private:
        std::shared_ptr<Mailbox> m_mailbox;
    };

    /// Keeps results waiting as long as it exists: slots that hear of a change of the rows may run an event loop before
    /// all of the change has been made.
    class Hold
    {
    public:
        explicit Hold(const ServerWork &work);
        ~Hold();
        Hold(const Hold &) = delete;
        Hold &operator=(const Hold &) = delete;

    private:
        const std::shared_ptr<Mailbox> m_mailbox;
    };

    explicit ServerWork(QObject *model);
    ~ServerWork();
    ServerWork(const ServerWork &) = delete;
    ServerWork &operator=(const ServerWork &) = delete;

    /// Runs \a job and then its result, or \a failed with the HRESULT of what it raised, E_OUTOFMEMORY also when the
    /// system gives no thread for it. Either of the two comes later, out of the event loop; a job that has not begun
    /// when this or the process goes never does.
    void run(std::function<Delivery()> job, std::function<void(HRESULT)> failed);

    /// The same for what has to be done even if this goes, or the process ends, before it has begun.
    void runAnyway(std::function<Delivery()> job, std::function<void(HRESULT)> failed);

    /// Whether there is a Hold.
    bool isHeld() const;

private:
    void post(std::function<Delivery()> job, std::function<void(HRESULT)> failed, bool anyway);

    const std::shared_ptr<Mailbox> m_mailbox;
};

} // namespace Quire
