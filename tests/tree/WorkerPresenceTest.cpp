#include <gtest/gtest.h>

#include <chrono>
#include <future>
#include <memory>

#include "src/tree/WorkerPresence.h"
#include "tree/Waiting.h"

using namespace Quire;

namespace {

class WorkerPresenceTest : public ::testing::Test
{
protected:
    /// Whether the presence has come out of close() by the time.
    static bool closes(std::future<void> &closing, int milliseconds)
    {
        return closing.wait_for(std::chrono::milliseconds(milliseconds)) == std::future_status::ready;
    }

    std::future<void> closeElsewhere()
    {
        auto closing = std::async(std::launch::async, [presence = presence] { presence->close(); });
        EXPECT_TRUE(comesTrue([&] { return presence->isClosed(); }));
        return closing;
    }

    const std::shared_ptr<WorkerPresence> presence = std::make_shared<WorkerPresence>();
};

} // namespace

TEST_F(WorkerPresenceTest, AThreadIsInsideFromEnteringToLeaving)
{
    EXPECT_FALSE(presence->isInside());
    presence->enter();
    EXPECT_TRUE(presence->isInside());
    EXPECT_FALSE(onOtherThread([&] { return presence->isInside(); }));
    presence->leave();
    EXPECT_FALSE(presence->isInside());
    presence->leave();
    EXPECT_FALSE(presence->waitForOthers(QDeadlineTimer(0)));
}

TEST_F(WorkerPresenceTest, ItClosesWhenTheLastOtherThreadHasLeft)
{
    presence->enter();
    std::future<void> closing = closeElsewhere();
    EXPECT_FALSE(closes(closing, 20));
    presence->leave();
    EXPECT_TRUE(closes(closing, patience));
}

TEST_F(WorkerPresenceTest, WaitingForOthersEndsAtItsDeadline)
{
    presence->enter();
    EXPECT_FALSE(presence->waitForOthers(QDeadlineTimer(QDeadlineTimer::Forever))); // this thread does not count
    EXPECT_TRUE(onOtherThread([&] { return presence->waitForOthers(QDeadlineTimer(1)); }));
    presence->leave();
}

TEST_F(WorkerPresenceTest, WhoIsOutsideComesBackToAQueueThatIsThere)
{
    presence->enter();
    WorkerPresence::Outside outside(presence);
    EXPECT_FALSE(presence->isInside());
    outside.comeBack();
    EXPECT_TRUE(presence->isInside());
    presence->leave();
}

TEST_F(WorkerPresenceTest, WhoWasNotInsideIsNotAfterwards)
{
    {
        WorkerPresence::Outside outside(presence);
        outside.comeBack();
    }
    EXPECT_FALSE(presence->isInside());
}

TEST_F(WorkerPresenceTest, WhoIsOutsideIsToldThatTheQueueHasGone)
{
    presence->enter();
    WorkerPresence::Outside outside(presence);
    std::future<void> closing = closeElsewhere();
    EXPECT_TRUE(closes(closing, patience));
    EXPECT_THROW(outside.comeBack(), WorkerPresence::QueueGone);
    EXPECT_FALSE(presence->isInside());
}

TEST_F(WorkerPresenceTest, AnExceptionBringsBackIntoAQueueThatIsThere)
{
    presence->enter();
    EXPECT_THROW(
        {
            const WorkerPresence::Outside outside(presence);
            throw 1;
        },
        int);
    EXPECT_TRUE(presence->isInside());
    presence->leave();
}

// A worker that was about to call the server stayed inside for as long as the server took.
TEST_F(WorkerPresenceTest, AWorkerLeavesAQueueThatAnotherThreadHasBegunToEnd)
{
    presence->enter();
    std::future<void> closing = closeElsewhere();
    WorkerPresence::Outside outside(presence);
    EXPECT_TRUE(closes(closing, patience));
    EXPECT_THROW(outside.comeBack(), WorkerPresence::QueueGone);
    presence->leave(); // or a failure would not end
}

TEST_F(WorkerPresenceTest, AThreadThatEndsTheQueueItselfStaysInside)
{
    presence->enter();
    presence->close(); // does not wait for its own thread
    {
        WorkerPresence::Outside outside(presence);
        EXPECT_TRUE(presence->isInside());
        EXPECT_NO_THROW(outside.comeBack());
    }
    EXPECT_TRUE(presence->isInside());
    presence->leave();
}
