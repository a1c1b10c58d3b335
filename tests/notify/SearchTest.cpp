// The searcher: what it asks of the server, whose lists it keeps, and who may call it while somebody holds a list.

#include <QElapsedTimer>

#include <gmock/gmock.h>

#include <atomic>
#include <future>
#include <memory>
#include <thread>
#include <vector>

#include <quire/session/QuireCOM.h>
#include <quire/tree/Directory.h>

#include "notify/HitArray.h"
#include "notify/NotifyFixture.h"
#include "support/QtPrinting.h"

using namespace Quire;
using ::testing::ElementsAre;

namespace {

/// A search hit with that sort key.
Item hit(const char *key, const char *name = "")
{
    Item item(text(name), Item_SearchHit);
    item.sortKey = text(key);
    return item;
}

/// Whether another thread could take the list's lock at once.
bool isFree(ItemList &list)
{
    return std::async(std::launch::async,
                      [&list] {
                          const bool locked = list.tryLock();
                          if (locked)
                              list.Unlock();
                          return locked;
                      })
        .get();
}

bool isFree(QMutex &mutex)
{
    return std::async(std::launch::async,
                      [&mutex] {
                          const bool locked = mutex.tryLock();
                          if (locked)
                              mutex.unlock();
                          return locked;
                      })
        .get();
}

/// Waits, generously, until another thread holds the mutex.
bool waitUntilTaken(QMutex &mutex)
{
    QElapsedTimer timer;
    for (timer.start(); timer.elapsed() < 20000; std::this_thread::yield()) {
        if (!mutex.tryLock())
            return true;
        mutex.unlock();
    }
    return false;
}

class SearchTest : public NotifyTest
{
protected:
    QString queryOf(const char *path, const char *query)
    {
        SearchList *const list = searcher->StartSearch(text(path), text(query));
        return list ? list->SearchStr() : QString();
    }
};

} // namespace

// ---- the instance and its settings ----------------------------------------------------------------------------------

TEST_F(SearchTest, ThereIsNoneUntilItIsAskedFor)
{
    SearchProbe::destroy();
    EXPECT_EQ(Search::TheSearcher, nullptr);
    Search *const made = Search::GetSearcher();
    ASSERT_NE(made, nullptr);
    EXPECT_EQ(Search::TheSearcher, made);
    EXPECT_EQ(Search::GetSearcher(), made);
}

TEST_F(SearchTest, FirstCallsFromManyThreadsMakeOne)
{
    SearchProbe::destroy();
    std::vector<std::future<Search *>> calls;
    calls.reserve(8);
    for (int i = 0; i < 8; ++i)
        calls.push_back(std::async(std::launch::async, [] { return Search::GetSearcher(); }));
    for (auto &call : calls)
        EXPECT_EQ(call.get(), Search::GetSearcher());
}

TEST_F(SearchTest, TheLimitIs500AtFirst)
{
    EXPECT_EQ(Search::sSearchLimit, 500);
    EXPECT_EQ(Search::GetSearchLimit(), 500);
}

TEST_F(SearchTest, TheLimitCanBeSetBothWays)
{
    Search::SetSearchLimit(12);
    EXPECT_EQ(Search::sSearchLimit, 12);
    Search::sSearchLimit = 34;
    EXPECT_EQ(Search::GetSearchLimit(), 34);
    const long copy = Search::sSearchLimit;
    EXPECT_EQ(copy, 34);
}

TEST_F(SearchTest, CannotSearchAtFirst)
{
    EXPECT_FALSE(searcher->CanSearch());
    searcher->SetNotification(true);
    EXPECT_TRUE(searcher->CanSearch());
    searcher->SetNotification(false);
    EXPECT_FALSE(searcher->CanSearch());
}

// ---- starting -------------------------------------------------------------------------------------------------------

