#include <gtest/gtest.h>

#include "markup/Support.h"

using namespace MarkupTest;
using XML::NamedTag;
using XML::Tag;

namespace {

/// Name and attributes that SetParams reads, as outline() shows them.
QString afterSetParams(const char *params)
{
    Tag root;
    auto *tag = new NamedTag(QString());
    root.AddTag(tag, false);
    tag->SetParams(text(params));
    return outline(root);
}

} // namespace

TEST(NamedTag, HasItsDefaults)
{
    NamedTag tag(text("zeko:meta"));
    EXPECT_TRUE(tag.m_WriteEndTag);
    EXPECT_FALSE(tag.m_OmitIfEmpty);
    EXPECT_FALSE(tag.m_BareValues);
    EXPECT_FALSE(tag.m_ContentOnly);
    EXPECT_EQ(tag.m_Name, text("zeko:meta"));
    EXPECT_EQ(tag.AttributeCount(), 0);
    EXPECT_EQ(tag.GetName(), text("zeko:meta"));
}

TEST(NamedTag, TagMatchComparesTheNameExactly)
{
    NamedTag tag(text("p"));
    EXPECT_TRUE(tag.TagMatch(text("p"), QString(), QString()));
    EXPECT_FALSE(tag.TagMatch(text("P"), QString(), QString()));
    EXPECT_FALSE(tag.TagMatch(QString(), QString(), QString()));
}

TEST(NamedTag, TagMatchOfAnotherNameAddsNoAttribute)
{
    NamedTag tag(text("p"));
    EXPECT_FALSE(tag.TagMatch(text("q"), text("x"), text("")));
    EXPECT_FALSE(tag.HasAttribute(text("x")));
}

TEST(NamedTag, TagMatchTakesAnEmptyAttributeNameForAName)
{
    NamedTag tag(text("p"));
    EXPECT_FALSE(tag.TagMatch(text("p"), text(""), text("v")));
    EXPECT_TRUE(tag.HasAttribute(text("")));
}

TEST(NamedTag, AddAttributeReplacesTheFormerValue)
{
    NamedTag tag(text("p"));
    tag.AddAttribute(text("a"), text("1"));
    tag.AddAttribute(text("a"), text("2"));
    EXPECT_EQ(tag.FindAttribute(text("a")), text("2"));
    EXPECT_EQ(tag.AttributeCount(), 1);
}

TEST(NamedTag, FindAttributeAddsAMissingOneWithANullValue)
{
    NamedTag tag(text("p"));
    EXPECT_TRUE(tag.FindAttribute(text("a")).isNull());
    EXPECT_TRUE(tag.HasAttribute(text("a")));
    EXPECT_EQ(tag.AttributeCount(), 1);
}

TEST(NamedTag, FindAttributeAddsToThisElementAlone)
{
    const TagPtr root = parsed("<p a=\"1\"/><p a=\"1\"/>");
    const TagPtr copy(root->Duplicate());
    root->m_Child->FindAttribute(text("b"));
    EXPECT_EQ(written(*root), text("<p a=\"1\" b=\"\"></p><p a=\"1\"></p>"));
    EXPECT_EQ(written(*copy), text("<p a=\"1\"></p><p a=\"1\"></p>"));
}

TEST(NamedTag, HasAttributeNeverAdds)
{
    NamedTag tag(text("p"));
    EXPECT_FALSE(tag.HasAttribute(text("a")));
    EXPECT_EQ(tag.AttributeCount(), 0);
}

TEST(NamedTag, DeleteAttributeRemovesOne)
{
    const TagPtr root = parsed("<p a=1 b=2/>");
    root->m_Child->DeleteAttribute(text("a"));
    root->m_Child->DeleteAttribute(text("z"));
    EXPECT_EQ(outline(*root), text("<p b=\"2\">[]"));
}

TEST(NamedTag, ClearAttributesRemovesAll)
{
    const TagPtr root = parsed("<p a=1 b=2/>");
    root->m_Child->ClearAttributes();
    EXPECT_EQ(outline(*root), text("<p>[]"));
}

