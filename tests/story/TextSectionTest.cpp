// Sections within a text: found, cut out and replaced by plain search.

#include <gtest/gtest.h>

#include <quire/story/LocalStory.h>
#include <quire/story/Story.h>

#include "support/QtPrinting.h"
#include "support/Text.h"

using Quire::LocalStory;
using Quire::Story;

namespace {

/// What GetTextSectionPos answers.
struct Place
{
    int start;
    int end;
    bool prefixed;

    bool operator==(const Place &other) const
    {
        return start == other.start && end == other.end && prefixed == other.prefixed;
    }
};

void PrintTo(const Place &place, std::ostream *out)
{
    *out << place.start << " to " << place.end << (place.prefixed ? ", prefixed" : "");
}

Place placeOf(const char *text, const char *tag)
{
    QString searched = QString::fromUtf8(text);
    Place place{-7, -7, false};
    place.prefixed = Story::GetTextSectionPos(searched, QLatin1String(tag), place.start, place.end);
    EXPECT_EQ(searched, QString::fromUtf8(text));
    return place;
}

QString extracted(const char *text, const char *tag)
{
    QString searched = QString::fromUtf8(text);
    QString section = Story::ExtractTextSection(searched, QLatin1String(tag));
    EXPECT_EQ(searched, QString::fromUtf8(text));
    return section;
}

QString replaced(const char *text, const char *tag, const char *section)
{
    QString changed = QString::fromUtf8(text);
    LocalStory::SetTextSection(changed, QLatin1String(tag), QString::fromUtf8(section));
    return changed;
}

} // namespace

// ---- where a section stands -----------------------------------------------------------------------------------------

TEST(TextSection, StandsFromItsOpeningToBehindItsClosing)
{
    EXPECT_EQ(placeOf("<story><head>x</head></story>", "head"), (Place{7, 21, false}));
}

TEST(TextSection, WithPrefixIsFoundAndToldByTheResult)
{
    EXPECT_EQ(placeOf("<zeko:fields><f id=a>1</f></zeko:fields>", "fields"), (Place{0, 40, true}));
}

TEST(TextSection, MatchesALongerNameThatBeginsWithTheTag)
{
    EXPECT_EQ(placeOf("<header/><head>x</head>", "head"), (Place{0, 23, false}));
}

TEST(TextSection, MatchesALongerPrefixedNameThatBeginsWithTheTag)
{
    EXPECT_EQ(placeOf("<zeko:header/><zeko:head>x</zeko:head>", "head"), (Place{0, 38, true}));
}

TEST(TextSection, MayHaveAttributes)
{
    EXPECT_EQ(placeOf("..<head a=b>x</head>", "head"), (Place{2, 20, false}));
}

TEST(TextSection, ThatIsMissingHasNoPlace)
{
    EXPECT_EQ(placeOf("<story/>", "head"), (Place{-1, -1, false}));
}

TEST(TextSection, OfAnEmptyTextHasNoPlace)
{
    EXPECT_EQ(placeOf("", "head"), (Place{-1, -1, false}));
}

TEST(TextSection, WithoutClosingEndsAtTheClosingsLengthLessOne)
{
    EXPECT_EQ(placeOf("<story>.....<head>x", "head"), (Place{12, 6, false}));
}

TEST(TextSection, WithPrefixWithoutClosingEndsAtTheClosingsLengthLessOne)
{
    EXPECT_EQ(placeOf("<story>.....<zeko:head>x", "head"), (Place{12, 11, true}));
}

TEST(TextSection, WithPrefixIsNotClosedWithoutPrefix)
{
    EXPECT_EQ(placeOf("<story>.....<zeko:head>x</head>", "head"), (Place{12, 11, true}));
}

TEST(TextSection, WithoutPrefixIsNotClosedWithPrefix)
{
    EXPECT_EQ(placeOf("<story>.....<head>x</zeko:head>", "head"), (Place{12, 6, false}));
}

TEST(TextSection, PlainFormIsPreferredToAnEarlierPrefixedOne)
{
    EXPECT_EQ(placeOf("<zeko:head>x</zeko:head><head>y</head>", "head"), (Place{24, 38, false}));
}

