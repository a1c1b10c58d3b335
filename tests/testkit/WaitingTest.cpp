#include <QObject>
#include <QTimer>

#include <gtest/gtest.h>

#include <atomic>
#include <thread>

#include <quire/testkit/Waiting.h>

#include "support/QtPrinting.h"
#include "testkit/FailureCapture.h"

using namespace Quire::TestKit;

TEST(Waiting, EndsWhenTheConditionHolds)
{
    int asked = 0;
    EXPECT_TRUE(waitUntil([&] { return ++asked == 3; }));
    EXPECT_EQ(asked, 3);
}

TEST(Waiting, AsksOnceWithoutTime)
{
    int asked = 0;
    EXPECT_FALSE(waitUntil([&] { return ++asked == 2; }, 0));
    EXPECT_EQ(asked, 1);
}

TEST(Waiting, GivesUpAtTheDeadline)
{
    EXPECT_FALSE(waitUntil([] { return false; }, 20));
}

TEST(Waiting, SeesWhatAnotherThreadDoes)
{
    std::atomic<bool> done{false};
    std::thread worker([&] { done = true; });
    EXPECT_TRUE(waitUntil([&] { return done.load(); }));
    worker.join();
}

TEST(Waiting, ProcessesEvents)
{
    bool fired = false;
    QTimer::singleShot(0, [&] { fired = true; });
    EXPECT_TRUE(waitUntil([&] { return fired; }));
}

TEST(Waiting, DeletesWhatIsToBeDeletedLater)
{
    bool gone = false;
    auto *object = new QObject;
    QObject::connect(object, &QObject::destroyed, [&] { gone = true; });
    object->deleteLater();
    EXPECT_TRUE(waitUntil([&] { return gone; }));
}

TEST(Waiting, EventuallyReportsTheConditionAsItIsWritten)
{
    const FailureCapture capture;
    EXPECT_FALSE(eventually(
        Place::here(), "rows == 1", [] { return false; }, 5));
    EXPECT_EQ(capture.texts(), QStringList{text("rows == 1\n  does not hold after 5 ms")});
}

TEST(Waiting, EventuallyIsTrueWithoutAReport)
{
    const FailureCapture capture;
    int asked = 0;
    EXPECT_TRUE(QUIRE_EVENTUALLY(++asked, asked == 4));
    EXPECT_EQ(asked, 4);
    EXPECT_EQ(capture.texts(), QStringList());
}
