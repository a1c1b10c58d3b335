#pragma once

/// \file
/// What one model has the server do. Not part of the public surface.

#include <QObject>

#include <functional>
#include <memory>

#include <quire/platform/Automation.h>

namespace Quire {

/// Has jobs run on the ServerThread, and what comes of them on the thread of a model. When this goes, nothing of it
/// reaches the model any more, whatever still runs; it waits for nothing. Belongs to the model's thread.
class ServerWork
{
public:
    /// What is to be done with a job's result, on the model's thread.
    using Delivery = std::function<void()>;

    explicit ServerWork(QObject *model);
    ~ServerWork();
    ServerWork(const ServerWork &) = delete;
    ServerWork &operator=(const ServerWork &) = delete;

    /// Runs \a job and then its result, or \a failed with the HRESULT of what it raised. Either of the two comes later,
    /// out of the event loop; a job that has not begun when this goes never does.
    void run(std::function<Delivery()> job, std::function<void(HRESULT)> failed);

    /// The same for what has to be done even if this goes before it has begun.
    void runAnyway(std::function<Delivery()> job, std::function<void(HRESULT)> failed);

private:
    class Mailbox;
    const std::shared_ptr<Mailbox> m_mailbox;
};

} // namespace Quire
