// A newsroom that was read from a folder, and somebody else who writes into the folder.

#include <quire/newsroom/store/Follower.h>
#include <quire/newsroom/store/Store.h>

#include "FolderTools.h"

using namespace Newsroom;

namespace {

class Told : public Observer
{
public:
    void changed(const Change &change) override { changes.append(change); }
    QVector<Change> changes;
};

class FollowerTest : public FolderFixture
{
protected:
    void SetUp() override
    {
        const std::shared_ptr<Model> original = Model::fromText(QStringLiteral("user nora password=n\n"
                                                                               "form STORY\n"
                                                                               "  <zeko:form></zeko:form>\n"
                                                                               "queue DESK form=STORY number=1\n"
                                                                               "  story id=10\n    title: One\n"
                                                                               "  story id=11\n    title: Two\n"
                                                                               "queue WIRE form=STORY number=2\n"
                                                                               "  story id=20\n    title: Far\n"));
        ASSERT_NE(original, nullptr);
        ASSERT_TRUE(Store::save(*original, in("nr"), &error)) << error.toStdString();
        readAt = QDateTime::currentDateTime();
        reader = Store::read(in("nr"), &error);
        ASSERT_NE(reader, nullptr) << error.toStdString();
        follower = std::make_unique<Follower>(in("nr"), reader, readAt);
        writer = Store::open(in("nr"), &error);
        ASSERT_NE(writer, nullptr) << error.toStdString();
        nora = writer->model()->signOn(QStringLiteral("nora"), QStringLiteral("n"), QString()).value;
        reader->addObserver(told);
    }

    void retitle(qint32 part1, const char *title)
    {
        Answer<StoryDraft> draft = writer->model()->edit(nora, part1);
        ASSERT_TRUE(draft);
        draft.value.putField(QStringLiteral("title"), QLatin1String(title));
        ASSERT_TRUE(writer->model()->save(nora, draft.value));
    }

    /// As if the file had been written then.
    void date(const char *path, const QDateTime &when)
    {
        QFile file(in(path));
        ASSERT_TRUE(file.open(QIODevice::ReadWrite));
        ASSERT_TRUE(file.setFileTime(when, QFileDevice::FileModificationTime));
    }

    QStringList names(qint32 queue) const
    {
        QStringList names;
        for (const StoryPointer &story : reader->stories(queue).value)
            names.append(story->name());
        return names;
    }

    /// What has been told since this was last asked: kinds and stories.
    QStringList takeTold()
    {
        QStringList lines;
        for (const Change &change : told->changes) {
            EXPECT_EQ(change.queueNumber, 1);
            for (const qint32 part1 : change.stories)
                lines.append(QStringLiteral("%1 %2").arg(change.kind).arg(part1));
        }
        told->changes.clear();
        return lines;
    }

    static QStringList line(Change::Kind kind, qint32 part1) { return {QStringLiteral("%1 %2").arg(kind).arg(part1)}; }

