// A list of items and its lock as hosts see them.

#include <gtest/gtest.h>

#include <future>

#include <quire/tree/ItemList.h>

#include "support/QtPrinting.h"
#include "support/Text.h"
#include "tree/Waiting.h"

using namespace Quire;

namespace {

Item named(const char *name)
{
    return Item(text(name), Item_Queue);
}

Item keyed(const char *key, const char *name)
{
    Item item(text(name), Item_SearchHit);
    item.sortKey = text(key);
    return item;
}

QStringList names(ItemList &list)
{
    QStringList all;
    for (int index = 0; index < list.u_Size(); ++index)
        all.append(list.u_Nth(index)->name);
    return all;
}

/// A list of the queues ONE, TWO and THREE.
class ItemListTest : public ::testing::Test
{
protected:
    void SetUp() override
    {
        list.Append(named("ONE"));
        list.Append(named("TWO"));
        list.Append(named("THREE"));
    }

    bool otherThreadGetsLock()
    {
        return onOtherThread([this] {
            const bool got = list.tryLock();
            if (got)
                list.Unlock();
            return got;
        });
    }

    ItemList list;
};

} // namespace

// ---- a new list -----------------------------------------------------------------------------------------------------

TEST(NewItemList, IsEmptyNamelessAndNumberedZero)
{
    ItemList list;
    EXPECT_EQ(list.Size(), 0);
    EXPECT_EQ(list.u_Size(), 0);
    EXPECT_EQ(list.ID(), 0);
    EXPECT_EQ(list.Name(), QString());
}

TEST(NewItemList, HasChanged)
{
    ItemList list;
    EXPECT_TRUE(list.HasChanged(false));
}

TEST(NewItemList, HasNoItemAtAnyIndex)
{
    ItemList list;
    for (const int index : {-2147483647 - 1, -1, 0, 1, 2147483647}) {
        EXPECT_EQ(list.Nth(index), nullptr) << index;
        EXPECT_EQ(list.u_Nth(index), nullptr) << index;
    }
}

TEST(NewItemList, FindsNothing)
{
    ItemList list;
    EXPECT_EQ(list.Find(QString()), -1);
    EXPECT_EQ(list.FindByAttribute(QString(), QString()), -1);
}

TEST(NewItemList, IsClearedAndSortedInPeace)
{
    ItemList list;
    list.Clear();
    list.SortUnique();
    EXPECT_EQ(list.Size(), 0);
}

TEST(NewItemList, IsUnlockedInPeace)
{
    ItemList list;
    list.Unlock();
    EXPECT_TRUE(list.tryLock());
}

// ---- identity -------------------------------------------------------------------------------------------------------

TEST_F(ItemListTest, KeepsItsNumber)
{
    list.SetID(-7);
    EXPECT_EQ(list.ID(), -7);
}

TEST_F(ItemListTest, HandsOutItsOwnName)
{
    list.SetName(text("NEWS"));
    const QString &name = list.Name();
    EXPECT_EQ(name, text("NEWS"));
    list.SetName(text("MAIL"));
    EXPECT_EQ(name, text("MAIL"));
}

TEST_F(ItemListTest, TellsNumberAndNameWhileAnotherThreadHoldsTheLock)
{
    list.Lock();
    EXPECT_EQ(onOtherThread([this] {
                  list.SetID(3);
                  list.SetName(text("X"));
                  return list.Name() + QString::number(list.ID()) + QString::number(list.u_Size()) +
                         list.u_Nth(1)->name;
              }),
              text("X33TWO"));
    list.Unlock();
}

// ---- items ----------------------------------------------------------------------------------------------------------

TEST_F(ItemListTest, AppendsAtTheEnd)
{
    EXPECT_EQ(names(list), QStringList({text("ONE"), text("TWO"), text("THREE")}));
    EXPECT_EQ(list.Size(), 3);
    EXPECT_EQ(list.u_Size(), 3);
}

TEST_F(ItemListTest, AppendsACopy)
{
    Item item = named("FOUR");
    item.AddAttr(text("a"), text("1"));
    list.Append(item);
    item.name = text("changed");
    item.attributes.clear();
    EXPECT_EQ(list.Nth(3)->name, text("FOUR"));
    EXPECT_EQ(list.Nth(3)->attributes.size(), 1u);
}

TEST_F(ItemListTest, AppendsAnItemOfItsOwn)
{
    for (int count = 0; count < 100; ++count)
        list.Append(*list.Nth(0));
    EXPECT_EQ(list.Size(), 103);
    EXPECT_EQ(list.Nth(102)->name, text("ONE"));
}

