// The sink: how it connects, whose references count, and what a callback may do.

#include <gmock/gmock.h>

#include <future>
#include <stdexcept>

#include <quire/session/QuireCOM.h>

#include "notify/HitArray.h"
#include "notify/NotifyFixture.h"
#include "support/DebugCapture.h"
#include "support/QtPrinting.h"

#if defined(__GLIBC__) && !defined(__SANITIZE_ADDRESS__) && !defined(__SANITIZE_THREAD__)
#define QUIRE_COUNTS_MEMORY
#include <malloc.h>
#endif

using namespace Quire;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

namespace {

class NotificationTest : public NotifyTest
{
protected:
    void startAll() { NotificationInit(Told::onResults, Told::onQueue, Told::onLogout); }
    void startNone() { NotificationInit(nullptr, nullptr, nullptr); }

    Told told;
};

ULONG references(IUnknown *object)
{
    object->AddRef();
    return object->Release();
}

#ifdef QUIRE_COUNTS_MEMORY
qint64 memoryInUse()
{
    const struct mallinfo2 info = mallinfo2();
    return static_cast<qint64>(info.uordblks) + static_cast<qint64>(info.hblkhd);
}
#endif

} // namespace

// ---- connecting -----------------------------------------------------------------------------------------------------

TEST_F(NotificationTest, ConnectsToBothPoints)
{
    startNone();
    EXPECT_EQ(fast.advised, 1);
    EXPECT_EQ(fast2.advised, 1);
    EXPECT_TRUE(searcher->CanSearch());
}

TEST_F(NotificationTest, BothPointsGetTheSameSink)
{
    startNone();
    const IUnknownPtr one = fast.sink;
    const IUnknownPtr other = fast2.sink;
    EXPECT_EQ(one.GetInterfacePtr(), other.GetInterfacePtr());
}

TEST_F(NotificationTest, MakesTheSearcher)
{
    SearchProbe::destroy();
    startNone();
    ASSERT_NE(Search::TheSearcher, nullptr);
    EXPECT_TRUE(Search::TheSearcher->CanSearch());
}

TEST_F(NotificationTest, InitAgainKeepsTheSinkAndItsConnections)
{
    startNone();
    Orvex::_IAnNotifyFast *const first = sink();
    startAll();
    EXPECT_EQ(sink(), first);
    EXPECT_EQ(fast.advised, 1);
    EXPECT_EQ(fast2.advised, 1);
}

TEST_F(NotificationTest, InitAgainReplacesTheCallbacks)
{
    startAll();
    sink()->raw_OnNotifyLogout();
    EXPECT_EQ(told.logouts, 1);
    NotificationInit(nullptr, Told::onQueue, nullptr);
    sink()->raw_OnNotifyLogout();
    EXPECT_EQ(told.logouts, 1);
    sink2()->raw_OnNotifySpecial(3);
    EXPECT_THAT(told.queues, ElementsAre(3));
}

TEST_F(NotificationTest, WithoutTheOlderPointSearchesCannotWork)
{
    hasFast = false;
    startAll();
    EXPECT_FALSE(searcher->CanSearch());
    EXPECT_EQ(fast2.advised, 1);
    sink2()->raw_OnNotifySpecial(3);
    EXPECT_THAT(told.queues, ElementsAre(3));
}

TEST_F(NotificationTest, WithoutTheNewerPointSearchesWork)
{
    hasFast2 = false;
    startNone();
    EXPECT_TRUE(searcher->CanSearch());
}

TEST_F(NotificationTest, ARefusedAdviseIsNotUnadvised)
{
    fast.answer = E_FAIL;
    startNone();
    EXPECT_FALSE(searcher->CanSearch());
    EXPECT_EQ(fast2.advised, 1);
    NotificationRelease();
    EXPECT_THAT(fast.unadvised, IsEmpty());
    EXPECT_THAT(fast2.unadvised, ElementsAre(1u));
    EXPECT_EQ(fast.references, 1);
}

