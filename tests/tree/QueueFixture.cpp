#include "tree/QueueFixture.h"

#include <gmock/gmock.h>

#include <quire/forms/FormCache.h>
#include <quire/session/QuireCOMMutex.h>
#include <quire/session/StoryID.h>
#include <quire/tree/QueueUpdateMgr.h>

using namespace Quire;

namespace {

QString queueText(const char *name, int number, int stories, const char *flags)
{
    QString described = text("  queue %1 number=%2 form=STORY %3\n").arg(text(name)).arg(number).arg(text(flags));
    for (int index = 0; index < stories; ++index) {
        described += text("    story id=%1:1:1\n      title: Story %2\n").arg(number * 10000 + index).arg(index);
    }
    return described;
}

QString newsroomText()
{
    return text("server HUB\nuser ann password=secret\nform STORY\n"
                "  <zeko:form><zeko:row><zeko:cell idref=title length=80>Title</zeko:cell>"
                "<zeko:cell idref=Writer length=20>By</zeko:cell></zeko:row></zeko:form>\n"
                "directory Q\n") +
           queueText("NONE", 10, 0, "") + queueText("SHORT", 11, 45, "") + queueText("EVEN", 12, 40, "") +
           queueText("LONG", 13, 1000, "") + queueText("LIVE", 14, 45, "live") + queueText("LIVE2", 15, 250, "live");
}

} // namespace

namespace Quire {

bool QueueProbe::hasWorker(Queue &queue)
{
    const MutexLocker guard(queue.m_workerMutex);
    return queue.m_loadThread != nullptr;
}

std::vector<qint32> QueueUpdateMgrProbe::watched()
{
    const MutexLocker guard(QueueUpdateMgr::sManager.m_stateMutex);
    return QueueUpdateMgr::sManager.m_watchedQueues;
}

std::vector<qint32> QueueUpdateMgrProbe::pending()
{
    const MutexLocker guard(QueueUpdateMgr::sManager.m_stateMutex);
    return QueueUpdateMgr::sManager.m_pendingQueues;
}

} // namespace Quire

QueueFixture::QueueFixture()
    : model(Newsroom::Model::fromText(newsroomText()))
    , server(model)
    , registration(server.registerClass())
    , m_liveAtFirst(server.census()->live())
    , m_textsAtFirst(Newsroom::Census::liveTexts())
    , m_arraysAtFirst(Newsroom::Census::liveArrays())
{}

void QueueFixture::SetUp()
{
    ASSERT_NE(model, nullptr);
    session = QuireCOM::GetQuireCOM(true);
    ASSERT_EQ(session->Connect(text("HUB"), text("ann"), text("secret"), 0), 0);
    server.calls().start();
}

void QueueFixture::TearDown()
{
    openGate();
    server.faults().clear();
    EXPECT_TRUE(server.waitForEvents());
    FormCache::Clear();
    SetErrorInfo(0, nullptr);
    EXPECT_TRUE(nothingHangs()) << server.census()->text().toStdString();
    QuireCOM::UnloadCOM();
    EXPECT_TRUE(comesTrue([this] { return server.census()->live() == m_liveAtFirst; }))
        << server.census()->text().toStdString();
    EXPECT_TRUE(comesTrue([this] { return Newsroom::Census::liveTexts() == m_textsAtFirst; }));
    EXPECT_TRUE(comesTrue([this] { return Newsroom::Census::liveArrays() == m_arraysAtFirst; }));
    EXPECT_EQ(QuireCOM::m_LockThreadID, 0u);
    EXPECT_THAT(QueueUpdateMgrProbe::watched(), ::testing::IsEmpty());
    EXPECT_THAT(QueueUpdateMgrProbe::pending(), ::testing::IsEmpty());
    Queue::useThreading = true;
    Queue::sLoadIncrement = 200;
}

void QueueFixture::openGate()
{
    if (const std::shared_ptr<QMutex> gate = std::exchange(m_shutGate, nullptr))
        gate->unlock();
}

void QueueFixture::letLoad(Queue &queue)
{
    QueueProbe::gate(queue).lock();
    QueueProbe::gate(queue).unlock();
    server.faults().clear();
}

bool QueueFixture::nothingHangs()
{
    return comesTrue([this] { return server.faults().hanging() == 0; }) && comesTrue([] {
               const QuireCOMMutex lock("Test::nothingHangs");
               return true;
           }) &&
           comesTrue([] { return QueueProbe::hangingWorkers() == 0; });
}

IDispatchPtr QueueFixture::object(const char *path)
{
    return session->GetCachedDir(text(path));
}

std::unique_ptr<Queue> QueueFixture::open(const char *path)
{
    return std::make_unique<Queue>(object(path));
}

std::unique_ptr<Queue> QueueFixture::load(const char *path)
{
    std::unique_ptr<Queue> queue = open(path);
    EXPECT_TRUE(comesTrue([&] { return queue->IsComplete(); }));
    EXPECT_TRUE(comesTrue([&] { return queue->IsFinished(); }));
    return queue;
}

QStringList QueueFixture::callsOf(const QStringList &operations)
{
    QStringList chosen;
    for (const Newsroom::Call &call : server.calls().take()) {
        if (operations.contains(call.operation))
            chosen.append(call.text());
    }
    return chosen;
}

int placeOf(const Item &item)
{
    Attribute id;
    if (!item.FindAttr(QLatin1String(Attr_Storyid), id))
        return -1;
    StoryID parts{};
    String2StoryID(id.value, &parts, 10);
    return parts.part1 % 10000;
}

void QueueFixture::expectFirst(Queue &queue, int count)
{
    queue.Lock();
    EXPECT_EQ(queue.u_Size(), count);
    for (int index = 0; index < queue.u_Size(); ++index) {
        EXPECT_EQ(queue.u_Nth(index)->type, Item_Story);
        EXPECT_EQ(placeOf(*queue.u_Nth(index)), index);
    }
    queue.Unlock();
}
