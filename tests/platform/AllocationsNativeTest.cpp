#include <gtest/gtest.h>

#include <quire/platform/Bstr.h>
#include <quire/platform/SafeArray.h>
#include <quire/platform/System.h>

// Texts and arrays for which there is no memory. On Windows nobody can plan that.

namespace {

/// Nothing is planned afterwards.
class Allocations : public ::testing::Test
{
protected:
    ~Allocations() override
    {
        Platform::failAllocation(0);
        EXPECT_EQ(Platform::liveBstrs(), m_texts);
        EXPECT_EQ(Platform::liveArrays(), m_arrays);
    }

private:
    const __int64 m_texts = Platform::liveBstrs();
    const __int64 m_arrays = Platform::liveArrays();
};

Platform::Bstr ownerOf(BSTR text)
{
    Platform::Bstr owner;
    owner.reset(text);
    return owner;
}

} // namespace

TEST_F(Allocations, TheNthFailsAndNoOther)
{
    Platform::failAllocation(2);
    const Platform::Bstr first(QStringLiteral("text"));
    EXPECT_FALSE(Platform::hasAllocationFailed());
    EXPECT_EQ(SysAllocString(u"text"), nullptr);
    EXPECT_TRUE(Platform::hasAllocationFailed());
    const Platform::Bstr third(QStringLiteral("text"));
    EXPECT_FALSE(third.isNull());
}

TEST_F(Allocations, ZeroTakesThePlanBack)
{
    Platform::failAllocation(1);
    Platform::failAllocation(0);
    const Platform::Bstr text(QStringLiteral("text"));
    EXPECT_FALSE(Platform::hasAllocationFailed());
}

TEST_F(Allocations, ATextForWhichThereIsNoMemoryIsNull)
{
    Platform::failAllocation(1);
    EXPECT_EQ(SysAllocStringLen(nullptr, 3), nullptr);
    Platform::failAllocation(1);
    EXPECT_EQ(SysAllocStringByteLen("abc", 3), nullptr);
    Platform::failAllocation(1);
    EXPECT_THROW(Platform::Bstr(QStringLiteral("text")), _com_error);
}

TEST_F(Allocations, ATextThatCannotBeReplacedStays)
{
    BSTR text = SysAllocString(u"old");
    Platform::failAllocation(1);
    EXPECT_EQ(SysReAllocString(&text, u"new"), FALSE);
    const Platform::Bstr owner = ownerOf(text);
    EXPECT_EQ(owner.toString(), QStringLiteral("old"));
}

TEST_F(Allocations, AnArrayNeedsTwo)
{
    for (int n = 1; n <= 2; ++n) {
        Platform::failAllocation(n);
        EXPECT_EQ(SafeArrayCreateVector(VT_UI1, 0, 3), nullptr) << n;
        EXPECT_TRUE(Platform::hasAllocationFailed()) << n;
    }
    Platform::failAllocation(3);
    EXPECT_TRUE(Platform::SafeArray::ofBytes("abc", 3));
    EXPECT_FALSE(Platform::hasAllocationFailed());
}

TEST_F(Allocations, AnArrayThatCannotBeResizedStaysAsItWas)
{
    const Platform::SafeArray array = Platform::SafeArray::ofBytes("abc", 3);
    SAFEARRAYBOUND bound = {300, 0};
    Platform::failAllocation(1);
    EXPECT_EQ(SafeArrayRedim(array.get(), &bound), E_OUTOFMEMORY);
    EXPECT_EQ(array.size(), 3u);
}

TEST_F(Allocations, AnArrayThatCannotBeCopiedLeavesNothing)
{
    const Platform::SafeArray array = Platform::SafeArray::ofBytes("abc", 3);
    for (int n = 1; n <= 2; ++n) {
        Platform::failAllocation(n);
        Platform::SafeArray copy;
        EXPECT_EQ(SafeArrayCopy(array.get(), copy.out()), E_OUTOFMEMORY) << n;
        EXPECT_FALSE(copy) << n;
    }
}

TEST_F(Allocations, AnElementThatCannotBeCopiedStaysWhatItWas)
{
    const Platform::SafeArray array(SafeArrayCreateVector(VT_BSTR, 0, 1));
    const Platform::Bstr before(QStringLiteral("before"));
    const Platform::Bstr after(QStringLiteral("after"));
    LONG index = 0;
    ASSERT_EQ(SafeArrayPutElement(array.get(), &index, before.get()), S_OK);
    Platform::failAllocation(1);
    EXPECT_EQ(SafeArrayPutElement(array.get(), &index, after.get()), E_OUTOFMEMORY);
    Platform::failAllocation(1);
    Platform::Bstr got;
    EXPECT_EQ(SafeArrayGetElement(array.get(), &index, got.out()), E_OUTOFMEMORY);
    EXPECT_TRUE(got.isNull());
    EXPECT_EQ(SafeArrayGetElement(array.get(), &index, got.out()), S_OK);
    EXPECT_EQ(got.toString(), QStringLiteral("before"));
}

TEST_F(Allocations, ATextLongerThanAnyIsNotMade)
{
    EXPECT_EQ(SysAllocStringLen(nullptr, 0x7FFFFFFF), nullptr);
    EXPECT_FALSE(Platform::hasAllocationFailed());
}

TEST_F(Allocations, ATextIsReplacedOnlyInAPlace)
{
    EXPECT_EQ(SysReAllocString(nullptr, u"new"), FALSE);
}
