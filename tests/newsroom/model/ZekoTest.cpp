#include <gtest/gtest.h>

#include <quire/newsroom/model/Zeko.h>

#include "Printers.h"

using namespace Newsroom;
using Zeko::Scanner;
using Zeko::Token;

namespace {

QString shown(const QString &text)
{
    Scanner scanner(text);
    QStringList parts;
    for (;;) {
        const Token token = scanner.next();
        const QString content = text.mid(token.contentStart, token.contentEnd - token.contentStart);
        switch (token.kind) {
        case Token::End:
            return parts.join(QLatin1Char('|'));
        case Token::Error:
            parts.append(QStringLiteral("error@%1").arg(token.start));
            return parts.join(QLatin1Char('|'));
        case Token::Text:
            parts.append(QLatin1String("text ") + content);
            break;
        case Token::CData:
            parts.append(QLatin1String("cdata ") + content);
            break;
        case Token::Other:
            parts.append(QLatin1String("other ") + content);
            break;
        case Token::Open:
            parts.append(QLatin1String("open ") + scanner.name(token));
            break;
        case Token::Close:
            parts.append(QLatin1String("close ") + scanner.name(token));
            break;
        case Token::Empty:
            parts.append(QLatin1String("empty ") + scanner.name(token));
            break;
        }
    }
}

QString shown(const char *text)
{
    return shown(QString::fromUtf8(text));
}

/// The attributes of the first tag of \a text; a pair named "(bad)" when they cannot be read.
QVector<NameValue> attributesOf(const char *text)
{
    Scanner scanner(QString::fromUtf8(text));
    const Token token = scanner.next();
    QVector<NameValue> attributes;
    if (!scanner.attributes(token, &attributes))
        return {{QStringLiteral("(bad)"), QString()}};
    return attributes;
}

NameValue pair(const char *name, const char *value)
{
    return {QString::fromUtf8(name), QString::fromUtf8(value)};
}

bool wellFormed(const char *text)
{
    return Zeko::isWellFormed(QString::fromUtf8(text));
}

QString repeated(const char *text, int times)
{
    return QString::fromUtf8(text).repeated(times);
}

} // namespace

TEST(ZekoTest, EscapesTheThreeMarkupCharacters)
{
    EXPECT_EQ(Zeko::escapeText(QStringLiteral("a<b>&c \"d\" 'e'")), QStringLiteral("a&lt;b&gt;&amp;c \"d\" 'e'"));
    EXPECT_EQ(Zeko::escapeText(QString()), QString());
}

TEST(ZekoTest, EscapesWhatUtf8CannotHold)
{
    EXPECT_EQ(Zeko::escapeText(QString(QChar(0xD83D))), QStringLiteral("&#55357;"));
    EXPECT_EQ(Zeko::escapeText(QChar(0xDE00) + QStringLiteral("x")), QStringLiteral("&#56832;x"));
    EXPECT_EQ(Zeko::escapeText(QString(QChar(0))), QStringLiteral("&#0;"));
    const QString emoji = QString::fromUtf8("\xF0\x9F\x98\x80");
    EXPECT_EQ(Zeko::escapeText(emoji), emoji);
}

TEST(ZekoTest, UnescapesEntitiesInAnyLetterCase)
{
    EXPECT_EQ(Zeko::unescapeText(QStringLiteral("&LT;&gt;&Amp;&quot;&apos;")), QStringLiteral("<>&\"'"));
}

TEST(ZekoTest, UnescapesNumericReferences)
{
    EXPECT_EQ(Zeko::unescapeText(QStringLiteral("&#65;&#x42;&#X43;")), QStringLiteral("ABC"));
    EXPECT_EQ(Zeko::unescapeText(QStringLiteral("&#128512;")), QString::fromUtf8("\xF0\x9F\x98\x80"));
    EXPECT_EQ(Zeko::unescapeText(QStringLiteral("&#55357;&#56832;")), QString::fromUtf8("\xF0\x9F\x98\x80"));
}

TEST(ZekoTest, ReferenceTo0Vanishes)
{
    EXPECT_EQ(Zeko::unescapeText(QStringLiteral("a&#0;b")), QStringLiteral("ab"));
}

TEST(ZekoTest, WhatIsNoReferenceStaysAsItIs)
{
    for (const char *text : {"a & b; c", "&nbsp;", "&;", "&", "&#;", "&#xyz;", "&#1114112;", "&amp", "&#-5;", "&#+65;",
                             "&# 65;", "&#65 ;", "&#x0x41;", "&#x+41;"})
        EXPECT_EQ(Zeko::unescapeText(QLatin1String(text)), QLatin1String(text));
}

TEST(ZekoTest, UnescapesOneLevelOnly)
{
    EXPECT_EQ(Zeko::unescapeText(QStringLiteral("&amp;lt;")), QStringLiteral("&lt;"));
}

