#include "CountedObject.h"
#include "CountedRecordInfo.h"
#include "Vectors.h"

#include <gtest/gtest.h>

#include <quire/platform/Bstr.h>
#include <quire/platform/SafeArray.h>
#include <quire/platform/System.h>

#include <array>
#include <cstdlib>
#include <memory>

// Arguments that the system need not survive, and arrays whose descriptor somebody changed.

using Platform::SafeArray;

namespace {

constexpr USHORT ownMemory = FADF_STATIC;

SafeArray descriptor(USHORT features = 0, ULONG elementSize = 0)
{
    SafeArray array;
    EXPECT_EQ(SafeArrayAllocDescriptor(1, array.out()), S_OK);
    array.get()->fFeatures = features;
    array.get()->cbElements = elementSize;
    return array;
}

/// Takes what it has back from the array, whose memory is the test's.
class Borrowed
{
public:
    Borrowed(const SafeArray &array, void *memory)
        : m_array(array.get())
    {
        m_array->pvData = memory;
        m_array->fFeatures |= ownMemory;
    }
    Borrowed(const Borrowed &) = delete;
    Borrowed &operator=(const Borrowed &) = delete;
    ~Borrowed()
    {
        m_array->pvData = nullptr;
        m_array->fFeatures &= static_cast<USHORT>(~ownMemory);
    }

private:
    SAFEARRAY *const m_array;
};

/// Locked as often as an array can be.
class Locked
{
public:
    explicit Locked(const SafeArray &array)
        : m_array(array.get())
    {
        m_array->cLocks = 0xFFFF;
    }
    Locked(const Locked &) = delete;
    Locked &operator=(const Locked &) = delete;
    ~Locked() { m_array->cLocks = 0; }

private:
    SAFEARRAY *const m_array;
};

} // namespace

// ---- arguments ------------------------------------------------------------------------------------------------------

TEST(SafeArrayNative, NullIsAnInvalidArray)
{
    LONG index = 0;
    LONG value = 0;
    VARTYPE type = VT_EMPTY;
    void *data = nullptr;
    SAFEARRAYBOUND bound = {1, 0};
    EXPECT_EQ(SafeArrayAllocData(nullptr), E_INVALIDARG);
    EXPECT_EQ(SafeArrayDestroyData(nullptr), E_INVALIDARG);
    EXPECT_EQ(SafeArrayGetVartype(nullptr, &type), E_INVALIDARG);
    EXPECT_EQ(SafeArraySetRecordInfo(nullptr, nullptr), E_INVALIDARG);
    EXPECT_EQ(SafeArrayPtrOfIndex(nullptr, &index, &data), E_INVALIDARG);
    EXPECT_EQ(SafeArrayGetElement(nullptr, &index, &value), E_INVALIDARG);
    EXPECT_EQ(SafeArrayPutElement(nullptr, &index, &value), E_INVALIDARG);
    EXPECT_EQ(SafeArrayRedim(nullptr, &bound), E_INVALIDARG);
}

TEST(SafeArrayNative, NullDescriptorIsDestroyedAtOnce)
{
    EXPECT_EQ(SafeArrayDestroyDescriptor(nullptr), S_OK);
}

TEST(SafeArrayNative, ResultsNeedAPlace)
{
    const SafeArray array = vectorOf(VT_I4, 1);
    const SafeArray records = descriptor(FADF_RECORD, sizeof(LONG));
    LONG index = 0;
    EXPECT_EQ(SafeArrayGetLBound(array.get(), 1, nullptr), E_INVALIDARG);
    EXPECT_EQ(SafeArrayGetUBound(array.get(), 1, nullptr), E_INVALIDARG);
    EXPECT_EQ(SafeArrayGetVartype(array.get(), nullptr), E_INVALIDARG);
    EXPECT_EQ(SafeArrayGetRecordInfo(records.get(), nullptr), E_INVALIDARG);
    EXPECT_EQ(SafeArrayAccessData(array.get(), nullptr), E_INVALIDARG);
    EXPECT_EQ(SafeArrayPtrOfIndex(array.get(), &index, nullptr), E_INVALIDARG);
    EXPECT_EQ(SafeArrayGetElement(array.get(), &index, nullptr), E_INVALIDARG);
    EXPECT_EQ(SafeArrayCopy(array.get(), nullptr), E_INVALIDARG);
    EXPECT_EQ(array.get()->cLocks, 0u);
}

