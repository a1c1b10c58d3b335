// Queues: which chunks are read, how a load ends, and what goes on after it.

#include <gmock/gmock.h>

#include <stdexcept>

#include <quire/tree/AttributeKeys.h>
#include <quire/tree/QueueUpdateMgr.h>

#include "tree/QueueFixture.h"

using namespace Quire;
using Newsroom::Fault;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

namespace {

class QueueTest : public QueueFixture
{
protected:
    /// The calls of GetList that read these chunks.
    static QStringList chunks(const std::vector<int> &positions, int size)
    {
        QStringList calls;
        for (const int position : positions)
            calls.append(text("IQueue2::GetList(%1, %2)").arg(position).arg(size));
        return calls;
    }
    static std::vector<int> steps(int from, int to, int step)
    {
        std::vector<int> positions;
        for (int position = from; position < to; position += step)
            positions.push_back(position);
        return positions;
    }
    /// As lists(), with results of failed calls.
    bool loadsMore(Queue &queue)
    {
        queue.LoadMore();
        return comesTrue([&] { return queue.IsComplete() && queue.IsFinished(); });
    }
};

/// Queues that load on the calling thread.
class QueueAtOnceTest : public QueueTest
{
protected:
    void SetUp() override
    {
        QueueTest::SetUp();
        Queue::useThreading = false;
    }
};

} // namespace

// ---- settings -------------------------------------------------------------------------------------------------------

TEST_F(QueueTest, LoadsOnAThreadOfItsOwnByDefault)
{
    EXPECT_TRUE(Queue::useThreading);
}

TEST_F(QueueTest, LoadsTwoHundredMoreByDefault)
{
    EXPECT_EQ(Queue::getLoadIncrement(), 200);
    EXPECT_EQ(Queue::sLoadIncrement, 200);
}

TEST_F(QueueTest, TakesPositiveIncrementsOnly)
{
    for (const int refused : {0, -5, -2147483647 - 1}) {
        Queue::setLoadIncrement(refused);
        EXPECT_EQ(Queue::getLoadIncrement(), 200);
    }
    Queue::setLoadIncrement(1);
    EXPECT_EQ(Queue::getLoadIncrement(), 1);
}

TEST_F(QueueTest, TheLoadIncrementMayBeSetWhileQueuesLoadOnOtherThreads)
{
    std::thread setting([] {
        for (int increment = 1; increment <= 100; ++increment)
            Queue::setLoadIncrement(increment);
    });
    for (int round = 0; round < 5; ++round)
        load("Q.SHORT");
    setting.join();
    EXPECT_EQ(Queue::getLoadIncrement(), 100);
}

TEST_F(QueueTest, TheSizeOfAChunkIsChosenWhenTheQueueIsMade)
{
    const std::unique_ptr<Queue> threaded = load("Q.NONE");
    EXPECT_EQ(QueueProbe::chunkSize(*threaded), 20);
    Queue::useThreading = false;
    const std::unique_ptr<Queue> atOnce = open("Q.NONE");
    EXPECT_EQ(QueueProbe::chunkSize(*atOnce), 100);
}

// ---- making one -----------------------------------------------------------------------------------------------------

TEST_F(QueueTest, IsAQueueAndNoDirectory)
{
    const std::unique_ptr<Queue> queue = load("Q.NONE");
    EXPECT_TRUE(queue->IsQueue());
    EXPECT_FALSE(queue->IsDirectory());
}

TEST_F(QueueTest, IsNamedAndNumberedByTheServer)
{
    const std::unique_ptr<Queue> queue = load("Q.SHORT");
    EXPECT_EQ(queue->Name(), text("Q.SHORT"));
    EXPECT_EQ(queue->QueueID(), 11);
    EXPECT_FALSE(queue->GetLiveRefresh());
    EXPECT_TRUE(load("Q.LIVE")->GetLiveRefresh());
}

TEST_F(QueueTest, MadeFromAnotherObjectIsEmptyNamelessAndIdle)
{
    for (const IDispatchPtr &other : {object("Q"), IDispatchPtr()}) {
        server.calls().take();
        Queue queue(other);
        EXPECT_EQ(queue.Name(), QString());
        EXPECT_EQ(queue.Size(), 0);
        EXPECT_EQ(queue.QueueID(), 0);
        EXPECT_FALSE(queue.IsComplete());
        EXPECT_TRUE(queue.IsFinished());
        EXPECT_FALSE(queue.MoreStoriesAvailable());
        EXPECT_FALSE(queue.GetLiveRefresh());
        EXPECT_EQ(queue.GetError(), 0);
        queue.cancelQueueLoad(true);
        queue.cancelQueueLoad(false);
        EXPECT_THAT(server.calls().takeTexts(), IsEmpty());
    }
}

TEST_F(QueueTest, IsReadInThisOrder)
{
    const IDispatchPtr none = object("Q.NONE");
    Queue::useThreading = false;
    server.calls().take();
    const Queue queue(none);
    EXPECT_THAT(server.calls().takeTexts(),
                ElementsAre(text("IQueue2::get_Name()"), text("IQueue2::get_QueueID()"), text("IQueue2::get_Flags()"),
                            text("IQueue2::GetList(0, 100)")));
}

