#include "CountedObject.h"
#include "CountedRecordInfo.h"

#include <gtest/gtest.h>

#include <quire/platform/Bstr.h>
#include <quire/platform/SafeArray.h>
#include <quire/platform/System.h>
#include <quire/platform/Variant.h>

namespace {

/// The text stays its owner's.
VARIANT ofText(const Platform::Bstr &text)
{
    VARIANT variant = {};
    V_VT(&variant) = VT_BSTR;
    V_BSTR(&variant) = text.get();
    return variant;
}

} // namespace

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

TEST(VariantNative, RecordWithoutDataIsCopiedWithItsDescription)
{
    CountedRecordInfo info;
    info.AddRef();
    VARIANT source = {};
    V_VT(&source) = VT_RECORD;
    V_RECORDINFO(&source) = &info;
    VARIANT copy = {};
    ASSERT_EQ(VariantCopy(&copy, &source), S_OK);
    EXPECT_EQ(V_RECORD(&copy), nullptr);
    EXPECT_EQ(info.references, 2);
    VariantClear(&copy);
    VariantClear(&source);
    EXPECT_EQ(info.references, 0);
    EXPECT_EQ(info.destroyed, 0);
}

TEST(VariantNative, RecordOfNothingIsCopied)
{
    VARIANT source = {};
    V_VT(&source) = VT_RECORD;
    VARIANT copy = {};
    EXPECT_EQ(VariantCopy(&copy, &source), S_OK);
    EXPECT_EQ(V_VT(&copy), VT_RECORD);
    EXPECT_EQ(V_RECORDINFO(&copy), nullptr);
    EXPECT_EQ(VariantClear(&copy), S_OK);
}

TEST(VariantNative, NullIsInitialisedAtOnce)
{
    VariantInit(nullptr);
}

TEST(VariantNative, NullTextsAndObjectsAreCopiedAsSuch)
{
    for (const VARTYPE type : {VT_BSTR, VT_DISPATCH, VT_UNKNOWN}) {
        VARIANT source = {};
        V_VT(&source) = type;
        VARIANT copy = {};
        V_I8(&copy) = 7;
        EXPECT_EQ(VariantCopy(&copy, &source), S_OK) << type;
        EXPECT_EQ(V_VT(&copy), type);
        EXPECT_EQ(V_I8(&copy), 0) << type;
    }
}

TEST(VariantNative, UnknownObjectIsCountedOnceMore)
{
    CountedObject object;
    VARIANT source = {};
    V_VT(&source) = VT_UNKNOWN;
    V_UNKNOWN(&source) = object.support();
    VARIANT copy = {};
    EXPECT_EQ(VariantCopy(&copy, &source), S_OK);
    EXPECT_EQ(object.references, 1);
    VariantClear(&copy);
    EXPECT_EQ(object.references, 0);
}

TEST(VariantNative, TextForWhichThereIsNoMemoryLeavesTheDestinationEmpty)
{
    const Platform::Bstr text(QStringLiteral("text"));
    const VARIANT source = ofText(text);
    VARIANT copy = {};
    V_VT(&copy) = VT_I4;
    Platform::failAllocation(1);
    EXPECT_EQ(VariantCopy(&copy, &source), E_OUTOFMEMORY);
    Platform::failAllocation(0);
    EXPECT_EQ(V_VT(&copy), VT_EMPTY);
}

TEST(VariantNative, TypesThatDoNotExistAreRefusedEverywhere)
{
    VARIANT other = {};
    for (const int type : {15, 32, VT_BYREF | VT_EMPTY, VT_ARRAY | VT_NULL, VT_VECTOR | VT_I4, VT_RESERVED | VT_I4}) {
        VARIANT variant = {};
        V_VT(&variant) = static_cast<VARTYPE>(type);
        EXPECT_EQ(VariantClear(&variant), DISP_E_BADVARTYPE) << type;
        EXPECT_EQ(VariantCopy(&other, &variant), DISP_E_BADVARTYPE) << type;
        EXPECT_EQ(VariantCopyInd(&other, &variant), DISP_E_BADVARTYPE) << type;
    }
}

TEST(VariantNative, ClassIdentifiersAreNotCopied)
{
    VARIANT source = {};
    V_VT(&source) = VT_CLSID;
    VARIANT copy = {};
    EXPECT_EQ(VariantCopy(&copy, &source), DISP_E_BADVARTYPE);
    GUID guid = IID_IUnknown;
    V_VT(&source) = VT_CLSID | VT_BYREF;
    V_BYREF(&source) = &guid;
    EXPECT_EQ(VariantCopyInd(&copy, &source), DISP_E_BADVARTYPE);
    EXPECT_EQ(V_VT(&copy), VT_EMPTY);
}

