#include <quire/notify/Search.h>

#include <algorithm>
#include <utility>

#include <quire/notify/StartingSearches.h>
#include <quire/platform/Automation.h>
#include <quire/platform/Secret.h>
#include <quire/session/QuireCOM.h>
#include <quire/tree/SearchList.h>

namespace Quire {

Search *Search::TheSearcher = nullptr;
QAtomicInteger<long> Search::sSearchLimit(500);

namespace {

Mutex<LockRank::SearcherMaking, QBasicMutex> searcherMutex; // guards TheSearcher; nothing is called while it is held

/// Nothing of the password is left when this returns: a Disconnect while the server searches finds it the session's
/// alone and overwrites it.
QString serverName(QuireCOM &session)
{
    QString server;
    QString user;
    QString password;
    session.GetConnectInfo(server, user, password);
    Platform::forget(password); // overwrites it when a Disconnect came in between
    return server;
}

QString queryText(const QString &server, const QString &path, const QString &query)
{
    QString scope = QStringLiteral("[%1]%2").arg(server, path);
    const long limit = Search::GetSearchLimit();
    if (limit > 0)
        scope.prepend(QStringLiteral("MaxFound=%1 ").arg(limit));
    return QStringLiteral("{%1}((%2))").arg(scope, query);
}

/// The number of the new search, 0 when there is none.
qint32 startOnServer(QuireCOM &session, const QString &text)
{
    try {
        return static_cast<qint32>(session.Search(text));
    } catch (const _com_error &) {
        return 0; // not loaded: refused, as far as the host is concerned
    }
}

void stopOnServer(qint32 id)
{
    QuireCOM *const session = QuireCOM::TheQuireCOM;
    if (!session)
        return;
    try {
        session->StopSearch(id);
    } catch (const _com_error &) {
        // Not loaded: there is nothing left to stop.
    }
}

} // namespace

// ---- the one instance and its settings ------------------------------------------------------------------------------

Search::Search()
    : m_Starting(std::make_unique<StartingSearches>())
{}

Search::~Search()
{
    std::vector<std::unique_ptr<SearchList>> lists; // they go without the mutexes
    {
        const MutexLocker guard(m_Mutex);
        const MutexLocker listsGuard(m_ListsMutex);
        lists.swap(m_Lists);
    }
    const MutexLocker instance(searcherMutex);
    TheSearcher = nullptr;
}

Search *Search::GetSearcher()
{
    const MutexLocker guard(searcherMutex);
    if (!TheSearcher)
        TheSearcher = new Search;
    return TheSearcher;
}

Search *Search::GetSearcherIfMade()
{
    const MutexLocker guard(searcherMutex);
    return TheSearcher;
}

long Search::GetSearchLimit()
{
    return sSearchLimit;
}

void Search::SetSearchLimit(long limit)
{
    sSearchLimit = limit;
}

bool Search::CanSearch()
{
    return m_CanSearch;
}

void Search::SetNotification(bool connected)
{
    m_CanSearch = connected;
}

// ---- starting and stopping ------------------------------------------------------------------------------------------

SearchList *Search::StartSearch(const QString &path, const QString &query)
{
    QuireCOM *const session = QuireCOM::TheQuireCOM;
    if (!m_CanSearch || !session)
        return nullptr;
    const QString text = queryText(serverName(*session), path, query);

    quint64 start = 0;
    {
        const MutexLocker guard(m_Mutex);
        const MutexLocker lists(m_ListsMutex);
        start = m_Starting->begin();
    }
    try {
        return Add(start, startOnServer(*session, text), text);
    } catch (...) {
        Add(start, 0, QString());
        throw;
    }
}

/// Ends the start and makes the list of the search that came of it; null when none did.
SearchList *Search::Add(quint64 start, qint32 id, const QString &text)
{
    auto created = id == 0 ? nullptr : std::make_unique<SearchList>(id, text);
    std::unique_ptr<SearchList> early; // goes after the mutexes are released
    const MutexLocker guard(m_Mutex);
    const MutexLocker lists(m_ListsMutex);
    m_Lists.reserve(m_Lists.size() + (created ? 1 : 0));
    early = m_Starting->end(start, id);
    if (!created)
        return nullptr;
    if (early) {
        early->SetName(text);
        created.swap(early);
    }
    m_Lists.push_back(std::move(created));
    return m_Lists.back().get();
}

void Search::StopSearch(long id)
{
    bool wasRunning = false;
    {
        const MutexLocker guard(m_Mutex);
        wasRunning = _StopSearch(id);
    }
    if (wasRunning)
        stopOnServer(static_cast<qint32>(id));
}

void Search::DeleteSearch(long id)
{
    std::unique_ptr<SearchList> list; // destroyed after the mutex is released
    bool wasRunning = false;
    {
        const MutexLocker guard(m_Mutex);
        const int index = GetSearchListIndex(id);
        if (!m_CanSearch || index < 0)
            return;
        wasRunning = _StopSearch(m_Lists[static_cast<std::size_t>(index)].get());
        list = Take(index);
    }
    if (wasRunning)
        stopOnServer(static_cast<qint32>(id));
}

void Search::RemoveSearch(SearchList *list)
{
    bool wasRunning = false;
    qint32 id = 0;
    {
        const MutexLocker guard(m_Mutex);
        const int index = GetSearchListIndex(list);
        if (!m_CanSearch || index < 0)
            return;
        id = list->SearchID();
        wasRunning = _StopSearch(list);
        static_cast<void>(Take(index).release()); // the caller's now
    }
    if (wasRunning)
        stopOnServer(id);
}

bool Search::_StopSearch(long id)
{
    return _StopSearch(Find(id));
}

bool Search::_StopSearch(SearchList *list)
{
    if (!list || !m_CanSearch || list->IsSearchComplete())
        return false;
    list->SetSearchComplete();
    return true;
}

/// Takes the list at \a index out of m_Lists. Under m_Mutex.
std::unique_ptr<SearchList> Search::Take(int index)
{
    const MutexLocker lists(m_ListsMutex);
    std::unique_ptr<SearchList> list = std::move(m_Lists[static_cast<std::size_t>(index)]);
    m_Lists.erase(m_Lists.begin() + index);
    return list;
}

// ---- results --------------------------------------------------------------------------------------------------------

ItemList *Search::AccessSearchResults(long id)
{
    const MutexLocker guard(m_Mutex);
    SearchList *const list = Find(id);
    if (list)
        list->Lock();
    return list;
}

void Search::EndAccessSearchResults(long id)
{
    SearchList *list = nullptr;
    {
        const MutexLocker lists(m_ListsMutex);
        list = Find(id);
    }
    if (list)
        list->Unlock();
}

bool Search::IsSearchDone(long id)
{
    const MutexLocker lists(m_ListsMutex);
    SearchList *const list = Find(id);
    return !list || list->IsSearchComplete();
}

bool Search::TakesResults(long id)
{
    const MutexLocker lists(m_ListsMutex);
    SearchList *const list = Find(id);
    return list ? !list->IsSearchComplete() : m_Starting->takes(static_cast<qint32>(id));
}

void Search::AddSearchResults(long id, std::vector<Item> &items)
{
    const MutexLocker guard(m_Mutex);
    if (SearchList *const list = FindForEvent(id))
        list->AddHits(items);
}

void Search::SearchComplete(long id, long totalHits)
{
    const MutexLocker guard(m_Mutex);
    if (SearchList *const list = FindForEvent(id))
        list->Complete(totalHits);
}

/// The list of the search \a id, or the one that collects its results until it is known. Under m_Mutex.
SearchList *Search::FindForEvent(long id)
{
    if (SearchList *const list = Find(id))
        return list;
    const MutexLocker lists(m_ListsMutex);
    return m_Starting->listFor(static_cast<qint32>(id));
}

// ---- looking up; under either mutex ---------------------------------------------------------------------------------

SearchList *Search::Find(long id) const
{
    const int index = GetSearchListIndex(id);
    return index < 0 ? nullptr : m_Lists[static_cast<std::size_t>(index)].get();
}

int Search::GetSearchListIndex(long id) const
{
    const auto number = static_cast<qint32>(id);
    const auto found =
        std::find_if(m_Lists.begin(), m_Lists.end(), [number](const auto &list) { return list->SearchID() == number; });
    return found == m_Lists.end() ? -1 : static_cast<int>(found - m_Lists.begin());
}

int Search::GetSearchListIndex(const SearchList *list) const
{
    const auto found =
        std::find_if(m_Lists.begin(), m_Lists.end(), [list](const auto &each) { return each.get() == list; });
    return found == m_Lists.end() ? -1 : static_cast<int>(found - m_Lists.begin());
}

} // namespace Quire
