// Sections on the server.

#include "story/StoryFixture.h"

using namespace Quire;

namespace {

class StorySections : public StoryFixture
{
protected:
    void SetUp() override
    {
        StoryFixture::SetUp();
        data = add("5:1:2", "");
        data->markup[8] = text("<body>markup</body>");
        data->plain[8] = text("plain");
    }

    FakeServer::StoryDataPtr data;
};

} // namespace

// ---- reading --------------------------------------------------------------------------------------------------------

TEST_F(StorySections, ReadsMarkupUnderItsLabel)
{
    Story story = open(fifth);
    const LockDebugging labels;
    QString section = text("old");
    story.GetSection(8, section, true);
    EXPECT_EQ(section, text("<body>markup</body>"));
    EXPECT_EQ(story.GetError(), 0);
    EXPECT_EQ(callsWithLabels(), QStringList({text("MAIL#5.get_SectionXml(8) under Story::GetSection")}));
}

TEST_F(StorySections, ReadsTheOtherFormUnderItsLabel)
{
    Story story = open(fifth);
    const LockDebugging labels;
    QString section = text("old");
    story.GetSection(8, section, false);
    EXPECT_EQ(section, text("plain"));
    EXPECT_EQ(callsWithLabels(), QStringList({text("MAIL#5.get_Section(8) under Story::GetSection")}));
}

TEST_F(StorySections, PassesEveryNumberButZeroOn)
{
    Story story = open(fifth);
    QString section;
    for (const int number : {1, 3, 127, 128, -1, 2147483647}) {
        story.GetSection(number, section, true);
        EXPECT_EQ(server.calls().last(), QStringLiteral("MAIL#5.get_SectionXml(%1)").arg(number));
    }
}

TEST_F(StorySections, Section0IsNotAskedFor)
{
    Story story = open(fifth);
    for (const bool markup : {true, false}) {
        StoryProbe::setLastError(story, E_FAIL);
        QString section = text("old");
        story.GetSection(0, section, markup);
        EXPECT_EQ(section, QString());
        EXPECT_EQ(story.GetError(), 0);
        EXPECT_EQ(server.calls(), QStringList());
    }
}

TEST_F(StorySections, WithoutTextIsEmptyWithoutError)
{
    Story story = open(fifth);
    for (const bool markup : {true, false}) {
        QString section = text("old");
        story.GetSection(16, section, markup);
        EXPECT_EQ(section, QString());
        EXPECT_EQ(story.GetError(), 0);
    }
}

TEST_F(StorySections, ThatFailsIsEmptyWithTheError)
{
    Story story = open(fifth);
    server.fail(text("get_SectionXml"), hresult(0x80040405));
    server.fail(text("get_Section"), hresult(0x80040406));
    server.failsWithAnswer = true;
    QString section = text("old");
    story.GetSection(8, section, true);
    EXPECT_EQ(section, QString());
    EXPECT_EQ(story.GetError(), asLong(0x80040405));
    section = text("old");
    story.GetSection(8, section, false);
    EXPECT_EQ(section, QString());
    EXPECT_EQ(story.GetError(), asLong(0x80040406));
}

TEST_F(StorySections, ThatRaisesIsEmptyWithMinusOne)
{
    Story story = open(fifth);
    server.raise(text("get_SectionXml"), E_FAIL);
    server.raise(text("get_Section"), E_FAIL);
    for (const bool markup : {true, false}) {
        QString section = text("old");
        EXPECT_NO_THROW(story.GetSection(8, section, markup));
        EXPECT_EQ(section, QString());
        EXPECT_EQ(story.GetError(), -1);
    }
    server.mend();
    QString section;
    story.GetSection(8, section, true);
    EXPECT_EQ(story.GetError(), 0);
}

TEST_F(StorySections, ACodeThatIsNoFailureIsKept)
{
    Story story = open(fifth);
    server.fail(text("get_SectionXml"), S_FALSE);
    QString section;
    story.GetSection(8, section, true);
    EXPECT_EQ(section, text("<body>markup</body>"));
    EXPECT_EQ(story.GetError(), 1);
}

TEST_F(StorySections, OfAStoryThatIsNotThereAreEmptyWithoutError)
{
    server.queues.clear();
    server.storiesExist = false;
    Story story = open(fifth);
    StoryProbe::setLastError(story, E_FAIL);
    QString section = text("old");
    story.GetSection(8, section, true);
    EXPECT_EQ(section, QString());
    EXPECT_EQ(story.GetError(), 0);
    StoryProbe::setLastError(story, E_FAIL);
    EXPECT_FALSE(story.PutSection(8, section, true));
    EXPECT_EQ(story.GetError(), 0);
}

// ---- reading from a handle ------------------------------------------------------------------------------------------

TEST_F(StorySections, OfAHandleAreReadUnderTheirLabel)
{
    const Orvex::IStory2Ptr story = fetch(0);
    const LockDebugging labels;
    QString section;
    StoryProbe::getSection(story, 8, section, true);
    EXPECT_EQ(section, text("<body>markup</body>"));
    StoryProbe::getSection(story, 8, section, false);
    EXPECT_EQ(section, text("plain"));
    EXPECT_EQ(callsWithLabels(), QStringList({text("MAIL#5.get_SectionXml(8) under static::GetSection"),
                                              text("MAIL#5.get_Section(8) under static::GetSection")}));
}

