#include <quire/forms/AttributeCodec.h>

#include <QDateTime>
#include <QtGlobal>

#include <gtest/gtest.h>

#include <cctype>
#include <clocale>
#include <cstdio>
#include <ctime>
#include <limits>
#include <string>

#include <quire/platform/System.h>
#include <quire/session/ServerTime.h>

#include "support/QtPrinting.h"
#include "support/Text.h"
#include "support/Zone.h"

using namespace Quire;

namespace {

QString decode(const char *name, QString value)
{
    DecodeAttribute(QLatin1String(name), value);
    return value;
}

QString decode(const char *name, const char *value)
{
    return decode(name, text(value));
}

QString encode(const char *name, const char *value)
{
    QString changed = text(value);
    EncodeAttribute(QLatin1String(name), changed);
    return changed;
}

QString date(long serverTime)
{
    return decode("create-date", QString::number(serverTime));
}

/// What C's own formatting makes of these parts.
QString printed(const char *format, long a, long b)
{
    char buffer[64];
    std::snprintf(buffer, sizeof buffer, format, a, b);
    return QString::fromLatin1(buffer);
}

QString printed(const char *format, long a, long b, long c)
{
    char buffer[64];
    std::snprintf(buffer, sizeof buffer, format, a, b, c);
    return QString::fromLatin1(buffer);
}

const int manySeconds[] = {std::numeric_limits<int>::min(),
                           -1000000000,
                           -86401,
                           -3661,
                           -3600,
                           -61,
                           -60,
                           -59,
                           -1,
                           0,
                           1,
                           59,
                           60,
                           61,
                           3599,
                           3600,
                           3661,
                           86401,
                           1000000000,
                           std::numeric_limits<int>::max()};

} // namespace

// ---- read-only fields -----------------------------------------------------------------------------------------------

TEST(IsAttributeReadOnly, IsTrueForEachFieldThatTheServerKeeps)
{
    for (const char *name : {"create-by", "create-date", "item-channel", "line-count", "modify-by", "modify-date",
                             "modify-dev", "mos-active", "mos-subevent", "mos-title", "ready", "status", "total-time"})
        EXPECT_TRUE(IsAttributeReadOnly(text(name))) << name;
}

TEST(IsAttributeReadOnly, IsFalseForAllOthers)
{
    for (const char *name : {"air-date", "title", "audio-time", "back-time", "cume-time", "runs-time", "tape-time",
                             "mos-duration", "mos", "create", "statuses", "stat", "ready ", " ready", "create_by"})
        EXPECT_FALSE(IsAttributeReadOnly(text(name))) << name;
}

TEST(IsAttributeReadOnly, DoesNotLookAtLetterCase)
{
    EXPECT_TRUE(IsAttributeReadOnly(text("Modify-Date")));
    EXPECT_TRUE(IsAttributeReadOnly(text("TOTAL-TIME")));
}

TEST(IsAttributeReadOnly, IsFalseForNoName)
{
    EXPECT_FALSE(IsAttributeReadOnly(QString()));
    EXPECT_FALSE(IsAttributeReadOnly(text("")));
}

// ---- durations and clock times, shown -------------------------------------------------------------------------------

TEST(DecodeAttribute, ShowsADurationBelowAnHourAsMinutesAndSeconds)
{
    EXPECT_EQ(decode("total-time", "59"), text("0:59"));
    EXPECT_EQ(decode("total-time", "3599"), text("59:59"));
}

TEST(DecodeAttribute, ShowsALongerDurationWithHours)
{
    EXPECT_EQ(decode("total-time", "3600"), text("1:00:00"));
    EXPECT_EQ(decode("total-time", "3725"), text("1:02:05"));
}

TEST(DecodeAttribute, DoesNotReduceHoursToDays)
{
    EXPECT_EQ(decode("audio-time", "90000"), text("25:00:00"));
    EXPECT_EQ(decode("cume-time", "@90000"), text("25:00:00"));
}

TEST(DecodeAttribute, KnowsEveryDuration)
{
    for (const char *name : {"total-time", "audio-time", "runs-time", "mos-duration", "tape-time"})
        EXPECT_EQ(decode(name, "61"), text("1:01")) << name;
}