TEST(SafeArrayNative, ElementsNeedAnIndex)
{
    const SafeArray array = vectorOf(VT_I4, 1);
    LONG value = 0;
    void *data = nullptr;
    EXPECT_EQ(SafeArrayPtrOfIndex(array.get(), nullptr, &data), E_INVALIDARG);
    EXPECT_EQ(SafeArrayGetElement(array.get(), nullptr, &value), E_INVALIDARG);
    EXPECT_EQ(SafeArrayPutElement(array.get(), nullptr, &value), E_INVALIDARG);
}

TEST(SafeArrayNative, TakesNoNumberOutOfNowhere)
{
    const SafeArray array = vectorOf(VT_I4, 1);
    LONG index = 0;
    EXPECT_EQ(SafeArrayPutElement(array.get(), &index, nullptr), E_INVALIDARG);
}

TEST(SafeArrayNative, TakesANullObject)
{
    CountedObject object;
    const SafeArray array = vectorOf(VT_UNKNOWN, 1);
    LONG index = 0;
    EXPECT_EQ(SafeArrayPutElement(array.get(), &index, object.support()), S_OK);
    EXPECT_EQ(SafeArrayPutElement(array.get(), &index, nullptr), S_OK);
    EXPECT_EQ(object.references, 0);
    IUnknown *got = object.support();
    EXPECT_EQ(SafeArrayGetElement(array.get(), &index, &got), S_OK);
    EXPECT_EQ(got, nullptr);
}

TEST(SafeArrayNative, OfFixedSizeIsNotResized)
{
    const SafeArray array = vectorOf(VT_I4, 1);
    array.get()->fFeatures |= FADF_FIXEDSIZE;
    SAFEARRAYBOUND bound = {2, 0};
    EXPECT_EQ(SafeArrayRedim(array.get(), &bound), E_INVALIDARG);
    EXPECT_EQ(SafeArrayRedim(array.get(), nullptr), E_INVALIDARG);
    EXPECT_EQ(array.size(), 1u);
}

TEST(SafeArrayNative, IsNotResizedBeyondWhatAnArrayMayHave)
{
    const SafeArray array = vectorOf(VT_I4, 1);
    SAFEARRAYBOUND bound = {0x80000000, 0};
    EXPECT_EQ(SafeArrayRedim(array.get(), &bound), E_OUTOFMEMORY);
    EXPECT_EQ(array.size(), 1u);
}

TEST(SafeArrayNative, DescriptorOfATypeNeedsDimensions)
{
    SafeArray array;
    EXPECT_EQ(SafeArrayAllocDescriptorEx(VT_I4, 0, array.out()), E_INVALIDARG);
    EXPECT_FALSE(array);
}

// ---- types ----------------------------------------------------------------------------------------------------------

TEST(SafeArrayNative, TypeFollowsFromTheFeaturesWhenNothingElseTells)
{
    EXPECT_EQ(typeOf(descriptor(FADF_BSTR)), VT_BSTR);
    EXPECT_EQ(typeOf(descriptor(FADF_UNKNOWN)), VT_UNKNOWN);
    EXPECT_EQ(typeOf(descriptor(FADF_DISPATCH)), VT_DISPATCH);
    EXPECT_EQ(typeOf(descriptor(FADF_VARIANT)), VT_VARIANT);
}

