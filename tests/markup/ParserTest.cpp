#include <gtest/gtest.h>

#include "markup/Support.h"

using namespace MarkupTest;
using XML::NamedTag;
using XML::Parser;
using XML::Tag;

namespace {

QString outlineOf(const char *markup)
{
    const TagPtr root = parsed(markup);
    EXPECT_TRUE(isSound(*root));
    return outline(*root);
}

/// Whether \a markup is one node which is written just as it was read.
void expectOneExtraWrittenAsRead(const char *markup, Tag::TagType_t type)
{
    const TagPtr root = parsed(markup);
    ASSERT_NE(root->m_Child, nullptr);
    EXPECT_EQ(root->m_Child->m_Next, nullptr);
    const auto *extra = dynamic_cast<XML::ExtraTag *>(root->m_Child);
    ASSERT_NE(extra, nullptr);
    EXPECT_EQ(extra->m_Type, type);
    EXPECT_EQ(written(*root), text(markup));
}

} // namespace

TEST(Parser, OfAnEmptyTextAnswersARootWithoutChildren)
{
    for (const QString &empty : {QString(), text("")}) {
        const TagPtr root = parsed(empty);
        ASSERT_NE(root, nullptr);
        EXPECT_EQ(root->m_Child, nullptr);
        EXPECT_EQ(root->GetName(), text(""));
    }
}

TEST(Parser, NestsElements)
{
    EXPECT_EQ(outlineOf("<a><b><c></c></b><d></d></a>"), text("<a>[<b>[<c>[]] <d>[]]"));
}

TEST(Parser, LeavesTheSwitchesAtTheirDefaults)
{
    const TagPtr root = parsed("<a/>");
    const auto &tag = static_cast<NamedTag &>(*root->m_Child);
    EXPECT_TRUE(tag.m_WriteEndTag);
    EXPECT_FALSE(tag.m_OmitIfEmpty || tag.m_BareValues || tag.m_ContentOnly);
    EXPECT_EQ(tag.m_Flags, 0U);
}

TEST(Parser, DropsATextOfOneLineFeed)
{
    EXPECT_EQ(outlineOf("<a></a>\n<b></b>"), text("<a>[] <b>[]"));
    EXPECT_EQ(outlineOf("\n<a>\n</a>\n"), text("<a>[]"));
    EXPECT_EQ(outlineOf("\n"), text(""));
}

TEST(Parser, KeepsTwoLineFeeds)
{
    EXPECT_EQ(outlineOf("<a></a>\n\n<b></b>"), text("<a>[] \"\n\n\" <b>[]"));
}

TEST(Parser, KeepsACarriageReturnWithItsLineFeed)
{
    EXPECT_EQ(outlineOf("<a></a>\r\n<b></b>"), text("<a>[] \"\r\n\" <b>[]"));
}

TEST(Parser, KeepsAnyOtherSingleCharacter)
{
    EXPECT_EQ(outlineOf("<a></a> <b></b>\t<c></c>\r<d></d>"), text("<a>[] \" \" <b>[] \"\t\" <c>[] \"\r\" <d>[]"));
}

TEST(Parser, KeepsAReferenceToALineFeed)
{
    EXPECT_EQ(outlineOf("<a>&#10;</a>"), text("<a>[\"\n\"]"));
}

TEST(Parser, KeepsATextThatDecodesToNothing)
{
    EXPECT_EQ(outlineOf("<a>&nbsp;</a>"), text("<a>[\"\"]"));
}

TEST(Parser, EndsAtAMismatchedEndTag)
{
    EXPECT_EQ(outlineOf("<a><b></a>lost<c/>"), text("<a>[<b>[]]"));
}

TEST(Parser, EndsAtAnEndTagOutsideOfAnyElement)
{
    EXPECT_EQ(outlineOf("x</a><b/>"), text("\"x\""));
    EXPECT_EQ(outlineOf("<a></a></a><b/>"), text("<a>[]"));
}

TEST(Parser, ComparesEndTagsWithTheirBlanks)
{
    EXPECT_EQ(outlineOf("<a></a ><b/>"), text("<a>[]"));
    EXPECT_EQ(outlineOf("<a></ a><b/>"), text("<a>[]"));
    EXPECT_EQ(outlineOf("<a></A><b/>"), text("<a>[]"));
}