TEST_F(ItemListTest, GivesTheItemItself)
{
    list.Nth(1)->name = text("ZWEI");
    EXPECT_EQ(list.u_Nth(1)->name, text("ZWEI"));
    EXPECT_EQ(list.Nth(1), list.u_Nth(1));
}

TEST_F(ItemListTest, HasNoItemOutsideItsSize)
{
    EXPECT_EQ(list.Nth(-1), nullptr);
    EXPECT_EQ(list.Nth(list.Size()), nullptr);
    EXPECT_EQ(list.u_Nth(-1), nullptr);
    EXPECT_EQ(list.u_Nth(list.u_Size()), nullptr);
    EXPECT_NE(list.Nth(list.Size() - 1), nullptr);
}

TEST_F(ItemListTest, ClearsAllItems)
{
    list.Clear();
    EXPECT_EQ(list.Size(), 0);
    EXPECT_EQ(list.Nth(0), nullptr);
    EXPECT_EQ(list.Find(text("ONE")), -1);
}

// ---- finding --------------------------------------------------------------------------------------------------------

TEST_F(ItemListTest, FindsNamesWhateverTheirCase)
{
    EXPECT_EQ(list.Find(text("Two")), 1);
    EXPECT_EQ(list.Find(text("two")), 1);
    list.Append(named("News"));
    EXPECT_EQ(list.Find(text("NEWS")), 3);
}

TEST_F(ItemListTest, FindsNamesWithLettersOutsideAscii)
{
    list.Append(named("ÉLECTION"));
    EXPECT_EQ(list.Find(text("élection")), 3);
}

TEST_F(ItemListTest, FindsNoNameThatIsLongerOrShorter)
{
    list.Append(named("NEWSX"));
    EXPECT_EQ(list.Find(text("News")), -1);
    list.Append(named("NEWS"));
    EXPECT_EQ(list.Find(text("News")), 4);
    EXPECT_EQ(list.Find(text("NE")), -1);
    EXPECT_EQ(list.Find(QString()), -1);
}

TEST_F(ItemListTest, FindsTheFirstOfSeveral)
{
    list.Append(named("two"));
    EXPECT_EQ(list.Find(text("two")), 1);
}

TEST_F(ItemListTest, FindsANamelessItem)
{
    list.Append(Item(QString(), Item_Directory));
    EXPECT_EQ(list.Find(QString()), 3);
    EXPECT_EQ(list.Find(text("")), 3);
}

TEST_F(ItemListTest, FindsAttributesByExactValue)
{
    list.Nth(1)->AddAttr(text("key"), text("Value"));
    EXPECT_EQ(list.FindByAttribute(text("key"), text("Value")), 1);
    EXPECT_EQ(list.FindByAttribute(text("key"), text("value")), -1);
    EXPECT_EQ(list.FindByAttribute(text("key"), text("Valu")), -1);
    EXPECT_EQ(list.FindByAttribute(text("Key"), text("Value")), -1);
}

TEST_F(ItemListTest, FindsByTheFirstAttributeOfThatNameOnly)
{
    list.Nth(0)->AddAttr(text("key"), text("1"));
    list.Nth(0)->AddAttr(text("key"), text("2"));
    list.Nth(2)->AddAttr(text("key"), text("2"));
    EXPECT_EQ(list.FindByAttribute(text("key"), text("2")), 2);
}

TEST_F(ItemListTest, SkipsItemsWithoutTheAttribute)
{
    EXPECT_EQ(list.FindByAttribute(text("key"), QString()), -1);
    list.Nth(2)->AddAttr(text("key"), QString());
    EXPECT_EQ(list.FindByAttribute(text("key"), QString()), 2);
}

TEST_F(ItemListTest, FindsTheFirstItemWithTheValue)
{
    list.Nth(1)->AddAttr(text("key"), text("v"));
    list.Nth(2)->AddAttr(text("key"), text("v"));
    EXPECT_EQ(list.FindByAttribute(text("key"), text("v")), 1);
}

// ---- sorting --------------------------------------------------------------------------------------------------------

TEST(SortUnique, KeepsTheFirstItemOfEachKeyInKeyOrder)
{
    ItemList list;
    list.Append(keyed("b", "first b"));
    list.Append(keyed("a", "first a"));
    list.Append(keyed("b", "second b"));
    list.Append(keyed("a", "second a"));
    list.SortUnique();
    EXPECT_EQ(names(list), QStringList({text("first a"), text("first b")}));
    EXPECT_EQ(list.Size(), 2);
}

