#include <QCoreApplication>
#include <thread>
#include <vector>

#include <quire/newsroom/store/Store.h>

#include "FolderTools.h"

using namespace Newsroom;

namespace {

const char *const newsroomText = R"(
server NEWSROOM-A alias=BACKUP read-rate=150 word-length=5 session-limit=9
user nora password=n full="Nora Vale" mail=MAIL.NORA device=D number=7 rights=-3
user intern password=i read-only
user chief password=c superuser
form Story
  <zeko:form><zeko:row><zeko:cell idref=title>T</zeko:cell></zeko:row></zeko:form>
form STORY
  <zeko:form></zeko:form>
blob desk/Layout
  some bytes
directory NEWS indexed
  queue TODAY form=Story number=12 live
    story id=100:12:7 revision=4 wire=x
      title: Rain & wind
      odd[urgency=2]: 日本 😀

      First <paragraph>.

      <p>Second <a idref=0>open anchor</p>
    story id=7
  directory CON
    queue "a/b %" number=3 read-only purge-locked
      story id=2147483647
        title: Last
  directory EMPTY locked-e confirm-edit inverted sorted
queue MAIL number=40
  story id=50
    title: One
  story id=51
    title: Two
  story id=52
    title: Three
)";

class StoreTest : public FolderFixture
{
protected:
    std::shared_ptr<Model> original = Model::fromText(QString::fromUtf8(newsroomText));
    std::unique_ptr<Store> store;
    SessionId nora = 0;

    void SetUp() override
    {
        ASSERT_NE(original, nullptr);
        original->setUserBlob(QStringLiteral("Nora"), QByteArray("\0\x01hers", 6));
        original->setBlob(QStringLiteral("empty"), QByteArray());
        ASSERT_TRUE(Store::save(*original, folder(), &error)) << error.toStdString();
    }

    QString folder() const { return in("nr"); }

    void open()
    {
        store = Store::open(folder(), &error);
        ASSERT_NE(store, nullptr) << error.toStdString();
        store->model()->setClock(fixedClock(1000));
        nora = store->model()->signOn(QStringLiteral("nora"), QStringLiteral("n"), QString()).value;
    }

    Model *model() const { return store->model().get(); }

    std::shared_ptr<Model> reread()
    {
        std::shared_ptr<Model> read = Store::read(folder(), &error);
        EXPECT_NE(read, nullptr) << error.toStdString();
        return read;
    }

    Refusal retitle(qint32 part1, const char *title)
    {
        StoryDraft draft = model()->edit(nora, part1).value;
        draft.putField(QStringLiteral("title"), QString::fromUtf8(title));
        return model()->save(nora, draft).refusal;
    }

    QStringList names(const Model &of, qint32 queue) const
    {
        QStringList result;
        for (const StoryPointer &story : of.stories(queue).value)
            result.append(story->name());
        return result;
    }
};

} // namespace

TEST_F(StoreTest, FilesLieWhereTheirEntriesAre)
{
    EXPECT_EQ(
        filesBelow(folder()).keys(),
        (QStringList{QStringLiteral("blobs/desk%2F%4Cayout.blob"), QStringLiteral("blobs/empty.blob"),
                     QStringLiteral("blobs/users/nora.blob"), QStringLiteral("forms/%53%54%4F%52%59.xml"),
                     QStringLiteral("forms/%53tory.xml"), QStringLiteral("newsroom.json"),
                     QStringLiteral("tree/MAIL/000050.zeko"), QStringLiteral("tree/MAIL/000051.zeko"),
                     QStringLiteral("tree/MAIL/000052.zeko"), QStringLiteral("tree/MAIL/queue.json"),
                     QStringLiteral("tree/NEWS/%43ON/a%2Fb %25/2147483647.zeko"),
                     QStringLiteral("tree/NEWS/%43ON/a%2Fb %25/queue.json"),
                     QStringLiteral("tree/NEWS/%43ON/directory.json"), QStringLiteral("tree/NEWS/EMPTY/directory.json"),
                     QStringLiteral("tree/NEWS/TODAY/000007.zeko"), QStringLiteral("tree/NEWS/TODAY/000100.zeko"),
                     QStringLiteral("tree/NEWS/TODAY/queue.json"), QStringLiteral("tree/NEWS/directory.json"),
                     QStringLiteral("tree/directory.json")}));
}

