#include <gtest/gtest.h>

#include "markup/Support.h"

using namespace MarkupTest;

namespace {

QString encoded(QString s)
{
    XML::EncodeString(s);
    return s;
}

QString encoded(ushort code)
{
    return encoded(QString(QChar(code)));
}

QString decoded(const char *utf8)
{
    QString s = text(utf8);
    XML::DecodeString(s);
    return s;
}

bool isSpecial(ushort code)
{
    QChar c(code);
    return XML::IsSpecialChar(c);
}

} // namespace

TEST(Entities, ZekoModeIsOnAtFirst)
{
    EXPECT_TRUE(XML::xZEKO_Mode);
}

TEST(Entities, TheNullCharacterIsNeverSpecial)
{
    EXPECT_FALSE(isSpecial(0));
}

TEST(Entities, WhiteSpaceIsNeverSpecial)
{
    for (const int code : {0x09, 0x0A, 0x0B, 0x0C, 0x0D, 0x20, 0x85, 0xA0, 0x2028, 0x3000})
        EXPECT_FALSE(isSpecial(ushort(code))) << code;
}

TEST(Entities, MarkupCharactersAreSpecial)
{
    EXPECT_TRUE(isSpecial('&'));
    EXPECT_TRUE(isSpecial('<'));
    EXPECT_TRUE(isSpecial('>'));
}

TEST(Entities, QuotesAreSpecialOutsideOfZekoModeOnly)
{
    EXPECT_FALSE(isSpecial('"'));
    EXPECT_FALSE(isSpecial('\''));
    const ZekoMode off(false);
    EXPECT_TRUE(isSpecial('"'));
    EXPECT_TRUE(isSpecial('\''));
}

TEST(Entities, SpecialIsWhatTheRulesSayForEveryCharacter)
{
    for (const bool zeko : {true, false}) {
        const ZekoMode mode(zeko);
        for (int code = 0; code <= 0xFFFF; ++code) {
            const QChar c{ushort(code)};
            const bool quote = code == '"' || code == '\'';
            const bool named = code == '&' || code == '<' || code == '>' || (quote && !zeko);
            const bool expected = code != 0 && !c.isSpace() && (!c.isPrint() || named);
            ASSERT_EQ(isSpecial(ushort(code)), expected) << code;
        }
    }
}

TEST(Entities, EncodeReplacesEveryCharacterByTheRules)
{
    for (const bool zeko : {true, false}) {
        const ZekoMode mode(zeko);
        for (int code = 0; code <= 0xFFFF; ++code) {
            QString expected(QChar{ushort(code)});
            if (code == '>')
                expected = text("&gt;");
            else if (code == '<')
                expected = text("&lt;");
            else if (code == '&')
                expected = text("&amp;");
            else if (code == '"' && !zeko)
                expected = text("&quot;");
            else if (code == '\'' && !zeko)
                expected = text("&apos;");
            else if (isSpecial(ushort(code)))
                expected = text("&#%1;").arg(code > 0xFF ? 0 : code > 0x7F ? code + 65280 : code);
            ASSERT_EQ(encoded(ushort(code)), expected) << code;
            // Far into a text, where whole blocks are looked at, as at its start.
            const QString far = QString(37, QLatin1Char('x'));
            ASSERT_EQ(encoded(far + QChar{ushort(code)} + far), far + expected + far) << code;
        }
    }
}

TEST(Entities, EncodeKeepsAnEmptyString)
{
    QString null;
    XML::EncodeString(null);
    EXPECT_TRUE(null.isNull());
    EXPECT_EQ(encoded(text("")), text(""));
}

TEST(Entities, EncodeKeepsQuotesInZekoMode)
{
    EXPECT_EQ(encoded(text("say \"it's\"")), text("say \"it's\""));
}

TEST(Entities, EncodeReplacesQuotesOutsideOfZekoMode)
{
    const ZekoMode off(false);
    EXPECT_EQ(encoded(text("say \"it's\"")), text("say &quot;it&apos;s&quot;"));
}

TEST(Entities, EncodeGivesControlCharactersTheirNumber)
{
    EXPECT_EQ(encoded(0x01), text("&#1;"));
    EXPECT_EQ(encoded(0x1F), text("&#31;"));
    EXPECT_EQ(encoded(0x7F), text("&#127;"));
}

TEST(Entities, EncodeKeepsTheWhiteSpaceOf0085)
{
    EXPECT_EQ(encoded(0x85), QString(QChar(0x85)));
}

TEST(Entities, EncodeGivesTheUpperControlCharactersOddNumbers)
{
    EXPECT_EQ(encoded(0x80), text("&#65408;"));
    EXPECT_EQ(encoded(0x90), text("&#65424;"));
    EXPECT_EQ(encoded(0x9F), text("&#65439;"));
    EXPECT_EQ(encoded(0xAD), text("&#65453;"));
}

