// The list item of a story: what is packed while a queue loads, and what that is expanded into.

#include <quire/tree/Item.h>

#include "story/StoryFixture.h"

using namespace Quire;

namespace {

/// The attributes as "name=value", with "/flags" behind those that have any.
QStringList shown(const Item &item)
{
    QStringList all;
    for (const Attribute &attribute : item.attributes) {
        const QString flags = attribute.flags ? QStringLiteral("/%1").arg(attribute.flags) : QString();
        all.append(attribute.name + QLatin1Char('=') + attribute.value + flags);
    }
    return all;
}

Item emptyStory()
{
    return Item(QString(), Item_Story);
}

QStringList headerOf(const QString &markup)
{
    Item item = emptyStory();
    StoryProbe::initHeader(item, markup);
    return shown(item);
}

QStringList headerOf(const char *markup)
{
    return headerOf(text(markup));
}

QStringList fieldsOf(const QString &markup)
{
    Item item = emptyStory();
    StoryProbe::initFields(item, markup);
    return shown(item);
}

QStringList fieldsOf(const char *markup)
{
    return fieldsOf(text(markup));
}

/// The flags of a field with these attributes.
int flagsOf(const char *attributes)
{
    Item item = emptyStory();
    StoryProbe::initFields(item, text("<fields><f id=slug ") + text(attributes) + text(">x</f></fields>"));
    return item.attributes.size() == 1 ? item.attributes[0].flags : -1;
}

/// The value of the field "slug" whose stored text is \a stored.
QString slugOf(const QString &stored)
{
    Item item = emptyStory();
    StoryProbe::initFields(item, text("<f id=slug>") + stored + text("</f>"));
    return item.attributes.size() == 1 ? item.attributes[0].value : QStringLiteral("%1 fields").arg(shown(item).size());
}

/// The total time of a story with these audio and tape times as shown; null when it has none.
QString totalOf(const char *audio, const char *tape)
{
    Item item = emptyStory();
    StoryProbe::initFields(item, text("<f id=audio-time>") + text(audio) + text("</f><f id=tape-time>") + text(tape) +
                                     text("</f>"));
    Attribute total;
    return item.FindAttr(text("total-time"), total) ? total.value : QString();
}

QStringList list(std::initializer_list<const char *> literals)
{
    QStringList all;
    for (const char *literal : literals)
        all.append(text(literal));
    return all;
}

const char *const wholeText = "<zeko:story><head><storyid>0005</storyid><meta rate=150></head>"
                              "<fields><f id=title>Floods</f></fields><body>x</body></zeko:story>";

class StoryItem : public StoryFixture
{
protected:
    void SetUp() override
    {
        StoryFixture::SetUp();
        data = add("5:1:2");
        data->name = text("Floods");
        data->markup[127] = text(wholeText);
    }

    FakeServer::StoryDataPtr data;
};

} // namespace

// ---- packing --------------------------------------------------------------------------------------------------------

TEST_F(StoryItem, HasTypeNameIdentifierHeaderAndFields)
{
    Item item(text("old"), Item_Queue);
    StoryProbe::initItem(item, fetch(0));
    EXPECT_EQ(item.type, Item_Story);
    EXPECT_EQ(item.name, text("Floods"));
    EXPECT_EQ(shown(item), list({"_storyid=5:1", "_header=<head><storyid>0005</storyid><meta rate=150></head>",
                                 "_fields=<fields><f id=title>Floods</f></fields>"}));
    EXPECT_FALSE(item.storyAttrsExpanded);
    EXPECT_EQ(item.sortKey, QString());
}

TEST_F(StoryItem, IsMadeOfThreeCallsEachUnderItsOwnLabel)
{
    Item item = emptyStory();
    const Orvex::IStory2Ptr story = fetch(0);
    const LockDebugging labels;
    StoryProbe::initItem(item, story);
    EXPECT_EQ(callsWithLabels(), list({"MAIL#5.get_StoryName() under static::InitStoryItem",
                                       "MAIL#5.get_StoryUnique() under static::GetStoryID",
                                       "MAIL#5.get_SectionXml(127) under static::GetSection"}));
}

