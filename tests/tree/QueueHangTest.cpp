// Queues that go, or are cancelled, while the server does not answer.

#include <QElapsedTimer>

#include <gmock/gmock.h>

#include <quire/notify/Notification.h>
#include <quire/tree/QueueUpdateMgr.h>

#include "tree/BusyManager.h"
#include "tree/QueueFixture.h"
#include "tree/SearcherEnd.h"

using namespace Quire;
using Newsroom::Fault;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

namespace {

const int hangTime = 3000; // milliseconds, as long as a server is seen to hang

class QueueHangTest : public QueueFixture
{
protected:
    void TearDown() override
    {
        NotificationRelease();
        QueueFixture::TearDown();
        SearchProbe::destroy();
    }

    /// The queue, whose worker hangs in that call of the operation.
    std::unique_ptr<Queue> hanging(const char *path, const char *operation, int call = 1)
    {
        server.faults().failNext(text(operation), Fault::hang(hangTime), call);
        std::unique_ptr<Queue> queue = open(path);
        EXPECT_TRUE(server.faults().waitForHang(patience));
        return queue;
    }

    /// That the work is done long before the server answers.
    template<typename Work>
    void expectPrompt(const Work &work)
    {
        QElapsedTimer timer;
        timer.start();
        work();
        EXPECT_LT(timer.elapsed(), hangTime / 2);
        EXPECT_EQ(server.faults().hanging(), 1);
    }
};

} // namespace

TEST_F(QueueHangTest, AQueueGoesWhileGetListHangs)
{
    std::unique_ptr<Queue> queue = hanging("Q.SHORT", "GetList");
    expectPrompt([&] { queue.reset(); });
    server.faults().clear();
}

TEST_F(QueueHangTest, AQueueGoesWhileALaterGetListHangs)
{
    std::unique_ptr<Queue> queue = hanging("Q.SHORT", "GetList", 2);
    EXPECT_EQ(queue->Size(), 20);
    expectPrompt([&] { queue.reset(); });
    server.faults().clear();
    ASSERT_TRUE(nothingHangs());
    EXPECT_EQ(lists().size(), 2);
}

TEST_F(QueueHangTest, AQueueGoesWhileAStoryHangs)
{
    std::unique_ptr<Queue> queue = hanging("Q.SHORT", "get_SectionXml", 3);
    expectPrompt([&] { queue.reset(); });
    server.faults().clear();
}

TEST_F(QueueHangTest, CancellingReturnsWhileGetListHangs)
{
    const std::unique_ptr<Queue> queue = hanging("Q.SHORT", "GetList", 2);
    expectPrompt([&] { queue->cancelQueueLoad(true); });
    EXPECT_TRUE(queue->IsFinished());
    EXPECT_FALSE(queue->IsComplete());
    server.faults().clear();
    ASSERT_TRUE(nothingHangs());
    expectFirst(*queue, 20); // what the server gives late does not arrive
}

TEST_F(QueueHangTest, ALiveQueueGoesWhileGetListHangsAndItsReportsEndUpOff)
{
    std::unique_ptr<Queue> queue = hanging("Q.LIVE", "GetList", 2);
    expectPrompt([&] { queue.reset(); });
    EXPECT_THAT(QueueUpdateMgrProbe::watched(), IsEmpty());
    server.calls().take();
    server.faults().clear();
    QStringList updates;
    EXPECT_TRUE(comesTrue([&] { return !(updates += callsOf({text("put_Update")})).isEmpty(); }));
    EXPECT_EQ(updates, QStringList(text("IQueue2::put_Update(false)")));
}

TEST_F(QueueHangTest, ALiveQueueGoesWhileItIsRegisteredAndItsReportsEndUpOff)
{
    std::unique_ptr<Queue> queue = hanging("Q.LIVE", "put_Update");
    expectPrompt([&] { queue.reset(); });
    server.faults().clear();
    const std::unique_ptr<Queue> other = load("Q.SHORT"); // the session still works
    QStringList updates;
    EXPECT_TRUE(comesTrue([&] { return (updates += callsOf({text("put_Update")})).size() == 2; }));
    EXPECT_EQ(updates.last(), text("IQueue2::put_Update(false)"));
    EXPECT_THAT(QueueUpdateMgrProbe::watched(), IsEmpty());
}

