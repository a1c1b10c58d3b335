#include "newsdesk/DeskFixture.h"

#include <QLineEdit>
#include <QPushButton>
#include <QTreeView>

namespace {

const char *const rundown = "SHOWS.EVENING.RUNDOWN"; // which is live

/// What others do meanwhile shows, and takes nothing away from whoever sits here.
class ColleaguesTest : public DeskTest
{
protected:
    Desk::Banner &banner() { return window->story().banner(); }
    qint32 numberAt(int row)
    {
        const Quire::QueueModel &queue = window->queue().model();
        return queue.storyID(queue.index(row, 0)).part1;
    }
    /// Has the story of that row deleted, and waits until the queue shows it.
    void deleteRow(int row)
    {
        const int rows = window->queue().model().rowCount();
        deleteElsewhere(numberAt(row));
        ASSERT_TRUE(comes([&] { return window->queue().model().rowCount() == rows - 1; }));
        ASSERT_TRUE(comes([this] { return !window->story().model().isLoading(); }));
    }
    QString holder(qint32 story) { return newsroom().lockHolder(story).value; }
};

} // namespace

TEST_F(ColleaguesTest, WhatChangesInALiveQueueIsMarkedUntilItIsRead)
{
    openQueue("SHOWS.EVENING.RUNDOWN");
    const Quire::QueueModel &queue = window->queue().model();
    const QString identifier = queue.identifier(queue.index(5, 0));
    const auto number = identifier.section(QLatin1Char(':'), 0, 0).toInt();
    EXPECT_FALSE(window->queue().marks().isMarked(identifier));
    changeElsewhere(number, "Rail strike called off");
    ASSERT_TRUE(comes([&] { return window->queue().marks().isMarked(identifier); }));
    EXPECT_EQ(cell(5, "title"), text("Rail strike called off"));
    EXPECT_TRUE(window->queue().marks().isFresh(identifier));
    openStory(5);
    EXPECT_FALSE(window->queue().marks().isMarked(identifier));
}

TEST_F(ColleaguesTest, AStoryThatIsShownFollowsItsChanges)
{
    openQueue("SHOWS.EVENING.RUNDOWN");
    openStory(5);
    changeElsewhere(storyNumber(), "Rail strike called off");
    EXPECT_TRUE(comes([this] { return label("title") == text("Rail strike called off"); }));
}

TEST_F(ColleaguesTest, AStoryThatIsDeletedStaysAndIsToldToBeGone)
{
    openQueue(rundown);
    openStory(5);
    const qint32 story = storyNumber();
    const QString title = label("title");
    deleteRow(5);
    EXPECT_EQ(storyNumber(), story);
    EXPECT_EQ(label("title"), title);
    EXPECT_EQ(banner().text(), text("This story is no longer in the queue. What you see was read before that."));
    EXPECT_FALSE(window->queue().table().currentIndex().isValid());
    EXPECT_FALSE(window->queue().table().selectionModel()->hasSelection());
}

TEST_F(ColleaguesTest, AfterADeletionItsNeighbourCanBeClicked)
{
    openQueue(rundown);
    openStory(5);
    const qint32 next = numberAt(6);
    deleteRow(5);
    openStory(5);
    EXPECT_EQ(storyNumber(), next);
    EXPECT_TRUE(banner().isHidden());
}

TEST_F(ColleaguesTest, AfterADeletionTheKeysGoOnWithItsNeighbour)
{
    openQueue(rundown);
    openStory(5);
    const qint32 next = numberAt(6);
    deleteRow(5);
    QTest::keyClick(&window->queue().table(), Qt::Key_Down);
    EXPECT_EQ(storyNumber(), next);
}

