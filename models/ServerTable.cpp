#include <quire/models/ServerTable.h>

namespace Quire {

ServerTable::ServerTable(QObject *parent)
    : ServerModel(parent)
{}

ServerTable::~ServerTable() = default;

QModelIndex ServerTable::index(int row, int column, const QModelIndex &parent) const
{
    return hasIndex(row, column, parent) ? createIndex(row, column) : QModelIndex();
}

QModelIndex ServerTable::parent(const QModelIndex & /*child*/) const
{
    return QModelIndex();
}

QModelIndex ServerTable::sibling(int row, int column, const QModelIndex & /*index*/) const
{
    return index(row, column);
}

bool ServerTable::hasChildren(const QModelIndex &parent) const
{
    return !parent.isValid() && rowCount() > 0 && columnCount() > 0;
}

Qt::ItemFlags ServerTable::flags(const QModelIndex &index) const
{
    const Qt::ItemFlags usual = ServerModel::flags(index);
    return index.isValid() ? usual | Qt::ItemNeverHasChildren : usual;
}

} // namespace Quire
