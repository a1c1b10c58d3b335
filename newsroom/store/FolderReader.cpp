#include "FolderReader.h"

#include <QDir>
#include <QFileInfo>
#include <QSet>

#include <quire/newsroom/store/FileNames.h>

#include "StoryFile.h"

namespace Newsroom {

FolderReader::FolderReader(const QString &root)
    : m_layout(root)
    , m_model(std::make_shared<Model>())
{}

bool FolderReader::fail(const QString &file, const QString &why)
{
    m_error = QStringLiteral("%1: %2").arg(QDir::toNativeSeparators(file), why);
    return false;
}

bool FolderReader::refused(const QString &file, Refusal refusal)
{
    return refusal == Refusal::None || fail(file, description(refusal));
}

std::shared_ptr<Model> FolderReader::read()
{
    if (!QFileInfo(m_layout.root()).isDir())
        fail(m_layout.root(), QStringLiteral("is no folder"));
    else if (!QFileInfo::exists(m_layout.newsroomFile()))
        fail(m_layout.root(), QStringLiteral("is no newsroom folder (it has no newsroom.json)"));
    else if (readSystem() && readBlobs(m_layout.blobsFolder(), false) && readBlobs(m_layout.userBlobsFolder(), true) &&
             readTree())
        return m_model;
    return nullptr;
}

bool FolderReader::readSystem()
{
    QByteArray json;
    if (!Files::read(m_layout.newsroomFile(), &json, &m_error))
        return false;
    NewsroomFile file;
    const QString wrong = file.read(json);
    if (!wrong.isEmpty())
        return fail(m_layout.newsroomFile(), wrong);
    m_model->setSystem(file.system);
    for (const User &user : qAsConst(file.users)) {
        if (!refused(m_layout.newsroomFile(), m_model->setUser(user)))
            return false;
    }
    return readForms(file.forms);
}

bool FolderReader::readForms(const QStringList &names)
{
    for (const QString &name : names) {
        const QString file = m_layout.formFile(name);
        QByteArray data;
        Form form;
        form.name = name;
        if (!Files::read(file, &data, &m_error))
            return false;
        if (!Files::fromUtf8(data, &form.markup))
            return fail(file, QStringLiteral("is no UTF-8 text"));
        if (!refused(file, m_model->setForm(form)))
            return false;
    }
    return true;
}

bool FolderReader::readBlobs(const QString &folder, bool ofUsers)
{
    const QStringList files =
        QDir(folder).entryList({QStringLiteral("*.blob")}, QDir::Files | QDir::Hidden, QDir::Name);
    for (const QString &file : files) {
        const QString path = folder + QLatin1Char('/') + file;
        QByteArray data;
        QString name;
        if (!Files::read(path, &data, &m_error))
            return false;
        if (!FileNames::decode(file.chopped(5), &name))
            return fail(path, QStringLiteral("is not named as a blob"));
        if (ofUsers)
            m_model->setUserBlob(name, data);
        else
            m_model->setBlob(name, data);
    }
    return true;
}

bool FolderReader::readTree()
{
    QStringList waiting{QStringLiteral(".")};
    while (!waiting.isEmpty()) {
        const QString path = waiting.takeLast();
        QStringList children;
        if (!readDirectory(path, &children))
            return false;
        for (const QString &child : qAsConst(children)) {
            const QString childsPath = childPath(path, child);
            const QString folder = m_layout.entryFolder(childsPath);
            if (!isComponentName(child))
                return fail(FolderLayout::directoryFile(m_layout.entryFolder(path)),
                            QStringLiteral("\"%1\" can be no entry's name").arg(child));
            if (QFileInfo::exists(FolderLayout::queueFile(folder))) {
                if (!readQueue(childsPath))
                    return false;
            } else {
                if (!refused(folder, m_model->addDirectory(childsPath)))
                    return false;
                waiting.append(childsPath);
            }
        }
    }
    return true;
}

bool FolderReader::isNamed(const QString &file, const QString &path, const QString &name)
{
    const QString leaf = path.mid(path.lastIndexOf(QLatin1Char('.')) + 1);
    return path == QLatin1String(".") || leaf == name ||
           fail(file, QStringLiteral("is named \"%1\" where \"%2\" is expected").arg(name, leaf));
}

bool FolderReader::readDirectory(const QString &path, QStringList *children)
{
    const QString file = FolderLayout::directoryFile(m_layout.entryFolder(path));
    QByteArray json;
    if (!Files::read(file, &json, &m_error))
        return false;
    JsonFields fields(json);
    const QString name = fields.text(QStringLiteral("name"));
    const Flags flags = fields.flags(QStringLiteral("flags"));
    *children = fields.texts(QStringLiteral("entries"));
    if (!fields.error().isEmpty())
        return fail(file, fields.error());
    return isNamed(file, path, name) && refused(file, m_model->setFlags(path, flags));
}

bool FolderReader::readQueue(const QString &path)
{
    const QString folder = m_layout.entryFolder(path);
    const QString file = FolderLayout::queueFile(folder);
    QByteArray json;
    if (!Files::read(file, &json, &m_error))
        return false;
    JsonFields fields(json);
    QueueSettings settings;
    const QString name = fields.text(QStringLiteral("name"));
    settings.number = fields.number(QStringLiteral("number"));
    settings.formName = fields.text(QStringLiteral("form"));
    settings.flags = fields.flags(QStringLiteral("flags"));
    settings.readOnly = fields.flag(QStringLiteral("readOnly"));
    settings.purgeLocked = fields.flag(QStringLiteral("purgeLocked"));
    const QVector<qint32> stories = fields.numbers(QStringLiteral("stories"));
    if (!fields.error().isEmpty())
        return fail(file, fields.error());
    if (!isNamed(file, path, name) || !refused(file, m_model->addQueue(path, settings).refusal))
        return false;
    const qint32 number = m_model->entry(path).value.number();
    QSet<qint32> named;
    for (const qint32 part1 : stories) {
        if (named.contains(part1))
            return fail(file, QStringLiteral("names the story %1 twice").arg(part1));
        named.insert(part1);
        if (!readStory(number, FolderLayout::storyFile(folder, part1), part1))
            return false;
    }
    return true;
}

bool FolderReader::readStory(qint32 queueNumber, const QString &file, qint32 part1)
{
    Model::NewStory story;
    if (!readStoryFile(file, part1, &story, &m_error))
        return false;
    story.queueNumber = queueNumber;
    return refused(file, m_model->addStory(story).refusal);
}

} // namespace Newsroom
