#include <quire/newsroom/store/Follower.h>

#include <QFileInfo>
#include <QHash>

#include "FolderLayout.h"
#include "JsonFields.h"
#include "StoryFile.h"

namespace Newsroom {

namespace {

/// Two changes that are closer together than this may leave the same date; the coarsest file systems have such dates.
constexpr int coarsestDate = 2; // seconds

/// By which one state of a file is told from another.
struct FileState
{
    QDateTime changed;
    qint64 size = 0;

    static FileState of(const QString &path)
    {
        const QFileInfo info(path);
        return {info.lastModified(), info.size()};
    }
    bool operator==(const FileState &other) const { return changed == other.changed && size == other.size; }
    /// Whether a later change shows in the date.
    bool isSettled(const QDateTime &now) const { return changed.addSecs(coarsestDate) < now; }
};

bool readNumbers(const QString &file, QVector<qint32> *numbers)
{
    QByteArray json;
    QString error;
    if (!Files::read(file, &json, &error))
        return false;
    JsonFields fields(json);
    *numbers = fields.numbers(QStringLiteral("stories"));
    return fields.error().isEmpty();
}

} // namespace

struct Follower::Followed
{
    qint32 number = 0;
    QString folder;
    QDateTime changed;  // the folder's date when it was last read
    QDateTime lookedAt; // when that was
    QHash<qint32, FileState> stories;
};

Follower::Follower(const QString &folder, std::shared_ptr<Model> model, const QDateTime &readAt)
    : m_folder(folder)
    , m_model(std::move(model))
    , m_readAt(readAt.addSecs(-coarsestDate))
{}

Follower::~Follower() = default;

void Follower::follow(const QString &path)
{
    const Answer<Entry> entry = m_model->entry(path);
    if (!entry || !entry.value.isQueue())
        return;
    auto queue = std::make_unique<Followed>();
    queue->number = entry.value.number();
    queue->folder = FolderLayout(m_folder).entryFolder(entry.value.path);
    // What is older than the reading of the newsroom has been read.
    for (const StoryPointer &story : m_model->stories(queue->number).value) {
        const qint32 part1 = story->id().part1;
        const FileState state = FileState::of(FolderLayout::storyFile(queue->folder, part1));
        if (state.changed < m_readAt)
            queue->stories.insert(part1, state);
    }
    m_queues.push_back(std::move(queue));
}

void Follower::look()
{
    for (const std::unique_ptr<Followed> &queue : m_queues)
        look(*queue);
}

/// Files are replaced, never written in place, so that whatever happens changes the date of their folder.
void Follower::look(Followed &queue)
{
    const QDateTime now = QDateTime::currentDateTime();
    const QDateTime changed = QFileInfo(queue.folder).lastModified();
    const bool settled = changed == queue.changed && changed.addSecs(coarsestDate) < queue.lookedAt;
    if (settled || !read(queue))
        return;
    queue.changed = changed;
    queue.lookedAt = now;
}

/// False when it must be read again.
bool Follower::read(Followed &queue)
{
    QVector<qint32> order;
    if (!readNumbers(FolderLayout::queueFile(queue.folder), &order))
        return false;
    QVector<Model::NewStory> stories;
    QHash<qint32, FileState> states;
    const QDateTime now = QDateTime::currentDateTime();
    for (const qint32 part1 : qAsConst(order)) {
        const QString file = FolderLayout::storyFile(queue.folder, part1);
        const FileState state = FileState::of(file);
        if (state.isSettled(now))
            states.insert(part1, state);
        const auto known = queue.stories.constFind(part1);
        if (known != queue.stories.constEnd() && *known == state)
            continue;
        Model::NewStory story;
        QString error;
        if (!readStoryFile(file, part1, &story, &error))
            return false;
        stories.append(story);
    }
    if (m_model->putQueue(queue.number, stories, order) != Refusal::None)
        return false;
    queue.stories = states;
    return true;
}

} // namespace Newsroom
