#include "Words.h"

#include <gtest/gtest.h>

#include "support/QtPrinting.h"

#include <limits>

using namespace Tool;

namespace {

constexpr qint32 notAuthorized = static_cast<qint32>(0x80040405);

std::optional<qint32> code(const char *text)
{
    return parseCode(QLatin1String(text));
}

TEST(ParseCode, ReadsHexadecimalAfterEitherPrefix)
{
    EXPECT_EQ(code("0x80040405"), notAuthorized);
    EXPECT_EQ(code("x80040405"), notAuthorized);
    EXPECT_EQ(code("0X8004040F"), static_cast<qint32>(0x8004040F));
    EXPECT_EQ(code("0x0"), 0);
}

TEST(ParseCode, ReadsDecimalSignedAndUnsigned)
{
    EXPECT_EQ(code("-2147220475"), notAuthorized);
    EXPECT_EQ(code("2147746821"), notAuthorized);
    EXPECT_EQ(code("87"), 87);
}

TEST(ParseCode, TakesTheWholeRangeOf32BitsAndNoMore)
{
    EXPECT_EQ(code("-2147483648"), std::numeric_limits<qint32>::min());
    EXPECT_EQ(code("4294967295"), -1);
    EXPECT_EQ(code("0xffffffff"), -1);
    EXPECT_FALSE(code("-2147483649"));
    EXPECT_FALSE(code("4294967296"));
    EXPECT_FALSE(code("0x100000000"));
}

TEST(ParseCode, RefusesWhatIsNoNumber)
{
    for (const char *text :
         {"", "abc", "0x", "x", "0xg", "12a", "0x-1", "0x+1", "0x0x10", "0x 1", "0x1 ", "-0x5", "--5", "80040405h"})
        EXPECT_FALSE(code(text)) << text;
}

TEST(ParseNumber, ReadsSigned32BitDecimalsOnly)
{
    EXPECT_EQ(parseNumber(QStringLiteral("4711")), 4711);
    EXPECT_EQ(parseNumber(QStringLiteral("-3")), -3);
    for (const char *text : {"", "4711x", "0x10", "1.5", "2147483648", "12:345"})
        EXPECT_FALSE(parseNumber(QLatin1String(text))) << text;
}

TEST(HexCode, IsEightDigitsLong)
{
    EXPECT_EQ(hexCode(notAuthorized), QStringLiteral("0x80040405"));
    EXPECT_EQ(hexCode(static_cast<qint32>(0x8004040B)), QStringLiteral("0x8004040B"));
    EXPECT_EQ(hexCode(87), QStringLiteral("0x00000057"));
}

TEST(Reason, IsTheServersSentence)
{
    EXPECT_EQ(reason(notAuthorized, false), QStringLiteral("Command is not authorized."));
    EXPECT_EQ(reason(static_cast<HRESULT>(0x80070057), true), QStringLiteral("Invalid user name or password."));
}

TEST(Reason, IsTheBareCodeWhenThereIsNoSentence)
{
    EXPECT_EQ(reason(static_cast<HRESULT>(0x80040403), false), QStringLiteral("server error 0x80040403"));
}

TEST(Counted, TakesTheSingularForOneOnly)
{
    const auto stories = [](qint64 number) {
        return counted(number, QStringLiteral("story"), QStringLiteral("stories"));
    };
    EXPECT_EQ(stories(0), QStringLiteral("0 stories"));
    EXPECT_EQ(stories(1), QStringLiteral("1 story"));
    EXPECT_EQ(stories(12), QStringLiteral("12 stories"));
}

} // namespace
