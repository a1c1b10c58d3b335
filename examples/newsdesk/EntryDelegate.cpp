#include "EntryDelegate.h"

#include <quire/models/ModelRoles.h>
#include <quire/tree/Item.h>

#include "Icons.h"

namespace Desk {

namespace {

constexpr int rowHeight = 26;

} // namespace

QSize EntryDelegate::sizeHint(const QStyleOptionViewItem &option, const QModelIndex &index) const
{
    return {QStyledItemDelegate::sizeHint(option, index).width(), rowHeight};
}

void EntryDelegate::initStyleOption(QStyleOptionViewItem *option, const QModelIndex &index) const
{
    QStyledItemDelegate::initStyleOption(option, index);
    const bool isDirectory = index.data(Quire::TypeRole).toInt() == Quire::Item_Directory;
    option->icon = Icons::icon(isDirectory ? Icons::Directory : Icons::Queue);
    option->features |= QStyleOptionViewItem::HasDecoration;
    option->decorationSize = QSize(16, 16);
}

} // namespace Desk
