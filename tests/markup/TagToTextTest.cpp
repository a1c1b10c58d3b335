#include <gtest/gtest.h>

#include "markup/Support.h"

using namespace MarkupTest;
using XML::ExtraTag;
using XML::NamedTag;
using XML::Tag;
using XML::TextTag;

namespace {

NamedTag &firstElement(const TagPtr &root)
{
    return static_cast<NamedTag &>(*root->m_Child);
}

QString contentOf(Tag &tag)
{
    QString out;
    tag.TagToText(out, QChar(), true, false);
    return out;
}

QString textOf(Tag &tag, QChar terminator = QChar())
{
    QString out;
    tag.TagToText(out, terminator, false, true);
    return out;
}

/// Removes all callbacks at the end of a test.
class CallbackTest : public testing::Test
{
protected:
    void TearDown() override
    {
        NamedTag::SetTagToTextCallback(nullptr);
        NamedTag::sTagCallbacksMap.clear();
    }
};

using TagToTextCallbacks = CallbackTest;

} // namespace

TEST(TagToText, AppendsToWhatIsThere)
{
    const TagPtr root = parsed("<a>x</a>");
    QString out = text("before ");
    root->TagToText(out, QChar(), false, false);
    EXPECT_EQ(out, text("before <a>x</a>"));
}

TEST(TagToText, OfNothingLeavesTheStringAsItIs)
{
    Tag root;
    QString out;
    root.TagToText(out, QLatin1Char('\n'), false, false);
    EXPECT_TRUE(out.isNull());
}

TEST(TagToText, WritesAttributesInTheOrderOfTheirNames)
{
    NamedTag tag(text("p"));
    tag.AddAttribute(text("b"), text("2"));
    tag.AddAttribute(text("a"), text("1"));
    EXPECT_EQ(written(tag), text("<p a=\"1\" b=\"2\"></p>"));
}

TEST(TagToText, WritesANullValueAsAnEmptyOne)
{
    NamedTag tag(text("p"));
    tag.FindAttribute(text("a"));
    EXPECT_EQ(written(tag), text("<p a=\"\"></p>"));
}

TEST(TagToText, EncodesValuesButNotNamesAndKeys)
{
    NamedTag tag(text("p&"));
    tag.AddAttribute(text("a<"), text("<&>\"'"));
    EXPECT_EQ(written(tag), text("<p& a<=\"&lt;&amp;&gt;\"'\"></p&>"));
    const ZekoMode off(false);
    EXPECT_EQ(written(tag), text("<p& a<=\"&lt;&amp;&gt;&quot;&apos;\"></p&>"));
    EXPECT_EQ(tag.FindAttribute(text("a<")), text("<&>\"'"));
}

TEST(TagToText, LeavesOutAttributesWithoutName)
{
    NamedTag tag(text("p"));
    tag.AddAttribute(text(""), text("1"));
    tag.AddAttribute(text("a"), text("2"));
    EXPECT_EQ(written(tag), text("<p a=\"2\"></p>"));
}

TEST(TagToText, WritesBareValuesUnlessTheyHoldABlank)
{
    NamedTag tag(text("p"));
    tag.m_BareValues = true;
    tag.AddAttribute(text("a"), text("x y"));
    tag.AddAttribute(text("b"), text("z"));
    tag.AddAttribute(text("c"), text(""));
    tag.AddAttribute(text("d"), text("&\t"));
    EXPECT_EQ(written(tag), text("<p a=\"x y\" b=z c d=&amp;\t></p>"));
}

TEST(TagToText, WritesAnEndTagForAnElementReadAsEmpty)
{
    const TagPtr root = parsed("<br/>");
    EXPECT_EQ(written(*root), text("<br></br>"));
}

TEST(TagToText, ClosesAnElementWithoutChildrenAtOnceWhenToldTo)
{
    const TagPtr root = parsed("<br a=1/>");
    firstElement(root).m_WriteEndTag = false;
    EXPECT_EQ(written(*root), text("<br a=\"1\"/>"));
    EXPECT_EQ(written(*root, QLatin1Char(';')), text("<br a=\"1\"/>;"));
}

TEST(TagToText, WritesAnEndTagBehindChildrenWhateverItIsTold)
{
    const TagPtr root = parsed("<br>x</br>");
    firstElement(root).m_WriteEndTag = false;
    EXPECT_EQ(written(*root), text("<br>x</br>"));
}

