#include "TextWidth.h"

#include <gtest/gtest.h>

#include "support/QtPrinting.h"

#include <QStringList>

using namespace Tool;

namespace {

TEST(TextWidth, CountsOneColumnForALetter)
{
    EXPECT_EQ(textWidth(QStringLiteral("NEWS.SPORT")), 10);
    EXPECT_EQ(textWidth(QString()), 0);
}

TEST(TextWidth, CountsTwoColumnsForEastAsianWideCharacters)
{
    EXPECT_EQ(textWidth(QStringLiteral("\u65e5\u672c\u8a9e")), 6);
    EXPECT_EQ(textWidth(QStringLiteral("\uff21\uff22")), 4);
    EXPECT_EQ(textWidth(QStringLiteral("\ud55c\uad6d")), 4);
}

TEST(TextWidth, CountsOneColumnForHalfWidthKana)
{
    EXPECT_EQ(textWidth(QStringLiteral("\uff76\uff85")), 2);
}

TEST(TextWidth, CountsWideCharactersBeyondTheBasicPlane)
{
    EXPECT_EQ(textWidth(QStringLiteral("\U00020000")), 2);
    EXPECT_EQ(textWidth(QStringLiteral("\U0001D400")), 1);
}

TEST(TextWidth, CombiningMarksTakeNoColumn)
{
    EXPECT_EQ(textWidth(QStringLiteral("e\u0301a\u0308\u0323")), 2);
    EXPECT_EQ(textWidth(QStringLiteral("a\u20dd")), 1);
    EXPECT_EQ(textWidth(QStringLiteral("\u304b\u3099")), 2);
}

TEST(TextWidth, ADecomposedKoreanSyllableTakesTwoColumns)
{
    EXPECT_EQ(textWidth(QStringLiteral("\u1112\u1161\u11ab")), 2);
}

TEST(TextWidth, ASoftHyphenTakesAColumnAndOtherFormatCharactersNone)
{
    EXPECT_EQ(textWidth(QStringLiteral("a\u00adb")), 3);
    EXPECT_EQ(textWidth(QStringLiteral("a\u200bb\u2068\u2069\ufeff")), 2);
}

TEST(TextWidth, AnEmojiTakesTwoColumnsHoweverManyCharactersItHas)
{
    EXPECT_EQ(textWidth(QStringLiteral("\U0001F600")), 2);
    EXPECT_EQ(textWidth(QStringLiteral("\U0001F44D\U0001F3FD")), 2);
    EXPECT_EQ(textWidth(QStringLiteral("\U0001F468\u200d\U0001F469\u200d\U0001F467")), 2);
    EXPECT_EQ(textWidth(QStringLiteral("\u2764\ufe0f")), 2);
}

TEST(TextWidth, AFlagTakesTwoColumnsAndALoneRegionalIndicatorOne)
{
    EXPECT_EQ(textWidth(QStringLiteral("\U0001F1E9\U0001F1EA\U0001F1EB\U0001F1F7")), 4);
    EXPECT_EQ(textWidth(QStringLiteral("\U0001F1E9")), 1);
}

TEST(TextWidth, ArabicAndHebrewLettersTakeOneColumnEach)
{
    EXPECT_EQ(textWidth(QStringLiteral("\u0623\u062e\u0628\u0627\u0631")), 5);
    EXPECT_EQ(textWidth(QStringLiteral("\u05e9\u05b8\u05dc\u05d5\u05dd")), 4);
}

TEST(TextWidth, ALoneSurrogateTakesOneColumn)
{
    EXPECT_EQ(textWidth(QString(QChar(0xD83D))), 1);
    EXPECT_EQ(textWidth(QString(QChar(0xDE00)) + QLatin1Char('a')), 2);
}

TEST(FitText, ATextThatFitsStaysAsItIs)
{
    EXPECT_EQ(fitText(QStringLiteral("SCORES"), 6), QStringLiteral("SCORES"));
    EXPECT_EQ(fitText(QString(), 3), QString());
}

TEST(FitText, ALongerTextEndsInAnEllipsisThatIsCountedIn)
{
    EXPECT_EQ(fitText(QStringLiteral("SCORES"), 5), QStringLiteral("SCOR\u2026"));
    EXPECT_EQ(fitText(QStringLiteral("SCORES"), 1), QStringLiteral("\u2026"));
}

TEST(FitText, NothingFitsIntoNoColumns)
{
    EXPECT_EQ(fitText(QStringLiteral("SCORES"), 0), QString());
    EXPECT_EQ(fitText(QStringLiteral("SCORES"), -4), QString());
}

TEST(FitText, DoesNotCutAWideCharacterInHalf)
{
    EXPECT_EQ(fitText(QStringLiteral("\u65e5\u672c\u8a9e"), 4), QStringLiteral("\u65e5\u2026"));
    EXPECT_EQ(fitText(QStringLiteral("\u65e5\u672c\u8a9e"), 5), QStringLiteral("\u65e5\u672c\u2026"));
}

TEST(FitText, DoesNotCutMarksOffTheirLetter)
{
    EXPECT_EQ(fitText(QStringLiteral("e\u0301e\u0301e\u0301"), 2), QStringLiteral("e\u0301\u2026"));
}

TEST(FitText, DoesNotCutASurrogatePair)
{
    EXPECT_EQ(fitText(QStringLiteral("a\U0001F600b\U0001F600"), 4), QStringLiteral("a\U0001F600\u2026"));
}

TEST(PadText, FillsUpByColumnsNotByCharacters)
{
    EXPECT_EQ(padText(QStringLiteral("\u65e5\u672c"), 6), QStringLiteral("\u65e5\u672c  "));
    EXPECT_EQ(padText(QStringLiteral("e\u0301"), 3), QStringLiteral("e\u0301  "));
    EXPECT_EQ(padTextLeft(QStringLiteral("12"), 5), QStringLiteral("   12"));
}

TEST(PadText, LeavesAWiderTextAlone)
{
    EXPECT_EQ(padText(QStringLiteral("SCORES"), 3), QStringLiteral("SCORES"));
    EXPECT_EQ(padTextLeft(QStringLiteral("SCORES"), 3), QStringLiteral("SCORES"));
}

TEST(Isolate, WrapsRightToLeftText)
{
    EXPECT_EQ(isolate(QStringLiteral("\u0623\u062e")), QStringLiteral("\u2068\u0623\u062e\u2069"));
    EXPECT_EQ(isolate(QStringLiteral("abc \u05d0")), QStringLiteral("\u2068abc \u05d0\u2069"));
}

TEST(Isolate, WrapsTextThatOverridesTheDirection)
{
    EXPECT_EQ(isolate(QStringLiteral("a\u202eb")), QStringLiteral("\u2068a\u202eb\u2069"));
}

TEST(Isolate, LeavesLeftToRightTextAlone)
{
    EXPECT_EQ(isolate(QStringLiteral("Caf\u00e9 \u65e5\u672c 12")), QStringLiteral("Caf\u00e9 \u65e5\u672c 12"));
}

TEST(Visible, ShowsControlCharactersAsPictures)
{
    EXPECT_EQ(visible(QStringLiteral("a\u001b[2Jb\nc\td\u007f")), QStringLiteral("a\u241b[2Jb\u240ac\u2409d\u2421"));
}

TEST(Visible, ReplacesTheUpperControlCharactersAndLineSeparators)
{
    EXPECT_EQ(visible(QStringLiteral("a\u009b\u2028\u2029")), QStringLiteral("a\ufffd\ufffd\ufffd"));
}

TEST(WrapText, BreaksAtBlanks)
{
    EXPECT_EQ(wrapText(QStringLiteral("the quick brown fox"), 10),
              (QStringList{QStringLiteral("the quick"), QStringLiteral("brown fox")}));
    EXPECT_EQ(wrapText(QStringLiteral("the quick brown fox"), 9),
              (QStringList{QStringLiteral("the quick"), QStringLiteral("brown fox")}));
}

TEST(WrapText, BreaksAWordThatIsLongerThanALine)
{
    EXPECT_EQ(wrapText(QStringLiteral("abcdefgh"), 3),
              (QStringList{QStringLiteral("abc"), QStringLiteral("def"), QStringLiteral("gh")}));
    EXPECT_EQ(wrapText(QStringLiteral("\u65e5\u672c\u8a9e"), 5),
              (QStringList{QStringLiteral("\u65e5\u672c"), QStringLiteral("\u8a9e")}));
}

TEST(WrapText, KeepsLineFeedsAndEmptyLines)
{
    EXPECT_EQ(wrapText(QStringLiteral("a\n\nb"), 10),
              (QStringList{QStringLiteral("a"), QString(), QStringLiteral("b")}));
    EXPECT_EQ(wrapText(QString(), 10), QStringList{QString()});
}

TEST(WrapText, EveryLineFitsAndNothingIsLost)
{
    const QString text =
        QStringLiteral("Le caf\u00e9 \u65e5\u672c\u8a9e \U0001F600\U0001F600 \u0623\u062e\u0628\u0627\u0631 "
                       "wordthatisratherlong end");
    for (int columns = 2; columns < 60; ++columns) {
        const QStringList lines = wrapText(text, columns);
        for (const QString &line : lines)
            EXPECT_LE(textWidth(line), columns);
        EXPECT_EQ(lines.join(QString()).remove(QLatin1Char(' ')), QString(text).remove(QLatin1Char(' ')));
    }
}

} // namespace
