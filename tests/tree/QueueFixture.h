#pragma once

#include <QStringList>

#include <gtest/gtest.h>

#include <atomic>
#include <memory>
#include <utility>

#include <quire/newsroom/Newsroom.h>
#include <quire/session/QuireCOM.h>
#include <quire/tree/Queue.h>

#include "support/DebugCapture.h"
#include "support/QtPrinting.h"
#include "support/Text.h"
#include "tree/Waiting.h"

namespace Quire {

/// A queue's workers, for tests.
struct QueueProbe
{
    static bool hasWorker(Queue &queue);
    static int hangingWorkers() { return Queue::HangingWorkers(); }
    static QMutex &gate(Queue &queue) { return queue.loadGate(); }
    /// To be kept longer than the queue.
    static std::shared_ptr<QMutex> sharedGate(Queue &queue) { return queue.m_loadGate; }
    static int chunkSize(const Queue &queue) { return queue.m_chunkSize; }
    static int limit(const Queue &queue) { return queue.m_loadLimit; }
};

/// The queues that the manager knows, for tests.
struct QueueUpdateMgrProbe
{
    static std::vector<qint32> watched();
    static std::vector<qint32> pending();
};

} // namespace Quire

using Quire::QueueProbe;
using Quire::QueueUpdateMgrProbe;

/// A signed-on session on a newsroom with the queues
///     Q.NONE  number 10  no stories
///     Q.SHORT       11   45 stories
///     Q.EVEN        12   40 stories
///     Q.LONG        13   1000 stories
///     Q.LIVE        14   45 stories, live
///     Q.LIVE2       15   250 stories, live
/// The k-th story of queue number n, from 0, is n*10000+k:1:1. Calls are recorded. After each test nothing that the
/// server handed out is left, nobody holds the access lock, and no queue is watched.
class QueueFixture : public ::testing::Test
{
protected:
    QueueFixture();
    void SetUp() override;
    void TearDown() override;

    /// The queue, whose load has begun when threading is on.
    std::unique_ptr<Quire::Queue> open(const char *path);
    /// The server's object for the path.
    IDispatchPtr object(const char *path);
    /// The queue with its load completed and collected.
    std::unique_ptr<Quire::Queue> load(const char *path);
    /// The queue with a load that waits behind its first chunk; until the end of the test, or until its gate is opened.
    template<typename QueueType = Quire::Queue>
    std::unique_ptr<QueueType> openPausing(const char *path)
    {
        server.faults().failNext(text("GetList"), Newsroom::Fault::hang(patience));
        auto queue = std::make_unique<QueueType>(object(path));
        EXPECT_TRUE(server.faults().waitForHang(patience));
        m_shutGate = QueueProbe::sharedGate(*queue);
        m_shutGate->lock();
        server.faults().clear();
        EXPECT_TRUE(comesTrue([&] { return queue->Size() == 20; }));
        return queue;
    }
    void openGate();

    /// The calls of these operations so far, which are then forgotten with all others.
    QStringList callsOf(const QStringList &operations);
    /// The calls of GetList so far; the others are forgotten as well.
    QStringList lists() { return callsOf({QStringLiteral("GetList")}); }

    /// That the list holds exactly the first stories of its queue, as many as that.
    static void expectFirst(Quire::Queue &queue, int count);
    /// Ends the hang of the queue's load, which then finds the object whole.
    void letLoad(Quire::Queue &queue);
    /// Waits until no call hangs, nobody has the access lock and no worker is left that was abandoned.
    bool nothingHangs();

    std::shared_ptr<Newsroom::Model> model;
    Newsroom::Server server;
    Newsroom::Registration registration;
    Quire::QuireCOM *session = nullptr;
    FrameworkLog log; ///< The lines of reports that are switched, which would only fill the screen.

private:
    std::shared_ptr<QMutex> m_shutGate;
    int m_liveAtFirst;
    qint64 m_textsAtFirst;
    qint64 m_arraysAtFirst;
};

/// Names the protected functions, and counts what the worker calls.
class CountingQueue : public Quire::Queue
{
public:
    using Queue::LoadListChunk;
    using Queue::Populate;
    using Queue::Queue;
    ~CountingQueue() override { cancelQueueLoad(true); }

    void Completed() override
    {
        Queue::Completed();
        ++completed;
    }
    std::atomic<int> completed{0};
};

/// The number of the k-th story in its queue, according to its identifier; -1 without one.
int placeOf(const Quire::Item &item);
