// An entry of a list and its attributes.

#include <type_traits>

#include <gtest/gtest.h>

#include <quire/tree/Item.h>

#include "support/QtPrinting.h"
#include "support/Text.h"

using namespace Quire;

namespace {

Item withAttributes()
{
    Item item(text("NEWS"), Item_Directory);
    item.AddAttr(text("a"), text("1"), 5);
    item.AddAttr(text("b"), text("2"));
    item.AddAttr(text("a"), text("3"));
    return item;
}

QStringList shown(const std::vector<Attribute> &attributes)
{
    QStringList all;
    for (const Attribute &attribute : attributes)
        all.append(QStringLiteral("%1=%2/%3").arg(attribute.name, attribute.value).arg(attribute.flags));
    return all;
}

std::vector<Attribute> wanted(const char *name)
{
    return {{text(name), text("default"), 7}};
}

QStringList retrieved(Item &item, const char *name)
{
    std::vector<Attribute> attributes = wanted(name);
    item.RetrieveAttrs(attributes);
    return shown(attributes);
}

const char *const header = "<head><storyid>77</storyid></head>";
const char *const fields = "<fields><f id=title>Floods</f></fields>";

} // namespace

// ---- making and copying ---------------------------------------------------------------------------------------------

TEST(Item, StartsWithNameAndTypeOnly)
{
    const Item item(text("NEWS"), Item_Queue);
    EXPECT_EQ(item.name, text("NEWS"));
    EXPECT_EQ(item.type, Item_Queue);
    EXPECT_EQ(item.sortKey, QString());
    EXPECT_TRUE(item.attributes.empty());
    EXPECT_FALSE(item.storyAttrsExpanded);
}

TEST(Item, TypesHaveTheirNumbers)
{
    EXPECT_EQ(static_cast<int>(Item_Directory), 1);
    EXPECT_EQ(static_cast<int>(Item_Queue), 2);
    EXPECT_EQ(static_cast<int>(Item_Story), 3);
    EXPECT_EQ(static_cast<int>(Item_SearchHit), 4);
    EXPECT_EQ(sizeof(ItemType), 4u);
}

TEST(Item, CopiesHaveEveryFieldAndAreIndependent)
{
    Item item = withAttributes();
    item.type = Item_Story;
    item.sortKey = text("key");
    item.storyAttrsExpanded = true;
    const Item constructed(item);
    Item assigned(text("other"), Item_Queue);
    assigned.AddAttr(text("x"), text("y"));
    assigned = item;
    item.AddAttr(text("late"), QString());
    item.name = text("changed");
    for (const Item *copy : {&constructed, static_cast<const Item *>(&assigned)}) {
        EXPECT_EQ(copy->name, text("NEWS"));
        EXPECT_EQ(copy->type, Item_Story);
        EXPECT_EQ(copy->sortKey, text("key"));
        EXPECT_EQ(shown(copy->attributes), QStringList({text("a=1/5"), text("b=2/0"), text("a=3/0")}));
        EXPECT_TRUE(copy->storyAttrsExpanded);
    }
}

TEST(Item, AssignedToItselfStays)
{
    Item item = withAttributes();
    const Item &same = item;
    item = same;
    EXPECT_EQ(item.attributes.size(), 3u);
}

TEST(Item, AttributesStartWithFlags0)
{
    const Attribute attribute;
    EXPECT_EQ(attribute.name, QString());
    EXPECT_EQ(attribute.value, QString());
    EXPECT_EQ(attribute.flags, 0);
    static_assert(sizeof(attribute.flags) == 4 && std::is_signed<decltype(attribute.flags)>::value, "32 bits, signed");
}

// ---- attributes -----------------------------------------------------------------------------------------------------

TEST(Item, AddsAttributesAtTheEndWithoutLookingAtTheNames)
{
    Item item(QString(), Item_Directory);
    item.AddAttr({text("a"), text("1"), -3});
    item.AddAttr(text("b"), text("2"), 4);
    item.AddAttr(text("a"), text("3"));
    EXPECT_EQ(shown(item.attributes), QStringList({text("a=1/-3"), text("b=2/4"), text("a=3/0")}));
}

