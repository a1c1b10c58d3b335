// A queue that is read anew.

#include <QPersistentModelIndex>

#include "models/QueueModelFixture.h"

using namespace Quire;
using Newsroom::Fault;

namespace {

class QueueModelUpdateTest : public QueueModelTest
{
protected:
    void SetUp() override
    {
        QueueModelTest::SetUp();
        NotificationInit(nullptr, nullptr, nullptr);
    }

    /// A model to be destroyed before others.
    static std::unique_ptr<QueueModel> opened(const char *path)
    {
        auto model = std::make_unique<QueueModel>();
        open(*model, path);
        return model;
    }
    static void refresh(QueueModel &model)
    {
        model.refresh();
        ASSERT_TRUE(settles(model));
    }
    static QString title(const QueueModel &model, int row) { return model.index(row, 1).data().toString(); }
};

} // namespace

TEST_F(QueueModelUpdateTest, AChangedStoryOfALiveQueueChangesItsRow)
{
    QueueModel model;
    open(model, "Q.LIVE");
    EXPECT_EQ(title(model, 3), text("Story 3"));
    SignalLog signals(model);
    changeTitle(14, 3, "Hail");
    ASSERT_TRUE(comes([&] { return title(model, 3) == text("Hail"); }));
    EXPECT_EQ(signals.takeRows(), texts({"changed . 3-3"}));
    EXPECT_EQ(model.index(3, 0).data(), text("Hail"));
}

TEST_F(QueueModelUpdateTest, AChangeIsReadOnce)
{
    QueueModel model;
    model.setPollInterval(1);
    open(model, "Q.LIVE");
    changeTitle(14, 3, "Hail");
    ASSERT_TRUE(comes([&] { return title(model, 3) == text("Hail"); }));
    ASSERT_TRUE(settles(model));
    server->calls().take();
    for (int rounds = 0; rounds < 10; ++rounds)
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    ASSERT_TRUE(ServerModel::waitForServer(patience));
    EXPECT_EQ(server->calls().takeTexts().filter(text("GetList")), QStringList());
}

TEST_F(QueueModelUpdateTest, StoriesComeAndGoWithALiveQueue)
{
    QueueModel model;
    open(model, "Q.LIVE");
    const QPersistentModelIndex last = model.indexOf(text("140044:1"));
    SignalLog signals(model);
    remove(14, 7);
    ASSERT_TRUE(comes([&] { return model.rowCount() == 44; }));
    EXPECT_EQ(signals.takeRows(), texts({"removed . 7-7"}));
    append(14, 100);
    ASSERT_TRUE(comes([&] { return model.rowCount() == 45; }));
    EXPECT_EQ(signals.takeRows(), texts({"inserted . 44-44"}));
    EXPECT_EQ(last.row(), 43);
    EXPECT_EQ(last.data(), text("Story 44"));
}

TEST_F(QueueModelUpdateTest, AStoryThatMovesMovesItsRow)
{
    QueueModel model;
    open(model, "Q.SHORT");
    const QPersistentModelIndex second = model.index(1, 2);
    SignalLog signals(model);
    moveToEnd(11, 1);
    refresh(model);
    EXPECT_EQ(signals.takeRows(), texts({"moved . 1-1 to 5"}));
    EXPECT_EQ(numbers(model), text("0 2 3 4 1"));
    EXPECT_EQ(second.row(), 4);
}

TEST_F(QueueModelUpdateTest, StoriesThatMoveTogetherMoveTheirRowsTogether)
{
    QueueModel model;
    open(model, "Q.SHORT");
    SignalLog signals(model);
    moveToEnd(11, 0);
    moveToEnd(11, 1);
    refresh(model);
    EXPECT_EQ(signals.takeRows(), texts({"moved . 0-1 to 5"}));
    EXPECT_EQ(numbers(model), text("2 3 4 0 1"));
    for (const int story : {2, 3, 4})
        moveToEnd(11, story);
    refresh(model);
    EXPECT_EQ(signals.takeRows(), texts({"moved . 3-4 to 0"}));
    EXPECT_EQ(numbers(model), text("0 1 2 3 4"));
}

TEST_F(QueueModelUpdateTest, EachRowShowsItsStoryAfterEachStep)
{
    QueueModel model;
    open(model, "Q.SHORT");
    QStringList shown;
    const auto show = [&] { shown.append(numbers(model)); };
    QObject::connect(&model, &QueueModel::rowsRemoved, show);
    QObject::connect(&model, &QueueModel::rowsMoved, show);
    QObject::connect(&model, &QueueModel::rowsInserted, show);
    remove(11, 3);
    moveToEnd(11, 0);
    moveToEnd(11, 1);
    append(11, 5);
    append(11, 6);
    refresh(model);
    EXPECT_EQ(shown, texts({"0 1 2 4", "2 4 0 1", "2 4 0 1 5 6"}));
    EXPECT_EQ(numbers(model), text("2 4 0 1 5 6"));
}