TEST_F(StoreTest, AStoryFileIsItsMarkupInUtf8WithMark)
{
    EXPECT_EQ(contentOf(in("nr/tree/NEWS/TODAY/000100.zeko")),
              "\xEF\xBB\xBF" + original->story(100).value->markup(Section::Whole).toUtf8());
}

TEST_F(StoreTest, WhatIsNoPartOfTheNewsroomIsFound)
{
    const auto expectStrays = [&](const QStringList &strays) {
        const auto read = reread();
        ASSERT_NE(read, nullptr);
        EXPECT_EQ(Store::strays(folder() + QLatin1Char('/'), *read), strays);
    };
    expectStrays({});
    makeFile(in("nr/tree/NEWS/TODAY/000101.zeko"), "a story that no queue came to name");
    makeFile(in("nr/tree/NEWS/GONE/queue.json"), "{}");
    makeFile(in("nr/tree/.hidden"), "");
    makeFile(in("nr/forms/old.xml"), "");
    makeFile(in("nr/readme.txt"), ""); // whose folder it is
    expectStrays({QStringLiteral("forms/old.xml"), QStringLiteral("tree/.hidden"),
                  QStringLiteral("tree/NEWS/GONE/queue.json"), QStringLiteral("tree/NEWS/TODAY/000101.zeko")});
}

TEST_F(StoreTest, WhatIsReadAndSavedAgainIsTheSameByteForByte)
{
    const auto read = reread();
    ASSERT_NE(read, nullptr);
    ASSERT_TRUE(Store::save(*read, in("again"), &error)) << error.toStdString();
    EXPECT_EQ(filesBelow(in("again")), filesBelow(folder()));
}

TEST_F(StoreTest, EverythingOfTheNewsroomIsReadBack)
{
    const auto read = reread();
    ASSERT_NE(read, nullptr);
    EXPECT_EQ(read->system().serverName, QStringLiteral("NEWSROOM-A"));
    EXPECT_EQ(read->system().aliases, QStringList{QStringLiteral("BACKUP")});
    EXPECT_EQ(read->system().readRate, 150);
    EXPECT_EQ(read->system().wordLength, 5);
    EXPECT_EQ(read->system().sessionLimit, 9);
    const User first = read->users().at(0);
    EXPECT_EQ(first.password, QStringLiteral("n"));
    EXPECT_EQ(first.fullName, QStringLiteral("Nora Vale"));
    EXPECT_EQ(first.mailQueue, QStringLiteral("MAIL.NORA"));
    EXPECT_EQ(first.rights, -3);
    EXPECT_FALSE(read->users().at(1).mayWrite);
    EXPECT_TRUE(read->users().at(2).superuser);
    EXPECT_EQ(read->form(QStringLiteral("Story")).value, original->form(QStringLiteral("Story")).value);
    EXPECT_EQ(read->form(QStringLiteral("STORY")).value, QStringLiteral("<zeko:form></zeko:form>"));
    EXPECT_EQ(read->blobNames(), original->blobNames());
    EXPECT_EQ(read->userBlobOf(QStringLiteral("NORA")).value.data, QByteArray("\0\x01hers", 6));
    EXPECT_EQ(read->entry(QStringLiteral("NEWS.EMPTY")).value.flags.toString(),
              QStringLiteral("locked locked-e confirm-edit inverted sorted"));
    const Entry queue = read->entry(QStringLiteral("NEWS.CON.a/b %")).value;
    EXPECT_EQ(queue.number(), 3);
    EXPECT_TRUE(queue.settings.readOnly);
    EXPECT_TRUE(queue.settings.purgeLocked);
    const StoryPointer story = read->story(100).value;
    EXPECT_EQ(story->markup(Section::Whole), original->story(100).value->markup(Section::Whole));
    EXPECT_EQ(story->revision(), 4);
    EXPECT_EQ(names(*read, 12), names(*original, 12));
}

