#include "story/StoryFixture.h"

#include <quire/forms/FormCache.h>
#include <quire/platform/Bstr.h>
#include <quire/platform/System.h>
#include <quire/platform/Variant.h>
#include <quire/session/Dispatch2.h>

using namespace Quire;

void StoryFixture::SetUp()
{
    SessionTest::SetUp();
    connect();
    session->GetCachedDir(mail());
    server.forgetCalls();
    m_texts = Platform::liveBstrs();
    m_arrays = Platform::liveArrays();
}

void StoryFixture::TearDown()
{
    EXPECT_EQ(Platform::liveBstrs(), m_texts);
    EXPECT_EQ(Platform::liveArrays(), m_arrays);
    FormCache::Clear();
    SessionTest::TearDown();
}

FakeServer::StoryDataPtr StoryFixture::add(const char *identifier, const char *head)
{
    auto story = std::make_shared<FakeServer::StoryData>(text(identifier));
    if (head)
        story->markup[1] = text("<head>") + text(head) + text("</head>");
    server.queues[mail()].append({story});
    return story;
}

Story StoryFixture::open(const StoryID &id)
{
    Story story(mail(), &id);
    server.forgetCalls();
    return story;
}

Orvex::IStory2Ptr StoryFixture::fetch(int position)
{
    const Orvex::IQueue2Ptr queue = Dispatch2Queue(session->GetCachedDir(mail()));
    Platform::Variant item;
    queue->get_Item(Platform::Variant::ofInt(position).get(), item.out());
    server.forgetCalls();
    return Dispatch2Story(item.toDispatch());
}

QStringList StoryFixture::callsWithLabels() const
{
    QStringList all;
    for (const FakeServer::Call &call : server.callsWithLocks())
        all.append(call.text + (call.lockedByCaller ? text(" under ") + call.label : text(" without the lock")));
    return all;
}

QString StoryFixture::cached(qint32 part1)
{
    const StoryID id{part1, 0, 0};
    return identifierOf(Dispatch2Story(session->GetCachedStory(mail(), &id, true)));
}

QString identifierOf(const Orvex::IStory2Ptr &story)
{
    Platform::Bstr identifier;
    if (story)
        story->get_StoryUnique(identifier.out());
    return identifier.toString();
}