TEST_F(SearchTest, AsksTheServerWithLimitServerPathAndQuery)
{
    startNotices();
    ASSERT_EQ(session->Connect(text("S"), text("ann"), text("secret"), 0), 0);
    server.forgetCalls();
    SearchList *const list = searcher->StartSearch(text("P"), text("Q"));
    ASSERT_NE(list, nullptr);
    EXPECT_EQ(server.calls(), QStringList(text("Search({MaxFound=500 [S]P}((Q)))")));
    EXPECT_EQ(list->SearchStr(), text("{MaxFound=500 [S]P}((Q))"));
}

TEST_F(SearchTest, WhileTheServerIsAskedNobodyButTheSessionHasThePassword)
{
    startNotices();
    int owners = 0;
    server.onCall = [&](const QString &) {
        QString host;
        QString user;
        QString password;
        session->GetConnectInfo(host, user, password);
        owners = password.data_ptr()->ref.atomic.loadRelaxed();
    };
    ASSERT_NE(start(), nullptr);
    EXPECT_EQ(owners, 2); // the session and the text above
}

TEST_F(SearchTest, ZeroLeavesTheLimitOut)
{
    startNotices();
    Search::SetSearchLimit(0);
    EXPECT_EQ(queryOf("P", "Q"), text("{[HUB]P}((Q))"));
}

TEST_F(SearchTest, ANegativeLimitIsLeftOut)
{
    startNotices();
    Search::SetSearchLimit(-1);
    EXPECT_EQ(queryOf("P", "Q"), text("{[HUB]P}((Q))"));
}

TEST_F(SearchTest, OneIsALimit)
{
    startNotices();
    Search::SetSearchLimit(1);
    EXPECT_EQ(queryOf("P", "Q"), text("{MaxFound=1 [HUB]P}((Q))"));
}

TEST_F(SearchTest, PathAndQueryAreTakenAsTheyStand)
{
    startNotices();
    Search::SetSearchLimit(0);
    EXPECT_EQ(queryOf("%2%1", "%1 %3"), text("{[HUB]%2%1}((%1 %3))"));
    EXPECT_EQ(queryOf("", ""), text("{[HUB]}(())"));
}

TEST_F(SearchTest, TheNewListIsRunningAndEmpty)
{
    startNotices();
    SearchList *const list = start(42);
    ASSERT_NE(list, nullptr);
    EXPECT_EQ(list->SearchID(), 42);
    EXPECT_EQ(list->Size(), 0);
    EXPECT_EQ(list->GetTotalHits(), 0);
    EXPECT_FALSE(list->IsSearchComplete());
    EXPECT_FALSE(searcher->IsSearchDone(42));
    EXPECT_EQ(SearchProbe::count(), 1);
}

TEST_F(SearchTest, BeforeTheSinkIsConnectedNothingStarts)
{
    EXPECT_EQ(start(), nullptr);
    EXPECT_EQ(server.calls(), QStringList());
}

TEST_F(SearchTest, ARefusedStartIsNull)
{
    startNotices();
    server.fail(text("Search"), E_FAIL);
    EXPECT_EQ(start(), nullptr);
    EXPECT_EQ(SearchProbe::count(), 0);
}

TEST_F(SearchTest, NumberZeroIsNull)
{
    startNotices();
    EXPECT_EQ(start(0), nullptr);
    EXPECT_EQ(SearchProbe::count(), 0);
}

TEST_F(SearchTest, ARaisingServerIsNull)
{
    startNotices();
    server.raise(text("Search"), E_FAIL);
    EXPECT_EQ(start(), nullptr);
    server.mend();
    EXPECT_NE(start(), nullptr);
}

TEST_F(SearchTest, WithoutALoadedServerItIsNull)
{
    searcher->SetNotification(true);
    unload();
    EXPECT_EQ(start(), nullptr);
}

