#pragma once

/// \file
/// A newsroom that follows its folder.

#include <QDateTime>
#include <QString>
#include <memory>
#include <vector>

#include <quire/newsroom/model/Model.h>

namespace Newsroom {

/// Brings queues of a newsroom that was read from a folder up to date with what other processes write into the folder.
/// Each look at a queue that has not changed asks the file system for one date only.
///
/// Stories that were made, saved and deleted are followed; the tree, forms, users and blobs are not. What cannot be
/// read, because somebody is writing it at this moment, is tried again at the next look. For one thread at a time.
class Follower
{
public:
    /// Follows \a folder with \a model, which was read from it, at \a readAt or later.
    Follower(const QString &folder, std::shared_ptr<Model> model, const QDateTime &readAt);
    ~Follower();
    Follower(const Follower &) = delete;
    Follower &operator=(const Follower &) = delete;

    /// Looks after the queue at \a path from now on; nothing happens when there is none.
    void follow(const QString &path);

    /// Looks at the queues once; the model tells its observers what has changed.
    void look();

private:
    struct Followed;

    void look(Followed &queue);
    bool read(Followed &queue);

    const QString m_folder;
    const std::shared_ptr<Model> m_model;
    const QDateTime m_readAt;
    std::vector<std::unique_ptr<Followed>> m_queues;
};

} // namespace Newsroom