TEST(SafeArrayNative, KeepsTheInterfaceThatItsMakerNames)
{
    IID wanted = IID_IConnectionPointContainer;
    const SafeArray array(SafeArrayCreateVectorEx(VT_UNKNOWN, 0, 1, &wanted));
    ASSERT_TRUE(array);
    SafeArray copy;
    ASSERT_EQ(SafeArrayCopy(array.get(), copy.out()), S_OK);
    for (const SafeArray *each : {&array, static_cast<const SafeArray *>(&copy)})
        EXPECT_EQ(reinterpret_cast<const GUID *>(each->get())[-1], wanted);
}

TEST(SafeArrayNative, OfRecordsWithoutADescriptionHasNone)
{
    SafeArray array;
    ASSERT_EQ(SafeArrayAllocDescriptorEx(VT_RECORD, 1, array.out()), S_OK);
    CountedRecordInfo info;
    IRecordInfo *found = &info;
    EXPECT_EQ(SafeArrayGetRecordInfo(array.get(), &found), S_OK);
    EXPECT_EQ(found, nullptr);
    EXPECT_EQ(info.references, 0);
}

TEST(SafeArrayNative, DescriptionOfRecordsIsTakenAway)
{
    CountedRecordInfo info;
    const SafeArray array(SafeArrayCreateVectorEx(VT_RECORD, 0, 1, static_cast<IRecordInfo *>(&info)));
    ASSERT_EQ(info.references, 1);
    EXPECT_EQ(SafeArraySetRecordInfo(array.get(), nullptr), S_OK);
    EXPECT_EQ(info.references, 0);
}

TEST(SafeArrayNative, ThatHoldsNoRecordsHasNoDescription)
{
    CountedRecordInfo info;
    IRecordInfo *found = nullptr;
    const SafeArray array = vectorOf(VT_I4, 1);
    EXPECT_EQ(SafeArraySetRecordInfo(array.get(), &info), E_INVALIDARG);
    EXPECT_EQ(SafeArrayGetRecordInfo(array.get(), &found), E_INVALIDARG);
    EXPECT_EQ(info.references, 0);
}

// ---- locks ----------------------------------------------------------------------------------------------------------

TEST(SafeArrayNative, IsNotLockedMoreOftenThanItsCounterCounts)
{
    const SafeArray array = SafeArray::ofBytes("a", 1);
    SafeArray copy;
    LONG index = 0;
    char byte = 0;
    void *data = &byte;
    const Locked locked(array);
    EXPECT_EQ(SafeArrayLock(array.get()), E_UNEXPECTED);
    EXPECT_EQ(SafeArrayAccessData(array.get(), &data), E_UNEXPECTED);
    EXPECT_EQ(data, nullptr);
    EXPECT_EQ(SafeArrayGetElement(array.get(), &index, &byte), E_UNEXPECTED);
    EXPECT_EQ(SafeArrayCopy(array.get(), copy.out()), E_UNEXPECTED);
    EXPECT_FALSE(copy);
    EXPECT_EQ(array.get()->cLocks, 0xFFFFu);
}

// ---- memory ---------------------------------------------------------------------------------------------------------

TEST(SafeArrayNative, WithoutMemoryHasNoElement)
{
    const SafeArray array = descriptor(0, sizeof(LONG));
    array.get()->rgsabound[0] = {1, 0};
    LONG index = 0;
    LONG value = 0;
    void *data = &value;
    EXPECT_EQ(SafeArrayPtrOfIndex(array.get(), &index, &data), S_OK);
    EXPECT_EQ(data, nullptr);
    EXPECT_EQ(SafeArrayGetElement(array.get(), &index, &value), E_INVALIDARG);
    EXPECT_EQ(array.get()->cLocks, 0u);
}

