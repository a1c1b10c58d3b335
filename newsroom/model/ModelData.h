#pragma once

/// \file
/// What a newsroom holds; the model's own.

#include <QHash>
#include <QMap>
#include <memory>
#include <mutex>
#include <unordered_map>
#include <vector>

#include <quire/newsroom/model/Model.h>

namespace Newsroom {

/// Who has locked a story.
struct StoryLock
{
    bool held = false;
    SessionId session = 0; ///< 0: somebody who works elsewhere.
    QString userName;
    qint32 types = 0;

    bool isHeldByOther(SessionId asking) const { return held && session != asking; }
};

struct TreeNode;

/// A story of the newsroom: its present revision, its place and its lock.
struct StoryRecord
{
    StoryPointer story;
    TreeNode *queue = nullptr;
    StoryLock lock;
};

/// A directory or a queue.
struct TreeNode
{
    Entry::Kind kind = Entry::Directory;
    QString path;
    TreeNode *parent = nullptr;
    Flags flags;
    std::vector<TreeNode *> children;   ///< Of a directory, in order.
    QueueSettings settings;             ///< Of a queue.
    std::vector<StoryRecord *> stories; ///< Of a queue, in order.

    Entry entry() const;
};

/// A form with what new stories need of it.
struct StoredForm
{
    Form form;
    QStringList fields; ///< The fields of its cells, each once.
};

/// Everything that Model::Private guards with its mutex, and the look-ups that several operations share. Who calls
/// anything here holds the mutex.
class ModelData
{
public:
    ModelData();

    SystemValues system;
    Clock clock;
    QVector<User> users;
    QVector<StoredForm> forms;
    QMap<QString, QByteArray> blobs;
    QMap<QString, QByteArray> userBlobs; ///< By folded user name.
    QHash<SessionId, QString> sessions;  ///< The folded user name.

    TreeNode *root() const { return m_root; }
    TreeNode *node(const QString &path) const;
    TreeNode *queue(qint32 number) const;
    TreeNode *directory(const QString &path) const;
    StoryRecord *record(qint32 part1) const;
    StoryRecord *recordAt(qint32 queueNumber, int position) const;
    const User *user(const QString &name) const;
    const User *userOf(SessionId session) const;
    const StoredForm *form(const QString &name) const;
    int storyCount() const { return static_cast<int>(m_records.size()); }

    /// Every node below \a top, itself included, in tree order.
    std::vector<TreeNode *> below(TreeNode *top) const;
    static int position(const StoryRecord &record);

    Refusal addNode(const QString &path, Entry::Kind kind, TreeNode **added);
    void numberQueue(TreeNode *queue, qint32 number);
    bool isQueueNumberTaken(qint32 number) const { return m_queues.contains(number); }
    /// Removes a node with all below; false for the root.
    bool removeNode(TreeNode *node);

    SessionId newSession(const QString &userName);
    qint32 newStoryNumber();
    StoryRecord *insertStory(TreeNode *queue, int position, const StoryPointer &story);
    void removeStory(StoryRecord *record);
    /// Leaves a queue with its stories that \a order names, in that order, and answers the others.
    QVector<qint32> keepStories(TreeNode *queue, const QVector<qint32> &order);
    /// Forgets a story whose place in the queue's list its caller takes away.
    void forgetStory(StoryRecord *record);
    void setLock(StoryRecord *record, const StoryLock &lock);
    std::vector<StoryRecord *> recordsLockedBy(SessionId session) const;

    // Rights of a session, in the order in which they are refused.
    Refusal mayWrite(SessionId session) const;
    Refusal mayEdit(SessionId session, const StoryRecord &record) const;
    Refusal mayChangeQueue(SessionId session, const TreeNode &queue) const;
    Refusal mayDeleteFrom(SessionId session, const TreeNode *queue) const;
    bool isLockedFor(SessionId session, const StoryRecord &record) const;
    /// The story, when the session may edit it.
    Answer<StoryRecord *> editable(SessionId session, qint32 part1) const;
    /// Removes a story when the session may; \a gone receives its last revision.
    Refusal removeFor(SessionId session, StoryRecord *record, StoryPointer *gone);

private:
    std::unordered_map<QString, std::unique_ptr<TreeNode>> m_nodes; ///< By folded path.
    std::unordered_map<qint32, std::unique_ptr<StoryRecord>> m_records;
    QHash<qint32, TreeNode *> m_queues;
    TreeNode *m_root = nullptr;
    SessionId m_lastSession = 0;
    qint32 m_lastStory = 0;
    qint32 m_lastQueue = 0;
    QHash<SessionId, QVector<qint32>> m_locked; ///< Stories that a session has locked.
};

/// The model's mutex with all that it guards, and the observers with a mutex of their own.
class Model::Private
{
public:
    mutable std::mutex mutex;
    ModelData data;

    /// Tells every observer; called with no lock held.
    void tell(const Change &change);
    void tell(const QVector<Change> &changes);

    void add(const std::weak_ptr<Observer> &observer);
    void remove(const Observer *observer);

private:
    std::mutex m_observerMutex;
    struct Listener
    {
        const Observer *address; ///< For comparing only: the observer may be gone.
        std::weak_ptr<Observer> observer;
    };
    std::vector<Listener> m_observers;
};

} // namespace Newsroom
