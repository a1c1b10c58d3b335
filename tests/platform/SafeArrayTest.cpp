#include "CountedDispatch.h"
#include "Vectors.h"

#include <gtest/gtest.h>

#include <quire/platform/Bstr.h>
#include <quire/platform/SafeArray.h>
#include <quire/platform/Variant.h>

#include <cstring>
#include <utility>

using Platform::Bstr;
using Platform::SafeArray;
using Platform::SafeArrayAccess;
using Platform::Variant;

namespace {

HRESULT put(const SafeArray &array, LONG index, void *data)
{
    return SafeArrayPutElement(array.get(), &index, data);
}

HRESULT get(const SafeArray &array, LONG index, void *data)
{
    return SafeArrayGetElement(array.get(), &index, data);
}

} // namespace

// ---- locking --------------------------------------------------------------------------------------------------------

TEST(SafeArray, IsNotDestroyedWhileLocked)
{
    const SafeArray array = SafeArray::ofBytes("abc", 3);
    ASSERT_EQ(SafeArrayLock(array.get()), S_OK);
    EXPECT_EQ(SafeArrayDestroy(array.get()), DISP_E_ARRAYISLOCKED);
    EXPECT_EQ(SafeArrayDestroyData(array.get()), DISP_E_ARRAYISLOCKED);
    EXPECT_EQ(SafeArrayDestroyDescriptor(array.get()), DISP_E_ARRAYISLOCKED);
    EXPECT_EQ(std::memcmp(array.get()->pvData, "abc", 3), 0);
    EXPECT_EQ(SafeArrayUnlock(array.get()), S_OK);
}

TEST(SafeArray, LockedTwiceIsUnlockedTwice)
{
    const SafeArray array = vectorOf(VT_UI1, 1);
    SafeArrayLock(array.get());
    SafeArrayLock(array.get());
    EXPECT_EQ(array.get()->cLocks, 2u);
    EXPECT_EQ(SafeArrayUnlock(array.get()), S_OK);
    EXPECT_EQ(SafeArrayUnlock(array.get()), S_OK);
    EXPECT_EQ(array.get()->cLocks, 0u);
}

TEST(SafeArray, NotLockedCannotBeUnlocked)
{
    const SafeArray array = vectorOf(VT_UI1, 1);
    EXPECT_EQ(SafeArrayUnlock(array.get()), E_UNEXPECTED);
    EXPECT_EQ(array.get()->cLocks, 0u);
}

TEST(SafeArray, IsLockedFromAccessToUnaccess)
{
    const SafeArray array = vectorOf(VT_UI1, 1);
    void *data = nullptr;
    ASSERT_EQ(SafeArrayAccessData(array.get(), &data), S_OK);
    EXPECT_EQ(data, array.get()->pvData);
    EXPECT_EQ(array.get()->cLocks, 1u);
    EXPECT_EQ(SafeArrayUnaccessData(array.get()), S_OK);
    EXPECT_EQ(array.get()->cLocks, 0u);
    EXPECT_EQ(SafeArrayUnaccessData(array.get()), E_UNEXPECTED);
}

TEST(SafeArray, IsUnlockedAfterElementsAreCopied)
{
    const SafeArray array = vectorOf(VT_I4, 1);
    LONG number = 7;
    EXPECT_EQ(put(array, 0, &number), S_OK);
    EXPECT_EQ(get(array, 0, &number), S_OK);
    EXPECT_EQ(put(array, 1, &number), DISP_E_BADINDEX);
    EXPECT_EQ(array.get()->cLocks, 0u);
}

TEST(SafeArray, IsNotResizedWhileLocked)
{
    const SafeArray array = vectorOf(VT_I4, 2);
    SAFEARRAYBOUND bound = {5, 0};
    SafeArrayLock(array.get());
    EXPECT_EQ(SafeArrayRedim(array.get(), &bound), DISP_E_ARRAYISLOCKED);
    SafeArrayUnlock(array.get());
    EXPECT_EQ(array.size(), 2u);
}

