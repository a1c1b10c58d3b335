#include <gtest/gtest.h>

#include <quire/platform/Bstr.h>

using Platform::Bstr;

TEST(Bstr, OfNothingHasLengthZero)
{
    EXPECT_EQ(SysStringLen(nullptr), 0u);
    EXPECT_EQ(SysStringByteLen(nullptr), 0u);
}

TEST(Bstr, OfANullTextIsNull)
{
    EXPECT_EQ(SysAllocString(nullptr), nullptr);
}

TEST(Bstr, FreeingNothingDoesNothing)
{
    SysFreeString(nullptr);
}

TEST(Bstr, OfAnEmptyTextIsNotNull)
{
    const Bstr empty{QString()};
    EXPECT_FALSE(empty.isNull());
    EXPECT_EQ(SysStringLen(empty.get()), 0u);
    EXPECT_EQ(empty.get()[0], 0);
}

TEST(Bstr, KeepsEmbeddedNuls)
{
    const QString text = QStringLiteral("a") + QChar(0) + QStringLiteral("b");
    const Bstr string(text);
    EXPECT_EQ(SysStringLen(string.get()), 3u);
    EXPECT_EQ(SysStringByteLen(string.get()), 6u);
    EXPECT_EQ(string.toString(), text);
}

TEST(Bstr, EndsWithANulBehindItsLength)
{
    const Bstr string(QStringLiteral("abc"));
    EXPECT_EQ(string.get()[SysStringLen(string.get())], 0);
}

TEST(Bstr, StandsBehindItsLengthInBytes)
{
    const Bstr string(QStringLiteral("abcd"));
    const auto *prefix = reinterpret_cast<const DWORD *>(string.get()) - 1;
    EXPECT_EQ(*prefix, 8u);
}

TEST(Bstr, OfAnOddNumberOfBytesKeepsIt)
{
    Bstr string;
    string.reset(SysAllocStringByteLen("abc", 3));
    EXPECT_EQ(SysStringByteLen(string.get()), 3u);
    EXPECT_EQ(SysStringLen(string.get()), 1u);
    EXPECT_EQ(memcmp(string.get(), "abc", 3), 0);
}

TEST(Bstr, OfALengthWithoutTextIsThatLong)
{
    Bstr string;
    string.reset(SysAllocStringLen(nullptr, 7));
    ASSERT_FALSE(string.isNull());
    EXPECT_EQ(SysStringLen(string.get()), 7u);
    EXPECT_EQ(string.get()[7], 0);
}

TEST(Bstr, ReallocatedHoldsTheNewText)
{
    BSTR string = SysAllocString(Bstr(QStringLiteral("before")).get());
    const Bstr after(QStringLiteral("afterwards"));
    EXPECT_NE(SysReAllocString(&string, after.get()), 0);
    EXPECT_EQ(Platform::toQString(string), QStringLiteral("afterwards"));
    SysFreeString(string);
}

TEST(Bstr, KeepsCharactersBeyondTheBasicPlane)
{
    const QString text = QString::fromUtf8("\xF0\x9F\x98\x80");
    const Bstr string(text);
    EXPECT_EQ(SysStringLen(string.get()), 2u);
    EXPECT_EQ(string.toString(), text);
}

TEST(Bstr, NullBecomesANullText)
{
    EXPECT_TRUE(Platform::toQString(nullptr).isNull());
    EXPECT_TRUE(Bstr().toString().isNull());
    EXPECT_TRUE(Bstr().isNull());
}

TEST(Bstr, MovedFromHoldsNothing)
{
    Bstr from(QStringLiteral("text"));
    const Bstr to(std::move(from));
    EXPECT_TRUE(from.isNull()); // NOLINT(bugprone-use-after-move): what is left is what this asks
    EXPECT_EQ(to.toString(), QStringLiteral("text"));
}

TEST(Bstr, AsOutParameterFreesWhatItHeld)
{
    Bstr string(QStringLiteral("before"));
    *string.out() = SysAllocString(Bstr(QStringLiteral("after")).get());
    EXPECT_EQ(string.toString(), QStringLiteral("after"));
}

TEST(Bstr, ReleasedBelongsToTheCaller)
{
    Bstr string(QStringLiteral("text"));
    BSTR released = string.release();
    EXPECT_TRUE(string.isNull());
    EXPECT_EQ(Platform::toQString(released), QStringLiteral("text"));
    SysFreeString(released);
}

TEST(Bstr, ReallocatedToNothingIsNull)
{
    BSTR text = SysAllocString(Bstr(QStringLiteral("old")).get());
    EXPECT_NE(SysReAllocString(&text, nullptr), FALSE);
    EXPECT_EQ(text, nullptr);
}
