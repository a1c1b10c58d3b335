#include <gtest/gtest.h>

#include "markup/Support.h"
#include "src/markup/TextSink.h"

using namespace MarkupTest;
using XML::TextSink;

TEST(TextSink, AppendsPieces)
{
    QString out = text("a");
    {
        TextSink sink(out);
        sink.put(text("bc"));
        sink.put(QLatin1Char('d'));
        sink.put(u"ef");
        sink.put(text(""));
    }
    EXPECT_EQ(out, text("abcdef"));
}

TEST(TextSink, GrowsAsLongAsItIsNeeded)
{
    QString out;
    {
        TextSink sink(out);
        for (int i = 0; i < 100000; ++i)
            sink.put(QString::number(i % 10));
    }
    EXPECT_EQ(out, text("0123456789").repeated(10000));
}

TEST(TextSink, LeavesOutWhatDoesNotFitAndAllThatFollows)
{
    QString out = text("12345");
    {
        TextSink sink(out, 10);
        sink.put(text("678"));
        EXPECT_FALSE(sink.isFull());
        sink.put(text("abc"));
        EXPECT_TRUE(sink.isFull());
        sink.put(text("9"));
        sink.put(QLatin1Char('0'));
    }
    EXPECT_EQ(out, text("12345678"));
}

TEST(TextSink, FillsUpToTheLimit)
{
    QString out;
    {
        TextSink sink(out, 1000);
        for (int i = 0; i < 1000; ++i)
            sink.put(QLatin1Char('x'));
        EXPECT_FALSE(sink.isFull());
        sink.put(QLatin1Char('x'));
        EXPECT_TRUE(sink.isFull());
    }
    EXPECT_EQ(out.size(), 1000);
}

TEST(TextSink, TakesAPieceThatJustFits)
{
    QString out;
    {
        TextSink sink(out, 10);
        sink.put(text("1234567890"));
        EXPECT_FALSE(sink.isFull());
    }
    EXPECT_EQ(out, text("1234567890"));
}

TEST(TextSink, StaysFullBesideALongText)
{
    QString out = text("123456");
    {
        TextSink sink(out, 4);
        sink.put(text("7"));
        EXPECT_TRUE(sink.isFull());
    }
    EXPECT_EQ(out, text("123456"));
}

TEST(TextSink, LetsOthersAppendBetweenFlushAndResume)
{
    QString out;
    {
        TextSink sink(out);
        sink.put(text("a"));
        sink.flush();
        EXPECT_EQ(sink.text(), text("a"));
        sink.text() += text("b");
        sink.resume();
        sink.put(text("c"));
    }
    EXPECT_EQ(out, text("abc"));
}

TEST(TextSink, KeepsWhatOthersAppendedWhenItGoesWithoutResume)
{
    QString out;
    {
        TextSink sink(out);
        sink.put(text("a"));
        sink.flush();
        sink.text() += text("b"); // and then they raise
    }
    EXPECT_EQ(out, text("ab"));
}

TEST(TextSink, LeavesOtherHoldersOfTheStringAlone)
{
    QString out = text("a");
    out.reserve(100);
    const QString other = out;
    {
        TextSink sink(out);
        sink.put(text("b"));
    }
    EXPECT_EQ(other, text("a"));
    EXPECT_EQ(out, text("ab"));
}

TEST(TextSink, LimitIsWhatAStringCanHold)
{
    EXPECT_GT(XML::MaxTextLength, 1073741000);
    EXPECT_LE(qint64(XML::MaxTextLength + 1) * 2 + qint64(sizeof(QStringData)), qint64(INT_MAX));
}