TEST(DecodeAttribute, LeavesADurationThatIsNoNumber)
{
    EXPECT_EQ(decode("total-time", "abc"), text("abc"));
    EXPECT_EQ(decode("total-time", ""), text(""));
}

TEST(DecodeAttribute, LeavesADurationThatTakesMoreThan32Bits)
{
    EXPECT_EQ(decode("total-time", "2147483647"), text("596523:14:07"));
    EXPECT_EQ(decode("total-time", "2147483648"), text("2147483648"));
    EXPECT_EQ(decode("total-time", "-2147483649"), text("-2147483649"));
}

TEST(DecodeAttribute, PrintsDurationsAsCDoes)
{
    for (const long seconds : manySeconds) {
        const long minutes = seconds / 60;
        const QString expected = minutes < 60 ? printed("%ld:%02ld", minutes, seconds % 60)
                                              : printed("%ld:%02ld:%02ld", minutes / 60, minutes % 60, seconds % 60);
        EXPECT_EQ(decode("runs-time", QString::number(seconds)), expected);
    }
}

TEST(DecodeAttribute, ShowsATimeOfDayWithoutSign)
{
    EXPECT_EQ(decode("back-time", "@0"), text("0:00:00"));
    EXPECT_EQ(decode("cume-time", "@3600"), text("1:00:00"));
}

TEST(DecodeAttribute, ShowsARelativeTimeWithAPlus)
{
    EXPECT_EQ(decode("back-time", "90"), text("+0:01:30"));
    EXPECT_EQ(decode("cume-time", "0"), text("+0:00:00"));
}

TEST(DecodeAttribute, LeavesAnEmptyClockTime)
{
    EXPECT_EQ(decode("back-time", ""), text(""));
    EXPECT_TRUE(decode("cume-time", QString()).isNull());
}

TEST(DecodeAttribute, TakesAClockTimeThatIsNoNumberForZero)
{
    EXPECT_EQ(decode("back-time", "abc"), text("+0:00:00"));
    EXPECT_EQ(decode("back-time", "@abc"), text("0:00:00"));
    EXPECT_EQ(decode("back-time", "@2147483648"), text("0:00:00"));
}

TEST(DecodeAttribute, PrintsClockTimesAsCDoes)
{
    for (const long seconds : manySeconds) {
        const QString expected = printed("%ld:%02ld:%02ld", seconds / 3600, seconds / 60 % 60, seconds % 60);
        EXPECT_EQ(decode("cume-time", QLatin1Char('@') + QString::number(seconds)), expected);
        EXPECT_EQ(decode("cume-time", QString::number(seconds)), QLatin1Char('+') + expected);
    }
}

// ---- all fields, shown ----------------------------------------------------------------------------------------------

TEST(DecodeAttribute, OnlyTrimsOtherFields)
{
    EXPECT_EQ(decode("page-number", "  12 "), text("12"));
    EXPECT_EQ(decode("title", "\t two  words \r\n"), text("two  words"));
}

TEST(DecodeAttribute, TrimsWhatItCannotConvert)
{
    EXPECT_EQ(decode("total-time", " abc "), text("abc"));
    EXPECT_EQ(decode("create-date", " abc "), text("abc"));
}

TEST(DecodeAttribute, DoesNotLookAtTheLetterCaseOfNames)
{
    EXPECT_EQ(decode("Total-Time", "59"), text("0:59"));
    EXPECT_EQ(decode("BACK-TIME", "@0"), text("0:00:00"));
    EXPECT_EQ(decode("Air-Date", "1000000000"), date(1000000000));
}

TEST(DecodeAttribute, KeepsANullValueNull)
{
    EXPECT_TRUE(decode("title", QString()).isNull());
}

// ---- dates, in whatever zone the machine is ------------------------------------------------------------------------

TEST(DecodeAttribute, KnowsEveryDate)
{
    const QString expected = date(1000000000);
    EXPECT_TRUE(expected.endsWith(text(":46:40"))) << expected.toStdString();
    EXPECT_EQ(decode("modify-date", "1000000000"), expected);
    EXPECT_EQ(decode("air-date", "1000000000"), expected);
}

TEST(DecodeAttribute, ShowsALocalDate)
{
    const QDateTime local = QDateTime::fromSecsSinceEpoch(1000000000, Qt::LocalTime);
    EXPECT_EQ(date(1000000000), local.toString(QStringLiteral("MM/dd/yy HH:mm:ss")));
}