TEST_F(SearchTest, WithoutASessionItIsNullAndNoneIsMade)
{
    searcher->SetNotification(true);
    QuireCOM::UnloadCOM();
    EXPECT_EQ(start(), nullptr);
    EXPECT_EQ(QuireCOM::TheQuireCOM, nullptr);
}

TEST_F(SearchTest, NegativeNumbersAreNumbers)
{
    startNotices();
    ASSERT_NE(start(-3), nullptr);
    EXPECT_FALSE(searcher->IsSearchDone(-3));
    SearchProbe::complete(-3, 1);
    EXPECT_TRUE(searcher->IsSearchDone(-3));
}

TEST_F(SearchTest, ListsAreKeptInTheOrderOfStarting)
{
    startNotices();
    SearchList *const first = start(5);
    SearchList *const second = start(3);
    EXPECT_EQ(SearchProbe::index(5), 0);
    EXPECT_EQ(SearchProbe::index(3), 1);
    EXPECT_EQ(SearchProbe::index(first), 0);
    EXPECT_EQ(SearchProbe::index(second), 1);
    EXPECT_EQ(SearchProbe::index(4), -1);
    EXPECT_EQ(SearchProbe::index(nullptr), -1);
}

TEST_F(SearchTest, TheFirstListOfANumberCounts)
{
    startNotices();
    SearchList *const first = start(7);
    SearchList *const second = start(7);
    EXPECT_EQ(SearchProbe::index(7), 0);
    SearchProbe::add(7, hit("a"));
    EXPECT_EQ(first->Size(), 1);
    EXPECT_EQ(second->Size(), 0);
}

// ---- hits -----------------------------------------------------------------------------------------------------------

TEST_F(SearchTest, AHitIsAddedAndSetsTheChangeFlag)
{
    startNotices();
    SearchList *const list = start();
    EXPECT_TRUE(list->HasChanged(true));
    SearchProbe::add(7, hit("b", "late"));
    SearchProbe::add(7, hit("a", "early"));
    EXPECT_TRUE(list->HasChanged(true));
    ASSERT_EQ(list->Size(), 2);
    EXPECT_EQ(list->Nth(0)->name, text("late"));
    EXPECT_EQ(list->Nth(1)->name, text("early"));
}

TEST_F(SearchTest, HitsOfUnknownSearchesAreDropped)
{
    startNotices();
    SearchList *const list = start(7);
    SearchProbe::add(8, hit("a"));
    SearchProbe::complete(8, 1);
    EXPECT_EQ(list->Size(), 0);
    EXPECT_EQ(SearchProbe::count(), 1);
    EXPECT_FALSE(list->IsSearchComplete());
}

TEST_F(SearchTest, HitsOfAnUnknownSearchAreNotThoseOfALaterOneOfItsNumber)
{
    startNotices();
    SearchProbe::add(7, hit("a"));
    SearchProbe::complete(7, 1);
    SearchList *const list = start(7);
    EXPECT_EQ(list->Size(), 0);
    EXPECT_FALSE(list->IsSearchComplete());
}

TEST_F(SearchTest, CompletionSortsAndDropsDoubleHits)
{
    startNotices();
    SearchList *const list = start();
    SearchProbe::add(7, hit("b", "first"));
    SearchProbe::add(7, hit("a", "second"));
    SearchProbe::add(7, hit("b", "third"));
    list->HasChanged(true);
    SearchProbe::complete(7, 12);
    EXPECT_TRUE(searcher->IsSearchDone(7));
    EXPECT_TRUE(list->IsSearchComplete());
    EXPECT_EQ(list->GetTotalHits(), 12);
    EXPECT_TRUE(list->HasChanged(false));
    ASSERT_EQ(list->Size(), 2);
    EXPECT_EQ(list->Nth(0)->name, text("second"));
    EXPECT_EQ(list->Nth(1)->name, text("first"));
}