TEST_F(StoryItem, DoesNotHoldTheLockFromCallToCall)
{
    Item item = emptyStory();
    const Orvex::IStory2Ptr story = fetch(0);
    const LockDebugging labels;
    StoryProbe::initItem(item, story);
    EXPECT_EQ(labels.log.texts(),
              list({"static::InitStoryItem unlocked", "static::GetStoryID unlocked", "static::GetSection unlocked"}));
}

TEST_F(StoryItem, WithoutHandleIsAStoryAndNothingElse)
{
    Item item(text("old"), Item_Queue);
    StoryProbe::initItem(item, nullptr);
    EXPECT_EQ(item.type, Item_Story);
    EXPECT_EQ(item.name, text("old"));
    EXPECT_TRUE(item.attributes.empty());
    EXPECT_EQ(server.calls(), QStringList());
}

TEST_F(StoryItem, KeepsTheAttributesThatWereThere)
{
    Item item = emptyStory();
    item.AddAttr(text("own"), text("kept"));
    StoryProbe::initItem(item, fetch(0));
    EXPECT_EQ(shown(item).first(), text("own=kept"));
    EXPECT_EQ(item.attributes.size(), 4u);
}

TEST_F(StoryItem, WithoutHeadIsShownAsLocked)
{
    data->markup[127] = text("<zeko:story><fields><f id=title>x</f></fields></zeko:story>");
    Item item = emptyStory();
    StoryProbe::initItem(item, fetch(0));
    EXPECT_EQ(shown(item), list({"_storyid=5:1", "_lock=", "_fields=<fields><f id=title>x</f></fields>"}));
}

TEST_F(StoryItem, WithoutFieldsHasNone)
{
    data->markup[127] = text("<zeko:story><head></head></zeko:story>");
    Item item = emptyStory();
    StoryProbe::initItem(item, fetch(0));
    EXPECT_EQ(shown(item), list({"_storyid=5:1", "_header=<head></head>"}));
}

TEST_F(StoryItem, WithoutTextIsShownAsLocked)
{
    data->markup.clear();
    Item item = emptyStory();
    StoryProbe::initItem(item, fetch(0));
    EXPECT_EQ(shown(item), list({"_storyid=5:1", "_lock="}));
}

TEST_F(StoryItem, TakesPrefixedSections)
{
    data->markup[127] = text("<zeko:head>a</zeko:head><zeko:fields>b</zeko:fields>");
    Item item = emptyStory();
    StoryProbe::initItem(item, fetch(0));
    EXPECT_EQ(shown(item),
              list({"_storyid=5:1", "_header=<zeko:head>a</zeko:head>", "_fields=<zeko:fields>b</zeko:fields>"}));
}

TEST_F(StoryItem, KeepsItsNameWhenTheServerDoesNotTellIt)
{
    const Orvex::IStory2Ptr story = fetch(0);
    server.fail(text("get_StoryName"), E_FAIL);
    server.failsWithAnswer = true;
    Item item(text("old"), Item_Story);
    StoryProbe::initItem(item, story);
    EXPECT_EQ(item.name, text("old"));
    EXPECT_EQ(item.attributes.size(), 3u);
}

TEST_F(StoryItem, KeepsItsNameWhenTheServerTellsNone)
{
    data->name = QString();
    Item item(text("old"), Item_Story);
    StoryProbe::initItem(item, fetch(0));
    EXPECT_EQ(item.name, text("old"));
}

TEST_F(StoryItem, TakesAnEmptyName)
{
    data->name = text("");
    Item item(text("old"), Item_Story);
    StoryProbe::initItem(item, fetch(0));
    EXPECT_EQ(item.name, QString());
}

TEST_F(StoryItem, TakesTheNameAsItIs)
{
    data->name = text(" Rain ");
    Item item(QString(), Item_Story);
    StoryProbe::initItem(item, fetch(0));
    EXPECT_EQ(item.name, text(" Rain "));
}

TEST_F(StoryItem, HasAnEmptyIdentifierWhenTheServerDoesNotTellIt)
{
    const Orvex::IStory2Ptr story = fetch(0);
    server.fail(text("get_StoryUnique"), E_FAIL);
    server.failsWithAnswer = true;
    Item item = emptyStory();
    StoryProbe::initItem(item, story);
    EXPECT_EQ(shown(item).first(), text("_storyid="));
    EXPECT_EQ(item.attributes.size(), 3u);
}