TEST(DecodeAttribute, LeavesADateThatIsNoNumber)
{
    EXPECT_EQ(decode("air-date", "tomorrow"), text("tomorrow"));
    EXPECT_EQ(decode("air-date", ""), text(""));
    EXPECT_EQ(decode("air-date", "2147483648"), text("2147483648"));
}

TEST(DecodeAttribute, TakesWhiteSpaceAroundADate)
{
    EXPECT_EQ(decode("air-date", " 1000000000\n"), date(1000000000));
}

// ---- dates in other locales -----------------------------------------------------------------------------------------

namespace {

struct LocalDate
{
    const char *locale;
    const char *shown; ///< 2001-09-09 in the locale's own form.
};

#ifdef Q_OS_WIN
const LocalDate localDates[] = {
    {"C", "09/09/01"}, {"English_United States", "9/9/2001"}, {"French_France", "09/09/2001"}};
#else
const LocalDate localDates[] = {{"C", "09/09/01"},
                                {"POSIX", "09/09/01"},
                                {"C.UTF-8", "09/09/01"},
                                {"de_DE.UTF-8", "09.09.2001"},
                                {"en_GB.UTF-8", "09/09/01"},
                                {"fr_FR.UTF-8", "09/09/2001"},
                                {"sv_SE.UTF-8", "2001-09-09"}};
#endif

class LocalDates : public ::testing::TestWithParam<LocalDate>
{
protected:
    LocalDates()
        : m_before(std::setlocale(LC_TIME, nullptr))
    {}
    ~LocalDates() override { std::setlocale(LC_TIME, m_before.c_str()); }

private:
    std::string m_before;
};

} // namespace

TEST_P(LocalDates, HaveTheFormOfTheProcessesLocale)
{
    if (!std::setlocale(LC_TIME, GetParam().locale))
        GTEST_SKIP() << "no locale " << GetParam().locale;
    std::tm local = {};
    ASSERT_TRUE(Platform::localTime(1000000000, local));
    ASSERT_EQ(local.tm_mday, 9) << "the machine's zone is too far west";
    EXPECT_EQ(date(1000000000).section(QLatin1Char(' '), 0, 0), text(GetParam().shown));
}

TEST_P(LocalDates, DoNotChangeDurationsAndClockTimes)
{
    if (!std::setlocale(LC_TIME, GetParam().locale))
        GTEST_SKIP() << "no locale " << GetParam().locale;
    EXPECT_EQ(decode("total-time", "3725"), text("1:02:05"));
    EXPECT_EQ(decode("back-time", "90"), text("+0:01:30"));
    EXPECT_EQ(encode("tape-time", "2:30"), text("150"));
}

INSTANTIATE_TEST_SUITE_P(DecodeAttribute, LocalDates, ::testing::ValuesIn(localDates), [](const auto &tested) {
    std::string name = tested.param.locale;
    for (char &c : name)
        c = std::isalnum(static_cast<unsigned char>(c)) ? c : '_';
    return name;
});

// ---- dates in other zones -------------------------------------------------------------------------------------------

#ifdef Q_OS_WIN

TEST(WindowsOnlyDecodeAttribute, LeavesADateThatTheRunTimeCannotConvert)
{
    std::tm converted = {};
    if (Platform::localTime(std::numeric_limits<qint32>::min(), converted))
        GTEST_SKIP() << "this run-time converts times before 1970";
    EXPECT_EQ(decode("air-date", " -2147483648 "), text("-2147483648"));
}

#else