TEST(SafeArrayNative, WithoutMemoryIsCopiedWithoutMemory)
{
    const SafeArray array = descriptor(0, sizeof(LONG));
    array.get()->rgsabound[0] = {1, 5};
    SafeArray copy;
    ASSERT_EQ(SafeArrayCopy(array.get(), copy.out()), S_OK);
    EXPECT_EQ(copy.get()->pvData, nullptr);
    EXPECT_EQ(copy.get()->rgsabound[0].lLbound, 5);
}

TEST(SafeArrayNative, WithElementsOfNoSizeIsNotCopied)
{
    const SafeArray array = descriptor();
    SafeArray copy;
    EXPECT_EQ(SafeArrayCopy(array.get(), copy.out()), E_INVALIDARG);
    EXPECT_FALSE(copy);
}

TEST(SafeArrayNative, WithoutMemoryGetsSomeWhenResized)
{
    const SafeArray array = descriptor(0, sizeof(LONG));
    SAFEARRAYBOUND bound = {2, 0};
    ASSERT_EQ(SafeArrayRedim(array.get(), &bound), S_OK);
    LONG index = 1;
    LONG value = 7;
    EXPECT_EQ(SafeArrayGetElement(array.get(), &index, &value), S_OK);
    EXPECT_EQ(value, 0);
}

TEST(SafeArrayNative, LeavesMemoryThatIsNotItsOwn)
{
    std::array<BSTR, 2> memory = {SysAllocString(u"one"), SysAllocString(u"two")};
    const __int64 texts = Platform::liveBstrs();
    const SafeArray array = descriptor(FADF_BSTR, sizeof(BSTR));
    array.get()->rgsabound[0] = {2, 0};
    const Borrowed borrowed(array, memory.data());

    EXPECT_EQ(SafeArrayDestroy(array.get()), S_OK);
    EXPECT_EQ(Platform::liveBstrs(), texts - 2);
    EXPECT_EQ(memory, (std::array<BSTR, 2>{}));
    EXPECT_EQ(array.get()->pvData, memory.data());
}

TEST(SafeArrayNative, ResizedLeavesMemoryThatIsNotItsOwn)
{
    std::array<LONG, 2> memory = {11, 12};
    const SafeArray array = descriptor(0, sizeof(LONG));
    array.get()->rgsabound[0] = {2, 0};
    {
        const Borrowed borrowed(array, memory.data());
        SAFEARRAYBOUND bound = {1, 0};
        ASSERT_EQ(SafeArrayRedim(array.get(), &bound), S_OK);
        const std::unique_ptr<void, void (*)(void *)> grown(array.get()->pvData, std::free);
        EXPECT_NE(grown.get(), memory.data());
        EXPECT_EQ(*static_cast<LONG *>(grown.get()), 11);
    }
    EXPECT_EQ(memory, (std::array<LONG, 2>{11, 0}));
}

TEST(SafeArrayNative, ElementsOfAnotherSizeAreNoTextsObjectsOrVariants)
{
    for (const int features : {FADF_BSTR, FADF_UNKNOWN, FADF_DISPATCH, FADF_VARIANT}) {
        std::array<quint32, 4> memory = {0xDEADBEEF, 0xDEADBEEF, 0xDEADBEEF, 0xDEADBEEF};
        const SafeArray array = descriptor(static_cast<USHORT>(features), sizeof(quint32));
        array.get()->rgsabound[0] = {4, 0};
        const Borrowed borrowed(array, memory.data());
        EXPECT_EQ(SafeArrayDestroyData(array.get()), S_OK);
        EXPECT_EQ(memory, (std::array<quint32, 4>{})) << features;
    }
}

TEST(SafeArrayNative, WithoutDimensionsHasNoElements)
{
    std::array<LONG, 1> memory = {11};
    const SafeArray array = descriptor(0, sizeof(LONG));
    array.get()->cDims = 0;
    const Borrowed borrowed(array, memory.data());
    EXPECT_EQ(SafeArrayDestroyData(array.get()), S_OK);
    EXPECT_EQ(memory[0], 11);
}
