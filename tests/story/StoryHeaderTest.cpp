// What a story's header says.

#include "story/StoryFixture.h"

using namespace Quire;

namespace {

/// What GetInitialHeaderInfo leaves of three values that were there before.
struct Header
{
    explicit Header(const char *markup) { StoryProbe::initialHeaderInfo(text(markup), &storyId, &readRate, &keyLock); }

    QString storyId = text("old id");
    int readRate = 77;
    QString keyLock = text("old lock");
};

int rateOf(const char *rate)
{
    return Header((QByteArray("<head><meta rate=\"") + rate + "\"></head>").constData()).readRate;
}

class StoryHeader : public StoryFixture
{};

} // namespace

// ---- its text -------------------------------------------------------------------------------------------------------

TEST(InitialHeader, GivesStoryIdRateAndKeyLock)
{
    const Header header("<head><storyid>0005:0001</storyid><meta rate=150 words=3 locked=ann></head>");
    EXPECT_EQ(header.storyId, text("0005:0001"));
    EXPECT_EQ(header.readRate, 15);
    EXPECT_EQ(header.keyLock, text("ann"));
}

TEST(InitialHeader, WithoutStoryIdLeavesItAlone)
{
    EXPECT_EQ(Header("<head><meta rate=150></head>").storyId, text("old id"));
}

TEST(InitialHeader, WithAnEmptyStoryIdEmptiesIt)
{
    EXPECT_EQ(Header("<head><storyid></storyid></head>").storyId, QString());
}

TEST(InitialHeader, WithoutMetaLeavesRateAndKeyLockAlone)
{
    const Header header("<head><storyid>5</storyid></head>");
    EXPECT_EQ(header.storyId, text("5"));
    EXPECT_EQ(header.readRate, 77);
    EXPECT_EQ(header.keyLock, text("old lock"));
}

TEST(InitialHeader, WithoutRateLeavesItAlone)
{
    EXPECT_EQ(Header("<head><meta words=3></head>").readRate, 77);
    EXPECT_EQ(Header("<head><meta rate=\"\"></head>").readRate, 77);
}

TEST(InitialHeader, WithoutLockedEmptiesTheKeyLock)
{
    EXPECT_EQ(Header("<head><meta words=3></head>").keyLock, QString());
}

TEST(InitialHeader, RateIsATenthRoundedTowardsZero)
{
    EXPECT_EQ(rateOf("175"), 17);
    EXPECT_EQ(rateOf("179"), 17);
    EXPECT_EQ(rateOf("9"), 0);
    EXPECT_EQ(rateOf("-15"), -1);
    EXPECT_EQ(rateOf("-9"), 0);
    EXPECT_EQ(rateOf("0"), 0);
    EXPECT_EQ(rateOf("2147483647"), 214748364);
    EXPECT_EQ(rateOf("-2147483648"), -214748364);
}

TEST(InitialHeader, RateThatIsNoNumberIs0)
{
    for (const char *rate : {"abc", "17.5", "175x", "0x20", "99999999999", "2147483648", "-"})
        EXPECT_EQ(rateOf(rate), 0) << rate;
}

TEST(InitialHeader, TakesTheFirstOfSeveralElements)
{
    const Header header("<head><storyid>1</storyid><storyid>2</storyid><meta rate=10><meta rate=20></head>");
    EXPECT_EQ(header.storyId, text("1"));
    EXPECT_EQ(header.readRate, 1);
}

TEST(InitialHeader, FindsTheElementsAtAnyDepth)
{
    const Header header("<zeko:story><x><y><meta rate=30 locked=bob><storyid>9</storyid></y></x></zeko:story>");
    EXPECT_EQ(header.storyId, text("9"));
    EXPECT_EQ(header.readRate, 3);
    EXPECT_EQ(header.keyLock, text("bob"));
}

