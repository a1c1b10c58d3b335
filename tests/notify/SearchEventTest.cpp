// What the library makes of the results that a server sends, whatever it sends.

#include <gmock/gmock.h>

#include <cstring>

#include <quire/platform/SafeArray.h>

#include "notify/HitArray.h"
#include "notify/NotifyFixture.h"
#include "platform/CountedRecordInfo.h"
#include "support/QtPrinting.h"

using namespace Quire;

namespace {

QString attribute(const Item &item, const char *name)
{
    Attribute found;
    return item.FindAttr(text(name), found) ? found.value : QStringLiteral("(none)");
}

class SearchEventTest : public NotifyTest
{
protected:
    void SetUp() override
    {
        NotifyTest::SetUp();
        startNotices();
        list = start(7);
    }

    HRESULT send(SAFEARRAY *hits, LONG totalHits = 12, LONG finished = 0, LONG id = 7)
    {
        return sink()->raw_OnNotifySearchResults(id, hits, totalHits, finished);
    }

    /// Two records with nothing in them, of the size of hits.
    static Platform::SafeArray twoRecords(CountedRecordInfo &info)
    {
        info.size = sizeof(Orvex::SearchHit);
        return Platform::SafeArray(SafeArrayCreateVectorEx(VT_RECORD, 0, 2, static_cast<IRecordInfo *>(&info)));
    }

    const QVector<Hit> twoHits{{text("Storm"), text("NEWS.WORLD"), {1, 2, 3}, {}},
                               {text("Rain"), text("NEWS.WORLD"), {4, 5, 6}, {}}};
    SearchList *list = nullptr;
};

} // namespace

TEST_F(SearchEventTest, ARecordBecomesAnItem)
{
    const HitArray hits({{text("Storm ☂"),
                          text("NEWS.WORLD"),
                          {101, -2, 33},
                          {{text("title"), text("Große Flut")}, {text("page"), text("A1")}}}});
    EXPECT_EQ(send(hits), 0);
    ASSERT_EQ(list->Size(), 1);
    const Item &item = *list->Nth(0);
    EXPECT_EQ(item.name, text("Storm ☂"));
    EXPECT_EQ(item.type, Item_SearchHit);
    EXPECT_EQ(static_cast<int>(item.type), 4);
    EXPECT_EQ(item.sortKey, text("NEWS.WORLD:101:-2"));
    ASSERT_EQ(item.attributes.size(), 4u);
    EXPECT_EQ(item.attributes[0].name, text("_queue"));
    EXPECT_EQ(item.attributes[0].value, text("NEWS.WORLD"));
    EXPECT_EQ(item.attributes[1].name, text("_storyid"));
    EXPECT_EQ(item.attributes[1].value, text("101:-2"));
    EXPECT_EQ(item.attributes[2].name, text("title"));
    EXPECT_EQ(item.attributes[2].value, text("Große Flut"));
    EXPECT_EQ(item.attributes[3].name, text("page"));
    EXPECT_EQ(item.attributes[3].value, text("A1"));
    for (const Attribute &each : item.attributes)
        EXPECT_EQ(each.flags, 0);
}

TEST_F(SearchEventTest, RecordsKeepTheirOrderUntilTheEnd)
{
    const HitArray hits(twoHits);
    send(hits);
    ASSERT_EQ(list->Size(), 2);
    EXPECT_EQ(list->Nth(0)->name, text("Storm"));
    EXPECT_EQ(list->Nth(1)->name, text("Rain"));
}

TEST_F(SearchEventTest, FieldsWithoutAValueAreSkipped)
{
    const HitArray hits({{text("Storm"),
                          text("NEWS"),
                          {1, 2, 3},
                          {{text("title"), text("")}, {text("page"), QString()}, {text("slug"), text("x")}}}});
    send(hits);
    const Item &item = *list->Nth(0);
    EXPECT_EQ(item.attributes.size(), 3u);
    EXPECT_EQ(attribute(item, "slug"), text("x"));
}