TEST_F(QueueTest, AFailureWhileItIsMadeIsRaisedAndLeavesNothing)
{
    const IDispatchPtr live = object("Q.LIVE");
    const int before = server.census()->live();
    for (const bool threaded : {true, false}) {
        Queue::useThreading = threaded;
        for (const char *operation : {"get_Name", "get_QueueID", "get_Flags"}) {
            for (const Fault &fault : {Fault::hresult(E_ACCESSDENIED), Fault::raise(E_ACCESSDENIED)}) {
                server.faults().failNext(text(operation), fault);
                EXPECT_THROW(Queue queue(live), _com_error) << operation;
                server.faults().clear();
                EXPECT_EQ(server.census()->live(), before) << operation;
                EXPECT_EQ(QuireCOM::m_LockThreadID, 0u) << operation;
            }
        }
    }
}

// ---- chunks ---------------------------------------------------------------------------------------------------------

TEST_F(QueueTest, FortyFiveStoriesTakeThreeChunks)
{
    const std::unique_ptr<Queue> queue = load("Q.SHORT");
    EXPECT_EQ(lists(), chunks({0, 20, 40}, 20));
    EXPECT_FALSE(queue->MoreStoriesAvailable());
    EXPECT_EQ(queue->GetError(), 0);
    expectFirst(*queue, 45);
}

TEST_F(QueueTest, FortyStoriesTakeAThirdChunkThatIsEmpty)
{
    const std::unique_ptr<Queue> queue = load("Q.EVEN");
    EXPECT_EQ(lists(), chunks({0, 20, 40}, 20));
    EXPECT_FALSE(queue->MoreStoriesAvailable());
    expectFirst(*queue, 40);
}

TEST_F(QueueTest, NoStoriesTakeOneChunk)
{
    const std::unique_ptr<Queue> queue = load("Q.NONE");
    EXPECT_EQ(lists(), chunks({0}, 20));
    EXPECT_FALSE(queue->MoreStoriesAvailable());
    EXPECT_EQ(queue->Size(), 0);
}

TEST_F(QueueTest, AThousandStoriesStopAtTwoHundred)
{
    const std::unique_ptr<Queue> queue = load("Q.LONG");
    EXPECT_EQ(lists(), chunks(steps(0, 200, 20), 20));
    EXPECT_TRUE(queue->MoreStoriesAvailable());
    EXPECT_EQ(queue->GetError(), 0);
    expectFirst(*queue, 200);
}

TEST_F(QueueTest, LoadingMoreGoesOnFromTwoHundredToFourHundred)
{
    const std::unique_ptr<Queue> queue = load("Q.LONG");
    lists();
    ASSERT_TRUE(loadsMore(*queue));
    EXPECT_EQ(lists(), chunks(steps(200, 400, 20), 20));
    EXPECT_TRUE(queue->MoreStoriesAvailable());
    expectFirst(*queue, 400);
}

TEST_F(QueueTest, LoadingMoreAgainAndAgainReadsAll)
{
    const std::unique_ptr<Queue> queue = load("Q.LONG");
    int loads = 1;
    for (; queue->MoreStoriesAvailable(); ++loads)
        ASSERT_TRUE(loadsMore(*queue));
    EXPECT_EQ(loads, 6); // the sixth finds that there are no more
    EXPECT_EQ(lists(), chunks(steps(0, 1020, 20), 20));
    expectFirst(*queue, 1000);
}

TEST_F(QueueTest, LoadingMoreDoesNothingWhenThereIsNoMore)
{
    const std::unique_ptr<Queue> queue = load("Q.SHORT");
    server.calls().take();
    queue->LoadMore();
    EXPECT_THAT(server.calls().takeTexts(), IsEmpty());
    EXPECT_TRUE(queue->IsComplete());
    expectFirst(*queue, 45);
}

TEST_F(QueueTest, TheIncrementIsThatOfTheMomentOfLoading)
{
    Queue::setLoadIncrement(50);
    const std::unique_ptr<Queue> queue = load("Q.LONG");
    EXPECT_EQ(lists(), chunks({0, 20, 40}, 20)); // whole chunks, so past the limit
    EXPECT_EQ(QueueProbe::limit(*queue), 50);
    expectFirst(*queue, 60);
    Queue::setLoadIncrement(20);
    ASSERT_TRUE(loadsMore(*queue));
    EXPECT_EQ(lists(), chunks({60}, 20));
    expectFirst(*queue, 80);
}

TEST_F(QueueTest, AnIncrementOfOneStopsAfterOneChunk)
{
    Queue::setLoadIncrement(1);
    const std::unique_ptr<Queue> queue = load("Q.LONG");
    EXPECT_EQ(lists(), chunks({0}, 20));
    EXPECT_TRUE(queue->MoreStoriesAvailable());
    expectFirst(*queue, 20);
}

TEST_F(QueueTest, AHugeIncrementIsNoLimit)
{
    Queue::setLoadIncrement(2147483647);
    const std::unique_ptr<Queue> queue = load("Q.SHORT");
    expectFirst(*queue, 45);
    server.calls().take();
}

TEST_F(QueueTest, ALiveQueueIsReadWhole)
{
    const std::unique_ptr<Queue> queue = load("Q.LIVE2");
    EXPECT_EQ(lists(), chunks(steps(0, 260, 20), 20));
    EXPECT_EQ(QueueProbe::limit(*queue), -1);
    EXPECT_FALSE(queue->MoreStoriesAvailable());
    expectFirst(*queue, 250);
}

