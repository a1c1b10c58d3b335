#include "TreePane.h"

#include <QLabel>
#include <QTreeView>
#include <QVBoxLayout>

#include "EntryDelegate.h"

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
    if (m_view->model()) {
        m_model.setRootPath(m_model.rootPath());
        return;
    }
    m_view->setModel(&m_model); // which begins to read
    connect(m_view->selectionModel(), &QItemSelectionModel::currentChanged, this, &TreePane::takeCurrent);
}

void TreePane::refresh()
{
    m_model.refresh();
}

void TreePane::select(const QString &path)
{
    const QModelIndex index = m_model.indexOf(path);
    m_selecting = true;
    if (index.isValid())
        m_view->setCurrentIndex(index);
    m_selecting = false;
}

void TreePane::takeCurrent(const QModelIndex &index)
{
    if (!m_selecting && index.isValid() && m_model.isQueue(index))
        Q_EMIT queueChosen(m_model.path(index));
}

} // namespace Desk
