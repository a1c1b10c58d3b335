#pragma once

/// \file
/// The stories of a queue.

#include <QStringList>
#include <QVector>

#include <memory>
#include <vector>

#include <quire/models/ServerTable.h>
#include <quire/models/StoryColumn.h>
#include <quire/session/StoryID.h>

namespace Quire {

class Field;
class QueueRows;
class WatchedQueue;

/// A table of the stories of one queue, in the queue's order: the name, the fields of the queue's form in the form's
/// order, then what the stories' headers tell.
///
/// Rows are appended while the queue loads, chunk by chunk; fetchMore, which views call at the end of the rows, loads
/// as many more as Queue::getLoadIncrement says. A queue with live refresh is read whole, and read again whenever the
/// server reports a change, as long as there are notices (NotificationInit, without a callback for queues unless that
/// calls QueueUpdateMgr::Update). Reading again changes only rows that differ: rows come, go, move or change one by
/// one, selections and persistent indexes stay; only when very many differ they are exchanged together. Several models
/// may show the same queue.
///
/// The texts stay in the queue's list: a row costs 16 bytes beside. Queues have to load on threads
/// (Queue::useThreading, as it is unless the host changes it).
///
/// When reading fails, what has arrived stays: of a queue that is read again all the rows that were there. refresh
/// tries again.
///
/// Roles: IdentifierRole, NameRole, PathRole, TypeRole, LockRole, UrgencyRole, FlagsRole and Qt::TextAlignmentRole; of
/// the horizontal header IdentifierRole (the column's key), WidthRole, StyleRole and Qt::TextAlignmentRole.
class QUIRE_MODELS_EXPORT QueueModel : public ServerTable
{
    Q_OBJECT
    /// See path() and open().
    Q_PROPERTY(QString path READ path WRITE open NOTIFY pathChanged)

public:
    /// Without a queue.
    explicit QueueModel(QObject *parent = nullptr);
    ~QueueModel() override;

    /// The path of the queue, empty without one.
    QString path() const;
    /// Shows the queue \a path instead, from which nothing has been read yet: the columns come first. Also with the
    /// path that is shown. Nothing is shown of an empty path.
    void open(const QString &path);
    /// Shows nothing.
    void close();
    /// Reads the queue again, as far as it has been read, as soon as a load that is running has ended; or opens it, if
    /// that has failed.
    void refresh();

    /// Whether the queue is read again by itself; false until its columns have arrived.
    bool isLive() const;

    /// The columns; empty until they have arrived.
    QVector<StoryColumn> columns() const;
    /// The first column with that key, letter case ignored; -1 when there is none.
    int columnOf(const QString &key) const;
    /// Which attributes of the header have columns, and in which order; for queues that are opened from now on.
    /// Initially Attr_Lock, Attr_Words, Attr_Rate, Attr_Break, Attr_Float, Attr_Hold, Attr_Wire and Attr_Mail.
    void setHeaderColumns(const QStringList &keys);

    /// The identifier of a row as text, as Queue::GetStory wants it in its other form; empty for an invalid index.
    QString identifier(const QModelIndex &index) const;
    /// The same as numbers, all 0 for an invalid index.
    StoryID storyID(const QModelIndex &index) const;
    /// The row of the story with that identifier; invalid when there is none in what has been read.
    QModelIndex indexOf(const QString &identifier) const;

    /// How many stories have arrived; 0 below a row.
    int rowCount(const QModelIndex &parent = QModelIndex()) const override;
    /// How many columns there are; 0 below a row.
    int columnCount(const QModelIndex &parent = QModelIndex()) const override;
    /// The load has stopped at its limit: there is more to load.
    bool canFetchMore(const QModelIndex &parent) const override;
    /// Loads more.
    void fetchMore(const QModelIndex &parent) override;
    /// What the roles above say about a story.
    QVariant data(const QModelIndex &index, int role = Qt::DisplayRole) const override;
    /// The titles of the columns, and what the roles above say about them.
    QVariant headerData(int section, Qt::Orientation orientation, int role = Qt::DisplayRole) const override;

Q_SIGNALS:
    /// path has changed.
    void pathChanged(const QString &path);

protected:
    void poll() override;

private:
    Q_DISABLE_COPY(QueueModel)

    bool reset(const QString &path);
    void ask();
    void start(const std::shared_ptr<WatchedQueue> &queue, const std::vector<Field> &fields);
    void fail(qint32 error);
    void takeArrived();
    void endReading(qint32 error);
    void loadMore();
    void readAnew();
    void showNew();
    void showChanged(const std::vector<int> &rows);

    QString m_path;
    QStringList m_headerColumns;
    QVector<StoryColumn> m_columns;
    std::shared_ptr<WatchedQueue> m_queue; // null until it has been opened
    const std::unique_ptr<QueueRows> m_rows;
    bool m_asking = false;   // the ServerThread does something for this model
    bool m_running = false;  // the queue's own thread loads
    bool m_outdated = false; // to be read again when that has ended
    int m_changes = 0;       // those of the queue that have been seen
};

} // namespace Quire