TEST_F(StoryItem, WhoseTextFailsIsShownAsLocked)
{
    const Orvex::IStory2Ptr story = fetch(0);
    server.fail(text("get_SectionXml"), E_FAIL);
    server.failsWithAnswer = true;
    Item item = emptyStory();
    StoryProbe::initItem(item, story);
    EXPECT_EQ(item.name, text("Floods"));
    EXPECT_EQ(shown(item), list({"_storyid=5:1", "_lock="}));
}

TEST_F(StoryItem, WhoseTextRaisesHasItsNameAndIdentifier)
{
    const Orvex::IStory2Ptr story = fetch(0);
    server.raise(text("get_SectionXml"), E_FAIL);
    Item item = emptyStory();
    EXPECT_THROW(StoryProbe::initItem(item, story), _com_error);
    EXPECT_EQ(item.name, text("Floods"));
    EXPECT_EQ(shown(item), list({"_storyid=5:1"}));
    EXPECT_EQ(QuireCOM::m_LockThreadID, 0u);
}

TEST_F(StoryItem, ReleasesTheHandle)
{
    {
        const Orvex::IStory2Ptr story = fetch(0);
        Item item = emptyStory();
        StoryProbe::initItem(item, story);
        server.fail(text("get_StoryName"), E_FAIL);
        StoryProbe::initItem(item, story);
        server.raise(text("get_StoryUnique"), E_FAIL);
        EXPECT_THROW(StoryProbe::initItem(item, story), _com_error);
        EXPECT_EQ(data->references, 1);
    }
    EXPECT_EQ(data->references, 0);
}

TEST_F(StoryItem, IsExpandedOnFirstRetrieval)
{
    Item item = emptyStory();
    StoryProbe::initItem(item, fetch(0));
    server.forgetCalls();
    std::vector<Attribute> wanted{{text("title"), QString(), 0}, {text("_headerid"), QString(), 0}};
    item.RetrieveAttrs(wanted);
    EXPECT_EQ(wanted[0].value, text("Floods"));
    EXPECT_EQ(wanted[1].value, text("0005"));
    EXPECT_EQ(shown(item), list({"_storyid=5:1", "_headerid=0005", "_rate=150", "title=Floods"}));
    EXPECT_EQ(server.calls(), QStringList());
}

TEST_F(StoryItem, Of50MegabytesIsPackedAndExpanded)
{
    const QString body(25 * 1024 * 1024, QLatin1Char('x'));
    data->markup[127] = text("<head><storyid>0005</storyid></head><fields><f id=title>") + body +
                        text("</f></fields><body>") + body + text("</body>");
    Item item = emptyStory();
    StoryProbe::initItem(item, fetch(0));
    std::vector<Attribute> wanted{{text("title"), QString(), 0}};
    item.RetrieveAttrs(wanted);
    EXPECT_TRUE(wanted[0].value == body);
}

// ---- the header -----------------------------------------------------------------------------------------------------

TEST(StoryItemHeader, HasEveryAttributeInItsOrder)
{
    EXPECT_EQ(headerOf("<head><meta hold=h float=f break=b locked=l rate=r words=7 mail=m wire=w>"
                       "<storyid>0005:1</storyid></head>"),
              list({"_headerid=0005:1", "_wire=w", "_mail=m", "_words=7", "_rate=r", "_lock=l", "_break=B", "_float=F",
                    "_hold=H"}));
}

TEST(StoryItemHeader, BreakFloatAndHoldAreLettersWhateverTheirValue)
{
    EXPECT_EQ(headerOf("<head><meta break=yes float=\"\" hold=0></head>"), list({"_break=B", "_hold=H"}));
}