TEST(TextSection, FirstOpeningWinsEvenInsideAnotherElement)
{
    EXPECT_EQ(placeOf("<body><head>1</head></body><head>2</head>", "head"), (Place{6, 20, false}));
}

TEST(TextSection, ClosingIsTheFirstOfTheWholeText)
{
    EXPECT_EQ(placeOf("</head><head>x</head>", "head"), (Place{7, 7, false}));
}

TEST(TextSection, ClosingInsideAnotherElementEndsIt)
{
    EXPECT_EQ(placeOf("<body><a></head></a></body><head>x</head>", "head"), (Place{27, 16, false}));
}

TEST(TextSection, ClosingMustNotHoldABlank)
{
    EXPECT_EQ(placeOf("<story>.....<head>x</head >", "head"), (Place{12, 6, false}));
}

TEST(TextSection, LetterCaseOfTheTagCounts)
{
    EXPECT_EQ(placeOf("<HEAD>x</HEAD>", "head"), (Place{-1, -1, false}));
}

TEST(TextSection, LetterCaseOfTheClosingCounts)
{
    EXPECT_EQ(placeOf("<story>.....<head>x</HEAD>", "head"), (Place{12, 6, false}));
}

TEST(TextSection, LetterCaseOfThePrefixCounts)
{
    EXPECT_EQ(placeOf("<ZEKO:head>x</ZEKO:head>", "head"), (Place{-1, -1, false}));
}

TEST(TextSection, TagWithAPlaceholderStandsForItself)
{
    EXPECT_EQ(placeOf("<%1>x</%1>", "%1"), (Place{0, 10, false}));
}

TEST(TextSection, PlaceCountsUtf16Units)
{
    EXPECT_EQ(placeOf("\xF0\x9F\x93\xB0<head>\xC3\xA9</head>", "head"), (Place{2, 16, false}));
}

// ---- cutting one out ------------------------------------------------------------------------------------------------

TEST(TextSection, IsCutOutWithItsTags)
{
    EXPECT_EQ(extracted("<story><head><storyid>5</storyid></head></story>", "head"),
              text("<head><storyid>5</storyid></head>"));
}

TEST(TextSection, WithPrefixIsCutOutWithIt)
{
    EXPECT_EQ(extracted("<s><zeko:body>x</zeko:body></s>", "body"), text("<zeko:body>x</zeko:body>"));
}

TEST(TextSection, CutOutBeginsWithTheLongerNameThatCameFirst)
{
    EXPECT_EQ(extracted("<header/><head>x</head>", "head"), text("<header/><head>x</head>"));
}

TEST(TextSection, WithoutClosingIsCutOutEmpty)
{
    EXPECT_EQ(extracted("<story><head>x", "head"), QString());
}

TEST(TextSection, WithoutClosingIsCutOutEmptyWhereverItStands)
{
    for (const char *markup : {"<head>x", "<head", "a<head>", "<zeko:head>x", "<zeko:head", "<story><zeko:head>",
                               "<head></zeko:head>", "<zeko:head></head>"})
        EXPECT_EQ(extracted(markup, "head"), QString()) << markup;
}

TEST(TextSection, ThatIsNestedIsCutOutUpToTheFirstClosing)
{
    EXPECT_EQ(extracted("<head><head>x</head>y</head>", "head"), text("<head><head>x</head>"));
}

TEST(TextSection, WithClosingBeforeOpeningIsCutOutEmpty)
{
    EXPECT_EQ(extracted("</head><head>x", "head"), QString());
}

TEST(TextSection, ThatIsMissingIsCutOutEmpty)
{
    EXPECT_EQ(extracted("<story/>", "head"), QString());
}

// ---- putting one back -----------------------------------------------------------------------------------------------

TEST(TextSection, IsReplacedWithItsTags)
{
    EXPECT_EQ(replaced("<s><head>x</head><body/></s>", "head", "<head>new</head>"),
              text("<s><head>new</head><body/></s>"));
}

TEST(TextSection, IsReplacedByAnythingAtAll)
{
    EXPECT_EQ(replaced("<s><head>x</head></s>", "head", "no element"), text("<s>no element</s>"));
}

