#pragma once

/// \file
/// What has to hold for whatever a server lists, and for every list. Each check answers what is wrong, an empty string
/// when nothing is.

#include <QByteArray>
#include <QString>

namespace TreeFuzz {

/// The answer of a server's GetList: a row of objects has those that were put there, anything else is empty, and no
/// reference is lost or kept.
QString checkObjects(const QByteArray &input);

/// A list of items, one for each line "name TAB key TAB attribute TAB value": what is found by name, by attribute and
/// after sorting is what a walk over the lines finds.
QString checkList(const QString &text);

} // namespace TreeFuzz
