#pragma once

/// \file
/// A newsroom that is kept in a folder.

#include <QStringList>
#include <memory>

#include <quire/newsroom/model/Model.h>

namespace Newsroom {

/// Keeps a newsroom in a folder: loads it, and writes each committed change as it is made, on the thread that makes it.
/// One store at a time has a folder open, over all processes: a lock file in the folder names it. Held by
/// std::unique_ptr; any thread. Closing (destroying) the store ends the writing; the newsroom lives on in memory.
///
/// Files are replaced atomically and in such an order that an interruption loses at most the change that was being
/// written: a story before the queue that names it. Locks of stories and sessions are not kept.
class Store
{
public:
    ~Store();
    Store(const Store &) = delete;
    Store &operator=(const Store &) = delete;

    /// Opens a newsroom folder for writing. Null, with \a error in words that name the file, when another store has it
    /// open (naming that process and machine), when the folder may not or cannot be written, or when anything in it
    /// cannot be read; nothing is changed then.
    static std::unique_ptr<Store> open(const QString &folder, QString *error);

    /// Loads a newsroom folder without locking it; changes to the newsroom are not written. Null with \a error as
    /// open().
    static std::shared_ptr<Model> read(const QString &folder, QString *error);

    /// What lies among the forms and in the tree of \a folder and is no part of \a model, which was read from it: what
    /// an interruption left behind, such as a story that no queue came to name, or somebody put there. Relative to the
    /// folder, parted by "/", sorted.
    static QStringList strays(const QString &folder, const Model &model);

    /// Writes a newsroom into a folder that is not there or empty. False with \a error otherwise or when writing fails;
    /// what was written by then is no newsroom folder, since newsroom.json comes last.
    static bool save(const Model &model, const QString &folder, QString *error);

    /// The newsroom, shared with whoever serves it.
    const std::shared_ptr<Model> &model() const;

    /// The folder, as it was given.
    QString folder() const;

    /// What went wrong when a change was last written; empty when everything is on disk.
    QString lastError() const;

    /// Writes whatever is not on disk because of an error. True when everything is.
    bool flush();

private:
    class Private;
    std::shared_ptr<Private> d;

    explicit Store(std::shared_ptr<Private> data);
};

} // namespace Newsroom
