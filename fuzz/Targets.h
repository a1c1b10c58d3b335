#pragma once

/// \file
/// All fuzz targets.

#include <vector>

#include <QByteArray>
#include <QString>

namespace Fuzz {

/// What is asked for every input. Its seeds lie in fuzz/SUBSYSTEM/corpus/NAME.
struct Target
{
    const char *name; ///< "SUBSYSTEM/NAME"
    /// Answers what is wrong, an empty string when nothing is.
    QString (*check)(const QByteArray &input);
};

const std::vector<Target> &targets();

/// The target of that name, null when there is none.
const Target *findTarget(const QByteArray &name);

} // namespace Fuzz
