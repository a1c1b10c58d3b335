// The order of the library's locks: what is taken out of it is named, what keeps to it is not.

#include <quire/session/LockOrder.h>

#include <QStringList>

#include <gtest/gtest.h>

#include <initializer_list>
#include <thread>

#include <quire/session/Mutex.h>
#include <quire/session/QuireCOM.h>
#include <quire/session/QuireCOMMutex.h>
#include <quire/tree/ItemList.h>
#include <quire/tree/ListMutexLocker.h>

#include "support/DebugCapture.h"
#include "support/QtPrinting.h"

using namespace Quire;

namespace {

QStringList brokenOrders;

/// Catches what the check says while it lives.
class LockOrderTest : public ::testing::Test
{
protected:
    LockOrderTest()
    {
        brokenOrders.clear();
        LockOrder::setHandler([](const QString &message) { brokenOrders.append(message); });
    }
    ~LockOrderTest() override { LockOrder::setHandler(nullptr); }
    void TearDown() override { EXPECT_EQ(LockOrder::held(), 0); }

    /// What is said when this thread takes locks of those ranks, each of them another one, one inside the other.
    static QStringList nesting(std::initializer_list<LockRank> ranks)
    {
        brokenOrders.clear();
        const LockRank *const first = ranks.begin();
        for (const LockRank &rank : ranks) {
            LockOrder::wants(rank, &rank);
            LockOrder::has(rank, &rank);
        }
        for (const LockRank *each = ranks.end(); each != first;)
            LockOrder::gives(--each);
        return brokenOrders;
    }
};

/// The locks that the library takes by itself report only where that is compiled in.
class RealLocksTest : public LockOrderTest
{
protected:
    void SetUp() override
    {
        if (!LockOrder::isChecked)
            GTEST_SKIP() << "the order of locks is checked in Debug builds";
    }
};

const int someLock = 0;
const int otherLock = 0;

} // namespace

// ---- the rules ------------------------------------------------------------------------------------------------------

TEST_F(LockOrderTest, LocksMayBeTakenInTheOrderOfTheTable)
{
    EXPECT_EQ(nesting({LockRank::UpdateManager, LockRank::ServerAccess, LockRank::Searcher, LockRank::List,
                       LockRank::Workers, LockRank::UpdateState, LockRank::WorkersInside}),
              QStringList());
}

TEST_F(LockOrderTest, TheUpdateManagerComesBeforeTheServerAccessLock)
{
    EXPECT_EQ(nesting({LockRank::UpdateManager, LockRank::ServerAccess}), QStringList());
    EXPECT_EQ(nesting({LockRank::ServerAccess, LockRank::UpdateManager}),
              QStringList{QStringLiteral("lock order broken: update manager taken under server access")});
}

TEST_F(LockOrderTest, TheSearcherComesBeforeItsLists)
{
    EXPECT_EQ(nesting({LockRank::Searcher, LockRank::List}), QStringList());
    EXPECT_EQ(nesting({LockRank::List, LockRank::Searcher}),
              QStringList{QStringLiteral("lock order broken: searcher taken under item list")});
}

TEST_F(LockOrderTest, TheServerIsNotCalledUnderTheLockOfAList)
{
    EXPECT_EQ(nesting({LockRank::List, LockRank::ServerAccess}),
              QStringList{QStringLiteral("lock order broken: server access taken under item list")});
}

TEST_F(LockOrderTest, SeveralListsMayBeLockedAtOnce)
{
    EXPECT_EQ(nesting({LockRank::List, LockRank::List}), QStringList());
}

TEST_F(LockOrderTest, NothingIsTakenUnderALeaf)
{
    EXPECT_EQ(nesting({LockRank::Forms, LockRank::HandleCache}),
              QStringList{QStringLiteral("lock order broken: handle cache taken under forms")});
    EXPECT_EQ(nesting({LockRank::HandleCache, LockRank::Forms}),
              QStringList{QStringLiteral("lock order broken: forms taken under handle cache")});
    EXPECT_EQ(nesting({LockRank::Forms, LockRank::Forms}),
              QStringList{QStringLiteral("lock order broken: forms taken under forms")});
}

TEST_F(LockOrderTest, ALockFarBelowIsHeldAgainstOneTakenLater)
{
    EXPECT_EQ(nesting({LockRank::ServerAccess, LockRank::List, LockRank::UpdateManager}),
              QStringList{QStringLiteral("lock order broken: update manager taken under server access")});
}

TEST_F(LockOrderTest, BothLabelsAreNamed)
{
    const QString text = QStringLiteral("Queue::Refresh()");
    LockOrder::has(LockRank::List, &someLock, {nullptr, &text});
    LockOrder::wants(LockRank::ServerAccess, &otherLock, {"QuireCOM::GetDir", nullptr});
    LockOrder::gives(&someLock);
    EXPECT_EQ(brokenOrders, QStringList{QStringLiteral("lock order broken: \"QuireCOM::GetDir\" (server access) taken "
                                                       "under \"Queue::Refresh()\" (item list)")});
}

TEST_F(LockOrderTest, ALockThatTheThreadHoldsIsTakenAgainOnlyWhenItIsRecursive)
{
    LockOrder::has(LockRank::UpdateManager, &someLock);
    LockOrder::wants(LockRank::UpdateManager, &someLock, {}, true);
    EXPECT_EQ(brokenOrders, QStringList());
    LockOrder::wants(LockRank::UpdateManager, &someLock);
    EXPECT_EQ(brokenOrders,
              QStringList{QStringLiteral("lock order broken: update manager taken under update manager")});
    LockOrder::gives(&someLock);
}

