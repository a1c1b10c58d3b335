#pragma once

/// \file
/// Loads a newsroom folder; the store's own.

#include <QString>
#include <memory>

#include <quire/newsroom/model/Model.h>

#include "FolderLayout.h"
#include "JsonFields.h"

namespace Newsroom {

/// Reads one folder. For one read.
class FolderReader
{
public:
    explicit FolderReader(const QString &root);

    /// The newsroom, or null with error() naming the file.
    std::shared_ptr<Model> read();
    QString error() const { return m_error; }

private:
    const FolderLayout m_layout;
    const std::shared_ptr<Model> m_model;
    QString m_error;

    bool fail(const QString &file, const QString &why);
    bool refused(const QString &file, Refusal refusal);
    bool readSystem();
    bool readForms(const QStringList &names);
    bool readBlobs(const QString &folder, bool ofUsers);
    bool readTree();
    bool readDirectory(const QString &path, QStringList *children);
    bool readQueue(const QString &path);
    bool readStory(qint32 queueNumber, const QString &file, qint32 part1);
    bool isNamed(const QString &file, const QString &path, const QString &name);
};

} // namespace Newsroom