TEST_F(QueueTest, ALiveQueueIsRegisteredBeforeItIsComplete)
{
    const std::unique_ptr<Queue> queue = load("Q.LIVE");
    EXPECT_EQ(callsOf({text("GetList"), text("put_Update")}),
              chunks({0, 20, 40}, 20) + QStringList(text("IQueue2::put_Update(true)")));
    EXPECT_THAT(QueueUpdateMgrProbe::watched(), ElementsAre(14));
    EXPECT_TRUE(queue->GetUpdate());
}

TEST_F(QueueTest, AnOrdinaryQueueIsNotRegistered)
{
    const std::unique_ptr<Queue> queue = load("Q.SHORT");
    EXPECT_THAT(QueueUpdateMgrProbe::watched(), IsEmpty());
    EXPECT_FALSE(queue->GetUpdate());
}

TEST_F(QueueTest, ALiveQueueThatGoesIsUnregistered)
{
    std::unique_ptr<Queue> queue = load("Q.LIVE");
    server.calls().take();
    queue.reset();
    EXPECT_THAT(server.calls().takeTexts(), ElementsAre(text("IQueue2::put_Update(false)")));
    EXPECT_THAT(QueueUpdateMgrProbe::watched(), IsEmpty());
}

TEST_F(QueueTest, AnOrdinaryQueueGoesWithoutACall)
{
    std::unique_ptr<Queue> queue = load("Q.SHORT");
    server.calls().take();
    queue.reset();
    EXPECT_THAT(server.calls().takeTexts(), IsEmpty());
}

TEST_F(QueueTest, ArrivingStoriesChangeTheList)
{
    const std::unique_ptr<Queue> queue = load("Q.LONG");
    EXPECT_TRUE(queue->HasChanged(true));
    EXPECT_FALSE(queue->HasChanged(true));
    ASSERT_TRUE(loadsMore(*queue));
    EXPECT_TRUE(queue->HasChanged(true));
}

TEST_F(QueueTest, AnEmptyChunkDoesNotChangeTheList)
{
    Queue::useThreading = false;
    CountingQueue queue(object("Q.NONE"));
    queue.HasChanged(true);
    queue.Populate();
    EXPECT_FALSE(queue.HasChanged(false));
}

TEST_F(QueueTest, OneChunkCanBeRead)
{
    Queue::useThreading = false;
    CountingQueue queue(object("Q.NONE"));
    int position = 3;
    EXPECT_TRUE(queue.LoadListChunk(Orvex::IQueuePtr(), position));
    EXPECT_EQ(position, 3);
    EXPECT_FALSE(queue.LoadListChunk(Orvex::IQueuePtr(object("Q.LONG")), position));
    EXPECT_EQ(position, 103);
    EXPECT_EQ(queue.Size(), 100);
    EXPECT_EQ(placeOf(*queue.Nth(0)), 3);
    position = 960;
    EXPECT_TRUE(queue.LoadListChunk(Orvex::IQueuePtr(object("Q.LONG")), position));
    EXPECT_EQ(position, 1000);
}

TEST_F(QueueTest, AnEmptyChunkSaysThatNoMoreIsAvailable)
{
    CountingQueue queue(object("Q.LONG"));
    ASSERT_TRUE(comesTrue([&] { return queue.IsFinished(); }));
    ASSERT_TRUE(queue.MoreStoriesAvailable());
    int position = 1000;
    EXPECT_TRUE(queue.LoadListChunk(Orvex::IQueuePtr(object("Q.LONG")), position));
    EXPECT_FALSE(queue.MoreStoriesAvailable());
}

TEST_F(QueueTest, NoMoreIsAvailableBeforeALoadHasComeToItsEnd)
{
    server.faults().failNext(text("GetList"), Fault::hang(patience), 2);
    const std::unique_ptr<Queue> queue = open("Q.LONG");
    ASSERT_TRUE(server.faults().waitForHang(patience));
    EXPECT_FALSE(queue->MoreStoriesAvailable());
    server.faults().clear();
    ASSERT_TRUE(comesTrue([&] { return queue->IsComplete(); }));
    EXPECT_TRUE(queue->MoreStoriesAvailable());
}

// ---- answers that are not quite a list ------------------------------------------------------------------------------

TEST_F(QueueTest, ObjectsOfEveryElementTypeAreTaken)
{
    for (const VARTYPE type : {VT_DISPATCH, VT_UNKNOWN, VT_VARIANT}) {
        server.options().listElements = type;
        expectFirst(*load("Q.SHORT"), 45);
    }
}

TEST_F(QueueTest, NullElementsAreSkippedAndCounted)
{
    server.faults().failNext(text("GetList"), Fault::nullElements());
    const std::unique_ptr<Queue> queue = load("Q.SHORT");
    EXPECT_EQ(queue->Size(), 0);
    EXPECT_EQ(lists(), chunks({0}, 20)); // one element is less than a chunk
    EXPECT_FALSE(queue->MoreStoriesAvailable());
}

