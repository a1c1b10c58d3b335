#include <gtest/gtest.h>

#include <atomic>
#include <stdexcept>
#include <thread>
#include <vector>

#include <quire/newsroom/server/Delivery.h>

namespace Newsroom {

TEST(DeliveryTest, EventsRunInOrderOnOneOtherThread)
{
    Delivery delivery;
    std::vector<int> order;
    std::vector<std::thread::id> threads;
    for (int i = 0; i < 100; ++i) {
        delivery.post([&, i] {
            order.push_back(i);
            threads.push_back(std::this_thread::get_id());
        });
    }
    EXPECT_TRUE(delivery.waitUntilIdle(20000));
    ASSERT_EQ(100U, order.size());
    for (int i = 0; i < 100; ++i)
        EXPECT_EQ(i, order[static_cast<std::size_t>(i)]);
    EXPECT_NE(std::this_thread::get_id(), threads.front());
    EXPECT_EQ(threads.front(), threads.back());
}

TEST(DeliveryTest, NothingToDoIsIdle)
{
    Delivery delivery;
    EXPECT_TRUE(delivery.waitUntilIdle(0));
}

TEST(DeliveryTest, EventMayPostAnother)
{
    Delivery delivery;
    std::atomic<int> runs{0};
    delivery.post([&] {
        ++runs;
        delivery.post([&] { ++runs; });
    });
    EXPECT_TRUE(delivery.waitUntilIdle(20000));
    EXPECT_EQ(2, runs);
}

TEST(DeliveryTest, ExceptionOfAnEventIsDropped)
{
    Delivery delivery;
    std::atomic<int> runs{0};
    delivery.post([] { throw std::runtime_error("event"); });
    delivery.post([&] { ++runs; });
    EXPECT_TRUE(delivery.waitUntilIdle(20000));
    EXPECT_EQ(1, runs);
}

TEST(DeliveryTest, PausedEventsWaitForResume)
{
    Delivery delivery;
    std::atomic<int> runs{0};
    delivery.pause();
    delivery.post([&] { ++runs; });
    EXPECT_FALSE(delivery.waitUntilIdle(20000)); // does not wait
    EXPECT_EQ(0, runs);
    delivery.resume();
    EXPECT_TRUE(delivery.waitUntilIdle(20000));
    EXPECT_EQ(1, runs);
}

TEST(DeliveryTest, WaitingFromInsideAnEventDoesNotWait)
{
    Delivery delivery;
    std::atomic<bool> idle{true};
    delivery.post([&] { idle = delivery.waitUntilIdle(20000); });
    EXPECT_TRUE(delivery.waitUntilIdle(20000));
    EXPECT_FALSE(idle);
}

TEST(DeliveryTest, CloseDropsWhatIsQueued)
{
    Delivery delivery;
    int runs = 0;
    delivery.pause();
    const auto token = std::make_shared<int>(0);
    delivery.post([&runs, token] { ++runs; });
    EXPECT_EQ(2, token.use_count());
    delivery.close();
    EXPECT_EQ(1, token.use_count());
    delivery.post([&] { ++runs; });
    delivery.resume();
    EXPECT_TRUE(delivery.waitUntilIdle(20000));
    EXPECT_EQ(0, runs);
}

TEST(DeliveryTest, CloseWaitsForTheEventThatRuns)
{
    Delivery delivery;
    std::atomic<bool> inside{false};
    bool done = false;
    delivery.post([&] {
        inside = true;
        std::this_thread::sleep_for(std::chrono::milliseconds(20));
        done = true;
    });
    while (!inside)
        std::this_thread::yield();
    delivery.close();
    EXPECT_TRUE(done);
    delivery.close();
}

TEST(DeliveryTest, DeliveryMayGoFromInsideAnEvent)
{
    auto delivery = std::make_unique<Delivery>();
    std::atomic<bool> gone{false};
    delivery->post([&] {
        delivery.reset();
        gone = true;
    });
    while (!gone)
        std::this_thread::yield();
    EXPECT_FALSE(delivery);
}

} // namespace Newsroom