TEST(StoryItemHeader, EachAttributeAloneGivesItsKey)
{
    const char *const table[][2] = {{"wire", "_wire=v"},   {"mail", "_mail=v"},   {"words", "_words=v"},
                                    {"rate", "_rate=v"},   {"locked", "_lock=v"}, {"break", "_break=B"},
                                    {"float", "_float=F"}, {"hold", "_hold=H"}};
    for (const auto &row : table) {
        EXPECT_EQ(headerOf(QStringLiteral("<meta %1=v>").arg(text(row[0]))), list({row[1]}));
        EXPECT_EQ(headerOf(QStringLiteral("<meta %1=\"\">").arg(text(row[0]))), QStringList());
        EXPECT_EQ(headerOf(QStringLiteral("<meta %1=v>").arg(text(row[0]).toUpper())), QStringList());
    }
}

TEST(StoryItemHeader, EmptyStoryIdGivesNothing)
{
    EXPECT_EQ(headerOf("<head><storyid></storyid><meta words=3></head>"), list({"_words=3"}));
    EXPECT_EQ(headerOf("<head><storyid/><meta words=3></head>"), list({"_words=3"}));
}

TEST(StoryItemHeader, WithoutMetaHasTheIdentifierOnly)
{
    EXPECT_EQ(headerOf("<head><storyid>0005</storyid></head>"), list({"_headerid=0005"}));
}

TEST(StoryItemHeader, OtherAttributesGiveNothing)
{
    EXPECT_EQ(headerOf("<head><meta select-time=4 version=2></head>"), QStringList());
}

TEST(StoryItemHeader, FlagsAre0)
{
    Item item = emptyStory();
    StoryProbe::initHeader(item, text("<head><storyid>1</storyid><meta words=3 hold=1></head>"));
    for (const Attribute &attribute : item.attributes)
        EXPECT_EQ(attribute.flags, 0);
}

TEST(StoryItemHeader, OfTextThatDoesNotParseGivesNothing)
{
    for (const char *markup : {"", "no markup", "<", ">", "<head", "</head>", "<!--", "<![CDATA[<meta words=3>]]>"})
        EXPECT_EQ(headerOf(markup), QStringList()) << markup;
}

TEST(StoryItemHeader, FollowsWhatIsThereAndAddsASecondLock)
{
    Item item = emptyStory();
    item.AddAttr(text("_lock"), QString());
    StoryProbe::initHeader(item, text("<meta locked=ann>"));
    EXPECT_EQ(shown(item), list({"_lock=", "_lock=ann"}));
}

TEST(StoryItemHeader, OfAMillionLevelsIsRead)
{
    const QString deep = text("<a>").repeated(1000000) + text("<meta words=3>");
    EXPECT_EQ(headerOf(deep), list({"_words=3"}));
}

// ---- the fields -----------------------------------------------------------------------------------------------------

TEST(StoryItemFields, GiveAnAttributeEachInTheirOrder)
{
    EXPECT_EQ(fieldsOf("<fields><f id=b>1</f><f id=a>2</f></fields>"), list({"b=1", "a=2"}));
}

TEST(StoryItemFields, AreFoundAtAnyDepth)
{
    EXPECT_EQ(fieldsOf("<x><f id=a>1</f><y><f id=b>2</f></y></x><f id=c>3</f>"), list({"a=1", "b=2", "c=3"}));
}

TEST(StoryItemFields, AreElementsCalledExactlyF)
{
    EXPECT_EQ(fieldsOf("<fields><ff id=a>1</ff><g id=b>2</g><f id=c>3</f></fields>"), list({"c=3"}));
}

TEST(StoryItemFields, MayRepeat)
{
    EXPECT_EQ(fieldsOf("<f id=a>1</f><f id=a>2</f>"), list({"a=1", "a=2"}));
}

TEST(StoryItemFields, WithoutIdentifierOrTextAreLeftOut)
{
    EXPECT_EQ(fieldsOf("<f>1</f><f id=\"\">2</f><f id=a></f><f id=b/><f name=c>3</f><f id=d>4</f>"), list({"d=4"}));
}

TEST(StoryItemFields, OfTextThatDoesNotParseAreNone)
{
    for (const char *markup : {"", "no markup", "<", "<f id=a", "</f>", "<!-- <f id=a>1</f> -->"})
        EXPECT_EQ(fieldsOf(markup), QStringList()) << markup;
}

