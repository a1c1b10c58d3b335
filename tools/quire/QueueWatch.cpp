#include "QueueWatch.h"

#include <quire/tree/QueueUpdateMgr.h>

#include "QueueLoading.h"

namespace Tool {

QString QueueChange::word() const
{
    switch (kind) {
    case Kind::Added:
        return QStringLiteral("new");
    case Kind::Changed:
        return QStringLiteral("changed");
    default:
        return QStringLiteral("gone");
    }
}

QueueWatch::QueueWatch(Session &session, const QString &path, Output &output)
    : m_queue(loadQueue(session, path, {-1}, output))
    , m_stories(read())
{
    // A queue that is live has done that by itself; twice does no harm.
    Quire::QueueUpdateMgr::BeginQueueUpdates(m_queue.get());
}

QueueWatch::~QueueWatch()
{
    try {
        Quire::QueueUpdateMgr::EndQueueUpdates(m_queue.get());
    } catch (const _com_error &) { // NOLINT(bugprone-empty-catch): the session ends, and the reports with it
    }
}

QString QueueWatch::path() const
{
    return m_queue->Name();
}

bool QueueWatch::needsLook()
{
    return Quire::QueueUpdateMgr::NeedsRefresh(m_queue.get(), true);
}

std::vector<QueueChange> QueueWatch::look(Output &output)
{
    m_queue->Refresh();
    waitForLoad(*m_queue, 0, output);
    checkLoad(*m_queue);
    const Stories before = m_stories;
    m_stories = read();
    std::vector<QueueChange> changes;
    for (auto it = m_stories.constBegin(); it != m_stories.constEnd(); ++it) {
        const auto old = before.constFind(it.key());
        if (old == before.constEnd())
            changes.push_back({QueueChange::Kind::Added, it.key(), it->name});
        else if (old->head != it->head || old->fields != it->fields || old->name != it->name)
            changes.push_back({QueueChange::Kind::Changed, it.key(), it->name});
    }
    for (auto it = before.constBegin(); it != before.constEnd(); ++it) {
        if (!m_stories.contains(it.key()))
            changes.push_back({QueueChange::Kind::Removed, it.key(), it->name});
    }
    return changes;
}

/// The stories as they were loaded, with their head and fields still packed: any save changes those.
QueueWatch::Stories QueueWatch::read() const
{
    const auto text = [](const Quire::Item &item, const char *key) {
        Quire::Attribute attribute;
        return item.FindAttr(QLatin1String(key), attribute) ? attribute.value : QString();
    };
    Stories stories;
    m_queue->Lock();
    for (int index = 0; index < m_queue->u_Size(); ++index) {
        const Quire::Item &item = *m_queue->u_Nth(index);
        const int number = text(item, Quire::Attr_Storyid).section(QLatin1Char(':'), 0, 0).toInt();
        stories.insert(number, {item.name, text(item, Quire::Attr_Header), text(item, Quire::Attr_Fields)});
    }
    m_queue->Unlock();
    return stories;
}

} // namespace Tool
