#pragma once

/// \file
/// What the models that are tables have in common.

#include <quire/models/ServerModel.h>

namespace Quire {

/// A ServerModel of rows without children.
class QUIRE_MODELS_EXPORT ServerTable : public ServerModel
{
    Q_OBJECT

public:
    ~ServerTable() override;

    QModelIndex index(int row, int column, const QModelIndex &parent = QModelIndex()) const override;
    QModelIndex parent(const QModelIndex &child) const override;
    QModelIndex sibling(int row, int column, const QModelIndex &index) const override;
    bool hasChildren(const QModelIndex &parent = QModelIndex()) const override;
    Qt::ItemFlags flags(const QModelIndex &index) const override;
    using QObject::parent;

protected:
    explicit ServerTable(QObject *parent);
};

} // namespace Quire
