// Queues whose loads get no thread of their own from the system. Where the test can bring that about.

#ifdef __linux__

#include <gmock/gmock.h>

#include "support/NoThreads.h"
#include "tree/QueueFixture.h"

using namespace Quire;
using ::testing::IsEmpty;

namespace {

using QueueWithoutThreadTest = QueueFixture;

TEST_F(QueueWithoutThreadTest, TheLoadHasEndedWithAnErrorAndMoreIsAvailable)
{
    std::unique_ptr<Queue> queue;
    {
        const NoThreads scope;
        queue = open("Q.SHORT");
    }
    EXPECT_TRUE(queue->IsComplete());
    EXPECT_TRUE(queue->IsFinished());
    EXPECT_EQ(queue->GetError(), static_cast<qint32>(E_OUTOFMEMORY));
    EXPECT_TRUE(queue->MoreStoriesAvailable());
    EXPECT_EQ(queue->Size(), 0);
    EXPECT_EQ(lists(), QStringList());
}

TEST_F(QueueWithoutThreadTest, LoadingMoreTriesAgain)
{
    std::unique_ptr<Queue> queue;
    {
        const NoThreads scope;
        queue = open("Q.SHORT");
        queue->LoadMore();
        EXPECT_TRUE(queue->IsComplete());
        EXPECT_TRUE(queue->MoreStoriesAvailable());
    }
    queue->LoadMore();
    ASSERT_TRUE(comesTrue([&] { return queue->IsComplete() && queue->IsFinished(); }));
    EXPECT_EQ(queue->GetError(), 0);
    EXPECT_FALSE(queue->MoreStoriesAvailable());
    expectFirst(*queue, 45);
}

TEST_F(QueueWithoutThreadTest, WhatIsThereStaysWhenLoadingMoreGetsNoThread)
{
    const std::unique_ptr<Queue> queue = load("Q.LONG");
    expectFirst(*queue, 200);
    const NoThreads scope;
    queue->LoadMore();
    EXPECT_TRUE(queue->IsComplete());
    EXPECT_EQ(queue->GetError(), static_cast<qint32>(E_OUTOFMEMORY));
    expectFirst(*queue, 200);
}

TEST_F(QueueWithoutThreadTest, ALiveQueueIsNotWatchedAndGoes)
{
    std::unique_ptr<Queue> queue;
    {
        const NoThreads scope;
        queue = open("Q.LIVE");
    }
    EXPECT_THAT(QueueUpdateMgrProbe::watched(), IsEmpty());
    queue.reset();
    EXPECT_TRUE(nothingHangs());
}

TEST_F(QueueWithoutThreadTest, CancellingAndRefreshingFindNothingToWaitFor)
{
    std::unique_ptr<Queue> queue;
    {
        const NoThreads scope;
        queue = open("Q.SHORT");
        queue->cancelQueueLoad(false);
        queue->cancelQueueLoad(true);
        EXPECT_TRUE(queue->IsComplete());
    }
    queue->Refresh();
    ASSERT_TRUE(comesTrue([&] { return queue->IsComplete() && queue->IsFinished(); }));
    EXPECT_EQ(queue->GetError(), 0);
    expectFirst(*queue, 45);
}

} // namespace

#endif