TEST(StoryItemFields, ThatAreNotClosedHaveTheirText)
{
    EXPECT_EQ(fieldsOf("<fields><f id=a>1"), list({"a=1"}));
    EXPECT_EQ(fieldsOf("<fields><f id=a>1<f id=b>2</f>"), list({"a=1", "b=2"}));
}

TEST(StoryItemFields, ShowTheirValues)
{
    EXPECT_EQ(fieldsOf("<f id=runs-time>90</f><f id=title>  x y </f><f id=back-time>@3661</f>"),
              list({"runs-time=1:30", "title=x y", "back-time=1:01:01"}));
}

TEST(StoryItemFields, DecodeEntitiesInTheirText)
{
    EXPECT_EQ(slugOf(text("a &lt; b &amp; c")), text("a < b & c"));
}

TEST(StoryItemFields, LoseWhatIsNotPrintable)
{
    EXPECT_EQ(slugOf(text("Ab\tc")), text("Abc"));
    EXPECT_EQ(slugOf(text("a\r\nb\x01"
                          "c\x7f"
                          "d")),
              text("abcd"));
    EXPECT_EQ(slugOf(text("\ta\t")), text("a"));
    EXPECT_EQ(slugOf(text("a\x7f")), text("a"));
    EXPECT_EQ(slugOf(text("a") + QChar(0x85)), text("a"));
    EXPECT_EQ(slugOf(text("a") + QChar(0) + text("b")), text("ab"));
    EXPECT_EQ(slugOf(text("a") + QChar(0x85) + text("b") + QChar(0x200B) + text("c")), text("abc"));
}

TEST(StoryItemFields, KeepWhatIsPrintable)
{
    EXPECT_EQ(slugOf(text("Élection – 選挙")), text("Élection – 選挙"));
    EXPECT_EQ(slugOf(text("a b")), text("a b"));
    EXPECT_EQ(slugOf(text("a\xc2\xa0"
                          "b")),
              text("a\xc2\xa0"
                   "b"));
}

TEST(StoryItemFields, KeepCharactersBeyondTheBasicPlane)
{
    EXPECT_EQ(slugOf(text("a\xf0\x9f\x98\x80"
                          "b")),
              text("a\xf0\x9f\x98\x80"
                   "b"));
    EXPECT_EQ(slugOf(text("\xf0\x9d\x94\xb8")), text("\xf0\x9d\x94\xb8"));
}

TEST(StoryItemFields, LoseHalfCharactersAndUnprintableOnesBeyondTheBasicPlane)
{
    const QString tag = text("\xf3\xa0\x80\x81"); // U+E0001, a format character
    EXPECT_EQ(slugOf(text("a") + tag + text("b")), text("ab"));
    EXPECT_EQ(slugOf(text("a") + QChar(0xD83D) + text("b")), text("ab"));
    EXPECT_EQ(slugOf(text("a") + QChar(0xDE00) + text("b")), text("ab"));
    EXPECT_EQ(slugOf(text("ab") + QChar(0xD83D)), text("ab"));
    EXPECT_EQ(slugOf(QString(QChar(0xDE00)) + QChar(0xD83D) + text("ab")), text("ab"));
}

TEST(StoryItemFields, WithNothingPrintableAreThereAndEmpty)
{
    EXPECT_EQ(fieldsOf("<f id=slug>\t\t</f>"), list({"slug="}));
}

TEST(StoryItemFields, UrgencyGivesFlags)
{
    EXPECT_EQ(flagsOf("urgency=2"), 1);
    EXPECT_EQ(flagsOf("urgency=3"), 3);
    EXPECT_EQ(flagsOf("urgency=4"), 3);
    EXPECT_EQ(flagsOf("urgency=1"), 0);
    EXPECT_EQ(flagsOf("urgency=0"), 0);
    EXPECT_EQ(flagsOf("urgency=-3"), 0);
    EXPECT_EQ(flagsOf("urgency=high"), 0);
    EXPECT_EQ(flagsOf("urgency=\"\""), 0);
    EXPECT_EQ(flagsOf("urgency=99999999999"), 0);
}

