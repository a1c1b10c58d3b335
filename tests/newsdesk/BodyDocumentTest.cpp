#include "BodyDocument.h"

#include <QTextBlock>
#include <QTextCursor>

#include <gtest/gtest.h>

#include "support/QtPrinting.h"
#include "support/Text.h"

using Desk::BodyDocument;

namespace {

QString shown(const BodyDocument &document)
{
    return document.toPlainText();
}

} // namespace

class BodyDocumentRoundTrip : public ::testing::TestWithParam<const char *>
{};

TEST_P(BodyDocumentRoundTrip, ComesBackAsItWas)
{
    BodyDocument document;
    document.setMarkup(text(GetParam()));
    EXPECT_TRUE(document.isFaithful());
    EXPECT_EQ(document.markup(), text(GetParam()));
    EXPECT_FALSE(document.isModified());
}

INSTANTIATE_TEST_SUITE_P(
    Bodies, BodyDocumentRoundTrip,
    ::testing::Values("<body></body>", "<body><p></p></body>", "<body><p>One.</p><p>Two.</p></body>",
                      "<body><p>A <b>bold</b> word</p></body>", "<body><p><i>it</i> <em>em</em> <u>un</u></p></body>",
                      "<body><p><i><b>both</b> one</i></p></body>", "<body><p><b><i>both</i></b></p></body>",
                      "<body><p>&lt;3 &amp; more &gt;</p></body>", "<body><p>Grüße, 日本語</p></body>",
                      "<body><p></p><p></p></body>", "<body>loose</body>", "<body>loose<p>not</p>again</body>",
                      "<body><p align=\"right\">aside</p></body>"));

TEST(BodyDocumentTest, ParagraphsBreaksAndStylesAreText)
{
    BodyDocument document;
    document.setMarkup(text("<body>\n  <p>One<br/>line</p>\n  <p><b>Two</b></p>\n</body>"));
    EXPECT_EQ(shown(document), text("One\nline\nTwo"));
    EXPECT_TRUE(document.isFaithful());
    EXPECT_GE(document.lastBlock().begin().fragment().charFormat().fontWeight(), int{QFont::Bold});
}

TEST(BodyDocumentTest, OtherElementsAreChipsThatKeepTheirMarkup)
{
    BodyDocument document;
    document.setMarkup(text("<body><p>See <a idref=\"map\"></a> here</p></body>"));
    EXPECT_EQ(document.toPlainText().count(QChar::ObjectReplacementCharacter), 1);
    EXPECT_TRUE(document.isFaithful());
    EXPECT_TRUE(document.markup().contains(text("idref"))) << document.markup().toStdString();
}

TEST(BodyDocumentTest, WhatIsTypedBehindAChipIsText)
{
    BodyDocument document;
    document.setMarkup(text("<body><p><a idref=\"map\"></a></p></body>"));
    const QString before = document.markup();
    QTextCursor cursor(&document);
    cursor.movePosition(QTextCursor::End);
    cursor.insertText(text("typed"));
    EXPECT_EQ(document.markup(), QString(before).replace(text("</p>"), text("typed</p>")));
}

TEST(BodyDocumentTest, WhatIsTypedIsEscaped)
{
    BodyDocument document;
    document.setMarkup(text("<body></body>"));
    QTextCursor(&document).insertText(text("a < b & c"));
    EXPECT_EQ(document.markup(), text("<body><p>a &lt; b &amp; c</p></body>"));
}

TEST(BodyDocumentTest, ANewLineIsANewParagraph)
{
    BodyDocument document;
    document.setMarkup(text("<body><p>One</p></body>"));
    QTextCursor cursor(&document);
    cursor.movePosition(QTextCursor::End);
    cursor.insertBlock();
    cursor.insertText(text("Two"));
    EXPECT_EQ(document.markup(), text("<body><p>One</p><p>Two</p></body>"));
}

TEST(BodyDocumentTest, BoldThatIsTakenAwayIsGone)
{
    BodyDocument document;
    document.setMarkup(text("<body><p><b><i>both</i></b></p></body>"));
    QTextCursor cursor(&document);
    cursor.select(QTextCursor::Document);
    QTextCharFormat normal;
    normal.setFontWeight(QFont::Normal);
    cursor.mergeCharFormat(normal);
    EXPECT_EQ(document.markup(), text("<body><p><i>both</i></p></body>"));
}

TEST(BodyDocumentTest, AHundredThousandLevelsDeepAreNoTrouble)
{
    const int depth = 100000;
    BodyDocument document;
    document.setMarkup(text("<body><p>") + text("<b>").repeated(depth) + text("x") + text("</b>").repeated(depth) +
                       text("</p></body>"));
    EXPECT_EQ(shown(document), text("x"));
    EXPECT_FALSE(document.isFaithful());
}
