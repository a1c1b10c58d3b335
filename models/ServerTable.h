#pragma once

/// \file
/// What the models that are tables have in common.

#include <quire/models/ServerModel.h>

namespace Quire {

/// A ServerModel of rows without children.
class QUIRE_MODELS_EXPORT ServerTable : public ServerModel
{
    Q_OBJECT
    Q_DISABLE_COPY(ServerTable)

public:
    ~ServerTable() override;

    /// The cell at that place; invalid when there is none, and below a row.
    QModelIndex index(int row, int column, const QModelIndex &parent = QModelIndex()) const override;
    /// Invalid: rows have no parents.
    QModelIndex parent(const QModelIndex &child) const override;
    /// The cell at that place, whatever \a index is.
    QModelIndex sibling(int row, int column, const QModelIndex &index) const override;
    /// Whether there are rows and columns; false below a row.
    bool hasChildren(const QModelIndex &parent = QModelIndex()) const override;
    /// Those of a row without children.
    Qt::ItemFlags flags(const QModelIndex &index) const override;
    using QObject::parent;

protected:
    /// Without rows.
    explicit ServerTable(QObject *parent);
};

} // namespace Quire
