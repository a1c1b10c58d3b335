#include "Colleague.h"

#include <chrono>
#include <utility>

namespace Tool {

namespace {

constexpr std::chrono::milliseconds pause(400);
constexpr std::chrono::milliseconds waitStep(10);

} // namespace

Colleague::Colleague(std::shared_ptr<Newsroom::Model> model, const QStringList &queuePaths)
    : m_model(std::move(model))
    , m_paths(queuePaths)
    , m_thread([this] { work(); })
{}

Colleague::~Colleague()
{
    m_leaving = true;
    m_thread.join();
}

void Colleague::work()
{
    const Newsroom::User user = m_model->users().value(0);
    const Newsroom::Answer<Newsroom::SessionId> session = m_model->signOn(user.name, user.password, QString());
    if (!session)
        return;
    for (int turn = 0; !m_leaving; ++turn) {
        for (auto waited = waitStep; waited < pause && !m_leaving; waited += waitStep)
            std::this_thread::sleep_for(waitStep);
        switch (turn % 3) {
        case 0:
            makeStory(session.value, turn);
            break;
        case 1:
            editStory(session.value);
            break;
        default:
            deleteStory(session.value);
        }
    }
    m_model->signOff(session.value);
}

void Colleague::makeStory(Newsroom::SessionId session, int turn)
{
    const Newsroom::Answer<Newsroom::Entry> queue = m_model->entry(m_paths.value(turn / 3 % m_paths.size()));
    const Newsroom::Answer<Newsroom::StoryPointer> story = m_model->createStory(session, queue.value.number(), 0);
    m_own = story ? story.value->id().part1 : 0;
}

void Colleague::editStory(Newsroom::SessionId session)
{
    Newsroom::Answer<Newsroom::StoryDraft> draft = m_model->edit(session, m_own);
    if (!draft)
        return;
    draft.value.putField(QStringLiteral("title"), QStringLiteral("Just in"));
    m_model->save(session, draft.value);
}

void Colleague::deleteStory(Newsroom::SessionId session)
{
    m_model->deleteStory(session, m_own);
}

} // namespace Tool