TEST(TagToText, LeavesOutAnEmptyElementWhenToldTo)
{
    const TagPtr root = parsed("<a></a><b>&;</b><c>x</c><d><e/></d>");
    for (Tag *child = root->m_Child; child; child = child->m_Next)
        static_cast<NamedTag *>(child)->m_OmitIfEmpty = true;
    EXPECT_EQ(written(*root), text("<c>x</c><d><e></e></d>"));
}

TEST(TagToText, LeavesOutByTheFirstChildAlone)
{
    const TagPtr root = parsed("<a>&;<b>x</b></a>");
    firstElement(root).m_OmitIfEmpty = true;
    EXPECT_EQ(written(*root), text(""));
    EXPECT_EQ(textOf(*root), text(""));
}

TEST(TagToText, KeepsAnEmptyElementByDefault)
{
    const TagPtr root = parsed("<b>&;</b>");
    EXPECT_EQ(written(*root), text("<b></b>"));
}

TEST(TagToText, WritesTheContentOnlyOfAnElementSoMarked)
{
    const TagPtr root = parsed("<a x=1>y<b>z</b></a>");
    firstElement(root).m_ContentOnly = true;
    EXPECT_EQ(written(*root, QLatin1Char('\n')), text("y<b>z</b>\n"));
}

TEST(TagToText, ContentOnlyHoldsForTheElementAlone)
{
    const TagPtr root = parsed("<a>y<b>z</b></a>");
    EXPECT_EQ(contentOf(*root->m_Child), text("y<b>z</b>"));
    EXPECT_EQ(contentOf(*root), text("<a>y<b>z</b></a>"));
}

TEST(TagToText, TextOnlyLeavesOutAllMarkup)
{
    const TagPtr root = parsed("<?xml?><a>x<b>&amp;<!--c--></b><![CDATA[d]]></a>z");
    EXPECT_EQ(textOf(*root, QLatin1Char('\n')), text("x&amp;z"));
}

TEST(TagToText, OfOneElementWritesNoSiblings)
{
    const TagPtr root = parsed("<a>x</a><b>y</b>");
    EXPECT_EQ(written(*root->m_Child), text("<a>x</a>"));
}

TEST(TagToText, PutsTheTerminatorBehindClosedElements)
{
    const TagPtr root = parsed("<a><b>t</b></a>");
    EXPECT_EQ(written(*root, QLatin1Char('\n')), text("<a><b>t</b>\n</a>\n"));
}

TEST(TagToText, PutsTheTerminatorBehindCommentsAndTheLike)
{
    const TagPtr root = parsed("<?xml?><!DOCTYPE d><!--c--><![CDATA[d]]>text");
    EXPECT_EQ(written(*root, QLatin1Char('|')), text("<?xml?>|<!DOCTYPE d>|<!--c-->|<![CDATA[d]]>|text"));
}

TEST(TagToText, EncodesTextAndNotTheContentOfComments)
{
    const TagPtr root = parsed("&lt;&amp;&gt;<!--<&>--><![CDATA[<&>]]>");
    EXPECT_EQ(written(*root), text("&lt;&amp;&gt;<!--<&>--><![CDATA[<&>]]>"));
}

TEST(TagToText, OfATextNodeKnowsNeitherFlagsNorTerminator)
{
    TextTag tag;
    tag.SetText(text("a<b"));
    QString out;
    tag.TagToText(out, QLatin1Char('|'), true, true);
    EXPECT_EQ(out, text("a&lt;b"));
    tag.SetInvisible(true);
    EXPECT_EQ(written(tag), text("a&lt;b"));
    tag.SetSkip(true);
    EXPECT_EQ(written(tag), text(""));
}

TEST(TagToText, OfASkippedExtraNodeIsNothing)
{
    ExtraTag tag(Tag::Comment);
    tag.SetText(text("c"));
    EXPECT_EQ(written(tag), text("<!--c-->"));
    tag.SetSkip(true);
    EXPECT_EQ(written(tag, QLatin1Char('|')), text(""));
}

TEST(TagToText, LeavesOutASkippedElementWithItsChildren)
{
    const TagPtr root = parsed("<a>x<b>y</b></a>z");
    root->m_Child->SetSkip(true);
    EXPECT_EQ(written(*root), text("z"));
    EXPECT_EQ(textOf(*root), text("z"));
    EXPECT_EQ(contentOf(*root->m_Child), text(""));
}

TEST(TagToText, OfASkippedRootWritesItsChildren)
{
    const TagPtr root = parsed("<a>x</a>");
    root->SetSkip(true);
    EXPECT_EQ(written(*root), text("<a>x</a>"));
}

