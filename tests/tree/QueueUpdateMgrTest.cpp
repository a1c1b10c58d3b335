// Which queues are watched and which have changed.

#include <gmock/gmock.h>

#include <quire/notify/Notification.h>
#include <quire/story/Story.h>
#include <quire/tree/QueueUpdateMgr.h>

#include "tree/QueueFixture.h"
#include "tree/SearcherEnd.h"

using namespace Quire;
using Newsroom::Fault;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

namespace {

/// Three queues without stories to load, none of them watched at first.
class QueueUpdateMgrTest : public QueueFixture
{
protected:
    void SetUp() override
    {
        QueueFixture::SetUp();
        Queue::useThreading = false;
        none = open("Q.NONE");
        even = open("Q.EVEN");
        server.calls().take();
    }
    void TearDown() override
    {
        for (Queue *const queue : {none.get(), even.get()})
            QueueUpdateMgr::EndQueueUpdates(queue);
        none.reset();
        even.reset();
        NotificationRelease();
        QueueFixture::TearDown();
        SearchProbe::destroy();
    }

    std::unique_ptr<Queue> none; // number 10
    std::unique_ptr<Queue> even; // number 12
};

} // namespace

TEST_F(QueueUpdateMgrTest, BeginningTurnsTheReportsOnAndWatches)
{
    QueueUpdateMgr::BeginQueueUpdates(none.get());
    EXPECT_EQ(callsOf({text("put_Update")}), QStringList(text("IQueue2::put_Update(true)")));
    EXPECT_THAT(QueueUpdateMgrProbe::watched(), ElementsAre(10));
    EXPECT_FALSE(QueueUpdateMgr::NeedsRefresh(none.get(), false));
}

TEST_F(QueueUpdateMgrTest, QueuesAreWatchedInTheOrderOfTheirBeginning)
{
    QueueUpdateMgr::BeginQueueUpdates(even.get());
    QueueUpdateMgr::BeginQueueUpdates(none.get());
    EXPECT_THAT(QueueUpdateMgrProbe::watched(), ElementsAre(12, 10));
}

TEST_F(QueueUpdateMgrTest, BeginningTwiceWatchesOnce)
{
    QueueUpdateMgr::BeginQueueUpdates(none.get());
    QueueUpdateMgr::BeginQueueUpdates(none.get());
    EXPECT_THAT(QueueUpdateMgrProbe::watched(), ElementsAre(10));
    EXPECT_EQ(callsOf({text("put_Update")}).size(), 2);
}

TEST_F(QueueUpdateMgrTest, EndingTurnsTheReportsOffAndForgets)
{
    QueueUpdateMgr::BeginQueueUpdates(none.get());
    QueueUpdateMgr::BeginQueueUpdates(even.get());
    QueueUpdateMgr::Update(10);
    QueueUpdateMgr::Update(12);
    server.calls().take();
    QueueUpdateMgr::EndQueueUpdates(none.get());
    EXPECT_EQ(callsOf({text("put_Update")}), QStringList(text("IQueue2::put_Update(false)")));
    EXPECT_THAT(QueueUpdateMgrProbe::watched(), ElementsAre(12));
    EXPECT_THAT(QueueUpdateMgrProbe::pending(), ElementsAre(12));
    EXPECT_FALSE(QueueUpdateMgr::NeedsRefresh(none.get(), true));
}

TEST_F(QueueUpdateMgrTest, EndingWhatIsNotWatchedTurnsTheReportsOffAllTheSame)
{
    QueueUpdateMgr::EndQueueUpdates(none.get());
    EXPECT_EQ(callsOf({text("put_Update")}), QStringList(text("IQueue2::put_Update(false)")));
    EXPECT_THAT(QueueUpdateMgrProbe::watched(), IsEmpty());
}

TEST_F(QueueUpdateMgrTest, ReportsOfUnwatchedQueuesAreIgnored)
{
    QueueUpdateMgr::Update(10);
    EXPECT_FALSE(QueueUpdateMgr::NeedsRefresh(none.get(), false));
    QueueUpdateMgr::BeginQueueUpdates(even.get());
    QueueUpdateMgr::Update(10);
    QueueUpdateMgr::Update(999);
    EXPECT_FALSE(QueueUpdateMgr::NeedsRefresh(none.get(), false));
    EXPECT_FALSE(QueueUpdateMgr::NeedsRefresh(even.get(), false));
    EXPECT_THAT(QueueUpdateMgrProbe::pending(), IsEmpty());
}

TEST_F(QueueUpdateMgrTest, TwoReportsAreToldOnce)
{
    QueueUpdateMgr::BeginQueueUpdates(none.get());
    QueueUpdateMgr::Update(10);
    QueueUpdateMgr::Update(10);
    EXPECT_THAT(QueueUpdateMgrProbe::pending(), ElementsAre(10));
    EXPECT_TRUE(QueueUpdateMgr::NeedsRefresh(none.get(), true));
    EXPECT_FALSE(QueueUpdateMgr::NeedsRefresh(none.get(), true));
}

