#include "tree/TreeFixture.h"

#include <quire/forms/FormCache.h>
#include <quire/platform/System.h>

using namespace Quire;
using FakeServer::Kind;

void TreeTest::SetUp()
{
    SessionTest::SetUp();
    connect();
    Queue::useThreading = false;
    m_debugging = std::make_unique<LockDebugging>();
    m_texts = Platform::liveBstrs();
    m_arrays = Platform::liveArrays();
}

void TreeTest::TearDown()
{
    m_debugging.reset();
    Queue::useThreading = true;
    Queue::sLoadIncrement = 200;
    Directory::sSkipFolderCount = false;
    SearchProbe::destroy();
    FormCache::Clear();
    SetErrorInfo(0, nullptr);
    EXPECT_EQ(Platform::liveBstrs(), m_texts);
    EXPECT_EQ(Platform::liveArrays(), m_arrays);
    SessionTest::TearDown();
}

IDispatchPtr TreeTest::object(const char *path)
{
    const IDispatchPtr handle = session->GetCachedDir(text(path));
    server.forgetCalls();
    return handle;
}

std::unique_ptr<Directory> TreeTest::open(const char *path)
{
    std::unique_ptr<Directory> directory(Directory::NewDirectory(text(path)));
    server.forgetCalls();
    return directory;
}

std::unique_ptr<Queue> TreeTest::openQueue(const char *path)
{
    std::unique_ptr<Queue> queue(dynamic_cast<Queue *>(Directory::NewDirectory(text(path))));
    server.forgetCalls();
    return queue;
}

FakeServer::StoryDataPtr TreeTest::addStory(const char *queue, const char *identifier, const char *name)
{
    auto story = std::make_shared<FakeServer::StoryData>(text(identifier));
    story->name = text(name);
    story->markup[127] = text("<story><head><x/></head></story>");
    server.queues[text(queue)].append({story});
    return story;
}

void TreeTest::startSearcher()
{
    Search::GetSearcher()->SetNotification(true);
}

QStringList TreeTest::callsWithLabels() const
{
    QStringList all;
    for (const FakeServer::Call &call : server.callsWithLocks())
        all.append(call.text + (call.lockedByCaller ? text(" under ") + call.label : text(" without the lock")));
    return all;
}

QStringList namesOf(ItemList &list)
{
    QStringList all;
    for (int index = 0; index < list.Size(); ++index)
        all.append(list.Nth(index)->name);
    return all;
}

QStringList attributesOf(ItemList &list, int index)
{
    QStringList all;
    const Item *const item = list.Nth(index);
    for (const Attribute &attribute : item->attributes)
        all.append(text("%1=%2/%3").arg(attribute.name, attribute.value).arg(attribute.flags));
    return all;
}

QStringList listLocks(const QStringList &lines)
{
    QStringList labels;
    for (const QString &line : lines) {
        if (line.contains(text(" locked (thread")) || line.contains(text(" trylocked (thread")))
            labels.append(line.section(QLatin1Char(' '), 0, 0));
    }
    return labels;
}
