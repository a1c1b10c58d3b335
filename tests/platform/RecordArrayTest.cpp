#include "CountedRecordInfo.h"

#include <gtest/gtest.h>

#include <quire/platform/SafeArray.h>

using Platform::SafeArray;

namespace {

SafeArray recordsOf(CountedRecordInfo *info, ULONG count)
{
    return SafeArray(SafeArrayCreateVectorEx(VT_RECORD, 0, count, static_cast<IRecordInfo *>(info)));
}

} // namespace

TEST(RecordArray, HoldsItsDescriptionUntilDestroyed)
{
    CountedRecordInfo info;
    {
        const SafeArray array = recordsOf(&info, 1);
        ASSERT_TRUE(array);
        EXPECT_EQ(info.references, 1);
    }
    EXPECT_EQ(info.references, 0);
}

TEST(RecordArray, TakesTheSizeOfARecordFromItsDescription)
{
    CountedRecordInfo info;
    EXPECT_EQ(SafeArrayGetElemsize(recordsOf(&info, 1).get()), sizeof(LONG));
}

#ifndef _WIN32 // Wine 8 makes it.
TEST(RecordArray, IsNotMadeWhenTheDescriptionHasNoSize)
{
    CountedRecordInfo info;
    info.sizeResult = E_FAIL;
    EXPECT_FALSE(recordsOf(&info, 1));
    EXPECT_EQ(info.references, 0);
}
#endif

#ifndef _WIN32 // Wine 8 lets the size overflow.
TEST(RecordArray, OfHugeSizeKeepsNoDescription)
{
    CountedRecordInfo info;
    EXPECT_FALSE(recordsOf(&info, 0xFFFFFFFF));
    EXPECT_EQ(info.references, 0);
}
#endif

TEST(RecordArray, HasRecordsByType)
{
    CountedRecordInfo info;
    VARTYPE type = VT_EMPTY;
    EXPECT_EQ(SafeArrayGetVartype(recordsOf(&info, 1).get(), &type), S_OK);
    EXPECT_EQ(type, VT_RECORD);
}

TEST(RecordArray, HandsOutItsDescriptionWithAReference)
{
    CountedRecordInfo info;
    const SafeArray array = recordsOf(&info, 1);
    IRecordInfoPtr found;
    ASSERT_EQ(SafeArrayGetRecordInfo(array.get(), &found), S_OK);
    EXPECT_EQ(found.GetInterfacePtr(), &info);
    EXPECT_EQ(info.references, 2);
}

TEST(RecordArray, ReleasesTheDescriptionThatIsReplaced)
{
    CountedRecordInfo before;
    CountedRecordInfo after;
    const SafeArray array = recordsOf(&before, 1);
    ASSERT_EQ(SafeArraySetRecordInfo(array.get(), &after), S_OK);
    EXPECT_EQ(before.references, 0);
    EXPECT_EQ(after.references, 1);
}

TEST(RecordArray, ClearsEachRecordWhenDestroyed)
{
    CountedRecordInfo info;
    recordsOf(&info, 3);
    EXPECT_EQ(info.cleared, 3);
}

TEST(RecordArray, PutsAndGetsByTheDescription)
{
    CountedRecordInfo info;
    const SafeArray array = recordsOf(&info, 2);
    LONG index = 1;
    LONG record = 7;
    ASSERT_EQ(SafeArrayPutElement(array.get(), &index, &record), S_OK);
    record = 0;
    ASSERT_EQ(SafeArrayGetElement(array.get(), &index, &record), S_OK);
    EXPECT_EQ(record, 7);
    EXPECT_EQ(info.copied, 2);
}

TEST(RecordArray, CopyHoldsTheDescriptionAndCopiesEachRecord)
{
    CountedRecordInfo info;
    const SafeArray array = recordsOf(&info, 3);
    SafeArray copy;
    ASSERT_EQ(SafeArrayCopy(array.get(), copy.out()), S_OK);
    EXPECT_EQ(info.references, 2);
    EXPECT_EQ(info.copied, 3);
}

TEST(RecordArray, ThatIsOfNumbersHasNoDescription)
{
    const SafeArray array = SafeArray::ofBytes("abc", 3);
    IRecordInfoPtr found;
    EXPECT_EQ(SafeArrayGetRecordInfo(array.get(), &found), E_INVALIDARG);
}