TEST_F(QueueModelUpdateTest, AnotherQueueShowsItsFirstChunkWhereOneWasBeingReadAnew)
{
    QueueModel model;
    open(model, "Q.SHORT");
    server->faults().failNext(text("IQueue2::GetList"), Fault::hang(patience));
    model.refresh();
    ASSERT_TRUE(server->faults().waitForHang(patience));
    model.open(text("Q.MANY"));
    server->faults().clear();
    server->faults().failNext(text("IQueue2::GetList"), Fault::hang(patience), 2);
    EXPECT_TRUE(comes([&] { return model.rowCount() == 20; }));
    server->faults().clear();
    ASSERT_TRUE(settles(model));
    EXPECT_EQ(model.rowCount(), 50);
}

TEST_F(QueueModelUpdateTest, SeveralChangesAreShownOneByOne)
{
    QueueModel model;
    open(model, "Q.SHORT");
    SignalLog signals(model);
    remove(11, 0);
    remove(11, 2);
    changeTitle(11, 3, "Story 33");
    changeTitle(11, 4, "Story 44");
    append(11, 5);
    append(11, 6);
    moveToEnd(11, 1);
    refresh(model);
    EXPECT_EQ(signals.takeRows(),
              texts({"removed . 2-2", "removed . 0-0", "inserted . 3-4", "moved . 0-0 to 5", "changed . 0-1"}));
    EXPECT_EQ(numbers(model), text("33 44 5 6 1"));
}

TEST_F(QueueModelUpdateTest, ReadingAnewWhatHasNotChangedEmitsNothing)
{
    QueueModel model;
    open(model, "Q.MANY");
    EXPECT_EQ(title(model, 49), text("Story 49")); // an item that has been expanded is the same story all the same
    SignalLog signals(model);
    refresh(model);
    EXPECT_EQ(signals.takeRows(), QStringList());
    EXPECT_EQ(title(model, 49), text("Story 49"));
}

TEST_F(QueueModelUpdateTest, ReadingAnewIsProgressToo)
{
    QueueModel model;
    open(model, "Q.SHORT");
    SignalLog signals(model);
    refresh(model);
    EXPECT_EQ(signals.take().filter(text("progress")).last(), text("progress 5"));
}

TEST_F(QueueModelUpdateTest, TheRowsAreShownWhileTheQueueIsReadAnew)
{
    QueueModel model;
    open(model, "Q.MANY");
    SignalLog signals(model);
    changeTitle(12, 0, "Changed");
    server->faults().failNext(text("IQueue2::GetList"), Fault::hang(patience), 2);
    model.refresh();
    ASSERT_TRUE(server->faults().waitForHang(patience));
    for (int polls = 0; polls < 5; ++polls)
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    EXPECT_EQ(model.rowCount(), 50);
    EXPECT_EQ(title(model, 0), text("Story 0"));
    EXPECT_EQ(title(model, 49), text("Story 49"));
    EXPECT_EQ(signals.takeRows(), QStringList());
    server->faults().clear();
    ASSERT_TRUE(settles(model));
    EXPECT_EQ(signals.takeRows(), texts({"changed . 0-0"}));
    EXPECT_EQ(title(model, 0), text("Changed"));
}

TEST_F(QueueModelUpdateTest, AQueueIsReadAnewAsFarAsItWasRead)
{
    QueueModel model;
    open(model, "Q.LONG");
    model.fetchMore(QModelIndex());
    ASSERT_TRUE(settles(model));
    EXPECT_EQ(model.rowCount(), 400);
    SignalLog signals(model);
    remove(13, 399);
    refresh(model);
    EXPECT_EQ(signals.takeRows(), texts({"removed . 399-399", "inserted . 399-399"})); // the next one comes up
    EXPECT_TRUE(model.canFetchMore(QModelIndex()));
}

TEST_F(QueueModelUpdateTest, AChangeWhileALiveQueueIsReadAnewIsNotLost)
{
    QueueModel model;
    open(model, "Q.LIVE");
    server->faults().failNext(text("IQueue2::GetList"), Fault::hang(patience), 3);
    changeTitle(14, 40, "First");
    while (server->faults().hanging() == 0)
        QCoreApplication::processEvents(QEventLoop::AllEvents, 5);
    changeTitle(14, 0, "Second"); // has been read already
    ASSERT_TRUE(server->waitForEvents());
    server->faults().clear();
    EXPECT_TRUE(comes([&] { return title(model, 0) == text("Second"); }));
    EXPECT_EQ(title(model, 40), text("First"));
}

