#pragma once

/// \file
/// Writes the files of a newsroom folder; the store's own.

#include <QString>

#include <quire/newsroom/model/Model.h>

#include "FolderLayout.h"
#include "JsonFields.h"

namespace Newsroom {

/// Writes single files of one folder, only those that change. What names another file is written after it, so that an
/// interruption leaves a newsroom that loads.
class FolderWriter
{
public:
    enum Target {
        NewFolder,  ///< Nobody relies on the folder before its newsroom.json is there: files are written just so.
        KnownFolder ///< A newsroom already: every file is replaced atomically.
    };

    FolderWriter(const QString &root, Target target);

    const FolderLayout &layout() const { return m_layout; }
    /// What went wrong last.
    QString error() const { return m_error; }

    /// Everything: forms, blobs, tree, newsroom.json last.
    bool writeAll(const Model &model);

    bool writeSystem(const NewsroomFile &file, const QVector<Form> &forms);
    bool writeSystem(const Model &model);
    bool writeBlob(const Model &model, const QString &name);
    bool writeUserBlob(const Model &model, const QString &userName);
    bool writeStory(const Story &story);
    bool writeQueue(const Entry &queue, const QVector<qint32> &stories);
    bool writeQueue(const Model &model, qint32 number);
    bool writeDirectory(const Entry &directory, const QStringList &entries);
    bool writeDirectory(const Model &model, const QString &path);
    bool removeStory(const QString &queuePath, qint32 part1);
    /// Writes a directory or queue that was added or changed, or removes its folder when it is gone; then its
    /// directory.
    bool writeEntry(const Model &model, const QString &path);

private:
    const FolderLayout m_layout;
    const Target m_target;
    QString m_error;

    bool write(const QString &path, const QByteArray &data);
    bool writeTree(const Model &model);
    bool writeQueueWithStories(const Model &model, const Entry &queue);
    bool removeFolder(const QString &path);
};

} // namespace Newsroom