// ---- bounds ---------------------------------------------------------------------------------------------------------

TEST(SafeArray, KeepsALowerBoundOtherThanZero)
{
    const SafeArray array = vectorOf(VT_I4, 3, -5);
    LONG lower = 0;
    LONG upper = 0;
    EXPECT_EQ(SafeArrayGetLBound(array.get(), 1, &lower), S_OK);
    EXPECT_EQ(SafeArrayGetUBound(array.get(), 1, &upper), S_OK);
    EXPECT_EQ(lower, -5);
    EXPECT_EQ(upper, -3);
    EXPECT_EQ(array.size(), 3u);
}

TEST(SafeArray, CountsIndicesFromItsLowerBound)
{
    const SafeArray array = vectorOf(VT_I4, 2, 10);
    LONG number = 7;
    EXPECT_EQ(put(array, 10, &number), S_OK);
    EXPECT_EQ(*static_cast<LONG *>(array.get()->pvData), 7);
}

TEST(SafeArray, HasNoElementOutsideOfItsBounds)
{
    const SafeArray array = vectorOf(VT_I4, 2, 10);
    LONG number = 7;
    for (const LONG index : {0, 9, 12, -1}) {
        EXPECT_EQ(put(array, index, &number), DISP_E_BADINDEX) << index;
        EXPECT_EQ(get(array, index, &number), DISP_E_BADINDEX) << index;
    }
    EXPECT_EQ(number, 7);
}

TEST(SafeArray, HasNoBoundsForADimensionThatIsNotThere)
{
    const SafeArray array = vectorOf(VT_I4, 2);
    LONG bound = 0;
    for (const UINT dimension : {0u, 2u}) {
        EXPECT_EQ(SafeArrayGetLBound(array.get(), dimension, &bound), DISP_E_BADINDEX) << dimension;
        EXPECT_EQ(SafeArrayGetUBound(array.get(), dimension, &bound), DISP_E_BADINDEX) << dimension;
    }
}

TEST(SafeArray, OfTwoDimensionsHasTheBoundsOfEach)
{
    SAFEARRAYBOUND bounds[] = {{2, 1}, {3, 10}};
    const SafeArray array(SafeArrayCreate(VT_I4, 2, bounds));
    LONG lower = 0;
    LONG upper = 0;
    EXPECT_EQ(SafeArrayGetDim(array.get()), 2u);
    SafeArrayGetLBound(array.get(), 1, &lower);
    SafeArrayGetUBound(array.get(), 1, &upper);
    EXPECT_EQ(std::pair(lower, upper), std::pair(LONG{1}, LONG{2}));
    SafeArrayGetLBound(array.get(), 2, &lower);
    SafeArrayGetUBound(array.get(), 2, &upper);
    EXPECT_EQ(std::pair(lower, upper), std::pair(LONG{10}, LONG{12}));
}

TEST(SafeArray, OfTwoDimensionsCountsTheFirstFastest)
{
    SAFEARRAYBOUND bounds[] = {{2, 0}, {3, 0}};
    const SafeArray array(SafeArrayCreate(VT_I4, 2, bounds));
    LONG indices[] = {1, 2};
    void *element = nullptr;
    ASSERT_EQ(SafeArrayPtrOfIndex(array.get(), indices, &element), S_OK);
    EXPECT_EQ(static_cast<LONG *>(element) - static_cast<LONG *>(array.get()->pvData), 5);
}

TEST(SafeArray, WithoutElementsHasAnUpperBoundBelowTheLower)
{
    const SafeArray array = vectorOf(VT_I4, 0, 4);
    LONG upper = 0;
    ASSERT_TRUE(array);
    EXPECT_EQ(SafeArrayGetUBound(array.get(), 1, &upper), S_OK);
    EXPECT_EQ(upper, 3);
    EXPECT_EQ(array.size(), 0u);
}