TEST_F(QueueHangTest, ALiveQueueThatWasCancelledBeforeGoesWhileItsOldCallHangs)
{
    for (const char *operation : {"GetList", "put_Update"}) {
        std::unique_ptr<Queue> queue = hanging("Q.LIVE", operation);
        expectPrompt([&] {
            queue->cancelQueueLoad(true);
            queue.reset();
        });
        EXPECT_THAT(QueueUpdateMgrProbe::watched(), IsEmpty());
        server.faults().clear();
        QStringList updates;
        EXPECT_TRUE(comesTrue([&] {
            return (updates += callsOf({text("put_Update")})).endsWith(text("IQueue2::put_Update(false)"));
        })) << operation;
    }
}

TEST_F(QueueHangTest, ALiveQueueGoesWhileTheRegistrationOfAnotherHangs)
{
    const std::unique_ptr<Queue> first = load("Q.LIVE");
    std::unique_ptr<Queue> second = open("Q.LIVE2");
    QueueProbe::gate(*second).lock();
    BusyManager manager(object("Q.LIVE"));
    QueueProbe::gate(*second).unlock();
    ASSERT_TRUE(comesTrue([&] { return second->Size() == 250; }));
    QElapsedTimer timer;
    timer.start();
    second.reset();
    EXPECT_LT(timer.elapsed(), hangTime / 2);
}

TEST_F(QueueHangTest, TheLockOfTheListMayBeHeldByWhoDestroysTheQueue)
{
    std::unique_ptr<Queue> queue = load("Q.LONG");
    for (const char *path : {"Q.LONG", "Q.LIVE2"}) {
        queue = open(path);
        ASSERT_TRUE(comesTrue([&] { return queue->Size() > 0; }));
        queue->Lock(); // the worker comes to wait for it
        queue.reset();
    }
}

TEST_F(QueueHangTest, AReportThatComesAtOnceDoesNotDeadlock)
{
    server.options().deliverAtOnce = true;
    server.options().noticeOnUpdate = true;
    NotificationInit(nullptr, nullptr, nullptr);
    const std::unique_ptr<Queue> threaded = load("Q.LIVE");
    EXPECT_FALSE(QueueUpdateMgr::NeedsRefresh(threaded.get(), false)); // told on the thread that registers: not news
    Queue::useThreading = false;
    const std::unique_ptr<Queue> atOnce = open("Q.LIVE2");
    EXPECT_THAT(QueueUpdateMgrProbe::watched(), ElementsAre(14, 15));
    EXPECT_FALSE(QueueUpdateMgr::NeedsRefresh(atOnce.get(), false));
}

TEST_F(QueueHangTest, AReportThatComesOnTheServersThreadCounts)
{
    server.options().noticeOnUpdate = true;
    NotificationInit(nullptr, nullptr, nullptr);
    const std::unique_ptr<Queue> queue = load("Q.LIVE");
    EXPECT_TRUE(comesTrue([&] { return QueueUpdateMgr::NeedsRefresh(queue.get(), false); }));
}

TEST_F(QueueHangTest, ANewObjectOfTheQueueKeepsItsReportsWhenTheOldOnesCallEnds)
{
    std::unique_ptr<Queue> queue = hanging("Q.LIVE", "GetList", 2);
    queue.reset();
    server.faults().clear();
    const std::unique_ptr<Queue> again = load("Q.LIVE");
    ASSERT_TRUE(nothingHangs());
    EXPECT_TRUE(comesTrue([&] { return again->GetUpdate(); }));
    EXPECT_THAT(QueueUpdateMgrProbe::watched(), ElementsAre(14));
}

TEST_F(QueueHangTest, AWorkerThatIsLateLeavesTheReportsOfANewObjectOfTheQueue)
{
    std::unique_ptr<Queue> queue = hanging("Q.LIVE2", "GetList");
    const std::shared_ptr<QMutex> gate = QueueProbe::sharedGate(*queue);
    gate->lock();
    server.faults().clear();
    ASSERT_TRUE(comesTrue([&] { return queue->Size() == 20; }));
    std::this_thread::sleep_for(std::chrono::milliseconds(20)); // until the worker waits at the gate
    queue.reset();
    const std::unique_ptr<Queue> again = load("Q.LIVE2");
    server.calls().take();
    gate->unlock();
    ASSERT_TRUE(nothingHangs());
    EXPECT_THAT(callsOf({text("put_Update")}), IsEmpty());
    EXPECT_TRUE(again->GetUpdate());
}

namespace {

/// Stays in the host's Completed until it is let go.
class LateQueue : public Queue
{
public:
    LateQueue(const IDispatchPtr &object, std::promise<void> &inside, std::promise<void> &leave)
        : Queue(object)
        , m_inside(inside)
        , m_leave(leave)
    {}