TEST_F(NotificationTest, AdviseThatAnswersMoreThanZeroCounts)
{
    fast.answer = S_FALSE;
    startNone();
    EXPECT_TRUE(searcher->CanSearch());
    NotificationRelease();
    EXPECT_THAT(fast.unadvised, ElementsAre(1u));
}

TEST_F(NotificationTest, ARaisingPointEndsTheConnectingQuietly)
{
    fast.raises = true;
    startNone();
    EXPECT_FALSE(searcher->CanSearch());
    EXPECT_EQ(fast2.advised, 0);
    EXPECT_EQ(fast.references, 1);
}

TEST_F(NotificationTest, WhatWasConnectedBeforeARaiseStays)
{
    fast2.raises = true;
    startNone();
    EXPECT_TRUE(searcher->CanSearch());
    NotificationRelease();
    EXPECT_THAT(fast.unadvised, ElementsAre(1u));
}

TEST_F(NotificationTest, ARaisingUnadviseIsSwallowed)
{
    startNone();
    fast.raises = true;
    fast2.raises = true;
    NotificationRelease();
    EXPECT_THAT(fast.unadvised, ElementsAre(1u));
    EXPECT_THAT(fast2.unadvised, ElementsAre(1u));
    EXPECT_EQ(fast.references, 1);
    EXPECT_EQ(fast2.references, 1);
}

TEST_F(NotificationTest, ASuccessWithoutAPointIsNoPoint)
{
    server.findConnectionPoint = [](REFIID, IConnectionPoint **point) {
        *point = nullptr;
        return S_OK;
    };
    startNone();
    EXPECT_FALSE(searcher->CanSearch());
}

TEST_F(NotificationTest, AServerWithoutPointsIsFine)
{
    server.connectionPoints = false;
    startAll();
    EXPECT_FALSE(searcher->CanSearch());
    NotificationRelease();
}

TEST_F(NotificationTest, ARefusedContainerIsFine)
{
    server.refuse(FakeServer::Kind::Bare, __uuidof(IConnectionPointContainer), E_FAIL);
    startAll();
    EXPECT_FALSE(searcher->CanSearch());
}

TEST_F(NotificationTest, AServerThatIsNotLoadedIsFine)
{
    unload();
    startAll();
    EXPECT_FALSE(searcher->CanSearch());
}

TEST_F(NotificationTest, WithoutASessionNoneIsMade)
{
    QuireCOM::UnloadCOM();
    startAll();
    EXPECT_EQ(QuireCOM::TheQuireCOM, nullptr);
    EXPECT_FALSE(searcher->CanSearch());
}

TEST_F(NotificationTest, AFailedConnectionClearsAnEarlierFlag)
{
    searcher->SetNotification(true);
    hasFast = false;
    startNone();
    EXPECT_FALSE(searcher->CanSearch());
}

TEST_F(NotificationTest, NoServerCallIsMadeUnderTheAccessLock)
{
    const auto noLock = [] { EXPECT_NE(QuireCOM::m_LockThreadID, GetCurrentThreadId()); };
    fast.onAdvise = noLock;
    fast.onUnadvise = noLock;
    startNone();
    NotificationRelease();
    EXPECT_EQ(fast.unadvised.size(), 1);
}

// ---- ending ---------------------------------------------------------------------------------------------------------

TEST_F(NotificationTest, ReleaseDisconnectsBothPoints)
{
    startNone();
    NotificationRelease();
    EXPECT_THAT(fast.unadvised, ElementsAre(1u));
    EXPECT_THAT(fast2.unadvised, ElementsAre(1u));
    EXPECT_EQ(fast.references, 1);
    EXPECT_EQ(fast2.references, 1);
}

TEST_F(NotificationTest, OneReleaseIsEnoughAfterTwoInits)
{
    startNone();
    startAll();
    NotificationRelease();
    EXPECT_EQ(fast.unadvised.size(), 1);
}

TEST_F(NotificationTest, ReleaseWithoutInitDoesNothing)
{
    NotificationRelease();
    startNone();
    NotificationRelease();
    NotificationRelease();
    EXPECT_EQ(fast.unadvised.size(), 1);
}