TEST(StoryItemFields, UecAndAreadyGiveFlags)
{
    EXPECT_EQ(flagsOf("uec=1"), 4);
    EXPECT_EQ(flagsOf("uec=\"\""), 0);
    EXPECT_EQ(flagsOf("aready=1"), 8);
    EXPECT_EQ(flagsOf("aready=\"\""), 0);
    EXPECT_EQ(flagsOf("uec=0 aready=0"), 12);
    EXPECT_EQ(flagsOf("uec=1 aready=1 urgency=3"), 15);
    EXPECT_EQ(flagsOf("ready=1"), 0);
}

// ---- the total time -------------------------------------------------------------------------------------------------

TEST(StoryItemTotal, IsTheSumOfAudioAndTape)
{
    const char *const table[][3] = {
        {"90", "45", "2:15"},     {"1:30", "0:45", "2:15"},   {"90", "", "1:30"},  {"", "90", "1:30"},
        {"1:30", "", "1:30"},     {"0", "", "0:00"},          {"0", "0", "0:00"},  {"5", "4", "0:09"},
        {"3540", "185", "62:05"}, {"59:00", "3:05", "62:05"}, {"x", "y", "0:00"},  {"x", "", "0:00"},
        {"9", "1", "0:10"},       {"a:b", "1:1", "1:01"},     {":30", "", "0:30"}, {"2:", "", "2:00"},
        {"0:90", "", "1:30"},
    };
    for (const auto &row : table)
        EXPECT_EQ(totalOf(row[0], row[1]), text(row[2])) << row[0] << " and " << row[1];
}

TEST(StoryItemTotal, IgnoresWhatStandsBehindASecondColon)
{
    EXPECT_EQ(totalOf("1:02:05", ""), text("1:02"));
    EXPECT_EQ(totalOf("3725", ""), text("1:02")); // which is shown as 1:02:05
}

TEST(StoryItemTotal, LeavesNegativeTimesOut)
{
    EXPECT_EQ(totalOf("-90", "45"), text("0:45"));
    EXPECT_EQ(totalOf("45", "-90"), text("0:45"));
    EXPECT_EQ(totalOf("-90", "-90"), QString());
    EXPECT_EQ(totalOf("-90", ""), QString());
}

TEST(StoryItemTotal, OfNeitherIsNone)
{
    EXPECT_EQ(fieldsOf("<fields><f id=title>x</f></fields>"), list({"title=x"}));
    EXPECT_EQ(fieldsOf("<fields><f id=audio-time></f></fields>"), QStringList());
    EXPECT_EQ(fieldsOf(""), QStringList());
}

TEST(StoryItemTotal, FollowsAllFieldsWithoutFlags)
{
    EXPECT_EQ(fieldsOf("<f id=audio-time uec=1>90</f><f id=title>x</f>"),
              list({"audio-time=1:30/4", "title=x", "total-time=1:30"}));
}

TEST(StoryItemTotal, IsNotComputedWhenStated)
{
    EXPECT_EQ(fieldsOf("<f id=total-time>10</f><f id=audio-time>90</f>"), list({"total-time=0:10", "audio-time=1:30"}));
}

TEST(StoryItemTotal, IsComputedWhenStatedEmpty)
{
    EXPECT_EQ(fieldsOf("<f id=total-time></f><f id=audio-time>90</f>"), list({"audio-time=1:30", "total-time=1:30"}));
    EXPECT_EQ(fieldsOf("<f id=total-time>\t</f><f id=audio-time>90</f>"),
              list({"total-time=", "audio-time=1:30", "total-time=1:30"}));
}

TEST(StoryItemTotal, LooksForTheNamesInTheirLetterCase)
{
    EXPECT_EQ(fieldsOf("<f id=AUDIO-TIME>90</f><f id=Tape-Time>90</f>"), list({"AUDIO-TIME=1:30", "Tape-Time=1:30"}));
    EXPECT_EQ(fieldsOf("<f id=Total-Time>10</f><f id=audio-time>90</f>"),
              list({"Total-Time=0:10", "audio-time=1:30", "total-time=1:30"}));
}

TEST(StoryItemTotal, TakesTheLastOfSeveral)
{
    EXPECT_EQ(fieldsOf("<f id=audio-time>90</f><f id=audio-time>60</f>").last(), text("total-time=1:00"));
}