TEST_F(QueueUpdateMgrTest, AReportIsToldUntilItIsTaken)
{
    QueueUpdateMgr::BeginQueueUpdates(none.get());
    QueueUpdateMgr::Update(10);
    for (int time = 0; time < 3; ++time)
        EXPECT_TRUE(QueueUpdateMgr::NeedsRefresh(none.get(), false));
    EXPECT_TRUE(QueueUpdateMgr::NeedsRefresh(none.get(), true));
    EXPECT_FALSE(QueueUpdateMgr::NeedsRefresh(none.get(), false));
}

TEST_F(QueueUpdateMgrTest, AReportIsToldOfItsQueueAlone)
{
    QueueUpdateMgr::BeginQueueUpdates(none.get());
    QueueUpdateMgr::BeginQueueUpdates(even.get());
    QueueUpdateMgr::Update(12);
    EXPECT_FALSE(QueueUpdateMgr::NeedsRefresh(none.get(), true));
    EXPECT_TRUE(QueueUpdateMgr::NeedsRefresh(even.get(), true));
}

TEST_F(QueueUpdateMgrTest, BeginningAgainForgetsTheReport)
{
    QueueUpdateMgr::BeginQueueUpdates(none.get());
    QueueUpdateMgr::Update(10);
    QueueUpdateMgr::BeginQueueUpdates(none.get());
    EXPECT_FALSE(QueueUpdateMgr::NeedsRefresh(none.get(), false));
    EXPECT_THAT(QueueUpdateMgrProbe::pending(), IsEmpty());
}

TEST_F(QueueUpdateMgrTest, ATakenReportLeavesTheQueueWatched)
{
    QueueUpdateMgr::BeginQueueUpdates(none.get());
    for (int time = 0; time < 3; ++time) {
        QueueUpdateMgr::Update(10);
        EXPECT_TRUE(QueueUpdateMgr::NeedsRefresh(none.get(), true));
    }
}

TEST_F(QueueUpdateMgrTest, TwoObjectsOfAQueueCountAsOne)
{
    const std::unique_ptr<Queue> twin = open("Q.NONE");
    QueueUpdateMgr::BeginQueueUpdates(none.get());
    QueueUpdateMgr::Update(10);
    EXPECT_TRUE(QueueUpdateMgr::NeedsRefresh(twin.get(), true));
    EXPECT_FALSE(QueueUpdateMgr::NeedsRefresh(none.get(), true));
}

TEST_F(QueueUpdateMgrTest, ARefusedBeginningIsRaisedAndWatchesNothing)
{
    for (const Fault &fault : {Fault::hresult(E_ACCESSDENIED), Fault::raise(E_ACCESSDENIED)}) {
        server.faults().failNext(text("put_Update"), fault);
        EXPECT_THROW(QueueUpdateMgr::BeginQueueUpdates(none.get()), _com_error);
        EXPECT_THAT(QueueUpdateMgrProbe::watched(), IsEmpty());
    }
    QueueUpdateMgr::BeginQueueUpdates(none.get()); // no mutex is left held
    EXPECT_FALSE(onOtherThread([this] { return QueueUpdateMgr::NeedsRefresh(none.get(), false); }));
    onOtherThread([this] {
        QueueUpdateMgr::EndQueueUpdates(none.get());
        return 0;
    });
}

TEST_F(QueueUpdateMgrTest, ARefusedBeginningLeavesAWatchedQueueAsItWas)
{
    QueueUpdateMgr::BeginQueueUpdates(none.get());
    QueueUpdateMgr::Update(10);
    server.faults().failNext(text("put_Update"), Fault::hresult(E_FAIL));
    EXPECT_THROW(QueueUpdateMgr::BeginQueueUpdates(none.get()), _com_error);
    EXPECT_TRUE(QueueUpdateMgr::NeedsRefresh(none.get(), true));
}

TEST_F(QueueUpdateMgrTest, ARefusedEndIsRaisedAndForgetsAllTheSame)
{
    QueueUpdateMgr::BeginQueueUpdates(none.get());
    server.faults().failNext(text("put_Update"), Fault::hresult(E_FAIL));
    EXPECT_THROW(QueueUpdateMgr::EndQueueUpdates(none.get()), _com_error);
    EXPECT_THAT(QueueUpdateMgrProbe::watched(), IsEmpty());
}

TEST_F(QueueUpdateMgrTest, WithoutASessionQueuesAreWatchedAllTheSame)
{
    QuireCOM::UnloadCOM();
    QueueUpdateMgr::BeginQueueUpdates(none.get());
    EXPECT_THAT(QueueUpdateMgrProbe::watched(), ElementsAre(10));
    QueueUpdateMgr::EndQueueUpdates(none.get());
    EXPECT_THAT(QueueUpdateMgrProbe::watched(), IsEmpty());
}

TEST_F(QueueUpdateMgrTest, NullDoesNothing)
{
    QueueUpdateMgr::BeginQueueUpdates(nullptr);
    QueueUpdateMgr::EndQueueUpdates(nullptr);
    EXPECT_FALSE(QueueUpdateMgr::NeedsRefresh(nullptr, true));
    EXPECT_THAT(server.calls().takeTexts(), IsEmpty());
}

