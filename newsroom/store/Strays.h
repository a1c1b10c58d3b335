#pragma once

/// \file
/// What lies in a newsroom folder and is no part of it; the store's own.

#include <QStringList>

#include <quire/newsroom/model/Model.h>

namespace Newsroom {

/// The files among the forms and in the tree of the folder \a root that \a model, which was read from it, does not
/// know; relative to the folder, sorted.
QStringList findStrays(const QString &root, const Model &model);

} // namespace Newsroom
