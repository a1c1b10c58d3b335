// Refreshing and loading on where that does not come to a load, or where several threads do it at once.

#include <gmock/gmock.h>

#include <utility>

#include "tree/QueueFixture.h"

using namespace Quire;
using Newsroom::Fault;

namespace {

const qint32 notLoggedIn = static_cast<qint32>(0x80040416);
const qint32 queueGone = static_cast<qint32>(0x8004040B);

using QueueRefreshTest = QueueFixture;

} // namespace

TEST_F(QueueRefreshTest, WithoutAConnectionItEndsTheLoadWithAnError)
{
    const std::unique_ptr<Queue> queue = openPausing("Q.LONG");
    session->Disconnect();
    queue->Refresh();
    EXPECT_TRUE(queue->IsComplete());
    EXPECT_EQ(queue->GetError(), notLoggedIn);
    EXPECT_EQ(queue->Size(), 0);
}

TEST_F(QueueRefreshTest, OfAQueueThatTheServerDoesNotFindItEndsTheLoadWithAnError)
{
    const std::unique_ptr<Queue> queue = openPausing("Q.LONG");
    server.faults().failEvery(text("get_Item"), Fault::hresult(E_FAIL)); // of the directory above it
    server.faults().failEvery(text("GetDirectory"), Fault::hresult(E_FAIL));
    queue->Refresh();
    EXPECT_TRUE(queue->IsComplete());
    EXPECT_EQ(queue->GetError(), queueGone);
}

TEST_F(QueueRefreshTest, WhatTheServerRefusesIsRaisedAndEndsTheLoad)
{
    const std::unique_ptr<Queue> queue = openPausing("Q.LONG");
    server.faults().failEvery(text("QueryInterface"), Fault::hresult(E_ACCESSDENIED));
    EXPECT_THROW(queue->Refresh(), _com_error);
    EXPECT_TRUE(queue->IsComplete());
    EXPECT_EQ(queue->GetError(), static_cast<qint32>(E_ACCESSDENIED));
}

TEST_F(QueueRefreshTest, AfterACancelItEndsWithAnErrorAllTheSame)
{
    const std::unique_ptr<Queue> queue = openPausing("Q.LONG");
    queue->cancelQueueLoad(true);
    EXPECT_FALSE(queue->IsComplete());
    session->Disconnect();
    queue->Refresh();
    EXPECT_TRUE(queue->IsComplete());
    EXPECT_EQ(queue->GetError(), notLoggedIn);
}

TEST_F(QueueRefreshTest, ACompleteQueueStaysCompleteWithoutAConnection)
{
    const std::unique_ptr<Queue> queue = load("Q.SHORT");
    session->Disconnect();
    queue->Refresh();
    EXPECT_TRUE(queue->IsComplete());
    EXPECT_EQ(queue->GetError(), 0);
}

TEST_F(QueueRefreshTest, AtOnceItEndsTheThreadedLoadInWhosePlaceItCame)
{
    const std::unique_ptr<Queue> queue = openPausing("Q.LONG");
    Queue::useThreading = false;
    queue->Refresh();
    EXPECT_TRUE(queue->IsComplete());
    EXPECT_EQ(queue->GetError(), 0);
    expectFirst(*queue, 200);
}

TEST_F(QueueRefreshTest, AtOnceItEndsTheThreadedLoadAlsoWhenItFails)
{
    const std::unique_ptr<Queue> queue = openPausing("Q.LONG");
    Queue::useThreading = false;
    server.faults().failNext(text("GetList"), Fault::hresult(E_ACCESSDENIED));
    EXPECT_THROW(queue->Refresh(), _com_error);
    EXPECT_TRUE(queue->IsComplete());
    EXPECT_EQ(queue->GetError(), static_cast<qint32>(E_ACCESSDENIED));
}

TEST_F(QueueRefreshTest, AtOnceItsFailureEndsNoThreadedLoadWhereThereIsNone)
{
    Queue::useThreading = false;
    const std::unique_ptr<Queue> queue = open("Q.SHORT");
    server.faults().failEvery(text("QueryInterface"), Fault::hresult(E_ACCESSDENIED));
    EXPECT_THROW(queue->Refresh(), _com_error);
    EXPECT_FALSE(queue->IsComplete());
    EXPECT_EQ(queue->GetError(), 0);
}

TEST_F(QueueRefreshTest, NoMoreIsAvailableUntilTheLoadSaysSo)
{
    const std::unique_ptr<Queue> queue = load("Q.LONG");
    ASSERT_TRUE(queue->MoreStoriesAvailable());
    QueueProbe::gate(*queue).lock();
    queue->Refresh();
    EXPECT_FALSE(queue->MoreStoriesAvailable());
    QueueProbe::gate(*queue).unlock();
    ASSERT_TRUE(comesTrue([&] { return queue->IsComplete(); }));
    EXPECT_TRUE(queue->MoreStoriesAvailable());
}

namespace {

/// Pauses once where Refresh has cleared the list and looks the queue up.
class PausingQueue : public Queue
{
public:
    using Queue::Queue;

    std::atomic<bool> pauses{false};
    std::promise<void> arrived;
    std::promise<void> leave;

protected:
    void Populate() override
    {
        if (pauses.exchange(false)) {
            arrived.set_value();
            leave.get_future().wait();
        }
        Queue::Populate();
    }
};

} // namespace

