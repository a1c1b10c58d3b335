// The list of a search's hits by itself, and how the searcher fills it.

#include <gmock/gmock.h>

#include <quire/session/QuireCOM.h>
#include <quire/tree/ListMutexLocker.h>
#include <quire/tree/SearchList.h>

#include "tree/TreeFixture.h"
#include "tree/Waiting.h"

using namespace Quire;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

namespace {

class SearchListTest : public TreeTest
{
protected:
    static Item hit(const char *key)
    {
        Item item(text(key), Item_SearchHit);
        item.sortKey = text(key);
        return item;
    }

    void addHit(const char *key)
    {
        std::vector<Item> hits{hit(key)};
        list.AddHits(hits);
    }

    SearchList list{7, text("{storm}")};
};

} // namespace

TEST_F(SearchListTest, TellsWhatItWasMadeWith)
{
    EXPECT_EQ(list.SearchID(), 7);
    EXPECT_EQ(list.ID(), 7);
    EXPECT_EQ(list.SearchStr(), text("{storm}"));
    EXPECT_EQ(list.Name(), text("{storm}"));
}

TEST_F(SearchListTest, IsRunningAndWithoutHitsAtFirst)
{
    EXPECT_FALSE(list.IsSearchComplete());
    EXPECT_EQ(list.GetTotalHits(), 0);
    EXPECT_EQ(list.Size(), 0);
    EXPECT_TRUE(list.HasChanged(false));
}

TEST_F(SearchListTest, GivesACopyOfItsText)
{
    const QString before = list.SearchStr();
    list.SetName(text("other"));
    EXPECT_EQ(before, text("{storm}"));
    EXPECT_EQ(list.SearchStr(), text("other"));
}

TEST_F(SearchListTest, ItsNumberIsThatOfTheList)
{
    list.SetID(-9);
    EXPECT_EQ(list.SearchID(), -9);
}

TEST_F(SearchListTest, KeepsTheTotal)
{
    list.SetTotalHits(1234);
    EXPECT_EQ(list.GetTotalHits(), 1234);
    list.SetTotalHits(-1);
    EXPECT_EQ(list.GetTotalHits(), -1);
}

TEST_F(SearchListTest, IsCompleteOnceMarked)
{
    list.SetSearchComplete();
    EXPECT_TRUE(list.IsSearchComplete());
    EXPECT_EQ(list.GetTotalHits(), 0);
}

TEST_F(SearchListTest, AHitIsAddedAtTheEndAndTold)
{
    list.HasChanged(true);
    addHit("b");
    EXPECT_TRUE(list.HasChanged(true));
    addHit("a");
    EXPECT_TRUE(list.HasChanged(true));
    EXPECT_EQ(namesOf(list), QStringList({text("b"), text("a")}));
    EXPECT_FALSE(list.IsSearchComplete());
}

TEST_F(SearchListTest, HitsOfOneBatchAreAddedInOrder)
{
    addHit("c");
    list.HasChanged(true);
    std::vector<Item> hits{hit("b"), hit("a")};
    list.AddHits(hits);
    EXPECT_TRUE(list.HasChanged(true));
    EXPECT_EQ(namesOf(list), QStringList({text("c"), text("b"), text("a")}));
}

TEST_F(SearchListTest, CompletingSortsAndDropsDoubleHitsAndTells)
{
    for (const char *key : {"b", "a", "b", "a"})
        addHit(key);
    list.HasChanged(true);
    list.Complete(40);
    EXPECT_TRUE(list.HasChanged(true));
    EXPECT_TRUE(list.IsSearchComplete());
    EXPECT_EQ(list.GetTotalHits(), 40);
    EXPECT_EQ(namesOf(list), QStringList({text("a"), text("b")}));
}

TEST_F(SearchListTest, NobodyReadsBetweenTheStepsOfCompleting)
{
    addHit("b");
    addHit("a");
    list.Lock();
    auto completing = std::async(std::launch::async, [this] { list.Complete(2); });
    std::this_thread::sleep_for(std::chrono::milliseconds(20));
    EXPECT_FALSE(list.IsSearchComplete());
    EXPECT_EQ(namesOf(list), QStringList({text("b"), text("a")}));
    list.Unlock();
    completing.get();
    EXPECT_TRUE(list.IsSearchComplete());
}

TEST_F(SearchListTest, StoppingAsksTheServerAndMarks)
{
    list.StopSearch();
    EXPECT_THAT(server.calls(), ElementsAre(text("StopSearch(7)")));
    EXPECT_TRUE(list.IsSearchComplete());
}

TEST_F(SearchListTest, StoppingMarksAlsoWhenTheServerRefuses)
{
    server.fail(text("StopSearch"), E_FAIL);
    list.StopSearch();
    EXPECT_TRUE(list.IsSearchComplete());
}

TEST_F(SearchListTest, StoppingACompleteSearchDoesNothing)
{
    list.SetSearchComplete();
    list.StopSearch();
    EXPECT_THAT(server.calls(), IsEmpty());
}

TEST_F(SearchListTest, StoppingWithoutASessionDoesNothing)
{
    QuireCOM::UnloadCOM();
    server.forgetCalls();
    list.StopSearch();
    EXPECT_THAT(server.calls(), IsEmpty());
    EXPECT_FALSE(list.IsSearchComplete());
}

TEST_F(SearchListTest, StoppingRaisesWhenNothingIsLoaded)
{
    unload();
    EXPECT_THROW(list.StopSearch(), _com_error);
    EXPECT_FALSE(list.IsSearchComplete());
}

TEST_F(SearchListTest, TheSearchersListEndsWhileTheHostHoldsItsLock)
{
    startSearcher();
    server.searchId = 7;
    SearchList *const started = open("NEWS")->StartSearch(text("storm"));
    ASSERT_TRUE(started);
    ItemList *const lent = Search::TheSearcher->AccessSearchResults(7);
    ASSERT_EQ(lent, started);
    EXPECT_FALSE(Search::TheSearcher->IsSearchDone(7));
    EXPECT_FALSE(onOtherThread([lent] { return lent->tryLock(); }));
    Search::TheSearcher->EndAccessSearchResults(7);
    EXPECT_TRUE(onOtherThread([lent] {
        const bool got = lent->tryLock();
        lent->Unlock();
        return got;
    }));
}
