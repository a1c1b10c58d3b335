#pragma once

/// \file
/// A queue whose stories a model shows. Not part of the public surface.

#include <atomic>
#include <memory>
#include <vector>

#include <quire/tree/Queue.h>

namespace Quire {

class WatchedQueue;

/// What the models that show one queue share. The server's reports know queues by their numbers only: the first object
/// that takes one takes it from all others, and the first that goes ends the reports for all. Any thread, but for
/// what belongs to the ServerThread.
class QueueWatch
{
public:
    /// The one of that number. On the ServerThread.
    static std::shared_ptr<QueueWatch> of(qint32 queueId);

    /// How often the queue has changed so far.
    int changes() const { return m_changes; }
    void noteChange() { ++m_changes; }

    /// \name On the ServerThread
    /// \{
    void add(WatchedQueue *queue) { m_queues.push_back(queue); }
    void remove(WatchedQueue *queue);
    /// Has the reports go on for those that are left after one has gone. They read the queue anew, also when the server
    /// refuses.
    void goOn();
    /// \}

private:
    std::atomic<int> m_changes{0};
    std::vector<WatchedQueue *> m_queues;
};

/// A queue that misses no change while it loads: the library forgets what was reported before a load has ended, and a
/// chunk that was read early may be outdated by then.
class WatchedQueue : public Queue
{
public:
    /// The queue that \a handle is; begins to load it. Destroyed on the ServerThread whoever lets go of it. On that
    /// thread; raises when it is none.
    static std::shared_ptr<WatchedQueue> open(const IDispatchPtr &handle);
    ~WatchedQueue() override;

    /// Notes what has been reported until then.
    void SetUpdate(bool on) override;

    /// Takes what has been reported for all that show the queue.
    void takeReport();
    /// How often the queue has changed so far.
    int changes() const { return m_watch->changes(); }
    /// The same before the first story was read.
    int changesAtFirst() const { return m_changesAtFirst; }

    /// The list's lock, for a ListMutexLocker.
    ListMutex *mutex() const { return listMutex().get(); }

private:
    Q_DISABLE_COPY(WatchedQueue)

    explicit WatchedQueue(const IDispatchPtr &handle);
    static void end(WatchedQueue *queue);

    std::shared_ptr<QueueWatch> m_watch;
    int m_changesAtFirst;
};

} // namespace Quire
