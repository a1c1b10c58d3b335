// What runs of the host's class when its queue lets go of a load.

#include <gmock/gmock.h>

#include <functional>

#include <quire/session/QuireCOMMutex.h>

#include "tree/BusyManager.h"
#include "tree/QueueFixture.h"

using namespace Quire;
using Newsroom::Fault;
using ::testing::ElementsAre;

namespace {

class QueueLetGoTest : public QueueFixture
{
protected:
    /// Waits until the loads that were let go of have ended; the server answers.
    static bool workersEnd()
    {
        return comesTrue([] { return QueueProbe::hangingWorkers() == 0; });
    }
};

/// What an EndingQueue does and what becomes of it; outlasts the queue.
struct Ending
{
    std::function<void()> rest; ///< of its destructor, behind cancelQueueLoad(true)
    std::atomic<bool> letGo{false};
    std::atomic<int> late{0}; ///< steps of its overrides that ran behind cancelQueueLoad(true)
};

/// Takes its time in the destructor.
class EndingQueue : public Queue
{
public:
    EndingQueue(const IDispatchPtr &object, Ending &ending)
        : Queue(object)
        , m_ending(ending)
    {}
    ~EndingQueue() override
    {
        cancelQueueLoad(true);
        m_ending.letGo = true;
        m_ending.rest();
    }

    void SetUpdate(bool on) override
    {
        Ending &ending = m_ending;
        note(ending);
        Queue::SetUpdate(on);
        note(ending);
    }
    void Completed() override
    {
        Ending &ending = m_ending;
        note(ending);
        Queue::Completed();
        note(ending);
    }

private:
    static void note(Ending &ending)
    {
        if (ending.letGo)
            ++ending.late;
    }

    Ending &m_ending;
};

/// Queues that let go of a load which hangs in its registration; the server answers again behind that.
class QueueLetGoInRegistrationTest : public QueueLetGoTest
{
protected:
    void SetUp() override
    {
        QueueLetGoTest::SetUp();
        ending.rest = [this] {
            server.faults().clear();
            EXPECT_TRUE(workersEnd());
        };
        server.faults().failNext(text("GetList"), Fault::hang(patience));
        queue = std::make_unique<EndingQueue>(object("Q.LIVE2"), ending);
        QueueProbe::gate(*queue).lock();
        server.faults().clear();
        server.faults().failNext(text("put_Update"), Fault::hang(patience));
        QueueProbe::gate(*queue).unlock();
        ASSERT_TRUE(server.faults().waitForHang(patience));
    }
    void TearDown() override
    {
        queue.reset();
        QueueLetGoTest::TearDown();
    }

    Ending ending;
    std::unique_ptr<EndingQueue> queue;
};

} // namespace

TEST_F(QueueLetGoTest, NothingOfTheHostsClassBeginsBehindTheCancelInItsDestructor)
{
    BusyManager manager(object("Q.LIVE"));
    Ending ending;
    ending.rest = [&] {
        manager.finish();
        EXPECT_TRUE(workersEnd());
    };
    server.faults().failNext(text("GetList"), Fault::hang(patience));
    auto queue = std::make_unique<EndingQueue>(object("Q.LIVE2"), ending);
    letLoad(*queue);
    ASSERT_TRUE(comesTrue([&] { return queue->Size() == 250; }));
    std::this_thread::sleep_for(std::chrono::milliseconds(20)); // until the worker waits for the manager
    queue.reset();
    EXPECT_EQ(ending.late, 0);
}

TEST_F(QueueLetGoInRegistrationTest, NothingOfTheHostsClassRunsOnBehindTheCancelInItsDestructor)
{
    queue.reset();
    EXPECT_EQ(ending.late, 0);
}

