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
/// The fields of a form that have a name, the first of those with the same one, letter case ignored.
std::vector<Field> uniqueFields(const std::vector<Field> &fields);
/// What a form calls a field; its name when the form does not call it anything.
QString fieldTitle(const Field &field);
/// The Qt::Alignment of a value of Field::m_Align.
int alignment(qint32 align);
/// A column for each of the unique fields of a form.
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