TEST_F(SearchEventTest, FieldNamesFollowTheirRecord)
{
    const HitArray hits({{text("a"), text("Q"), {1, 0, 0}, {{text("title"), text("1")}, {text("page"), text("2")}}},
                         {text("b"), text("Q"), {2, 0, 0}, {{text("page"), text("3")}, {text("title"), text("4")}}},
                         {text("c"), text("Q"), {3, 0, 0}, {{text("titles"), text("5")}}},
                         {text("d"), text("Q"), {4, 0, 0}, {{QString(), text("6")}, {text("title"), text("7")}}}});
    send(hits);
    ASSERT_EQ(list->Size(), 4);
    EXPECT_EQ(attribute(*list->Nth(0), "title"), text("1"));
    EXPECT_EQ(attribute(*list->Nth(0), "page"), text("2"));
    EXPECT_EQ(attribute(*list->Nth(1), "title"), text("4"));
    EXPECT_EQ(attribute(*list->Nth(1), "page"), text("3"));
    EXPECT_EQ(attribute(*list->Nth(2), "titles"), text("5"));
    EXPECT_EQ(attribute(*list->Nth(2), "title"), text("(none)"));
    EXPECT_EQ(attribute(*list->Nth(3), ""), text("6"));
    EXPECT_EQ(attribute(*list->Nth(3), "title"), text("7"));
}

TEST_F(SearchEventTest, NullTextsAndFieldsAreEmpty)
{
    const HitArray hits({{QString(), QString(), {1, 2, 3}, {}}});
    ASSERT_EQ(hits.operator SAFEARRAY *()->cDims, 1);
    send(hits);
    ASSERT_EQ(list->Size(), 1);
    const Item &item = *list->Nth(0);
    EXPECT_TRUE(item.name.isEmpty());
    EXPECT_EQ(attribute(item, "_queue"), QString());
    EXPECT_EQ(item.sortKey, text(":1:2"));
    EXPECT_EQ(item.attributes.size(), 2u);
}

TEST_F(SearchEventTest, TotalZeroCompletesAfterTheRecordsWereAdded)
{
    const HitArray hits(twoHits);
    send(hits, 0, 0);
    EXPECT_TRUE(searcher->IsSearchDone(7));
    EXPECT_EQ(list->GetTotalHits(), 0);
    EXPECT_EQ(list->Size(), 2);
}

TEST_F(SearchEventTest, UnfinishedGoesOnAndFinishedCompletes)
{
    const HitArray first({{text("Storm"), text("NEWS"), {2, 2, 3}, {}}});
    const HitArray second({{text("Rain"), text("NEWS"), {1, 2, 3}, {}}});
    send(first, 12, 0);
    EXPECT_FALSE(searcher->IsSearchDone(7));
    EXPECT_EQ(list->Size(), 1);
    send(second, 12, 1);
    EXPECT_TRUE(searcher->IsSearchDone(7));
    EXPECT_EQ(list->GetTotalHits(), 12);
    ASSERT_EQ(list->Size(), 2);
    EXPECT_EQ(list->Nth(0)->name, text("Rain"));
}

TEST_F(SearchEventTest, NegativeFinishedMeansMoreWillFollow)
{
    const HitArray hits(twoHits);
    send(hits, 12, -1);
    EXPECT_FALSE(searcher->IsSearchDone(7));
}

TEST_F(SearchEventTest, FinishedAboveOneCompletes)
{
    const HitArray hits(twoHits);
    send(hits, 3, 2);
    EXPECT_TRUE(searcher->IsSearchDone(7));
    EXPECT_EQ(list->GetTotalHits(), 3);
}

TEST_F(SearchEventTest, ANegativeTotalIsKeptAsItIs)
{
    const HitArray hits(twoHits);
    send(hits, -5, 0);
    EXPECT_FALSE(searcher->IsSearchDone(7));
    send(hits, -5, 1);
    EXPECT_EQ(list->GetTotalHits(), -5);
}

TEST_F(SearchEventTest, DoubleHitsAreDroppedAtTheEnd)
{
    const HitArray hits(twoHits);
    send(hits, 2, 0);
    send(hits, 2, 0);
    EXPECT_EQ(list->Size(), 4);
    send(hits, 2, 1);
    EXPECT_EQ(list->Size(), 2);
}

TEST_F(SearchEventTest, AnEmptyArrayCompletes)
{
    const HitArray hits({});
    send(hits, 0, 1);
    EXPECT_TRUE(searcher->IsSearchDone(7));
    EXPECT_EQ(list->Size(), 0);
}

TEST_F(SearchEventTest, UnknownSearchesAreIgnored)
{
    const HitArray hits(twoHits);
    EXPECT_EQ(send(hits, 12, 1, 8), 0);
    EXPECT_EQ(send(hits, 12, 1, 0), 0);
    EXPECT_EQ(send(hits, 12, 1, -7), 0);
    EXPECT_EQ(list->Size(), 0);
    EXPECT_EQ(SearchProbe::count(), 1);
}

TEST_F(SearchEventTest, FinishedSearchesAreIgnored)
{
    const HitArray hits(twoHits);
    const HitArray none({});
    send(none, 5, 1);
    send(hits, 9, 1);
    EXPECT_EQ(list->Size(), 0);
    EXPECT_EQ(list->GetTotalHits(), 5);
}

