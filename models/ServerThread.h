#pragma once

/// \file
/// The thread on which models call the server. Not part of the public surface.

#include <functional>
#include <memory>

namespace Quire {

/// One thread for all models: the server takes one call at a time anyway. It begins with the first job and ends with
/// the last one, so nothing has to be shut down; one that hangs in the server holds up the jobs behind it and nobody
/// else. Any thread may call this.
class ServerThread
{
public:
    /// Has \a job run, after those before it, by a thread that has joined the automation library. What the job throws
    /// is dropped.
    static void post(std::function<void()> job);

    /// Whether all jobs are done and the thread has ended, waiting for that at most so long.
    static bool waitUntilIdle(int milliseconds);

    /// Owns \a object, and has \a destroy end it on the thread whoever lets go of it last: ending an object of the
    /// server's may take as long as a call, and ending a long list takes its time, too.
    template<typename Object, typename Destroy = std::default_delete<Object>>
    static std::shared_ptr<Object> own(std::unique_ptr<Object> object, Destroy destroy = Destroy())
    {
        return {object.release(), [destroy](Object *last) { post([last, destroy] { destroy(last); }); }};
    }
};

} // namespace Quire