TEST(Item, AddsAnAttributeOfItsOwnAgain)
{
    Item item = withAttributes();
    for (int i = 0; i < 100; ++i)
        item.AddAttr(item.attributes.front());
    EXPECT_EQ(item.attributes.size(), 103u);
    EXPECT_EQ(item.attributes.back().value, text("1"));
}

TEST(Item, FindsTheFirstAttributeOfThatName)
{
    const Item item = withAttributes();
    EXPECT_EQ(item.FindAttr(text("a")), 0);
    EXPECT_EQ(item.FindAttr(text("b")), 1);
}

TEST(Item, FindsNoAttributeOfAnotherName)
{
    const Item item = withAttributes();
    for (const char *name : {"A", "ab", "", " a", "c"})
        EXPECT_EQ(item.FindAttr(text(name)), -1) << name;
}

TEST(Item, FindsNoAttributeWhenThereAreNone)
{
    EXPECT_EQ(Item(QString(), Item_Queue).FindAttr(text("a")), -1);
    EXPECT_EQ(Item(QString(), Item_Queue).FindAttr(QString()), -1);
}

TEST(Item, FindCopiesTheFirstAttribute)
{
    Attribute attribute{text("x"), text("y"), 9};
    EXPECT_TRUE(withAttributes().FindAttr(text("a"), attribute));
    EXPECT_EQ(shown({attribute}), QStringList({text("a=1/5")}));
}

TEST(Item, FindLeavesTheOutputAloneWhenThereIsNone)
{
    Attribute attribute{text("x"), text("y"), 9};
    EXPECT_FALSE(withAttributes().FindAttr(text("c"), attribute));
    EXPECT_EQ(shown({attribute}), QStringList({text("x=y/9")}));
}

TEST(Item, GetsAttributesByIndex)
{
    Attribute attribute;
    EXPECT_TRUE(withAttributes().GetAttr(2, attribute));
    EXPECT_EQ(shown({attribute}), QStringList({text("a=3/0")}));
}

TEST(Item, GetsNoAttributeOutsideOfTheList)
{
    const Item item = withAttributes();
    for (const int index : {-1, 3, 4, -2147483647 - 1, 2147483647}) {
        Attribute attribute{text("x"), text("y"), 9};
        EXPECT_FALSE(item.GetAttr(index, attribute)) << index;
        EXPECT_EQ(shown({attribute}), QStringList({text("x=y/9")}));
    }
    Attribute attribute;
    EXPECT_FALSE(Item(QString(), Item_Queue).GetAttr(0, attribute));
}

TEST(Item, RemovesAnAttributeAndMovesTheLaterOnesDown)
{
    Item item = withAttributes();
    item.RemoveAttr(0);
    EXPECT_EQ(shown(item.attributes), QStringList({text("b=2/0"), text("a=3/0")}));
    item.RemoveAttr(1);
    EXPECT_EQ(shown(item.attributes), QStringList({text("b=2/0")}));
    item.RemoveAttr(0);
    EXPECT_TRUE(item.attributes.empty());
}

TEST(Item, RemovesNothingAtANegativeIndex)
{
    Item item = withAttributes();
    item.RemoveAttr(-1);
    EXPECT_EQ(item.attributes.size(), 3u);
}

TEST(Item, RemovesNothingWhenThereIsNothing)
{
    Item item(QString(), Item_Queue);
    for (const int index : {-1, 0, 1, 1000})
        item.RemoveAttr(index);
    EXPECT_TRUE(item.attributes.empty());
}

// ---- comparing ------------------------------------------------------------------------------------------------------

TEST(Item, IsEqualWhenTheSortKeyIs)
{
    Item a(text("a"), Item_Directory);
    Item b(text("b"), Item_Queue);
    b.AddAttr(text("x"), text("y"));
    a.sortKey = text("key");
    EXPECT_FALSE(a == b);
    b.sortKey = text("key");
    EXPECT_TRUE(a == b);
    b.sortKey = text("Key");
    EXPECT_FALSE(a == b);
}

TEST(Item, WithoutSortKeyIsEqualAndNeitherIsLess)
{
    const Item a(text("a"), Item_Directory);
    const Item b(text("b"), Item_Queue);
    EXPECT_TRUE(a == b);
    EXPECT_FALSE(a < b);
    EXPECT_FALSE(b < a);
}