TEST_F(LockOrderTest, ARecursiveLockIsHeldUntilItIsGivenUpAsOftenAsItWasTaken)
{
    LockOrder::has(LockRank::UpdateManager, &someLock);
    LockOrder::has(LockRank::UpdateManager, &someLock);
    LockOrder::gives(&someLock);
    EXPECT_EQ(LockOrder::held(), 1);
    LockOrder::gives(&someLock);
    EXPECT_EQ(LockOrder::held(), 0);
}

TEST_F(LockOrderTest, LocksAreGivenUpInAnyOrder)
{
    LockOrder::has(LockRank::Searcher, &someLock);
    LockOrder::has(LockRank::List, &otherLock);
    LockOrder::gives(&someLock);
    EXPECT_EQ(LockOrder::held(), 1);
    LockOrder::wants(LockRank::Searcher, &someLock);
    EXPECT_EQ(brokenOrders, QStringList{QStringLiteral("lock order broken: searcher taken under item list")});
    LockOrder::gives(&otherLock);
}

TEST_F(LockOrderTest, GivingUpWhatIsNotHeldDoesNothing)
{
    LockOrder::has(LockRank::List, &someLock);
    LockOrder::gives(&otherLock);
    EXPECT_EQ(LockOrder::held(), 1);
    LockOrder::gives(&someLock);
}

TEST_F(LockOrderTest, EachThreadHasItsOwnLocks)
{
    LockOrder::has(LockRank::List, &someLock);
    std::thread([] { LockOrder::wants(LockRank::ServerAccess, &otherLock); }).join();
    LockOrder::gives(&someLock);
    EXPECT_EQ(brokenOrders, QStringList());
}

TEST_F(LockOrderTest, MoreLocksThanAreRememberedDoNoHarm)
{
    const char locks[100] = {};
    for (const char &lock : locks)
        LockOrder::has(LockRank::List, &lock);
    EXPECT_EQ(LockOrder::held(), 64);
    for (const char &lock : locks)
        LockOrder::gives(&lock);
    EXPECT_EQ(LockOrder::held(), 0);
}

TEST_F(LockOrderTest, AMutexIsNoLargerForIt)
{
    EXPECT_EQ(sizeof(Mutex<LockRank::Forms>), sizeof(QMutex));
    EXPECT_EQ(sizeof(Mutex<LockRank::UpdateManager, QRecursiveMutex>), sizeof(QRecursiveMutex));
}

// ---- the locks themselves -------------------------------------------------------------------------------------------

TEST_F(RealLocksTest, AServerCallUnderTheLockOfAListIsNamed)
{
    ItemList list;
    list.Lock();
    {
        const QuireCOMMutex lock("QuireCOM::IsConnected");
    }
    list.Unlock();
    EXPECT_EQ(brokenOrders, QStringList{QStringLiteral("lock order broken: \"QuireCOM::IsConnected\" (server access) "
                                                       "taken under \"ItemList::Lock()\" (item list)")});
}

TEST_F(RealLocksTest, AListThatWasLockedByAnAttemptCountsAsWell)
{
    ItemList list;
    ASSERT_TRUE(list.tryLock());
    {
        const QuireCOMMutex lock(QStringLiteral("made up"));
    }
    list.Unlock();
    EXPECT_EQ(brokenOrders, QStringList{QStringLiteral("lock order broken: \"made up\" (server access) taken under "
                                                       "\"ItemList::tryLock()\" (item list)")});
}

TEST_F(RealLocksTest, AnAttemptMayBeMadeOutOfOrder)
{
    Mutex<LockRank::Workers> later;
    ItemList list;
    const MutexLocker guard(later);
    EXPECT_TRUE(list.tryLock());
    list.Unlock();
    EXPECT_EQ(brokenOrders, QStringList());
}

TEST_F(RealLocksTest, NestedLockObjectsTakeNothing)
{
    const QuireCOMMutex outer("outer");
    ItemList list;
    list.Lock();
    {
        const QuireCOMMutex inner("inner");
        EXPECT_EQ(list.Size(), 0);
        EXPECT_EQ(LockOrder::held(), 2);
    }
    list.Unlock();
    EXPECT_EQ(brokenOrders, QStringList());
    EXPECT_EQ(LockOrder::held(), 1);
}

TEST_F(RealLocksTest, AMutexTakenUnderALeafIsNamed)
{
    Mutex<LockRank::Forms> leaf;
    Mutex<LockRank::Searcher> late;
    const MutexLocker outer(leaf);
    const MutexLocker inner(late);
    EXPECT_EQ(brokenOrders, QStringList{QStringLiteral("lock order broken: searcher taken under forms")});
}

TEST_F(RealLocksTest, ARecursiveMutexMayBeTakenAgainUnderOthers)
{
    Mutex<LockRank::UpdateManager, QRecursiveMutex> manager;
    const MutexLocker outer(manager);
    const QuireCOMMutex lock("Queue::SetUpdate");
    const MutexLocker again(manager);
    EXPECT_EQ(brokenOrders, QStringList());
}

#if GTEST_HAS_DEATH_TEST
using LockOrderDeathTest = RealLocksTest;

TEST_F(LockOrderDeathTest, WithoutAHandlerTheProcessEndsWithTheMessage)
{
    LockOrder::setHandler(nullptr);
    ItemList list;
    list.Lock();
    EXPECT_DEATH(const QuireCOMMutex lock("Story::Save"),
                 "lock order broken: \"Story::Save\" .server access. taken under \"ItemList::Lock\\(\\)\"");
    list.Unlock();
}
#endif
