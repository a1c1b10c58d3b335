// Values of story fields and what the codec makes of them, row by row, and there and back again.

#include <quire/forms/AttributeCodec.h>

#include <gtest/gtest.h>

#include "support/QtPrinting.h"
#include "support/Text.h"

using namespace Quire;

namespace {

struct Row
{
    const char *name;
    const char *from;
    const char *to;
};

/// As stored, and as it comes back from people who leave it alone.
const Row bothWays[] = {
    // durations below a minute, below an hour, and longer
    {"total-time", "0", "0:00"},
    {"total-time", "1", "0:01"},
    {"total-time", "9", "0:09"},
    {"total-time", "10", "0:10"},
    {"total-time", "59", "0:59"},
    {"total-time", "60", "1:00"},
    {"total-time", "61", "1:01"},
    {"total-time", "119", "1:59"},
    {"total-time", "599", "9:59"},
    {"total-time", "600", "10:00"},
    {"total-time", "3599", "59:59"},
    {"total-time", "3600", "1:00:00"},
    {"total-time", "3601", "1:00:01"},
    {"total-time", "3660", "1:01:00"},
    {"total-time", "3725", "1:02:05"},
    {"total-time", "7199", "1:59:59"},
    {"total-time", "7200", "2:00:00"},
    {"total-time", "35999", "9:59:59"},
    {"total-time", "36000", "10:00:00"},
    {"total-time", "86399", "23:59:59"},
    {"total-time", "86400", "24:00:00"},
    {"total-time", "90000", "25:00:00"},
    {"total-time", "360000", "100:00:00"},
    {"total-time", "3600000", "1000:00:00"},
    {"total-time", "2147483647", "596523:14:07"},
    {"total-time", "-1", "0:-1"},
    {"total-time", "-9", "0:-9"},
    {"total-time", "-10", "0:-10"},
    {"total-time", "-59", "0:-59"},
    {"total-time", "-60", "-1:00"},
    {"total-time", "-61", "-1:-1"},
    {"total-time", "-90", "-1:-30"},
    {"total-time", "-3599", "-59:-59"},
    {"total-time", "-3600", "-60:00"},
    {"total-time", "-3601", "-60:-1"},
    {"total-time", "-7325", "-122:-5"},
    {"total-time", "-2147483648", "-35791394:-8"},
    {"audio-time", "0", "0:00"},
    {"audio-time", "5", "0:05"},
    {"audio-time", "75", "1:15"},
    {"audio-time", "4000", "1:06:40"},
    {"runs-time", "0", "0:00"},
    {"runs-time", "30", "0:30"},
    {"runs-time", "1800", "30:00"},
    {"runs-time", "5400", "1:30:00"},
    {"mos-duration", "0", "0:00"},
    {"mos-duration", "12", "0:12"},
    {"mos-duration", "754", "12:34"},
    {"mos-duration", "45296", "12:34:56"},
    {"tape-time", "0", "0:00"},
    {"tape-time", "150", "2:30"},
    {"tape-time", "3600", "1:00:00"},
    {"tape-time", "-30", "0:-30"},
    {"Total-Time", "59", "0:59"},
    {"TAPE-TIME", "150", "2:30"},
    // times of day
    {"back-time", "@0", "0:00:00"},
    {"back-time", "@1", "0:00:01"},
    {"back-time", "@59", "0:00:59"},
    {"back-time", "@60", "0:01:00"},
    {"back-time", "@90", "0:01:30"},
    {"back-time", "@3599", "0:59:59"},
    {"back-time", "@3600", "1:00:00"},
    {"back-time", "@3661", "1:01:01"},
    {"back-time", "@35999", "9:59:59"},
    {"back-time", "@36000", "10:00:00"},
    {"back-time", "@86399", "23:59:59"},
    {"back-time", "@86400", "24:00:00"},
    {"back-time", "@360000", "100:00:00"},
    {"back-time", "@2147483647", "596523:14:07"},
    {"back-time", "@-1", "0:00:-1"},
    {"back-time", "@-90", "0:-1:-30"},
    {"back-time", "@-3725", "-1:-2:-5"},
    {"back-time", "@-2147483648", "-596523:-14:-8"},
    {"cume-time", "@0", "0:00:00"},
    {"cume-time", "@45", "0:00:45"},
    {"cume-time", "@64800", "18:00:00"},
    {"Cume-Time", "@10", "0:00:10"},
    // relative times
    {"back-time", "0", "+0:00:00"},
    {"back-time", "1", "+0:00:01"},
    {"back-time", "59", "+0:00:59"},
    {"back-time", "60", "+0:01:00"},
    {"back-time", "90", "+0:01:30"},
    {"back-time", "3600", "+1:00:00"},
    {"back-time", "86400", "+24:00:00"},
    {"back-time", "2147483647", "+596523:14:07"},
    {"back-time", "-1", "+0:00:-1"},
    {"back-time", "-61", "+0:-1:-1"},
    {"back-time", "-3600", "+-1:00:00"},
    {"back-time", "-3725", "+-1:-2:-5"},
    {"back-time", "-2147483648", "+-596523:-14:-8"},
    {"cume-time", "0", "+0:00:00"},
    {"cume-time", "10", "+0:00:10"},
    {"cume-time", "7384", "+2:03:04"},
    {"BACK-TIME", "90", "+0:01:30"},
    // what nothing is done to
    {"back-time", "", ""},
    {"cume-time", "", ""},
    {"title", "Storm warning", "Storm warning"},
    {"title", "90", "90"},
    {"title", "@90", "@90"},
    {"title", "", ""},
    {"page-number", "12", "12"},
    {"create-by", "ann", "ann"},
    {"tape-number", "1:30", "1:30"},
    {"status", "OK", "OK"},
    {"time", "3600", "3600"},
    {"total_time", "3600", "3600"},
    {"total-times", "3600", "3600"},
    {"x-total-time", "3600", "3600"},
    {" total-time", "3600", "3600"},
    {"", "3600", "3600"},
    {"create-date", "no date", "no date"},
    {"air-date", "no date", "no date"},
    {"air-date", "", ""},
};

/// Stored values that are not as the codec would store them.
const Row decoded[] = {
    {"total-time", "", ""},
    {"total-time", "abc", "abc"},
    {"total-time", "12x", "12x"},
    {"total-time", "x12", "x12"},
    {"total-time", "1.5", "1.5"},
    {"total-time", "1,000", "1,000"},
    {"total-time", "1 000", "1 000"},
    {"total-time", "0x10", "0x10"},
    {"total-time", "1e3", "1e3"},
    {"total-time", "@60", "@60"},
    {"total-time", "1:00", "1:00"},
    {"total-time", "--5", "--5"},
    {"total-time", "+", "+"},
    {"total-time", "-", "-"},
    {"total-time", "+60", "1:00"},
    {"total-time", "060", "1:00"},
    {"total-time", "00000000000000000060", "1:00"},
    {"total-time", " 60", "1:00"},
    {"total-time", "60 ", "1:00"},
    {"total-time", "\t60\n", "1:00"},
    {"total-time", " abc ", "abc"},
    {"total-time", "  ", ""},
    {"total-time", "2147483648", "2147483648"},
    {"total-time", "-2147483649", "-2147483649"},
    {"total-time", "99999999999999999999", "99999999999999999999"},
    {"total-time", "\xD9\xA3", "\xD9\xA3"}, // a digit of another script
    {"back-time", "@", "0:00:00"},
    {"back-time", "@@5", "0:00:00"},
    {"back-time", "@abc", "0:00:00"},
    {"back-time", "@1:00", "0:00:00"},
    {"back-time", "@ 60", "0:01:00"},
    {"back-time", "@60 ", "0:01:00"},
    {"back-time", "@+60", "0:01:00"},
    {"back-time", "@2147483648", "0:00:00"},
    {"back-time", " @60", "+0:00:00"},
    {"back-time", " ", "+0:00:00"},
    {"back-time", "abc", "+0:00:00"},
    {"back-time", "60@", "+0:00:00"},
    {"back-time", " 60 ", "+0:01:00"},
    {"back-time", "+60", "+0:01:00"},
    {"back-time", "2147483648", "+0:00:00"},
    {"cume-time", "-2147483649", "+0:00:00"},
    {"page-number", "  12 ", "12"},
    {"title", "\t a  b \n", "a  b"},
    {"title", "   ", ""},
    {"title", "\xC2\xA0x\xE2\x80\x83", "x"}, // other blanks
    {"create-date", " no date ", "no date"},
    {"air-date", "99999999999", "99999999999"},
    {"modify-date", "1.5", "1.5"},
    {"modify-by", " ann ", "ann"},
};

/// What people write and the server gets.
const Row encoded[] = {
    {"tape-time", "2:30", "150"},
    {"tape-time", "1:00:00", "3600"},
    {"tape-time", "x:10", ""},
    {"tape-time", "90", "90"},
    {"tape-time", "0", "0"},
    {"tape-time", "", ""},
    {"tape-time", " ", ""},
    {"tape-time", ":", ""},
    {"tape-time", "::", ""},
    {"tape-time", ":30", ""},
    {"tape-time", "::30", ""},
    {"tape-time", "5:", "5"},
    {"tape-time", "5::", "5"},
    {"tape-time", "5::7", "5"},
    {"tape-time", "5:x", "5"},
    {"tape-time", "5:x:7", "5"},
    {"tape-time", "5:6:", "306"},
    {"tape-time", "5:6:x", "306"},
    {"tape-time", "5:6:7", "18367"},
    {"tape-time", "5:6:7:8", "18367"},
    {"tape-time", "5:6:7:x", "18367"},
    {"tape-time", "5:6:7:", "18367"},
    {"tape-time", "5:6::8", "306"},
    {"tape-time", "0:0:5", "5"},
    {"tape-time", "00:00:05", "5"},
    {"tape-time", "0:90", "90"},
    {"tape-time", "1:90", "150"},
    {"tape-time", "90:00", "5400"},
    {"tape-time", "0:100:0", "6000"},
    {"tape-time", " 1 : 30 ", "90"},
    {"tape-time", "+1:30", "90"},
    {"tape-time", "1:+30", "90"},
    {"tape-time", "1:-30", "30"},
    {"tape-time", "-1:30", "-30"},
    {"tape-time", "-1:-30", "-90"},
    {"tape-time", "@90", ""},
    {"tape-time", "1.5", ""},
    {"tape-time", "1,5", ""},
    {"tape-time", "0x10", ""},
    {"tape-time", "1;30", ""},
    {"tape-time", "1m30", ""},
    {"tape-time", "2147483647", "2147483647"},
    {"tape-time", "2147483648", ""},
    {"tape-time", "1:2147483648", "1"},
    {"tape-time", "1:1:2147483648", "61"},
    {"total-time", "1:02:05", "3725"},
    {"audio-time", "x", ""},
    {"runs-time", "x", ""},
    {"mos-duration", "x", ""},
    {"total-time", "x", ""},
    {"TOTAL-TIME", "x", ""},
    {"cume-time", "+0:10", "10"},
    {"cume-time", "0:10", "@10"},
    {"cume-time", "10", "@10"},
    {"cume-time", "+10", "10"},
    {"cume-time", "+", ""},
    {"cume-time", "+x", ""},
    {"cume-time", "x", ""},
    {"cume-time", " ", ""},
    {"cume-time", ":", ""},
    {"cume-time", "@10", ""},
    {"cume-time", "+@10", ""},
    {"cume-time", "++10", "10"},
    {"cume-time", "+ 0:10", "10"},
    {"cume-time", " +0:10", "@10"},
    {"cume-time", "18:00:00", "@64800"},
    {"cume-time", "18:00", "@1080"},
    {"cume-time", "18:00:x", "@1080"},
    {"cume-time", "-0:10", "@10"},
    {"cume-time", "-10", "@-10"},
    {"cume-time", "+-10", "-10"},
    {"back-time", "1:2:3:4", "@3723"},
    {"back-time", "+1:2:3:4", "3723"},
    {"Back-Time", "+0:10", "10"},
    {"create-date", "anything", "anything"},
    {"create-date", "09/09/01 01:46:40", "09/09/01 01:46:40"},
    {"air-date", " 09/09/01 ", " 09/09/01 "},
    {"title", "  two words ", "  two words "},
    {"title", "1:30", "1:30"},
    {"create-by", " x ", " x "},
    {"modify-dev", "1:30", "1:30"},
    {"", " 1:30 ", " 1:30 "},
};

QString decode(const QString &name, QString value)
{
    DecodeAttribute(name, value);
    return value;
}

QString encode(const QString &name, QString value)
{
    EncodeAttribute(name, value);
    return value;
}

} // namespace