TEST(Parser, NeverClosesAnElementWithoutName)
{
    EXPECT_EQ(outlineOf("<>x</>y"), text("<>[\"x\"]"));
}

TEST(Parser, GivesMetaElementsNoChildren)
{
    EXPECT_EQ(outlineOf("<zeko:meta x=1>text"), text("<zeko:meta x=\"1\">[] \"text\""));
    EXPECT_EQ(outlineOf("<a><meta>x<b/></a>"), text("<a>[<meta>[] \"x\" <b>[]]"));
    EXPECT_EQ(outlineOf("<meta/>x"), text("<meta>[] \"x\""));
}

TEST(Parser, TakesTheEndTagOfAMetaElementForAStrayOne)
{
    EXPECT_EQ(outlineOf("<a><meta></meta>lost</a>"), text("<a>[<meta>[]]"));
}

TEST(Parser, TakesMetaExactly)
{
    EXPECT_EQ(outlineOf("<META>x</META><x:meta>y</x:meta>"), text("<META>[\"x\"] <x:meta>[\"y\"]"));
}

TEST(Parser, ReadsEmptyElementTags)
{
    EXPECT_EQ(outlineOf("<br/>x"), text("<br>[] \"x\""));
    EXPECT_EQ(outlineOf("<br />x"), text("<br>[] \"x\""));
    EXPECT_EQ(outlineOf("<br a=1/>x"), text("<br a=\"1\">[] \"x\""));
}

TEST(Parser, ReadsAComment)
{
    expectOneExtraWrittenAsRead("<!-- a -->", Tag::Comment);
    EXPECT_EQ(outlineOf("<!--<a>&amp;-->x"), text("6\"<a>&amp;\" \"x\""));
}

TEST(Parser, ReadsACDataSection)
{
    expectOneExtraWrittenAsRead("<![CDATA[x<y]]>", Tag::CData);
    EXPECT_EQ(outlineOf("<![CDATA[a]]b]]>"), text("5\"a]]b\""));
}

TEST(Parser, ReadsAnXmlDeclaration)
{
    expectOneExtraWrittenAsRead("<?xml version='1.0'?>", Tag::XmlDecl);
    EXPECT_EQ(outlineOf("<?xml version='1.0'?>"), text("7\" version='1.0'\""));
}

TEST(Parser, ReadsADocTypeWithItsSubset)
{
    expectOneExtraWrittenAsRead("<!DOCTYPE d [ <!ENTITY e 'v'> ]>", Tag::DocType);
    EXPECT_EQ(outlineOf("<!DOCTYPE d [ <!ENTITY e 'v'> ]>"), text("8\" d [ <!ENTITY e 'v'> ]\""));
}

TEST(Parser, EndsADocTypeWithoutSubsetAtItsFirstBracket)
{
    EXPECT_EQ(outlineOf("<!DOCTYPE d><a>[</a>]>"), text("8\" d\" <a>[\"[\"] \"]>\""));
}

TEST(Parser, DropsADocTypeWhoseSubsetIsNotClosed)
{
    EXPECT_EQ(outlineOf("<a/><!DOCTYPE d [ <!ENTITY e> ] >x"), text("<a>[]"));
}

TEST(Parser, TakesOtherDeclarationsForStartTags)
{
    EXPECT_EQ(outlineOf("<!doctype html>x"), text("<!doctype html>[\"x\"]"));
    EXPECT_EQ(outlineOf("<?php x?>y"), text("<?php x?>[\"y\"]"));
    EXPECT_EQ(outlineOf("<!-x>y"), text("<!-x>[\"y\"]"));
}

TEST(Parser, TakesWhateverBeginsLikeAnXmlDeclarationForOne)
{
    EXPECT_EQ(outlineOf("<?xml-stylesheet href='x'?>"), text("7\"-stylesheet href='x'\""));
}

TEST(Parser, KeepsNothingOfACommentWhoseDelimitersOverlap)
{
    EXPECT_EQ(outlineOf("<!-->x"), text("6\"\" \"x\""));
    EXPECT_EQ(outlineOf("<!--->x"), text("6\"\" \"x\""));
    EXPECT_EQ(outlineOf("<!---->x"), text("6\"\" \"x\""));
}