TEST_F(StoreTest, SavesOnlyIntoAFreeFolder)
{
    const auto before = filesBelow(folder());
    EXPECT_FALSE(Store::save(*original, folder(), &error));
    EXPECT_EQ(shownError(), QStringLiteral("nr: is not empty"));
    EXPECT_EQ(filesBelow(folder()), before);
    makeFile(in("file"), "x");
    EXPECT_FALSE(Store::save(*original, in("file"), &error));
    EXPECT_EQ(shownError(), QStringLiteral("file: is no folder"));
    EXPECT_EQ(contentOf(in("file")), QByteArray("x"));
    ASSERT_TRUE(QDir().mkpath(in("empty")));
    EXPECT_TRUE(Store::save(*original, in("empty"), &error));
}

TEST_F(StoreTest, AFolderWithAHiddenFileIsNotFree)
{
    makeFile(in("seems/.empty"), "");
    EXPECT_FALSE(Store::save(*original, in("seems"), &error));
    EXPECT_EQ(shownError(), QStringLiteral("seems: is not empty"));
}

#ifndef Q_OS_WIN
TEST_F(StoreTest, ALinkThatLeadsNowhereIsNoFreeFolder)
{
    ASSERT_TRUE(QFile::link(in("nowhere"), in("link")));
    EXPECT_FALSE(Store::save(*original, in("link"), &error));
    EXPECT_EQ(shownError(), QStringLiteral("link: is no folder"));
}
#endif

TEST_F(StoreTest, ASaveThatFailsSaysSoAndLeavesNoNewsroom)
{
    const QString tooLong(300, QLatin1Char('x')); // for a file's name
    const QString bad[] = {QStringLiteral("blob %1\n  x\n"), QStringLiteral("user %1\n"),
                           QStringLiteral("form %1\n  <x></x>\n"), QStringLiteral("directory %1\n"),
                           QStringLiteral("queue %1\n  story\n    title: x\n")};
    for (const QString &text : bad) {
        const auto model = Model::fromText(text.arg(tooLong) + QStringLiteral("user zoe\nblob z\n  z\nqueue Z\n"));
        ASSERT_NE(model, nullptr);
        model->setUserBlob(model->users().first().name, "b");
        QTemporaryDir target;
        error.clear();
        EXPECT_FALSE(Store::save(*model, target.path(), &error)) << text.toStdString();
        EXPECT_TRUE(error.contains(tooLong)) << text.toStdString();
        EXPECT_FALSE(QFile::exists(target.filePath(QStringLiteral("newsroom.json")))) << text.toStdString();
    }
}

TEST_F(StoreTest, ASavedStoryIsOnDiskAtOnce)
{
    open();
    const auto before = filesBelow(in("nr/tree"));
    EXPECT_EQ(retitle(50, "Changed"), Refusal::None);
    auto after = filesBelow(in("nr/tree"));
    EXPECT_EQ(after.value(QStringLiteral("MAIL/000050.zeko")),
              "\xEF\xBB\xBF" + model()->story(50).value->markup(Section::Whole).toUtf8());
    after.insert(QStringLiteral("MAIL/000050.zeko"), before.value(QStringLiteral("MAIL/000050.zeko")));
    EXPECT_EQ(after, before) << "no other file is written";
    EXPECT_EQ(reread()->story(50).value->name(), QStringLiteral("Changed"));
}