TEST(TagToText, ShowsOnlyTheChildrenOfAnInvisibleElement)
{
    const TagPtr root = parsed("<a q=1>x<b>y</b></a>z");
    root->m_Child->SetInvisible(true);
    EXPECT_EQ(written(*root, QLatin1Char('|')), text("x<b>y</b>|z"));
}

TEST(TagToText, ClosesTheElementsAroundAnInvisibleOneOnce)
{
    const TagPtr root = parsed("<a>1<b>2<c>3</c>4</b>5</a>");
    root->FindTag(text("b"), QString(), QString())->SetInvisible(true);
    EXPECT_EQ(written(*root), text("<a>12<c>3</c>45</a>"));
}

TEST(TagToText, OfABareNodeWithinATreeIsThatOfItsChildren)
{
    Tag root;
    auto *inner = new Tag;
    inner->AddTag(textNode("x"), false);
    inner->AddTag(element("b"), false);
    root.AddTag(element("a", {inner}), false);
    EXPECT_EQ(written(root, QLatin1Char('|')), text("<a>x<b></b>|</a>|"));
}

TEST_F(TagToTextCallbacks, AreNoneAtFirst)
{
    EXPECT_EQ(NamedTag::sTTT_CB, nullptr);
    EXPECT_TRUE(NamedTag::sTagCallbacksMap.isEmpty());
}

TEST_F(TagToTextCallbacks, AreRemovedByANameOfTheirOwn)
{
    const QStringList names = texts({"a", "b", "c", "d", "e"});
    for (const QString &name : names)
        NamedTag::SetTagToTextCallback(name, [](Tag *, QString &, QChar, bool, bool) { return false; });
    while (!NamedTag::sTagCallbacksMap.isEmpty())
        NamedTag::SetTagToTextCallback(NamedTag::sTagCallbacksMap.firstKey(), nullptr);
    EXPECT_EQ(written(*parsed("<a/><e/>")), text("<a></a><e></e>"));
}

TEST_F(TagToTextCallbacks, OfANameThatAnswersFalseRemovesEverySuchElement)
{
    const TagPtr root = parsed("<a><zeko:meta><zeko:meta/>x</a><ZEKO:meta>y</ZEKO:meta>");
    static_cast<NamedTag *>(root->m_Child->m_Child)->AddTag(textNode("child"), false);
    NamedTag::SetTagToTextCallback(text("zeko:meta"), [](Tag *, QString &, QChar, bool, bool) { return false; });
    EXPECT_EQ(written(*root), text("<a>x</a><ZEKO:meta>y</ZEKO:meta>"));
    NamedTag::SetTagToTextCallback(text("zeko:meta"), nullptr);
    EXPECT_EQ(written(*root),
              text("<a><zeko:meta>child</zeko:meta><zeko:meta></zeko:meta>x</a><ZEKO:meta>y</ZEKO:meta>"));
}

TEST_F(TagToTextCallbacks, OfANameIsAskedBeforeTheGeneralOne)
{
    const TagPtr root = parsed("<a>x</a><b/>");
    NamedTag::SetTagToTextCallback(text("a"), [](Tag *, QString &out, QChar, bool, bool) {
        out += QLatin1String("(named)");
        return true;
    });
    NamedTag::SetTagToTextCallback([](Tag *tag, QString &out, QChar, bool, bool) {
        out += QLatin1String("(general)");
        return tag->GetName() != QLatin1String("b");
    });
    EXPECT_EQ(written(*root), text("(named)(general)<a>x</a>(general)"));
}

TEST_F(TagToTextCallbacks, OfANameThatAnswersFalseKeepsTheGeneralOneFromBeingAsked)
{
    const TagPtr root = parsed("<a>x</a>");
    NamedTag::SetTagToTextCallback(text("a"), [](Tag *, QString &, QChar, bool, bool) { return false; });
    NamedTag::SetTagToTextCallback([](Tag *, QString &out, QChar, bool, bool) {
        out += QLatin1String("asked");
        return true;
    });
    EXPECT_EQ(written(*root), text(""));
}

TEST_F(TagToTextCallbacks, GetTheArgumentsOfTheCall)
{
    const TagPtr root = parsed("<a><b/></a>");
    NamedTag::SetTagToTextCallback([](Tag *tag, QString &out, QChar terminator, bool contentOnly, bool textOnly) {
        out += tag->GetName() + terminator + QString::number(contentOnly) + QString::number(textOnly);
        return true;
    });
    QString out;
    root->m_Child->TagToText(out, QLatin1Char('|'), true, true);
    EXPECT_EQ(out, text("a|11b|01"));
}