TEST_F(QueueTest, ElementsThatAreNoStoriesAreNamelessItems)
{
    server.faults().failNext(text("GetList"), Fault::strangers());
    const std::unique_ptr<Queue> queue = load("Q.SHORT");
    ASSERT_EQ(queue->Size(), 1);
    EXPECT_EQ(queue->Nth(0)->name, QString());
    EXPECT_EQ(queue->Nth(0)->type, Item_Story);
}

TEST_F(QueueTest, AnAnswerOfAnotherTypeEndsTheLoad)
{
    for (const Fault &fault : {Fault::nullResult(), Fault::wrongType(), Fault::wrongElements()}) {
        server.faults().failNext(text("GetList"), fault, 2);
        const std::unique_ptr<Queue> queue = load("Q.SHORT");
        expectFirst(*queue, 20);
        EXPECT_FALSE(queue->MoreStoriesAvailable());
        EXPECT_EQ(queue->GetError(), 0);
        EXPECT_EQ(lists(), chunks({0, 20}, 20));
        server.faults().clear();
    }
}

// ---- failures -------------------------------------------------------------------------------------------------------

TEST_F(QueueTest, AFailingChunkKeepsThoseBeforeItAndLoadingMoreGoesOn)
{
    for (int failing = 1; failing <= 3; ++failing) {
        for (const Fault &fault : {Fault::hresult(E_ACCESSDENIED), Fault::raise(E_ACCESSDENIED)}) {
            server.faults().failNext(text("GetList"), fault, failing);
            const std::unique_ptr<Queue> queue = load("Q.SHORT");
            EXPECT_EQ(queue->GetError(), static_cast<qint32>(E_ACCESSDENIED));
            EXPECT_TRUE(queue->MoreStoriesAvailable());
            expectFirst(*queue, (failing - 1) * 20);
            server.faults().clear();
            lists();
            ASSERT_TRUE(loadsMore(*queue));
            EXPECT_EQ(queue->GetError(), 0);
            EXPECT_FALSE(queue->MoreStoriesAvailable());
            expectFirst(*queue, 45);
            EXPECT_EQ(lists(), chunks(steps((failing - 1) * 20, 45, 20), 20));
        }
    }
}

TEST_F(QueueTest, AFailingThreadedLoadRaisesNothingHere)
{
    server.faults().failEvery(text("GetList"), Fault::raise(E_UNEXPECTED));
    const std::unique_ptr<Queue> queue = load("Q.SHORT");
    EXPECT_TRUE(queue->IsComplete());
    EXPECT_EQ(queue->GetError(), static_cast<qint32>(E_UNEXPECTED));
    EXPECT_EQ(queue->Size(), 0);
    EXPECT_TRUE(queue->MoreStoriesAvailable());
}

TEST_F(QueueTest, AStoryThatTellsNothingIsListedAllTheSame)
{
    for (const char *operation : {"get_StoryName", "get_StoryUnique"}) {
        server.faults().failNext(text(operation), Fault::hresult(E_FAIL), 3);
        const std::unique_ptr<Queue> queue = load("Q.SHORT");
        EXPECT_EQ(queue->Size(), 45) << operation;
        EXPECT_EQ(queue->GetError(), 0) << operation;
        server.faults().clear();
    }
}

TEST_F(QueueTest, ARefusedRegistrationIsToldAndTheLoadIsComplete)
{
    server.faults().failNext(text("put_Update"), Fault::hresult(E_ACCESSDENIED));
    const std::unique_ptr<Queue> queue = load("Q.LIVE");
    EXPECT_EQ(queue->GetError(), static_cast<qint32>(E_ACCESSDENIED));
    EXPECT_THAT(QueueUpdateMgrProbe::watched(), IsEmpty());
    expectFirst(*queue, 45);
}

TEST_F(QueueTest, EveryCallMayFailAndNothingIsLeft)
{
    for (const Fault &fault : {Fault::hresult(E_FAIL), Fault::raise(E_FAIL), Fault::hresult(E_NOINTERFACE)}) {
        for (int call = 1; call <= 30; ++call) {
            const IDispatchPtr live = object("Q.LIVE");
            server.faults().clear();
            server.faults().failCall(call, fault);
            try {
                Queue queue(live);
                ASSERT_TRUE(comesTrue([&] { return queue.IsComplete() && queue.IsFinished(); })) << call;
                EXPECT_LE(queue.Size(), 45);
            } catch (const _com_error &error) {
                EXPECT_EQ(error.Error(), fault.code());
                EXPECT_LE(call, 3) << "not on this thread";
            }
            server.faults().clear();
            EXPECT_THAT(QueueUpdateMgrProbe::watched(), IsEmpty()) << call;
            ASSERT_EQ(QuireCOM::m_LockThreadID, 0u) << call;
        }
    }
    expectFirst(*load("Q.LIVE"), 45);
}

// ---- the end of a load ----------------------------------------------------------------------------------------------

TEST_F(QueueTest, IsCompleteCollectsTheWorker)
{
    const std::unique_ptr<Queue> queue = open("Q.SHORT");
    EXPECT_TRUE(QueueProbe::hasWorker(*queue));
    ASSERT_TRUE(comesTrue([&] { return queue->IsComplete(); }));
    EXPECT_FALSE(QueueProbe::hasWorker(*queue));
    EXPECT_TRUE(queue->IsComplete()); // and stays so
    EXPECT_TRUE(queue->IsFinished());
}