TEST(NamedTag, NextAttributeAnswersInTheOrderOfNames)
{
    const TagPtr root = parsed("<p c=3 a=1 b=2/>");
    auto &tag = static_cast<NamedTag &>(*root->m_Child);
    QString seen;
    QString name;
    QString value;
    for (bool more = tag.FirstAttribute(name, value); more; more = tag.NextAttribute(name, value, false))
        seen += name + value;
    EXPECT_EQ(seen, text("a1b2c3"));
}

TEST(NamedTag, NextAttributeBehindTheLastLeavesItsArgumentsUntouched)
{
    const TagPtr root = parsed("<p a=1/>");
    auto &tag = static_cast<NamedTag &>(*root->m_Child);
    QString name;
    QString value;
    EXPECT_TRUE(tag.NextAttribute(name, value, true));
    name = text("n");
    value = text("v");
    EXPECT_FALSE(tag.NextAttribute(name, value, false));
    EXPECT_EQ(name + value, text("nv"));
    EXPECT_TRUE(tag.NextAttribute(name, value, true));
    EXPECT_EQ(name + value, text("a1"));
}

TEST(NamedTag, FirstAttributeOfNoneIsFalse)
{
    NamedTag tag(text("p"));
    QString name = text("n");
    QString value = text("v");
    EXPECT_FALSE(tag.FirstAttribute(name, value));
    EXPECT_EQ(name + value, text("nv"));
}

TEST(NamedTag, NextAttributeBeforeAnyWalkIsFalse)
{
    const TagPtr root = parsed("<p a=1/>");
    QString name;
    QString value;
    EXPECT_FALSE(static_cast<NamedTag &>(*root->m_Child).NextAttribute(name, value, false));
}

TEST(NamedTag, NextAttributeKeepsItsPlaceWhileAttributesComeAndGo)
{
    const TagPtr root = parsed("<p a=1 c=3 e=5 g=7/>");
    auto &tag = static_cast<NamedTag &>(*root->m_Child);
    QString name;
    QString value;
    tag.FirstAttribute(name, value);
    tag.DeleteAttribute(name);
    tag.AddAttribute(text("b"), text("2"));
    const TagPtr copy(tag.Copy());
    EXPECT_TRUE(tag.NextAttribute(name, value, false));
    EXPECT_EQ(name, text("c"));
    tag.DeleteAttribute(text("e"));
    tag.AddAttribute(text("f"), text("6"));
    EXPECT_TRUE(tag.NextAttribute(name, value, false));
    EXPECT_EQ(name, text("f"));
    EXPECT_TRUE(static_cast<NamedTag &>(*copy).NextAttribute(name, value, false));
    EXPECT_EQ(name, text("c"));
}

TEST(NamedTag, NextAttributeWalksOverAnEmptyName)
{
    NamedTag tag(text("p"));
    tag.AddAttribute(QString(), text("0"));
    tag.AddAttribute(text("a"), text("1"));
    QString name;
    QString value;
    EXPECT_TRUE(tag.FirstAttribute(name, value));
    EXPECT_EQ(value, text("0"));
    EXPECT_TRUE(tag.NextAttribute(name, value, false));
    EXPECT_EQ(value, text("1"));
    EXPECT_FALSE(tag.NextAttribute(name, value, false));
}

TEST(NamedTag, ReNameReplacesTheName)
{
    NamedTag tag(text("p"));
    tag.ReName(text("q"));
    EXPECT_EQ(tag.m_Name, text("q"));
}

TEST(NamedTag, GetEnclosedTextItemIsTheTextOfTheFirstChild)
{
    const TagPtr root = parsed("<p>one<b/>two</p>");
    EXPECT_EQ(root->m_Child->GetEnclosedTextItem(), text("one"));
}