TEST_F(SearchEventTest, StoppedSearchesAreIgnored)
{
    const HitArray hits(twoHits);
    searcher->StopSearch(7);
    send(hits, 9, 1);
    EXPECT_EQ(list->Size(), 0);
    EXPECT_EQ(list->GetTotalHits(), 0);
}

TEST_F(SearchEventTest, DeletedSearchesAreIgnored)
{
    const HitArray hits(twoHits);
    searcher->DeleteSearch(7);
    send(hits, 9, 1);
    EXPECT_EQ(SearchProbe::count(), 0);
}

TEST_F(SearchEventTest, WithoutASearcherNothingHappens)
{
    SearchProbe::destroy();
    const HitArray hits(twoHits);
    EXPECT_EQ(send(hits, 2, 1), 0);
    EXPECT_EQ(Search::TheSearcher, nullptr);
}

// ---- arrays that are none -------------------------------------------------------------------------------------------

TEST_F(SearchEventTest, ANullArrayIsIgnoredWithItsNumbers)
{
    EXPECT_EQ(send(nullptr, 0, 1), 0);
    EXPECT_EQ(send(nullptr, 12, 1), 0);
    EXPECT_FALSE(searcher->IsSearchDone(7));
}

TEST_F(SearchEventTest, TheArrayIsUnlockedAfterwards)
{
    const HitArray hits(twoHits);
    send(hits);
    EXPECT_EQ(hits->cLocks, 0u);
}

TEST_F(SearchEventTest, AnotherElementSizeHoldsNoHits)
{
    for (const ULONG size :
         {ULONG{1}, ULONG{8}, ULONG{16}, ULONG(sizeof(Orvex::SearchHit)) - 8, ULONG(sizeof(Orvex::SearchHit)) + 8}) {
        const Platform::SafeArray array(makePlainArray(size, 3));
        ASSERT_TRUE(array);
        std::memset(array.get()->pvData, 0x5A, std::size_t{size} * 3);
        EXPECT_EQ(send(array.get(), 12, 0), 0);
    }
    EXPECT_EQ(list->Size(), 0);
    const Platform::SafeArray array(makePlainArray(8, 3));
    send(array.get(), 12, 1);
    EXPECT_TRUE(searcher->IsSearchDone(7)) << "the search has ended all the same";
    EXPECT_EQ(list->Size(), 0);
}

TEST_F(SearchEventTest, TwoDimensionsHoldNoHits)
{
    SAFEARRAY *made = nullptr;
    ASSERT_EQ(SafeArrayAllocDescriptor(2, &made), S_OK);
    made->cbElements = sizeof(Orvex::SearchHit);
    made->rgsabound[0] = {1, 0};
    made->rgsabound[1] = {1000000, 0}; // of which the first has none
    made->rgsabound[0].cElements = 0;
    const Platform::SafeArray array(made);
    SafeArrayAllocData(made);
    EXPECT_EQ(send(array.get()), 0);
    EXPECT_EQ(list->Size(), 0);
}

TEST_F(SearchEventTest, AnArrayWithoutDataHoldsNoHits)
{
    SAFEARRAY *made = nullptr;
    ASSERT_EQ(SafeArrayAllocDescriptor(1, &made), S_OK);
    made->cbElements = sizeof(Orvex::SearchHit);
    made->rgsabound[0] = {1000, 0};
    const Platform::SafeArray array(made);
    EXPECT_EQ(send(array.get()), 0);
    EXPECT_EQ(list->Size(), 0);
}

TEST_F(SearchEventTest, ArraysOfOtherThingsHoldNoHits)
{
    for (const VARTYPE type : {VT_I4, VT_BSTR, VT_VARIANT, VT_UI1, VT_R8}) {
        const Platform::SafeArray array(SafeArrayCreateVector(type, 0, 5));
        EXPECT_EQ(send(array.get()), 0) << type;
    }
    EXPECT_EQ(list->Size(), 0);
}

TEST_F(SearchEventTest, RecordsAreReadWhenTheirDescriptionSaysHits)
{
    CountedRecordInfo info;
    info.guid = __uuidof(Orvex::SearchHit);
    info.guidResult = S_OK;
    {
        const Platform::SafeArray array = twoRecords(info);
        ASSERT_TRUE(array);
        const LONG references = info.references;
        EXPECT_EQ(send(array.get()), 0);
        EXPECT_EQ(info.references, references);
    }
    EXPECT_EQ(list->Size(), 2);
}