TEST(SortUnique, OrdersKeysAsPlainText)
{
    ItemList list;
    for (const char *key : {"é", "b", "B", "10", "9", "", "b "})
        list.Append(keyed(key, key));
    list.SortUnique();
    EXPECT_EQ(names(list), QStringList({text(""), text("10"), text("9"), text("B"), text("b"), text("b "), text("é")}));
}

TEST(SortUnique, LeavesTheFirstItemOfAListWithoutKeys)
{
    ItemList list;
    list.Append(named("Z"));
    list.Append(named("A"));
    list.Append(named("M"));
    list.SortUnique();
    EXPECT_EQ(names(list), QStringList(text("Z")));
}

TEST(SortUnique, KeepsWhatBelongsToAnItem)
{
    ItemList list;
    list.Append(keyed("b", "B"));
    Item item = keyed("a", "A");
    item.AddAttr(text("key"), text("value"), 9);
    item.storyAttrsExpanded = true;
    list.Append(item);
    list.SortUnique();
    const Item *const first = list.Nth(0);
    EXPECT_EQ(first->name, text("A"));
    EXPECT_EQ(first->type, Item_SearchHit);
    EXPECT_EQ(first->sortKey, text("a"));
    EXPECT_TRUE(first->storyAttrsExpanded);
    ASSERT_EQ(first->attributes.size(), 1u);
    EXPECT_EQ(first->attributes[0].value, text("value"));
    EXPECT_EQ(first->attributes[0].flags, 9);
}

TEST(SortUnique, KeepsTheFirstItemOfEachKeyOfMany)
{
    ItemList list;
    const int count = 20000;
    for (int index = 0; index < count; ++index)
        list.Append(keyed(QByteArray::number(index % 1000).rightJustified(4, '0').constData(),
                          QByteArray::number(index).constData()));
    list.SortUnique();
    ASSERT_EQ(list.Size(), 1000);
    for (int index = 0; index < 1000; ++index) {
        ASSERT_EQ(list.Nth(index)->sortKey.toInt(), index);
        ASSERT_EQ(list.Nth(index)->name.toInt(), index);
    }
}

// ---- the change flag ------------------------------------------------------------------------------------------------

TEST_F(ItemListTest, ChangeIsToldUntilItIsTaken)
{
    EXPECT_TRUE(list.HasChanged(false));
    EXPECT_TRUE(list.HasChanged(false));
    EXPECT_TRUE(list.HasChanged(true));
    EXPECT_FALSE(list.HasChanged(true));
    EXPECT_FALSE(list.HasChanged(false));
}

TEST_F(ItemListTest, ChangeIsToldAgainWhenSet)
{
    list.HasChanged(true);
    list.SetChanged();
    EXPECT_TRUE(list.HasChanged(true));
    EXPECT_FALSE(list.HasChanged(true));
}

TEST_F(ItemListTest, ItemsComeAndGoWithoutAChange)
{
    list.HasChanged(true);
    list.Append(named("FOUR"));
    EXPECT_FALSE(list.HasChanged(false));
    list.SortUnique();
    EXPECT_FALSE(list.HasChanged(false));
    list.Clear();
    EXPECT_FALSE(list.HasChanged(false));
}

TEST_F(ItemListTest, ItemsComeAndGoWithoutTakingAChange)
{
    list.Append(named("FOUR"));
    list.SortUnique();
    list.Clear();
    EXPECT_TRUE(list.HasChanged(false));
}

// ---- the host's lock ------------------------------------------------------------------------------------------------

TEST_F(ItemListTest, OperationsRunOnTheThreadThatHoldsTheLock)
{
    list.Lock();
    EXPECT_EQ(list.Size(), 3);
    EXPECT_EQ(list.Find(text("TWO")), 1);
    EXPECT_EQ(list.FindByAttribute(text("key"), text("v")), -1);
    EXPECT_NE(list.Nth(0), nullptr);
    EXPECT_TRUE(list.HasChanged(true));
    list.SetChanged();
    list.Append(named("FOUR"));
    list.SortUnique();
    list.Clear();
    EXPECT_EQ(list.Size(), 0);
    list.Unlock();
}

TEST_F(ItemListTest, OperationsLeaveTheHostsLockHeld)
{
    list.Lock();
    list.Size();
    list.Append(named("FOUR"));
    list.SortUnique();
    EXPECT_FALSE(otherThreadGetsLock());
    list.Unlock();
    EXPECT_TRUE(otherThreadGetsLock());
}

