#pragma once

/// \file
/// The server's tree of directories and queues.

#include <QHash>

#include <memory>
#include <vector>

#include <quire/models/ServerModel.h>

namespace Quire {

class DirectoryNode;
class Item;

/// A tree of the directories and queues below one directory, in the server's order, in one column that shows the last
/// component of their paths.
///
/// The entries of a directory are read when a view first opens it (canFetchMore, fetchMore) and stay until refresh,
/// which reads again all that has been read so far and changes only the rows that differ: what is open stays open, and
/// persistent indexes stay valid for entries that are still there. A directory that cannot be read tells so with
/// failed, and is read when it is opened the next time, or by refresh.
///
/// Roles: IdentifierRole and PathRole (the path), NameRole (the same), TypeRole, LockRole, CountRole, IndexedRole,
/// ConfirmEditRole, InvertedRole, SortedRole.
class QUIRE_MODELS_EXPORT DirectoryModel : public ServerModel
{
    Q_OBJECT
    /// See rootPath().
    Q_PROPERTY(QString rootPath READ rootPath WRITE setRootPath NOTIFY rootPathChanged)

public:
    /// The whole tree; nothing is read before a view or fetchMore asks for it.
    explicit DirectoryModel(QObject *parent = nullptr);
    ~DirectoryModel() override;

    /// The directory whose entries are the top rows; "." is the root.
    QString rootPath() const;
    /// Shows what is below \a path instead, of which nothing has been read yet. Also with the path that is shown, as
    /// after signing on anew.
    void setRootPath(const QString &path);

    /// Reads the directory at \a parent again, and each one below it that has been read, perhaps in vain; the top rows
    /// for an invalid index. What is being read just now is read once more after that. Nothing happens for a queue and
    /// for what nobody has had read.
    void refresh(const QModelIndex &parent = QModelIndex());

    /// The path of a row; that of the top for an invalid index.
    QString path(const QModelIndex &index) const;
    /// Whether a row is a queue.
    bool isQueue(const QModelIndex &index) const;
    /// The row of the directory or queue \a path, letter case ignored. Invalid when there is none in what has been
    /// read.
    QModelIndex indexOf(const QString &path) const;

    /// The entry number \a row of the directory \a parent; invalid when nothing like it has been read.
    QModelIndex index(int row, int column, const QModelIndex &parent = QModelIndex()) const override;
    /// The directory that holds \a child; invalid for a top row.
    QModelIndex parent(const QModelIndex &child) const override;
    /// How many entries of the directory \a parent have been read.
    int rowCount(const QModelIndex &parent = QModelIndex()) const override;
    /// 1.
    int columnCount(const QModelIndex &parent = QModelIndex()) const override;
    /// Whether \a parent has rows, or is a directory that has not been read and that the server does not call empty.
    bool hasChildren(const QModelIndex &parent = QModelIndex()) const override;
    /// Whether \a parent is a directory that has not been read and that the server does not call empty.
    bool canFetchMore(const QModelIndex &parent) const override;
    /// Reads the directory \a parent.
    void fetchMore(const QModelIndex &parent) override;
    /// What the roles above say about a row; for display the last component of its path.
    QVariant data(const QModelIndex &index, int role = Qt::DisplayRole) const override;
    /// The title of the column, for display; invalid for any other column or role.
    QVariant headerData(int section, Qt::Orientation orientation, int role = Qt::DisplayRole) const override;
    using QObject::parent;

Q_SIGNALS:
    /// rootPath has changed.
    void rootPathChanged(const QString &path);

private:
    Q_DISABLE_COPY(DirectoryModel)

    DirectoryNode *nodeAt(const QModelIndex &index) const;
    QModelIndex indexOf(const DirectoryNode *node) const;
    void read(DirectoryNode *node, bool anew);
    void show(quint64 reading, const std::vector<Item> &entries, bool anew);
    bool showChanges(DirectoryNode *node, const std::vector<Item> &entries);
    void showAttributes(DirectoryNode *node, const std::vector<Item> &entries);
    bool refreshIfOutdated(DirectoryNode *node);
    void giveUp(quint64 reading, qint32 error);
    void forget(DirectoryNode *removed);
    DirectoryNode *takeReading(quint64 reading);

    std::unique_ptr<DirectoryNode> m_root;
    QHash<quint64, DirectoryNode *> m_readings; // what is being read
    quint64 m_lastReading = 0;
};

} // namespace Quire