namespace {

struct ZoneDate
{
    const char *zone;
    long serverTime;
    const char *shown;
};

const ZoneDate zoneDates[] = {
    {"UTC0", 0, "01/01/70 00:00:00"},
    {"UTC0", -1, "12/31/69 23:59:59"},
    {"UTC0", 1000000000, "09/09/01 01:46:40"},
    {"UTC0", 951782400, "02/29/00 00:00:00"},
    {"UTC0", 1709164800, "02/29/24 00:00:00"},
    {"UTC0", std::numeric_limits<qint32>::max(), "01/19/38 03:14:07"},
    {"UTC0", std::numeric_limits<qint32>::min(), "12/13/01 20:45:52"},
    {Zones::newYork, 1000000000, "09/08/01 21:46:40"},
    {Zones::newYork, 1615705199, "03/14/21 01:59:59"}, // the last second of winter
    {Zones::newYork, 1615705200, "03/14/21 03:00:00"},
    {Zones::newYork, 1636264799, "11/07/21 01:59:59"}, // the last second of summer
    {Zones::newYork, 1636264800, "11/07/21 01:00:00"},
    {Zones::berlin, 1000000000, "09/09/01 03:46:40"},
    {Zones::berlin, 1616893199, "03/28/21 01:59:59"},
    {Zones::berlin, 1616893200, "03/28/21 03:00:00"},
    {Zones::berlin, 1635641999, "10/31/21 02:59:59"},
    {Zones::berlin, 1635642000, "10/31/21 02:00:00"},
    {Zones::tokyo, 0, "01/01/70 09:00:00"},
    {Zones::tokyo, 1000000000, "09/09/01 10:46:40"},
    {Zones::kolkata, 0, "01/01/70 05:30:00"},
    {Zones::kolkata, -1, "01/01/70 05:29:59"},
    {Zones::kolkata, 1000000000, "09/09/01 07:16:40"},
    {Zones::auckland, 1632578399, "09/26/21 01:59:59"},
    {Zones::auckland, 1632578400, "09/26/21 03:00:00"},
    {Zones::auckland, 1617458399, "04/04/21 02:59:59"},
    {Zones::auckland, 1617458400, "04/04/21 02:00:00"},
};

} // namespace

TEST(NativeOnlyDecodeAttribute, ShowsTheLocalDateInsideAndOutsideDaylightSaving)
{
    for (const ZoneDate &row : zoneDates) {
        const Zone zone(row.zone);
        EXPECT_EQ(date(row.serverTime), text(row.shown)) << row.zone << ' ' << row.serverTime;
    }
}

TEST(NativeOnlyDecodeAttribute, ShowsEveryDateOfZonesWithoutDaylightSaving)
{
    const struct
    {
        const char *zone;
        int offset;
    } zones[] = {{"UTC0", 0}, {Zones::tokyo, 9 * 3600}, {Zones::kolkata, 11 * 1800}};
    for (const auto &fixed : zones) {
        const Zone zone(fixed.zone);
        for (qint64 time = std::numeric_limits<qint32>::min(); time <= std::numeric_limits<qint32>::max();
             time += 1299709) {
            const QDateTime shifted = QDateTime::fromSecsSinceEpoch(time + fixed.offset, Qt::UTC);
            ASSERT_EQ(date(static_cast<long>(time)), shifted.toString(QStringLiteral("MM/dd/yy HH:mm:ss")))
                << fixed.zone << ' ' << time;
        }
    }
}

#endif

// ---- stored ---------------------------------------------------------------------------------------------------------

TEST(EncodeAttribute, ReadsADurationOfTwoPartsAsMinutesAndSeconds)
{
    EXPECT_EQ(encode("tape-time", "2:30"), text("150"));
}

TEST(EncodeAttribute, ReadsADurationOfThreePartsAsHoursMinutesAndSeconds)
{
    EXPECT_EQ(encode("tape-time", "1:00:00"), text("3600"));
    EXPECT_EQ(encode("total-time", "1:02:05"), text("3725"));
}

TEST(EncodeAttribute, ReadsADurationOfOnePartAsSeconds)
{
    EXPECT_EQ(encode("tape-time", "90"), text("90"));
}

TEST(EncodeAttribute, KnowsEveryDuration)
{
    for (const char *name : {"total-time", "audio-time", "runs-time", "mos-duration", "tape-time"})
        EXPECT_EQ(encode(name, "1:01"), text("61")) << name;
}

TEST(EncodeAttribute, EmptiesADurationWhoseFirstPartIsNoNumber)
{
    const QString value = encode("tape-time", "x:10");
    EXPECT_EQ(value, text(""));
    EXPECT_FALSE(value.isNull());
    EXPECT_EQ(encode("tape-time", ":10"), text(""));
}

TEST(EncodeAttribute, StopsReadingAtAPartThatIsNoNumber)
{
    EXPECT_EQ(encode("tape-time", "2:30:x"), text("150"));
    EXPECT_EQ(encode("tape-time", "2:x:30"), text("2"));
    EXPECT_EQ(encode("tape-time", "2:"), text("2"));
}