TEST_F(StorySections, OfAHandleAreAskedForEvenWithNumber0)
{
    QString section = text("old");
    StoryProbe::getSection(fetch(0), 0, section, true);
    EXPECT_EQ(section, QString());
    EXPECT_EQ(server.calls(), QStringList({text("MAIL#5.get_SectionXml(0)")}));
}

TEST_F(StorySections, OfAHandleThatFailAreEmpty)
{
    const Orvex::IStory2Ptr story = fetch(0);
    server.fail(text("get_SectionXml"), E_FAIL);
    server.failsWithAnswer = true;
    QString section = text("old");
    StoryProbe::getSection(story, 8, section, true);
    EXPECT_EQ(section, QString());
}

TEST_F(StorySections, OfAHandleThatRaiseRaise)
{
    const Orvex::IStory2Ptr story = fetch(0);
    server.raise(text("get_SectionXml"), E_FAIL);
    QString section = text("old");
    EXPECT_THROW(StoryProbe::getSection(story, 8, section, true), _com_error);
    EXPECT_EQ(section, QString());
}

// ---- writing --------------------------------------------------------------------------------------------------------

TEST_F(StorySections, WritesMarkupUnderItsLabel)
{
    Story story = open(fifth);
    const LockDebugging labels;
    QString section = text("<body>new</body>");
    EXPECT_TRUE(story.PutSection(8, section, true));
    EXPECT_EQ(section, text("<body>new</body>"));
    EXPECT_EQ(story.GetError(), 0);
    EXPECT_EQ(callsWithLabels(),
              QStringList({text("MAIL#5.put_SectionXml(8, <body>new</body>) under Story::PutSection")}));
}

TEST_F(StorySections, WritesTheOtherFormUnderItsLabel)
{
    Story story = open(fifth);
    const LockDebugging labels;
    QString section = text("new");
    EXPECT_TRUE(story.PutSection(8, section, false));
    EXPECT_EQ(callsWithLabels(), QStringList({text("MAIL#5.put_Section(8, new) under Story::PutSection")}));
}

TEST_F(StorySections, Section0IsNotWritten)
{
    Story story = open(fifth);
    for (const bool markup : {true, false}) {
        StoryProbe::setLastError(story, E_FAIL);
        QString section = text("new");
        EXPECT_FALSE(story.PutSection(0, section, markup));
        EXPECT_EQ(section, text("new"));
        EXPECT_EQ(story.GetError(), 0);
        EXPECT_EQ(server.calls(), QStringList());
    }
}

TEST_F(StorySections, RefusedWritingIsFalseWithTheError)
{
    Story story = open(fifth);
    server.fail(text("put_SectionXml"), hresult(0x80040458));
    server.fail(text("put_Section"), hresult(0x80040405));
    QString section = text("new");
    EXPECT_FALSE(story.PutSection(8, section, true));
    EXPECT_EQ(story.GetError(), asLong(0x80040458));
    EXPECT_FALSE(story.PutSection(8, section, false));
    EXPECT_EQ(story.GetError(), asLong(0x80040405));
    EXPECT_EQ(section, text("new"));
}

TEST_F(StorySections, WritingIsTrueForACodeThatIsNoFailure)
{
    Story story = open(fifth);
    server.fail(text("put_SectionXml"), S_FALSE);
    QString section = text("new");
    EXPECT_TRUE(story.PutSection(8, section, true));
    EXPECT_EQ(story.GetError(), 1);
}

TEST_F(StorySections, WritingThatRaisesRaisesWithMinusOne)
{
    Story story = open(fifth);
    server.raise(text("put_SectionXml"), E_FAIL);
    server.raise(text("put_Section"), E_FAIL);
    for (const bool markup : {true, false}) {
        QString section = text("new");
        EXPECT_THROW(story.PutSection(8, section, markup), _com_error);
        EXPECT_EQ(section, text("new"));
        EXPECT_EQ(story.GetError(), -1);
        EXPECT_EQ(QuireCOM::m_LockThreadID, 0u);
    }
}

TEST_F(StorySections, NullTextIsWrittenAsAnEmptyOne)
{
    Story story = open(fifth);
    QString section;
    EXPECT_TRUE(story.PutSection(8, section, true));
    EXPECT_EQ(server.calls(), QStringList({text("MAIL#5.put_SectionXml(8, )")}));
    EXPECT_TRUE(section.isNull());
}

TEST_F(StorySections, Of50MegabytesAreReadAndWritten)
{
    const QString large = text("<body>") + QString(25 * 1024 * 1024, QChar(0x2603)) + text("</body>");
    data->markup[8] = large;
    Story story = open(fifth);
    QString section;
    story.GetSection(8, section, true);
    EXPECT_TRUE(section == large);
    EXPECT_TRUE(story.PutSection(4, section, true));
    EXPECT_TRUE(data->markup.value(4) == large);
    EXPECT_TRUE(Story::ExtractTextSection(section, text("body")) == large);
}
