#include <quire/notify/Notification.h>

#include <QMessageLogger>

#include <utility>
#include <vector>

#include <quire/notify/RecordArray.h>
#include <quire/notify/Search.h>
#include <quire/notify/SearchHitReader.h>
#include <quire/platform/Unloading.h>
#include <quire/session/QuireCOM.h>
#include <quire/tree/QueueUpdateMgr.h>

namespace Quire {

Mutex<LockRank::Notices, QBasicMutex> Notification::sMutex;
Notification *Notification::sNotification = nullptr;

namespace {

QMessageLogger noticeLogger(const char *function)
{
    return QMessageLogger("quireNotification", 0, function);
}

void unadvise(const IConnectionPointPtr &point, bool advised, DWORD cookie)
{
    if (!advised)
        return;
    try {
        point->Unadvise(cookie);
    } catch (...) {
        // A server that raises here is as good as gone.
    }
}

} // namespace

// ---- one sink at a time ---------------------------------------------------------------------------------------------

void NotificationInit(SearchResultsCallback searchResults, QueueUpdateCallback queueUpdate, LogoutCallback logout)
{
    Search::GetSearcher();               // before the first event may look for it
    Orvex::_IAnNotifyFast2Ptr reference; // the sink may be released while it still connects
    Notification *sink = nullptr;
    {
        const MutexLocker guard(Notification::sMutex);
        const bool isNew = !Notification::sNotification;
        if (isNew)
            Notification::sNotification = new Notification;
        sink = Notification::sNotification;
        sink->SetCallbacks(searchResults, queueUpdate, logout);
        if (!isNew)
            return;
        reference = sink;
    }
    sink->Connect();
}

void NotificationRelease()
{
    Notification *sink = nullptr;
    {
        const MutexLocker guard(Notification::sMutex);
        sink = std::exchange(Notification::sNotification, nullptr);
    }
    if (!sink)
        return;
    sink->Disconnect();
    sink->Release();
}

Notification::Notification()
{
    Platform::stayLoaded();
    AddRef();
}

Notification::~Notification() = default;

void Notification::SetCallbacks(SearchResultsCallback searchResults, QueueUpdateCallback queueUpdate,
                                LogoutCallback logout)
{
    m_SearchCB = searchResults;
    m_QueueCB = queueUpdate;
    m_LogoutCB = logout;
}

// ---- connecting -----------------------------------------------------------------------------------------------------

/// The sink may be given up meanwhile, also by a callback out of Advise, and another one take its place: whether that
/// one is connected is not told by this.
void Notification::Connect()
{
    bool advised = false;
    try {
        QuireCOM *const session = QuireCOM::TheQuireCOM;
        const IConnectionPointContainerPtr container(session ? session->GetConnectionPoint() : nullptr, false);
        if (container) {
            advised = Advise(*container, __uuidof(Orvex::_IAnNotifyFast), m_ConnPoint, m_Cookie, m_Advised);
            Advise(*container, __uuidof(Orvex::_IAnNotifyFast2), m_ConnPoint2, m_Cookie2, m_Advised2);
        }
    } catch (...) {
        // What is connected stays.
    }
    Search *const searcher = Search::GetSearcher();
    const MutexLocker guard(sMutex);
    if (sNotification == this)
        searcher->SetNotification(advised);
}

/// Keeps the point that is found, and its cookie when it takes the sink. True when it does.
bool Notification::Advise(IConnectionPointContainer &container, REFIID iid, IConnectionPointPtr &point, DWORD &cookie,
                          bool &advised)
{
    IConnectionPointPtr found;
    if (FAILED(container.FindConnectionPoint(iid, &found)) || !found)
        return false;
    DWORD newCookie = 0;
    const bool taken = SUCCEEDED(found->Advise(this, &newCookie));
    {
        const MutexLocker guard(m_Mutex);
        if (!m_Ended) {
            point = found;
            cookie = newCookie;
            advised = taken;
            return taken;
        }
    }
    unadvise(found, taken, newCookie);
    return false;
}

void Notification::Disconnect()
{
    IConnectionPointPtr point;
    IConnectionPointPtr point2;
    DWORD cookie = 0;
    DWORD cookie2 = 0;
    bool advised = false;
    bool advised2 = false;
    {
        const MutexLocker guard(m_Mutex);
        cookie = m_Cookie;
        cookie2 = m_Cookie2;
        m_Ended = true;
        std::swap(point, m_ConnPoint);
        std::swap(point2, m_ConnPoint2);
        std::swap(advised, m_Advised);
        std::swap(advised2, m_Advised2);
    }
    unadvise(point, advised, cookie);
    unadvise(point2, advised2, cookie2);
}

// ---- the object -----------------------------------------------------------------------------------------------------

HRESULT Notification::QueryInterface(REFIID iid, void **object)
{
    if (!object)
        return E_POINTER;
    *object = nullptr;
    if (!IsEqualGUID(iid, __uuidof(IUnknown)) && !IsEqualGUID(iid, __uuidof(Orvex::_IAnNotifyFast)) &&
        !IsEqualGUID(iid, __uuidof(Orvex::_IAnNotifyFast2)))
        return E_NOINTERFACE;
    *object = static_cast<Orvex::_IAnNotifyFast2 *>(this);
    AddRef();
    return S_OK;
}

ULONG Notification::AddRef()
{
    return ++m_RefCount;
}

ULONG Notification::Release()
{
    const ULONG left = --m_RefCount;
    if (left == 0)
        delete this;
    return left;
}

HRESULT Notification::GetTypeInfoCount(UINT * /*count*/)
{
    return S_OK;
}

HRESULT Notification::GetTypeInfo(UINT /*index*/, LCID /*locale*/, ITypeInfo ** /*info*/)
{
    return S_OK;
}

HRESULT Notification::GetIDsOfNames(REFIID /*iid*/, LPOLESTR * /*names*/, UINT /*count*/, LCID /*locale*/,
                                    DISPID * /*ids*/)
{
    return S_OK;
}

HRESULT Notification::Invoke(DISPID /*id*/, REFIID /*iid*/, LCID /*locale*/, WORD /*flags*/,
                             DISPPARAMS * /*parameters*/, VARIANT * /*result*/, EXCEPINFO * /*exception*/,
                             UINT * /*argument*/)
{
    return S_OK;
}

// ---- events ---------------------------------------------------------------------------------------------------------

/// Handles an event unless the notices have ended. Holds a reference meanwhile, since a callback may end them, and lets
/// no exception out to the server.
template<class Event>
HRESULT Notification::Receive(const Event &event)
{
    const Orvex::_IAnNotifyFast2Ptr reference(this);
    if (m_Ended)
        return S_OK;
    try {
        event();
    } catch (...) {
        // The server could do nothing with it.
    }
    return S_OK;
}

HRESULT Notification::raw_OnNotifyLogout()
{
    return Receive([this] {
        noticeLogger("Notification::raw_OnNotifyLogout").debug("Logout Notification");
        const LogoutCallback callback = m_LogoutCB;
        if (callback && !m_Ended) // a line of the log may take long
            callback();
    });
}

HRESULT Notification::raw_OnNotifySearchResults(LONG searchId, SAFEARRAY *results, LONG totalHits, LONG finished)
{
    return Receive([=] {
        if (const SearchResultsCallback callback = m_SearchCB)
            callback(searchId, results, totalHits, finished);
        else if (Search *const searcher = Search::GetSearcherIfMade())
            AddResults(*searcher, searchId, results, totalHits, finished);
    });
}

void Notification::AddResults(Search &searcher, LONG searchId, SAFEARRAY *results, LONG totalHits, LONG finished)
{
    if (!searcher.TakesResults(searchId))
        return;
    {
        const RecordArray<Orvex::SearchHit> hits(results);
        if (!hits.isLocked())
            return;
        AddHits(searcher, searchId, hits);
    }
    if (totalHits == 0 || finished >= 1)
        searcher.SearchComplete(searchId, totalHits);
}

/// In batches, so that the searcher's mutex is held for a small part of the time that it takes. What cannot be read or
/// kept ends the hits of this event, not the search.
void Notification::AddHits(Search &searcher, LONG searchId, const RecordArray<Orvex::SearchHit> &hits)
try {
    SearchHitReader reader;
    std::vector<Item> batch;
    for (const Orvex::SearchHit *next = hits.begin(); next != hits.end();) {
        next = reader.readBatch(next, hits.end(), batch);
        searcher.AddSearchResults(searchId, batch);
    }
} catch (...) {
    return;
}

HRESULT Notification::raw_OnNotifySpecial(LONG queueId)
{
    return Receive([=] {
        noticeLogger("Notification::raw_OnNotifySpecial").debug("Queue update: %d", static_cast<int>(queueId));
        if (m_Ended) // a line of the log may take long
            return;
        if (const QueueUpdateCallback callback = m_QueueCB)
            callback(queueId);
        else
            QueueUpdateMgr::Update(queueId);
    });
}

} // namespace Quire