TEST_F(TagToTextCallbacks, OfANameGetTheArgumentsOfTheCallToo)
{
    const TagPtr root = parsed("<a/>");
    const auto show = [](Tag *tag, QString &out, QChar terminator, bool contentOnly, bool textOnly) {
        out += tag->GetName() + terminator + QString::number(contentOnly) + QString::number(textOnly);
        return false;
    };
    NamedTag::SetTagToTextCallback(text("a"), show);
    QString out;
    root->m_Child->TagToText(out, QLatin1Char('|'), true, false);
    root->m_Child->TagToText(out, QLatin1Char('/'), false, true);
    EXPECT_EQ(out, text("a|10a/01"));
}

TEST_F(TagToTextCallbacks, AreAskedForSkippedElementsToo)
{
    const TagPtr root = parsed("<a/>");
    root->m_Child->SetSkip(true);
    NamedTag::SetTagToTextCallback([](Tag *, QString &out, QChar, bool, bool) {
        out += QLatin1String("asked");
        return true;
    });
    EXPECT_EQ(written(*root), text("asked"));
}

TEST_F(TagToTextCallbacks, AreNotAskedByTagToTextNoCB)
{
    const TagPtr root = parsed("<a>x<b>y</b></a>");
    NamedTag::SetTagToTextCallback([](Tag *, QString &, QChar, bool, bool) { return false; });
    QString out;
    firstElement(root).TagToTextNoCB(out, QChar(), false, false);
    EXPECT_EQ(out, text("<a>x</a>"));
}

TEST_F(TagToTextCallbacks, MayWriteTheElementThemselves)
{
    const TagPtr root = parsed("1<b>x<b>y</b></b>2");
    NamedTag::SetTagToTextCallback(text("b"), [](Tag *tag, QString &out, QChar terminator, bool, bool) {
        out += QLatin1Char('{');
        static_cast<NamedTag *>(tag)->TagToTextNoCB(out, terminator, true, false);
        out += QLatin1Char('}');
        return false;
    });
    EXPECT_EQ(written(*root), text("1{x{y}}2"));
}

TEST_F(TagToTextCallbacks, MayTakeBackWhatWasWritten)
{
    const TagPtr root = parsed("<a>x<wipe/>y</a>");
    NamedTag::SetTagToTextCallback(text("wipe"), [](Tag *, QString &out, QChar, bool, bool) {
        out = QLatin1String("new");
        return false;
    });
    EXPECT_EQ(written(*root), text("newy</a>"));
}

TEST_F(TagToTextCallbacks, ThatChangeAnOpenElementDoNotLoseItsEndTag)
{
    const TagPtr root = parsed("<a><b/></a>");
    NamedTag::SetTagToTextCallback(text("b"), [](Tag *tag, QString &, QChar, bool, bool) {
        tag->m_Parent->SetInvisible(true);
        return true;
    });
    EXPECT_EQ(written(*root), text("<a><b></b></a>"));
}

TEST_F(TagToTextCallbacks, AreReplacedByName)
{
    NamedTag::SetTagToTextCallback(text("a"), [](Tag *, QString &, QChar, bool, bool) { return false; });
    NamedTag::SetTagToTextCallback(text("a"), [](Tag *, QString &, QChar, bool, bool) { return true; });
    EXPECT_EQ(NamedTag::sTagCallbacksMap.size(), 1);
    EXPECT_EQ(written(*parsed("<a/>")), text("<a></a>"));
}

TEST_F(TagToTextCallbacks, AreAskedForTheElementItselfAsWell)
{
    NamedTag tag(text("a"));
    QString out;
    NamedTag::SetTagToTextCallback(text("a"), [](Tag *, QString &, QChar, bool, bool) { return false; });
    tag.TagToText(out, QChar(), false, false);
    EXPECT_EQ(out, QString());
    NamedTag::SetTagToTextCallback(text("a"), nullptr);
    tag.TagToText(out, QChar(), false, false);
    EXPECT_EQ(out, text("<a></a>"));
}

TEST(TagToText, OfAnExtraNodeOfNoKindIsItsText)
{
    ExtraTag tag(Tag::None);
    tag.SetText(text("as it is"));
    EXPECT_EQ(written(tag), text("as it is"));
}