TEST(SafeArray, WithoutElementsHasNoFirstElement)
{
    const SafeArray array = vectorOf(VT_I4, 0);
    LONG number = 7;
    EXPECT_EQ(get(array, 0, &number), DISP_E_BADINDEX);
}

TEST(SafeArray, WithoutElementsIsCopied)
{
    const SafeArray array = vectorOf(VT_BSTR, 0);
    SafeArray copy;
    EXPECT_EQ(SafeArrayCopy(array.get(), copy.out()), S_OK);
    EXPECT_TRUE(copy);
    EXPECT_EQ(copy.size(), 0u);
}

// ---- elements -------------------------------------------------------------------------------------------------------

TEST(SafeArray, BeginsWithZeroes)
{
    const SafeArray array = vectorOf(VT_I4, 2);
    LONG number = 7;
    EXPECT_EQ(get(array, 1, &number), S_OK);
    EXPECT_EQ(number, 0);
}

TEST(SafeArray, PutTextIsACopy)
{
    const SafeArray array = vectorOf(VT_BSTR, 1);
    const Bstr text(QStringLiteral("text"));
    ASSERT_EQ(put(array, 0, text.get()), S_OK);
    BSTR stored = *static_cast<BSTR *>(array.get()->pvData);
    EXPECT_NE(stored, text.get());
    EXPECT_EQ(Platform::toQString(stored), QStringLiteral("text"));
}

TEST(SafeArray, GotTextIsACopy)
{
    const SafeArray array = vectorOf(VT_BSTR, 1);
    put(array, 0, Bstr(QStringLiteral("text")).get());
    Bstr text;
    ASSERT_EQ(get(array, 0, text.out()), S_OK);
    EXPECT_NE(text.get(), *static_cast<BSTR *>(array.get()->pvData));
    EXPECT_EQ(text.toString(), QStringLiteral("text"));
}

#ifndef _WIN32 // Wine 8 makes an empty text of it.
TEST(SafeArray, TakesANullText)
{
    const SafeArray array = vectorOf(VT_BSTR, 1);
    put(array, 0, Bstr(QStringLiteral("text")).get());
    ASSERT_EQ(put(array, 0, nullptr), S_OK);
    EXPECT_EQ(*static_cast<BSTR *>(array.get()->pvData), nullptr);
}
#endif

TEST(SafeArray, CountsTheObjectsPutIntoItAndReleasesThem)
{
    for (const int type : {VT_DISPATCH, VT_UNKNOWN}) {
        CountedDispatch object;
        {
            const SafeArray array = vectorOf(static_cast<VARTYPE>(type), 1);
            ASSERT_EQ(put(array, 0, static_cast<IDispatch *>(&object)), S_OK);
            EXPECT_EQ(object.references, 1) << type;
        }
        EXPECT_EQ(object.references, 0) << type;
    }
}

TEST(SafeArray, GivesAReferenceWithTheObject)
{
    CountedDispatch object;
    const SafeArray array = vectorOf(VT_DISPATCH, 1);
    put(array, 0, static_cast<IDispatch *>(&object));
    IDispatchPtr pointer;
    ASSERT_EQ(get(array, 0, &pointer), S_OK);
    EXPECT_EQ(pointer.GetInterfacePtr(), &object);
    EXPECT_EQ(object.references, 2);
}

TEST(SafeArray, ReleasesTheObjectThatIsReplaced)
{
    CountedDispatch before;
    CountedDispatch after;
    const SafeArray array = vectorOf(VT_DISPATCH, 1);
    put(array, 0, static_cast<IDispatch *>(&before));
    ASSERT_EQ(put(array, 0, static_cast<IDispatch *>(&after)), S_OK);
    EXPECT_EQ(before.references, 0);
    EXPECT_EQ(after.references, 1);
}