TEST(NamedTag, GetEnclosedTextItemBehindAnElementIsNull)
{
    const TagPtr root = parsed("<p><b/>two</p><q/><r><!--c-->x</r>");
    for (Tag *child = root->m_Child; child; child = child->m_Next)
        EXPECT_TRUE(child->GetEnclosedTextItem().isNull());
}

TEST(NamedTag, CopyTakesEverythingButTheLinks)
{
    const TagPtr root = parsed("<p a=1 b=2>x</p><q/>");
    auto &tag = static_cast<NamedTag &>(*root->m_Child);
    tag.m_WriteEndTag = false;
    tag.m_OmitIfEmpty = tag.m_BareValues = tag.m_ContentOnly = true;
    tag.SetInvisible(true);
    const TagPtr copy(tag.Copy());
    const auto &named = dynamic_cast<NamedTag &>(*copy);
    EXPECT_FALSE(named.m_WriteEndTag);
    EXPECT_TRUE(named.m_OmitIfEmpty && named.m_BareValues && named.m_ContentOnly);
    EXPECT_EQ(named.m_Flags, tag.m_Flags);
    EXPECT_EQ(named.m_Name, tag.m_Name);
    EXPECT_EQ(named.m_Attributes, tag.m_Attributes);
    EXPECT_EQ(named.m_Child, nullptr);
    EXPECT_EQ(named.m_Next, nullptr);
    EXPECT_EQ(named.m_Parent, nullptr);
}

TEST(NamedTag, SetParamsWithoutBlankIsOnlyAName)
{
    EXPECT_EQ(afterSetParams("p"), text("<p>[]"));
    EXPECT_EQ(afterSetParams(""), text("<>[]"));
    EXPECT_EQ(afterSetParams("p=\"x\""), text("<p=\"x\">[]"));
}

TEST(NamedTag, SetParamsNameEndsAtABlankOnly)
{
    EXPECT_EQ(afterSetParams("p\ta=1"), text("<p\ta=1>[]"));
    EXPECT_EQ(afterSetParams("p\na=1 b=2"), text("<p\na=1 b=\"2\">[]"));
}

TEST(NamedTag, SetParamsWithALeadingBlankHasAnEmptyName)
{
    EXPECT_EQ(afterSetParams(" a=1"), text("< a=\"1\">[]"));
}

TEST(NamedTag, SetParamsTakesAnyWhiteSpaceBetweenAttributes)
{
    EXPECT_EQ(afterSetParams("p \t\r\n a=1\tb=2\nc=3\xC2\xA0"
                             "d=4"),
              text("<p a=\"1\" b=\"2\" c=\"3\" d=\"4\">[]"));
}

TEST(NamedTag, SetParamsTakesDoubleQuotedValuesWhole)
{
    EXPECT_EQ(afterSetParams("p a=\"x y='z' <&gt;\"b=2"), text("<p a=\"x y='z' <&gt;\" b=\"2\">[]"));
}

TEST(NamedTag, SetParamsTakesAnUnclosedQuoteToTheEnd)
{
    EXPECT_EQ(afterSetParams("p a=\"x b=1"), text("<p a=\"x b=1\">[]"));
    EXPECT_EQ(afterSetParams("p a=\""), text("<p a>[]"));
}

TEST(NamedTag, SetParamsLeavesAnEmptyQuotedValueNull)
{
    EXPECT_EQ(afterSetParams("p a=\"\" b=1"), text("<p a b=\"1\">[]"));
}

TEST(NamedTag, SetParamsGivesSingleQuotesNoMeaning)
{
    EXPECT_EQ(afterSetParams("p a='x y'"), text("<p a=\"'x\" y'>[]"));
}

TEST(NamedTag, SetParamsStopsAtAnEqualsSignInThePlaceOfAKey)
{
    EXPECT_EQ(afterSetParams("p a = 1 b=2"), text("<p a>[]"));
    EXPECT_EQ(afterSetParams("p a==1"), text("<p a=\"=1\">[]"));
}

TEST(NamedTag, SetParamsGivesAKeyAloneANullValue)
{
    EXPECT_EQ(afterSetParams("p checked x=1"), text("<p checked x=\"1\">[]"));
}

