#include <gtest/gtest.h>

#include <limits>

#include <quire/newsroom/server/VariantIndex.h>

namespace Newsroom {

namespace {

VARIANT ofType(VARTYPE type)
{
    VARIANT value{};
    VariantInit(&value);
    value.vt = type;
    return value;
}

/// What readIndex() makes of the value; -1 with the refusal in `result`.
LONG read(const VARIANT &value, HRESULT *result)
{
    LONG position = -1;
    *result = readIndex(value, &position);
    return position;
}

LONG readWell(const VARIANT &value)
{
    HRESULT result = E_FAIL;
    const LONG position = read(value, &result);
    EXPECT_EQ(S_OK, result);
    return position;
}

HRESULT refusalOf(const VARIANT &value)
{
    HRESULT result = S_OK;
    EXPECT_EQ(-1, read(value, &result));
    return result;
}

} // namespace

TEST(VariantIndexTest, NumbersOfEveryAcceptedType)
{
    VARIANT value = ofType(VT_I4);
    value.lVal = 70000;
    EXPECT_EQ(70000, readWell(value));
    value = ofType(VT_INT);
    value.intVal = 70001;
    EXPECT_EQ(70001, readWell(value));
    value = ofType(VT_I2);
    value.iVal = 32000;
    EXPECT_EQ(32000, readWell(value));
    value = ofType(VT_UI4);
    value.ulVal = 70002;
    EXPECT_EQ(70002, readWell(value));
}

TEST(VariantIndexTest, ReferencesToNumbers)
{
    LONG number = 5;
    INT integer = 6;
    SHORT small16 = 7;
    ULONG unsigned32 = 8;
    VARIANT value = ofType(VT_I4 | VT_BYREF);
    value.plVal = &number;
    EXPECT_EQ(5, readWell(value));
    value = ofType(VT_INT | VT_BYREF);
    value.pintVal = &integer;
    EXPECT_EQ(6, readWell(value));
    value = ofType(VT_I2 | VT_BYREF);
    value.piVal = &small16;
    EXPECT_EQ(7, readWell(value));
    value = ofType(VT_UI4 | VT_BYREF);
    value.pulVal = &unsigned32;
    EXPECT_EQ(8, readWell(value));
}

TEST(VariantIndexTest, VariantInAVariant)
{
    LONG number = 9;
    VARIANT inner = ofType(VT_I4);
    inner.lVal = 4;
    VARIANT value = ofType(VT_VARIANT | VT_BYREF);
    value.pvarVal = &inner;
    EXPECT_EQ(4, readWell(value));
    inner = ofType(VT_I4 | VT_BYREF);
    inner.plVal = &number;
    EXPECT_EQ(9, readWell(value));
}

TEST(VariantIndexTest, VariantThatRefersToItselfIsATypeMismatch)
{
    VARIANT value = ofType(VT_VARIANT | VT_BYREF);
    value.pvarVal = &value;
    EXPECT_EQ(DISP_E_TYPEMISMATCH, refusalOf(value));
}

TEST(VariantIndexTest, OtherTypesAreATypeMismatch)
{
    for (const VARTYPE type : {VT_EMPTY, VT_NULL, VT_BSTR, VT_R8, VT_BOOL, VT_DISPATCH, VT_ERROR, VT_VARIANT})
        EXPECT_EQ(DISP_E_TYPEMISMATCH, refusalOf(ofType(type))) << type;
    EXPECT_EQ(DISP_E_TYPEMISMATCH, refusalOf(ofType(VT_ARRAY | VT_I4)));
}

TEST(VariantIndexTest, NullReferencesAreInvalid)
{
    EXPECT_EQ(E_INVALIDARG, refusalOf(ofType(VT_I4 | VT_BYREF)));
    EXPECT_EQ(E_INVALIDARG, refusalOf(ofType(VT_VARIANT | VT_BYREF)));
}

TEST(VariantIndexTest, NegativeNumbersAreInvalid)
{
    VARIANT value = ofType(VT_I4);
    value.lVal = -1;
    EXPECT_EQ(E_INVALIDARG, refusalOf(value));
    value = ofType(VT_I2);
    value.iVal = -1;
    EXPECT_EQ(E_INVALIDARG, refusalOf(value));
}

TEST(VariantIndexTest, UnsignedNumbersAboveTheLargestPositionAreThatOne)
{
    VARIANT value = ofType(VT_UI4);
    value.ulVal = std::numeric_limits<ULONG>::max();
    EXPECT_EQ(std::numeric_limits<LONG>::max(), readWell(value));
}

} // namespace Newsroom
