// Notices and searches on the newsroom in a box: events from its own thread and from the caller's, another user's
// changes, and many threads at once.

#include <QElapsedTimer>

#include <gmock/gmock.h>

#include <atomic>
#include <functional>
#include <memory>
#include <thread>
#include <vector>

#include <quire/Quire.h>
#include <quire/newsroom/Newsroom.h>
#include <quire/platform/Bstr.h>
#include <quire/platform/SafeArray.h>

#include "notify/NotifyFixture.h"
#include "support/DebugCapture.h"
#include "support/QtPrinting.h"
#include "support/Stress.h"
#include "support/Watchdog.h"

using namespace Quire;
using Newsroom::ObjectKind;

namespace {

/// Looks again and again, generously, until it is so.
bool waitFor(const std::function<bool()> &isSo)
{
    QElapsedTimer timer;
    for (timer.start(); timer.elapsed() < 30000; std::this_thread::sleep_for(std::chrono::milliseconds(1))) {
        if (isSo())
            return true;
    }
    return isSo();
}

/// Two users of the sample newsroom: the library's, and another who signs on by himself.
class NotifyNewsroom : public ::testing::Test
{
protected:
    NotifyNewsroom()
        : server(Newsroom::sampleModel())
        , registration(server.registerClass())
        , m_arraysAtFirst(Newsroom::Census::liveArrays())
        , m_liveAtFirst(server.census()->live())
    {}

    void SetUp() override
    {
        session = QuireCOM::GetQuireCOM(true);
        ASSERT_EQ(session->Connect(QString(), text("journalist"), text("news"), 0), 0);
        searcher = Search::GetSearcher();
    }
    void TearDown() override
    {
        NotificationRelease();
        EXPECT_TRUE(server.waitForEvents());
        EXPECT_EQ(server.census()->live(ObjectKind::Connection), 0);
        SearchProbe::destroy();
        QuireCOM::UnloadCOM();
        EXPECT_TRUE(server.waitForEvents());
        // The worker of a queue that has gone may still be about to let go of the server's.
        waitFor([&] { return server.census()->live() == m_liveAtFirst; });
        EXPECT_EQ(server.census()->live(), m_liveAtFirst) << server.census()->text().toStdString();
        EXPECT_EQ(Newsroom::Census::liveArrays(), m_arraysAtFirst);
    }

    void startNotices()
    {
        NotificationInit(nullptr, nullptr, nullptr);
        ASSERT_TRUE(searcher->CanSearch());
    }
    void startAll() { NotificationInit(Told::onResults, Told::onQueue, Told::onLogout); }
    SearchList *search(const char *path, const char *query) { return searcher->StartSearch(text(path), text(query)); }
    bool waitUntilDone(SearchList *list)
    {
        const int id = list->SearchID();
        return waitFor([&] { return searcher->IsSearchDone(id); });
    }
    /// Changes a story of the queue \a path on the other user's sign-on.
    void changeAsOtherUser(const char *path)
    {
        const Orvex::ISignon4Ptr other = server.connect(text("editor"), text("desk"));
        IDispatchPtr handle;
        const Platform::Bstr name(text(path));
        ASSERT_EQ(other->GetDirectory(name.get(), &handle), S_OK);
        const Orvex::IQueue2Ptr queue = handle;
        VARIANT story{};
        VariantInit(&story);
        ASSERT_EQ(queue->CreateStory(0, &story), S_OK);
        VariantClear(&story);
        other->Disconnect();
    }

    Newsroom::Server server;
    Newsroom::Registration registration;
    QuireCOM *session = nullptr;
    Search *searcher = nullptr;

private:
    const qint64 m_arraysAtFirst;
    const int m_liveAtFirst;
};

using SearchStress = NotifyNewsroom;
using NotifySoak = NotifyNewsroom;

} // namespace

