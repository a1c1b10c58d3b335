#pragma once

/// \file
/// Which fields a form shows.

#include <QString>
#include <QStringList>

namespace Newsroom {

/// The fields that the cells of a form name, in order, each once (ignoring letter case).
QStringList formFields(const QString &markup);

} // namespace Newsroom