namespace {

/// Does something within the server's call that begins the reports.
class BusyQueue : public Queue
{
public:
    using Queue::Queue;

    void SetUpdate(bool on) override
    {
        Queue::SetUpdate(on);
        if (on && busy)
            busy();
    }
    std::function<void()> busy;
};

/// Has another thread report that the queue of that number has changed.
std::function<void()> reportElsewhere(qint32 queueId)
{
    return [queueId] {
        onOtherThread([queueId] {
            QueueUpdateMgr::Update(queueId);
            return 0;
        });
    };
}

} // namespace

TEST_F(QueueUpdateMgrTest, AReportOfAnotherThreadWhileItBeginsCounts)
{
    BusyQueue queue(object("Q.SHORT"));
    queue.busy = reportElsewhere(11);
    QueueUpdateMgr::BeginQueueUpdates(&queue);
    EXPECT_THAT(QueueUpdateMgrProbe::pending(), ElementsAre(11));
    EXPECT_TRUE(QueueUpdateMgr::NeedsRefresh(&queue, true));
    queue.busy = nullptr;
    QueueUpdateMgr::EndQueueUpdates(&queue);
}

TEST_F(QueueUpdateMgrTest, AReportOfAnotherQueueWhileItBeginsIsNoNewsOfIt)
{
    BusyQueue queue(object("Q.SHORT"));
    queue.busy = reportElsewhere(10);
    QueueUpdateMgr::BeginQueueUpdates(&queue);
    EXPECT_THAT(QueueUpdateMgrProbe::pending(), IsEmpty());
    queue.busy = nullptr;
    QueueUpdateMgr::EndQueueUpdates(&queue);
}

TEST_F(QueueUpdateMgrTest, AReportOnTheThreadThatBeginsIsNoNews)
{
    BusyQueue queue(object("Q.SHORT"));
    queue.busy = [] { QueueUpdateMgr::Update(11); };
    QueueUpdateMgr::BeginQueueUpdates(&queue);
    EXPECT_FALSE(QueueUpdateMgr::NeedsRefresh(&queue, true));
    queue.busy = nullptr;
    QueueUpdateMgr::EndQueueUpdates(&queue);
}

TEST_F(QueueUpdateMgrTest, TheServersThreadMayReportAndAskWhileAQueueBegins)
{
    BusyQueue queue(object("Q.SHORT"));
    QueueUpdateMgr::BeginQueueUpdates(none.get());
    bool told = false;
    queue.busy = [&] {
        told = onOtherThread([this] {
            QueueUpdateMgr::Update(10);
            return QueueUpdateMgr::NeedsRefresh(none.get(), true);
        });
    };
    QueueUpdateMgr::BeginQueueUpdates(&queue);
    EXPECT_TRUE(told);
    queue.busy = nullptr;
    QueueUpdateMgr::EndQueueUpdates(&queue);
}

TEST_F(QueueUpdateMgrTest, BeginningMayNestOnOneThread)
{
    BusyQueue queue(object("Q.SHORT"));
    queue.busy = [this] { QueueUpdateMgr::BeginQueueUpdates(none.get()); };
    QueueUpdateMgr::BeginQueueUpdates(&queue);
    EXPECT_THAT(QueueUpdateMgrProbe::watched(), ElementsAre(10, 11));
    queue.busy = nullptr;
    QueueUpdateMgr::EndQueueUpdates(&queue);
}

TEST_F(QueueUpdateMgrTest, AChangeOnTheServerIsTold)
{
    NotificationInit(nullptr, nullptr, nullptr);
    QueueUpdateMgr::BeginQueueUpdates(none.get());
    std::unique_ptr<Story> created(none->CreateStory(0));
    ASSERT_TRUE(created);
    EXPECT_TRUE(comesTrue([this] { return QueueUpdateMgr::NeedsRefresh(none.get(), true); }));
    EXPECT_FALSE(QueueUpdateMgr::NeedsRefresh(even.get(), true));
}

TEST_F(QueueUpdateMgrTest, ManyThreadsShareIt)
{
    std::vector<std::future<void>> workers;
    const int rounds = 200;
    for (Queue *const queue : {none.get(), even.get(), none.get(), even.get()}) {
        workers.push_back(std::async(std::launch::async, [queue] {
            for (int round = 0; round < rounds; ++round) {
                QueueUpdateMgr::BeginQueueUpdates(queue);
                QueueUpdateMgr::Update(queue->QueueID());
                QueueUpdateMgr::NeedsRefresh(queue, round % 2 == 0);
                if (round % 3 == 0)
                    QueueUpdateMgr::EndQueueUpdates(queue);
            }
        }));
    }
    for (std::future<void> &worker : workers)
        worker.get();
    EXPECT_LE(QueueUpdateMgrProbe::watched().size(), 2u);
    EXPECT_LE(QueueUpdateMgrProbe::pending().size(), 2u);
}