    void Completed() override
    {
        std::promise<void> &leave = m_leave; // what is left of the object once it is going is a Queue
        Queue::Completed();
        m_inside.set_value();
        leave.get_future().wait();
    }

private:
    std::promise<void> &m_inside;
    std::promise<void> &m_leave;
};

/// Goes when it is loaded.
class ShortLivedQueue : public Queue
{
public:
    ShortLivedQueue(const IDispatchPtr &object, std::promise<void> &gone)
        : Queue(object)
        , m_gone(gone)
    {}

    void Completed() override
    {
        std::promise<void> &gone = m_gone;
        delete this;
        gone.set_value();
    }

private:
    std::promise<void> &m_gone;
};

} // namespace

TEST_F(QueueHangTest, AQueueStaysUntilTheHostHasDealtWithTheEndOfItsLoad)
{
    std::promise<void> inside;
    std::promise<void> leave;
    server.faults().failNext(text("GetList"), Fault::hang(patience));
    auto queue = std::make_unique<LateQueue>(object("Q.SHORT"), inside, leave);
    letLoad(*queue);
    inside.get_future().wait();
    auto going = std::async(std::launch::async, [&] { queue.reset(); });
    EXPECT_EQ(going.wait_for(std::chrono::milliseconds(500)), std::future_status::timeout);
    leave.set_value();
    going.get();
}

TEST_F(QueueHangTest, AQueueMayGoAtTheEndOfItsOwnLoad)
{
    std::promise<void> gone;
    server.faults().failNext(text("GetList"), Fault::hang(patience));
    letLoad(*new ShortLivedQueue(object("Q.SHORT"), gone));
    EXPECT_EQ(gone.get_future().wait_for(std::chrono::milliseconds(patience)), std::future_status::ready);
    EXPECT_TRUE(nothingHangs());
}

namespace {

/// Counts what runs of its overrides behind those of the queue.
class CarelessQueue : public Queue
{
public:
    CarelessQueue(const IDispatchPtr &object, std::atomic<int> &ranOn)
        : Queue(object)
        , m_ranOn(ranOn)
    {}
    ~CarelessQueue() override { cancelQueueLoad(true); }

    void SetUpdate(bool on) override
    {
        std::atomic<int> &ranOn = m_ranOn;
        Queue::SetUpdate(on);
        ++ranOn;
    }
    void Completed() override
    {
        std::atomic<int> &ranOn = m_ranOn;
        Queue::Completed();
        ++ranOn;
    }

private:
    std::atomic<int> &m_ranOn;
};

} // namespace

TEST_F(QueueHangTest, NothingOfTheHostsClassRunsOnOnceTheQueueHasGone)
{
    std::atomic<int> ranOn{0};
    server.faults().failNext(text("GetList"), Fault::hang(patience));
    auto queue = std::make_unique<CarelessQueue>(object("Q.LIVE"), ranOn);
    letLoad(*queue); // it is whole
    ASSERT_TRUE(comesTrue([&] { return ranOn == 2; }));
    server.faults().failNext(text("put_Update"), Fault::hang(hangTime));
    queue->Refresh();
    ASSERT_TRUE(server.faults().waitForHang(patience));
    expectPrompt([&] { queue.reset(); });
    server.faults().clear();
    ASSERT_TRUE(nothingHangs());
    EXPECT_EQ(ranOn, 2);
}

TEST_F(QueueHangTest, NothingOfTheHostsClassRunsOnOnceTheQueueHasGoneBeforeItsTurn)
{
    BusyManager manager(object("Q.LIVE"));
    std::atomic<int> ranOn{0};
    server.faults().failNext(text("GetList"), Fault::hang(patience));
    auto queue = std::make_unique<CarelessQueue>(object("Q.LIVE2"), ranOn);
    letLoad(*queue);
    ASSERT_TRUE(comesTrue([&] { return queue->Size() == 250; }));
    std::this_thread::sleep_for(std::chrono::milliseconds(20)); // until the worker waits for the manager
    queue.reset();
    manager.finish();
    EXPECT_TRUE(nothingHangs());
    EXPECT_EQ(ranOn, 0);
}

// The worker looks for the session when it is let go at last, and meets the session's end.
TEST_F(QueueHangTest, TheSessionGoesWhileTheWorkerOfAQueueThatIsGoneLooksForIt)
{
    std::unique_ptr<Queue> queue = open("Q.LIVE2");
    QueueProbe::gate(*queue).lock();
    BusyManager manager(object("Q.LIVE"));
    QueueProbe::gate(*queue).unlock();
    ASSERT_TRUE(comesTrue([&] { return queue->Size() == 250; }));
    queue.reset();
    manager.leave();
    QuireCOM::UnloadCOM();
    manager.finish();
    EXPECT_TRUE(nothingHangs());
}