TEST_F(NotificationTest, InitAfterReleaseConnectsAnew)
{
    startNone();
    NotificationRelease();
    startAll();
    EXPECT_EQ(fast.advised, 2);
    EXPECT_EQ(fast2.advised, 2);
    sink()->raw_OnNotifyLogout();
    EXPECT_EQ(told.logouts, 1);
    NotificationRelease();
    EXPECT_THAT(fast.unadvised, ElementsAre(1u, 2u));
}

TEST_F(NotificationTest, SearchesAreStillPossibleAfterRelease)
{
    startNone();
    NotificationRelease();
    EXPECT_TRUE(searcher->CanSearch());
}

TEST_F(NotificationTest, AReferenceOfTheServersKeepsNothingButMemory)
{
    startAll();
    Orvex::_IAnNotifyFastPtr kept = fast.sink;
    const Orvex::_IAnNotifyFast2Ptr kept2 = fast2.sink;
    NotificationRelease();
    EXPECT_EQ(fast.unadvised.size(), 1);
    const HitArray hits({});
    EXPECT_EQ(kept->raw_OnNotifyLogout(), 0);
    EXPECT_EQ(kept->raw_OnNotifySearchResults(7, hits, 0, 1), 0);
    EXPECT_EQ(kept2->raw_OnNotifySpecial(3), 0);
    EXPECT_EQ(told.logouts, 0);
    EXPECT_THAT(told.queues, IsEmpty());
    EXPECT_THAT(told.results, IsEmpty());
    EXPECT_EQ(references(kept), 2u);
    kept = nullptr; // kept2 is the last
}

TEST_F(NotificationTest, AnEndedSinkLeavesSearchesAlone)
{
    startNone();
    SearchList *const list = start(7);
    const Orvex::_IAnNotifyFastPtr old = fast.sink;
    NotificationRelease();
    const HitArray hits({{text("Storm"), text("NEWS"), {1, 2, 3}, {}}});
    old->raw_OnNotifySearchResults(7, hits, 1, 1);
    EXPECT_EQ(list->Size(), 0);
    EXPECT_FALSE(list->IsSearchComplete());
}

TEST_F(NotificationTest, AnOldSinkDoesNotDisturbTheNewOne)
{
    startAll();
    Orvex::_IAnNotifyFastPtr old = fast.sink;
    NotificationRelease();
    startAll();
    old = nullptr;
    sink()->raw_OnNotifyLogout();
    EXPECT_EQ(told.logouts, 1);
    NotificationRelease();
    EXPECT_EQ(fast.unadvised.size(), 2);
}

TEST_F(NotificationTest, EventsDuringUnadviseAreIgnored)
{
    startAll();
    fast.onUnadvise = [this] {
        EXPECT_EQ(sink()->raw_OnNotifyLogout(), 0);
        std::async(std::launch::async, [this] {
            sink()->AddRef();
            sink()->raw_OnNotifyLogout();
            sink()->Release();
        }).get();
    };
    NotificationRelease();
    EXPECT_EQ(told.logouts, 0);
}

TEST_F(NotificationTest, ThePointMayLetGoOnAnotherThreadAfterUnadvise)
{
    startNone();
    Orvex::_IAnNotifyFast *const raw = fast.sink;
    raw->AddRef();
    NotificationRelease();
    EXPECT_EQ(std::async(std::launch::async, [raw] { return raw->Release(); }).get(), 0u);
}

TEST_F(NotificationTest, AReconnectedSessionNeedsNoticesAnew)
{
    startNone();
    QuireCOM::GetQuireCOM(true);
    EXPECT_EQ(fast.advised, 1);
    NotificationRelease();
    startAll();
    EXPECT_EQ(fast.advised, 2);
    sink()->raw_OnNotifyLogout();
    EXPECT_EQ(told.logouts, 1);
}

