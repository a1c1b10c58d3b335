#pragma once

#include <QObject>
#include <QPersistentModelIndex>

class QAbstractItemModel;
class QAbstractItemView;

namespace Desk {

/// The row that somebody chooses in a view, by a click or a key. What the program selects is not chosen, and neither is
/// the neighbour that Qt makes the current row when that goes: no row is the current one then, and the next arrow key
/// goes to the neighbour.
class RowChoice : public QObject
{
    Q_OBJECT

public:
    /// Shows \a model in \a view, to which this belongs from then on.
    RowChoice(QAbstractItemView &view, QAbstractItemModel &model);

    /// Makes \a index the current one, without choosing it; an invalid one means none.
    void select(const QModelIndex &index);

    bool eventFilter(QObject *watched, QEvent *event) override;

Q_SIGNALS:
    void chosen(const QModelIndex &index);

private:
    void takeCurrent(const QModelIndex &index);
    void endRemoval();

    QAbstractItemView &m_view;
    QPersistentModelIndex m_neighbour; // of a current row that went
    bool m_selecting = false;          // by the program
    bool m_removing = false;           // rows go at this moment
    bool m_lost = false;               // the current one among them
};

} // namespace Desk
