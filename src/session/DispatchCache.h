#pragma once

/// \file
/// The handles of server objects that a session has opened.

#include <QHash>
#include <QMap>
#include <QString>

#include <memory>

#include <quire/session/DispatchWrapper.h>
#include <quire/session/Mutex.h>

namespace Quire {

/// Two tables of server handles: directories and queues by path, stories by queue path and story number.
///
/// Owned by the session, which makes it with the sign-on object; hosts reach it through the operations of QuireCOM.
/// Keys are compared exactly, letter case included. In the table of directories an empty path means ".", the root; in
/// the table of stories a path is taken as it stands. Nothing is dropped by size or age.
///
/// Any thread may call any operation. A mutex of its own guards the tables; no server object is called while it is
/// held: references are added after a look-up has left it, and handles that fall out of a table are released after it.
class QUIRE_EXPORT DispatchCache
{
public:
    DispatchCache();
    virtual ~DispatchCache();

    /// Puts the handle kept under \a path into \a handle. False when there is none; \a handle is then left alone.
    bool FindDir(const QString &path, IDispatchPtr &handle) const;
    /// Keeps \a handle under \a path; a handle kept there before is released.
    void AddDir(const QString &path, const IDispatchPtr &handle);

    /// Puts the handle of story \a part1 of \a queuePath into \a handle. False when there is none; \a handle is then
    /// left alone.
    bool FindStory(const QString &queuePath, qint32 part1, IDispatchPtr &handle) const;
    /// Keeps \a handle as story \a part1 of \a queuePath; a handle kept there before is released.
    void AddStory(const QString &queuePath, qint32 part1, const IDispatchPtr &handle);
    /// Drops story \a part1 of \a queuePath. The queue's table stays, even when this leaves it empty.
    void RemoveStory(const QString &queuePath, qint32 part1);

    /// Drops the directory or queue \a path ("." when empty) and every story kept under that same path. Paths below it
    /// stay.
    void Remove(const QString &path);
    /// Drops everything.
    void Clear();

private:
    Q_DISABLE_COPY(DispatchCache)

    // Entries are shared so that a look-up can leave the mutex before it adds a reference to the server's object.
    using Entry = std::shared_ptr<const DispatchWrapper>;
    using Stories = QHash<qint32, Entry>;

    mutable Mutex<LockRank::HandleCache> m_mutex;
    QMap<QString, Entry> m_directories QUIRE_GUARDED_BY(m_mutex);
    QMap<QString, Stories> m_stories QUIRE_GUARDED_BY(m_mutex);
};

} // namespace Quire
