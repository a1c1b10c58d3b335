#include <gtest/gtest.h>
#include <thread>
#include <vector>

#include <quire/newsroom/model/Story.h>

#include "Printers.h"

using namespace Newsroom;

namespace {

Story::Identity identity()
{
    Story::Identity result;
    result.id = {100, 12, 0};
    result.revision = 3;
    result.formName = QStringLiteral("STORY");
    result.queueNumber = 12;
    result.queuePath = QStringLiteral("NEWS.TODAY");
    return result;
}

QString nameWith(const StoryText &text)
{
    return Story(identity(), text).name();
}

} // namespace

TEST(StoryTest, NameIsTheTitleThenTheSlugThenTheSubject)
{
    StoryText text;
    text.setPlainBody(QStringLiteral("Body line"));
    text.setField(QStringLiteral("subject"), QStringLiteral("Subject"));
    EXPECT_EQ(nameWith(text), QStringLiteral("Subject"));
    text.setField(QStringLiteral("slug"), QStringLiteral("Slug"));
    EXPECT_EQ(nameWith(text), QStringLiteral("Slug"));
    text.setField(QStringLiteral("title"), QStringLiteral(" The\n title "));
    EXPECT_EQ(nameWith(text), QStringLiteral("The title"));
}

TEST(StoryTest, NameIsElseTheFirstLineOfTheBody)
{
    StoryText text;
    text.setPlainBody(QStringLiteral("First line\nSecond"));
    EXPECT_EQ(nameWith(text), QStringLiteral("First line"));
    text.setPlainBody(QString(100, QLatin1Char('x')));
    EXPECT_EQ(nameWith(text), QString(60, QLatin1Char('x')));
}

TEST(StoryTest, ALongNameIsNotCutWithinACharacter)
{
    StoryText text;
    text.setPlainBody(QString(59, QLatin1Char('x')) + QString::fromUtf8("\xF0\x9F\x98\x80\xF0\x9F\x98\x80"));
    EXPECT_EQ(nameWith(text), QString(59, QLatin1Char('x')));
}

TEST(StoryTest, NameIsElseTheNumber)
{
    EXPECT_EQ(nameWith(StoryText()), QStringLiteral("Story 100"));
}

TEST(StoryTest, HeaderStatesIdentifierRevisionAndForm)
{
    const Story story(identity(), StoryText());
    EXPECT_EQ(story.headerId(), QStringLiteral("64:c:0:3"));
    EXPECT_EQ(story.markup(Section::Head),
              QStringLiteral("<head><storyid>64:c:0:3</storyid><formname>STORY</formname><meta></head>"));
    EXPECT_EQ(story.plain(Section::Head), QStringLiteral("storyid: 64:c:0:3\nformname: STORY"));
}

TEST(StoryTest, HeldAndKeyLockedComeFromTheHeader)
{
    StoryText text;
    EXPECT_FALSE(Story(identity(), text).isHeld());
    EXPECT_FALSE(Story(identity(), text).isKeyLocked());
    text.setMeta(QStringLiteral("hold"), QStringLiteral("H"));
    text.setMeta(QStringLiteral("locked"), QStringLiteral("desk"));
    EXPECT_TRUE(Story(identity(), text).isHeld());
    EXPECT_TRUE(Story(identity(), text).isKeyLocked());
}

TEST(StoryTest, WholeMarkupIsComposedOnceAndShared)
{
    StoryText text;
    text.setPlainBody(QStringLiteral("x"));
    const Story story(identity(), text);
    const QString first = story.markup(Section::Whole);
    EXPECT_EQ(first.constData(), story.markup(Section::Whole).constData());
    EXPECT_EQ(first, markupOf(text, story.header(), Section::Whole));
}

TEST(StoryTest, ManyThreadsReadOneRevision)
{
    StoryText text;
    text.setPlainBody(QStringLiteral("some words"));
    const Story story(identity(), text);
    const QString expected = markupOf(text, story.header(), Section::Whole);
    std::vector<std::thread> threads;
    threads.reserve(8);
    for (int i = 0; i < 8; ++i)
        threads.emplace_back([&] { EXPECT_EQ(story.markup(Section::Whole), expected); });
    for (std::thread &thread : threads)
        thread.join();
}