TEST(InitialHeader, OfNoMarkupGivesNothing)
{
    for (const char *markup : {"", "plain", "<", "<<>>", "</head>", "<!-- <meta rate=1> -->", "<head"}) {
        const Header header(markup);
        EXPECT_EQ(header.storyId, text("old id")) << markup;
        EXPECT_EQ(header.readRate, 77) << markup;
        EXPECT_EQ(header.keyLock, text("old lock")) << markup;
    }
}

TEST(InitialHeader, TakesNullPointers)
{
    const QString markup = text("<head><storyid>1</storyid><meta rate=150 locked=ann></head>");
    StoryProbe::initialHeaderInfo(markup, nullptr, nullptr, nullptr);
    QString storyId;
    StoryProbe::initialHeaderInfo(markup, &storyId, nullptr, nullptr);
    EXPECT_EQ(storyId, text("1"));
    int rate = 0;
    StoryProbe::initialHeaderInfo(markup, nullptr, &rate, nullptr);
    EXPECT_EQ(rate, 15);
    QString keyLock;
    StoryProbe::initialHeaderInfo(markup, nullptr, nullptr, &keyLock);
    EXPECT_EQ(keyLock, text("ann"));
}

// ---- on the server --------------------------------------------------------------------------------------------------

TEST_F(StoryHeader, InfoReadsSection1AsMarkup)
{
    add("5:1:2", "<storyid>0005</storyid><meta rate=150 locked=ann>");
    const Orvex::IStory2Ptr story = fetch(0);
    QString storyId;
    int rate = 0;
    QString keyLock;
    const LockDebugging labels;
    Story::GetHeaderInfo(story, &storyId, &rate, &keyLock);
    EXPECT_EQ(storyId, text("0005"));
    EXPECT_EQ(rate, 15);
    EXPECT_EQ(keyLock, text("ann"));
    EXPECT_EQ(callsWithLabels(), QStringList({text("MAIL#5.get_SectionXml(1) under static::GetSection")}));
}

TEST_F(StoryHeader, InfoOfAHeaderThatSaysNothingIsTheDefault)
{
    add("5:1:2", "");
    QString storyId = text("old");
    int rate = 7;
    QString keyLock = text("old");
    Story::GetHeaderInfo(fetch(0), &storyId, &rate, &keyLock);
    EXPECT_EQ(storyId, QString());
    EXPECT_EQ(rate, 18);
    EXPECT_EQ(keyLock, QString());
}

TEST_F(StoryHeader, InfoOfAnEmptyHeaderHasTheKeyLockLock)
{
    const auto story = add("5:1:2");
    for (const QString &head : {QString(), text("")}) {
        story->markup[1] = head;
        QString storyId = text("old");
        int rate = 7;
        QString keyLock = text("old");
        Story::GetHeaderInfo(fetch(0), &storyId, &rate, &keyLock);
        EXPECT_EQ(storyId, QString());
        EXPECT_EQ(rate, 18);
        EXPECT_EQ(keyLock, text("lock"));
    }
}

TEST_F(StoryHeader, InfoOfAHeaderThatFailsHasTheKeyLockLock)
{
    add("5:1:2", "<meta rate=150>");
    const Orvex::IStory2Ptr story = fetch(0);
    server.fail(text("get_SectionXml"), E_FAIL);
    server.failsWithAnswer = true;
    int rate = 7;
    QString keyLock;
    Story::GetHeaderInfo(story, nullptr, &rate, &keyLock);
    EXPECT_EQ(rate, 18);
    EXPECT_EQ(keyLock, text("lock"));
}

TEST_F(StoryHeader, InfoTakesNullPointers)
{
    const auto story = add("5:1:2", "<storyid>1</storyid><meta rate=150 locked=ann>");
    EXPECT_NO_THROW(Story::GetHeaderInfo(fetch(0), nullptr, nullptr, nullptr));
    story->markup.clear();
    EXPECT_NO_THROW(Story::GetHeaderInfo(fetch(0), nullptr, nullptr, nullptr));
}

