#pragma once

/// \file
/// A queue of stories.

#include <QDeadlineTimer>
#include <QMutex>
#include <QString>
#include <QtGlobal>

#include <atomic>
#include <memory>
#include <vector>

#include <quire/orvex/Orvex.h>
#include <quire/platform/Export.h>
#include <quire/session/Mutex.h>
#include <quire/session/StoryID.h>
#include <quire/tree/Directory.h>

namespace Quire {

class Field;
class FormData;
class QueueListThread;
class QueueLoad;
class Story;
class WorkerPresence;

/// The stories of one queue of the server, as items, and what can be done with them.
///
/// A queue can be long, so its list is read in chunks: on a thread of its own while the host shows what has arrived
/// (useThreading), or at once. Loading stops after some stories more than there were (getLoadIncrement); LoadMore goes
/// on. Poll HasChanged to learn that stories arrived, IsComplete to learn that the load has ended.
///
/// The caller owns the queue. All operations but the destructor may be called on any thread at any time, also while a
/// load runs. Neither destroying the queue nor cancelling waits for more than 100 ms for its load, whatever the server
/// does: a load that hangs in a call is abandoned and cleans up after itself. Destroying also waits for a Completed of
/// the host's that is running, for as long as it does, and 50 ms more for the end of its load. Do neither from the
/// queue's own Completed. Destroying a queue with live refresh also has the server end its reports. Where its own load
/// hangs, that is left to the load; else it is a call like any other, which waits for the update manager and the server
/// access lock, and so for as long as somebody else's call hangs: the reports are off when the destructor returns. For
/// the same reason such a queue is neither destroyed nor, without threading, made, refreshed or loaded on while the
/// calling thread holds the server access lock.
///
/// What the server refuses raises `_com_error`, unless said otherwise. During a threaded load it raises nowhere: the
/// load ends, what arrived stays, and GetError tells; so it does when the system has no thread for the load.
class QUIRE_EXPORT Queue : public Directory
{
public:
    /// Load on a thread of the queue's own. Initially true. Also picks the number of stories in a chunk when a queue is
    /// made: 20 with, 100 without.
    static bool useThreading;
    /// How many stories a load adds at most, initially 200. Use the functions below, which any thread may call.
    static qint32 sLoadIncrement;
    /// The value of sLoadIncrement.
    static int getLoadIncrement();
    /// Nothing happens unless \a increment is positive.
    static void setLoadIncrement(int increment);

    /// The queue that \a object is; begins to load it. An empty list without a name for any other object.
    explicit Queue(IDispatchPtr object);
    /// Ends the load and the server's reports; see above for how long that may take. A subclass that overrides
    /// Completed or SetUpdate calls cancelQueueLoad(true) in its own destructor; that gives what runs of them the same
    /// 100 ms, and a Completed that takes longer touches no members of its own after the call of Queue::Completed.
    ~Queue() override;

    bool IsDirectory() override;
    bool IsQueue() override;
    /// Reads the stories anew, in place of a load that is running. Nothing happens without a session. Where it does not
    /// come to a load, since there is no such queue (any more), nobody is signed on or looking it up raises, the load
    /// that runs or was cancelled has ended with that error: IsComplete is true and GetError tells.
    void Refresh() override;
    SearchList *StartSearch(const QString &text) override;

    /// \name Loading
    /// \{

    /// The last threaded load has ended, also when it failed, or when one without a thread came in its place and has
    /// ended. Collects the worker, for whose end it waits up to 100 ms: it may still be in an override of Completed.
    virtual bool IsComplete();
    /// Called by the worker when a load has ended without being cancelled: registers a queue with live refresh for
    /// updates and makes IsComplete true. Overrides call it first. Not called for a load that got no thread. Where the
    /// queue goes, or lets go of the load, while the server has not answered yet, this leaves on the worker by an
    /// exception, which is neither a std::exception nor a _com_error, and so does SetUpdate: let it pass, there is
    /// nothing left to do.
    virtual void Completed();
    /// No worker is running; one that was let go of does not count. Collects the worker.
    virtual bool IsFinished();
    /// The HRESULT with which the last load failed, 0 when it did not, whatever became of those before: E_OUTOFMEMORY
    /// when it got no thread.
    long GetError();
    /// Tells the worker to stop after the chunk that it is reading. With \a wait also lets go of it: after at most 100
    /// ms nothing arrives any more, and the worker calls neither Completed nor SetUpdate. Half of that time is the
    /// worker's to complete a load that it has read. The queue can be refreshed and loaded on afterwards.
    void cancelQueueLoad(bool wait);

    /// \}
    /// \name The queue's form
    /// \{

    /// The fields of the queue's form, in its order: identifier, label as value, flags 0. Empty when there is no form.
    virtual void RetrieveFields(std::vector<Attribute> &out);

    /// \}
    /// \name Stories; the caller owns those that are returned
    /// \{

    /// The story \a id of the list. Null when it is not in the list or for null; see also the next.
    virtual Story *GetStory(const StoryID *id);
    /// The story at \a index of the list, opened. Null without such an item, for one that is marked as locked, when the
    /// server has no story there, and without a session.
    virtual Story *GetStory(int index);
    /// Has the server make a story at \a position. Null when it makes none and without a session.
    virtual Story *CreateStory(int position);
    /// Has the server delete its story number \a index. False when it does not, and without a session or queue. The
    /// list stays as it is.
    virtual bool Delete(int index);
    /// Has the server delete all stories of the queue. False when it does not, and without a session or queue.
    virtual bool DeleteAll();

