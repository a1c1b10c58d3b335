#pragma once

/// \file
/// What the items of stories and hits show in the cells of a table. Not part of the public surface.

#include <QStringList>
#include <QVariant>
#include <QVector>

#include <vector>

#include <quire/forms/Field.h>
#include <quire/models/StoryColumn.h>
#include <quire/tree/Item.h>

namespace Quire {

/// The column of the name.
StoryColumn nameColumn();
/// A column for each field of a form, the first of those with the same name.
QVector<StoryColumn> fieldColumns(const std::vector<Field> &fields);
/// A column for each of these `Attr_*` keys.
QVector<StoryColumn> headerColumns(const QStringList &keys);

/// What \a item, which is in the queue \a path, has for a role in a column. Expands it if need be.
QVariant storyCell(Item &item, const QString &path, const StoryColumn &column, int role);
/// What the header of a column has for a role.
QVariant storyHeader(const StoryColumn &column, int role);

/// The first column with that key, letter case ignored; -1 when there is none.
int findColumn(const QVector<StoryColumn> &columns, const QString &key);

} // namespace Quire