TEST_F(StoreTest, UnchangedFilesAreNotTouched)
{
    open();
    const QString file = in("nr/tree/MAIL/queue.json");
    QFile handle(file);
    ASSERT_TRUE(handle.open(QIODevice::ReadWrite));
    const QDateTime longAgo = QDateTime::fromSecsSinceEpoch(1000000000);
    ASSERT_TRUE(handle.setFileTime(longAgo, QFileDevice::FileModificationTime));
    handle.close();
    EXPECT_EQ(retitle(50, "Changed"), Refusal::None);
    model()->setQueueSettings(40, model()->queue(40).value.settings);
    EXPECT_EQ(QFileInfo(file).lastModified(), longAgo);
}

TEST_F(StoreTest, CreatedAndDeletedStoriesAreKept)
{
    open();
    QueueSettings settings = model()->queue(40).value.settings;
    settings.formName = QStringLiteral("Story");
    ASSERT_EQ(model()->setQueueSettings(40, settings), Refusal::None);
    const Answer<StoryPointer> created = model()->createStory(nora, 40, 1);
    ASSERT_TRUE(created.ok());
    EXPECT_EQ(model()->deleteStory(nora, 50), Refusal::None);
    EXPECT_FALSE(QFile::exists(in("nr/tree/MAIL/000050.zeko")));
    EXPECT_EQ(names(*reread(), 40), names(*model(), 40));
    EXPECT_EQ(model()->deleteAll(nora, 40), Refusal::None);
    EXPECT_EQ(filesBelow(in("nr/tree/MAIL")).keys(), QStringList{QStringLiteral("queue.json")});
    EXPECT_EQ(reread()->queue(40).value.count, 0);
}

TEST_F(StoreTest, DeletingAStoryWhoseFileIsGoneIsNoError)
{
    open();
    ASSERT_TRUE(QFile::remove(in("nr/tree/MAIL/000050.zeko")));
    EXPECT_EQ(model()->deleteStory(nora, 50), Refusal::None);
    EXPECT_EQ(store->lastError(), QString());
    EXPECT_EQ(reread()->queue(40).value.count, 2);
}

TEST_F(StoreTest, BlobsAreKept)
{
    open();
    model()->saveBlob(nora, QStringLiteral("New"), "bytes");
    model()->saveBlob(nora, QStringLiteral("new"), "others");
    model()->saveUserBlob(nora, "user's");
    model()->deleteBlob(nora, QStringLiteral("desk/Layout"));
    const auto read = reread();
    EXPECT_EQ(read->blobOf(QStringLiteral("New")).value.data, QByteArray("bytes"));
    EXPECT_EQ(read->blobOf(QStringLiteral("new")).value.data, QByteArray("others"));
    EXPECT_EQ(read->userBlobOf(QStringLiteral("nora")).value.data, QByteArray("user's"));
    EXPECT_EQ(read->blobOf(QStringLiteral("desk/Layout")).refusal, Refusal::EntryGone);
}

TEST_F(StoreTest, AUsersBlobHasOneFileInWhateverLetterCase)
{
    open();
    model()->setUserBlob(QStringLiteral("NORA"), "other");
    EXPECT_EQ(store->lastError(), QString());
    EXPECT_EQ(filesBelow(in("nr/blobs/users")),
              (QMap<QString, QByteArray>{{QStringLiteral("nora.blob"), QByteArray("other")}}));
}