TEST_F(NotifyNewsroom, FindsTheStoriesOfTheSample)
{
    startNotices();
    SearchList *const list = search(".*", "*");
    ASSERT_NE(list, nullptr);
    ASSERT_TRUE(waitUntilDone(list));
    EXPECT_GT(list->Size(), 20) << "in more than one event";
    EXPECT_EQ(list->GetTotalHits(), list->Size());
    ASSERT_EQ(searcher->AccessSearchResults(list->SearchID()), list);
    for (int i = 0; i < list->u_Size(); ++i) {
        const Item &item = *list->u_Nth(i);
        EXPECT_EQ(item.type, Item_SearchHit);
        EXPECT_GE(item.attributes.size(), 2u);
        EXPECT_TRUE(i == 0 || *list->u_Nth(i - 1) < item);
    }
    searcher->EndAccessSearchResults(list->SearchID());
}

TEST_F(NotifyNewsroom, AHitLeadsToItsStory)
{
    startNotices();
    SearchList *const list = search("SPORT.FOOTBALL", "*");
    ASSERT_NE(list, nullptr);
    ASSERT_TRUE(waitUntilDone(list));
    ASSERT_GT(list->Size(), 0);
    Attribute queuePath;
    Attribute storyId;
    ASSERT_TRUE(list->Nth(0)->FindAttr(text("_queue"), queuePath));
    ASSERT_TRUE(list->Nth(0)->FindAttr(text("_storyid"), storyId));
    EXPECT_EQ(queuePath.value, text("SPORT.FOOTBALL"));
    const std::unique_ptr<Directory> queue(Directory::NewDirectory(queuePath.value));
    ASSERT_NE(queue, nullptr);
    EXPECT_TRUE(waitFor([&] { return queue->FindByAttribute(text("_storyid"), storyId.value) >= 0; }));
}

TEST_F(NotifyNewsroom, ADirectorySearchesWhatIsBelow)
{
    startNotices();
    const std::unique_ptr<Directory> directory(Directory::NewDirectory(text("SPORT")));
    ASSERT_NE(directory, nullptr);
    SearchList *const list = directory->StartSearch(text("*"));
    ASSERT_NE(list, nullptr);
    ASSERT_TRUE(waitUntilDone(list));
    EXPECT_GT(list->Size(), 0);
}

TEST_F(NotifyNewsroom, TheLimitReachesTheServer)
{
    startNotices();
    Search::SetSearchLimit(3);
    SearchList *const list = search(".*", "*");
    ASSERT_NE(list, nullptr);
    ASSERT_TRUE(waitUntilDone(list));
    EXPECT_EQ(list->Size(), 3);
}

TEST_F(NotifyNewsroom, NothingFoundIsDone)
{
    startNotices();
    SearchList *const list = search(".*", "no-such-word-anywhere");
    ASSERT_NE(list, nullptr);
    ASSERT_TRUE(waitUntilDone(list));
    EXPECT_EQ(list->Size(), 0);
    EXPECT_EQ(list->GetTotalHits(), 0);
}

TEST_F(NotifyNewsroom, ManyShortSearchesAreAllFoundToBeDone)
{
    startNotices();
    for (int i = 0; i < 200; ++i) {
        SearchList *const list = search("SPORT.FOOTBALL", "*"); // its hits often come before its number
        ASSERT_NE(list, nullptr);
        ASSERT_TRUE(waitUntilDone(list)) << i;
        EXPECT_GT(list->Size(), 0);
        searcher->DeleteSearch(list->SearchID());
    }
}

TEST_F(NotifyNewsroom, AStoppedSearchIsStoppedOnTheServer)
{
    startNotices();
    server.delivery().pause();
    SearchList *const list = search(".*", "*");
    ASSERT_NE(list, nullptr);
    server.calls().start();
    searcher->StopSearch(list->SearchID());
    EXPECT_EQ(server.calls().takeTexts(), QStringList(text("ISignon4::StopSearch(%1)").arg(list->SearchID())));
    server.delivery().resume();
    EXPECT_TRUE(server.waitForEvents());
    EXPECT_EQ(list->Size(), 0);
    EXPECT_EQ(list->GetTotalHits(), 0);
}