TEST(EncodeAttribute, ReadsNoMoreThanThreeParts)
{
    EXPECT_EQ(encode("tape-time", "1:00:00:99"), text("3600"));
}

TEST(EncodeAttribute, KeepsTheLow32BitsOfATotal)
{
    EXPECT_EQ(encode("tape-time", "596523:14:07"), text("2147483647"));
    EXPECT_EQ(encode("tape-time", "596523:14:08"), text("-2147483648"));
    EXPECT_EQ(encode("tape-time", "2147483647:0"), text("-60"));
    EXPECT_EQ(encode("tape-time", "2147483647:2147483647:2147483647"), text("2147479987"));
    EXPECT_EQ(encode("tape-time", "-2147483648:0:0"), text("0"));
    EXPECT_EQ(encode("back-time", "596523:14:08"), text("@-2147483648"));
}

TEST(EncodeAttribute, TakesANumberOfMoreThan32BitsForNone)
{
    EXPECT_EQ(encode("tape-time", "2147483648"), text(""));
    EXPECT_EQ(encode("tape-time", "1:2147483648"), text("1"));
}

TEST(EncodeAttribute, StoresARelativeTimeWithoutPlus)
{
    EXPECT_EQ(encode("cume-time", "+0:10"), text("10"));
    EXPECT_EQ(encode("back-time", "+0:01:30"), text("90"));
}

TEST(EncodeAttribute, StoresATimeOfDayBehindAnAt)
{
    EXPECT_EQ(encode("cume-time", "0:10"), text("@10"));
    EXPECT_EQ(encode("back-time", "1:00:00"), text("@3600"));
}

TEST(EncodeAttribute, LeavesAnEmptyClockTime)
{
    EXPECT_EQ(encode("back-time", ""), text(""));
    QString null;
    EncodeAttribute(text("cume-time"), null);
    EXPECT_TRUE(null.isNull());
}

TEST(EncodeAttribute, EmptiesAClockTimeWhoseFirstPartIsNoNumber)
{
    EXPECT_EQ(encode("back-time", "x:10"), text(""));
    EXPECT_EQ(encode("back-time", "+x:10"), text(""));
    EXPECT_EQ(encode("back-time", "+"), text(""));
    EXPECT_FALSE(encode("back-time", "+").isNull());
}

TEST(EncodeAttribute, LeavesOtherFieldsWithoutTrimming)
{
    EXPECT_EQ(encode("title", "  two words "), text("  two words "));
    EXPECT_EQ(encode("page-number", "1:30"), text("1:30"));
}

TEST(EncodeAttribute, LeavesTheOtherDates)
{
    EXPECT_EQ(encode("create-date", "anything"), text("anything"));
    EXPECT_EQ(encode("air-date", " anything "), text(" anything "));
    EXPECT_EQ(encode("air-date", "1000000000"), text("1000000000"));
}

TEST(EncodeAttribute, LeavesWhoMadeTheStory)
{
    EXPECT_EQ(encode("create-by", "ann"), text("ann"));
}

TEST(EncodeAttribute, DoesNotLookAtTheLetterCaseOfNames)
{
    EXPECT_EQ(encode("Tape-Time", "2:30"), text("150"));
    EXPECT_EQ(encode("CUME-TIME", "+0:10"), text("10"));
}

TEST(EncodeAttribute, StampsTheDateOfChange)
{
    for (const char *name : {"modify-date", "Modify-Date"}) {
        const long before = ConvertDate2Orvex(0);
        bool isNumber = false;
        const int stamp = encode(name, "whatever it held").toInt(&isNumber);
        const long after = ConvertDate2Orvex(0);
        ASSERT_TRUE(isNumber);
        EXPECT_LE(before, stamp);
        EXPECT_LE(stamp, after);
    }
}

TEST(EncodeAttribute, StampsAnEmptyDateOfChangeToo)
{
    EXPECT_FALSE(encode("modify-date", "").isEmpty());
}

TEST(EncodeAttribute, StampsWhoChangedTheStory)
{
    const QString user = Platform::userName();
    ASSERT_FALSE(user.isEmpty()) << "the system does not know the user that this process runs as";
    EXPECT_EQ(encode("modify-by", "whoever it was"), user);
    EXPECT_EQ(encode("MODIFY-BY", ""), user);
}