TEST(SafeArray, CountsTheObjectsInItsVariants)
{
    CountedDispatch object;
    VARIANT value = {};
    V_VT(&value) = VT_DISPATCH;
    V_DISPATCH(&value) = &object;
    {
        const SafeArray array = vectorOf(VT_VARIANT, 1);
        ASSERT_EQ(put(array, 0, &value), S_OK);
        EXPECT_EQ(object.references, 1);
        Variant got;
        ASSERT_EQ(get(array, 0, got.out()), S_OK);
        EXPECT_EQ(object.references, 2);
    }
    EXPECT_EQ(object.references, 0);
}

// ---- copying, resizing ----------------------------------------------------------------------------------------------

TEST(SafeArray, CopyHasTextsOfItsOwn)
{
    SafeArray array = vectorOf(VT_BSTR, 1);
    put(array, 0, Bstr(QStringLiteral("text")).get());
    SafeArray copy;
    ASSERT_EQ(SafeArrayCopy(array.get(), copy.out()), S_OK);
    array = SafeArray();
    EXPECT_EQ(Platform::toQString(*static_cast<BSTR *>(copy.get()->pvData)), QStringLiteral("text"));
}

TEST(SafeArray, CopyCountsTheObjects)
{
    CountedDispatch object;
    const SafeArray array = vectorOf(VT_UNKNOWN, 1);
    put(array, 0, static_cast<IUnknown *>(&object));
    SafeArray copy;
    ASSERT_EQ(SafeArrayCopy(array.get(), copy.out()), S_OK);
    EXPECT_EQ(object.references, 2);
}

TEST(SafeArray, CopyHasBoundsAndTypeOfTheOriginal)
{
    const SafeArray array = vectorOf(VT_I2, 3, -5);
    SafeArray copy;
    ASSERT_EQ(SafeArrayCopy(array.get(), copy.out()), S_OK);
    LONG lower = 0;
    SafeArrayGetLBound(copy.get(), 1, &lower);
    EXPECT_EQ(lower, -5);
    EXPECT_EQ(copy.size(), 3u);
    EXPECT_EQ(typeOf(copy), VT_I2);
}

TEST(SafeArray, CopyOfALockedArrayIsNotLocked)
{
    const SafeArray array = SafeArray::ofBytes("abc", 3);
    const SafeArrayAccess access(array.get());
    SafeArray copy;
    ASSERT_EQ(SafeArrayCopy(array.get(), copy.out()), S_OK);
    EXPECT_EQ(copy.get()->cLocks, 0u);
    EXPECT_EQ(array.get()->cLocks, 1u);
}

TEST(SafeArray, CopyOfNothingIsNothing)
{
    SAFEARRAY *copy = reinterpret_cast<SAFEARRAY *>(&copy);
    EXPECT_EQ(SafeArrayCopy(nullptr, &copy), S_OK);
    EXPECT_EQ(copy, nullptr);
}

TEST(SafeArray, CutOffElementsAreReleased)
{
    CountedDispatch object;
    const SafeArray array = vectorOf(VT_DISPATCH, 2);
    put(array, 0, static_cast<IDispatch *>(&object));
    put(array, 1, static_cast<IDispatch *>(&object));
    SAFEARRAYBOUND bound = {1, 0};
    ASSERT_EQ(SafeArrayRedim(array.get(), &bound), S_OK);
    EXPECT_EQ(object.references, 1);
}

TEST(SafeArray, GrownKeepsItsElementsAndAddsZeroes)
{
    const SafeArray array = vectorOf(VT_I4, 1);
    LONG number = 7;
    put(array, 0, &number);
    SAFEARRAYBOUND bound = {3, 0};
    ASSERT_EQ(SafeArrayRedim(array.get(), &bound), S_OK);
    get(array, 2, &number);
    EXPECT_EQ(number, 0);
    get(array, 0, &number);
    EXPECT_EQ(number, 7);
}

// ---- types and making -----------------------------------------------------------------------------------------------