TEST_F(SearchTest, ADoneSearchHasItsTotal)
{
    constexpr int rounds = 100000; // in some of a hundred thousand the two threads meet
    std::vector<std::unique_ptr<SearchList>> lists;
    lists.reserve(rounds);
    for (int i = 0; i < rounds; ++i)
        lists.push_back(std::make_unique<SearchList>(i, QString()));
    std::thread completing([&lists] {
        for (const auto &list : lists)
            list->Complete(12);
    });
    int early = 0;
    for (const auto &list : lists) {
        while (!list->IsSearchComplete()) {
        }
        if (list->GetTotalHits() != 12)
            ++early;
    }
    completing.join();
    EXPECT_EQ(early, 0);
}

TEST_F(SearchTest, AnUnknownSearchIsDone)
{
    EXPECT_TRUE(searcher->IsSearchDone(1));
    EXPECT_TRUE(searcher->IsSearchDone(0));
}

TEST_F(SearchTest, NumbersHave32Bits)
{
    startNotices();
    start(7);
    EXPECT_FALSE(searcher->IsSearchDone(static_cast<long>(Q_INT64_C(0x100000007))));
    searcher->StopSearch(static_cast<long>(Q_INT64_C(0x100000007)));
    EXPECT_TRUE(searcher->IsSearchDone(7));
}

// ---- stopping -------------------------------------------------------------------------------------------------------

TEST_F(SearchTest, StoppingTellsTheServerAndKeepsTheTotal)
{
    startNotices();
    SearchList *const list = start();
    list->SetTotalHits(5);
    server.forgetCalls();
    searcher->StopSearch(7);
    EXPECT_EQ(server.calls(), QStringList(text("StopSearch(7)")));
    EXPECT_TRUE(searcher->IsSearchDone(7));
    EXPECT_EQ(list->GetTotalHits(), 5);
    EXPECT_EQ(SearchProbe::count(), 1);
}

TEST_F(SearchTest, StoppingAFinishedSearchMakesNoServerCall)
{
    startNotices();
    start();
    SearchProbe::complete(7, 3);
    server.forgetCalls();
    searcher->StopSearch(7);
    EXPECT_EQ(server.calls(), QStringList());
}

TEST_F(SearchTest, StoppingTwiceTellsTheServerOnce)
{
    startNotices();
    start();
    server.forgetCalls();
    searcher->StopSearch(7);
    searcher->StopSearch(7);
    EXPECT_EQ(server.calls(), QStringList(text("StopSearch(7)")));
}

TEST_F(SearchTest, StoppingAnUnknownSearchDoesNothing)
{
    startNotices();
    server.forgetCalls();
    searcher->StopSearch(7);
    EXPECT_EQ(server.calls(), QStringList());
}

TEST_F(SearchTest, NothingIsStoppedWhileSearchesCannotWork)
{
    startNotices();
    start();
    server.forgetCalls();
    searcher->SetNotification(false);
    searcher->StopSearch(7);
    EXPECT_EQ(server.calls(), QStringList());
    EXPECT_FALSE(searcher->IsSearchDone(7));
}

TEST_F(SearchTest, ARefusedStopIsAStopAllTheSame)
{
    startNotices();
    start(7);
    start(8);
    server.fail(text("StopSearch"), E_FAIL);
    searcher->StopSearch(7);
    server.raise(text("StopSearch"), E_FAIL);
    searcher->StopSearch(8);
    EXPECT_TRUE(searcher->IsSearchDone(7));
    EXPECT_TRUE(searcher->IsSearchDone(8));
}

TEST_F(SearchTest, WithoutASessionASearchIsOver)
{
    startNotices();
    start();
    NotificationRelease();
    QuireCOM::UnloadCOM();
    searcher->StopSearch(7);
    EXPECT_TRUE(searcher->IsSearchDone(7));
    EXPECT_EQ(QuireCOM::TheQuireCOM, nullptr);
}

// ---- deleting and removing ------------------------------------------------------------------------------------------