TEST(TextSection, ReplacedByNothingIsGone)
{
    EXPECT_EQ(replaced("<s><head>x</head></s>", "head", ""), text("<s></s>"));
}

TEST(TextSection, ThatIsMissingIsNotAdded)
{
    EXPECT_EQ(replaced("<s><body/></s>", "head", "<head>new</head>"), text("<s><body/></s>"));
}

TEST(TextSection, IsNotPutIntoAnEmptyText)
{
    EXPECT_EQ(replaced("", "head", "<head>new</head>"), QString());
}

TEST(TextSection, WithoutClosingIsNotReplaced)
{
    EXPECT_EQ(replaced("<story>.<head>x", "head", "<head>new</head>"), text("<story>.<head>x"));
}

TEST(TextSection, WithoutClosingIsNotReplacedWhereverItStands)
{
    for (const char *markup : {"<a><head>text</x>", "<s><zeko:head>x", "<head>x", "<head", "<zeko:head></head>"})
        EXPECT_EQ(replaced(markup, "head", "N"), text(markup));
    EXPECT_EQ(replaced("<a><body>text</x>", "body", "N"), text("<a><body>text</x>"));
}

TEST(TextSection, WithClosingBeforeOpeningIsNotReplaced)
{
    EXPECT_EQ(replaced("</head>.<head>x", "head", "<head>new</head>"), text("</head>.<head>x"));
}

TEST(TextSection, OfAPrefixedTextGetsThePrefixOnBothTags)
{
    EXPECT_EQ(replaced("<s><zeko:head>x</zeko:head></s>", "head", "<head a=1>new</head>"),
              text("<s><zeko:head a=1>new</zeko:head></s>"));
}

TEST(TextSection, OfAPrefixedTextGetsThePrefixOnEveryOccurrence)
{
    EXPECT_EQ(replaced("<zeko:head>x</zeko:head>", "head", "<head><head/></head></head>"),
              text("<zeko:head><zeko:head/></zeko:head></zeko:head>"));
}

TEST(TextSection, OfAPrefixedTextGetsThePrefixOnLongerNamesToo)
{
    EXPECT_EQ(replaced("<zeko:head>x</zeko:head>", "head", "<head><header>1</header></head>"),
              text("<zeko:head><zeko:header>1</zeko:header></zeko:head>"));
}

TEST(TextSection, OfAPrefixedTextKeepsThePrefixThatIsThere)
{
    EXPECT_EQ(replaced("<zeko:head>x</zeko:head>", "head", "<zeko:head>new</zeko:head>"),
              text("<zeko:head>new</zeko:head>"));
}

TEST(TextSection, OfAPrefixedTextLeavesOtherNamesAndOtherCase)
{
    EXPECT_EQ(replaced("<zeko:head>x</zeko:head>", "head", "<HEAD><meta/></HEAD>"), text("<HEAD><meta/></HEAD>"));
}

TEST(TextSection, OfAPlainTextKeepsThePrefixThatIsGiven)
{
    EXPECT_EQ(replaced("<head>x</head>", "head", "<zeko:head>new</zeko:head>"), text("<zeko:head>new</zeko:head>"));
}

TEST(TextSection, IsRewrittenForItsOwnFormOnly)
{
    EXPECT_EQ(replaced("<zeko:story><head>x</head></zeko:story>", "head", "<head>new</head>"),
              text("<zeko:story><head>new</head></zeko:story>"));
}

TEST(TextSection, MayBeReplacedByTheTextItself)
{
    QString all = text("<s><head>x</head></s>");
    LocalStory::SetTextSection(all, QStringLiteral("head"), all);
    EXPECT_EQ(all, text("<s><s><head>x</head></s></s>"));
}

TEST(TextSection, PutBackAsItWasCutOutChangesNothing)
{
    for (const char *whole : {"<s><head>x</head></s>", "<zeko:head>x</zeko:head>", "<header/><head>x</head>"}) {
        QString all = text(whole);
        LocalStory::SetTextSection(all, QStringLiteral("head"), extracted(whole, "head"));
        EXPECT_EQ(all, text(whole));
    }
}
