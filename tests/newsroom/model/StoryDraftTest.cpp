#include <gtest/gtest.h>

#include <quire/newsroom/model/StoryDraft.h>

#include "Printers.h"

using namespace Newsroom;

namespace {

StoryPointer base()
{
    Story::Identity identity;
    identity.id = {5, 6, 0};
    StoryText text;
    text.setField(QStringLiteral("title"), QStringLiteral("Old"));
    text.setField(QStringLiteral("slug"), QStringLiteral("old"));
    text.setPlainBody(QStringLiteral("Old body"));
    return std::make_shared<Story>(identity, text);
}

} // namespace

TEST(StoryDraftTest, DefaultDraftIsEmptyAndHarmless)
{
    const StoryDraft draft;
    EXPECT_TRUE(draft.isEmpty());
    EXPECT_EQ(draft.base(), nullptr);
    EXPECT_EQ(draft.markup(Section::Whole), QString());
    EXPECT_EQ(draft.plain(Section::Whole), QString());
    EXPECT_EQ(draft.name(), QString());
}

TEST(StoryDraftTest, ShowsItsBaseUntilSomethingIsPut)
{
    const StoryPointer story = base();
    const StoryDraft draft(story);
    EXPECT_TRUE(draft.isEmpty());
    EXPECT_EQ(draft.markup(Section::Whole), story->markup(Section::Whole));
}

TEST(StoryDraftTest, ShowsItsChangesAndLeavesTheBase)
{
    const StoryPointer story = base();
    StoryDraft draft(story);
    EXPECT_EQ(draft.putField(QStringLiteral("title"), QStringLiteral("New")), Refusal::None);
    EXPECT_EQ(draft.putMarkup(Section::Body, QStringLiteral("<body><p>New body</p></body>")), Refusal::None);
    EXPECT_FALSE(draft.isEmpty());
    EXPECT_EQ(draft.name(), QStringLiteral("New"));
    EXPECT_EQ(draft.plain(Section::Body), QStringLiteral("New body"));
    EXPECT_EQ(story->name(), QStringLiteral("Old"));
    EXPECT_EQ(story->plain(Section::Body), QStringLiteral("Old body"));
}

TEST(StoryDraftTest, RefusedPutsLeaveItEmpty)
{
    StoryDraft draft(base());
    EXPECT_EQ(draft.putMarkup(Section::Body, QStringLiteral("<body>")), Refusal::MarkupSyntax);
    EXPECT_EQ(draft.putMarkup(0, QStringLiteral("<body></body>")), Refusal::InvalidArgument);
    EXPECT_EQ(draft.putPlain(Section::Head, QStringLiteral("x: y")), Refusal::InvalidArgument);
    EXPECT_EQ(draft.putField(QString(), QStringLiteral("x")), Refusal::InvalidArgument);
    EXPECT_EQ(draft.putField(QStringLiteral("a\nb"), QStringLiteral("x")), Refusal::InvalidArgument);
    EXPECT_TRUE(draft.isEmpty());
}

TEST(StoryDraftTest, AppliesOnlyWhatWasPut)
{
    StoryDraft draft(base());
    draft.putField(QStringLiteral("title"), QStringLiteral("Mine"));
    StoryText meanwhile = base()->text();
    meanwhile.setField(QStringLiteral("slug"), QStringLiteral("theirs"));
    meanwhile.setPlainBody(QStringLiteral("Their body"));
    draft.applyTo(&meanwhile);
    EXPECT_EQ(meanwhile.fieldValue(QStringLiteral("title")), QStringLiteral("Mine"));
    EXPECT_EQ(meanwhile.fieldValue(QStringLiteral("slug")), QStringLiteral("theirs"));
    EXPECT_EQ(meanwhile.plainBody(), QStringLiteral("Their body"));
}

TEST(StoryDraftTest, AFieldPutAfterTheFieldsSectionIsKept)
{
    StoryDraft draft(base());
    draft.putField(QStringLiteral("slug"), QStringLiteral("lost"));
    EXPECT_EQ(draft.putMarkup(Section::Fields, QStringLiteral("<fields><f id=title>A</f></fields>")), Refusal::None);
    draft.putField(QStringLiteral("extra"), QStringLiteral("B"));
    StoryText text = base()->text();
    draft.applyTo(&text);
    EXPECT_EQ(text.fields.size(), 2);
    EXPECT_EQ(text.fieldValue(QStringLiteral("title")), QStringLiteral("A"));
    EXPECT_EQ(text.fieldValue(QStringLiteral("extra")), QStringLiteral("B"));
}

TEST(StoryDraftTest, PlainPutsAreAppliedToo)
{
    StoryDraft draft(base());
    EXPECT_EQ(draft.putPlain(Section::Body, QStringLiteral("one\ntwo")), Refusal::None);
    StoryText text;
    draft.applyTo(&text);
    EXPECT_EQ(text.body, QStringLiteral("<p>one</p><p>two</p>"));
}
