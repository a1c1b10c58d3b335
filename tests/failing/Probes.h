#pragma once

#include <QMutex>

#include <quire/notify/Search.h>
#include <quire/tree/QueueUpdateMgr.h>

namespace Quire {

/// The searcher's mutexes, and its end.
struct SearchProbe
{
    static QMutex &mutex() { return Search::TheSearcher->m_Mutex.native(); }
    static QMutex &listsMutex() { return Search::TheSearcher->m_ListsMutex.native(); }
    static void destroy() { delete Search::TheSearcher; }
};

/// The update manager's mutexes, and what it watches.
struct QueueUpdateMgrProbe
{
    static QRecursiveMutex &mutex() { return QueueUpdateMgr::sManager.m_mutex.native(); }
    static QMutex &stateMutex() { return QueueUpdateMgr::sManager.m_stateMutex.native(); }
    static std::size_t watched()
    {
        const QMutexLocker guard(&stateMutex());
        return QueueUpdateMgr::sManager.m_watchedQueues.size() + QueueUpdateMgr::sManager.m_pendingQueues.size();
    }
};

} // namespace Quire