TEST(Item, IsLessInPlainOrderOfCodeUnits)
{
    // each sorts before the next
    const QString keys[] = {QString(),
                            text("A"),
                            text("B"),
                            text("a"),
                            text("aA"),
                            text("aa"),
                            text("b"),
                            text("\xc3\xa9"),
                            text("\xf0\x9f\x98\x80"),
                            QString(QChar(0xFF5E))};
    for (const QString *low = std::begin(keys); low != std::end(keys); ++low) {
        for (const QString *high = std::begin(keys); high != std::end(keys); ++high) {
            Item a(QString(), Item_SearchHit);
            Item b(QString(), Item_SearchHit);
            a.sortKey = *low;
            b.sortKey = *high;
            EXPECT_EQ(a < b, low < high) << low->toStdString() << ", " << high->toStdString();
            EXPECT_EQ(a == b, low == high);
        }
    }
}

// ---- retrieving -----------------------------------------------------------------------------------------------------

TEST(Item, RetrievesValuesAndLeavesNamesFlagsAndDefaults)
{
    Item item = withAttributes();
    std::vector<Attribute> attributes{{text("b"), text("x"), 7},
                                      {text("c"), text("default"), 8},
                                      {text("a"), QString(), 9},
                                      {text("b"), QString(), 1}};
    item.RetrieveAttrs(attributes);
    EXPECT_EQ(shown(attributes), QStringList({text("b=2/7"), text("c=default/8"), text("a=1/9"), text("b=2/1")}));
}

TEST(Item, RetrievesEmptyValuesOverDefaults)
{
    Item item(QString(), Item_Queue);
    item.AddAttr(text("_lock"), QString());
    EXPECT_EQ(retrieved(item, "_lock"), QStringList({text("_lock=/7")}));
}

TEST(Item, RetrievesNothingForNothing)
{
    Item item = withAttributes();
    std::vector<Attribute> none;
    item.RetrieveAttrs(none);
    EXPECT_TRUE(none.empty());
}

TEST(Item, ExpandsAStoryHeaderBeforeFieldsBehindWhatIsThere)
{
    Item item(text("story"), Item_Story);
    item.AddAttr(text("_fields"), text(fields));
    item.AddAttr(text("own"), text("1"));
    item.AddAttr(text("_header"), text(header));
    item.AddAttr(text("own"), text("2"));
    EXPECT_EQ(retrieved(item, "title"), QStringList({text("title=Floods/7")}));
    EXPECT_EQ(shown(item.attributes),
              QStringList({text("own=1/0"), text("own=2/0"), text("_headerid=77/0"), text("title=Floods/0")}));
    EXPECT_TRUE(item.storyAttrsExpanded);
}

TEST(Item, ExpandsForAnEmptyRequestToo)
{
    Item item(text("story"), Item_Story);
    item.AddAttr(text("_header"), text(header));
    std::vector<Attribute> none;
    item.RetrieveAttrs(none);
    EXPECT_EQ(shown(item.attributes), QStringList({text("_headerid=77/0")}));
}

TEST(Item, ExpandsOnlyOnceWhateverIsAddedLater)
{
    Item item(text("story"), Item_Story);
    item.AddAttr(text("_header"), text(header));
    retrieved(item, "x");
    item.AddAttr(text("_header"), text("<head><storyid>88</storyid></head>"));
    item.AddAttr(text("_fields"), text(fields));
    EXPECT_EQ(retrieved(item, "title"), QStringList({text("title=default/7")}));
    EXPECT_EQ(retrieved(item, "_fields"), QStringList({QStringLiteral("_fields=%1/7").arg(text(fields))}));
    EXPECT_EQ(item.attributes.size(), 3u);
}

TEST(Item, ExpandsNothingTwiceWhenThereWasNothing)
{
    Item item(text("story"), Item_Story);
    retrieved(item, "x");
    EXPECT_TRUE(item.storyAttrsExpanded);
    item.AddAttr(text("_header"), text(header));
    retrieved(item, "x");
    EXPECT_EQ(item.attributes.size(), 1u);
}