TEST_F(NotificationTest, TenThousandRoundsLeaveNothingBehind)
{
    const auto rounds = [this](int count) {
        for (int i = 0; i < count; ++i) {
            session = QuireCOM::GetQuireCOM(true);
            startAll();
            sink()->raw_OnNotifyLogout();
            NotificationRelease();
        }
        fast.unadvised = {};
        fast2.unadvised = {};
        server.forgetCalls();
    };
    const FrameworkLog log; // or it would fill the screen
    rounds(100);
#ifdef QUIRE_COUNTS_MEMORY
    const qint64 before = memoryInUse();
    const int messagesBefore = log.messages().size();
#endif
    rounds(9900);
    EXPECT_EQ(told.logouts, 10000);
    EXPECT_EQ(fast.references, 1);
    EXPECT_EQ(fast2.references, 1);
#ifdef QUIRE_COUNTS_MEMORY
    // Beside the test's own log lines.
    const qint64 logged = (log.messages().size() - messagesBefore) * qint64{1024};
    EXPECT_LT(memoryInUse() - before, logged);
#endif
}

// ---- the object -----------------------------------------------------------------------------------------------------

TEST_F(NotificationTest, AnswersForIUnknownAndBothEventInterfaces)
{
    startNone();
    for (const IID &iid : {__uuidof(IUnknown), __uuidof(Orvex::_IAnNotifyFast), __uuidof(Orvex::_IAnNotifyFast2)}) {
        const ULONG before = references(sink());
        void *object = nullptr;
        EXPECT_EQ(sink()->QueryInterface(iid, &object), S_OK);
        EXPECT_EQ(object, sink());
        EXPECT_EQ(references(sink()), before + 1);
        sink()->Release();
    }
}

TEST_F(NotificationTest, AnswersForNothingElse)
{
    startNone();
    for (const IID &iid : {__uuidof(IDispatch), __uuidof(IConnectionPoint), __uuidof(Orvex::ISignon4), GUID{}}) {
        const ULONG before = references(sink());
        void *object = this;
        EXPECT_EQ(sink()->QueryInterface(iid, &object), static_cast<HRESULT>(0x80004002));
        EXPECT_EQ(object, nullptr);
        EXPECT_EQ(references(sink()), before);
    }
}

TEST_F(NotificationTest, QueryWithoutAPlaceIsRefused)
{
    startNone();
    EXPECT_EQ(sink()->QueryInterface(__uuidof(IUnknown), nullptr), E_POINTER);
}

TEST_F(NotificationTest, AddRefAndReleaseAnswerTheNewCount)
{
    startNone();
    const ULONG before = references(sink());
    EXPECT_EQ(before, 3u); // the owner and two points
    EXPECT_EQ(sink()->AddRef(), before + 1);
    EXPECT_EQ(sink()->Release(), before);
}

TEST_F(NotificationTest, DispatchDoesNothingAndSucceeds)
{
    startAll();
    UINT count = 77;
    EXPECT_EQ(sink()->GetTypeInfoCount(&count), 0);
    EXPECT_EQ(count, 77u);
    ITypeInfo *info = nullptr;
    EXPECT_EQ(sink()->GetTypeInfo(0, 0, &info), 0);
    EXPECT_EQ(info, nullptr);
    EXPECT_EQ(sink()->GetIDsOfNames(GUID{}, nullptr, 0, 0, nullptr), 0);
    EXPECT_EQ(sink()->Invoke(1, GUID{}, 0, 1, nullptr, nullptr, nullptr, nullptr), 0);
    EXPECT_EQ(told.logouts, 0);
}

TEST_F(NotificationTest, CountsReferencesOfManyThreads)
{
    startAll();
    const ULONG before = references(sink());
    std::vector<std::future<void>> threads;
    threads.reserve(4);
    for (int i = 0; i < 4; ++i) {
        threads.push_back(std::async(std::launch::async, [this] {
            for (int round = 0; round < 10000; ++round) {
                void *object = nullptr;
                sink()->QueryInterface(__uuidof(Orvex::_IAnNotifyFast2), &object);
                sink()->Release();
            }
        }));
    }
    for (auto &thread : threads)
        thread.get();
    EXPECT_EQ(references(sink()), before);
}

// ---- events ---------------------------------------------------------------------------------------------------------

