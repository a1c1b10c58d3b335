// Refreshing and loading on where that does not come to a load, or where several threads do it at once.

#include <gmock/gmock.h>

#include <utility>

#include "tree/QueueFixture.h"

using namespace Quire;
using Newsroom::Fault;

namespace {

const qint32 notLoggedIn = static_cast<qint32>(0x80040416);
const qint32 queueGone = static_cast<qint32>(0x8004040B);

class QueueRefreshTest : public QueueFixture
{
protected:
    /// The queue with a load that does not come to its end by itself.
    std::unique_ptr<Queue> openPausing(const char *path)
    {
        server.faults().failNext(text("GetList"), Fault::hang(patience));
        std::unique_ptr<Queue> queue = open(path);
        EXPECT_TRUE(server.faults().waitForHang(patience));
        QueueProbe::gate(*queue).lock();
        m_gate = QueueProbe::sharedGate(*queue);
        server.faults().clear();
        EXPECT_TRUE(comesTrue([&] { return queue->Size() == 20; }));
        return queue;
    }
    void TearDown() override
    {
        if (m_gate)
            m_gate->unlock();
        QueueFixture::TearDown();
    }

    std::shared_ptr<QMutex> m_gate;
};

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

// ---- loading on -----------------------------------------------------------------------------------------------------

TEST_F(QueueRefreshTest, MoreIsAvailableWhenItCannotBeLookedUp)
{
    const std::unique_ptr<Queue> queue = load("Q.LONG");
    server.faults().failEvery(text("QueryInterface"), Fault::hresult(E_ACCESSDENIED));
    EXPECT_THROW(queue->LoadMore(), _com_error);
    EXPECT_TRUE(queue->MoreStoriesAvailable());
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