TEST_F(StoryHeader, InfoRaisesWhatTheServerRaises)
{
    add("5:1:2", "");
    const Orvex::IStory2Ptr story = fetch(0);
    server.raise(text("get_SectionXml"), E_FAIL);
    EXPECT_THROW(Story::GetHeaderInfo(story, nullptr, nullptr, nullptr), _com_error);
    EXPECT_EQ(QuireCOM::m_LockThreadID, 0u);
}

TEST_F(StoryHeader, MetaValueReadsAnAttribute)
{
    add("5:1:2", "<meta rate=150 hold=H>");
    const Orvex::IStory2Ptr story = fetch(0);
    const LockDebugging labels;
    QString value;
    EXPECT_TRUE(Story::GetHeaderMetaValue(story, text("hold"), value));
    EXPECT_EQ(value, text("H"));
    EXPECT_EQ(callsWithLabels(), QStringList({text("MAIL#5.get_SectionXml(1) under static::GetSection")}));
}

TEST_F(StoryHeader, MetaValueThatIsMissingIsEmpty)
{
    add("5:1:2", "<meta rate=150>");
    QString value = text("old");
    EXPECT_TRUE(Story::GetHeaderMetaValue(fetch(0), text("hold"), value));
    EXPECT_EQ(value, QString());
}

TEST_F(StoryHeader, MetaValueWithoutMetaIsTrueAndLeftAlone)
{
    add("5:1:2", "<storyid>1</storyid>");
    QString value = text("old");
    EXPECT_TRUE(Story::GetHeaderMetaValue(fetch(0), text("hold"), value));
    EXPECT_EQ(value, text("old"));
}

TEST_F(StoryHeader, MetaValueWithoutHeaderIsFalseAndLeftAlone)
{
    add("5:1:2");
    QString value = text("old");
    EXPECT_FALSE(Story::GetHeaderMetaValue(fetch(0), text("hold"), value));
    EXPECT_EQ(value, text("old"));
}

TEST_F(StoryHeader, StoryIDOfTheHeaderIsItsText)
{
    const auto story = add("5:1:2", "<storyid>0005:0001</storyid>");
    EXPECT_EQ(StoryProbe::headerStoryID(fetch(0)), text("0005:0001"));
    story->markup[1] = text("<head></head>");
    EXPECT_EQ(StoryProbe::headerStoryID(fetch(0)), QString());
    story->markup.clear();
    EXPECT_EQ(StoryProbe::headerStoryID(fetch(0)), QString());
}

TEST_F(StoryHeader, IdentifierIsReadUnderItsLabel)
{
    add("5:1:2");
    const Orvex::IStory2Ptr story = fetch(0);
    const LockDebugging labels;
    StoryID id{9, 9, 9};
    Story::GetStoryID(story, id);
    EXPECT_EQ(StoryID2String(id, true), text("5:1:2"));
    EXPECT_EQ(callsWithLabels(), QStringList({text("MAIL#5.get_StoryUnique() under static::GetStoryID")}));
}

TEST_F(StoryHeader, IdentifierIsReadAsDecimalNumbers)
{
    add("010:-2:ff");
    StoryID id{9, 9, 9};
    Story::GetStoryID(fetch(0), id);
    EXPECT_EQ(StoryID2String(id, true), text("10:-2:0"));
}

TEST_F(StoryHeader, IdentifierThatFailsIsLeftAlone)
{
    add("5:1:2");
    const Orvex::IStory2Ptr story = fetch(0);
    server.fail(text("get_StoryUnique"), E_FAIL);
    server.failsWithAnswer = true;
    StoryID id{9, 8, 7};
    Story::GetStoryID(story, id);
    EXPECT_EQ(StoryID2String(id, true), text("9:8:7"));
}

TEST_F(StoryHeader, IdentifierWithoutTextIsZeros)
{
    add("")->unique = QString();
    StoryID id{9, 8, 7};
    Story::GetStoryID(fetch(0), id);
    EXPECT_EQ(StoryID2String(id, true), text("0:0:0"));
}
