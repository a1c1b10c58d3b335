#include <QTextCodec>
#include <gtest/gtest.h>

#include <quire/newsroom/store/FileText.h>

#include <newsroom/model/Printers.h>

using namespace Newsroom;

namespace {

FileText read(const QByteArray &data, const char *name = "file.txt")
{
    return FileText::of(data, QString::fromUtf8(name));
}

const QString greeting = QString::fromUtf8("Grüße 日本 😀");

QByteArray inCodec(const char *codec, const QByteArray &mark)
{
    QTextCodec::ConverterState state(QTextCodec::IgnoreHeader);
    return mark + QTextCodec::codecForName(codec)->fromUnicode(greeting.constData(), greeting.size(), &state);
}

} // namespace

TEST(FileTextTest, Utf8WithAndWithoutMark)
{
    EXPECT_EQ(read(greeting.toUtf8()).text, greeting);
    EXPECT_EQ(read("\xEF\xBB\xBF" + greeting.toUtf8()).text, greeting);
    EXPECT_EQ(read(greeting.toUtf8()).kind, FileText::Plain);
}

TEST(FileTextTest, Utf16IsKnownByItsMark)
{
    EXPECT_EQ(read(inCodec("UTF-16LE", "\xFF\xFE")).text, greeting);
    EXPECT_EQ(read(inCodec("UTF-16BE", "\xFE\xFF")).text, greeting);
}

TEST(FileTextTest, WhatIsNoUtf8IsLatin1)
{
    EXPECT_EQ(read("caf\xE9").text, QString::fromUtf8("café"));
    EXPECT_EQ(read("\xC3").text, QString::fromUtf8("Ã"));
}

TEST(FileTextTest, AnEmptyFileIsAnEmptyText)
{
    EXPECT_EQ(read("").kind, FileText::Plain);
    EXPECT_EQ(read("").text, QString());
    EXPECT_EQ(read("\xEF\xBB\xBF").text, QString());
}

TEST(FileTextTest, LineEndsBecomeLineFeedsAndTheLastOneGoes)
{
    EXPECT_EQ(read("a\r\nb\rc\n").text, QStringLiteral("a\nb\nc"));
    EXPECT_EQ(read("a\n\n").text, QStringLiteral("a\n"));
}

TEST(FileTextTest, NulsMakeAFileBinary)
{
    EXPECT_EQ(read(QByteArray("a\0b", 3)).kind, FileText::Binary);
    EXPECT_EQ(read(QByteArray("\xFF\xFE"
                              "a\0\0\0",
                              6))
                  .kind,
              FileText::Binary);
    EXPECT_EQ(read(QByteArray("a\0b", 3)).text, QString());
}

TEST(FileTextTest, CompressedFilesAreKnownByTheirStart)
{
    for (const char *start : {"\x1F\x8B\x08", "BZh9", "\xFD\x37zXZ", "\x28\xB5\x2F\xFD", "PK\x03\x04"})
        EXPECT_EQ(read(QByteArray(start) + "rest").kind, FileText::Compressed);
}

TEST(FileTextTest, MarkupBecomesTheTextOfItsContent)
{
    const FileText file =
        read("<?xml version=\"1.0\"?><doc><title>One &amp; two</title><para>Some <b>bold</b>\n  text.</para>"
             "<!-- no --><empty/></doc>");
    EXPECT_EQ(file.kind, FileText::Markup);
    EXPECT_EQ(file.text, QStringLiteral("One & two\nSome bold text."));
}

TEST(FileTextTest, PagesLoseScriptsAndStyles)
{
    const FileText file = read("<html><head><style>p {}</style><script>x()</script></head>"
                               "<body><p>A&nbsp;page &copy; us</p><p>B<br/>C</p></body></html>",
                               "index.html");
    EXPECT_EQ(file.kind, FileText::Markup);
    EXPECT_EQ(file.text, QString::fromUtf8("A page © us\nB\nC"));
}

TEST(FileTextTest, MarkupThatIsNotWellFormedIsPlainText)
{
    const FileText file = read("<html><p>one<p>two</html>", "page.html");
    EXPECT_EQ(file.kind, FileText::Plain);
    EXPECT_EQ(file.text, QStringLiteral("<html><p>one<p>two</html>"));
}

TEST(FileTextTest, MarkupIsKnownByNameOrStart)
{
    EXPECT_EQ(read("<a>x</a>", "a.XML").kind, FileText::Markup);
    EXPECT_EQ(read("<a>x</a>", "a.txt").kind, FileText::Plain);
    EXPECT_EQ(read("<!DOCTYPE html>\n<html><p>x</p></html>", "a").kind, FileText::Markup);
}

TEST(FileTextTest, EntitiesThatExplodeEndIt)
{
    QByteArray bomb = "<?xml version=\"1.0\"?><!DOCTYPE d [<!ENTITY a0 \"ha\">";
    for (int i = 1; i < 30; ++i)
        bomb += "<!ENTITY a" + QByteArray::number(i) + " \"&a" + QByteArray::number(i - 1) + ";&a" +
                QByteArray::number(i - 1) + ";\">";
    bomb += "]><d>&a29;</d>";
    EXPECT_EQ(read(bomb).kind, FileText::Plain);
}

TEST(FileTextTest, DeepMarkupNeedsNoStack)
{
    const int depth = 100000;
    const QByteArray deep = QByteArray("<a>").repeated(depth) + "x" + QByteArray("</a>").repeated(depth);
    EXPECT_EQ(read(deep, "d.xml").text, QStringLiteral("x"));
}