TEST(Parser, DropsEverythingFromAnUnterminatedToken)
{
    EXPECT_EQ(outlineOf("<a></a><!-- x"), text("<a>[]"));
    EXPECT_EQ(outlineOf("<a></a><![CDATA[ x ]>"), text("<a>[]"));
    EXPECT_EQ(outlineOf("<a></a><?xml x >"), text("<a>[]"));
    EXPECT_EQ(outlineOf("<a></a><b"), text("<a>[]"));
    EXPECT_EQ(outlineOf("<a></a><"), text("<a>[]"));
}

TEST(Parser, DropsTheTextBeforeAnUnterminatedTokenToo)
{
    EXPECT_EQ(outlineOf("<a></a>text<b"), text("<a>[]"));
}

TEST(Parser, KeepsTextBeforeTheFirstAndAfterTheLastTag)
{
    EXPECT_EQ(outlineOf("before<a></a>after"), text("\"before\" <a>[] \"after\""));
    EXPECT_EQ(outlineOf("only"), text("\"only\""));
}

TEST(Parser, DecodesTextOnce)
{
    EXPECT_EQ(outlineOf("<a>&amp;lt;</a>"), text("<a>[\"&lt;\"]"));
}

TEST(Parser, ClosesOpenElementsAtTheEnd)
{
    EXPECT_EQ(outlineOf("<a><b>x"), text("<a>[<b>[\"x\"]]"));
}

TEST(Parser, EndsATagAtABracketWithinQuotes)
{
    EXPECT_EQ(outlineOf("<a x=\"1>2\">y"), text("<a x=\"1\">[\"2\">y\"]"));
}

TEST(Parser, TakesASlashAtTheEndOfAnUnquotedValueForTheTags)
{
    EXPECT_EQ(outlineOf("<a href=x/>y"), text("<a href=\"x\">[] \"y\""));
}

TEST(Parser, ParseTagOfNullDoesNothing)
{
    int pos = 3;
    Parser().ParseTag(nullptr, text("<a/>"), pos);
    EXPECT_EQ(pos, 3);
}

TEST(Parser, ParseTagStopsBehindTheEndTagOfItsParent)
{
    NamedTag parent(text("a"));
    int pos = 0;
    Parser().ParseTag(&parent, text("x<b></b></a>rest"), pos);
    EXPECT_EQ(pos, 12);
    EXPECT_EQ(outline(parent), text("\"x\" <b>[]"));
}

TEST(Parser, ParseTagGoesToTheEndWhenNothingCloses)
{
    NamedTag parent(text("a"));
    int pos = 1;
    Parser().ParseTag(&parent, text("x<b></b></c>rest"), pos);
    EXPECT_EQ(pos, 16);
    EXPECT_EQ(outline(parent), text("<b>[]"));
}

TEST(Parser, ParseTagGoesToTheEndOfATextWithoutTags)
{
    Tag parent;
    int pos = 1;
    Parser().ParseTag(&parent, text("xyz"), pos);
    EXPECT_EQ(pos, 3);
    EXPECT_EQ(outline(parent), text("\"yz\""));
}

TEST(Parser, ParseTagAppendsToTheChildrenThatAreThere)
{
    Tag parent;
    parent.AddTag(element("first"), false);
    int pos = 0;
    Parser().ParseTag(&parent, text("<a/>"), pos);
    EXPECT_EQ(outline(parent), text("<first>[] <a>[]"));
}

TEST(Parser, ParseTagFromTheEndOrBehindDoesNothing)
{
    Tag parent;
    int pos = 9;
    Parser().ParseTag(&parent, text("<a/>"), pos);
    EXPECT_EQ(pos, 9);
    EXPECT_EQ(parent.m_Child, nullptr);
}

TEST(Parser, ParseTagTakesANegativePositionForTheStart)
{
    Tag parent;
    int pos = -3;
    Parser().ParseTag(&parent, text("x<a/>"), pos);
    EXPECT_EQ(outline(parent), text("\"x\" <a>[]"));
}

TEST(Parser, ParseMayBeOverridden)
{
    class Counting : public Parser
    {
    public:
        Tag *Parse(const QString &markup) override
        {
            ++m_Count;
            return Parser::Parse(markup);
        }
        int m_Count = 0;
    };
    Counting counting;
    Parser &parser = counting;
    const TagPtr root(parser.Parse(text("<a/>")));
    EXPECT_EQ(counting.m_Count, 1);
    EXPECT_EQ(outline(*root), text("<a>[]"));
}