TEST_F(SearchTest, DeletingStopsARunningSearch)
{
    startNotices();
    start();
    server.forgetCalls();
    searcher->DeleteSearch(7);
    EXPECT_EQ(server.calls(), QStringList(text("StopSearch(7)")));
    EXPECT_EQ(SearchProbe::count(), 0);
    EXPECT_TRUE(searcher->IsSearchDone(7));
    EXPECT_EQ(searcher->AccessSearchResults(7), nullptr);
}

TEST_F(SearchTest, DeletingAFinishedSearchMakesNoServerCall)
{
    startNotices();
    start();
    SearchProbe::complete(7, 0);
    server.forgetCalls();
    searcher->DeleteSearch(7);
    EXPECT_EQ(server.calls(), QStringList());
    EXPECT_EQ(SearchProbe::count(), 0);
}

TEST_F(SearchTest, WhileSearchesCannotWorkDeletingKeepsTheList)
{
    startNotices();
    SearchList *const list = start();
    searcher->SetNotification(false);
    server.forgetCalls();
    searcher->DeleteSearch(7);
    EXPECT_EQ(SearchProbe::index(list), 0);
    EXPECT_EQ(server.calls(), QStringList());
    EXPECT_FALSE(list->IsSearchComplete());
}

TEST_F(SearchTest, DeletingAnUnknownSearchDoesNothing)
{
    startNotices();
    start();
    server.forgetCalls();
    searcher->DeleteSearch(8);
    EXPECT_EQ(SearchProbe::count(), 1);
    EXPECT_EQ(server.calls(), QStringList());
}

TEST_F(SearchTest, LaterListsMoveUp)
{
    startNotices();
    start(1);
    SearchList *const second = start(2);
    SearchList *const third = start(3);
    searcher->DeleteSearch(1);
    EXPECT_EQ(SearchProbe::index(second), 0);
    EXPECT_EQ(SearchProbe::index(third), 1);
}

TEST_F(SearchTest, RemovingStopsAndLeavesTheListToTheCaller)
{
    startNotices();
    SearchList *const list = start();
    server.forgetCalls();
    SearchProbe::remove(list);
    const std::unique_ptr<SearchList> mine(list);
    EXPECT_EQ(server.calls(), QStringList(text("StopSearch(7)")));
    EXPECT_EQ(SearchProbe::count(), 0);
    EXPECT_TRUE(mine->IsSearchComplete());
}

TEST_F(SearchTest, RemovingNothingOrAStrangersListDoesNothing)
{
    startNotices();
    start();
    SearchList stranger(7, text("stranger"));
    server.forgetCalls();
    SearchProbe::remove(nullptr);
    SearchProbe::remove(&stranger);
    EXPECT_EQ(SearchProbe::count(), 1);
    EXPECT_FALSE(stranger.IsSearchComplete());
    EXPECT_EQ(server.calls(), QStringList());
}

TEST_F(SearchTest, WhileSearchesCannotWorkNothingIsRemoved)
{
    startNotices();
    SearchList *const list = start();
    searcher->SetNotification(false);
    SearchProbe::remove(list);
    EXPECT_EQ(SearchProbe::index(list), 0);
}

TEST_F(SearchTest, TheSearcherIsMadeWhileADirectoryAsksForIt)
{
    SearchProbe::destroy();
    std::atomic<bool> made{false};
    std::thread asking([&made] {
        Directory directory;
        do
            EXPECT_EQ(directory.StartSearch(text("storm")), nullptr);
        while (!made);
    });
    Search *const first = Search::GetSearcher();
    made = true;
    asking.join();
    EXPECT_EQ(Search::GetSearcherIfMade(), first);
    SearchProbe::destroy();
    EXPECT_EQ(Search::GetSearcherIfMade(), nullptr);
}

