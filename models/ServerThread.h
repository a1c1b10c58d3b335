#pragma once

/// \file
/// The thread on which models call the server. Not part of the public surface.

#include <functional>
#include <memory>

namespace Quire {

/// One thread for all models: the server takes one call at a time anyway. It begins with the first job and ends with
/// the last one, so nothing has to be shut down; one that hangs in the server holds up the jobs behind it and nobody
/// else. Any thread may call this.
///
/// From the first job on the models' library stays in memory until the process ends. The end of the process waits a
/// moment for the jobs that there are.
class ServerThread
{
public:
    /// Has \a job run, after those before it, by a thread that has joined the automation library. What the job throws
    /// is dropped. False, without running it, when the system gives no thread or the process has ended.
    static bool post(std::function<void()> job);

    /// The same for what must not be forgotten: without a thread it waits for the next one that there is.
    static void postPatiently(std::function<void()> job);

    /// Whether all jobs are done and the thread has ended, waiting for that at most so long.
    static bool waitUntilIdle(int milliseconds);

    /// The process ends: whoever only wants to know something is not going to hear it.
    static bool isEnding();
    /// Has the end of the process end this thread before the loads of queues that have begun so far, since it may begin
    /// another meanwhile.
    static void endBeforeLoads();

    /// Owns \a object, and has \a destroy end it on the thread whoever lets go of it last: ending an object of the
    /// server's may take as long as a call, and ending a long list takes its time, too.
    template<typename Object, typename Destroy = std::default_delete<Object>>
    static std::shared_ptr<Object> own(std::unique_ptr<Object> object, Destroy destroy = Destroy())
    {
        return {object.release(), [destroy](Object *last) { postPatiently([last, destroy] { destroy(last); }); }};
    }
};

} // namespace Quire
