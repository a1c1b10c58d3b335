#include "FolderLayout.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSaveFile>
#include <QTextCodec>

#include <quire/newsroom/store/FileNames.h>

namespace Newsroom {

FolderLayout::FolderLayout(const QString &root)
    : m_root(QDir::cleanPath(root))
{}

QString FolderLayout::newsroomFile() const
{
    return m_root + QLatin1String("/newsroom.json");
}

QString FolderLayout::lockFile() const
{
    return m_root + QLatin1String("/newsroom.lock");
}

QString FolderLayout::formsFolder() const
{
    return m_root + QLatin1String("/forms");
}

QString FolderLayout::blobsFolder() const
{
    return m_root + QLatin1String("/blobs");
}

QString FolderLayout::userBlobsFolder() const
{
    return blobsFolder() + QLatin1String("/users");
}

QString FolderLayout::formFile(const QString &name) const
{
    return formsFolder() + QLatin1Char('/') + FileNames::ofExactName(name) + QLatin1String(".xml");
}

QString FolderLayout::blobFile(const QString &name) const
{
    return blobsFolder() + QLatin1Char('/') + FileNames::ofExactName(name) + QLatin1String(".blob");
}

QString FolderLayout::userBlobFile(const QString &userName) const
{
    return userBlobsFolder() + QLatin1Char('/') + FileNames::ofExactName(userName.toCaseFolded()) +
           QLatin1String(".blob");
}

QString FolderLayout::entryFolder(const QString &path) const
{
    QString folder = m_root + QLatin1String("/tree");
    if (path == QLatin1String(".") || path.isEmpty())
        return folder;
    const QStringList names = path.split(QLatin1Char('.'));
    for (const QString &name : names)
        folder += QLatin1Char('/') + FileNames::ofEntry(name);
    return folder;
}

QString FolderLayout::directoryFile(const QString &folder)
{
    return folder + QLatin1String("/directory.json");
}

QString FolderLayout::queueFile(const QString &folder)
{
    return folder + QLatin1String("/queue.json");
}

QString FolderLayout::storyFile(const QString &folder, qint32 part1)
{
    return folder + QStringLiteral("/%1.zeko").arg(part1, 6, 10, QLatin1Char('0'));
}

namespace Files {

namespace {

bool fail(const QString &path, const QString &why, QString *error)
{
    *error = QStringLiteral("%1: %2").arg(QDir::toNativeSeparators(path), why);
    return false;
}

bool makeFolderOf(const QString &path, QString *error)
{
    const QString folder = QFileInfo(path).path();
    return QDir().mkpath(folder) || fail(folder, QStringLiteral("the folder cannot be made"), error);
}

bool holds(const QString &path, const QByteArray &data)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) && file.size() == data.size() && file.readAll() == data;
}

} // namespace

bool read(const QString &path, QByteArray *data, QString *error)
{
    QFile file(path);
    if (!QFileInfo(path).isFile() || !file.open(QIODevice::ReadOnly))
        return fail(path, QFileInfo::exists(path) ? QStringLiteral("cannot be read") : QStringLiteral("is not there"),
                    error);
    // Of a file that no array holds Qt reads nothing, and calls that no error.
    const qint64 size = file.size();
    *data = file.readAll();
    if (file.error() != QFileDevice::NoError)
        return fail(path, file.errorString(), error);
    return data->size() >= size || fail(path, QStringLiteral("cannot be read whole (%1 bytes)").arg(size), error);
}

bool write(const QString &path, const QByteArray &data, QString *error)
{
    if (holds(path, data))
        return true;
    if (!makeFolderOf(path, error))
        return false;
    QSaveFile file(path);
    if (file.open(QIODevice::WriteOnly) && file.write(data) == data.size() && file.commit())
        return true;
    return fail(path, QLatin1String("cannot be written: ") + file.errorString(), error);
}

bool writeNew(const QString &path, const QByteArray &data, QString *error)
{
    if (!makeFolderOf(path, error))
        return false;
    QFile file(path);
    if (file.open(QIODevice::WriteOnly) && file.write(data) == data.size() && file.flush())
        return true;
    return fail(path, QLatin1String("cannot be written: ") + file.errorString(), error);
}

bool remove(const QString &path, QString *error)
{
    QFile file(path);
    if (!file.exists() || file.remove())
        return true;
    return fail(path, QLatin1String("cannot be removed: ") + file.errorString(), error);
}

bool isNamed(const QString &folder, QString *error)
{
    if (folder.isEmpty())
        *error = QStringLiteral("the folder has no name");
    return !folder.isEmpty();
}

bool isFree(const QString &folder, QString *error)
{
    if (!isNamed(folder, error))
        return false;
    const QFileInfo info(folder);
    if (!info.exists() && !info.isSymLink())
        return true;
    if (!info.isDir())
        return fail(folder, QStringLiteral("is no folder"), error);
    return QDir(folder).isEmpty(QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot) ||
           fail(folder, QStringLiteral("is not empty"), error);
}

bool fromUtf8(const QByteArray &data, QString *text)
{
    QTextCodec::ConverterState state;
    const QString read = QTextCodec::codecForName("UTF-8")->toUnicode(data.constData(), data.size(), &state);
    if (state.invalidChars != 0 || state.remainingChars != 0)
        return false;
    *text = read;
    return true;
}

} // namespace Files
} // namespace Newsroom