TEST_F(NotifyNewsroom, ResultsReachACallbackAsRecords)
{
    Told told;
    std::atomic<int> records{0};
    told.hook = [&] {
        SAFEARRAY *const array = told.results.back().array;
        VARTYPE type = VT_EMPTY;
        EXPECT_EQ(SafeArrayGetVartype(array, &type), S_OK);
        EXPECT_EQ(type, VT_RECORD);
        records += static_cast<int>(Platform::elementCount(array));
    };
    startAll();
    SearchList *const list = search(".*", "*");
    ASSERT_NE(list, nullptr);
    EXPECT_TRUE(server.waitForEvents());
    EXPECT_GT(records, 20);
    EXPECT_GT(told.results.size(), 1u);
    EXPECT_EQ(told.results.back().finished, 1);
    EXPECT_EQ(told.results.back().totalHits, records);
    EXPECT_FALSE(searcher->IsSearchDone(list->SearchID()));
}

TEST_F(NotifyNewsroom, ALogoutReachesTheCallbackOnAnyThread)
{
    for (const bool atOnce : {false, true}) {
        Told told;
        std::atomic<bool> onThisThread{false};
        told.hook = [&, here = GetCurrentThreadId()] { onThisThread = GetCurrentThreadId() == here; };
        server.options().deliverAtOnce = atOnce;
        startAll();
        EXPECT_EQ(server.triggerLogout(text("journalist")), 1);
        EXPECT_TRUE(server.waitForEvents());
        EXPECT_EQ(told.logouts, 1);
        EXPECT_EQ(onThisThread, atOnce);
        EXPECT_FALSE(session->IsConnected());
        NotificationRelease();
        ASSERT_EQ(session->Connect(QString(), text("journalist"), text("news"), 0), 0);
    }
}

TEST_F(NotifyNewsroom, ALogoutOfSomebodyElseDoesNot)
{
    Told told;
    startAll();
    const Orvex::ISignon4Ptr other = server.connect(text("editor"), text("desk"));
    EXPECT_EQ(server.triggerLogout(text("editor")), 1);
    EXPECT_TRUE(server.waitForEvents());
    EXPECT_EQ(told.logouts, 0);
}

TEST_F(NotifyNewsroom, AnotherUsersChangeReachesTheQueueCallback)
{
    for (const bool atOnce : {false, true}) {
        Told told;
        server.options().deliverAtOnce = atOnce;
        startAll();
        const std::unique_ptr<Directory> directory(Directory::NewDirectory(text("SPORT.FOOTBALL")));
        auto *const queue = dynamic_cast<Queue *>(directory.get());
        ASSERT_NE(queue, nullptr);
        queue->SetUpdate(true);
        changeAsOtherUser("SPORT.FOOTBALL");
        EXPECT_TRUE(server.waitForEvents());
        EXPECT_FALSE(told.queues.empty());
        for (const long id : told.queues)
            EXPECT_EQ(id, 121);
        queue->SetUpdate(false);
        NotificationRelease();
    }
}

TEST_F(NotifyNewsroom, WithoutACallbackTheUpdateManagerIsTold)
{
    startNotices();
    const std::unique_ptr<Directory> directory(Directory::NewDirectory(text("SPORT.FOOTBALL")));
    auto *const queue = dynamic_cast<Queue *>(directory.get());
    ASSERT_NE(queue, nullptr);
    QueueUpdateMgr::BeginQueueUpdates(queue);
    EXPECT_FALSE(QueueUpdateMgr::NeedsRefresh(queue, false));
    changeAsOtherUser("SPORT.FOOTBALL");
    EXPECT_TRUE(server.waitForEvents());
    EXPECT_TRUE(QueueUpdateMgr::NeedsRefresh(queue, true));
    QueueUpdateMgr::EndQueueUpdates(queue);
}

