#pragma once

/// \file
/// The hits of a search.

#include <QDeadlineTimer>
#include <QStringList>
#include <QVector>

#include <memory>
#include <vector>

#include <quire/models/ServerTable.h>
#include <quire/models/StoryColumn.h>
#include <quire/tree/Item.h>

namespace Quire {

/// A table of the stories that one search has found: the name, the queue, then the fields that the host wants to see.
///
/// Searches need notices: NotificationInit, without a callback for search results. Start none after
/// NotificationRelease: nobody would tell that it has ended, and the model would load until stop. While a search runs,
/// the model makes sure twice a second that the user is still signed on; after a logout the search fails, also when
/// somebody has signed on again meanwhile. Rows are appended while hits arrive. When the search has ended, double ones
/// go and the others are sorted by queue and story, which views hear as a change of the layout: selections and
/// persistent indexes stay with their stories. The search is over then for the server and the library; the rows stay
/// until the next one.
///
/// Roles as in QueueModel; PathRole is the queue that holds the story.
class QUIRE_MODELS_EXPORT SearchModel : public ServerTable
{
    Q_OBJECT

public:
    /// Without a search.
    explicit SearchModel(QObject *parent = nullptr);
    ~SearchModel() override;

    /// Which fields of the hits have columns, by their names; for searches that are started from now on. Initially
    /// none.
    void setFieldColumns(const QStringList &names);

    /// Searches the directory or queue \a path, which \a type says, and all that is below for \a query, in place of
    /// what was searched before, which is stopped. The library does not tell why a search is refused: failed says so in
    /// general, or that the user is not logged in.
    void start(const QString &path, ItemType type, const QString &query);
    /// Has the server stop the search; the hits that are there stay. Nothing happens unless one is running.
    void stop();
    /// Stops the search and shows nothing.
    void clear();

    /// The number of stories that the server has found, which may be more than it sent; 0 until the search has ended.
    int totalHits() const;

    /// The columns.
    QVector<StoryColumn> columns() const;
    /// The first column with that key, letter case ignored; -1 when there is none.
    int columnOf(const QString &key) const;

    /// How many hits have arrived; 0 below a row.
    int rowCount(const QModelIndex &parent = QModelIndex()) const override;
    /// How many columns there are; 0 below a row.
    int columnCount(const QModelIndex &parent = QModelIndex()) const override;
    /// What the roles above say about a hit.
    QVariant data(const QModelIndex &index, int role = Qt::DisplayRole) const override;
    /// The titles of the columns, and what the roles above say about them.
    QVariant headerData(int section, Qt::Orientation orientation, int role = Qt::DisplayRole) const override;

protected:
    void poll() override;

private:
    Q_DISABLE_COPY(SearchModel)

    class Running;

    void showNothing();
    void follow(const std::shared_ptr<Running> &search);
    void checkSession();
    void giveUp(int search, qint32 error);
    void append(std::vector<Item> hits);
    bool arrange(const std::vector<Item> &hits);
    bool removeMissing(std::vector<int> &targets);
    bool sortByTarget(std::vector<int> &targets);
    bool insertNew(const std::vector<int> &targets, const std::vector<Item> &hits);

    QStringList m_fieldColumns;
    QVector<StoryColumn> m_columns;
    mutable std::vector<Item> m_hits;  // reading an attribute may expand an item
    std::shared_ptr<Running> m_search; // null unless one is running
    QDeadlineTimer m_nextCheck;        // of the session; for ever while one is under way
    bool m_stopWhenStarted = false;
    int m_totalHits = 0;
};

} // namespace Quire