TEST_F(SearchTest, TheSearcherTakesItsListsAlong)
{
    startNotices();
    start(1);
    start(2);
    SearchProbe::add(2, hit("a"));
    SearchProbe::destroy(); // the leak checks look at the lists
    EXPECT_EQ(Search::TheSearcher, nullptr);
}

// ---- reading results ------------------------------------------------------------------------------------------------

TEST_F(SearchTest, ResultsAreLentUnderTheListsLock)
{
    startNotices();
    SearchList *const list = start();
    EXPECT_EQ(searcher->AccessSearchResults(7), list);
    EXPECT_FALSE(isFree(*list));
    EXPECT_TRUE(isFree(SearchProbe::mutex()));
    searcher->EndAccessSearchResults(7);
    EXPECT_TRUE(isFree(*list));
}

TEST_F(SearchTest, AnUnknownSearchHasNoResults)
{
    EXPECT_EQ(searcher->AccessSearchResults(7), nullptr);
    searcher->EndAccessSearchResults(7);
    EXPECT_TRUE(isFree(SearchProbe::mutex()));
}

TEST_F(SearchTest, ResultsCanStillBeReadWhileSearchesCannotWork)
{
    startNotices();
    start();
    searcher->SetNotification(false);
    EXPECT_NE(searcher->AccessSearchResults(7), nullptr);
    searcher->EndAccessSearchResults(7);
}

TEST_F(SearchTest, ReadingEndsWhileAHitWaitsForIt)
{
    startNotices();
    SearchList *const list = start();
    ASSERT_NE(searcher->AccessSearchResults(7), nullptr);
    // The event holds the searcher's mutex and waits for the list.
    auto event = std::async(std::launch::async, [] { SearchProbe::add(7, hit("a")); });
    ASSERT_TRUE(waitUntilTaken(SearchProbe::mutex()));
    EXPECT_FALSE(searcher->IsSearchDone(7));
    EXPECT_TRUE(searcher->IsSearchDone(8));
    EXPECT_EQ(list->Size(), 0);
    searcher->EndAccessSearchResults(7);
    event.get();
    EXPECT_EQ(list->Size(), 1);
}

// ---- a server that answers at once ----------------------------------------------------------------------------------

TEST_F(SearchTest, HitsThatComeBeforeTheNumberAreKept)
{
    startNotices();
    const HitArray hits({{text("Storm"), text("NEWS"), {1, 2, 3}, {}}});
    server.onCall = [&](const QString &operation) {
        if (operation == text("Search")) {
            sink()->raw_OnNotifySearchResults(7, hits, 1, 0);
            EXPECT_TRUE(searcher->IsSearchDone(7));
        }
    };
    SearchList *const list = start(7);
    ASSERT_NE(list, nullptr);
    EXPECT_EQ(list->Size(), 1);
    EXPECT_EQ(list->SearchStr(), text("{MaxFound=500 [HUB]NEWS}((storm))"));
    EXPECT_FALSE(searcher->IsSearchDone(7));
    EXPECT_EQ(SearchProbe::count(), 1);
}

TEST_F(SearchTest, ASearchMayBeOverBeforeItsNumberIsKnown)
{
    startNotices();
    const HitArray hits({{text("Storm"), text("NEWS"), {1, 2, 3}, {}}});
    server.onCall = [&](const QString &operation) {
        if (operation != text("Search"))
            return;
        sink()->raw_OnNotifySearchResults(7, hits, 1, 1);
        sink()->raw_OnNotifySearchResults(7, hits, 2, 1); // ignored: it is done
    };
    SearchList *const list = start(7);
    ASSERT_NE(list, nullptr);
    EXPECT_EQ(list->Size(), 1);
    EXPECT_EQ(list->GetTotalHits(), 1);
    EXPECT_TRUE(searcher->IsSearchDone(7));
}