TEST_F(QueueTest, IsFinishedCollectsTheWorker)
{
    const std::unique_ptr<Queue> queue = open("Q.SHORT");
    ASSERT_TRUE(comesTrue([&] { return queue->IsFinished(); }));
    EXPECT_FALSE(QueueProbe::hasWorker(*queue));
    EXPECT_TRUE(queue->IsComplete());
}

TEST_F(QueueTest, IsNeitherWhileTheGateIsShut)
{
    const std::unique_ptr<Queue> queue = load("Q.LONG");
    {
        const QMutexLocker gate(&QueueProbe::gate(*queue));
        queue->LoadMore();
        EXPECT_FALSE(queue->IsComplete());
        EXPECT_FALSE(queue->IsFinished());
        EXPECT_TRUE(QueueProbe::hasWorker(*queue));
        EXPECT_EQ(queue->Size(), 200);
        EXPECT_FALSE(queue->MoreStoriesAvailable());
    }
    EXPECT_TRUE(comesTrue([&] { return queue->IsComplete(); }));
    expectFirst(*queue, 400);
}

TEST_F(QueueTest, CompletedIsCalledOnceALoadHasEnded)
{
    server.faults().failNext(text("GetList"), Fault::hang(30)); // until the object is whole
    CountingQueue queue(object("Q.SHORT"));
    ASSERT_TRUE(comesTrue([&] { return queue.IsFinished(); }));
    EXPECT_EQ(queue.completed, 1);
    EXPECT_TRUE(queue.IsComplete());
}

TEST_F(QueueTest, CompletedIsNotCalledForALoadThatIsCancelledDuringItsLastChunk)
{
    server.faults().failNext(text("GetList"), Fault::hang(patience), 3);
    CountingQueue queue(object("Q.SHORT"));
    ASSERT_TRUE(server.faults().waitForHang(patience));
    queue.cancelQueueLoad(false);
    server.faults().clear();
    ASSERT_TRUE(comesTrue([&] { return queue.IsFinished(); }));
    EXPECT_EQ(queue.completed, 0);
    EXPECT_FALSE(queue.IsComplete());
    expectFirst(queue, 45);
}

TEST_F(QueueTest, CompletedIsNotCalledForACancelledLoad)
{
    server.faults().failNext(text("GetList"), Fault::hang(30));
    CountingQueue queue(object("Q.SHORT"));
    queue.cancelQueueLoad(false);
    ASSERT_TRUE(comesTrue([&] { return queue.IsFinished(); }));
    EXPECT_EQ(queue.completed, 0);
    EXPECT_FALSE(queue.IsComplete());
}

// ---- cancelling -----------------------------------------------------------------------------------------------------

TEST_F(QueueTest, CancellingWithoutWaitingStopsAfterTheChunkThatIsBeingRead)
{
    server.faults().failNext(text("GetList"), Fault::hang(patience), 2);
    const std::unique_ptr<Queue> queue = open("Q.LONG");
    ASSERT_TRUE(server.faults().waitForHang(patience));
    queue->cancelQueueLoad(false);
    EXPECT_TRUE(QueueProbe::hasWorker(*queue));
    EXPECT_FALSE(queue->IsFinished());
    server.faults().clear();
    ASSERT_TRUE(comesTrue([&] { return queue->IsFinished(); }));
    EXPECT_FALSE(QueueProbe::hasWorker(*queue));
    EXPECT_FALSE(queue->IsComplete());
    EXPECT_EQ(lists(), chunks({0, 20}, 20));
    expectFirst(*queue, 40);
}

TEST_F(QueueTest, CancellingAndWaitingLetsGoOfTheWorker)
{
    const std::unique_ptr<Queue> queue = open("Q.LONG");
    queue->cancelQueueLoad(true);
    EXPECT_FALSE(QueueProbe::hasWorker(*queue));
    EXPECT_TRUE(queue->IsFinished());
    const int size = queue->Size();
    lists();
    ASSERT_TRUE(nothingHangs());
    EXPECT_EQ(queue->Size(), size);
    EXPECT_THAT(lists(), IsEmpty());
}

TEST_F(QueueTest, CancellingACompleteLoadChangesNothing)
{
    const std::unique_ptr<Queue> queue = load("Q.SHORT");
    queue->cancelQueueLoad(false);
    queue->cancelQueueLoad(true);
    EXPECT_TRUE(queue->IsComplete());
    expectFirst(*queue, 45);
}

TEST_F(QueueTest, ACancelledLiveQueueIsNotRegistered)
{
    server.faults().failNext(text("GetList"), Fault::hang(30));
    const std::unique_ptr<Queue> queue = open("Q.LIVE");
    queue->cancelQueueLoad(false);
    ASSERT_TRUE(comesTrue([&] { return queue->IsFinished(); }));
    EXPECT_THAT(QueueUpdateMgrProbe::watched(), IsEmpty());
}

// ---- refreshing -----------------------------------------------------------------------------------------------------

TEST_F(QueueTest, RefreshReadsTheStoriesAnew)
{
    const std::unique_ptr<Queue> queue = load("Q.LONG");
    lists();
    queue->Refresh();
    ASSERT_TRUE(comesTrue([&] { return queue->IsComplete(); }));
    EXPECT_EQ(lists(), chunks(steps(0, 200, 20), 20));
    expectFirst(*queue, 200);
}

