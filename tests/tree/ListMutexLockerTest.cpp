// The records that hold a list's mutex, and the lines that they write.

#include <QMutex>

#include <gmock/gmock.h>

#include <future>
#include <memory>
#include <vector>

#include <quire/platform/Automation.h>
#include <quire/tree/ItemList.h>
#include <quire/tree/ListMutexLocker.h>
#include <quire/tree/SearchList.h>

#include "support/DebugCapture.h"
#include "support/QtPrinting.h"
#include "support/Text.h"
#include "tree/Waiting.h"

using namespace Quire;
using ::testing::ElementsAre;

namespace {

QString line(const char *format, quint32 thread)
{
    return text(format).arg(int(thread));
}

/// A mutex such as a list has, with debugging on.
class ListMutexLockerTest : public ::testing::Test
{
protected:
    void SetUp() override { ListMutexLocker::sDebugListLocks = true; }
    void TearDown() override
    {
        ListMutexLocker::sDebugListLocks = false;
        EXPECT_TRUE(mutex.tryLock()); // whatever happened
        mutex.unlock();
    }

    bool isFree()
    {
        const bool got = mutex.tryLock();
        if (got)
            mutex.unlock();
        return got;
    }

    QMutex mutex;
    FrameworkLog log;
    const quint32 thread = static_cast<quint32>(GetCurrentThreadId());
};

} // namespace

// ---- records --------------------------------------------------------------------------------------------------------

TEST_F(ListMutexLockerTest, AcquiresAFreeMutexAndReleasesIt)
{
    {
        const ListMutexLocker locker("A", &mutex);
        EXPECT_TRUE(locker.IsLocked());
        EXPECT_TRUE(locker.Owns());
        EXPECT_FALSE(isFree());
    }
    EXPECT_TRUE(isFree());
}

TEST_F(ListMutexLockerTest, LockerOnSameThreadDoesNotAcquireTwice)
{
    const ListMutexLocker outer("outer", &mutex);
    {
        const ListMutexLocker inner("inner", &mutex);
        EXPECT_TRUE(inner.IsLocked());
        EXPECT_FALSE(inner.Owns());
    }
    EXPECT_FALSE(isFree()); // the inner one has released nothing
}

TEST_F(ListMutexLockerTest, LockersMayGoInAnyOrder)
{
    QMutex mutexes[3];
    std::vector<std::unique_ptr<ListMutexLocker>> lockers;
    for (QMutex &each : mutexes)
        lockers.push_back(std::make_unique<ListMutexLocker>("list", &each));
    for (const std::size_t gone : {std::size_t{1}, std::size_t{0}, std::size_t{2}}) {
        EXPECT_FALSE(ListMutexLocker("again", &mutexes[gone]).Owns());
        lockers[gone].reset();
        const ListMutexLocker anew("anew", &mutexes[gone]);
        EXPECT_TRUE(anew.Owns());
    }
}

TEST_F(ListMutexLockerTest, TryingOnSameThreadSucceedsWithoutAcquiring)
{
    const ListMutexLocker outer("outer", &mutex);
    const ListMutexLocker inner("inner", &mutex, true);
    EXPECT_TRUE(inner.IsLocked());
    EXPECT_FALSE(inner.Owns());
}

TEST_F(ListMutexLockerTest, TryingAFreeMutexAcquiresIt)
{
    {
        const ListMutexLocker locker("A", &mutex, true);
        EXPECT_TRUE(locker.IsLocked());
        EXPECT_TRUE(locker.Owns());
        EXPECT_FALSE(isFree());
    }
    EXPECT_TRUE(isFree());
}

TEST_F(ListMutexLockerTest, TryingFailsWhileAnotherThreadHoldsTheMutex)
{
    const ListMutexLocker holder("holder", &mutex);
    EXPECT_TRUE(onOtherThread([this] {
        const ListMutexLocker other("other", &mutex, true);
        return !other.IsLocked() && !other.Owns();
    }));
    EXPECT_FALSE(isFree());
}

TEST_F(ListMutexLockerTest, IsReentrantAgainAfterTryingAcquired)
{
    const ListMutexLocker outer("outer", &mutex, true);
    const ListMutexLocker inner("inner", &mutex);
    EXPECT_FALSE(inner.Owns());
}

TEST_F(ListMutexLockerTest, ANamedLockerWorksAsOneWithALiteral)
{
    const ListMutexLocker locker(QStringLiteral("made"), &mutex);
    EXPECT_TRUE(locker.Owns());
    EXPECT_THAT(log.texts(), ElementsAre(line("made locked (thread %1)", thread)));
}

TEST_F(ListMutexLockerTest, TwoMutexesAreIndependent)
{
    QMutex other;
    const ListMutexLocker first("first", &mutex);
    const ListMutexLocker second("second", &other);
    EXPECT_TRUE(second.Owns());
}

// ---- lines ----------------------------------------------------------------------------------------------------------

