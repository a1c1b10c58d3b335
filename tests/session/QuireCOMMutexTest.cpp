#include <quire/session/QuireCOMMutex.h>

#include <QRegularExpression>
#include <QThread>

#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <future>
#include <iterator>
#include <memory>
#include <stdexcept>
#include <thread>

#include <quire/session/QuireCOM.h>

#include "support/DebugCapture.h"
#include "support/QtPrinting.h"

namespace Quire {

/// Reaches the workers of a lock object.
struct QuireCOMMutexProbe
{
    static bool tryLock(QuireCOMMutex &lock) { return lock.tryLock(); }
    static bool locked(QuireCOMMutex &lock) { return lock.locked(); }
    static bool threadlocked(QuireCOMMutex &lock) { return lock.threadlocked(); }
    static bool owns(const QuireCOMMutex &lock) { return lock.m_owns; }
    static QString name(const QuireCOMMutex &lock) { return lock.name(); }
    static const char *label(const QuireCOMMutex &lock) { return lock.m_label; }
};

} // namespace Quire

using Quire::QuireCOM;
using Quire::QuireCOMMutex;
using Probe = Quire::QuireCOMMutexProbe;

namespace {

bool mutexIsFree()
{
    if (!QuireCOM::m_ComMutex.tryLock())
        return false;
    QuireCOM::m_ComMutex.unlock();
    return true;
}

template<typename Condition>
bool becomesTrue(Condition condition)
{
    for (int i = 0; i < 5000 && !condition(); ++i)
        QThread::msleep(1);
    return condition();
}

/// Lets a thread called \a waiter wait for \a holder; the mutex is free again afterwards.
void waitOnce(const QString &holder, const QString &waiter)
{
    std::atomic<bool> starting{false};
    std::thread thread;
    {
        const QuireCOMMutex lock(holder);
        thread = std::thread([&] {
            starting = true;
            const QuireCOMMutex waiting(waiter);
        });
        becomesTrue([&] { return starting.load(); });
        QThread::msleep(50);
    }
    thread.join();
}

/// The line about a wait under \a name. The holder may have one, too: an acquisition without a wait is allowed its line
/// when it crosses the border of a millisecond. A waiter that the system starts late finds the mutex free, and tries
/// again.
QStringList linesOfAWait(const QString &waiter, const DebuggerOutput &output)
{
    QStringList own;
    for (int i = 0; i < 20 && own.isEmpty(); ++i) {
        waitOnce(QStringLiteral("the holder"), waiter);
        const QStringList lines = output.lines();
        std::copy_if(lines.begin(), lines.end(), std::back_inserter(own),
                     [&](const QString &line) { return line.startsWith(QLatin1String("locked(") + waiter.left(200)); });
    }
    return own;
}

} // namespace

// ---- holding --------------------------------------------------------------------------------------------------------

TEST(QuireCOMMutex, IsFreeToBeginWith)
{
    EXPECT_TRUE(mutexIsFree());
    EXPECT_EQ(QuireCOM::m_LockThreadID, 0u);
}

TEST(QuireCOMMutex, HoldsTheMutexAndRecordsTheThread)
{
    const QuireCOMMutex lock("holder");
    EXPECT_FALSE(mutexIsFree());
    EXPECT_EQ(QuireCOM::m_LockThreadID, GetCurrentThreadId());
    EXPECT_TRUE(Probe::owns(lock));
}

TEST(QuireCOMMutex, ReleasesTheMutexAndForgetsTheThread)
{
    {
        const QuireCOMMutex lock("holder");
    }
    EXPECT_TRUE(mutexIsFree());
    EXPECT_EQ(QuireCOM::m_LockThreadID, 0u);
}

TEST(QuireCOMMutex, TheHoldersIdentifierIsCopiedAsNumbersAre)
{
    const QuireCOMMutex lock("holder");
    auto holder = QuireCOM::m_LockThreadID;
    EXPECT_EQ(holder, GetCurrentThreadId());
    const auto isThisThread = [](auto id) { return id == GetCurrentThreadId(); };
    EXPECT_TRUE(isThisThread(QuireCOM::m_LockThreadID));
}

TEST(QuireCOMMutex, LockerOnSameThreadDoesNotAcquireTwice)
{
    const QuireCOMMutex outer("outer");
    const QuireCOMMutex inner("inner");
    EXPECT_TRUE(Probe::owns(outer));
    EXPECT_FALSE(Probe::owns(inner));
}

