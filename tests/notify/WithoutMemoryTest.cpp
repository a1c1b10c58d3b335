// Results for which there is no memory.

#include "notify/HitArray.h"
#include "notify/NotifyFixture.h"
#include "support/NoMemory.h"

using namespace Quire;

namespace {

using WithoutMemoryTest = NotifyTest;

} // namespace

TEST_F(WithoutMemoryTest, HitsThatCannotBeKeptAreMissingAndTheSearchGoesOn)
{
    startNotices();
    const HitArray hits({{text("Storm"), text("NEWS.WORLD"), {1, 2, 3}, {{text("title"), text("Flood")}}},
                         {text("Rain"), text("NEWS.WORLD"), {4, 5, 6}, {{text("title"), text("Umbrellas")}}}});
    int missing = 0;
    bool isFirstKept = false;
    for (int n = 1, failed = true; failed; ++n) {
        SearchList *const list = start(n);
        {
            const NoMemory memory(n);
            EXPECT_EQ(sink()->raw_OnNotifySearchResults(n, hits, 2, 0), S_OK);
            failed = memory.hasFailed();
        }
        EXPECT_LE(list->Size(), 2);
        missing += 2 - list->Size();
        isFirstKept = isFirstKept || list->Size() == 1;
        EXPECT_FALSE(list->IsSearchComplete());
        EXPECT_EQ(sink()->raw_OnNotifySearchResults(n, hits, 2, 1), S_OK) << n;
        EXPECT_TRUE(list->IsSearchComplete()) << n;
        EXPECT_EQ(list->Size(), 2) << n; // each is there once
    }
    EXPECT_GT(missing, 0);
    EXPECT_TRUE(isFirstKept); // where the second finds no memory
}