TEST(CodecTable, IsDecoded)
{
    for (const Row &row : bothWays)
        EXPECT_EQ(decode(text(row.name), text(row.from)), text(row.to)) << row.name << ' ' << row.from;
    for (const Row &row : decoded)
        EXPECT_EQ(decode(text(row.name), text(row.from)), text(row.to)) << row.name << ' ' << row.from;
}

TEST(CodecTable, IsEncoded)
{
    for (const Row &row : bothWays)
        EXPECT_EQ(encode(text(row.name), text(row.to)), text(row.from)) << row.name << ' ' << row.to;
    for (const Row &row : encoded)
        EXPECT_EQ(encode(text(row.name), text(row.from)), text(row.to)) << row.name << ' ' << row.from;
}

TEST(CodecTable, ComesBackWhenItIsEncodedAndDecoded)
{
    for (const Row &row : bothWays)
        EXPECT_EQ(decode(text(row.name), encode(text(row.name), text(row.to))), text(row.to)) << row.name;
    for (const Row &row : encoded) {
        const QString name = text(row.name);
        const QString once = encode(name, text(row.from));
        EXPECT_EQ(encode(name, decode(name, once)), once.trimmed()) << row.name << ' ' << row.from;
    }
}

TEST(CodecTable, IsDecodedTheSameWhateverTheLetterCaseOfTheName)
{
    for (const Row &row : bothWays) {
        EXPECT_EQ(decode(text(row.name).toUpper(), text(row.from)), text(row.to)) << row.name;
        EXPECT_EQ(encode(text(row.name).toUpper(), text(row.to)), text(row.from)) << row.name;
    }
}

TEST(CodecTable, HoldsForEverySecondOfADayAndMore)
{
    for (int seconds = -100000; seconds <= 100000; ++seconds) {
        const QString relative = QString::number(seconds);
        const QString absolute = QLatin1Char('@') + relative;
        ASSERT_EQ(encode(text("tape-time"), decode(text("tape-time"), relative)), relative);
        ASSERT_EQ(encode(text("back-time"), decode(text("back-time"), relative)), relative);
        ASSERT_EQ(encode(text("back-time"), decode(text("back-time"), absolute)), absolute);
    }
}