TEST(QuireCOMMutex, DestroyingTheInnerLockerLeavesTheMutexHeld)
{
    const QuireCOMMutex outer("outer");
    {
        const QuireCOMMutex inner("inner");
    }
    EXPECT_FALSE(mutexIsFree());
    EXPECT_EQ(QuireCOM::m_LockThreadID, GetCurrentThreadId());
}

TEST(QuireCOMMutex, DestroyingTheOuterLockerFreesTheMutex)
{
    {
        const QuireCOMMutex outer("outer");
        const QuireCOMMutex inner("inner");
    }
    EXPECT_TRUE(mutexIsFree());
    EXPECT_EQ(QuireCOM::m_LockThreadID, 0u);
}

TEST(QuireCOMMutex, LockersMadeAfterTheOuterOneIsGoneAcquireAgain)
{
    {
        const QuireCOMMutex first("first");
    }
    const QuireCOMMutex second("second");
    EXPECT_TRUE(Probe::owns(second));
}

TEST(QuireCOMMutex, ReleasesTheMutexWhenAnExceptionPasses)
{
    try {
        const QuireCOMMutex lock("raising");
        throw std::runtime_error("server");
    } catch (const std::runtime_error &) {
    }
    EXPECT_TRUE(mutexIsFree());
    EXPECT_EQ(QuireCOM::m_LockThreadID, 0u);
}

TEST(QuireCOMMutex, ASecondThreadWaitsForTheOutermostLockerOfTheFirst)
{
    auto outer = std::make_unique<QuireCOMMutex>("outer");
    auto inner = std::make_unique<QuireCOMMutex>("inner");
    std::atomic<bool> acquired{false};
    std::thread thread([&] {
        const QuireCOMMutex lock("second thread");
        acquired = true;
    });
    QThread::msleep(20);
    EXPECT_FALSE(acquired);
    inner.reset();
    QThread::msleep(20);
    EXPECT_FALSE(acquired);
    outer.reset();
    EXPECT_TRUE(becomesTrue([&] { return acquired.load(); }));
    thread.join();
    EXPECT_TRUE(mutexIsFree());
}

TEST(QuireCOMMutex, OneThreadAtATimeHoldsIt)
{
    int count = 0; // guarded by the lock alone
    std::thread threads[4];
    for (std::thread &thread : threads) {
        thread = std::thread([&count] {
            for (int i = 0; i < 5000; ++i) {
                const QuireCOMMutex lock("counting");
                const QuireCOMMutex nested("nested");
                ++count;
            }
        });
    }
    for (std::thread &thread : threads)
        thread.join();
    EXPECT_EQ(count, 20000);
}

// ---- the workers ----------------------------------------------------------------------------------------------------

namespace {

/// A lock object that does not own the mutex, on a thread that does not hold it.
std::unique_ptr<QuireCOMMutex> idleLocker()
{
    const QuireCOMMutex outer;
    return std::make_unique<QuireCOMMutex>();
}

/// Another thread that holds the lock while this object lives.
class OtherHolder
{
public:
    OtherHolder()
        : m_thread([this] {
            const QuireCOMMutex lock("other holder");
            m_holding = true;
            becomesTrue([this] { return m_done.load(); });
        })
    {
        becomesTrue([this] { return m_holding.load(); });
    }
    ~OtherHolder()
    {
        m_done = true;
        m_thread.join();
    }

private:
    Q_DISABLE_COPY(OtherHolder)
    std::atomic<bool> m_holding{false};
    std::atomic<bool> m_done{false};
    std::thread m_thread;
};

} // namespace

TEST(QuireCOMMutex, LockedIsFalseWhileTheMutexIsFreeAndLeavesItFree)
{
    const auto locker = idleLocker();
    EXPECT_FALSE(Probe::locked(*locker));
    EXPECT_TRUE(mutexIsFree());
    EXPECT_EQ(QuireCOM::m_LockThreadID, 0u);
}

TEST(QuireCOMMutex, LockedIsTrueWhileAnotherThreadHoldsTheMutexAndLeavesItHeld)
{
    const auto locker = idleLocker();
    const OtherHolder holder;
    EXPECT_TRUE(Probe::locked(*locker));
    EXPECT_FALSE(mutexIsFree());
    EXPECT_NE(QuireCOM::m_LockThreadID, 0u);
}

TEST(QuireCOMMutex, LockedIsTrueWhileThisThreadHoldsTheMutex)
{
    QuireCOMMutex locker("holder");
    EXPECT_TRUE(Probe::locked(locker));
}

