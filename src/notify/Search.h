#pragma once

/// \file
/// Searches over the server's tree.

#include <QAtomicInteger>
#include <QString>

#include <atomic>
#include <memory>
#include <vector>

#include <quire/platform/Export.h>
#include <quire/session/Mutex.h>
#include <quire/tree/Item.h>

namespace Quire {

class ItemList;
class SearchList;
class StartingSearches;

/// Starts and stops searches on the server and keeps one list of hits for each, running or finished.
///
/// There is one instance, which the library owns; NotificationInit makes it, and so does GetSearcher. A search gets its
/// number from the server at once; its hits arrive later, as events, while the notices that NotificationInit asks for
/// are connected. Ask IsSearchDone or the list's HasChanged for news.
///
/// Any thread may call any operation. Whoever holds the lock of a list (AccessSearchResults, ItemList::Lock) may call
/// IsSearchDone, EndAccessSearchResults and the settings only, and must release it before anything else: the searcher's
/// mutex comes first, then the lock of a list.
///
/// No operation reports an error. Search numbers are 32-bit numbers whatever the width of `long`.
class QUIRE_EXPORT Search
{
public:
    /// The instance, null until the first GetSearcher.
    static Search *TheSearcher;
    /// The largest number of hits to ask the server for; 0 or less means no limit. Initially 500. Reads, compares and
    /// copies as the number that it is, on any thread. A search is limited by what stands here when it is started.
    static QAtomicInteger<long> sSearchLimit;

    /// The instance, made on the first call.
    static Search *GetSearcher();
    /// The instance, null until it is made: TheSearcher for any thread, also while another makes it.
    static Search *GetSearcherIfMade();

    /// The value of sSearchLimit.
    static long GetSearchLimit();
    /// Sets sSearchLimit.
    static void SetSearchLimit(long limit);

    /// Whether searches can work: the sink for notices is connected to the server. False until that has happened once.
    bool CanSearch();
    /// Sets what CanSearch answers. NotificationInit does that.
    void SetNotification(bool connected);

    /// Has the server search the queue or folder \a path for \a query. Returns the list that gets the hits, which stays
    /// the searcher's until DeleteSearch; null when searches cannot work (no server call is made), when there is no
    /// session or when the server refuses.
    SearchList *StartSearch(const QString &path, const QString &query);
    /// Has the server stop the search \a id and marks it as done, with the hits that it has. Nothing happens for an
    /// unknown or done search, or while searches cannot work.
    void StopSearch(long id);
    /// Stops the search \a id if it is still running, and destroys its list, which nobody may be using. Nothing happens
    /// for an unknown search. While searches cannot work the list is kept.
    void DeleteSearch(long id);

    /// Locks the hits of the search \a id for the calling thread, waiting as long as that takes, and lends them until
    /// EndAccessSearchResults. Null for an unknown search.
    ItemList *AccessSearchResults(long id);
    /// Unlocks what AccessSearchResults lent. Nothing happens for an unknown search.
    void EndAccessSearchResults(long id);
    /// True when the search \a id has ended or was stopped, and for an unknown one. Waits for no list and no server.
    bool IsSearchDone(long id);

private:
    Q_DISABLE_COPY(Search)
    friend class Notification;
    friend struct SearchProbe; // the tests look at the workers below

    Search();
    /// Destroys all lists and sets TheSearcher to null.
    ~Search();

    /// Whether events of the search \a id are worth reading: it is running, or it may be one that is just being
    /// started, whose number StartSearch does not know yet.
    bool TakesResults(long id);
    /// Moves \a items to the hits of the search \a id; they are left alone when there is no such search.
    void AddSearchResults(long id, std::vector<Item> &items);
    /// Marks the search \a id as done with \a totalHits found on the server, sorts its hits and drops double ones.
    void SearchComplete(long id, long totalHits);
    /// Stops the search of \a list if it is running and lets the list go without destroying it; the caller owns it from
    /// then on. Nothing happens for null or a list that is not the searcher's, or while searches cannot work.
    void RemoveSearch(SearchList *list);
    /// Marks the search as done when it was running and searches can work. True when it did: then the server must be
    /// told to stop it, after m_Mutex is released, since it may answer with an event that waits for that mutex.
    bool _StopSearch(long id) QUIRE_REQUIRES(m_Mutex);
    bool _StopSearch(SearchList *list) QUIRE_REQUIRES(m_Mutex);
    /// Index in m_Lists of the first list with that number, or of that list; -1 when there is none.
    int GetSearchListIndex(long id) const;
    int GetSearchListIndex(const SearchList *list) const;

    SearchList *Find(long id) const;
    SearchList *FindForEvent(long id) QUIRE_REQUIRES(m_Mutex);
    std::unique_ptr<SearchList> Take(int index) QUIRE_REQUIRES(m_Mutex);
    SearchList *Add(quint64 start, qint32 id, const QString &text);

    std::atomic<bool> m_CanSearch{false};
    Mutex<LockRank::Searcher> m_Mutex;
    mutable Mutex<LockRank::SearcherLists> m_ListsMutex; // a leaf: nothing is called while it is held
    // In start order. Changed under both mutexes, read under either, which the analysis cannot express: who holds a
    // list's lock may take m_ListsMutex but not wait for m_Mutex, under which the lock of a list is waited for.
    std::vector<std::unique_ptr<SearchList>> m_Lists;
    const std::unique_ptr<StartingSearches> m_Starting QUIRE_GUARDED_BY(m_ListsMutex);
};

} // namespace Quire