TEST_F(NotifyNewsroom, WithACallbackTheUpdateManagerIsNotTold)
{
    Told told;
    startAll();
    const std::unique_ptr<Directory> directory(Directory::NewDirectory(text("SPORT.FOOTBALL")));
    auto *const queue = dynamic_cast<Queue *>(directory.get());
    ASSERT_NE(queue, nullptr);
    QueueUpdateMgr::BeginQueueUpdates(queue);
    changeAsOtherUser("SPORT.FOOTBALL");
    EXPECT_TRUE(server.waitForEvents());
    EXPECT_FALSE(told.queues.empty());
    EXPECT_FALSE(QueueUpdateMgr::NeedsRefresh(queue, false));
    QueueUpdateMgr::EndQueueUpdates(queue);
}

TEST_F(NotifyNewsroom, CallbacksMayEndTheNoticesOnTheServersThread)
{
    Told told;
    told.hook = NotificationRelease;
    startAll();
    server.triggerLogout(text("journalist"));
    EXPECT_TRUE(server.waitForEvents());
    EXPECT_EQ(told.logouts, 1);
    EXPECT_EQ(server.census()->live(ObjectKind::Connection), 0);
}

TEST_F(NotifyNewsroom, ACallbackInsideALibraryCallHoldsTheAccessLockAndMayCallTheLibrary)
{
    Told told;
    server.options().deliverAtOnce = true;
    const auto startQueueNotices = [] { NotificationInit(nullptr, Told::onQueue, nullptr); };
    startQueueNotices();
    const std::unique_ptr<Directory> directory(Directory::NewDirectory(text("SPORT.FOOTBALL")));
    auto *const queue = dynamic_cast<Queue *>(directory.get());
    ASSERT_NE(queue, nullptr);
    queue->SetUpdate(true);
    told.hook = [&] {
        EXPECT_EQ(QuireCOM::m_LockThreadID, GetCurrentThreadId());
        EXPECT_TRUE(session->IsConnected());
        QueueUpdateMgr::Update(static_cast<qint32>(told.queues.back()));
        EXPECT_FALSE(QueueUpdateMgr::NeedsRefresh(queue, true));
        const std::unique_ptr<Directory> other(Directory::NewDirectory(text("SPORT")));
        ASSERT_NE(other, nullptr);
        EXPECT_GT(other->Size(), 0);
        SearchList *const list = search("SPORT.FOOTBALL", "*");
        ASSERT_NE(list, nullptr);
        searcher->DeleteSearch(list->SearchID());
        NotificationRelease();
        startQueueNotices();
        EXPECT_EQ(QuireCOM::m_LockThreadID, GetCurrentThreadId()); // still the outer call's
    };
    const std::unique_ptr<Story> story(queue->CreateStory(0));
    EXPECT_NE(story, nullptr);
    EXPECT_THAT(told.queues, ::testing::ElementsAre(121));
    EXPECT_NE(QuireCOM::m_LockThreadID, GetCurrentThreadId()); // the queue's worker may be at it
    queue->SetUpdate(false);
}

TEST_F(NotifyNewsroom, ACallbackInsideALibraryCallHandsWorkWithLiveQueuesToAnotherThread)
{
    Told told;
    server.options().deliverAtOnce = true;
    NotificationInit(nullptr, Told::onQueue, nullptr);
    const std::unique_ptr<Directory> directory(Directory::NewDirectory(text("SPORT.FOOTBALL")));
    auto *const queue = dynamic_cast<Queue *>(directory.get());
    ASSERT_NE(queue, nullptr);
    queue->SetUpdate(true);
    std::thread other; // waits for the access lock, which this thread holds in the callback
    told.hook = [&] {
        if (!other.joinable())
            other = std::thread([queue] {
                CoInitializeEx(nullptr, COINIT_MULTITHREADED);
                QueueUpdateMgr::BeginQueueUpdates(queue);
                QueueUpdateMgr::EndQueueUpdates(queue);
                CoUninitialize();
            });
    };
    const std::unique_ptr<Story> story(queue->CreateStory(0));
    ASSERT_TRUE(other.joinable());
    other.join();
    EXPECT_FALSE(queue->GetUpdate());
}