TEST(QuireCOMMutex, TryLockNeitherRecordsTheThreadNorOwns)
{
    const auto locker = idleLocker();
    EXPECT_TRUE(Probe::tryLock(*locker));
    EXPECT_FALSE(mutexIsFree());
    EXPECT_EQ(QuireCOM::m_LockThreadID, 0u);
    EXPECT_FALSE(Probe::owns(*locker));
    QuireCOM::m_ComMutex.unlock();
}

TEST(QuireCOMMutex, TryLockFailsAtOnceWhileAnotherThreadHoldsTheMutex)
{
    const auto locker = idleLocker();
    const OtherHolder holder;
    EXPECT_FALSE(Probe::tryLock(*locker));
}

TEST(QuireCOMMutex, ThreadLockedIsTrueOnTheHoldingThreadOnly)
{
    const auto locker = idleLocker();
    EXPECT_FALSE(Probe::threadlocked(*locker));
    {
        const OtherHolder holder;
        EXPECT_FALSE(Probe::threadlocked(*locker));
    }
    const QuireCOMMutex lock("here");
    EXPECT_TRUE(Probe::threadlocked(*locker));
}

// ---- names ----------------------------------------------------------------------------------------------------------

TEST(QuireCOMMutex, KeepsALiteralByAddress)
{
    static const char label[] = "Class::Method";
    const QuireCOMMutex lock(label);
    EXPECT_EQ(static_cast<const void *>(Probe::label(lock)), static_cast<const void *>(label));
    EXPECT_EQ(Probe::name(lock), QStringLiteral("Class::Method"));
}

TEST(QuireCOMMutex, TakesALiteralForTheTextThatItIsAsAString)
{
    static const char label[] = "Class::\xc3\x9c"; // U with two dots in UTF-8
    const QuireCOMMutex lock(label);
    EXPECT_EQ(Probe::name(lock), QString::fromUtf8(label));
}

TEST(QuireCOMMutex, CopiesANameGivenInABuffer)
{
    char buffer[] = "Class::Method";
    const QuireCOMMutex lock(buffer);
    buffer[0] = 'X';
    EXPECT_EQ(Probe::name(lock), QStringLiteral("Class::Method"));
}

TEST(QuireCOMMutex, KeepsANameGivenAsAString)
{
    const QuireCOMMutex lock(QStringLiteral("Class::Method:%1").arg(7));
    EXPECT_EQ(Probe::name(lock), QStringLiteral("Class::Method:7"));
}

TEST(QuireCOMMutex, HasAnEmptyNameByDefault)
{
    const QuireCOMMutex lock;
    EXPECT_EQ(Probe::name(lock), QString());
}

// ---- debugging off --------------------------------------------------------------------------------------------------

TEST(QuireCOMMutex, DebuggingIsOffToBeginWith)
{
    EXPECT_FALSE(QuireCOMMutex::sMutexDebugging);
}

TEST(QuireCOMMutex, WritesNothingAndKeepsNoNameWithDebuggingOff)
{
    const FrameworkLog log;
    const DebuggerOutput output;
    waitOnce(QStringLiteral("holder"), QStringLiteral("waiter"));
    EXPECT_EQ(output.lines(), QStringList());
    EXPECT_EQ(log.texts(), QStringList());
    EXPECT_EQ(QuireCOM::m_LockStr, QString());
}

// ---- debugging on ---------------------------------------------------------------------------------------------------

TEST(QuireCOMMutex, WritesNoLineWithoutAWait)
{
    const LockDebugging debugging;
    bool silent = false; // an acquisition that crosses the border of a millisecond is allowed its line
    for (int i = 0; i < 20 && !silent; ++i) {
        const int before = debugging.output.lines().size();
        {
            const QuireCOMMutex lock("nobody waits");
        }
        silent = debugging.output.lines().size() == before;
    }
    EXPECT_TRUE(silent);
}

TEST(QuireCOMMutex, KeepsTheNameOfTheLastHolderWithoutAWait)
{
    const LockDebugging debugging;
    {
        const QuireCOMMutex first("first holder");
        EXPECT_EQ(QuireCOM::m_LockStr, QStringLiteral("first holder"));
    }
    EXPECT_EQ(QuireCOM::m_LockStr, QStringLiteral("first holder"));
    const QuireCOMMutex second(QStringLiteral("second holder"));
    EXPECT_EQ(QuireCOM::m_LockStr, QStringLiteral("second holder"));
}

