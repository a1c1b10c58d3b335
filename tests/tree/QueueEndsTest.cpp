// How a queue's loads end where a host ends them itself, or begins others in their place.

#include <gmock/gmock.h>

#include <functional>
#include <utility>

#include <quire/tree/ListMutexLocker.h>

#include "tree/QueueFixture.h"

using namespace Quire;
using Newsroom::Fault;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

namespace {

/// Does what a test says in the worker's call, before or after what the class itself has to do there.
class ActingQueue : public Queue
{
public:
    using Queue::Queue;
    ~ActingQueue() override { cancelQueueLoad(true); }

    void Completed() override
    {
        if (before)
            before();
        Queue::Completed();
        if (after)
            after();
    }

    std::function<void()> before; // both set while the load cannot go on
    std::function<void()> after;
};

/// Keeps to itself what the switching of reports raises.
class QuietQueue : public Queue
{
public:
    using Queue::Queue;
    ~QuietQueue() override { cancelQueueLoad(true); }

    void SetUpdate(bool on) override
    try {
        Queue::SetUpdate(on);
    } catch (...) {
        return;
    }
};

using QueueEndsTest = QueueFixture;

} // namespace

TEST_F(QueueEndsTest, AWorkerThatAsksWhetherItIsCompleteIsNotCollected)
{
    const auto queue = openPausing<ActingQueue>("Q.SHORT");
    bool complete = false;
    std::promise<void> arrived;
    std::promise<void> leave;
    queue->after = [&] {
        complete = queue->IsComplete();
        arrived.set_value();
        leave.get_future().wait();
    };
    openGate();
    arrived.get_future().wait();
    EXPECT_TRUE(complete);
    EXPECT_TRUE(QueueProbe::hasWorker(*queue));
    EXPECT_FALSE(queue->IsFinished());
    leave.set_value();
    EXPECT_TRUE(comesTrue([&] { return queue->IsFinished(); }));
}

TEST_F(QueueEndsTest, AWorkerThatLetsGoOfItsOwnLoadStillRegistersAndCompletesTheQueue)
{
    const auto queue = openPausing<ActingQueue>("Q.LIVE");
    queue->before = [&] { queue->cancelQueueLoad(true); };
    openGate();
    EXPECT_TRUE(comesTrue([&] { return queue->IsComplete(); }));
    EXPECT_TRUE(queue->IsFinished());
    EXPECT_EQ(queue->GetError(), 0);
    EXPECT_THAT(QueueUpdateMgrProbe::watched(), ElementsAre(14));
    expectFirst(*queue, 45);
    for (const LogMessage &message : log.messages())
        EXPECT_EQ(message.type, QtDebugMsg) << message.text.toStdString(); // like that a thread waits for itself
}

TEST_F(QueueEndsTest, ALoadThatWasLetGoOfIsNeitherCompleteNorWatchedWhateverTheHostKeepsToItself)
{
    const auto queue = openPausing<QuietQueue>("Q.LIVE");
    server.faults().failNext(text("put_Update"), Fault::hang(patience));
    openGate();
    ASSERT_TRUE(server.faults().waitForHang(patience));
    queue->cancelQueueLoad(true);
    server.faults().clear();
    ASSERT_TRUE(nothingHangs());
    EXPECT_FALSE(queue->IsComplete());
    EXPECT_THAT(QueueUpdateMgrProbe::watched(), IsEmpty());
}

TEST_F(QueueEndsTest, PopulatingAtOnceLetsGoOfAThreadedLoad)
{
    const auto queue = openPausing<CountingQueue>("Q.LONG");
    Queue::useThreading = false;
    queue->Populate(object("Q.LONG"));
    EXPECT_EQ(queue->Size(), 240); // 220 from the beginning
    openGate();
    ASSERT_TRUE(nothingHangs());
    EXPECT_TRUE(comesTrue([&] { return queue->IsFinished(); }));
    EXPECT_TRUE(queue->IsComplete()); // nobody else would say so any more
    EXPECT_EQ(queue->Size(), 240);
    EXPECT_EQ(queue->completed, 0);
}

TEST_F(QueueEndsTest, ALoadAtOnceThatIsOutdatedDoesNotEndTheThreadedOneInItsPlace)
{
    Queue::useThreading = false;
    const std::unique_ptr<Queue> queue = open("Q.SHORT");
    std::promise<void> arrived;
    std::promise<void> leave;
    bool paused = false;
    // Between two stories, where the thread holds no lock.
    log.onMessage = [&] {
        if (!paused && log.texts().last().startsWith(text("Queue::LoadListChunk() unlocked"))) {
            paused = true;
            arrived.set_value();
            leave.get_future().wait();
        }
    };
    ListMutexLocker::sDebugListLocks = true;
    auto refreshing = std::async(std::launch::async, [&] { queue->Refresh(); });
    arrived.get_future().wait();
    Queue::useThreading = true;
    QueueProbe::gate(*queue).lock();
    queue->Refresh();
    leave.set_value();
    refreshing.get();
    ListMutexLocker::sDebugListLocks = false;
    EXPECT_FALSE(queue->IsComplete());
    QueueProbe::gate(*queue).unlock();
    EXPECT_TRUE(comesTrue([&] { return queue->IsComplete(); }));
    log.onMessage = nullptr;
    expectFirst(*queue, 45);
}