    /// \}
    /// \name Reports of changes; see QueueUpdateMgr
    /// \{

    /// Turns the server's reports on or off.
    virtual void SetUpdate(bool on);
    /// Whether the server reports changes; false without a session or queue.
    virtual bool GetUpdate();
    /// The queue is to be watched; said by the server when the queue was made.
    virtual bool GetLiveRefresh();

    /// \}

    /// The load stopped at its limit, or failed: there is more to load.
    virtual bool MoreStoriesAvailable();
    /// Loads more if there is more: with threading behind what is there; without, from the first story on again, so
    /// that stories are repeated.
    virtual void LoadMore();

protected:
    /// The form of the queue that \a object is, null when there is none. Owned by FormCache.
    virtual FormData *GetFormA(IDispatchPtr object);
    /// Loads the queue that \a object is, as far as the limit. A load that is running is abandoned first.
    void Populate(IDispatchPtr object) override;
    void Populate() override;

public:
    /// The field of the queue's form called \a name without regard to letter case, null when there is none. Owned by
    /// FormCache.
    Field *FindField(const QString &name);
    /// The queue's number, by which updates name it.
    qint32 QueueID() const { return m_queueId; }

protected:
    /// Reads one chunk of \a queue from \a position on, which moves behind it, into the list. True when there is
    /// nothing more to read for now.
    bool LoadListChunk(Orvex::IQueuePtr queue, int &position);

    /// A worker takes and releases this before each chunk: hold it to make a load pause.
    QMutex &loadGate() { return *m_loadGate; }

private:
    Q_DISABLE_COPY(Queue)
    friend class Directory;
    friend class QueueListThread;
    friend class QueueLoad;
    friend class QueueUpdateMgr;
    friend struct QueueProbe; // the tests look at the workers

    Queue(const IDispatchPtr &object, bool registerNow);

    bool Describe(const IDispatchPtr &object);
    qint32 NextLimit();
    void StartThread(const Orvex::IQueue2Ptr &queue);
    void EndUnable(QueueLoad &load);
    void LoadNow(const Orvex::IQueue2Ptr &queue);
    std::shared_ptr<QueueLoad> StartNow();
    void ReadAll(QueueLoad &load, const Orvex::IQueuePtr &list);
    void EndNow(QueueLoad &load);
    void RegisterIfLoaded();
    QDeadlineTimer AbandonLoad();
    void ShutOutdatedOut();
    static void WaitFor(QueueListThread &worker, const QDeadlineTimer &deadline);
    void LetGo(std::unique_ptr<QueueListThread> worker, const QDeadlineTimer &deadline);
    void Retire(std::unique_ptr<QueueListThread> worker);
    std::unique_ptr<QueueListThread> TakeWorker();
    std::unique_ptr<QueueListThread> TakeWorkerLocked() QUIRE_REQUIRES(m_workerMutex);
    void ForgetEnded() QUIRE_REQUIRES(m_workerMutex);
    void AbandonOutdated();
    static int HangingWorkers();
    void MarkStarted(const QueueLoad *load, bool threaded);
    void MarkComplete(const QueueLoad *load);
    bool IsMarkedComplete();
    quint32 LoadsBegun();
    bool IsAwaited(quint32 loadsBegun);
    void EndAwaited(quint32 loadsBegun, HRESULT error);
    void MarkFailed(const QueueLoad *load, HRESULT error);
    bool SwitchOffLater(const QDeadlineTimer &deadline);
    void StopUpdates(const QDeadlineTimer &deadline);
    bool IsOpenable(int index);
    static Item MakeItem(const IDispatchPtr &handle);
    static void SwitchUpdate(const QString &name, qint32 queueId, bool on);

    // Constant after construction.
    qint32 m_queueId = 0;
    Orvex::QueueIdentifier m_identifier{};
    const qint32 m_chunkSize;
    bool m_liveRefresh = false;
    const std::shared_ptr<QMutex> m_loadGate = std::make_shared<QMutex>();
    const std::shared_ptr<WorkerPresence> m_presence;
    // Of the thread that makes the queue: whether it is registered as soon as it is loaded, or is due to be.
    bool m_registerNow;
    bool m_registrationDue = false;
    // Free: each value by itself.
    std::atomic<qint32> m_loadLimit{0};
    std::atomic<bool> m_moreAvailable{false};
    Mutex<LockRank::QueueState> m_stateMutex;                             // a leaf
    const QueueLoad *m_lastLoad QUIRE_GUARDED_BY(m_stateMutex) = nullptr; // only ever compared
    HRESULT m_loadError QUIRE_GUARDED_BY(m_stateMutex) = S_OK;
    quint32 m_loadsBegun QUIRE_GUARDED_BY(m_stateMutex) = 0;
    enum class Threaded { None, Awaited, Complete };
    Threaded m_threadedLoad QUIRE_GUARDED_BY(m_stateMutex) = Threaded::None; // the last one
    Mutex<LockRank::Workers> m_workerMutex;                                  // comes after the list's lock
    std::unique_ptr<QueueListThread> m_loadThread QUIRE_GUARDED_BY(m_workerMutex);
    int m_workersTaken QUIRE_GUARDED_BY(m_workerMutex) = 0; // and not yet left to themselves
    // Of workers taken out, and those without a worker; they may not have ended.
    std::vector<std::shared_ptr<QueueLoad>> m_outdatedLoads QUIRE_GUARDED_BY(m_workerMutex);
};

} // namespace Quire
