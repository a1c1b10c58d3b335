#include <gtest/gtest.h>

#include <quire/platform/Automation.h>

TEST(VariantNative, NullCannotBeCleared)
{
    EXPECT_EQ(VariantClear(nullptr), E_INVALIDARG);
}

TEST(VariantNative, NullCannotBeCopied)
{
    VARIANT variant = {};
    EXPECT_EQ(VariantCopy(nullptr, &variant), E_INVALIDARG);
    EXPECT_EQ(VariantCopy(&variant, nullptr), E_INVALIDARG);
}

TEST(VariantNative, NullCannotBeFollowed)
{
    VARIANT variant = {};
    EXPECT_EQ(VariantCopyInd(nullptr, &variant), E_INVALIDARG);
    EXPECT_EQ(VariantCopyInd(&variant, nullptr), E_INVALIDARG);
}

TEST(VariantNative, ReferenceToNothingCannotBeFollowed)
{
    for (const int type : {VT_I4, VT_BSTR, VT_DISPATCH, VT_VARIANT}) {
        VARIANT source = {};
        V_VT(&source) = static_cast<VARTYPE>(type | VT_BYREF);
        VARIANT copy = {};
        EXPECT_EQ(VariantCopyInd(&copy, &source), E_INVALIDARG) << type;
    }
}
