#include "RowChoice.h"

#include <QAbstractItemView>
#include <QKeyEvent>

namespace Desk {

RowChoice::RowChoice(QAbstractItemView &view, QAbstractItemModel &model)
    : QObject(&view)
    , m_view(view)
{
    // Before the view hears of it, which then chooses the neighbour.
    connect(&model, &QAbstractItemModel::rowsAboutToBeRemoved, this, [this] { m_removing = true; });
    view.setModel(&model);
    connect(&model, &QAbstractItemModel::rowsRemoved, this, &RowChoice::endRemoval);
    connect(view.selectionModel(), &QItemSelectionModel::currentRowChanged, this, &RowChoice::takeCurrent);
    view.installEventFilter(this);
}

void RowChoice::select(const QModelIndex &index)
{
    m_selecting = true;
    m_view.setCurrentIndex(index);
    m_selecting = false;
}

void RowChoice::takeCurrent(const QModelIndex &index)
{
    if (m_removing) {
        m_lost = true;
        m_neighbour = index;
    } else if (!m_selecting && index.isValid()) {
        Q_EMIT chosen(index);
    }
}

void RowChoice::endRemoval()
{
    m_removing = false;
    if (m_lost)
        select(QModelIndex());
    m_lost = false;
}

/// Without a current row Qt would begin at the top.
bool RowChoice::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() == QEvent::KeyPress && !m_view.currentIndex().isValid() && m_neighbour.isValid()) {
        const int key = static_cast<QKeyEvent *>(event)->key();
        if (key == Qt::Key_Up || key == Qt::Key_Down) {
            m_view.setCurrentIndex(m_neighbour);
            return true;
        }
    }
    return QObject::eventFilter(watched, event);
}

} // namespace Desk
