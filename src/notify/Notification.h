#pragma once

/// \file
/// What the server tells by itself: hits of searches, changed queues, the end of the user's session.

#include <atomic>

#include <quire/orvex/Orvex.h>
#include <quire/platform/Export.h>
#include <quire/session/Mutex.h>

namespace Quire {

class Search;
template<typename Record>
class RecordArray;

/// Gets the results of searches in place of the library's own lists: the number of the search, a one-dimensional array
/// of Orvex::SearchHit records that stays the server's (may be null), the number of hits found so far, and at least 1
/// when no more will follow.
using SearchResultsCallback = void (*)(long searchId, SAFEARRAY *results, long totalHits, long finished);
/// Gets the number of a watched queue that has changed, in place of QueueUpdateMgr.
using QueueUpdateCallback = void (*)(long queueId);
/// Is told that the server has ended the user's session.
using LogoutCallback = void (*)();

/// The sink that the server's events arrive at. Made by NotificationInit, at most one at a time; given up by
/// NotificationRelease.
///
/// It has one owner, the pair of functions below: when that lets go, it disconnects from the server and hears nothing
/// any more. References that the server holds, at its connection points or while it calls, only keep its memory. They
/// may be taken and given back, and events may arrive, on any thread and also while it is being disconnected.
class Notification final : public Orvex::_IAnNotifyFast2
{
public:
    /// The sink for IUnknown and the two event interfaces, with a reference; E_NOINTERFACE and null for any other,
    /// IDispatch included: events come through the interfaces' own operations only. E_POINTER for a null \a object.
    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void **object) override;
    /// \name The number of references after the call
    /// \{
    ULONG STDMETHODCALLTYPE AddRef() override;  ///< One more.
    ULONG STDMETHODCALLTYPE Release() override; ///< One less; the last one destroys the sink.
    /// \}

    /// \name Nothing is done: 0
    /// \{
    HRESULT STDMETHODCALLTYPE GetTypeInfoCount(UINT *count) override;                          ///< 0.
    HRESULT STDMETHODCALLTYPE GetTypeInfo(UINT index, LCID locale, ITypeInfo **info) override; ///< 0.
    /// 0.
    HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID iid, LPOLESTR *names, UINT count, LCID locale, DISPID *ids) override;
    /// 0.
    HRESULT STDMETHODCALLTYPE Invoke(DISPID id, REFIID iid, LCID locale, WORD flags, DISPPARAMS *parameters,
                                     VARIANT *result, EXCEPINFO *exception, UINT *argument) override;
    /// \}

    /// \name Events; always 0. Nothing is done once the notices have ended.
    /// \{

    /// The user has been logged out.
    HRESULT STDMETHODCALLTYPE raw_OnNotifyLogout() override;
    /// Hits of the search \a searchId. Without a callback they are added to its list in Search, which is completed when
    /// \a totalHits is 0 or \a finished at least 1. Unknown and done searches are ignored, and so are an array that
    /// cannot be locked, with its numbers, and the elements of one that holds anything but hits.
    HRESULT STDMETHODCALLTYPE raw_OnNotifySearchResults(LONG searchId, SAFEARRAY *results, LONG totalHits,
                                                        LONG finished) override;
    /// The queue \a queueId has changed.
    HRESULT STDMETHODCALLTYPE raw_OnNotifySpecial(LONG queueId) override;

    /// \}

private:
    Q_DISABLE_COPY(Notification)
    // They are exported where they are declared in full: a compiler for Windows wants that to come last.
    friend void NotificationInit(SearchResultsCallback, QueueUpdateCallback, LogoutCallback);
    friend void NotificationRelease();

    /// With one reference, its owner's.
    Notification();
    ~Notification();

    void Connect() QUIRE_NO_THREAD_SAFETY_ANALYSIS; // hands its members to Advise, which takes the mutex
    bool Advise(IConnectionPointContainer &container, REFIID iid, IConnectionPointPtr &point, DWORD &cookie,
                bool &advised);
    void Disconnect();
    void SetCallbacks(SearchResultsCallback searchResults, QueueUpdateCallback queueUpdate, LogoutCallback logout);
    template<class Event>
    HRESULT Receive(const Event &event);

    static void AddResults(Search &searcher, LONG searchId, SAFEARRAY *results, LONG totalHits, LONG finished);
    static void AddHits(Search &searcher, LONG searchId, const RecordArray<Orvex::SearchHit> &hits);

    static Mutex<LockRank::Notices, QBasicMutex> sMutex;
    static Notification *sNotification QUIRE_GUARDED_BY(sMutex); // the one reference that counts is held here

    std::atomic<ULONG> m_RefCount{0};
    Mutex<LockRank::Connections> m_Mutex; // a leaf: nothing is called while it is held
    DWORD m_Cookie QUIRE_GUARDED_BY(m_Mutex) = 0;
    DWORD m_Cookie2 QUIRE_GUARDED_BY(m_Mutex) = 0;
    IConnectionPointPtr m_ConnPoint QUIRE_GUARDED_BY(m_Mutex);
    IConnectionPointPtr m_ConnPoint2 QUIRE_GUARDED_BY(m_Mutex);
    bool m_Advised QUIRE_GUARDED_BY(m_Mutex) = false;
    bool m_Advised2 QUIRE_GUARDED_BY(m_Mutex) = false;
    // Free: each by itself.
    std::atomic<SearchResultsCallback> m_SearchCB{nullptr};
    std::atomic<QueueUpdateCallback> m_QueueCB{nullptr};
    std::atomic<LogoutCallback> m_LogoutCB{nullptr};
    std::atomic<bool> m_Ended{false}; // set under m_Mutex
};

/// Starts the notices of the server: connects to the session that there is now, and has each notice told to the
/// callback given here. Any callback may be null. Results of searches without a callback go into the lists of Search,
/// changed queues to QueueUpdateMgr::Update, and a logout is written to the debug log only.
///
/// While there are notices a further call only replaces the three callbacks. The connection is made once: after
/// signing on with a new session call NotificationRelease and NotificationInit again. Failures are silent; when the
/// server refuses, Search::CanSearch stays false.
///
/// Callbacks are called on whatever thread the server uses, also on several at once. The thread may be inside a call of
/// the library and hold the server access lock. A callback may call the library, this and NotificationRelease included,
/// but does not wait for other threads, calls neither QueueUpdateMgr::BeginQueueUpdates nor EndQueueUpdates, destroys
/// no queue with live refresh, makes, refreshes and loads none while Queue::useThreading is off, and does not end the
/// session: it hands such work over to another thread. What a callback throws is dropped.
///
/// Any thread may call this.
QUIRE_EXPORT void NotificationInit(SearchResultsCallback searchResults, QueueUpdateCallback queueUpdate,
                                   LogoutCallback logout);

/// Ends the notices. When this returns a callback may still be running on another thread, or just be about to be
/// called: the module that has the callbacks must stay until the server can no longer be delivering. Nothing happens
/// when there are no notices. Any thread may call this.
QUIRE_EXPORT void NotificationRelease();

} // namespace Quire
