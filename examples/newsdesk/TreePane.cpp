#include "TreePane.h"

#include <QLabel>
#include <QTreeView>
#include <QVBoxLayout>

#include "EntryDelegate.h"
#include "RowChoice.h"

namespace Desk {

TreePane::TreePane(QWidget *parent)
    : QWidget(parent)
    , m_view(new QTreeView(this))
{
    auto *const heading = new QLabel(tr("Newsroom"), this);
    heading->setObjectName(QStringLiteral("heading"));
    heading->setContentsMargins(12, 9, 12, 7);
    m_view->setObjectName(QStringLiteral("tree"));
    m_view->setAccessibleName(tr("Directories and queues"));
    m_view->setItemDelegate(new EntryDelegate(m_view));
    m_view->setHeaderHidden(true);
    m_view->setUniformRowHeights(true);
    m_view->setIndentation(16);
    m_view->setEditTriggers(QAbstractItemView::NoEditTriggers);
    auto *const layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    layout->addWidget(heading);
    layout->addWidget(m_view, 1);
    connect(&m_model, &Quire::DirectoryModel::failed, this, &TreePane::failed);
}

void TreePane::open()
{
    if (!m_choice) {
        m_choice = new RowChoice(*m_view, m_model); // and the view begins to read
        connect(m_choice, &RowChoice::chosen, this, &TreePane::takeChosen);
    } else if (m_model.rowCount() > 0) {
        m_model.refresh(); // and what is open stays open
    } else {
        m_model.setRootPath(m_model.rootPath());
    }
}

void TreePane::refresh()
{
    m_model.refresh();
}

void TreePane::select(const QString &path)
{
    const QModelIndex index = m_model.indexOf(path);
    if (index.isValid())
        m_choice->select(index);
}

void TreePane::takeChosen(const QModelIndex &index)
{
    if (m_model.isQueue(index))
        Q_EMIT queueChosen(m_model.path(index));
}

} // namespace Desk