TEST(NamedTag, SetParamsTakesAnEqualsSignAtTheEndForNoValue)
{
    EXPECT_EQ(afterSetParams("p a="), text("<p a>[]"));
}

TEST(NamedTag, SetParamsGivesAnEmptyValueBeforeWhiteSpace)
{
    EXPECT_EQ(afterSetParams("p a= b=1"), text("<p a=\"\" b=\"1\">[]"));
}

TEST(NamedTag, SetParamsKeepsTheLastOfARepeatedKey)
{
    EXPECT_EQ(afterSetParams("p a=1 b=2 a=3 a"), text("<p a b=\"2\">[]"));
    EXPECT_EQ(afterSetParams("p a a=3"), text("<p a=\"3\">[]"));
}

TEST(NamedTag, SetParamsDecodesNothing)
{
    EXPECT_EQ(afterSetParams("p a=&amp; b=\"&#65;\""), text("<p a=\"&amp;\" b=\"&#65;\">[]"));
}

TEST(NamedTag, SetParamsReplacesTheNameAndAddsToTheAttributes)
{
    NamedTag tag(text("p"));
    tag.AddAttribute(text("a"), text("1"));
    tag.AddAttribute(text("b"), text("2"));
    tag.SetParams(text("q b=3 c=4"));
    EXPECT_EQ(written(tag), text("<q a=\"1\" b=\"3\" c=\"4\"></q>"));
}

TEST(NamedTag, SetParamsReadsNamesAndValuesOfAnyLength)
{
    const QString name(1000, QLatin1Char('n'));
    const QString key(1000, QLatin1Char('k'));
    const QString value(1000, QLatin1Char('v'));
    NamedTag tag{QString()};
    tag.SetParams(name + text(" ") + key + text("=") + value);
    EXPECT_EQ(tag.m_Name, name);
    EXPECT_EQ(tag.FindAttribute(key), value);
}

TEST(NamedTag, ANameOfItsOwnMayBeDeleted)
{
    NamedTag tag{QString()};
    tag.SetParams(text("p a=1 b=2 c=3 d=4 e=5"));
    ASSERT_EQ(tag.AttributeCount(), 5);
    while (tag.AttributeCount() > 0)
        tag.DeleteAttribute(tag.m_Attributes.firstKey());
    EXPECT_EQ(tag.GetName(), text("p"));
}

TEST(NamedTag, ItsOwnNameMayBeReadAnew)
{
    NamedTag tag(text("p"));
    tag.m_Name = QString(text("a long name ")).repeated(2) + text("x=1");
    tag.SetParams(tag.m_Name);
    EXPECT_EQ(tag.m_Name, text("a"));
    EXPECT_EQ(tag.FindAttribute(text("x")), text("1"));
}

TEST(NamedTag, AValueOfItsOwnMayBeReadAnew)
{
    NamedTag tag(text("p"));
    tag.m_Attributes[text("v")] = QString(text("q v=")) + QString(40, QLatin1Char('v')) + text(" w=2");
    tag.SetParams(tag.m_Attributes[text("v")]);
    EXPECT_EQ(tag.m_Name, text("q"));
    EXPECT_EQ(tag.FindAttribute(text("v")), QString(40, QLatin1Char('v')));
    EXPECT_EQ(tag.FindAttribute(text("w")), text("2"));
}

TEST(NamedTag, IsMadeWhereMemoryMayBeMissing)
{
    const TagPtr tag(new (std::nothrow) NamedTag(text("p")));
    ASSERT_TRUE(tag);
    EXPECT_EQ(tag->GetName(), text("p"));
}

TEST(NamedTag, ThePlaceOfOneThatCouldNotBeMadeIsGivenBack)
{
    void *const place = NamedTag::operator new(sizeof(NamedTag), std::nothrow);
    ASSERT_TRUE(place);
    NamedTag::operator delete(place, std::nothrow); // as the compiler does when a host's constructor raises
}
