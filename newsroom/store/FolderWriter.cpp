#include "FolderWriter.h"

#include <QDir>

namespace Newsroom {

namespace {

const QByteArray byteOrderMark("\xEF\xBB\xBF");

QVector<qint32> numbersOf(const QVector<StoryPointer> &stories)
{
    QVector<qint32> numbers;
    numbers.reserve(stories.size());
    for (const StoryPointer &story : stories)
        numbers.append(story->id().part1);
    return numbers;
}

} // namespace

FolderWriter::FolderWriter(const QString &root, Target target)
    : m_layout(root)
    , m_target(target)
{}

bool FolderWriter::write(const QString &path, const QByteArray &data)
{
    return m_target == NewFolder ? Files::writeNew(path, data, &m_error) : Files::write(path, data, &m_error);
}

bool FolderWriter::writeAll(const Model &model)
{
    for (const QString &name : model.blobNames()) {
        if (!writeBlob(model, name))
            return false;
    }
    for (const User &user : model.users()) {
        if (!writeUserBlob(model, user.name))
            return false;
    }
    return writeTree(model) && writeSystem(model);
}

bool FolderWriter::writeTree(const Model &model)
{
    // Entries before the directories that name them: a list of all directories, written from its end.
    QVector<Entry> directories{model.entry(QString()).value};
    for (int i = 0; i < directories.size(); ++i) {
        const QVector<Entry> children = model.children(directories.at(i).path).value;
        for (const Entry &child : children) {
            if (!child.isQueue())
                directories.append(child);
            else if (!writeQueueWithStories(model, child))
                return false;
        }
    }
    for (int i = directories.size() - 1; i >= 0; --i) {
        if (!writeDirectory(model, directories.at(i).path))
            return false;
    }
    return true;
}

bool FolderWriter::writeQueueWithStories(const Model &model, const Entry &queue)
{
    const QVector<StoryPointer> stories = model.stories(queue.number()).value;
    for (const StoryPointer &story : stories) {
        if (!writeStory(*story))
            return false;
    }
    return writeQueue(queue, numbersOf(stories));
}

bool FolderWriter::writeSystem(const NewsroomFile &file, const QVector<Form> &forms)
{
    for (const Form &form : forms) {
        if (!write(m_layout.formFile(form.name), form.markup.toUtf8()))
            return false;
    }
    return Files::write(m_layout.newsroomFile(), file.toBytes(), &m_error);
}

bool FolderWriter::writeSystem(const Model &model)
{
    NewsroomFile file;
    file.system = model.system();
    file.users = model.users();
    const QVector<Form> forms = model.forms();
    for (const Form &form : forms)
        file.forms.append(form.name);
    return writeSystem(file, forms);
}

bool FolderWriter::writeBlob(const Model &model, const QString &name)
{
    const Answer<Blob> blob = model.blobOf(name);
    const QString file = m_layout.blobFile(name);
    return blob ? write(file, blob.value.data) : Files::remove(file, &m_error);
}

bool FolderWriter::writeUserBlob(const Model &model, const QString &userName)
{
    const Answer<Blob> blob = model.userBlobOf(userName);
    return !blob || write(m_layout.userBlobFile(userName), blob.value.data);
}

bool FolderWriter::writeStory(const Story &story)
{
    return write(FolderLayout::storyFile(m_layout.entryFolder(story.queuePath()), story.id().part1),
                 byteOrderMark + story.markup(Section::Whole).toUtf8());
}

bool FolderWriter::writeQueue(const Entry &queue, const QVector<qint32> &stories)
{
    return write(FolderLayout::queueFile(m_layout.entryFolder(queue.path)),
                 toBytes({{QStringLiteral("kind"), QStringLiteral("queue")},
                          {QStringLiteral("name"), queue.leafName()},
                          {QStringLiteral("number"), queue.number()},
                          {QStringLiteral("form"), queue.settings.formName},
                          {QStringLiteral("flags"), toJson(queue.flags)},
                          {QStringLiteral("readOnly"), queue.settings.readOnly},
                          {QStringLiteral("purgeLocked"), queue.settings.purgeLocked},
                          {QStringLiteral("stories"), toJson(stories)}}));
}

bool FolderWriter::writeQueue(const Model &model, qint32 number)
{
    const Answer<Entry> queue = model.queue(number);
    return !queue || writeQueue(queue.value, numbersOf(model.stories(number).value));
}

bool FolderWriter::writeDirectory(const Entry &directory, const QStringList &entries)
{
    return write(FolderLayout::directoryFile(m_layout.entryFolder(directory.path)),
                 toBytes({{QStringLiteral("kind"), QStringLiteral("directory")},
                          {QStringLiteral("name"), directory.leafName()},
                          {QStringLiteral("flags"), toJson(directory.flags)},
                          {QStringLiteral("entries"), QJsonArray::fromStringList(entries)}}));
}

bool FolderWriter::writeDirectory(const Model &model, const QString &path)
{
    const Answer<Entry> directory = model.entry(path);
    if (!directory)
        return true;
    QStringList names;
    const QVector<Entry> children = model.children(path).value;
    for (const Entry &child : children)
        names.append(child.leafName());
    return writeDirectory(directory.value, names);
}

bool FolderWriter::removeStory(const QString &queuePath, qint32 part1)
{
    return Files::remove(FolderLayout::storyFile(m_layout.entryFolder(queuePath), part1), &m_error);
}

bool FolderWriter::writeEntry(const Model &model, const QString &path)
{
    const Answer<Entry> entry = model.entry(path);
    if (!entry)
        return writeDirectory(model, parentPath(path)) && removeFolder(m_layout.entryFolder(path));
    const bool written =
        entry.value.isQueue() ? writeQueueWithStories(model, entry.value) : writeDirectory(model, entry.value.path);
    return written && (entry.value.path == QLatin1String(".") || writeDirectory(model, parentPath(path)));
}

bool FolderWriter::removeFolder(const QString &path)
{
    QDir folder(path);
    if (!folder.exists() || folder.removeRecursively())
        return true;
    m_error = QDir::toNativeSeparators(path) + QLatin1String(": cannot be removed");
    return false;
}

} // namespace Newsroom