TEST(QuireCOMMutex, ANestedLockerDoesNotChangeTheNameOfTheLastHolder)
{
    const LockDebugging debugging;
    const QuireCOMMutex outer("outer");
    const QuireCOMMutex inner("inner");
    EXPECT_EQ(QuireCOM::m_LockStr, QStringLiteral("outer"));
}

TEST(QuireCOMMutex, WritesWhoWaitedHowLongAndForWhom)
{
    const LockDebugging debugging;
    const QStringList lines = linesOfAWait(QStringLiteral("the waiter"), debugging.output);
    ASSERT_EQ(lines.size(), 1);
    const QRegularExpression form(QStringLiteral("\\Alocked\\(the waiter\\) [1-9][0-9]* ms \\[the holder\\]\n\\z"));
    EXPECT_TRUE(form.match(lines.first()).hasMatch()) << lines.first().toStdString();
    EXPECT_EQ(QuireCOM::m_LockStr, QStringLiteral("the waiter"));
}

TEST(QuireCOMMutex, CutsALineThatIsLongerThanItsBuffer)
{
    const LockDebugging debugging;
    const QString longName(1000, QLatin1Char('x'));
    const QStringList lines = linesOfAWait(longName, debugging.output);
    ASSERT_EQ(lines.size(), 1);
    EXPECT_EQ(lines.first(), QLatin1String("locked(") + QString(248, QLatin1Char('x')));
}

TEST(QuireCOMMutex, WritesTheReleaseToTheFrameworksDebugLog)
{
    const LockDebugging debugging;
    {
        const QuireCOMMutex lock("Class::Method");
    }
    const QVector<LogMessage> messages = debugging.log.messages();
    ASSERT_EQ(messages.size(), 1);
    EXPECT_EQ(messages.first().text, QStringLiteral("Class::Method unlocked"));
    EXPECT_EQ(messages.first().type, QtDebugMsg);
    EXPECT_EQ(messages.first().file, QStringLiteral("quireCom"));
}

TEST(QuireCOMMutex, WritesTheReleaseAfterTheMutexIsFree)
{
    LockDebugging debugging;
    bool free = false;
    debugging.log.onMessage = [&free] { free = mutexIsFree() && QuireCOM::m_LockThreadID == 0; };
    {
        const QuireCOMMutex lock("Class::Method");
    }
    EXPECT_TRUE(free);
}

TEST(QuireCOMMutex, WritesOneReleaseForNestedLockers)
{
    const LockDebugging debugging;
    {
        const QuireCOMMutex outer("outer");
        const QuireCOMMutex inner("inner");
    }
    EXPECT_EQ(debugging.log.texts(), QStringList{QStringLiteral("outer unlocked")});
}

TEST(QuireCOMMutex, WritesNoReleaseOfAnUnnamedLocker)
{
    const LockDebugging debugging;
    {
        const QuireCOMMutex lock;
    }
    {
        const QuireCOMMutex lock{QString()};
    }
    EXPECT_EQ(debugging.log.texts(), QStringList());
    EXPECT_EQ(QuireCOM::m_LockStr, QString());
}

TEST(QuireCOMMutex, GoesOnUnderAnotherLabel)
{
    const LockDebugging debugging;
    {
        QuireCOMMutex lock("first step");
        lock.goOn("second step");
        EXPECT_EQ(QuireCOM::m_LockStr, QStringLiteral("second step"));
        QuireCOMMutex nested("nested");
        nested.goOn("still nested");
        EXPECT_EQ(QuireCOM::m_LockStr, QStringLiteral("second step"));
    }
    EXPECT_EQ(debugging.log.texts(), QStringList{QStringLiteral("second step unlocked")});
}

TEST(QuireCOMMutex, KeepsTheServerWhenItGoesOn)
{
    QuireCOMMutex lock("first step");
    lock.goOn("second step");
    EXPECT_FALSE(std::async(std::launch::async, [] {
                     const bool got = QuireCOM::m_ComMutex.tryLock();
                     if (got)
                         QuireCOM::m_ComMutex.unlock();
                     return got;
                 }).get());
}

TEST(QuireCOMMutex, WritesNamesInLatin1)
{
    const LockDebugging debugging;
    {
        const QuireCOMMutex lock(QString(QChar(0x3042)) + QStringLiteral(" name"));
    }
    EXPECT_EQ(debugging.log.texts(), QStringList{QStringLiteral("? name unlocked")});
}