TEST_F(NotificationTest, ALogoutIsLoggedAndTold)
{
    startAll();
    const FrameworkLog log;
    EXPECT_EQ(sink()->raw_OnNotifyLogout(), 0);
    EXPECT_EQ(told.logouts, 1);
    ASSERT_EQ(log.messages().size(), 1);
    const LogMessage message = log.messages().at(0);
    EXPECT_EQ(message.type, QtDebugMsg);
    EXPECT_EQ(message.text, text("Logout Notification"));
    EXPECT_EQ(message.file, text("quireNotification"));
    EXPECT_EQ(message.function, text("Notification::raw_OnNotifyLogout"));
}

TEST_F(NotificationTest, ALogoutWithoutACallbackIsLoggedOnly)
{
    startNone();
    const FrameworkLog log;
    server.forgetCalls();
    EXPECT_EQ(sink()->raw_OnNotifyLogout(), 0);
    EXPECT_EQ(log.texts(), QStringList(text("Logout Notification")));
    EXPECT_EQ(server.calls(), QStringList());
}

TEST_F(NotificationTest, AQueueUpdateIsLoggedAndTold)
{
    startAll();
    const FrameworkLog log;
    EXPECT_EQ(sink2()->raw_OnNotifySpecial(-12), 0);
    EXPECT_THAT(told.queues, ElementsAre(-12));
    ASSERT_EQ(log.messages().size(), 1);
    const LogMessage message = log.messages().at(0);
    EXPECT_EQ(message.type, QtDebugMsg);
    EXPECT_EQ(message.text, text("Queue update: -12"));
    EXPECT_EQ(message.file, text("quireNotification"));
    EXPECT_EQ(message.function, text("Notification::raw_OnNotifySpecial"));
}

TEST_F(NotificationTest, ResultsAreToldUnchanged)
{
    startAll();
    const HitArray hits({{text("Storm"), text("NEWS"), {1, 2, 3}, {}}});
    EXPECT_EQ(sink()->raw_OnNotifySearchResults(7, hits, 12, 1), 0);
    EXPECT_EQ(sink()->raw_OnNotifySearchResults(-8, nullptr, -1, -2), 0);
    ASSERT_EQ(told.results.size(), 2u);
    EXPECT_EQ(told.results[0].searchId, 7);
    EXPECT_EQ(told.results[0].array, static_cast<SAFEARRAY *>(hits));
    EXPECT_EQ(told.results[0].totalHits, 12);
    EXPECT_EQ(told.results[0].finished, 1);
    EXPECT_EQ(told.results[1].searchId, -8);
    EXPECT_EQ(told.results[1].array, nullptr);
    EXPECT_EQ(told.results[1].totalHits, -1);
    EXPECT_EQ(told.results[1].finished, -2);
}

TEST_F(NotificationTest, WithACallbackResultsNeverReachTheSearcher)
{
    startAll();
    SearchList *const list = start(7);
    const HitArray hits({{text("Storm"), text("NEWS"), {1, 2, 3}, {}}});
    sink()->raw_OnNotifySearchResults(7, hits, 1, 1);
    EXPECT_FALSE(searcher->IsSearchDone(7));
    EXPECT_EQ(list->Size(), 0);
    searcher->StopSearch(7);
    EXPECT_TRUE(searcher->IsSearchDone(7));
}

// ---- what callbacks may do ------------------------------------------------------------------------------------------

TEST_F(NotificationTest, WhatACallbackThrowsStaysHere)
{
    startAll();
    told.hook = [] { throw std::runtime_error("callback"); };
    EXPECT_EQ(sink()->raw_OnNotifyLogout(), 0);
    EXPECT_EQ(sink2()->raw_OnNotifySpecial(3), 0);
    EXPECT_EQ(sink()->raw_OnNotifySearchResults(7, nullptr, 0, 1), 0);
    told.hook = [] { throw _com_error(E_FAIL); };
    EXPECT_EQ(sink()->raw_OnNotifyLogout(), 0);
    EXPECT_EQ(told.logouts, 2);
}

