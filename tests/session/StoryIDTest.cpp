#include <quire/session/StoryID.h>

#include <gtest/gtest.h>

#include <limits>

#include "support/QtPrinting.h"

using namespace Quire;

namespace {

StoryID parsed(const char *text, int base = 10)
{
    StoryID id{-7, -7, -7};
    String2StoryID(QString::fromLatin1(text), &id, base);
    return id;
}

void expectParts(const StoryID &id, int part1, int part2, int part3)
{
    EXPECT_EQ(id.part1, part1);
    EXPECT_EQ(id.part2, part2);
    EXPECT_EQ(id.part3, part3);
}

SID_Diff_t compared(StoryID a, StoryID b)
{
    return CmpStoryID(&a, &b);
}

} // namespace

// ---- text -----------------------------------------------------------------------------------------------------------

TEST(StoryID2String, WritesTwoParts)
{
    EXPECT_EQ(StoryID2String({12, 345, 6789}, false), QStringLiteral("12:345"));
}

TEST(StoryID2String, WritesThreePartsWhenFull)
{
    EXPECT_EQ(StoryID2String({12, 345, 6789}, true), QStringLiteral("12:345:6789"));
}

TEST(StoryID2String, WritesSignedNumbersWithoutPadding)
{
    const int lowest = std::numeric_limits<int>::min();
    EXPECT_EQ(StoryID2String({-1, 0, lowest}, true), QStringLiteral("-1:0:-2147483648"));
}

TEST(String2StoryID, ReadsThreeParts)
{
    expectParts(parsed("12:345:6789"), 12, 345, 6789);
}

TEST(String2StoryID, ReadsWhatFollowsTheFirstBlank)
{
    expectParts(parsed("ID 12:345:6789"), 12, 345, 6789);
}

TEST(String2StoryID, GivesZeroForAMissingPart)
{
    expectParts(parsed("12:345"), 12, 345, 0);
}

TEST(String2StoryID, GivesZeroPartsForAnEmptyText)
{
    expectParts(parsed(""), 0, 0, 0);
}

TEST(String2StoryID, OnlyTheFirstBlankCounts)
{
    expectParts(parsed("a b 1:2:3"), 0, 2, 3);
}

TEST(String2StoryID, GivesZeroForAMalformedPart)
{
    expectParts(parsed("12:x:6789"), 12, 0, 6789);
}

TEST(String2StoryID, GivesZeroForAPartThatNeedsMoreThan32Bits)
{
    expectParts(parsed("2147483648:2147483647:-2147483649"), 0, std::numeric_limits<int>::max(), 0);
}

TEST(String2StoryID, IgnoresFurtherParts)
{
    expectParts(parsed("1:2:3:4:5"), 1, 2, 3);
}

TEST(String2StoryID, ReadsNegativeParts)
{
    expectParts(parsed("-1:-2:-3"), -1, -2, -3);
}

TEST(String2StoryID, ReadsInTheGivenBase)
{
    expectParts(parsed("c:159:1a85", 16), 12, 345, 6789);
}

TEST(String2StoryID, ReadsHexadecimalDigitsAsMalformedInBaseTen)
{
    expectParts(parsed("c:159:1a85"), 0, 159, 0);
}

TEST(String2StoryID, DoesNothingForANullRecord)
{
    String2StoryID(QStringLiteral("1:2:3"), nullptr, 10);
}

TEST(String2StoryID, ReadsBackWhatStoryID2StringWrote)
{
    const StoryID ids[] = {{0, 0, 0}, {1, 2, 3}, {-5, 2147483647, -2147483647 - 1}};
    for (const StoryID &id : ids) {
        StoryID back{};
        String2StoryID(StoryID2String(id, true), &back, 10);
        expectParts(back, id.part1, id.part2, id.part3);
    }
}

// ---- comparison -----------------------------------------------------------------------------------------------------

TEST(CmpStoryID, FindsIdenticalRecords)
{
    EXPECT_EQ(compared({1, 2, 3}, {1, 2, 3}), SID_Identical);
}

TEST(CmpStoryID, FindsThatOnlyTheFirstPartDiffers)
{
    EXPECT_EQ(compared({1, 2, 3}, {9, 2, 3}), SID_FirstDiffers);
}

TEST(CmpStoryID, FindsThatTheSecondPartDiffers)
{
    EXPECT_EQ(compared({1, 2, 3}, {1, 9, 3}), SID_OneDiffers);
}

TEST(CmpStoryID, FindsThatTheThirdPartDiffers)
{
    EXPECT_EQ(compared({1, 2, 3}, {1, 2, 9}), SID_OneDiffers);
}

TEST(CmpStoryID, DoesNotLookAtTheFirstPartWhenAnotherDiffers)
{
    EXPECT_EQ(compared({1, 2, 3}, {8, 9, 3}), SID_OneDiffers);
    EXPECT_EQ(compared({1, 2, 3}, {8, 2, 9}), SID_OneDiffers);
}

TEST(CmpStoryID, FindsThatBothLaterPartsDiffer)
{
    EXPECT_EQ(compared({1, 2, 3}, {1, 9, 9}), SID_Different);
    EXPECT_EQ(compared({1, 2, 3}, {8, 9, 9}), SID_Different);
}

TEST(CmpStoryID, CallsAnAbsentRecordDifferent)
{
    StoryID id{1, 2, 3};
    EXPECT_EQ(CmpStoryID(nullptr, &id), SID_Different);
    EXPECT_EQ(CmpStoryID(&id, nullptr), SID_Different);
    EXPECT_EQ(CmpStoryID(nullptr, nullptr), SID_Different);
}

TEST(CmpStoryID, HasTheNumbersThatHostsKeep)
{
    EXPECT_EQ(static_cast<int>(SID_Identical), 0);
    EXPECT_EQ(static_cast<int>(SID_FirstDiffers), 1);
    EXPECT_EQ(static_cast<int>(SID_OneDiffers), 2);
    EXPECT_EQ(static_cast<int>(SID_Different), 3);
}
