// Many threads at work on many queues, while calls fail and hang.

#include <gmock/gmock.h>

#include <array>
#include <atomic>
#include <random>

#include <quire/notify/Notification.h>
#include <quire/platform/Apartment.h>
#include <quire/story/Story.h>
#include <quire/tree/AttributeKeys.h>
#include <quire/tree/QueueUpdateMgr.h>

#include "support/Stress.h"
#include "support/Watchdog.h"
#include "tree/QueueFixture.h"
#include "tree/SearcherEnd.h"

using namespace Quire;
using Newsroom::Fault;

namespace {

const int threadCount = 8;
const int queueCount = 20;

class QueueStress : public QueueFixture
{
protected:
    void SetUp() override
    {
        QueueFixture::SetUp();
        server.calls().stop();
        server.options().noticeOnUpdate = true;
        NotificationInit(nullptr, nullptr, nullptr);
        Queue::setLoadIncrement(40);
        const std::array<const char *, 5> paths{"Q.NONE", "Q.SHORT", "Q.EVEN", "Q.LONG", "Q.LIVE"};
        for (std::size_t index = 0; index < queueCount; ++index)
            queues.push_back(open(paths[index % paths.size()]));
    }
    void TearDown() override
    {
        queues.clear();
        NotificationRelease();
        QueueFixture::TearDown();
        SearchProbe::destroy();
    }

    void work(int thread, Watchdog *watchdog);
    void round(std::mt19937 &random);
    void breakSomething(std::mt19937 &random);
    void ownQueue(std::mt19937 &random);
    /// That the list is the beginning of the queue's stories.
    void expectPrefix(Queue &queue);

    std::vector<std::unique_ptr<Queue>> queues;
    std::atomic<int> wrong{0};
    std::atomic<int> broken{0};
    std::atomic<int> opened{0};
    std::atomic<int> stories{0};
};

void QueueStress::expectPrefix(Queue &queue)
{
    queue.Lock();
    for (int index = 0; index < queue.u_Size(); ++index) {
        const int place = placeOf(*queue.u_Nth(index));
        if (place != index && place != 0) // a failing call can take the identifier: then it is empty, read as 0
            ++wrong;
    }
    stories += queue.u_Size();
    queue.Unlock();
}

void QueueStress::breakSomething(std::mt19937 &random)
{
    const std::array<HRESULT, 3> results{E_FAIL, E_ACCESSDENIED, E_NOINTERFACE};
    const HRESULT result = results[random() % results.size()];
    const int call = static_cast<int>(random() % 50) + 1;
    switch (random() % 6) {
    case 0:
        return server.faults().failCall(call, Fault::hresult(result));
    case 1:
        return server.faults().failCall(call, Fault::raise(result));
    case 2:
        return server.faults().failNext(text("GetList"), Fault::hang(static_cast<int>(random() % 150)));
    case 3:
        return server.faults().failNext(text("put_Update"), Fault::hang(static_cast<int>(random() % 150)));
    case 4:
        return server.faults().failNext(text("GetList"), Fault::raise(result));
    default:
        broken += server.faults().faultsDone();
        return server.faults().clear();
    }
}

/// Makes a queue of its own and has it go, at any moment of its load.
void QueueStress::ownQueue(std::mt19937 &random)
{
    const std::array<const char *, 4> paths{"Q.SHORT", "Q.LONG", "Q.LIVE", "Q.LIVE2"};
    std::unique_ptr<Queue> queue = open(paths[random() % paths.size()]);
    ++opened;
    if (random() % 3 == 0)
        comesTrue([&] { return queue->IsFinished(); });
    else if (random() % 2 == 0)
        queue->cancelQueueLoad(random() % 2 == 0);
    expectPrefix(*queue);
}

void QueueStress::round(std::mt19937 &random)
{
    Queue &queue = *queues[random() % queues.size()];
    const int index = static_cast<int>(random() % 60);
    switch (random() % 14) {
    case 0:
        queue.Size();
        break;
    case 1: {
        queue.Lock();
        const Item *const item = queue.Nth(index);
        if (item && item->type != Item_Story)
            ++wrong;
        queue.Unlock();
        break;
    }
    case 2:
        queue.Find(text("Story %1").arg(index));
        break;
    case 3:
        queue.HasChanged(true);
        break;
    case 4:
        queue.LoadMore();
        break;
    case 5:
        queue.cancelQueueLoad(random() % 2 == 0);
        break;
    case 6:
        queue.Refresh();
        break;
    case 7:
        queue.IsComplete();
        break;
    case 8:
        queue.IsFinished();
        break;
    case 9:
        std::unique_ptr<Story>(queue.GetStory(index));
        break;
    case 10:
        expectPrefix(queue);
        break;
    case 11:
        ownQueue(random);
        break;
    case 12:
        QueueUpdateMgr::NeedsRefresh(&queue, true);
        break;
    default:
        if (random() % 4 == 0)
            breakSomething(random);
        break;
    }
}

void QueueStress::work(int thread, Watchdog *watchdog)
{
    std::mt19937 random(static_cast<unsigned>(thread));
    const auto end = std::chrono::steady_clock::now() + stressTime();
    while (std::chrono::steady_clock::now() < end) {
        try {
            round(random);
        } catch (const _com_error &) {
            // Broken by this test.
        }
        watchdog->alive(thread);
    }
    SetErrorInfo(0, nullptr);
    watchdog->gone(thread);
}

} // namespace

TEST_F(QueueStress, EightThreadsOnTwentyQueues)
{
    Watchdog watchdog(threadCount);
    std::vector<std::thread> threads;
    threads.reserve(threadCount);
    for (int thread = 0; thread < threadCount; ++thread) {
        threads.emplace_back([this, thread, &watchdog] {
            const Platform::Apartment apartment;
            work(thread, &watchdog);
        });
    }
    for (std::thread &thread : threads)
        thread.join();
    broken += server.faults().faultsDone();
    server.faults().clear();
    RecordProperty("operations", std::to_string(watchdog.rounds()));
    RecordProperty("queuesMadeAndGone", opened);
    RecordProperty("faults", broken);
    EXPECT_EQ(wrong, 0);
    EXPECT_GT(opened, 0);
    EXPECT_GT(broken, 0);
    EXPECT_GT(stories, 0);
    for (const std::unique_ptr<Queue> &queue : queues) {
        queue->Refresh();
        EXPECT_TRUE(comesTrue([&] { return queue->IsComplete(); }));
        EXPECT_EQ(queue->GetError(), 0);
        expectPrefix(*queue);
    }
    EXPECT_EQ(wrong, 0);
}