TEST(ZekoTest, EveryTextWithoutNulReadsBack)
{
    QString text;
    for (int c = 1; c < 0x10000; ++c)
        text.append(QChar(static_cast<ushort>(c)));
    EXPECT_TRUE(Zeko::unescapeText(Zeko::escapeText(text)) == text);
}

TEST(ZekoTest, AttributesAreBareWhereTheyCan)
{
    EXPECT_EQ(Zeko::attributeText(QStringLiteral("id"), QStringLiteral("title")), QStringLiteral(" id=title"));
    EXPECT_EQ(Zeko::attributeText(QStringLiteral("x"), QStringLiteral("it's=1")), QStringLiteral(" x=it's=1"));
    EXPECT_EQ(Zeko::attributeText(QStringLiteral("x"), QStringLiteral("a&b")), QStringLiteral(" x=a&amp;b"));
}

TEST(ZekoTest, AttributesAreQuotedWhereTheyMust)
{
    EXPECT_EQ(Zeko::attributeText(QStringLiteral("x"), QString()), QStringLiteral(" x=\"\""));
    EXPECT_EQ(Zeko::attributeText(QStringLiteral("x"), QStringLiteral("a b")), QStringLiteral(" x=\"a b\""));
    EXPECT_EQ(Zeko::attributeText(QStringLiteral("x"), QStringLiteral("a\tb")), QStringLiteral(" x=\"a\tb\""));
    EXPECT_EQ(Zeko::attributeText(QStringLiteral("x"), QStringLiteral("5\"")), QStringLiteral(" x=\"5&quot;\""));
    EXPECT_EQ(Zeko::attributeText(QStringLiteral("x"), QStringLiteral("a/")), QStringLiteral(" x=\"a/\""));
}

TEST(ZekoTest, AttributesReadBackWhateverTheyHold)
{
    for (const char *value : {"", "a", "a b", "\"", "a>b<c", "&amp;", "'", "/", "a=b", "\n", "\xF0\x9F\x98\x80"}) {
        const QString tag = QLatin1String("<f") + Zeko::attributeText(QStringLiteral("id"), QString::fromUtf8(value)) +
                            QLatin1Char('>');
        EXPECT_EQ(attributesOf(tag.toUtf8().constData()), (QVector<NameValue>{pair("id", value)})) << value;
        EXPECT_TRUE(Zeko::isWellFormed(tag + QLatin1String("</f>"))) << value;
    }
}

TEST(ZekoTest, Names)
{
    for (const char *name : {"f", "zeko:meta", "field-atts", "x1", "\xC3\xA4"})
        EXPECT_TRUE(Zeko::isName(QString::fromUtf8(name))) << name;
    for (const char *name : {"", "a b", "a<", "a>", "a\"", "a'", "a/", "a=", "a&", "!x", "?x", "a\x01"})
        EXPECT_FALSE(Zeko::isName(QString::fromUtf8(name))) << name;
    EXPECT_EQ(Zeko::localName(QStringLiteral("zeko:body")), QStringLiteral("body"));
    EXPECT_EQ(Zeko::localName(QStringLiteral("body")), QStringLiteral("body"));
}

TEST(ZekoTest, ScansTextAndTags)
{
    EXPECT_EQ(shown("a<b>c</b>d<e/>"), QStringLiteral("text a|open b|text c|close b|text d|empty e"));
    EXPECT_EQ(shown(""), QString());
    EXPECT_EQ(shown("<p x=1 y>"), QStringLiteral("open p"));
    EXPECT_EQ(shown("<br />"), QStringLiteral("empty br"));
}

TEST(ZekoTest, ScansCommentsDeclarationsAndCData)
{
    EXPECT_EQ(shown("<!-- <a> -->"), QStringLiteral("other  <a> "));
    EXPECT_EQ(shown("<?xml version='1.0'?>"), QStringLiteral("other  version='1.0'"));
    EXPECT_EQ(shown("<![CDATA[x<y]]>"), QStringLiteral("cdata x<y"));
    EXPECT_EQ(shown("<!DOCTYPE d>"), QStringLiteral("other  d"));
    EXPECT_EQ(shown("<!DOCTYPE d [ <!ENTITY e 'v'> ]>z"), QStringLiteral("other  d [ <!ENTITY e 'v'> |text z"));
}

TEST(ZekoTest, ATagReachesToTheNextBracketWhateverIsQuoted)
{
    EXPECT_EQ(shown("<p x=\"a>b\">"), QStringLiteral("open p|text b\">"));
}