TEST_F(StoreTest, ChangesOfTheTreeAndTheSystemAreKept)
{
    open();
    EXPECT_EQ(model()->addDirectory(QStringLiteral("news.New")), Refusal::None);
    EXPECT_TRUE(model()->addQueue(QStringLiteral("NEWS.NEW.Q")).ok());
    EXPECT_EQ(model()->removeEntry(QStringLiteral("mail")), Refusal::None);
    EXPECT_EQ(model()->setFlags(QStringLiteral("news"), {1, 2, 3}), Refusal::None);
    EXPECT_EQ(model()->setFlags(QStringLiteral("."), {4, 5, 6}), Refusal::None);
    SystemValues values = model()->system();
    values.readRate = 99;
    model()->setSystem(values);
    model()->setForm({QStringLiteral("MORE"), QStringLiteral("<x></x>")});
    const auto read = reread();
    ASSERT_NE(read, nullptr);
    EXPECT_EQ(read->entry(QStringLiteral("NEWS.New.Q")).value.path, QStringLiteral("NEWS.New.Q"));
    EXPECT_EQ(read->entry(QStringLiteral("MAIL")).refusal, Refusal::EntryGone);
    EXPECT_FALSE(QFile::exists(in("nr/tree/MAIL")));
    EXPECT_TRUE((read->entry(QStringLiteral("NEWS")).value.flags == Flags{1, 2, 3}));
    EXPECT_TRUE((read->entry(QStringLiteral(".")).value.flags == Flags{4, 5, 6}));
    EXPECT_EQ(read->system().readRate, 99);
    EXPECT_EQ(read->form(QStringLiteral("MORE")).value, QStringLiteral("<x></x>"));
}

TEST_F(StoreTest, LocksAreNotKept)
{
    open();
    const auto before = filesBelow(in("nr/tree"));
    EXPECT_EQ(model()->lock(nora, 50, 1).refusal, Refusal::None);
    EXPECT_EQ(filesBelow(in("nr/tree")), before);
}

TEST_F(StoreTest, ASecondWriterIsRefusedAndToldWhoWrites)
{
    open();
    QString why;
    EXPECT_EQ(Store::open(folder(), &why), nullptr);
    EXPECT_TRUE(why.contains(QLatin1String("is being written by"))) << why.toStdString();
    EXPECT_TRUE(why.contains(QStringLiteral("process %1 on ").arg(QCoreApplication::applicationPid())))
        << why.toStdString();
    EXPECT_NE(Store::read(folder(), &why), nullptr) << "reading needs no lock";
}

TEST_F(StoreTest, ClosingGivesTheFolderFree)
{
    open();
    store.reset();
    EXPECT_FALSE(QFile::exists(in("nr/newsroom.lock")));
    open();
}

TEST_F(StoreTest, ItsFolderIsNamedWithoutASlashAtTheEnd)
{
    store = Store::open(folder() + QLatin1Char('/'), &error);
    ASSERT_NE(store, nullptr) << error.toStdString();
    EXPECT_EQ(store->folder(), folder());
}

TEST_F(StoreTest, ANewsroomOutlivesItsStore)
{
    open();
    const std::shared_ptr<Model> kept = store->model();
    const auto before = filesBelow(in("nr/tree"));
    store.reset();
    StoryDraft draft = kept->edit(nora, 50).value;
    draft.putField(QStringLiteral("title"), QStringLiteral("Unkept"));
    EXPECT_TRUE(kept->save(nora, draft).ok());
    EXPECT_EQ(filesBelow(in("nr/tree")), before);
}

TEST_F(StoreTest, ReadingWritesNothing)
{
    const auto before = filesBelow(folder());
    const auto read = reread();
    read->setBlob(QStringLiteral("x"), "y");
    EXPECT_EQ(filesBelow(folder()), before);
}

TEST_F(StoreTest, AnInterruptedCreateLosesNothingThatWasThere)
{
    open();
    QueueSettings settings = model()->queue(40).value.settings;
    settings.formName = QStringLiteral("Story");
    ASSERT_EQ(model()->setQueueSettings(40, settings), Refusal::None);
    // The story's file cannot be written: a folder stands in its place.
    ASSERT_TRUE(QDir().mkpath(in("nr/tree/MAIL/2147483646.zeko")));
    const QByteArray queueBefore = contentOf(in("nr/tree/MAIL/queue.json"));
    Model::NewStory story;
    story.queueNumber = 40;
    story.id = {2147483646, 40, 0};
    ASSERT_TRUE(model()->addStory(story).ok());
    EXPECT_TRUE(store->lastError().contains(QLatin1String("2147483646.zeko"))) << store->lastError().toStdString();
    EXPECT_EQ(contentOf(in("nr/tree/MAIL/queue.json")), queueBefore) << "the queue does not name what is not there";
    EXPECT_EQ(names(*reread(), 40),
              (QStringList{QStringLiteral("One"), QStringLiteral("Two"), QStringLiteral("Three")}));

    EXPECT_FALSE(store->flush());
    ASSERT_TRUE(QDir().rmdir(in("nr/tree/MAIL/2147483646.zeko")));
    EXPECT_TRUE(store->flush());
    EXPECT_EQ(store->lastError(), QString());
    EXPECT_EQ(names(*reread(), 40), names(*model(), 40));
}