TEST_F(QueueTest, RefreshWithoutASessionLeavesTheStories)
{
    const std::unique_ptr<Queue> queue = load("Q.SHORT");
    QuireCOM::UnloadCOM();
    queue->Refresh();
    EXPECT_TRUE(queue->IsFinished());
    expectFirst(*queue, 45);
}

TEST_F(QueueTest, RefreshDuringALoadBringsNoStoryTwice)
{
    for (int hanging = 1; hanging <= 3; ++hanging) {
        server.faults().failNext(text("GetList"), Fault::hang(patience), hanging);
        const std::unique_ptr<Queue> queue = open("Q.SHORT");
        ASSERT_TRUE(server.faults().waitForHang(patience));
        auto refreshing = std::async(std::launch::async, [&] { queue->Refresh(); });
        ASSERT_TRUE(comesTrue([&] { return !QueueProbe::hasWorker(*queue); }));
        server.faults().clear();
        refreshing.get();
        ASSERT_TRUE(comesTrue([&] { return queue->IsComplete(); }));
        expectFirst(*queue, 45);
    }
}

TEST_F(QueueTest, PopulatingDuringALoadGoesOnBehindWhatIsThere)
{
    Queue::useThreading = true;
    server.faults().failNext(text("GetList"), Fault::hang(50), 2);
    CountingQueue queue(object("Q.SHORT"));
    ASSERT_TRUE(server.faults().waitForHang(patience));
    queue.Populate(object("Q.SHORT"));
    ASSERT_TRUE(comesTrue([&] { return queue.IsComplete(); }));
    expectFirst(queue, 45);
}

namespace {

/// Stays in SetUpdate(true) until it is let go.
class LingeringQueue : public Queue
{
public:
    using Queue::Queue;
    ~LingeringQueue() override { cancelQueueLoad(true); }

    void SetUpdate(bool on) override
    {
        Queue::SetUpdate(on);
        if (!on || lingered.exchange(true))
            return;
        linger();
        if (failsAfterwards)
            throw _com_error(E_ACCESSDENIED);
    }
    void Completed() override
    {
        Queue::Completed();
        if (lingersWhenCompleted)
            linger();
        ++completed;
    }

    std::atomic<bool> lingersWhenCompleted{false};
    std::atomic<bool> failsAfterwards{false};
    std::atomic<bool> lingered{false};
    std::atomic<int> completed{0};
    std::promise<void> arrived;
    std::promise<void> leave;

private:
    void linger()
    {
        arrived.set_value();
        leave.get_future().wait();
    }
};

} // namespace

TEST_F(QueueTest, AnAbandonedLoadDoesNotCompleteTheNext)
{
    server.faults().failNext(text("GetList"), Fault::hang(30)); // until the object is whole
    LingeringQueue queue(object("Q.LIVE"));
    queue.arrived.get_future().wait();
    QueueProbe::gate(queue).lock();
    queue.Refresh();
    queue.leave.set_value();
    ASSERT_TRUE(comesTrue([&] { return queue.completed == 1; }));
    EXPECT_FALSE(queue.IsComplete());
    EXPECT_EQ(queue.Size(), 0);
    QueueProbe::gate(queue).unlock();
    ASSERT_TRUE(comesTrue([&] { return queue.IsComplete(); }));
    expectFirst(queue, 45);
    ASSERT_TRUE(comesTrue([&] { return queue.IsFinished(); }));
}

TEST_F(QueueTest, AnAbandonedLoadDoesNotFailTheNext)
{
    server.faults().failNext(text("GetList"), Fault::hang(30)); // until the object is whole
    LingeringQueue queue(object("Q.LIVE"));
    queue.arrived.get_future().wait();
    queue.failsAfterwards = true;
    QueueProbe::gate(queue).lock();
    queue.Refresh();
    queue.leave.set_value();
    QueueProbe::gate(queue).unlock();
    ASSERT_TRUE(comesTrue([&] { return queue.completed == 1; })); // of the second load
    ASSERT_TRUE(comesTrue([&] { return queue.IsComplete(); }));
    EXPECT_EQ(queue.GetError(), S_OK);
    expectFirst(queue, 45);
    ASSERT_TRUE(comesTrue([&] { return queue.IsFinished() && nothingHangs(); }));
}

TEST_F(QueueTest, AWorkerIsCollectedWhileTheHostDealsWithTheEndOfItsLoad)
{
    server.faults().failNext(text("GetList"), Fault::hang(30)); // until the object is whole
    LingeringQueue queue(object("Q.SHORT"));
    queue.lingersWhenCompleted = true;
    queue.arrived.get_future().wait();
    EXPECT_TRUE(queue.IsComplete());
    EXPECT_FALSE(QueueProbe::hasWorker(queue));
    EXPECT_TRUE(queue.IsFinished());
    queue.leave.set_value();
    EXPECT_TRUE(comesTrue([&] { return queue.completed == 1; }));
    expectFirst(queue, 45);
}