TEST(ZekoTest, UnfinishedPiecesAreErrors)
{
    EXPECT_EQ(shown("ab<c"), QStringLiteral("text ab|error@2"));
    EXPECT_EQ(shown("<a <b>"), QStringLiteral("error@0"));
    EXPECT_EQ(shown("<!-- x"), QStringLiteral("error@0"));
    EXPECT_EQ(shown("<![CDATA[x]]"), QStringLiteral("error@0"));
    EXPECT_EQ(shown("<?xml x>"), QStringLiteral("error@0"));
    EXPECT_EQ(shown("<!DOCTYPE [ >"), QStringLiteral("error@0"));
    EXPECT_EQ(shown("<>"), QStringLiteral("error@0"));
    EXPECT_EQ(shown("</>"), QStringLiteral("error@0"));
    EXPECT_EQ(shown("< p>"), QStringLiteral("error@0"));
    EXPECT_EQ(shown("<!doctype x>"), QStringLiteral("error@0"));
    EXPECT_EQ(shown("<?php x?>"), QStringLiteral("error@0"));
}

TEST(ZekoTest, ErrorAndEndStay)
{
    Scanner broken(QStringLiteral("<a"));
    EXPECT_EQ(broken.next().kind, Token::Error);
    EXPECT_EQ(broken.next().kind, Token::Error);
    Scanner done{QString()};
    EXPECT_EQ(done.next().kind, Token::End);
    EXPECT_EQ(done.next().kind, Token::End);
}

TEST(ZekoTest, ReadsAttributesAsReadersOfTheMarkupDo)
{
    EXPECT_EQ(attributesOf("<m rate=170 words=\"2 3\" held>"),
              (QVector<NameValue>{pair("rate", "170"), pair("words", "2 3"), pair("held", "")}));
    EXPECT_EQ(attributesOf("<m a='b'>"), (QVector<NameValue>{pair("a", "'b'")}));
    EXPECT_EQ(attributesOf("<m a=\"b\"c=d>"), (QVector<NameValue>{pair("a", "b"), pair("c", "d")}));
    EXPECT_EQ(attributesOf("<m\n a=1\t>"), (QVector<NameValue>{pair("a", "1")}));
    EXPECT_EQ(attributesOf("<m a= b=1>"), (QVector<NameValue>{pair("a", ""), pair("b", "1")}));
    EXPECT_EQ(attributesOf("<m>"), QVector<NameValue>());
}

TEST(ZekoTest, UnreadableAttributesAreRefused)
{
    EXPECT_EQ(attributesOf("<m a=\"b>").first().name, QStringLiteral("(bad)"));
    EXPECT_EQ(attributesOf("<m =1>").first().name, QStringLiteral("(bad)"));
    EXPECT_EQ(attributesOf("<m a\"b=1>").first().name, QStringLiteral("(bad)"));
}

TEST(ZekoTest, WellFormedTexts)
{
    for (const char *text :
         {"", "text", "<a></a>", "<p><b>x</b></p>", "<meta x=1>y", "<zeko:meta>", "<p/>", "<a href=x>open anchor",
          "<p><a x=1>open</p>", "a > b", "<a><a><p></p>", "<!-- </p> --><p></p>", "<p><a>closed</a></p>"})
        EXPECT_TRUE(wellFormed(text)) << text;
}

TEST(ZekoTest, NotWellFormedTexts)
{
    for (const char *text : {"<p>", "</p>", "<p><b></p></b>", "<p></P>", "a < b", "<p></p></p>", "<p><a></p></a>",
                             "</a>", "</meta>", "<p x=\"1>", "<p x=\"></p>", "<p></p"})
        EXPECT_FALSE(wellFormed(text)) << text;
}

TEST(ZekoTest, DeepTextsNeedNoStack)
{
    const int depth = 300000;
    EXPECT_TRUE(Zeko::isWellFormed(repeated("<p>", depth) + repeated("</p>", depth)));
    EXPECT_FALSE(Zeko::isWellFormed(repeated("<p>", depth)));
    EXPECT_TRUE(Zeko::isWellFormed(repeated("<a x>", depth)));
}

TEST(ZekoTest, HostileTextsEndInLinearTime)
{
    const int size = 1000000;
    EXPECT_FALSE(Zeko::isWellFormed(repeated("<", size)));
    EXPECT_FALSE(Zeko::isWellFormed(repeated("<!--", size / 4)));
    EXPECT_TRUE(Zeko::isWellFormed(repeated("&", size)));
    EXPECT_EQ(Zeko::unescapeText(repeated("&", size) + QLatin1Char(';')).size(), size + 1);
    EXPECT_EQ(Zeko::escapeText(repeated("&", size)).size(), 5 * size);
    EXPECT_TRUE(Zeko::isWellFormed(QLatin1String("<m") + repeated(" a=1", size / 4) + QLatin1String("></m>")));
}

TEST(ZekoTest, EveryPrefixOfADocumentIsScannedToAnEnd)
{
    const QString text = QStringLiteral("<story><head><meta a=\"b c\"></head><!-- x --><body><![CDATA[<]]><p>&amp;</p>"
                                        "<a href=x></body></story>");
    for (int length = 0; length < text.size(); ++length) {
        const bool complete = Zeko::isWellFormed(text.left(length));
        EXPECT_EQ(complete, length == 0) << length;
    }
    EXPECT_TRUE(Zeko::isWellFormed(text));
}
