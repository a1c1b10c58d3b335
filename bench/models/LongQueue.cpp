#include "LongQueue.h"

#include <cstdio>
#include <cstdlib>

#include <quire/Quire.h>

using namespace Quire;

namespace {

QString newsroomText()
{
    QString described = QStringLiteral("user ann password=a\nform STORY\n  <zeko:form><zeko:row>");
    for (int field = 0; field < 10; ++field)
        described += QStringLiteral("<zeko:cell idref=field-%1 length=40>Field</zeko:cell>").arg(field);
    return described + QStringLiteral("</zeko:row></zeko:form>\ndirectory Q\n  queue LONG number=1 form=STORY\n");
}

Newsroom::Model::NewStory makeStory(int number)
{
    Newsroom::Model::NewStory story;
    story.queueNumber = 1;
    story.id = {number + 1, 1, 0};
    story.text.setMeta(QStringLiteral("words"), QStringLiteral("112"));
    story.text.setMeta(QStringLiteral("rate"), QStringLiteral("180"));
    story.text.setField(QStringLiteral("title"), QStringLiteral("Story number %1").arg(number));
    story.text.setField(QStringLiteral("audio-time"), QStringLiteral("90"));
    for (int field = 0; field < 10; ++field)
        story.text.setField(QStringLiteral("field-%1").arg(field), QStringLiteral("Value of field %1").arg(field));
    return story;
}

} // namespace

LongQueue::LongQueue()
    : m_newsroom(Newsroom::Model::fromText(newsroomText()))
    , m_server(m_newsroom)
    , m_registration(m_server.registerClass())
{
    for (int number = 0; number < stories; ++number)
        m_newsroom->addStory(makeStory(number));
    Queue::setLoadIncrement(2 * stories);
    if (QuireCOM::GetQuireCOM(true)->Connect(QString(), QStringLiteral("ann"), QStringLiteral("a"), 0) < 0) {
        std::fprintf(stderr, "bench_models: cannot sign on\n");
        std::exit(2);
    }
}

LongQueue::~LongQueue()
{
    ServerModel::waitForServer(60000);
    QuireCOM::UnloadCOM();
}

std::unique_ptr<QueueModel> LongQueue::load()
{
    auto model = std::make_unique<QueueModel>();
    model->open(path());
    waitFor([&] { return !model->isLoading(); });
    return model;
}

std::unique_ptr<Queue> LongQueue::loadList()
{
    std::unique_ptr<Queue> queue(dynamic_cast<Queue *>(Directory::NewDirectory(path())));
    while (queue && !queue->IsComplete())
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
    return queue;
}

void LongQueue::change(int story)
{
    const Newsroom::Answer<Newsroom::SessionId> editor =
        m_newsroom->signOn(QStringLiteral("ann"), QStringLiteral("a"), QString());
    Newsroom::StoryDraft draft = m_newsroom->edit(editor.value, story + 1).value;
    draft.putField(QStringLiteral("title"), QStringLiteral("Changed"));
    m_newsroom->save(editor.value, draft);
    m_newsroom->signOff(editor.value);
}