TEST(ListLockDebugging, IsOffAtFirstAndThenWritesNothing)
{
    EXPECT_FALSE(ListMutexLocker::sDebugListLocks);
    const FrameworkLog log;
    QMutex mutex;
    {
        const ListMutexLocker locker("A", &mutex);
    }
    {
        const ListMutexLocker locker("A", &mutex, true);
    }
    EXPECT_THAT(log.texts(), ElementsAre());
}

TEST_F(ListMutexLockerTest, WritesThatItLockedAndUnlocked)
{
    {
        const ListMutexLocker locker("A", &mutex);
        EXPECT_THAT(log.texts(), ElementsAre(line("A locked (thread %1)", thread)));
    }
    EXPECT_THAT(log.texts(), ElementsAre(line("A locked (thread %1)", thread), line("A unlocked (thread %1)", thread)));
}

TEST_F(ListMutexLockerTest, WritesThatTryingLocked)
{
    {
        const ListMutexLocker locker("A", &mutex, true);
    }
    EXPECT_THAT(log.texts(),
                ElementsAre(line("A trylocked (thread %1)", thread), line("A unlocked (thread %1)", thread)));
}

TEST_F(ListMutexLockerTest, WritesNothingOfLockersThatAcquireNothing)
{
    const ListMutexLocker outer("outer", &mutex);
    {
        const ListMutexLocker inner("inner", &mutex);
        const ListMutexLocker trying("trying", &mutex, true);
    }
    onOtherThread([this] {
        const ListMutexLocker failing("failing", &mutex, true);
        return 0;
    });
    EXPECT_THAT(log.texts(), ElementsAre(line("outer locked (thread %1)", thread)));
}

TEST_F(ListMutexLockerTest, WritesWhatItWaitsFor)
{
    std::atomic<quint32> other{0};
    std::future<void> waiter;
    {
        const ListMutexLocker holder("holder", &mutex);
        waiter = std::async(std::launch::async, [&] {
            other = static_cast<quint32>(GetCurrentThreadId());
            const ListMutexLocker waiting("waiter", &mutex);
        });
        ASSERT_TRUE(comesTrue([this] { return log.texts().size() == 2; }));
        EXPECT_EQ(log.texts().at(1),
                  text("waiter (thread %1) blocked on holder (thread %2)").arg(int(other)).arg(int(thread)));
    }
    waiter.get();
    const QStringList texts = log.texts();
    EXPECT_TRUE(texts.contains(line("waiter locked (thread %1)", other)));
    EXPECT_EQ(texts.size(), 5);
}

TEST_F(ListMutexLockerTest, LinesNameTheirSourceAndFunction)
{
    {
        const ListMutexLocker locker("A", &mutex);
        std::thread([this] { const ListMutexLocker trying("B", &mutex, true); }).join();
    }
    {
        const ListMutexLocker locker("A", &mutex, true);
    }
    QStringList functions;
    const QVector<LogMessage> messages = log.messages();
    for (const LogMessage &message : messages) {
        EXPECT_EQ(message.file, text("quireDir"));
        EXPECT_EQ(message.type, QtDebugMsg);
        functions.append(message.function);
    }
    EXPECT_EQ(functions, QStringList({text("ListMutexLocker::lock"), text("ListMutexLocker::unlock"),
                                      text("ListMutexLocker::trylock"), text("ListMutexLocker::unlock")}));
}

TEST_F(ListMutexLockerTest, TheLineOfWaitingNamesItsSourceAndFunction)
{
    std::future<void> waiter;
    {
        const ListMutexLocker holder("holder", &mutex);
        waiter = std::async(std::launch::async, [&] { const ListMutexLocker waiting("waiter", &mutex); });
        ASSERT_TRUE(comesTrue([this] { return log.texts().size() == 2; }));
        EXPECT_EQ(log.messages().at(1).file, text("quireDir"));
        EXPECT_EQ(log.messages().at(1).function, text("ListMutexLocker::lock"));
    }
    waiter.get();
}

TEST_F(ListMutexLockerTest, NamesOutsideAsciiAreWrittenWhole)
{
    {
        const ListMutexLocker locker(text("Größe – 数"), &mutex);
    }
    EXPECT_THAT(log.texts(), ElementsAre(line("Größe – 数 locked (thread %1)", thread),
                                         line("Größe – 数 unlocked (thread %1)", thread)));
}

TEST_F(ListMutexLockerTest, TheMutexIsFreeWhenItsReleaseIsWritten)
{
    bool freeAtUnlock = false;
    const ListMutexLocker *locker = new ListMutexLocker("A", &mutex);
    log.onMessage = [&] { freeAtUnlock = isFree(); };
    delete locker;
    EXPECT_TRUE(freeAtUnlock);
}

// ---- the mutex of a list --------------------------------------------------------------------------------------------

// It knows its holder by itself; the rest of this file is about mutexes that do not.

TEST_F(ListMutexLockerTest, AListIsReentrantOnItsThreadAlone)
{
    ItemList list;
    list.Lock();
    EXPECT_EQ(list.Size(), 0);
    EXPECT_TRUE(list.tryLock());
    list.Unlock(); // of tryLock, which acquired nothing
    EXPECT_FALSE(onOtherThread([&] { return list.tryLock(); }));
}