    QDateTime readAt;
    std::shared_ptr<Model> reader;
    std::unique_ptr<Follower> follower;
    std::unique_ptr<Store> writer;
    SessionId nora = 0;
    std::shared_ptr<Told> told = std::make_shared<Told>();
};

TEST_F(FollowerTest, NothingChangedIsNothingTold)
{
    follower->follow(QStringLiteral("DESK"));
    follower->look();
    follower->look();
    EXPECT_EQ(takeTold(), QStringList());
    EXPECT_EQ(names(1), (QStringList{QStringLiteral("One"), QStringLiteral("Two")}));
}

TEST_F(FollowerTest, ASavedStoryIsTakenOverAndToldOnce)
{
    follower->follow(QStringLiteral("desk")); // in whatever letter case
    follower->look();
    retitle(11, "Second");
    follower->look();
    EXPECT_EQ(takeTold(), line(Change::StorySaved, 11));
    EXPECT_EQ(names(1), (QStringList{QStringLiteral("One"), QStringLiteral("Second")}));
    EXPECT_EQ(reader->story(11).value->revision(), writer->model()->story(11).value->revision());
    follower->look();
    EXPECT_EQ(takeTold(), QStringList());
}

TEST_F(FollowerTest, ManyChangesInARowAreAllSeen)
{
    follower->follow(QStringLiteral("DESK"));
    for (int i = 0; i < 50; ++i) { // closer together than the file system's clock may tick
        const QByteArray title = "Take " + QByteArray::number(i);
        retitle(10, title.constData());
        follower->look();
        ASSERT_EQ(names(1).first(), QString::fromLatin1(title));
    }
}

TEST_F(FollowerTest, ASecondChangeOfTheSameDateIsSeen)
{
    const char *const file = "nr/tree/DESK/000010.zeko";
    const QDateTime tick = QDateTime::currentDateTime(); // of a file system's coarse clock
    follower->follow(QStringLiteral("DESK"));
    retitle(10, "Here");
    date(file, tick);
    follower->look();
    retitle(10, "Gone");
    date(file, tick);
    follower->look();
    EXPECT_EQ(names(1).first(), QStringLiteral("Gone"));
}

TEST_F(FollowerTest, AnotherFileOfTheSameOldDateIsSeenByItsSize)
{
    const char *const file = "nr/tree/DESK/000010.zeko";
    const QDateTime longAgo = QDateTime::fromSecsSinceEpoch(1000000000);
    follower->follow(QStringLiteral("DESK"));
    retitle(10, "Old");
    date(file, longAgo);
    follower->look();
    retitle(10, "Put back");
    date(file, longAgo);
    follower->look();
    EXPECT_EQ(names(1).first(), QStringLiteral("Put back"));
}

TEST_F(FollowerTest, ANewStoryComesAtItsPlace)
{
    follower->follow(QStringLiteral("DESK"));
    follower->look();
    const qint32 part1 = writer->model()->createStory(nora, 1, 1).value->id().part1;
    follower->look();
    EXPECT_EQ(takeTold(), line(Change::StoryCreated, part1));
    ASSERT_EQ(names(1).size(), 3);
    EXPECT_EQ(reader->storyAt(1, 1).value->id().part1, part1);
}

TEST_F(FollowerTest, ADeletedStoryGoes)
{
    follower->follow(QStringLiteral("DESK"));
    follower->look();
    ASSERT_EQ(writer->model()->deleteStory(nora, 10), Refusal::None);
    follower->look();
    EXPECT_EQ(takeTold(), line(Change::StoryDeleted, 10));
    EXPECT_EQ(names(1), QStringList{QStringLiteral("Two")});
    EXPECT_FALSE(reader->story(10));
}

TEST_F(FollowerTest, WhatWasSavedBeforeTheQueueWasFollowedIsSeen)
{
    retitle(10, "Early");
    follower->follow(QStringLiteral("DESK"));
    follower->look();
    EXPECT_EQ(names(1).first(), QStringLiteral("Early"));
}

TEST_F(FollowerTest, WhatWasSavedAfterTheReadingIsSeenThoughItsDateIsALittleEarlier)
{
    retitle(10, "Early");
    date("nr/tree/DESK/000010.zeko", readAt.addSecs(-1)); // as file systems with coarse dates have it
    follower->follow(QStringLiteral("DESK"));
    follower->look();
    EXPECT_EQ(names(1).first(), QStringLiteral("Early"));
}

TEST_F(FollowerTest, OtherQueuesAreLeftAlone)
{
    follower->follow(QStringLiteral("DESK"));
    retitle(20, "Near");
    follower->look();
    EXPECT_EQ(names(2), QStringList{QStringLiteral("Far")});
    EXPECT_EQ(takeTold(), QStringList());
}

TEST_F(FollowerTest, WhatCannotBeReadChangesNothingAndIsTriedAgain)
{
    follower->follow(QStringLiteral("DESK"));
    const QString file = in("nr/tree/DESK/000010.zeko");
    const QByteArray whole = contentOf(file);
    retitle(11, "Second");
    makeFile(file, "no markup <");
    follower->look();
    EXPECT_EQ(takeTold(), QStringList());
    makeFile(file, whole);
    follower->look();
    EXPECT_EQ(takeTold(), line(Change::StorySaved, 11));
}

TEST_F(FollowerTest, WhatIsNoQueueIsNotFollowed)
{
    follower->follow(QStringLiteral("."));
    follower->follow(QStringLiteral("NOWHERE"));
    follower->look();
    EXPECT_EQ(takeTold(), QStringList());
}

} // namespace