TEST(Entities, EncodeGivesSpecialCharactersAboveLatin1TheNumberZero)
{
    EXPECT_EQ(encoded(0x200B), text("&#0;"));
    EXPECT_EQ(encoded(0xE000), text("&#0;"));
    EXPECT_EQ(encoded(text("\U0001F600")), text("&#0;&#0;"));
}

TEST(Entities, EncodeKeepsTabAndLineBreaks)
{
    EXPECT_EQ(encoded(text("a\tb\rc\nd")), text("a\tb\rc\nd"));
}

TEST(Entities, EncodeKeepsPrintableText)
{
    EXPECT_EQ(encoded(text("Łódź, Tromsø, 東京, Αθήνα")), text("Łódź, Tromsø, 東京, Αθήνα"));
}

TEST(Entities, EncodeEncodesReferencesOnce)
{
    EXPECT_EQ(encoded(text("&amp;<")), text("&amp;amp;&lt;"));
}

TEST(Entities, EncodeLeavesOtherHoldersOfTheStringAlone)
{
    const QString original = text("a<b");
    QString copy = original;
    XML::EncodeString(copy);
    EXPECT_EQ(original, text("a<b"));
    EXPECT_EQ(copy, text("a&lt;b"));
}

TEST(Entities, DecodeKnowsTheNamesInAnyCase)
{
    EXPECT_EQ(decoded("&gt;&lt;&amp;&quot;&apos;"), text("><&\"'"));
    EXPECT_EQ(decoded("&AMP;"), text("&"));
    EXPECT_EQ(decoded("&Gt;&lT;&QuOt;&APOS;"), text("><\"'"));
}

TEST(Entities, DecodeTakesNoOtherLetterForTheSame)
{
    EXPECT_EQ(decoded("a&apo\u017F;b"), text("ab"));
}

TEST(Entities, DecodeReadsDecimalNumbers)
{
    EXPECT_EQ(decoded("&#65;"), text("A"));
    EXPECT_EQ(decoded("&#00065;"), text("A"));
    EXPECT_EQ(decoded("&#65535;"), QString(QChar(0xFFFF)));
    EXPECT_EQ(decoded("&#8364;"), text("€"));
}

TEST(Entities, DecodeRemovesNumbersOutOfRange)
{
    EXPECT_EQ(decoded("&#0;"), text(""));
    EXPECT_EQ(decoded("&#70000;"), text(""));
    EXPECT_EQ(decoded("&#65536;"), text(""));
    EXPECT_EQ(decoded("&#-1;"), text(""));
    EXPECT_EQ(decoded("&#99999999999999999999;"), text(""));
}

TEST(Entities, DecodeRemovesWhatIsNoDecimalNumber)
{
    EXPECT_EQ(decoded("&#x41;"), text(""));
    EXPECT_EQ(decoded("&#;"), text(""));
    EXPECT_EQ(decoded("&#6a;"), text(""));
}

TEST(Entities, DecodeRemovesUnknownNames)
{
    EXPECT_EQ(decoded("a&nbsp;b"), text("ab"));
    EXPECT_EQ(decoded("a&;b"), text("ab"));
    EXPECT_EQ(decoded("a& lt;b"), text("ab"));
    EXPECT_EQ(decoded("a&ltt;b"), text("ab"));
    EXPECT_EQ(decoded("a&l;b"), text("ab"));
}

TEST(Entities, DecodeSwallowsUpToTheNextSemicolon)
{
    EXPECT_EQ(decoded("a & b; c"), text("a  c"));
    EXPECT_EQ(decoded("a & b &amp; c"), text("a  c"));
}

TEST(Entities, DecodeKeepsAnAmpersandWithoutSemicolon)
{
    EXPECT_EQ(decoded("x &amp y"), text("x &amp y"));
    EXPECT_EQ(decoded("&&&"), text("&&&"));
    EXPECT_EQ(decoded(";&"), text(";&"));
}

TEST(Entities, DecodeNeverDecodesWhatItProduced)
{
    EXPECT_EQ(decoded("&amp;lt;"), text("&lt;"));
    EXPECT_EQ(decoded("&amp;amp;amp;"), text("&amp;amp;"));
}

TEST(Entities, DecodeDoesNotLookAtTheCharacterBehindARemovedReference)
{
    EXPECT_EQ(decoded("&nbsp;&lt;"), text("&lt;"));
    EXPECT_EQ(decoded("&nbsp;x&lt;"), text("x<"));
    EXPECT_EQ(decoded("&#0;&#0;"), text("&#0;"));
    EXPECT_EQ(decoded("&;&;&;"), text("&;"));
}

TEST(Entities, DecodeKeepsNullAndEmptyStrings)
{
    QString null;
    XML::DecodeString(null);
    EXPECT_TRUE(null.isNull());
    EXPECT_EQ(decoded(""), text(""));
}

TEST(Entities, DecodeLeavesOtherHoldersOfTheStringAlone)
{
    const QString original = text("a&lt;b");
    QString copy = original;
    XML::DecodeString(copy);
    EXPECT_EQ(original, text("a&lt;b"));
    EXPECT_EQ(copy, text("a<b"));
}