TEST_F(QueueModelUpdateTest, TwoModelsOfOneLiveQueueFollowBoth)
{
    QueueModel first;
    QueueModel second;
    open(first, "Q.LIVE");
    open(second, "Q.LIVE");
    changeTitle(14, 5, "Both");
    EXPECT_TRUE(comes([&] { return title(first, 5) == text("Both") && title(second, 5) == text("Both"); }));
}

TEST_F(QueueModelUpdateTest, AModelThatGoesLeavesTheOtherFollowing)
{
    QueueModel first;
    open(first, "Q.LIVE");
    auto second = opened("Q.LIVE");
    second.reset();
    ASSERT_TRUE(ServerModel::waitForServer(patience));
    changeTitle(14, 5, "Still");
    EXPECT_TRUE(comes([&] { return title(first, 5) == text("Still"); }));
}

TEST_F(QueueModelUpdateTest, AChangeWhileTheOtherModelGoesIsNotLost)
{
    QueueModel first;
    open(first, "Q.LIVE");
    auto second = opened("Q.LIVE");
    server->faults().failNext(text("IQueue2::put_Update"), Fault::hang(patience), 2); // off, and then on again
    second.reset();
    ASSERT_TRUE(server->faults().waitForHang(patience));
    changeTitle(14, 5, "In between"); // nobody tells of it
    server->faults().clear();
    EXPECT_TRUE(comes([&] { return title(first, 5) == text("In between"); }));
}

TEST_F(QueueModelUpdateTest, AModelThatGoesLeavesTheOtherFollowingAlsoWhenTheServerRefusesToGoOn)
{
    QueueModel first;
    open(first, "Q.LIVE");
    auto second = opened("Q.LIVE");
    server->faults().failNext(text("IQueue2::put_Update"), Fault::hresult(E_FAIL), 2); // off, and then on again
    second.reset();
    ASSERT_TRUE(ServerModel::waitForServer(patience));
    ASSERT_EQ(server->faults().faultsDone(), 1);
    changeTitle(14, 5, "Still");
    EXPECT_TRUE(comes([&] { return title(first, 5) == text("Still"); }));
}

TEST_F(QueueModelUpdateTest, AQueueThatIsNotLiveStaysUntilItIsRefreshed)
{
    QueueModel model;
    open(model, "Q.SHORT");
    SignalLog signals(model);
    changeTitle(11, 0, "New");
    ASSERT_TRUE(server->waitForEvents());
    for (int polls = 0; polls < 5; ++polls)
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    EXPECT_EQ(signals.take(), QStringList());
    refresh(model);
    EXPECT_EQ(signals.takeRows(), texts({"changed . 0-0"}));
}

TEST_F(QueueModelUpdateTest, RefreshingDuringALoadWaitsForItsEnd)
{
    server->faults().failNext(text("IQueue2::GetList"), Fault::hang(patience), 2);
    QueueModel model;
    model.setPollInterval(5);
    model.open(text("Q.MANY"));
    ASSERT_TRUE(server->faults().waitForHang(patience));
    ASSERT_TRUE(comes([&] { return model.rowCount() == 20; }));
    changeTitle(12, 0, "Early");
    SignalLog signals(model);
    model.refresh();
    server->faults().clear();
    ASSERT_TRUE(comes([&] { return title(model, 0) == text("Early"); }));
    EXPECT_EQ(signals.takeRows(), texts({"inserted . 20-49", "changed . 0-0"}));
    EXPECT_TRUE(settles(model));
}

TEST_F(QueueModelUpdateTest, PassesQtsOwnCheck)
{
    QueueModel model;
    const ModelCheck check(model);
    open(model, "Q.LIVE");
    title(model, 0);
    remove(14, 0);
    remove(14, 20);
    append(14, 200);
    moveToEnd(14, 10);
    moveToEnd(14, 11);
    changeTitle(14, 30, "Story 3000");
    const int moved = 11;
    ASSERT_TRUE(comes([&] { return numbers(model).endsWith(text(" 200 10 %1").arg(moved)); }));
    EXPECT_EQ(model.rowCount(), 44);
    open(model, "Q.LONG");
    model.fetchMore(QModelIndex());
    ASSERT_TRUE(settles(model));
    server->faults().failNext(text("IQueue2::GetList"), Fault::hresult(E_FAIL), 3);
    refresh(model);
    EXPECT_EQ(model.error(), E_FAIL);
    refresh(model);
    EXPECT_EQ(model.error(), 0);
    model.close();
}