TEST_F(StoreTest, AnInterruptedDeleteLosesNothingThatIsNamed)
{
    open();
    // The queue's file cannot be replaced: a folder stands in its place.
    const QString queueFile = in("nr/tree/MAIL/queue.json");
    ASSERT_TRUE(QFile::rename(queueFile, in("kept.json")));
    ASSERT_TRUE(QDir().mkpath(queueFile));
    EXPECT_EQ(model()->deleteStory(nora, 50), Refusal::None);
    EXPECT_TRUE(store->lastError().contains(QLatin1String("queue.json"))) << store->lastError().toStdString();
    ASSERT_TRUE(QDir().rmdir(queueFile));
    ASSERT_TRUE(QFile::rename(in("kept.json"), queueFile));
    EXPECT_EQ(names(*reread(), 40),
              (QStringList{QStringLiteral("One"), QStringLiteral("Two"), QStringLiteral("Three")}));
}

TEST_F(StoreTest, AFailedSaveKeepsTheOldFile)
{
    open();
    const QByteArray before = contentOf(in("nr/tree/MAIL/000050.zeko"));
    // Where the queue's folder was there is a file now.
    ASSERT_TRUE(QDir().rename(in("nr/tree/MAIL"), in("elsewhere")));
    makeFile(in("nr/tree/MAIL"), "in the way");
    EXPECT_EQ(retitle(50, "Changed"), Refusal::None) << "the newsroom in memory goes on";
    EXPECT_FALSE(store->lastError().isEmpty());
    EXPECT_EQ(contentOf(in("elsewhere/000050.zeko")), before);
    ASSERT_TRUE(QFile::remove(in("nr/tree/MAIL")));
    ASSERT_TRUE(QDir().rename(in("elsewhere"), in("nr/tree/MAIL")));
    EXPECT_TRUE(store->flush());
    EXPECT_EQ(reread()->story(50).value->name(), QStringLiteral("Changed"));
}

TEST_F(StoreTest, AStoryFileThatNoQueueNamesIsPassedOver)
{
    makeFile(in("nr/tree/MAIL/000999.zeko"), "left by an interruption");
    EXPECT_EQ(reread()->queue(40).value.count, 3);
    EXPECT_EQ(reread()->story(999).refusal, Refusal::EntryGone);
}

TEST_F(StoreTest, AnUnfinishedFolderIsNoNewsroom)
{
    ASSERT_TRUE(QFile::remove(in("nr/newsroom.json")));
    EXPECT_EQ(Store::read(folder(), &error), nullptr);
    EXPECT_EQ(shownError(), QStringLiteral("nr: is no newsroom folder (it has no newsroom.json)"));
}

TEST_F(StoreTest, ThreadsSaveAtOnceAndTheLastStateIsOnDisk)
{
    open();
    constexpr int threads = 4;
    std::vector<std::thread> running;
    running.reserve(threads);
    for (int t = 0; t < threads; ++t) {
        running.emplace_back([this, t] {
            for (int n = 0; n < 10; ++n)
                EXPECT_EQ(retitle(50 + t % 3, qPrintable(QStringLiteral("T%1 %2").arg(t).arg(n))), Refusal::None);
        });
    }
    for (std::thread &thread : running)
        thread.join();
    EXPECT_EQ(store->lastError(), QString());
    EXPECT_EQ(names(*reread(), 40), names(*model(), 40));
}
