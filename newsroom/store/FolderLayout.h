#pragma once

/// \file
/// Where everything of a newsroom lies in its folder; the store's own.

#include <QByteArray>
#include <QString>

namespace Newsroom {

/// The places in a newsroom folder:
///
///     newsroom.json       server name and aliases, system values, users, names of the forms; written last when a
///     newsroom
///                         is exported, so a folder without it was never finished
///     newsroom.lock       only while a store has the folder open for writing
///     forms/NAME.xml      the markup of a form
///     blobs/NAME.blob     a named blob
///     blobs/users/NAME.blob
///     tree/               the root directory; each directory and queue is a folder
///       directory.json    name, flags, names of the entries in order
///       NEWS/queue.json   name, number, flags, form, first identifier parts of the stories in order
///       NEWS/000123.zeko  a story's whole markup, UTF-8 with byte-order mark
///
/// Names of entries have no dots, so no entry's folder is ever called as one of the files.
class FolderLayout
{
public:
    explicit FolderLayout(const QString &root);

    QString root() const { return m_root; }
    QString newsroomFile() const;
    QString lockFile() const;
    QString formFile(const QString &name) const;
    QString blobFile(const QString &name) const;
    QString userBlobFile(const QString &userName) const;
    QString formsFolder() const;
    QString blobsFolder() const;
    QString userBlobsFolder() const;
    /// The folder of the entry at a newsroom path in the entry's own letter case.
    QString entryFolder(const QString &path) const;

    static QString directoryFile(const QString &folder);
    static QString queueFile(const QString &folder);
    static QString storyFile(const QString &folder, qint32 part1);

private:
    const QString m_root;
};

/// Whole files, with errors in words that name the file.
namespace Files {

/// Reads a whole file.
bool read(const QString &path, QByteArray *data, QString *error);

/// Writes a file so that it is either the old or the new one, whatever happens, making its folder when it is not there.
/// A file that holds these bytes already is not touched.
bool write(const QString &path, const QByteArray &data, QString *error);

/// Writes a file that nobody relies on yet: without a second file that takes its place, and without waiting for the
/// disk.
bool writeNew(const QString &path, const QByteArray &data, QString *error);

/// Removes a file; one that is not there is fine.
bool remove(const QString &path, QString *error);

/// Whether \a folder has a name. One without is nobody's: what is put together from it lies in the file system's root.
bool isNamed(const QString &folder, QString *error);

/// Whether \a folder has a name and is not there or empty, so that a newsroom can be made in it.
bool isFree(const QString &folder, QString *error);

/// The text of UTF-8 bytes with or without byte-order mark; false when they are not UTF-8.
bool fromUtf8(const QByteArray &data, QString *text);

} // namespace Files
} // namespace Newsroom