TEST_F(ColleaguesTest, ADeletionTakesNoLockOfAStoryFromElsewhere)
{
    openQueue(rundown);
    openStory(5);
    search("solheim");
    const Quire::SearchModel &hits = window->hits().model();
    int hit = 0;
    while (hit < hits.rowCount() && hits.index(hit, 0).data(Quire::PathRole).toString() == text(rundown))
        ++hit;
    ASSERT_LT(hit, hits.rowCount());
    click(window->hits().table(), hits.index(hit, 0));
    ASSERT_TRUE(comes([this] { return !window->story().model().isLoading(); }));
    const qint32 story = storyNumber();
    beginEditing();
    deleteRow(5);
    EXPECT_EQ(storyNumber(), story);
    EXPECT_EQ(holder(story), text("journalist"));
    EXPECT_TRUE(window->story().model().isLocked());
    EXPECT_TRUE(banner().isHidden());
}

TEST_F(ColleaguesTest, WhatIsTypedOutlivesTheStoryAndNothingIsAsked)
{
    openQueue(rundown);
    openStory(5);
    const qint32 story = storyNumber();
    beginEditing();
    type("title", "Rovers win");
    newsroom().breakLock(story);
    const QString asked = answer(text("Discard"), [this] { deleteRow(5); });
    EXPECT_EQ(asked, QString());
    EXPECT_EQ(storyNumber(), story);
    EXPECT_EQ(line("title").text(), text("Rovers win"));
    EXPECT_EQ(banner().text(), text("This story is no longer in the queue. What you typed is still here."));
}

TEST_F(ColleaguesTest, AQueueThatIsRemovedIsNotSwappedForItsNeighbour)
{
    openQueue("SPORT.CYCLING");
    const int rows = window->queue().model().rowCount();
    ASSERT_EQ(newsroom().removeEntry(text("SPORT.CYCLING")), Newsroom::Refusal::None);
    QTest::keyClick(window.get(), Qt::Key_F5);
    ASSERT_TRUE(comes([this] { return !window->tree().model().indexOf(text("SPORT.CYCLING")).isValid(); }));
    ASSERT_TRUE(comes([this] { return !window->queue().model().isLoading(); }));
    EXPECT_EQ(window->queue().model().path(), text("SPORT.CYCLING"));
    EXPECT_EQ(window->queue().model().rowCount(), rows);
}

TEST_F(ColleaguesTest, WhatSomebodyElseSavedIsSeenAfterDroppingOnesOwn)
{
    const qint32 story = beginUnsaved("Rovers win");
    newsroom().breakLock(story);
    changeElsewhere(story, "Rovers lose");
    window->story().model().refresh();
    ASSERT_TRUE(comes([this] { return !window->story().model().isLocked(); }));
    ASSERT_TRUE(comes([this] { return !window->story().model().isLoading(); }));
    EXPECT_TRUE(banner().text().startsWith(text("Somebody else has changed this meanwhile: Title.")));
    answer(text("Discard"), [this] { press("done"); });
    EXPECT_EQ(line("title").text(), text("Rovers lose"));
}

TEST_F(ColleaguesTest, ASaveOverWhatSomebodyElseSavedIsMadeOnlyTheSecondTime)
{
    const qint32 story = beginUnsaved("Rovers win");
    server().triggerLogout();
    ASSERT_TRUE(comes([this] { return !session->isSignedOn(); }));
    const auto producer = newsroom().signOn(text("producer"), text("air"), QString());
    ASSERT_EQ(newsroom().lock(producer.value, story, 1).refusal, Newsroom::Refusal::None);
    session->signOn();
    ASSERT_TRUE(comes([this] { return banner().text().startsWith(text("producer is editing this story.")); }));
    ASSERT_TRUE(comes([this] { return !window->story().model().isLoading(); }));
    newsroom().signOff(producer.value);
    changeElsewhere(story, "Rovers lose");
    press("save");
    ASSERT_TRUE(comes([this] { return !window->story().model().isLoading(); }));
    EXPECT_EQ(onServer(story, "title"), text("Rovers lose"));
    EXPECT_TRUE(banner().text().startsWith(text("Somebody else has changed this meanwhile: Title.")));
    EXPECT_EQ(line("title").text(), text("Rovers win"));
    press("save");
    EXPECT_TRUE(comes([&] { return onServer(story, "title") == text("Rovers win"); }));
    EXPECT_TRUE(comes([this] { return banner().isHidden(); }));
}
