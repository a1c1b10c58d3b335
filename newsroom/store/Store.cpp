#include <quire/newsroom/store/Store.h>

#include <QDir>
#include <QFileInfo>
#include <QLockFile>
#include <mutex>

#include "FolderReader.h"
#include "FolderWriter.h"
#include "Strays.h"

namespace Newsroom {

namespace {

QString holderOf(const QLockFile &lock)
{
    qint64 process = 0;
    QString machine;
    QString program;
    if (!lock.getLockInfo(&process, &machine, &program))
        return QStringLiteral("another program");
    return QStringLiteral("%1 (process %2 on %3)").arg(program, QString::number(process), machine);
}

QString whyNotLocked(const QLockFile &lock)
{
    switch (lock.error()) {
    case QLockFile::LockFailedError:
        return QLatin1String("is being written by ") + holderOf(lock);
    case QLockFile::PermissionError:
        return QStringLiteral("cannot be locked for writing: the folder may not be written");
    case QLockFile::UnknownError:
    case QLockFile::NoError:
        break;
    }
    return QStringLiteral("cannot be locked for writing: newsroom.lock cannot be written; is the disk full?");
}

bool lockFolder(const QString &folder, QLockFile *lock, QString *error)
{
    lock->setStaleLockTime(0); // Held for as long as its process runs.
    if (lock->tryLock(0))
        return true;
    *error = QStringLiteral("%1: %2").arg(QDir::toNativeSeparators(folder), whyNotLocked(*lock));
    return false;
}

} // namespace

/// Hears of each change and writes it. Notices of two threads may come in any order: what is written is always the
/// present state, read under the mutex.
class Store::Private : public Observer
{
public:
    Private(const QString &root, std::shared_ptr<Model> newsroom, std::unique_ptr<QLockFile> lock)
        : folder(root)
        , model(std::move(newsroom))
        , m_lock(std::move(lock))
        , m_writer(root, FolderWriter::KnownFolder)
    {}

    const QString folder;
    const std::shared_ptr<Model> model;

    void changed(const Change &change) override
    {
        const std::lock_guard<std::mutex> guard(m_mutex);
        if (m_open && !write(change))
            m_error = m_writer.error();
    }

    QString error() const
    {
        const std::lock_guard<std::mutex> guard(m_mutex);
        return m_error;
    }

    bool flush()
    {
        const std::lock_guard<std::mutex> guard(m_mutex);
        if (m_error.isEmpty())
            return true;
        m_error = m_writer.writeAll(*model) ? QString() : m_writer.error();
        return m_error.isEmpty();
    }

    void close()
    {
        model->removeObserver(this);
        const std::lock_guard<std::mutex> guard(m_mutex);
        m_open = false;
        m_lock->unlock();
    }

private:
    mutable std::mutex m_mutex;
    const std::unique_ptr<QLockFile> m_lock;
    FolderWriter m_writer;
    QString m_error;
    bool m_open = true;

    bool write(const Change &change)
    {
        switch (change.kind) {
        case Change::StoryCreated:
            return writeStories(change) && m_writer.writeQueue(*model, change.queueNumber);
        case Change::StorySaved:
            return writeStories(change);
        case Change::StoryDeleted:
            return m_writer.writeQueue(*model, change.queueNumber) && removeStories(change);
        case Change::StoryLocked:
        case Change::StoryUnlocked:
            return true;
        case Change::BlobChanged:
            return m_writer.writeBlob(*model, change.name);
        case Change::UserBlobChanged:
            return m_writer.writeUserBlob(*model, change.name);
        case Change::TreeChanged:
            return m_writer.writeEntry(*model, change.name);
        case Change::SystemChanged:
            return m_writer.writeSystem(*model);
        }
        return true;
    }

    bool writeStories(const Change &change)
    {
        for (const qint32 part1 : change.stories) {
            const Answer<StoryPointer> story = model->story(part1);
            if (story && !m_writer.writeStory(*story.value))
                return false;
        }
        return true;
    }

    bool removeStories(const Change &change)
    {
        const Answer<Entry> queue = model->queue(change.queueNumber);
        for (const qint32 part1 : change.stories) {
            if (queue && !model->story(part1) && !m_writer.removeStory(queue.value.path, part1))
                return false;
        }
        return true;
    }
};

Store::Store(std::shared_ptr<Private> data)
    : d(std::move(data))
{}

Store::~Store()
{
    d->close();
}

std::unique_ptr<Store> Store::open(const QString &folder, QString *error)
{
    if (!Files::isNamed(folder, error))
        return nullptr;
    const FolderLayout layout(folder);
    if (!QFileInfo::exists(layout.newsroomFile())) {
        read(folder, error); // says what is wrong with it
        return nullptr;
    }
    auto lock = std::make_unique<QLockFile>(layout.lockFile());
    if (!lockFolder(folder, lock.get(), error))
        return nullptr;
    std::shared_ptr<Model> model = read(folder, error);
    if (!model)
        return nullptr;
    const auto data = std::make_shared<Private>(layout.root(), model, std::move(lock));
    model->addObserver(data);
    return std::unique_ptr<Store>(new Store(data));
}

std::shared_ptr<Model> Store::read(const QString &folder, QString *error)
{
    if (!Files::isNamed(folder, error))
        return nullptr;
    // Somebody else may be writing: a queue that was read before a story went names it in vain. Another look helps.
    constexpr int attempts = 3;
    for (int i = 0; i < attempts; ++i) {
        FolderReader reader(folder);
        if (std::shared_ptr<Model> model = reader.read())
            return model;
        *error = reader.error();
        if (!QFileInfo::exists(FolderLayout(folder).lockFile()))
            break;
    }
    return nullptr;
}

QStringList Store::strays(const QString &folder, const Model &model)
{
    return findStrays(folder, model);
}

bool Store::save(const Model &model, const QString &folder, QString *error)
{
    if (!Files::isFree(folder, error))
        return false;
    FolderWriter writer(folder, FolderWriter::NewFolder);
    if (writer.writeAll(model))
        return true;
    *error = writer.error();
    return false;
}

const std::shared_ptr<Model> &Store::model() const
{
    return d->model;
}

QString Store::folder() const
{
    return d->folder;
}

QString Store::lastError() const
{
    return d->error();
}

bool Store::flush()
{
    return d->flush();
}

} // namespace Newsroom