namespace {

/// Has something to say against its end.
template<typename Objection>
class ObjectingQueue : public Queue
{
public:
    ObjectingQueue(const IDispatchPtr &object, Objection objection)
        : Queue(object)
        , m_objection(std::move(objection))
    {}
    ~ObjectingQueue() override { cancelQueueLoad(true); }

    void Completed() override { throw Objection(m_objection); }

private:
    Objection m_objection;
};

} // namespace

TEST_F(QueueTest, WhatTheHostThrowsWhenALoadHasEndedIsAnErrorOfTheLoad)
{
    server.faults().failNext(text("GetList"), Fault::hang(patience));
    ObjectingQueue queue(object("Q.SHORT"), std::runtime_error("the host is busy"));
    letLoad(queue);
    ASSERT_TRUE(comesTrue([&] { return queue.IsComplete(); }));
    EXPECT_EQ(queue.GetError(), static_cast<qint32>(E_FAIL));
    expectFirst(queue, 45);
}

TEST_F(QueueTest, WhatTheHostThrowsIsAnErrorAlsoWhenItSaysThatAllWentWell)
{
    server.faults().failNext(text("GetList"), Fault::hang(patience));
    ObjectingQueue queue(object("Q.SHORT"), _com_error(S_FALSE));
    letLoad(queue);
    ASSERT_TRUE(comesTrue([&] { return queue.IsComplete(); }));
    EXPECT_EQ(queue.GetError(), static_cast<qint32>(E_FAIL));
}

// ---- what hosts are told of half a chunk ----------------------------------------------------------------------------

TEST_F(QueueTest, HasChangedTellsOfTheStoriesBeforeAFailure)
{
    server.faults().failNext(text("get_SectionXml"), Fault::hang(patience), 6);
    const std::unique_ptr<Queue> queue = open("Q.SHORT");
    ASSERT_TRUE(server.faults().waitForHang(patience));
    queue->HasChanged(true);
    queue->Lock(); // keeps the worker from the seventh story
    server.faults().clear();
    server.faults().failNext(text("get_SectionXml"), Fault::raise(E_FAIL));
    queue->Unlock();
    ASSERT_TRUE(comesTrue([&] { return queue->IsFinished(); })); // IsComplete would tell of it by itself
    EXPECT_EQ(queue->GetError(), E_FAIL);
    EXPECT_EQ(queue->Size(), 6);
    EXPECT_TRUE(queue->HasChanged(true));
}

TEST_F(QueueTest, HasChangedTellsOfTheStoriesBeforeACancel)
{
    server.faults().failNext(text("get_SectionXml"), Fault::hang(patience), 6);
    const std::unique_ptr<Queue> queue = open("Q.SHORT");
    ASSERT_TRUE(server.faults().waitForHang(patience));
    queue->HasChanged(true);
    queue->cancelQueueLoad(true);
    EXPECT_EQ(queue->Size(), 5);
    EXPECT_TRUE(queue->HasChanged(true));
    server.faults().clear();
    ASSERT_TRUE(nothingHangs());
    EXPECT_FALSE(queue->HasChanged(true));
}

TEST_F(QueueTest, CancellingBetweenChunksChangesNothing)
{
    server.faults().failNext(text("GetList"), Fault::hang(patience), 2);
    const std::unique_ptr<Queue> queue = open("Q.SHORT");
    ASSERT_TRUE(server.faults().waitForHang(patience));
    queue->HasChanged(true);
    queue->cancelQueueLoad(true);
    EXPECT_FALSE(queue->HasChanged(true));
    server.faults().clear();
}

TEST_F(QueueTest, ALoadThatWasLetGoOfAsksForNoFurtherStory)
{
    server.faults().failNext(text("get_SectionXml"), Fault::hang(patience), 6);
    const std::unique_ptr<Queue> queue = open("Q.SHORT");
    ASSERT_TRUE(server.faults().waitForHang(patience));
    queue->cancelQueueLoad(true);
    server.faults().clear();
    ASSERT_TRUE(nothingHangs());
    EXPECT_EQ(callsOf({text("get_SectionXml")}).size(), 6);
}

// ---- loading at once ------------------------------------------------------------------------------------------------

TEST_F(QueueAtOnceTest, RefreshBringsNoStoryTwiceWhileAnotherThreadRefreshes)
{
    const std::unique_ptr<Queue> queue = open("Q.SHORT");
    server.faults().failNext(text("get_SectionXml"), Fault::hang(patience), 6);
    auto refreshing = std::async(std::launch::async, [&] { queue->Refresh(); });
    ASSERT_TRUE(server.faults().waitForHang(patience));
    auto again = std::async(std::launch::async, [&] { queue->Refresh(); });
    ASSERT_TRUE(comesTrue([&] { return queue->Size() == 0; }));
    server.faults().clear();
    refreshing.get();
    again.get();
    expectFirst(*queue, 45);
}

TEST_F(QueueAtOnceTest, ReadsChunksOfAHundred)
{
    const std::unique_ptr<Queue> queue = open("Q.LONG");
    EXPECT_EQ(lists(), chunks({0, 100}, 100));
    EXPECT_TRUE(queue->MoreStoriesAvailable());
    EXPECT_FALSE(QueueProbe::hasWorker(*queue));
    expectFirst(*queue, 200);
}

