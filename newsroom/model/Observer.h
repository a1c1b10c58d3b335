#pragma once

/// \file
/// Being told of changes to a newsroom.

#include <QString>
#include <QVector>
#include <QtGlobal>

namespace Newsroom {

/// One committed change.
struct Change
{
    /// What can change.
    enum Kind {
        StoryCreated,
        StorySaved,
        StoryDeleted, ///< One or, for DeleteAll, several.
        StoryLocked,  ///< Also when a lock type was added.
        StoryUnlocked,
        BlobChanged,     ///< `name`: the blob, saved or deleted.
        UserBlobChanged, ///< `name`: the user.
        TreeChanged,     ///< A directory or queue was added, removed or changed; `name`: its full path.
        SystemChanged    ///< Users, forms or system values.
    };
    Kind kind = SystemChanged; ///< What has changed.
    qint32 queueNumber = 0;    ///< Of story changes.
    QVector<qint32> stories;   ///< First identifier parts, of story changes.
    QString name;              ///< Of a user, form or blob.

    /// Whether clients that watch the queue are to be told.
    bool isQueueChange() const { return kind <= StoryUnlocked; }
};

/// Is told of every committed change, on the thread that made it, after the change and with no lock of the model held,
/// so it may call the model. Two threads' notices may arrive in another order than their changes were made: look at the
/// model, not at the order.
class Observer
{
public:
    virtual ~Observer() = default;
    /// Something has changed.
    virtual void changed(const Change &change) = 0;
};

} // namespace Newsroom