TEST_F(QueueRefreshTest, AtOnceBringsNoStoryTwiceWhenAnotherThreadHasRefreshedMeanwhile)
{
    Queue::useThreading = false;
    PausingQueue queue(object("Q.SHORT"));
    queue.pauses = true;
    auto refreshing = std::async(std::launch::async, [&] { queue.Refresh(); });
    queue.arrived.get_future().wait();
    queue.Refresh();
    expectFirst(queue, 45);
    queue.leave.set_value();
    refreshing.get();
    expectFirst(queue, 45);
}

TEST_F(QueueRefreshTest, BringsNoStoryTwiceWhenAnotherThreadHasRefreshedMeanwhile)
{
    server.faults().failNext(text("GetList"), Fault::hang(patience));
    PausingQueue queue(object("Q.SHORT"));
    letLoad(queue); // it is whole
    queue.pauses = true;
    auto refreshing = std::async(std::launch::async, [&] { queue.Refresh(); });
    queue.arrived.get_future().wait();
    queue.Refresh();
    ASSERT_TRUE(comesTrue([&] { return queue.IsComplete(); }));
    queue.leave.set_value();
    refreshing.get();
    ASSERT_TRUE(comesTrue([&] { return queue.IsComplete(); }));
    expectFirst(queue, 45);
}

namespace {

/// A refresh that pauses where it looks the queue up, and another that has begun its load meanwhile, which waits for
/// the gate.
class OvertakenRefreshTest : public QueueRefreshTest
{
protected:
    void SetUp() override
    {
        QueueRefreshTest::SetUp();
        server.faults().failNext(text("GetList"), Fault::hang(patience));
        queue = std::make_unique<PausingQueue>(object("Q.SHORT"));
        letLoad(*queue); // it is whole
        ASSERT_TRUE(comesTrue([&] { return queue->IsComplete() && queue->IsFinished(); }));
        queue->pauses = true;
        refreshing = std::async(std::launch::async, [this] { queue->Refresh(); });
        queue->arrived.get_future().wait();
        QueueProbe::gate(*queue).lock();
        queue->Refresh();
    }
    void TearDown() override
    {
        EXPECT_FALSE(queue->IsComplete());
        server.faults().clear();
        QueueProbe::gate(*queue).unlock();
        EXPECT_TRUE(comesTrue([&] { return queue->IsComplete(); }));
        EXPECT_EQ(queue->GetError(), 0);
        expectFirst(*queue, 45);
        queue.reset();
        QueueRefreshTest::TearDown();
    }

    std::unique_ptr<PausingQueue> queue;
    std::future<void> refreshing;
};

} // namespace

TEST_F(OvertakenRefreshTest, DoesNotEndTheOtherLoadWhenItFindsNoQueue)
{
    session->RemoveDirFromCache(text("Q.SHORT"));
    server.faults().failEvery(text("get_Item"), Fault::hresult(E_FAIL)); // of the directory above it
    server.faults().failEvery(text("GetDirectory"), Fault::hresult(E_FAIL));
    queue->leave.set_value();
    refreshing.get();
}

TEST_F(OvertakenRefreshTest, DoesNotEndTheOtherLoadWhenTheServerRefuses)
{
    server.faults().failEvery(text("QueryInterface"), Fault::hresult(E_ACCESSDENIED));
    queue->leave.set_value();
    EXPECT_THROW(refreshing.get(), _com_error);
}

// ---- loading on -----------------------------------------------------------------------------------------------------

TEST_F(QueueRefreshTest, MoreIsAvailableWhenItCannotBeLookedUp)
{
    const std::unique_ptr<Queue> queue = load("Q.LONG");
    server.faults().failEvery(text("QueryInterface"), Fault::hresult(E_ACCESSDENIED));
    EXPECT_THROW(queue->LoadMore(), _com_error);
    EXPECT_TRUE(queue->MoreStoriesAvailable());
}

TEST_F(QueueRefreshTest, OfTwoThreadsThatAskForMoreOneGetsIt)
{
    Queue::useThreading = false;
    PausingQueue queue(object("Q.LONG"));
    queue.pauses = true;
    auto loading = std::async(std::launch::async, [&] { queue.LoadMore(); });
    queue.arrived.get_future().wait();
    EXPECT_FALSE(queue.MoreStoriesAvailable());
    queue.LoadMore();
    EXPECT_EQ(queue.Size(), 200);
    queue.leave.set_value();
    loading.get();
    EXPECT_EQ(queue.Size(), 600); // from the beginning, as always at once
}

TEST_F(QueueRefreshTest, NoMoreIsAvailableWhenOnlyTheRegistrationIsRefused)
{
    Queue::useThreading = false;
    const std::unique_ptr<Queue> queue = open("Q.LIVE");
    server.faults().failNext(text("GetList"), Fault::hresult(E_ACCESSDENIED));
    EXPECT_THROW(queue->Refresh(), _com_error);
    ASSERT_TRUE(queue->MoreStoriesAvailable());
    server.faults().failNext(text("put_Update"), Fault::hresult(E_ACCESSDENIED));
    EXPECT_THROW(queue->LoadMore(), _com_error);
    EXPECT_FALSE(queue->MoreStoriesAvailable());
    queue->LoadMore();
    expectFirst(*queue, 45);
}
