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
    WorkerPresence::Pass pass;
};

} // namespace

TEST_F(WorkerPresenceTest, AThreadIsInsideFromEnteringToLeaving)
{
    EXPECT_FALSE(presence->isInside());
    EXPECT_TRUE(presence->enter(pass));
    EXPECT_TRUE(presence->isInside());
    EXPECT_FALSE(onOtherThread([&] { return presence->isInside(); }));
    presence->leave();
    EXPECT_FALSE(presence->isInside());
    presence->leave();
    EXPECT_FALSE(presence->waitForOthers(QDeadlineTimer(0)));
}

TEST_F(WorkerPresenceTest, WhoIsInsideOneQueueIsNotInsideAnother)
{
    const auto other = std::make_shared<WorkerPresence>();
    EXPECT_TRUE(other->enter(pass));
    EXPECT_TRUE(onOtherThread([&] { return presence->enter(pass); })); // and stays
    EXPECT_FALSE(presence->isInside());
    EXPECT_FALSE(presence->isShutOut());
    EXPECT_TRUE(presence->waitForOthers(QDeadlineTimer(1)));
    presence->leave(); // where it is not
    EXPECT_TRUE(other->isInside());
    other->leave();
}

TEST_F(WorkerPresenceTest, ItClosesWhenTheLastOtherThreadHasLeft)
{
    EXPECT_TRUE(presence->enter(pass));
    std::future<void> closing = closeElsewhere();
    EXPECT_FALSE(closes(closing, 20));
    presence->leave();
    EXPECT_TRUE(closes(closing, patience));
}

TEST_F(WorkerPresenceTest, WaitingForOthersEndsAtItsDeadline)
{
    EXPECT_TRUE(presence->enter(pass));
    EXPECT_FALSE(presence->waitForOthers(QDeadlineTimer(QDeadlineTimer::Forever))); // this thread does not count
    EXPECT_TRUE(onOtherThread([&] { return presence->waitForOthers(QDeadlineTimer(1)); }));
    presence->leave();
}

TEST_F(WorkerPresenceTest, WhoIsOutsideComesBackToAQueueThatIsThere)
{
    EXPECT_TRUE(presence->enter(pass));
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
    EXPECT_TRUE(presence->enter(pass));
    WorkerPresence::Outside outside(presence);
    std::future<void> closing = closeElsewhere();
    EXPECT_TRUE(closes(closing, patience));
    EXPECT_THROW(outside.comeBack(), WorkerPresence::QueueGone);
    EXPECT_FALSE(presence->isInside());
    presence->leave();
}

TEST_F(WorkerPresenceTest, WhoHasEnteredAndIsOutsideIsShutOut)
{
    EXPECT_FALSE(presence->isShutOut());
    EXPECT_TRUE(presence->enter(pass));
    EXPECT_FALSE(presence->isShutOut());
    {
        WorkerPresence::Outside outside(presence);
        EXPECT_TRUE(presence->isShutOut());
        EXPECT_FALSE(onOtherThread([&] { return presence->isShutOut(); }));
        outside.comeBack();
    }
    EXPECT_FALSE(presence->isShutOut());
    presence->leave();
    EXPECT_FALSE(presence->isShutOut());
}

TEST_F(WorkerPresenceTest, NobodyEntersAClosedOne)
{
    presence->close();
    EXPECT_FALSE(presence->enter(pass));
    EXPECT_FALSE(presence->isInside());
    EXPECT_FALSE(presence->isShutOut());
}

TEST_F(WorkerPresenceTest, AWithdrawnPassLetsNobodyInButForOthersPasses)
{
    pass.withdraw();
    EXPECT_FALSE(presence->enter(pass));
    EXPECT_FALSE(presence->isInside());
    const WorkerPresence::Pass another;
    EXPECT_TRUE(presence->enter(another));
    presence->leave();
}

TEST_F(WorkerPresenceTest, WhoIsInsideStaysWhenItsPassIsWithdrawn)
{
    EXPECT_TRUE(presence->enter(pass));
    pass.withdraw();
    EXPECT_TRUE(presence->isInside());
    EXPECT_TRUE(onOtherThread([&] { return presence->waitForOthers(QDeadlineTimer(1)); }));
    presence->leave();
}

TEST_F(WorkerPresenceTest, WhoIsOutsideWithAWithdrawnPassDoesNotComeBack)
{
    EXPECT_TRUE(presence->enter(pass));
    WorkerPresence::Outside outside(presence);
    pass.withdraw();
    EXPECT_THROW(outside.comeBack(), WorkerPresence::QueueGone);
    EXPECT_TRUE(presence->isShutOut());
    presence->leave();
}

TEST_F(WorkerPresenceTest, ClosingTellsWhetherItWaited)
{
    EXPECT_FALSE(presence->close());
    EXPECT_FALSE(presence->enter(pass));
    const auto other = std::make_shared<WorkerPresence>();
    EXPECT_TRUE(other->enter(pass));
    auto closing = std::async(std::launch::async, [&] { return other->close(); });
    EXPECT_TRUE(comesTrue([&] { return other->isClosed(); }));
    other->leave();
    EXPECT_TRUE(closing.get());
}

TEST_F(WorkerPresenceTest, AnExceptionBringsBackIntoAQueueThatIsThere)
{
    EXPECT_TRUE(presence->enter(pass));
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
    EXPECT_TRUE(presence->enter(pass));
    std::future<void> closing = closeElsewhere();
    WorkerPresence::Outside outside(presence);
    EXPECT_TRUE(closes(closing, patience));
    EXPECT_THROW(outside.comeBack(), WorkerPresence::QueueGone);
    presence->leave(); // or a failure would not end
}

TEST_F(WorkerPresenceTest, AThreadThatEndsTheQueueItselfStaysInside)
{
    EXPECT_TRUE(presence->enter(pass));
    presence->close(); // does not wait for its own thread
    {
        WorkerPresence::Outside outside(presence);
        EXPECT_TRUE(presence->isInside());
        EXPECT_NO_THROW(outside.comeBack());
    }
    EXPECT_TRUE(presence->isInside());
    presence->leave();
}