TEST_F(ItemListTest, TryLockGetsAFreeLock)
{
    EXPECT_TRUE(list.tryLock());
    EXPECT_FALSE(otherThreadGetsLock());
    list.Unlock();
    EXPECT_TRUE(otherThreadGetsLock());
}

TEST_F(ItemListTest, TryLockFailsAtOnceWhileAnotherThreadHoldsTheLock)
{
    list.Lock();
    EXPECT_FALSE(otherThreadGetsLock());
    list.Unlock();
}

TEST_F(ItemListTest, TryLockSucceedsOnTheThreadThatHoldsTheLock)
{
    list.Lock();
    EXPECT_TRUE(list.tryLock());
}

TEST_F(ItemListTest, AFailedTryLockLeavesTheLockToItsHolder)
{
    list.Lock();
    EXPECT_FALSE(onOtherThread([this] { return list.tryLock(); }));
    EXPECT_FALSE(otherThreadGetsLock());
    list.Unlock();
    EXPECT_TRUE(otherThreadGetsLock());
}

TEST_F(ItemListTest, AfterLockingTwiceOneUnlockDoesNotRelease)
{
    list.Lock();
    list.Lock();
    list.Unlock();
    EXPECT_FALSE(otherThreadGetsLock());
    list.Unlock();
    EXPECT_FALSE(otherThreadGetsLock());
    EXPECT_EQ(list.Size(), 3); // this thread still gets in
}

TEST_F(ItemListTest, AfterTryLockOnTheHoldingThreadOneUnlockDoesNotRelease)
{
    list.Lock();
    EXPECT_TRUE(list.tryLock());
    list.Unlock();
    EXPECT_FALSE(otherThreadGetsLock());
}

TEST_F(ItemListTest, LockWaitsForTheHolder)
{
    list.Lock();
    std::promise<void> waiting;
    auto other = std::async(std::launch::async, [&] {
        waiting.set_value();
        list.Lock();
        const int size = list.u_Size();
        list.Unlock();
        return size;
    });
    waiting.get_future().wait();
    list.Append(named("FOUR"));
    list.Unlock();
    EXPECT_EQ(other.get(), 4);
}

TEST_F(ItemListTest, AnOperationWaitsForTheHolder)
{
    list.Lock();
    auto other = std::async(std::launch::async, [&] { return list.Size(); });
    EXPECT_EQ(other.wait_for(std::chrono::milliseconds(20)), std::future_status::timeout);
    list.Append(named("FOUR"));
    list.Unlock();
    EXPECT_EQ(other.get(), 4);
}

TEST(ItemListEnd, ReleasesALockThatIsStillHeld)
{
    // The mutex must be free when it is destroyed; Qt says so otherwise.
    ItemList once;
    once.Lock();
    ItemList twice;
    twice.Lock();
    twice.Lock();
    ItemList thrice;
    thrice.Lock();
    thrice.tryLock();
    thrice.Lock();
    thrice.Unlock();
}

TEST(ItemListLocks, OfTwoListsAreIndependent)
{
    ItemList one;
    ItemList two;
    one.Lock();
    EXPECT_TRUE(onOtherThread([&] {
        const bool got = two.tryLock();
        two.Unlock();
        return got;
    }));
    two.Lock();
    one.Unlock();
    EXPECT_TRUE(onOtherThread([&] {
        const bool got = one.tryLock();
        one.Unlock();
        return got;
    }));
    two.Unlock();
}

// ---- many threads ---------------------------------------------------------------------------------------------------

TEST(ItemListThreads, ShareOneList)
{
    ItemList list;
    const int threads = 4;
    const int rounds = 500;
    std::vector<std::future<int>> workers;
    workers.reserve(threads);
    for (int number = 0; number < threads; ++number) {
        workers.push_back(std::async(std::launch::async, [&list] {
            int found = 0;
            for (int round = 0; round < rounds; ++round) {
                list.Lock();
                list.Append(named("X"));
                found += list.Find(text("x")) == 0 && list.Nth(list.Size() - 1)->name == text("X") ? 1 : 0;
                list.Unlock();
                if (list.tryLock()) {
                    found += list.u_Nth(list.u_Size()) ? 1 : 0;
                    list.Unlock();
                }
                list.HasChanged(true);
            }
            return found;
        }));
    }
    for (std::future<int> &worker : workers)
        EXPECT_EQ(worker.get(), rounds);
    EXPECT_EQ(list.Size(), threads * rounds);
}
