#include <quire/session/ServerTime.h>

#include <QtGlobal>

#include <gtest/gtest.h>

#include <ctime>
#include <limits>

#include <quire/platform/System.h>

#include "support/Zone.h"

namespace {

__int64 origin()
{
    std::tm calendar = {};
    calendar.tm_mday = 1;
    calendar.tm_year = 70;
    calendar.tm_isdst = -1;
    return Platform::makeTime(calendar);
}

long low32(__int64 value)
{
    return static_cast<qint32>(static_cast<quint32>(static_cast<quint64>(value)));
}

} // namespace

// ---- in whatever zone the machine is --------------------------------------------------------------------------------

TEST(ConvertDate2Orvex, CountsFromLocalMidnightOf1970)
{
    EXPECT_EQ(ConvertDate2Orvex(1000000000), low32(1000000000 - origin()));
}

TEST(ConvertDate2Orvex, ConvertsOtherTimesThanZeroWithoutTheZoneDifference)
{
    EXPECT_EQ(ConvertDate2Orvex(1000000001) - ConvertDate2Orvex(1000000000), 1);
    EXPECT_EQ(ConvertDate2Orvex(-1), low32(-1 - origin()));
}

TEST(ConvertDate2Orvex, WrapsToTheLow32Bits)
{
    const __int64 t = (Q_INT64_C(1) << 31) + 5 + origin();
    EXPECT_EQ(ConvertDate2Orvex(t), std::numeric_limits<qint32>::min() + 5);
    const __int64 roundTrip = (Q_INT64_C(1) << 32) + 77 + origin();
    EXPECT_EQ(ConvertDate2Orvex(roundTrip), 77);
}

TEST(ConvertDate2Orvex, TakesTheWidestTimes)
{
    EXPECT_EQ(ConvertDate2Orvex(std::numeric_limits<qint64>::max()), low32(-1 - origin()));
    EXPECT_EQ(ConvertDate2Orvex(std::numeric_limits<qint64>::min()), low32(-origin()));
}

TEST(ConvertDate2Orvex, TakesZeroForNowMovedByTheZoneDifference)
{
    const __int64 moved = Platform::timeZoneDifference() - origin();
    const long before = low32(Platform::now() + moved);
    const long now = ConvertDate2Orvex(0);
    const long after = low32(Platform::now() + moved);
    EXPECT_LE(before, now);
    EXPECT_LE(now, after);
}

TEST(ConvertOrvex2Date, DoesNothingForANullRecord)
{
    ConvertOrvex2Date(1000000000, nullptr);
}

TEST(ConvertOrvex2Date, GivesTheLocalTime)
{
    std::tm expected = {};
    ASSERT_TRUE(Platform::localTime(1000000000, expected));
    std::tm out = {};
    ConvertOrvex2Date(1000000000, &out);
    EXPECT_EQ(out.tm_year, expected.tm_year);
    EXPECT_EQ(out.tm_yday, expected.tm_yday);
    EXPECT_EQ(out.tm_hour, expected.tm_hour);
    EXPECT_EQ(out.tm_min, 46);
    EXPECT_EQ(out.tm_sec, 40);
}

#ifdef Q_OS_WIN

TEST(WindowsOnlyConvertOrvex2Date, LeavesTheRecordForATimeThatTheRunTimeCannotConvert)
{
    std::tm out = {};
    out.tm_year = 12345;
    std::tm converted = {};
    if (Platform::localTime(std::numeric_limits<qint32>::min(), converted))
        GTEST_SKIP() << "this run-time converts times before 1970";
    ConvertOrvex2Date(std::numeric_limits<qint32>::min(), &out);
    EXPECT_EQ(out.tm_year, 12345);
}

#else

// ---- natively, where a test can choose the zone ---------------------------------------------------------------------

namespace {

long nowInSeconds()
{
    return low32(std::time(nullptr));
}

/// "Now" as server time lies \a offset seconds after plain seconds since 1970 UTC.
void expectNowMovedBy(long offset)
{
    const long before = nowInSeconds();
    const long now = ConvertDate2Orvex(0);
    const long after = nowInSeconds();
    EXPECT_LE(before + offset, now);
    EXPECT_LE(now, after + offset);
}

void expectDate(const std::tm &out, int year, int month, int day, int hour, int minute, int second)
{
    EXPECT_EQ(out.tm_year + 1900, year);
    EXPECT_EQ(out.tm_mon + 1, month);
    EXPECT_EQ(out.tm_mday, day);
    EXPECT_EQ(out.tm_hour, hour);
    EXPECT_EQ(out.tm_min, minute);
    EXPECT_EQ(out.tm_sec, second);
}

} // namespace

TEST(NativeOnlyConvertDate2Orvex, IsTheSameNumberInUTC)
{
    const Zone zone("UTC0");
    EXPECT_EQ(ConvertDate2Orvex(1000000000), 1000000000);
    expectNowMovedBy(0);
}

TEST(NativeOnlyConvertDate2Orvex, AddsTheOffsetEastOfUTC)
{
    const Zone zone(Zones::berlin);
    EXPECT_EQ(ConvertDate2Orvex(1000000000), 1000003600);
}

TEST(NativeOnlyConvertDate2Orvex, SubtractsTheOffsetWestOfUTC)
{
    const Zone zone(Zones::newYork);
    EXPECT_EQ(ConvertDate2Orvex(1000000000), 999982000);
}

TEST(NativeOnlyConvertDate2Orvex, KnowsHalfHours)
{
    const Zone zone(Zones::kolkata);
    EXPECT_EQ(ConvertDate2Orvex(1000000000), 1000019800);
}

TEST(NativeOnlyConvertDate2Orvex, GivesNowAsSecondsSince1970UTCWithoutDaylightSavingInJanuary1970)
{
    for (const char *rule : {Zones::berlin, Zones::newYork, Zones::kolkata}) {
        const Zone zone(rule);
        expectNowMovedBy(0);
    }
}

TEST(NativeOnlyConvertDate2Orvex, GivesNowMovedByDaylightSavingInJanuary1970)
{
    const Zone zone(Zones::auckland);
    expectNowMovedBy(3600);
}

TEST(NativeOnlyConvertOrvex2Date, FillsAllNineFields)
{
    const Zone zone(Zones::berlin);
    std::tm out = {};
    ConvertOrvex2Date(1000000000, &out); // 2001-09-09 01:46:40 UTC
    expectDate(out, 2001, 9, 9, 3, 46, 40);
    EXPECT_EQ(out.tm_wday, 0);
    EXPECT_EQ(out.tm_yday, 251);
    EXPECT_EQ(out.tm_isdst, 1);
}

TEST(NativeOnlyConvertOrvex2Date, IsLocalWestOfUTC)
{
    const Zone zone(Zones::newYork);
    std::tm out = {};
    ConvertOrvex2Date(1000000000, &out);
    expectDate(out, 2001, 9, 8, 21, 46, 40);
}

TEST(NativeOnlyConvertOrvex2Date, WidensWithTheSign)
{
    const Zone zone("UTC0");
    std::tm out = {};
    ConvertOrvex2Date(-1, &out);
    expectDate(out, 1969, 12, 31, 23, 59, 59);
}

TEST(NativeOnlyConvertOrvex2Date, TakesOnlyTheLow32Bits)
{
    const Zone zone("UTC0");
    std::tm out = {};
    ConvertOrvex2Date(0x7FFFFFFFL + 1, &out);
    expectDate(out, 1901, 12, 13, 20, 45, 52);
    ConvertOrvex2Date(0x100000005L, &out);
    expectDate(out, 1970, 1, 1, 0, 0, 5);
}

#endif