TEST(SafeArray, KnowsTheTypeOfItsElements)
{
    for (const int type : {VT_UI1, VT_I4, VT_R8, VT_BOOL, VT_BSTR, VT_VARIANT, VT_DISPATCH, VT_UNKNOWN})
        EXPECT_EQ(typeOf(vectorOf(static_cast<VARTYPE>(type), 1)), type);
}

TEST(SafeArray, KnowsTheSizeOfItsElements)
{
    EXPECT_EQ(SafeArrayGetElemsize(vectorOf(VT_UI1, 1).get()), 1u);
    EXPECT_EQ(SafeArrayGetElemsize(vectorOf(VT_BOOL, 1).get()), 2u);
    EXPECT_EQ(SafeArrayGetElemsize(vectorOf(VT_I4, 1).get()), 4u);
    EXPECT_EQ(SafeArrayGetElemsize(vectorOf(VT_BSTR, 1).get()), sizeof(BSTR));
    EXPECT_EQ(SafeArrayGetElemsize(vectorOf(VT_VARIANT, 1).get()), sizeof(VARIANT));
}

TEST(SafeArray, OfATypeThatIsNoElementIsNotMade)
{
    for (const int type : {VT_EMPTY, VT_NULL, VT_RECORD})
        EXPECT_FALSE(vectorOf(static_cast<VARTYPE>(type), 1)) << type;
}

#ifndef _WIN32 // Wine 8 lets the size overflow.
TEST(SafeArray, OfHugeSizeIsNotMade)
{
    EXPECT_FALSE(vectorOf(VT_VARIANT, 0xFFFFFFFF));
    SAFEARRAYBOUND bounds[] = {{0x10000, 0}, {0x10000, 0}, {0x10000, 0}};
    EXPECT_FALSE(SafeArray(SafeArrayCreate(VT_VARIANT, 3, bounds)));
}
#endif

TEST(SafeArray, DescriptorTakesAnElementSizeOfTheCallers)
{
    SafeArray array;
    ASSERT_EQ(SafeArrayAllocDescriptor(1, array.out()), S_OK);
    array.get()->cbElements = 12;
    array.get()->rgsabound[0] = {2, 0};
    ASSERT_EQ(SafeArrayAllocData(array.get()), S_OK);
    char element[] = "elementdata"; // 12 bytes with its end
    EXPECT_EQ(put(array, 1, element), S_OK);
    EXPECT_EQ(std::memcmp(static_cast<char *>(array.get()->pvData) + 12, element, 12), 0);
}

TEST(SafeArray, DescriptorHasNoType)
{
    SafeArray array;
    ASSERT_EQ(SafeArrayAllocDescriptor(1, array.out()), S_OK);
    VARTYPE type = VT_EMPTY;
    EXPECT_EQ(SafeArrayGetVartype(array.get(), &type), E_INVALIDARG);
}

#ifndef _WIN32 // Wine 8 leaves the pointer as it was.
TEST(SafeArray, DescriptorWithoutDimensionsIsNotMade)
{
    for (const UINT dimensions : {0u, 0x10000u}) {
        SAFEARRAY *array = reinterpret_cast<SAFEARRAY *>(&array);
        EXPECT_EQ(SafeArrayAllocDescriptor(dimensions, &array), E_INVALIDARG) << dimensions;
        EXPECT_EQ(array, nullptr) << dimensions;
    }
}
#endif

TEST(SafeArray, NullIsAnInvalidArgument)
{
    LONG number = 0;
    void *data = nullptr;
    EXPECT_EQ(SafeArrayLock(nullptr), E_INVALIDARG);
    EXPECT_EQ(SafeArrayUnlock(nullptr), E_INVALIDARG);
    EXPECT_EQ(SafeArrayAccessData(nullptr, &data), E_INVALIDARG);
    EXPECT_EQ(SafeArrayGetLBound(nullptr, 1, &number), E_INVALIDARG);
    EXPECT_EQ(SafeArrayGetUBound(nullptr, 1, &number), E_INVALIDARG);
    EXPECT_EQ(SafeArrayGetElement(nullptr, &number, &number), E_INVALIDARG);
    EXPECT_EQ(SafeArrayPutElement(nullptr, &number, &number), E_INVALIDARG);
    EXPECT_EQ(SafeArrayAllocDescriptor(1, nullptr), E_POINTER);
}