TEST(Item, ExpandsTheFirstOfTwoPackedAttributes)
{
    Item item(text("story"), Item_Story);
    item.AddAttr(text("_header"), text(header));
    item.AddAttr(text("_header"), text("<head><storyid>88</storyid></head>"));
    retrieved(item, "x");
    EXPECT_EQ(shown(item.attributes),
              QStringList({text("_header=<head><storyid>88</storyid></head>/0"), text("_headerid=77/0")}));
}

TEST(Item, ExpandsEitherAlone)
{
    Item onlyFields(text("story"), Item_Story);
    onlyFields.AddAttr(text("_fields"), text(fields));
    retrieved(onlyFields, "x");
    EXPECT_EQ(shown(onlyFields.attributes), QStringList({text("title=Floods/0")}));
}

TEST(Item, RemovesPackedAttributesThatHoldNothing)
{
    Item item(text("story"), Item_Story);
    item.AddAttr(text("_header"), text("no markup"));
    item.AddAttr(text("_fields"), QString());
    retrieved(item, "x");
    EXPECT_TRUE(item.attributes.empty());
}

TEST(Item, ExpandsNothingButStories)
{
    for (const ItemType type : {Item_Directory, Item_Queue, Item_SearchHit}) {
        Item item(text("x"), type);
        item.AddAttr(text("_header"), text(header));
        item.AddAttr(text("_fields"), text(fields));
        EXPECT_EQ(retrieved(item, "title"), QStringList({text("title=default/7")}));
        EXPECT_EQ(item.attributes.size(), 2u);
        EXPECT_FALSE(item.storyAttrsExpanded);
    }
}

TEST(Item, ThatBecomesAStoryIsExpandedThen)
{
    Item item(text("x"), Item_Queue);
    item.AddAttr(text("_header"), text(header));
    retrieved(item, "x");
    item.type = Item_Story;
    retrieved(item, "x");
    EXPECT_EQ(shown(item.attributes), QStringList({text("_headerid=77/0")}));
}

TEST(Item, FillsItsOwnAttributes)
{
    Item item(text("story"), Item_Story);
    item.AddAttr(text("_header"), text(header));
    item.AddAttr(text("a"), text("1"));
    item.AddAttr(text("a"), text("2"));
    item.RetrieveAttrs(item.attributes);
    EXPECT_EQ(shown(item.attributes), QStringList({text("a=1/0"), text("a=1/0"), text("_headerid=77/0")}));
}

TEST(Item, CopyOfAnExpandedStoryIsExpanded)
{
    Item item(text("story"), Item_Story);
    item.AddAttr(text("_header"), text(header));
    retrieved(item, "x");
    Item copy(item);
    copy.AddAttr(text("_fields"), text(fields));
    EXPECT_EQ(retrieved(copy, "title"), QStringList({text("title=default/7")}));
}

// ---- keys -----------------------------------------------------------------------------------------------------------

TEST(AttributeKeys, HaveTheirTexts)
{
    EXPECT_STREQ(Attr_Queue, "_queue");
    EXPECT_STREQ(Attr_Fields, "_fields");
    EXPECT_STREQ(Attr_Header, "_header");
    EXPECT_STREQ(Attr_Storyid, "_storyid");
    EXPECT_STREQ(Attr_Headerid, "_headerid");
    EXPECT_STREQ(Attr_Wire, "_wire");
    EXPECT_STREQ(Attr_Mail, "_mail");
    EXPECT_STREQ(Attr_Words, "_words");
    EXPECT_STREQ(Attr_Rate, "_rate");
    EXPECT_STREQ(Attr_Break, "_break");
    EXPECT_STREQ(Attr_Float, "_float");
    EXPECT_STREQ(Attr_Hold, "_hold");
    EXPECT_STREQ(Attr_Lock, "_lock");
    EXPECT_STREQ(Attr_Indexed, "_indexed");
    EXPECT_STREQ(Attr_NumItems, "_count");
    EXPECT_STREQ(Attr_ConfirmEdit, "_confirm_edit");
    EXPECT_STREQ(Attr_Inverted, "_inverted");
    EXPECT_STREQ(Attr_Sorted, "_sorted");
}