TEST_F(ListMutexLockerTest, AListIsFreeForOtherThreadsOnceUnlocked)
{
    ItemList list;
    list.Lock();
    list.Unlock();
    EXPECT_TRUE(onOtherThread([&] {
        const bool got = list.tryLock();
        list.Unlock();
        return got;
    }));
    EXPECT_EQ(list.Size(), 0);
}

TEST_F(ListMutexLockerTest, TwoListsAreIndependent)
{
    ItemList first;
    ItemList second;
    first.Lock();
    EXPECT_TRUE(onOtherThread([&] {
        const bool got = second.tryLock();
        second.Unlock();
        return got;
    }));
    first.Unlock();
}

TEST_F(ListMutexLockerTest, WritesWhichOperationOfAListItWaitsFor)
{
    ItemList list;
    std::atomic<quint32> other{0};
    list.Lock();
    std::future<int> waiter = std::async(std::launch::async, [&] {
        other = static_cast<quint32>(GetCurrentThreadId());
        return list.Size();
    });
    ASSERT_TRUE(comesTrue([this] { return log.texts().size() == 2; }));
    EXPECT_EQ(
        log.texts().at(1),
        text("ItemList::Size() (thread %1) blocked on ItemList::Lock() (thread %2)").arg(int(other)).arg(int(thread)));
    list.Unlock();
    EXPECT_EQ(waiter.get(), 0);
}

TEST_F(ListMutexLockerTest, WritesNothingOfWaitingForAListThatNobodyHolds)
{
    ItemList list;
    list.Size();
    EXPECT_THAT(log.texts(), ElementsAre(line("ItemList::Size() locked (thread %1)", thread),
                                         line("ItemList::Size() unlocked (thread %1)", thread)));
}

TEST_F(ListMutexLockerTest, WhoLooksWhenDebuggingIsTurnedOnStillFindsTheHolder)
{
    ListMutexLocker::sDebugListLocks = false;
    ItemList list;
    list.Lock();
    ListMutexLocker::sDebugListLocks = true;
    std::future<int> waiter = std::async(std::launch::async, [&] { return list.Size(); });
    EXPECT_TRUE(comesTrue([this] { return log.texts().join(QChar()).contains(text("blocked on ItemList::Lock()")); }));
    list.Unlock();
    waiter.get();
}

// ---- labels ---------------------------------------------------------------------------------------------------------

namespace {

/// The names under which a list's operation takes the lock.
class ListLabelsTest : public ::testing::Test
{
protected:
    void SetUp() override { ListMutexLocker::sDebugListLocks = true; }
    void TearDown() override { ListMutexLocker::sDebugListLocks = false; }

    template<typename Operation>
    QStringList labelsOf(const Operation &operation)
    {
        const FrameworkLog log;
        operation();
        QStringList labels;
        const QStringList lines = log.texts();
        for (const QString &logged : lines) {
            if (logged.contains(text("locked (")) && !logged.contains(text("unlocked")))
                labels.append(logged.section(QLatin1Char(' '), 0, 0));
        }
        return labels;
    }

    ItemList list;
};

} // namespace

TEST_F(ListLabelsTest, AreThoseOfTheOperations)
{
    EXPECT_EQ(labelsOf([&] { list.Size(); }), QStringList(text("ItemList::Size()")));
    EXPECT_EQ(labelsOf([&] { list.Append(Item(QString(), Item_Queue)); }), QStringList(text("ItemList::Append()")));
    EXPECT_EQ(labelsOf([&] { list.Find(QString()); }), QStringList(text("ItemList::Find()")));
    EXPECT_EQ(labelsOf([&] { list.Nth(0); }), QStringList(text("ItemList::Nth()")));
    EXPECT_EQ(labelsOf([&] { list.FindByAttribute(QString(), QString()); }),
              QStringList(text("ItemList::FindByAttribute()")));
    EXPECT_EQ(labelsOf([&] { list.SortUnique(); }), QStringList(text("ItemList::SortUnique()")));
    EXPECT_EQ(labelsOf([&] { list.Clear(); }), QStringList(text("ItemList::Clear()")));
    EXPECT_EQ(labelsOf([&] { list.HasChanged(true); }), QStringList(text("ItemList::HasChanged()")));
    EXPECT_EQ(labelsOf([&] { list.SetChanged(); }), QStringList(text("ItemList::SetChanged()")));
}

TEST_F(ListLabelsTest, OfTheHostsLockAreLockAndTryLock)
{
    EXPECT_EQ(labelsOf([&] {
                  list.Lock();
                  list.Size(); // under the host's lock
                  list.Unlock();
              }),
              QStringList(text("ItemList::Lock()")));
    EXPECT_EQ(labelsOf([&] {
                  list.tryLock();
                  list.Unlock();
              }),
              QStringList(text("ItemList::tryLock()")));
}

TEST_F(ListLabelsTest, AreNoneForWhatTakesNoLock)
{
    EXPECT_EQ(labelsOf([&] {
                  list.SetID(1);
                  list.ID();
                  list.SetName(QString());
                  list.Name();
                  list.u_Size();
                  list.u_Nth(0);
                  list.Unlock();
              }),
              QStringList());
}
