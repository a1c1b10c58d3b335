#pragma once

/// \file
/// What has to hold for how models tell views of changes. Each check answers what is wrong, an empty string when
/// nothing is.

#include <QByteArray>
#include <QString>

namespace ModelFuzz {

/// The first line's bytes are rows, the rest those that they become: what is matched is alike, and the steps, each of
/// which a model may make, turn the one into the other and move no more rows than they must.
QString checkRows(const QByteArray &input);

} // namespace ModelFuzz
