#include "ModelData.h"

#include <QSet>

#include <algorithm>
#include <limits>

namespace Newsroom {

Entry TreeNode::entry() const
{
    Entry entry;
    entry.kind = kind;
    entry.path = path;
    entry.flags = flags;
    entry.count = static_cast<int>(kind == Entry::Queue ? stories.size() : children.size());
    entry.settings = settings;
    entry.settings.flags = flags;
    return entry;
}

ModelData::ModelData()
    : clock(systemClock())
{
    auto root = std::make_unique<TreeNode>();
    root->path = QStringLiteral(".");
    m_root = root.get();
    m_nodes.emplace(QString(), std::move(root));
}

TreeNode *ModelData::node(const QString &path) const
{
    const auto found = m_nodes.find(foldedPath(path));
    return found == m_nodes.end() ? nullptr : found->second.get();
}

TreeNode *ModelData::queue(qint32 number) const
{
    return m_queues.value(number, nullptr);
}

TreeNode *ModelData::directory(const QString &path) const
{
    TreeNode *found = node(path);
    return found != nullptr && found->kind == Entry::Directory ? found : nullptr;
}

StoryRecord *ModelData::record(qint32 part1) const
{
    const auto found = m_records.find(part1);
    return found == m_records.end() ? nullptr : found->second.get();
}

StoryRecord *ModelData::recordAt(qint32 queueNumber, int position) const
{
    const TreeNode *found = queue(queueNumber);
    if (found == nullptr || position < 0 || static_cast<std::size_t>(position) >= found->stories.size())
        return nullptr;
    return found->stories[static_cast<std::size_t>(position)];
}

const User *ModelData::user(const QString &name) const
{
    for (const User &user : users) {
        if (user.name.compare(name, Qt::CaseInsensitive) == 0)
            return &user;
    }
    return nullptr;
}

const User *ModelData::userOf(SessionId session) const
{
    const auto found = sessions.constFind(session);
    return found == sessions.constEnd() ? nullptr : user(*found);
}

const StoredForm *ModelData::form(const QString &name) const
{
    const StoredForm *similar = nullptr;
    for (const StoredForm &form : forms) {
        if (form.form.name == name)
            return &form;
        if (similar == nullptr && form.form.name.compare(name, Qt::CaseInsensitive) == 0)
            similar = &form;
    }
    return similar;
}

std::vector<TreeNode *> ModelData::below(TreeNode *top) const
{
    std::vector<TreeNode *> found;
    std::vector<TreeNode *> waiting{top};
    while (!waiting.empty()) {
        TreeNode *node = waiting.back();
        waiting.pop_back();
        found.push_back(node);
        waiting.insert(waiting.end(), node->children.rbegin(), node->children.rend());
    }
    return found;
}

int ModelData::position(const StoryRecord &record)
{
    const auto &stories = record.queue->stories;
    return static_cast<int>(std::find(stories.begin(), stories.end(), &record) - stories.begin());
}

Refusal ModelData::addNode(const QString &path, Entry::Kind kind, TreeNode **added)
{
    TreeNode *parent = directory(parentPath(path));
    const QString leaf = path.mid(path.lastIndexOf(QLatin1Char('.')) + 1);
    if (!isComponentName(leaf))
        return Refusal::InvalidArgument;
    if (parent == nullptr)
        return Refusal::EntryGone;
    if (node(path) != nullptr)
        return Refusal::EntryExists;
    auto node = std::make_unique<TreeNode>();
    node->kind = kind;
    node->path = childPath(parent->path, leaf);
    node->parent = parent;
    *added = node.get();
    parent->children.push_back(node.get());
    m_nodes.emplace(foldedPath(path), std::move(node));
    return Refusal::None;
}

void ModelData::numberQueue(TreeNode *queue, qint32 number)
{
    qint32 chosen = number;
    if (chosen == 0) {
        do
            chosen = ++m_lastQueue;
        while (m_queues.contains(chosen));
    }
    queue->settings.number = chosen;
    m_queues.insert(chosen, queue);
}

bool ModelData::removeNode(TreeNode *node)
{
    if (node == m_root)
        return false;
    auto &siblings = node->parent->children;
    siblings.erase(std::find(siblings.begin(), siblings.end(), node));
    const std::vector<TreeNode *> doomed = below(node);
    for (TreeNode *gone : doomed) {
        for (StoryRecord *story : gone->stories)
            forgetStory(story);
        if (gone->kind == Entry::Queue)
            m_queues.remove(gone->settings.number);
        m_nodes.erase(foldedPath(QString(gone->path)));
    }
    return true;
}

SessionId ModelData::newSession(const QString &userName)
{
    sessions.insert(++m_lastSession, userName.toCaseFolded());
    return m_lastSession;
}

qint32 ModelData::newStoryNumber()
{
    do
        m_lastStory = m_lastStory == std::numeric_limits<qint32>::max() ? 1 : m_lastStory + 1;
    while (m_records.count(m_lastStory) != 0);
    return m_lastStory;
}

StoryRecord *ModelData::insertStory(TreeNode *queue, int position, const StoryPointer &story)
{
    auto record = std::make_unique<StoryRecord>();
    record->story = story;
    record->queue = queue;
    StoryRecord *added = record.get();
    auto &stories = queue->stories;
    const bool atEnd = position < 0 || static_cast<std::size_t>(position) >= stories.size();
    stories.insert(atEnd ? stories.end() : stories.begin() + position, added);
    m_lastStory = std::max(m_lastStory, story->id().part1);
    m_records.emplace(story->id().part1, std::move(record));
    return added;
}

void ModelData::removeStory(StoryRecord *record)
{
    auto &stories = record->queue->stories;
    stories.erase(std::find(stories.begin(), stories.end(), record));
    forgetStory(record);
}

QVector<qint32> ModelData::keepStories(TreeNode *queue, const QVector<qint32> &order)
{
    QSet<qint32> named;
    std::vector<StoryRecord *> kept;
    for (const qint32 part1 : order) {
        StoryRecord *found = record(part1);
        if (found == nullptr || found->queue != queue || named.contains(part1))
            continue;
        named.insert(part1);
        kept.push_back(found);
    }
    kept.swap(queue->stories);
    QVector<qint32> gone;
    for (StoryRecord *former : kept) {
        const qint32 part1 = former->story->id().part1;
        if (named.contains(part1))
            continue;
        gone.append(part1);
        forgetStory(former);
    }
    return gone;
}

void ModelData::forgetStory(StoryRecord *record)
{
    setLock(record, StoryLock());
    m_records.erase(record->story->id().part1);
}

void ModelData::setLock(StoryRecord *record, const StoryLock &lock)
{
    const qint32 part1 = record->story->id().part1;
    const auto before = m_locked.find(record->lock.session);
    if (before != m_locked.end()) {
        before->removeOne(part1);
        if (before->isEmpty())
            m_locked.erase(before);
    }
    record->lock = lock;
    if (lock.session != 0)
        m_locked[lock.session].append(part1);
}

std::vector<StoryRecord *> ModelData::recordsLockedBy(SessionId session) const
{
    std::vector<StoryRecord *> records;
    const QVector<qint32> locked = m_locked.value(session);
    for (const qint32 part1 : locked)
        records.push_back(record(part1));
    return records;
}

Refusal ModelData::mayWrite(SessionId session) const
{
    const User *user = userOf(session);
    if (user == nullptr)
        return Refusal::NotSignedOn;
    return user->writes() ? Refusal::None : Refusal::NotAuthorized;
}

Refusal ModelData::mayEdit(SessionId session, const StoryRecord &record) const
{
    const Refusal refusal = mayWrite(session);
    if (refusal != Refusal::None)
        return refusal;
    if (record.queue->settings.readOnly)
        return Refusal::ReadOnlyWire;
    if (record.story->isKeyLocked() && !userOf(session)->superuser)
        return Refusal::Locked;
    return record.lock.isHeldByOther(session) ? Refusal::StoryBeingEdited : Refusal::None;
}

Refusal ModelData::mayChangeQueue(SessionId session, const TreeNode &queue) const
{
    const Refusal refusal = mayWrite(session);
    if (refusal != Refusal::None)
        return refusal;
    return queue.flags.isLocked() && !userOf(session)->superuser ? Refusal::Locked : Refusal::None;
}

Refusal ModelData::mayDeleteFrom(SessionId session, const TreeNode *queue) const
{
    const Refusal refusal = mayWrite(session);
    if (refusal != Refusal::None)
        return refusal;
    if (queue == nullptr)
        return Refusal::EntryGone;
    return queue->settings.purgeLocked ? Refusal::PurgeLocked : mayChangeQueue(session, *queue);
}

bool ModelData::isLockedFor(SessionId session, const StoryRecord &record) const
{
    return record.lock.isHeldByOther(session) || (record.story->isKeyLocked() && !userOf(session)->superuser);
}

Answer<StoryRecord *> ModelData::editable(SessionId session, qint32 part1) const
{
    if (userOf(session) == nullptr)
        return Refusal::NotSignedOn;
    StoryRecord *found = record(part1);
    if (found == nullptr)
        return Refusal::EntryGone;
    const Refusal refusal = mayEdit(session, *found);
    if (refusal != Refusal::None)
        return refusal;
    return found;
}

Refusal ModelData::removeFor(SessionId session, StoryRecord *record, StoryPointer *gone)
{
    const Refusal refusal = mayDeleteFrom(session, record == nullptr ? nullptr : record->queue);
    if (refusal != Refusal::None)
        return refusal;
    if (isLockedFor(session, *record))
        return Refusal::Locked;
    *gone = record->story;
    removeStory(record);
    return Refusal::None;
}

void Model::Private::tell(const Change &change)
{
    std::vector<std::shared_ptr<Observer>> listening;
    {
        const std::lock_guard<std::mutex> lock(m_observerMutex);
        for (const Listener &listener : m_observers) {
            if (auto alive = listener.observer.lock())
                listening.push_back(std::move(alive));
        }
    }
    for (const auto &observer : listening)
        observer->changed(change);
}

void Model::Private::tell(const QVector<Change> &changes)
{
    for (const Change &change : changes)
        tell(change);
}

void Model::Private::add(const std::weak_ptr<Observer> &observer)
{
    const std::shared_ptr<Observer> alive = observer.lock();
    if (!alive)
        return;
    const std::lock_guard<std::mutex> lock(m_observerMutex);
    m_observers.push_back({alive.get(), observer});
}

void Model::Private::remove(const Observer *observer)
{
    const std::lock_guard<std::mutex> lock(m_observerMutex);
    const auto unwanted = [&](const Listener &listener) {
        return listener.address == observer || listener.observer.expired();
    };
    m_observers.erase(std::remove_if(m_observers.begin(), m_observers.end(), unwanted), m_observers.end());
}

} // namespace Newsroom