TEST_F(QueueLetGoInRegistrationTest, AnEarlierLoadThatStillHangsIsLetGoOfAsWell)
{
    auto refreshing = std::async(std::launch::async, [this] { queue->Refresh(); }); // waits for the access lock
    ASSERT_TRUE(comesTrue([this] { return !QueueProbe::hasWorker(*queue); }));
    queue->cancelQueueLoad(true);
    ending.letGo = true;
    server.faults().clear();
    refreshing.get();
    ASSERT_TRUE(comesTrue([this] { return queue->IsComplete(); }));
    ASSERT_TRUE(workersEnd());
    EXPECT_EQ(ending.late, 4); // of the new load alone
}

TEST_F(QueueLetGoInRegistrationTest, TheQueueLoadsAgain)
{
    queue->cancelQueueLoad(true);
    EXPECT_TRUE(queue->IsFinished());
    ending.letGo = true;
    server.faults().clear();
    ASSERT_TRUE(workersEnd());
    EXPECT_EQ(ending.late, 0);
    EXPECT_FALSE(queue->IsComplete());
    queue->Refresh();
    ASSERT_TRUE(comesTrue([this] { return queue->IsComplete(); }));
    EXPECT_EQ(queue->GetError(), 0);
    ASSERT_TRUE(workersEnd());
    EXPECT_EQ(ending.late, 4);
    EXPECT_THAT(QueueUpdateMgrProbe::watched(), ElementsAre(15));
    expectFirst(*queue, 250);
}

namespace {

/// Where a CatchingQueue has come to; outlasts the queue.
struct Refusal
{
    std::promise<void> arrived;
    std::promise<void> leave;
    std::atomic<int> caught{0};
};

/// Deals with what the server refuses.
class CatchingQueue : public Queue
{
public:
    CatchingQueue(const IDispatchPtr &object, Refusal &refusal)
        : Queue(object)
        , m_refusal(refusal)
    {}
    ~CatchingQueue() override { cancelQueueLoad(true); }

    void SetUpdate(bool on) override
    {
        Refusal &refusal = m_refusal;
        refusal.arrived.set_value();
        refusal.leave.get_future().wait();
        try {
            Queue::SetUpdate(on);
        } catch (const _com_error &) {
            ++refusal.caught; // and touches the object
        }
    }

private:
    Refusal &m_refusal;
};

} // namespace

TEST_F(QueueLetGoTest, WhatTheServerRefusesAQueueThatHasGoneIsNotToldToItsClass)
{
    Refusal refusal;
    server.faults().failNext(text("GetList"), Fault::hang(patience));
    auto queue = std::make_unique<CatchingQueue>(object("Q.LIVE2"), refusal);
    letLoad(*queue);
    refusal.arrived.get_future().wait();
    std::promise<void> locked;
    std::promise<void> gone;
    auto busy = std::async(std::launch::async, [&] {
        const QuireCOMMutex lock("QueueLetGoTest");
        locked.set_value();
        gone.get_future().wait();
    });
    locked.get_future().wait();
    refusal.leave.set_value();
    std::this_thread::sleep_for(std::chrono::milliseconds(20)); // until the worker waits for the access lock
    queue.reset();
    server.faults().failNext(text("put_Update"), Fault::hresult(E_ACCESSDENIED));
    gone.set_value();
    busy.get();
    ASSERT_TRUE(workersEnd());
    EXPECT_EQ(refusal.caught, 0);
}

TEST_F(QueueLetGoTest, IsNotFinishedWhileAnotherThreadStillWaitsForTheWorker)
{
    const std::unique_ptr<Queue> queue = open("Q.LONG");
    QueueProbe::gate(*queue).lock();
    queue->Lock(); // keeps the other thread from letting go
    auto cancelling = std::async(std::launch::async, [&] { queue->cancelQueueLoad(true); });
    ASSERT_TRUE(comesTrue([&] { return !QueueProbe::hasWorker(*queue); }));
    EXPECT_FALSE(queue->IsFinished());
    queue->Unlock();
    cancelling.get();
    EXPECT_TRUE(queue->IsFinished());
    QueueProbe::gate(*queue).unlock();
}