TEST(VariantNative, FollowedReferenceHasAsManyBytesAsItsTypeSays)
{
    struct Row
    {
        VARTYPE type;
        LONGLONG value;
    };
    LONGLONG number = 0x1122334455667788;
    for (const Row &row :
         {Row{VT_I1, 0x88}, Row{VT_UI1, 0x88}, Row{VT_I2, 0x7788}, Row{VT_UI2, 0x7788}, Row{VT_BOOL, 0x7788},
          Row{VT_I4, 0x55667788}, Row{VT_UI4, 0x55667788}, Row{VT_R4, 0x55667788}, Row{VT_ERROR, 0x55667788},
          Row{VT_INT, 0x55667788}, Row{VT_UINT, 0x55667788}, Row{VT_I8, number}, Row{VT_UI8, number},
          Row{VT_R8, number}, Row{VT_CY, number}, Row{VT_DATE, number}}) {
        VARIANT source = {};
        V_VT(&source) = static_cast<VARTYPE>(row.type | VT_BYREF);
        V_BYREF(&source) = &number;
        VARIANT value = {};
        EXPECT_EQ(VariantCopyInd(&value, &source), S_OK) << row.type;
        EXPECT_EQ(V_VT(&value), row.type);
        EXPECT_EQ(V_I8(&value), row.value) << row.type;
    }
}

TEST(VariantNative, FollowedReferenceToADecimalIsTheDecimal)
{
    DECIMAL decimal = {};
    decimal.Lo64 = 1234;
    decimal.scale = 2;
    VARIANT source = {};
    V_VT(&source) = VT_DECIMAL | VT_BYREF;
    V_DECIMALREF(&source) = &decimal;
    VARIANT value = {};
    ASSERT_EQ(VariantCopyInd(&value, &source), S_OK);
    EXPECT_EQ(V_VT(&value), VT_DECIMAL);
    EXPECT_EQ(V_DECIMAL(&value).Lo64, 1234u);
    EXPECT_EQ(V_DECIMAL(&value).scale, 2);
}

TEST(VariantNative, FollowedReferenceToARecordIsACopy)
{
    CountedRecordInfo info;
    LONG record = 77;
    VARIANT source = {};
    V_VT(&source) = VT_RECORD | VT_BYREF;
    V_RECORDINFO(&source) = &info;
    V_RECORD(&source) = &record;
    VARIANT copy = {};
    ASSERT_EQ(VariantCopyInd(&copy, &source), S_OK);
    EXPECT_EQ(V_VT(&copy), VT_RECORD);
    EXPECT_EQ(*static_cast<LONG *>(V_RECORD(&copy)), 77);
    EXPECT_NE(V_RECORD(&copy), &record);
    VariantClear(&copy);
    EXPECT_EQ(info.references, 0);
}

TEST(VariantNative, FollowedReferenceToAnArrayIsACopy)
{
    const Platform::SafeArray array = Platform::SafeArray::ofBytes("abc", 3);
    SAFEARRAY *place = array.get();
    VARIANT source = {};
    V_VT(&source) = VT_ARRAY | VT_UI1 | VT_BYREF;
    V_ARRAYREF(&source) = &place;
    Platform::Variant copy;
    ASSERT_EQ(VariantCopyInd(copy.out(), &source), S_OK);
    EXPECT_EQ(copy.type(), VT_ARRAY | VT_UI1);
    EXPECT_NE(V_ARRAY(&copy.get()), array.get());
    EXPECT_EQ(Platform::elementCount(V_ARRAY(&copy.get())), 3u);
}

TEST(VariantNative, ReferenceToAVariantFollowedIntoItselfBecomesTheValue)
{
    const Platform::Bstr text(QStringLiteral("text"));
    VARIANT referred = ofText(text);
    VARIANT variant = {};
    V_VT(&variant) = VT_VARIANT | VT_BYREF;
    V_VARIANTREF(&variant) = &referred;
    ASSERT_EQ(VariantCopyInd(&variant, &variant), S_OK);
    EXPECT_EQ(V_VT(&variant), VT_BSTR);
    EXPECT_NE(V_BSTR(&variant), V_BSTR(&referred));
    EXPECT_EQ(Platform::toQString(V_BSTR(&variant)), QStringLiteral("text"));
    VariantClear(&variant);
}

TEST(VariantNative, ReferenceToABadVariantFollowedIntoItselfStays)
{
    VARIANT referred = {};
    V_VT(&referred) = VT_CLSID;
    VARIANT variant = {};
    V_VT(&variant) = VT_VARIANT | VT_BYREF;
    V_VARIANTREF(&variant) = &referred;
    EXPECT_EQ(VariantCopyInd(&variant, &variant), DISP_E_BADVARTYPE);
    EXPECT_EQ(V_VARIANTREF(&variant), &referred);
}

TEST(VariantNative, FollowedReferenceIsFreedWhenTheDestinationIsLocked)
{
    const Platform::Bstr text(QStringLiteral("text"));
    BSTR place = text.get();
    VARIANT source = {};
    V_VT(&source) = VT_BSTR | VT_BYREF;
    V_BSTRREF(&source) = &place;
    const Platform::SafeArray array = Platform::SafeArray::ofBytes("abc", 3);
    const Platform::SafeArrayAccess access(array.get());
    VARIANT destination = {};
    V_VT(&destination) = VT_ARRAY | VT_UI1;
    V_ARRAY(&destination) = array.get();
    const __int64 texts = Platform::liveBstrs();
    EXPECT_EQ(VariantCopyInd(&destination, &source), DISP_E_ARRAYISLOCKED);
    EXPECT_EQ(Platform::liveBstrs(), texts);
    EXPECT_EQ(V_ARRAY(&destination), array.get());
}