TEST_F(QueueAtOnceTest, IsFinishedButNotCalledComplete)
{
    const std::unique_ptr<Queue> queue = open("Q.SHORT");
    EXPECT_TRUE(queue->IsFinished());
    EXPECT_FALSE(queue->IsComplete());
    EXPECT_FALSE(queue->MoreStoriesAvailable());
    expectFirst(*queue, 45);
}

TEST_F(QueueAtOnceTest, LoadingMoreRepeatsTheFirstStories)
{
    const std::unique_ptr<Queue> queue = open("Q.LONG");
    lists();
    queue->LoadMore();
    EXPECT_EQ(lists(), chunks({0, 100, 200, 300}, 100));
    ASSERT_EQ(queue->Size(), 600);
    EXPECT_EQ(placeOf(*queue->Nth(199)), 199);
    EXPECT_EQ(placeOf(*queue->Nth(200)), 0);
    EXPECT_EQ(placeOf(*queue->Nth(599)), 399);
}

TEST_F(QueueAtOnceTest, SortingRemovesTheRepeats)
{
    const std::unique_ptr<Queue> queue = open("Q.LONG");
    queue->LoadMore();
    for (int index = 0; index < queue->Size(); ++index)
        queue->Nth(index)->sortKey = text("%1").arg(placeOf(*queue->Nth(index)), 5);
    queue->SortUnique();
    expectFirst(*queue, 400);
}

TEST_F(QueueAtOnceTest, RefreshStartsFromAnEmptyList)
{
    const std::unique_ptr<Queue> queue = open("Q.LONG");
    queue->Refresh();
    expectFirst(*queue, 200);
}

TEST_F(QueueAtOnceTest, ALiveQueueIsReadWholeAndRegistered)
{
    const std::unique_ptr<Queue> queue = open("Q.LIVE2");
    EXPECT_EQ(callsOf({text("GetList"), text("put_Update")}),
              chunks({0, 100, 200}, 100) + QStringList(text("IQueue2::put_Update(true)")));
    expectFirst(*queue, 250);
    EXPECT_THAT(QueueUpdateMgrProbe::watched(), ElementsAre(15));
}

TEST_F(QueueAtOnceTest, AFailingChunkIsRaised)
{
    const IDispatchPtr handle = object("Q.LONG");
    const int before = server.census()->live();
    server.faults().failNext(text("GetList"), Fault::hresult(E_ACCESSDENIED), 2);
    EXPECT_THROW(Queue queue(handle), _com_error);
    EXPECT_EQ(server.census()->live(), before);
}

TEST_F(QueueAtOnceTest, AFailingChunkOfLoadingMoreKeepsWhatArrived)
{
    const std::unique_ptr<Queue> queue = open("Q.LONG");
    server.faults().failNext(text("GetList"), Fault::hresult(E_ACCESSDENIED), 2);
    EXPECT_THROW(queue->LoadMore(), _com_error);
    EXPECT_EQ(queue->Size(), 300);
    EXPECT_EQ(queue->GetError(), static_cast<qint32>(E_ACCESSDENIED));
    EXPECT_TRUE(queue->MoreStoriesAvailable());
}

TEST_F(QueueAtOnceTest, ALoadThatRunsOutOfMemoryIsToldAndLoadingMoreTriesAgain)
{
    const std::unique_ptr<Queue> queue = open("Q.SHORT");
    server.faults().failNext(text("GetList"), Fault::outOfMemory());
    EXPECT_THROW(queue->Refresh(), std::bad_alloc);
    EXPECT_EQ(queue->GetError(), static_cast<qint32>(E_OUTOFMEMORY));
    EXPECT_TRUE(queue->MoreStoriesAvailable());
    queue->LoadMore();
    EXPECT_EQ(queue->GetError(), 0);
    expectFirst(*queue, 45);
}

TEST_F(QueueAtOnceTest, ARefusedRegistrationIsRaisedAndNothingIsWatched)
{
    const IDispatchPtr handle = object("Q.LIVE");
    server.faults().failNext(text("put_Update"), Fault::hresult(E_ACCESSDENIED));
    EXPECT_THROW(Queue queue(handle), _com_error);
    EXPECT_THAT(QueueUpdateMgrProbe::watched(), IsEmpty());
}

TEST_F(QueueAtOnceTest, OpenedFromItsDirectoryItIsRegisteredAfterTheAccessLockIsReleased)
{
    const std::unique_ptr<Directory> directory(Directory::NewDirectory(text("Q")));
    const std::unique_ptr<Directory> live(directory->GetSubDir(text("Q.LIVE")));
    ASSERT_TRUE(live);
    EXPECT_THAT(QueueUpdateMgrProbe::watched(), ElementsAre(14));
}

TEST_F(QueueAtOnceTest, OpenedFromItsDirectoryItIsRegisteredByLaterLoadsToo)
{
    const std::unique_ptr<Directory> directory(Directory::NewDirectory(text("Q")));
    const std::unique_ptr<Directory> live(directory->GetSubDir(text("Q.LIVE")));
    ASSERT_TRUE(live);
    QueueUpdateMgr::Update(14);
    live->Refresh();
    EXPECT_THAT(QueueUpdateMgrProbe::watched(), ElementsAre(14));
    EXPECT_THAT(QueueUpdateMgrProbe::pending(), IsEmpty());
}