TEST_F(NotificationTest, EachCallbackMayEndTheNotices)
{
    told.hook = NotificationRelease;
    const auto logout = [this] { return fast.sink.GetInterfacePtr()->raw_OnNotifyLogout(); };
    const auto results = [this] { return fast.sink.GetInterfacePtr()->raw_OnNotifySearchResults(7, nullptr, 0, 1); };
    const auto queue = [this] { return sink2()->raw_OnNotifySpecial(3); };
    startAll();
    EXPECT_EQ(logout(), 0);
    startAll();
    EXPECT_EQ(results(), 0);
    startAll();
    EXPECT_EQ(queue(), 0);
    EXPECT_EQ(fast.unadvised.size(), 3);
    EXPECT_EQ(fast2.unadvised.size(), 3);
    EXPECT_EQ(fast.sink.GetInterfacePtr(), nullptr);
}

TEST_F(NotificationTest, ACallbackMayStartTheNoticesAnew)
{
    told.hook = [this] {
        NotificationRelease();
        startNone();
    };
    startAll();
    sink()->raw_OnNotifyLogout();
    EXPECT_EQ(fast.advised, 2);
    sink()->raw_OnNotifyLogout();
    EXPECT_EQ(told.logouts, 1);
}

TEST_F(NotificationTest, TheLogoutCallbackMayStartASearch)
{
    startAll();
    SearchList *list = nullptr;
    told.hook = [&] { list = start(9); };
    sink()->raw_OnNotifyLogout();
    ASSERT_NE(list, nullptr);
    EXPECT_EQ(list->SearchID(), 9);
}

TEST_F(NotificationTest, TheResultsCallbackMayDeleteTheSearch)
{
    startAll();
    start(7);
    told.hook = [this] { searcher->DeleteSearch(7); };
    sink()->raw_OnNotifySearchResults(7, nullptr, 1, 0);
    EXPECT_EQ(SearchProbe::count(), 0);
}

TEST_F(NotificationTest, ACallbackDuringAdviseMayEndTheNotices)
{
    told.hook = NotificationRelease;
    fast.onAdvise = [this] { sink()->raw_OnNotifyLogout(); };
    startAll();
    EXPECT_EQ(told.logouts, 1);
    EXPECT_THAT(fast.unadvised, ElementsAre(1u));
    EXPECT_EQ(fast2.unadvised.size(), fast2.advised);
    EXPECT_EQ(fast.references, 1);
    EXPECT_EQ(fast2.references, 1);
    fast.onAdvise = nullptr;
    startAll();
    EXPECT_EQ(fast.advised, 2);
}

TEST_F(NotificationTest, ACallbackDuringAdviseMayStartTheNoticesAnew)
{
    told.hook = [this] {
        if (told.logouts > 1)
            return;
        NotificationRelease();
        startAll();
    };
    fast.onAdvise = [this] {
        if (fast.advised == 1)
            sink()->raw_OnNotifyLogout();
    };
    startAll();
    EXPECT_EQ(fast.advised, 2);
    EXPECT_THAT(fast.unadvised, ElementsAre(1u)); // the sink that was given up while it connected
    EXPECT_TRUE(searcher->CanSearch());
    EXPECT_NE(start(9), nullptr);
    sink()->raw_OnNotifyLogout();
    EXPECT_EQ(told.logouts, 2);
}

TEST_F(NotificationTest, ASinkThatIsGivenUpDuringAdviseLeavesTheFlagAlone)
{
    searcher->SetNotification(true);
    told.hook = NotificationRelease;
    fast.onAdvise = [this] { sink()->raw_OnNotifyLogout(); };
    startAll();
    EXPECT_TRUE(searcher->CanSearch()); // as after any release
}

TEST_F(NotificationTest, NoCallbackBeginsOnceTheNoticesHaveEndedDuringTheLogLine)
{
    FrameworkLog log;
    log.onMessage = [] { std::async(std::launch::async, NotificationRelease).get(); };
    startAll();
    EXPECT_EQ(sink()->raw_OnNotifyLogout(), 0);
    startAll();
    EXPECT_EQ(sink2()->raw_OnNotifySpecial(3), 0);
    EXPECT_EQ(log.texts(), (QStringList{text("Logout Notification"), text("Queue update: 3")}));
    EXPECT_EQ(told.logouts, 0);
    EXPECT_THAT(told.queues, IsEmpty());
}