TEST(SafeArray, NullHasNoDimensionsAndNoElementSize)
{
    EXPECT_EQ(SafeArrayGetDim(nullptr), 0u);
    EXPECT_EQ(SafeArrayGetElemsize(nullptr), 0u);
}

TEST(SafeArray, NullIsDestroyedAtOnce)
{
    EXPECT_EQ(SafeArrayDestroy(nullptr), S_OK);
}

// ---- the owner ------------------------------------------------------------------------------------------------------

TEST(SafeArray, OfBytesCopiesThem)
{
    char bytes[] = "abc";
    const SafeArray array = SafeArray::ofBytes(bytes, 3);
    bytes[0] = 'x';
    ASSERT_EQ(array.size(), 3u);
    EXPECT_EQ(typeOf(array), VT_UI1);
    EXPECT_EQ(std::memcmp(array.get()->pvData, "abc", 3), 0);
    EXPECT_EQ(array.get()->cLocks, 0u);
}

TEST(SafeArray, OfNoBytesIsAnArrayWithoutElements)
{
    const SafeArray array = SafeArray::ofBytes(nullptr, 0);
    EXPECT_TRUE(array);
    EXPECT_EQ(array.size(), 0u);
}

TEST(SafeArray, OfMissingBytesOwnsNothing)
{
    EXPECT_FALSE(SafeArray::ofBytes(nullptr, 3));
}

TEST(SafeArray, OfMoreBytesThanALongCountsOwnsNothing)
{
    EXPECT_FALSE(SafeArray::ofBytes("abc", std::size_t{0x80000000}));
}

TEST(SafeArray, MovedFromOwnsNothing)
{
    SafeArray from = SafeArray::ofBytes("abc", 3);
    const SafeArray to(std::move(from));
    EXPECT_FALSE(from); // NOLINT(bugprone-use-after-move): what is left is what this asks
    EXPECT_EQ(to.size(), 3u);
}

TEST(SafeArray, OfNothingHasNoElements)
{
    EXPECT_EQ(SafeArray().size(), 0u);
    EXPECT_EQ(SafeArray().get(), nullptr);
}

TEST(SafeArrayAccess, LocksForItsScope)
{
    const SafeArray array = SafeArray::ofBytes("abc", 3);
    {
        const SafeArrayAccess access(array.get());
        EXPECT_TRUE(access.ok());
        EXPECT_EQ(array.get()->cLocks, 1u);
        EXPECT_EQ(access.size(), 3u);
        EXPECT_EQ(access.as<BYTE>()[2], 'c');
    }
    EXPECT_EQ(array.get()->cLocks, 0u);
}

TEST(SafeArrayAccess, ToAnArrayWithoutMemoryHasNoElementsWhateverItSays)
{
    SAFEARRAY *made = nullptr;
    ASSERT_EQ(SafeArrayAllocDescriptorEx(VT_UI1, 1, &made), S_OK);
    made->rgsabound[0] = {1000, 0};
    const SafeArray array(made);
    EXPECT_EQ(array.size(), 1000u);
    const SafeArrayAccess access(array.get());
    EXPECT_TRUE(access.ok());
    EXPECT_EQ(access.data(), nullptr);
    EXPECT_EQ(access.size(), 0u);
}

TEST(SafeArrayAccess, ToNothingFails)
{
    const SafeArrayAccess access(nullptr);
    EXPECT_FALSE(access.ok());
    EXPECT_EQ(access.result(), E_INVALIDARG);
    EXPECT_EQ(access.data(), nullptr);
    EXPECT_EQ(access.size(), 0u);
}
