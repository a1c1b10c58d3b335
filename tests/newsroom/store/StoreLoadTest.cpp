// Newsroom folders that are damaged: each gives an error that names the file, and none is changed.

#include <quire/newsroom/store/Store.h>

#include "FolderTools.h"

using namespace Newsroom;

namespace {

class StoreLoadTest : public FolderFixture
{
protected:
    void SetUp() override
    {
        const auto model = Model::fromText(QStringLiteral(R"(
user nora password=n
form STORY
  <zeko:form></zeko:form>
directory NEWS
  queue TODAY form=STORY number=12
    story id=7
      title: One
)"));
        ASSERT_TRUE(Store::save(*model, in("nr"), &error)) << error.toStdString();
    }

    /// What loading says after a file was replaced.
    QString errorWith(const char *file, const QByteArray &data)
    {
        makeFile(in("nr/") + QString::fromUtf8(file), data);
        return loadError();
    }

    /// What loading says after a part of a file was replaced.
    QString errorChanging(const char *file, const char *from, const char *to)
    {
        QByteArray data = contentOf(in("nr/") + QString::fromUtf8(file));
        EXPECT_TRUE(data.contains(from)) << from;
        return errorWith(file, data.replace(from, to));
    }

    QString errorWithout(const char *file)
    {
        EXPECT_TRUE(QFile::remove(in("nr/") + QString::fromUtf8(file)));
        return loadError();
    }

    QString loadError()
    {
        const auto before = filesBelow(in("nr"));
        EXPECT_EQ(Store::read(in("nr"), &error), nullptr);
        QString reading = shownError();
        EXPECT_EQ(Store::open(in("nr"), &error), nullptr);
        EXPECT_EQ(shownError(), reading);
        EXPECT_EQ(filesBelow(in("nr")), before) << "nothing is changed, and no lock stays";
        return reading;
    }
};

} // namespace

TEST_F(StoreLoadTest, AFolderThatIsNotThere)
{
    EXPECT_EQ(Store::read(in("none"), &error), nullptr);
    EXPECT_EQ(shownError(), QStringLiteral("none: is no folder"));
    EXPECT_EQ(Store::open(in("none"), &error), nullptr);
    EXPECT_EQ(shownError(), QStringLiteral("none: is no folder"));
    EXPECT_FALSE(QFile::exists(in("none")));
}

TEST_F(StoreLoadTest, AFileInsteadOfAFolder)
{
    makeFile(in("file"), "x");
    EXPECT_EQ(Store::open(in("file"), &error), nullptr);
    EXPECT_EQ(shownError(), QStringLiteral("file: is no folder"));
}

TEST_F(StoreLoadTest, AMissingStoryFile)
{
    EXPECT_EQ(errorWithout("tree/NEWS/TODAY/000007.zeko"),
              QStringLiteral("nr/tree/NEWS/TODAY/000007.zeko: is not there"));
}

TEST_F(StoreLoadTest, AStoryFileThatIsNoUtf8)
{
    EXPECT_EQ(errorWith("tree/NEWS/TODAY/000007.zeko", "<story>\xFF</story>"),
              QStringLiteral("nr/tree/NEWS/TODAY/000007.zeko: is no UTF-8 text"));
    EXPECT_EQ(errorWith("tree/NEWS/TODAY/000007.zeko", "<story>\xC3"),
              QStringLiteral("nr/tree/NEWS/TODAY/000007.zeko: is no UTF-8 text"));
}

TEST_F(StoreLoadTest, AStoryFileThatIsNoMarkup)
{
    for (const char *text : {"", "text", "<story>", "<story><body><p></body></story>", "<story></story>"})
        EXPECT_EQ(errorWith("tree/NEWS/TODAY/000007.zeko", text),
                  QStringLiteral("nr/tree/NEWS/TODAY/000007.zeko: The story markup has a syntax error."))
            << text;
}

TEST_F(StoreLoadTest, AStoryFileOfAnotherStory)
{
    EXPECT_EQ(errorChanging("tree/NEWS/TODAY/000007.zeko", "<storyid>7:", "<storyid>8:"),
              QStringLiteral("nr/tree/NEWS/TODAY/000007.zeko: holds the story \"8:c:0:1\" where 7 is expected"));
    EXPECT_EQ(errorWith("tree/NEWS/TODAY/000007.zeko", "<story><body></body></story>"),
              QStringLiteral("nr/tree/NEWS/TODAY/000007.zeko: holds the story \"\" where 7 is expected"));
}

TEST_F(StoreLoadTest, AMissingDirectoryFile)
{
    EXPECT_EQ(errorWithout("tree/NEWS/directory.json"), QStringLiteral("nr/tree/NEWS/directory.json: is not there"));
}

TEST_F(StoreLoadTest, AMissingQueueFileIsLookedForAsADirectory)
{
    EXPECT_EQ(errorWithout("tree/NEWS/TODAY/queue.json"),
              QStringLiteral("nr/tree/NEWS/TODAY/directory.json: is not there"));
}

TEST_F(StoreLoadTest, AMissingFormFile)
{
    EXPECT_EQ(errorWithout("forms/%53%54%4F%52%59.xml"), QStringLiteral("nr/forms/%53%54%4F%52%59.xml: is not there"));
}

TEST_F(StoreLoadTest, AFormThatIsNoMarkup)
{
    EXPECT_EQ(errorWith("forms/%53%54%4F%52%59.xml", "<b>"),
              QStringLiteral("nr/forms/%53%54%4F%52%59.xml: The story markup has a syntax error."));
    EXPECT_EQ(errorWith("forms/%53%54%4F%52%59.xml", "\xFF"),
              QStringLiteral("nr/forms/%53%54%4F%52%59.xml: is no UTF-8 text"));
}

TEST_F(StoreLoadTest, JsonThatDoesNotParse)
{
    EXPECT_TRUE(errorWith("newsroom.json", "{").startsWith(QLatin1String("nr/newsroom.json: ")));
    EXPECT_EQ(errorWith("newsroom.json", "[]"), QStringLiteral("nr/newsroom.json: is no JSON object"));
}

TEST_F(StoreLoadTest, JsonOfAnotherFormat)
{
    EXPECT_EQ(errorChanging("newsroom.json", "\"format\": 1", "\"format\": 2"),
              QStringLiteral("nr/newsroom.json: has the unknown format 2"));
    EXPECT_EQ(errorChanging("newsroom.json", "\"format\": 2", "\"format\": 0"),
              QStringLiteral("nr/newsroom.json: has the unknown format 0"));
}

TEST_F(StoreLoadTest, JsonWithoutAMember)
{
    EXPECT_EQ(errorChanging("newsroom.json", "\"server\"", "\"sever\""),
              QStringLiteral("nr/newsroom.json: \"server\" is missing"));
    EXPECT_EQ(errorChanging("newsroom.json", "\"sever\"", "\"server\": 1, \"x\""),
              QStringLiteral("nr/newsroom.json: \"server\" has the wrong type"));
}

TEST_F(StoreLoadTest, AUserWithoutAMember)
{
    EXPECT_EQ(errorChanging("newsroom.json", "\"rights\"", "\"right\""),
              QStringLiteral("nr/newsroom.json: in \"users\", \"rights\" is missing"));
}

TEST_F(StoreLoadTest, AUserWithABadName)
{
    EXPECT_EQ(errorChanging("newsroom.json", "\"nora\"", "\"no ra\""),
              QStringLiteral("nr/newsroom.json: The argument is not valid."));
}

TEST_F(StoreLoadTest, NumbersThatAreNone)
{
    for (const char *number : {"4294967296", "1.5", "-2147483649"}) {
        const QByteArray changed = QByteArray("\"number\": ") + number;
        const QByteArray good = contentOf(in("nr/tree/NEWS/TODAY/queue.json"));
        EXPECT_EQ(errorChanging("tree/NEWS/TODAY/queue.json", "\"number\": 12", changed.constData()),
                  QStringLiteral("nr/tree/NEWS/TODAY/queue.json: \"number\" is no 32-bit number"));
        makeFile(in("nr/tree/NEWS/TODAY/queue.json"), good);
    }
    EXPECT_EQ(errorChanging("tree/NEWS/TODAY/queue.json", "\"number\": 12", "\"number\": -12"),
              QStringLiteral("nr/tree/NEWS/TODAY/queue.json: The argument is not valid."));
}

TEST_F(StoreLoadTest, AQueueThatNamesAStoryTwice)
{
    EXPECT_EQ(errorChanging("tree/NEWS/TODAY/queue.json", "        7\n", "        7, 7\n"),
              QStringLiteral("nr/tree/NEWS/TODAY/queue.json: names the story 7 twice"));
}

TEST_F(StoreLoadTest, FlagsThatAreNotThreeWords)
{
    EXPECT_EQ(errorChanging("tree/NEWS/directory.json", "        0,\n", ""),
              QStringLiteral("nr/tree/NEWS/directory.json: \"flags\" is not three words"));
    EXPECT_EQ(errorChanging("tree/NEWS/directory.json", "\"flags\": [", "\"flags\": [ 1, 2, 3,"),
              QStringLiteral("nr/tree/NEWS/directory.json: \"flags\" is not three words"));
}

TEST_F(StoreLoadTest, AnEntryThatStandsTwice)
{
    EXPECT_EQ(errorChanging("tree/directory.json", "\"NEWS\"", "\"NEWS\", \"NEWS\""),
              QStringLiteral("nr/tree/NEWS: The entry exists already."));
}

TEST_F(StoreLoadTest, AnEntryWhoseNameIsNone)
{
    EXPECT_EQ(errorChanging("tree/directory.json", "\"NEWS\"", "\"..\""),
              QStringLiteral("nr/tree/directory.json: \"..\" can be no entry's name"));
}

TEST_F(StoreLoadTest, AnEntryOfAnotherName)
{
    EXPECT_EQ(errorChanging("tree/NEWS/directory.json", "\"name\": \"NEWS\"", "\"name\": \"OLD\""),
              QStringLiteral("nr/tree/NEWS/directory.json: is named \"OLD\" where \"NEWS\" is expected"));
}

TEST_F(StoreLoadTest, AnEntryOfTheNameInAnotherLetterCase)
{
    EXPECT_EQ(errorChanging("tree/NEWS/directory.json", "\"name\": \"NEWS\"", "\"name\": \"News\""),
              QStringLiteral("nr/tree/NEWS/directory.json: is named \"News\" where \"NEWS\" is expected"));
}

TEST_F(StoreLoadTest, ABlobFileThatIsNotNamedAsOne)
{
    EXPECT_EQ(errorWith("blobs/%zz.blob", "x"), QStringLiteral("nr/blobs/%zz.blob: is not named as a blob"));
}

TEST_F(StoreLoadTest, AFileOfMoreBytesThanAnArrayHolds)
{
    constexpr qint64 size = qint64(2200) * 1024 * 1024;
    for (const char *name : {"nr/blobs/big.blob", "nr/tree/NEWS/TODAY/000007.zeko"}) {
        makeFile(in(name), "x");
        if (!QFile::resize(in(name), size))
            GTEST_SKIP() << "no room for a file of this size, even without content";
        EXPECT_EQ(Store::read(in("nr"), &error), nullptr);
        EXPECT_EQ(shownError(), QString::fromUtf8(name) + QStringLiteral(": cannot be read whole (2306867200 bytes)"));
        ASSERT_TRUE(QFile::remove(in(name)));
    }
}

TEST_F(StoreLoadTest, AStoryFileWithoutMarkLoads)
{
    QByteArray data = contentOf(in("nr/tree/NEWS/TODAY/000007.zeko"));
    makeFile(in("nr/tree/NEWS/TODAY/000007.zeko"), data.mid(3));
    const auto model = Store::read(in("nr"), &error);
    ASSERT_NE(model, nullptr) << error.toStdString();
    EXPECT_EQ(model->story(7).value->name(), QStringLiteral("One"));
}

TEST_F(StoreLoadTest, AStoryThatAHostWroteLoads)
{
    makeFile(
        in("nr/tree/NEWS/TODAY/000007.zeko"),
        "\xEF\xBB\xBF<zeko:story>\r\n<zeko:head><storyid>7:c:0:3</storyid><formname>STORY</formname></zeko:head>\r\n"
        "<zeko:fields><f id=title>New</f></zeko:fields><zeko:body><p>a<a x></p></zeko:body></zeko:story>\r\n");
    const auto model = Store::read(in("nr"), &error);
    ASSERT_NE(model, nullptr) << error.toStdString();
    EXPECT_EQ(model->story(7).value->name(), QStringLiteral("New"));
    EXPECT_EQ(model->story(7).value->revision(), 3);
}