TEST_F(SearchEventTest, RecordsOfAnotherDescriptionAreNoHits)
{
    CountedRecordInfo info;
    info.guid = __uuidof(Orvex::FieldValue);
    info.guidResult = S_OK;
    {
        const Platform::SafeArray array = twoRecords(info);
        ASSERT_TRUE(array);
        std::memset(array.get()->pvData, 0x5A, 2 * sizeof(Orvex::SearchHit));
        EXPECT_EQ(send(array.get()), 0);
    }
    EXPECT_EQ(list->Size(), 0);
    EXPECT_EQ(info.references, 0);
}

TEST_F(SearchEventTest, RecordsWhoseDescriptionTellsNoKindAreRead)
{
    CountedRecordInfo silent;
    silent.guidResult = E_NOTIMPL;
    CountedRecordInfo nameless;
    nameless.guidResult = S_OK;
    nameless.guid = GUID{};
    CountedRecordInfo raising;
    raising.raisesForGuid = true;
    int hits = 0;
    for (CountedRecordInfo *const info : {&silent, &nameless, &raising}) {
        const Platform::SafeArray array = twoRecords(*info);
        ASSERT_TRUE(array);
        EXPECT_EQ(send(array.get()), 0);
        EXPECT_EQ(list->Size(), hits += 2);
    }
}

TEST_F(SearchEventTest, TheLowerBoundDoesNotMatter)
{
    for (const LONG lower : {-2, 1, 1000}) {
        const Platform::SafeArray array(makePlainArray(sizeof(Orvex::SearchHit), 1, lower));
        static_cast<Orvex::SearchHit *>(array.get()->pvData)->id.part1 = 5;
        send(array.get());
    }
    ASSERT_EQ(list->Size(), 3);
    EXPECT_EQ(list->Nth(2)->sortKey, text(":5:0"));
}

TEST_F(SearchEventTest, FieldsOfAnotherShapeAreNone)
{
    SAFEARRAY *twoDimensions = nullptr;
    ASSERT_EQ(SafeArrayAllocDescriptor(2, &twoDimensions), S_OK);
    twoDimensions->cbElements = sizeof(Orvex::FieldValue);
    twoDimensions->rgsabound[0] = {1, 0};
    twoDimensions->rgsabound[1] = {1, 0};
    ASSERT_EQ(SafeArrayAllocData(twoDimensions), S_OK);
    SAFEARRAY *const anotherSize = makePlainArray(24, 2);
    std::memset(anotherSize->pvData, 0x5A, 48);

    HitArray hits({twoHits.at(0), twoHits.at(1)});
    hits[0].fields = twoDimensions;
    hits[1].fields = anotherSize;
    EXPECT_EQ(send(hits), 0);
    ASSERT_EQ(list->Size(), 2);
    EXPECT_EQ(list->Nth(0)->attributes.size(), 2u);
    EXPECT_EQ(list->Nth(1)->attributes.size(), 2u);
}

TEST_F(SearchEventTest, FieldsOfTypedNumbersOfTheSameSizeAreNone)
{
    SAFEARRAYBOUND bound = {2, 0};
    SAFEARRAY *const decimals = SafeArrayCreate(VT_DECIMAL, 1, &bound);
    if (!decimals)
        GTEST_SKIP() << "this platform makes no such arrays";
    ASSERT_EQ(decimals->cbElements, sizeof(Orvex::FieldValue));
    std::memset(decimals->pvData, 0x5A, 32);
    {
        Orvex::SearchHit record = {nullptr, nullptr, {1, 2, 3}, decimals};
        const Platform::SafeArray array(makePlainArray(sizeof record, 1));
        std::memcpy(array.get()->pvData, &record, sizeof record);
        EXPECT_EQ(send(array.get()), 0);
    }
    SafeArrayDestroy(decimals);
    ASSERT_EQ(list->Size(), 1);
    EXPECT_EQ(list->Nth(0)->attributes.size(), 2u);
}

TEST_F(SearchEventTest, AHundredThousandHitsArrive)
{
    const int count = 100000;
    const Platform::SafeArray array(makePlainArray(sizeof(Orvex::SearchHit), count));
    auto *record = static_cast<Orvex::SearchHit *>(array.get()->pvData);
    for (int i = 0; i < count; ++i)
        record[i].id = {count - i, 0, 0};
    send(array.get(), count, 1);
    EXPECT_TRUE(searcher->IsSearchDone(7));
    EXPECT_EQ(list->GetTotalHits(), count);
    ASSERT_EQ(list->Size(), count);
    EXPECT_EQ(list->Nth(0)->sortKey, text(":100000:0")); // keys are text: "0" comes before ":"
    EXPECT_EQ(list->Nth(count - 1)->sortKey, text(":9:0"));
}