TEST_F(SearchTest, EarlyHitsOfOtherNumbersAreDropped)
{
    startNotices();
    const HitArray hits({{text("Storm"), text("NEWS"), {1, 2, 3}, {}}});
    server.onCall = [&](const QString &operation) {
        if (operation == text("Search"))
            sink()->raw_OnNotifySearchResults(8, hits, 1, 0);
    };
    ASSERT_NE(start(7), nullptr);
    server.onCall = nullptr;
    SearchList *const list = start(8);
    EXPECT_EQ(list->Size(), 0);
    EXPECT_EQ(SearchProbe::count(), 2);
}

TEST_F(SearchTest, EarlyHitsOfARefusedSearchAreDropped)
{
    startNotices();
    const HitArray hits({{text("Storm"), text("NEWS"), {1, 2, 3}, {}}});
    server.onCall = [&](const QString &operation) {
        if (operation == text("Search"))
            sink()->raw_OnNotifySearchResults(7, hits, 1, 0);
    };
    server.fail(text("Search"), E_FAIL);
    EXPECT_EQ(start(7), nullptr);
    server.mend();
    server.onCall = nullptr;
    EXPECT_EQ(start(7)->Size(), 0);
}

TEST_F(SearchTest, HitsBehindAStartThatRaisedAreDropped)
{
    startNotices();
    const HitArray hits({{text("Storm"), text("NEWS"), {1, 2, 3}, {}}});
    server.onCall = [](const QString &operation) {
        if (operation == text("Search"))
            throw std::bad_alloc();
    };
    EXPECT_THROW(start(7), std::bad_alloc);
    server.onCall = nullptr;
    sink()->raw_OnNotifySearchResults(7, hits, 1, 0);
    EXPECT_EQ(start(7)->Size(), 0);
}

TEST_F(SearchTest, EachOfTwoStartsAtOnceGetsItsEarlyHits)
{
    startNotices();
    const HitArray hits({{text("Storm"), text("NEWS"), {1, 2, 3}, {}}});
    int depth = 0;
    server.onCall = [&](const QString &operation) {
        if (operation != text("Search") || ++depth > 1)
            return;
        sink()->raw_OnNotifySearchResults(20, hits, 1, 0);
        sink()->raw_OnNotifySearchResults(10, hits, 1, 1);
        SearchList *const inner = start(10); // takes its own, and leaves the other's
        EXPECT_EQ(inner->Size(), 1);
        EXPECT_TRUE(inner->IsSearchComplete());
        server.searchId = 20;
    };
    SearchList *const outer = start(20);
    ASSERT_NE(outer, nullptr);
    EXPECT_EQ(outer->SearchID(), 20);
    EXPECT_EQ(outer->Size(), 1);
    EXPECT_FALSE(outer->IsSearchComplete());
}

TEST_F(SearchTest, StoppingMayBeAnsweredByAnEvent)
{
    startNotices();
    SearchList *const list = start(7);
    const HitArray hits({{text("Storm"), text("NEWS"), {1, 2, 3}, {}}});
    server.onCall = [&](const QString &operation) {
        if (operation == text("StopSearch"))
            sink()->raw_OnNotifySearchResults(7, hits, 1, 1);
    };
    searcher->StopSearch(7);
    EXPECT_TRUE(searcher->IsSearchDone(7));
    EXPECT_EQ(list->GetTotalHits(), 0);
    start(8);
    searcher->DeleteSearch(8);
    SearchList *const removed = start(9);
    SearchProbe::remove(removed);
    delete removed;
    EXPECT_EQ(server.count(text("StopSearch(8)")), 1);
    EXPECT_EQ(server.count(text("StopSearch(9)")), 1);
}

TEST_F(SearchTest, TheServerIsCalledWithoutTheSearchersMutex)
{
    startNotices();
    int calls = 0;
    server.onCall = [&](const QString &) {
        ++calls;
        EXPECT_TRUE(isFree(SearchProbe::mutex()));
    };
    start(7);
    searcher->StopSearch(7);
    EXPECT_EQ(calls, 2);
}
