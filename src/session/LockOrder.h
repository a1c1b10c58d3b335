#pragma once

/// \file
/// In which order the locks of the library are taken, and the check that they are.

#include <QString>

#include <quire/platform/Export.h>

namespace Quire {

/// The locks of the library: this is the table of their order. A thread that holds one of them takes only those that
/// stand below it. The leaves come last of all: a thread that holds one takes none.
///
/// Calls of the server are made under ServerAccess, and a server may tell its news out of such a call, on the same
/// thread: hence Searcher and List come after it. Nobody calls the server while holding the lock of a list. The gate of
/// a queue's loads has no place here: a worker takes and releases it with no other lock held.
enum class LockRank {
    UpdateManager, ///< QueueUpdateMgr: the server is asked to report while it is held
    ServerAccess,  ///< QuireCOMMutex
    Searcher,      ///< Search
    List,          ///< ListMutexLocker; which of several lists a thread locks first is the host's affair
    Workers,       ///< the workers of a Queue
    UpdateState,   ///< the numbers of QueueUpdateMgr
    // Leaves.
    ActiveLockers,  ///< who holds the lock of a list
    ConnectInfo,    ///< who is signed on where
    Connections,    ///< the connections of Notification
    Forms,          ///< FormCache
    HandleCache,    ///< DispatchCache
    LoadEnd,        ///< whether a load has ended
    LoadIncrement,  ///< Queue::sLoadIncrement
    LocalStoryPath, ///< LocalStory::sZEKOFile
    Notices,        ///< the one sink
    QueueState,     ///< whether a Queue is complete
    RetiredWorkers, ///< workers that hang
    RunningWorkers, ///< workers that run
    SearcherLists,  ///< the lists of Search
    SearcherMaking, ///< the one searcher
    WorkersInside,  ///< whether a worker is inside a queue
};

/// What a thread is about to do under a lock, for messages: the label of a lock object, where the lock has those.
/// Refers to the texts of the lock object, which outlives it.
struct LockLabel
{
    const char *literal = nullptr; ///< The label; null when there is none.
    const QString *text = nullptr; ///< in place of the literal
};

/// Knows which locks each thread holds and speaks up when one is taken out of order, before the thread waits for it:
/// `lock order broken: "NEW LABEL" (NAME OF THE LOCK) taken under "HELD LABEL" (NAME OF THE LOCK)` as a critical
/// message, after which the process is aborted.
///
/// The locks report to it where QUIRE_CHECK_LOCK_ORDER is defined, as it is in Debug builds; elsewhere none of this
/// costs anything. Attempts that do not wait may be made in any order. Any thread may call any operation.
class QUIRE_EXPORT LockOrder
{
public:
    /// Whether the locks report.
    static constexpr bool isChecked =
#ifdef QUIRE_CHECK_LOCK_ORDER
        true;
#else
        false;
#endif

    /// The calling thread is going to wait for \a lock. Speaks up when it may not, also when it holds that very lock,
    /// unless that is \a recursive.
    static void wants(LockRank rank, const void *lock, const LockLabel &label = {}, bool recursive = false);
    /// The calling thread has \a lock. At most 64 locks are remembered for a thread, of more the first.
    static void has(LockRank rank, const void *lock, const LockLabel &label = {});
    /// The calling thread gives \a lock up. Nothing happens when it does not have it: a list may go on another thread
    /// than the one that has locked it.
    static void gives(const void *lock);
    /// How many locks the calling thread holds.
    static int held();

    /// Is told what went wrong in place of the end of the process.
    using Handler = void (*)(const QString &message);
    /// Sets the handler, for tests; null brings the usual end back.
    static void setHandler(Handler handler);
};

} // namespace Quire
