#include <gtest/gtest.h>

#include <quire/newsroom/model/Section.h>

#include "Printers.h"

using namespace Newsroom;

TEST(SectionTest, EachBitHasItsElement)
{
    EXPECT_EQ(sectionName(1), QStringLiteral("head"));
    EXPECT_EQ(sectionName(2), QStringLiteral("look"));
    EXPECT_EQ(sectionName(4), QStringLiteral("fields"));
    EXPECT_EQ(sectionName(8), QStringLiteral("body"));
    EXPECT_EQ(sectionName(16), QStringLiteral("aeset"));
    EXPECT_EQ(sectionName(32), QStringLiteral("field-atts"));
    EXPECT_EQ(sectionName(64), QStringLiteral("aeset-atts"));
}

TEST(SectionTest, OtherNumbersHaveNoElement)
{
    for (const qint32 bits : {0, 3, 127, 128, -1})
        EXPECT_TRUE(sectionName(bits).isEmpty()) << bits;
}

TEST(SectionTest, ElementsAreFoundWithAndWithoutPrefix)
{
    EXPECT_EQ(sectionByName(QStringLiteral("body")), 8);
    EXPECT_EQ(sectionByName(QStringLiteral("zeko:field-atts")), 32);
    EXPECT_EQ(sectionByName(QStringLiteral("Body")), 0);
    EXPECT_EQ(sectionByName(QStringLiteral("header")), 0);
    EXPECT_EQ(sectionByName(QString()), 0);
}

TEST(SectionTest, SetsAreTheSevenBits)
{
    EXPECT_TRUE(isSectionSet(1));
    EXPECT_TRUE(isSectionSet(5));
    EXPECT_TRUE(isSectionSet(127));
    EXPECT_FALSE(isSectionSet(0));
    EXPECT_FALSE(isSectionSet(128));
    EXPECT_FALSE(isSectionSet(129));
    EXPECT_FALSE(isSectionSet(-1));
    EXPECT_TRUE(isSingleSection(64));
    EXPECT_FALSE(isSingleSection(12));
    EXPECT_FALSE(isSingleSection(128));
}
