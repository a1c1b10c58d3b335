#include <gtest/gtest.h>
#include <limits>

#include <quire/newsroom/model/StoryId.h>

#include "Printers.h"

using namespace Newsroom;

TEST(StoryIdTest, UniqueIsDecimal)
{
    EXPECT_EQ((StoryId{12, 345, 6789}.unique()), QStringLiteral("12:345:6789"));
    EXPECT_EQ((StoryId{-1, 0, 2}.unique()), QStringLiteral("-1:0:2"));
}

TEST(StoryIdTest, HeaderTextIsLowerCaseHexadecimalWithTheRevision)
{
    EXPECT_EQ((StoryId{255, 16, 0}.headerText(10)), QStringLiteral("ff:10:0:a"));
    EXPECT_EQ((StoryId{-1, 1, 2}.headerText(1)), QStringLiteral("ffffffff:1:2:1"));
}

TEST(StoryIdTest, BothTextsReadBack)
{
    const qint32 least = std::numeric_limits<qint32>::min();
    const qint32 most = std::numeric_limits<qint32>::max();
    for (const StoryId &id : {StoryId{0, 0, 0}, StoryId{least, most, -1}, StoryId{1, 2, 3}}) {
        StoryId read;
        EXPECT_TRUE(StoryId::fromUnique(id.unique(), &read));
        EXPECT_TRUE(read == id);
        qint32 revision = 0;
        EXPECT_TRUE(StoryId::fromHeaderText(id.headerText(77), &read, &revision));
        EXPECT_TRUE(read == id);
        EXPECT_EQ(revision, 77);
    }
}

TEST(StoryIdTest, HeaderTextWithoutRevisionReadsAsRevision0)
{
    StoryId id;
    qint32 revision = 5;
    EXPECT_TRUE(StoryId::fromHeaderText(QStringLiteral("a:b:c"), &id, &revision));
    EXPECT_TRUE((id == StoryId{10, 11, 12}));
    EXPECT_EQ(revision, 0);
    EXPECT_TRUE(StoryId::fromHeaderText(QStringLiteral("a:b:c"), &id, nullptr));
}

TEST(StoryIdTest, MalformedTextsWriteNothing)
{
    StoryId id{7, 8, 9};
    for (const char *text : {"", "1", "1:2", "1:2:3:4:5", "x:2:3", "1:2:3:z", "1::3", "100000000:1:1"}) {
        EXPECT_FALSE(StoryId::fromHeaderText(QLatin1String(text), &id, nullptr)) << text;
        EXPECT_TRUE((id == StoryId{7, 8, 9}));
    }
    for (const char *text : {"", "1:2", "1:2:3:4", "a:2:3", "2147483648:1:1"})
        EXPECT_FALSE(StoryId::fromUnique(QLatin1String(text), &id)) << text;
    EXPECT_TRUE((id == StoryId{7, 8, 9}));
}
