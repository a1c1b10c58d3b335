#include "CountedRecordInfo.h"

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

TEST(VariantNative, CopyOfARecordIsMadeByItsDescription)
{
    CountedRecordInfo info;
    VARIANT copy = {};
    VARIANT source = {};
    V_VT(&source) = VT_RECORD;
    V_RECORDINFO(&source) = &info;
    V_RECORD(&source) = CoTaskMemAlloc(sizeof(LONG));
    *static_cast<LONG *>(V_RECORD(&source)) = 77;
    info.AddRef();

    ASSERT_EQ(VariantCopy(&copy, &source), S_OK);
    EXPECT_NE(V_RECORD(&copy), V_RECORD(&source));
    EXPECT_EQ(*static_cast<LONG *>(V_RECORD(&copy)), 77);
    EXPECT_EQ(info.references, 2);

    EXPECT_EQ(VariantClear(&copy), S_OK);
    EXPECT_EQ(VariantClear(&source), S_OK);
    EXPECT_EQ(info.references, 0);
    EXPECT_EQ(info.destroyed, 2);
}

TEST(VariantNative, RecordThatCannotBeCopiedLeavesTheDestinationEmpty)
{
    CountedRecordInfo info;
    info.copyResult = E_OUTOFMEMORY;
    LONG record = 1;
    VARIANT source = {};
    V_VT(&source) = VT_RECORD;
    V_RECORDINFO(&source) = &info;
    V_RECORD(&source) = &record;
    VARIANT destination = {};
    V_VT(&destination) = VT_I4;
    V_I4(&destination) = 5;

    EXPECT_EQ(VariantCopy(&destination, &source), E_OUTOFMEMORY);
    EXPECT_EQ(V_VT(&destination), VT_EMPTY);
    EXPECT_EQ(info.references, 0);
}

TEST(VariantNative, RecordWithoutDescriptionIsRefused)
{
    LONG record = 1;
    VARIANT source = {};
    V_VT(&source) = VT_RECORD;
    V_RECORD(&source) = &record;
    VARIANT destination = {};
    EXPECT_EQ(VariantCopy(&destination, &source), E_INVALIDARG);
}