TEST_F(NotifyNewsroom, NoticesOfAReconnectedSessionArriveOnce)
{
    Told told;
    startAll();
    NotificationRelease();
    session->Disconnect();
    session = QuireCOM::GetQuireCOM(true);
    ASSERT_EQ(session->Connect(QString(), text("journalist"), text("news"), 0), 0);
    startAll();
    server.triggerLogout(text("journalist"));
    EXPECT_TRUE(server.waitForEvents());
    EXPECT_EQ(told.logouts, 1);
}

TEST_F(SearchStress, FourThreadsSearchWhileTheServerDelivers)
{
    startNotices();
    server.options().searchBatch = 5;
    std::atomic<int> searches{0};
    std::atomic<int> unfinished{0};
    const auto end = std::chrono::steady_clock::now() + stressTime();
    Watchdog watchdog(4);

    const auto life = [&](int thread, int round) {
        SearchList *const list = search(round % 3 ? ".*" : "SPORT.FOOTBALL", round % 5 ? "*" : "no-such-word");
        if (!list)
            return;
        ++searches;
        const int id = list->SearchID();
        const int kind = (thread + round) % 4;
        if (kind == 0 && !waitFor([&] { return searcher->IsSearchDone(id); }))
            ++unfinished;
        if (kind == 1)
            searcher->StopSearch(id);
        if (kind != 3) {
            if (ItemList *const results = searcher->AccessSearchResults(id)) {
                for (int i = 0; i < results->u_Size(); ++i)
                    EXPECT_FALSE(results->u_Nth(i)->attributes.empty());
                searcher->IsSearchDone(id);
                searcher->EndAccessSearchResults(id);
            }
        }
        searcher->DeleteSearch(id);
    };
    std::vector<std::thread> threads;
    threads.reserve(4);
    for (int thread = 0; thread < 4; ++thread) {
        threads.emplace_back([&, thread] {
            CoInitializeEx(nullptr, COINIT_MULTITHREADED);
            for (int round = 0; std::chrono::steady_clock::now() < end; ++round) {
                life(thread, round);
                watchdog.alive(thread);
            }
            watchdog.gone(thread);
            CoUninitialize();
        });
    }
    for (std::thread &thread : threads)
        thread.join();
    RecordProperty("searches", searches);
    EXPECT_GT(searches, 4);
    EXPECT_EQ(unfinished, 0);
    EXPECT_EQ(SearchProbe::count(), 0);
}

TEST_F(NotifySoak, NoticesMayComeAndGoWhileTheServerDelivers)
{
    const FrameworkLog log; // or it would fill the screen
    Told told;
    std::atomic<bool> ended{false};
    server.options().searchBatch = 1;
    std::thread coming([&] {
        CoInitializeEx(nullptr, COINIT_MULTITHREADED);
        for (int i = 0; i < soakRounds(500); ++i) {
            NotificationInit(nullptr, nullptr, nullptr);
            NotificationRelease();
        }
        ended = true;
        CoUninitialize();
    });
    std::thread alsoComing([&] {
        CoInitializeEx(nullptr, COINIT_MULTITHREADED);
        while (!ended) {
            NotificationInit(nullptr, nullptr, nullptr);
            NotificationRelease();
        }
        CoUninitialize();
    });
    while (!ended) {
        if (SearchList *const list = search(".*", "*")) {
            std::this_thread::yield();
            searcher->DeleteSearch(list->SearchID());
        }
    }
    coming.join();
    alsoComing.join();
    NotificationRelease();
    EXPECT_TRUE(server.waitForEvents());
    EXPECT_EQ(server.census()->live(ObjectKind::Connection), 0);
}
