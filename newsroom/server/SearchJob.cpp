#include <quire/newsroom/server/SearchJob.h>

#include <algorithm>

#include <quire/newsroom/server/Connections.h>
#include <quire/newsroom/server/RecordInfo.h>
#include <quire/newsroom/server/Session.h>
#include <quire/platform/Bstr.h>

namespace Newsroom {

namespace {

/// Stories that one step looks at, so that a search through many does not hold up the notices behind it.
constexpr int StoriesPerStep = 256;

Platform::SafeArray fieldArray(const std::shared_ptr<ServerCore> &core, const QVector<StoryField> &fields)
{
    if (fields.isEmpty())
        return Platform::SafeArray();
    auto array = RecordInfo::makeArray(core, RecordInfo::fieldValue(), static_cast<ULONG>(fields.size()));
    const Platform::SafeArrayAccess access(array.get());
    auto *record = access.as<Orvex::FieldValue>();
    for (const StoryField &field : fields) {
        record->name = core->toText(field.id);
        record->value = core->toText(field.value);
        ++record;
    }
    return array;
}

Platform::SafeArray hitArray(const std::shared_ptr<ServerCore> &core, const QVector<StoryPointer> &hits)
{
    auto array = RecordInfo::makeArray(core, RecordInfo::searchHit(), static_cast<ULONG>(hits.size()));
    const Platform::SafeArrayAccess access(array.get());
    auto *record = access.as<Orvex::SearchHit>();
    for (const StoryPointer &story : hits) {
        record->name = core->toText(story->name());
        record->queuePath = core->toText(story->queuePath());
        record->id = {story->id().part1, story->id().part2, story->id().part3};
        record->fields = fieldArray(core, story->text().fields).release();
        ++record;
    }
    return array;
}

} // namespace

SearchJob::SearchJob(const std::shared_ptr<Session> &session, LONG id, Query query, QVector<StoryPointer> stories)
    : m_core(session->core())
    , m_session(session)
    , m_id(id)
    , m_query(std::move(query))
    , m_stories(std::move(stories))
{}

void SearchJob::start()
{
    postStep();
}

void SearchJob::postStep()
{
    m_core->delivery().post([self = shared_from_this()] { self->step(); });
}

void SearchJob::step()
{
    const std::shared_ptr<Session> session = m_session.lock();
    if (m_stopped || !session || !session->isOpen())
        return;

    const int batch = std::max(1, m_core->options().searchBatch.load());
    const bool exhausted = look(batch);
    if (m_hits.size() > batch)
        send(*session, batch, false);
    else if (exhausted) {
        session->forgetSearch(m_id);
        send(*session, m_hits.size(), true);
        return;
    }
    postStep();
}

/// Looks on until there is a hit more than one batch takes, so that it is known whether that batch is the last. True
/// when there is nothing left to look at.
bool SearchJob::look(int batch)
{
    const int end = std::min(m_position + StoriesPerStep, m_stories.size());
    const auto isEnough = [this] { return m_query.maxFound() > 0 && m_sent + m_hits.size() >= m_query.maxFound(); };
    while (m_position < end && m_hits.size() <= batch && !isEnough()) {
        const StoryPointer &story = m_stories.at(m_position);
        if (m_query.matches(*story))
            m_hits.append(story);
        ++m_position;
    }
    return m_position == m_stories.size() || isEnough();
}

void SearchJob::send(Session &session, int count, bool finished)
{
    const Platform::SafeArray results = hitArray(m_core, m_hits.mid(0, count));
    m_hits = m_hits.mid(count);
    m_sent += count;
    session.connections().tellSearchResults(m_id, results.get(), m_sent, finished ? 1 : 0);
}

} // namespace Newsroom
