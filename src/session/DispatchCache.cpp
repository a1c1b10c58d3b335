#include <quire/session/DispatchCache.h>

namespace Quire {

namespace {

QString dirKey(const QString &path)
{
    return path.isEmpty() ? QStringLiteral(".") : path;
}

} // namespace

DispatchCache::DispatchCache() = default;
DispatchCache::~DispatchCache() = default;

bool DispatchCache::FindDir(const QString &path, IDispatchPtr &handle) const
{
    Entry entry;
    {
        const MutexLocker guard(m_mutex);
        entry = m_directories.value(dirKey(path));
    }
    if (!entry)
        return false;
    handle = entry->Handle();
    return true;
}

void DispatchCache::AddDir(const QString &path, const IDispatchPtr &handle)
{
    Entry entry = std::make_shared<const DispatchWrapper>(handle);
    const MutexLocker guard(m_mutex);
    m_directories[dirKey(path)].swap(entry); // declared before the guard, so what was there goes after it
}

bool DispatchCache::FindStory(const QString &queuePath, qint32 part1, IDispatchPtr &handle) const
{
    Entry entry;
    {
        const MutexLocker guard(m_mutex);
        const auto stories = m_stories.constFind(queuePath);
        if (stories != m_stories.constEnd())
            entry = stories->value(part1);
    }
    if (!entry)
        return false;
    handle = entry->Handle();
    return true;
}

void DispatchCache::AddStory(const QString &queuePath, qint32 part1, const IDispatchPtr &handle)
{
    Entry entry = std::make_shared<const DispatchWrapper>(handle);
    const MutexLocker guard(m_mutex);
    m_stories[queuePath][part1].swap(entry); // declared before the guard, so what was there goes after it
}

void DispatchCache::RemoveStory(const QString &queuePath, qint32 part1)
{
    Entry dropped; // outlives the guard
    const MutexLocker guard(m_mutex);
    const auto stories = m_stories.find(queuePath);
    if (stories != m_stories.end())
        dropped = stories->take(part1);
}

void DispatchCache::Remove(const QString &path)
{
    const QString key = dirKey(path);
    Entry droppedDir; // both outlive the guard
    Stories droppedStories;
    const MutexLocker guard(m_mutex);
    droppedDir = m_directories.take(key);
    droppedStories = m_stories.take(key);
}

void DispatchCache::Clear()
{
    QMap<QString, Entry> droppedDirs; // both outlive the guard
    QMap<QString, Stories> droppedStories;
    const MutexLocker guard(m_mutex);
    m_directories.swap(droppedDirs);
    m_stories.swap(droppedStories);
}

} // namespace Quire
