#pragma once

/// \file
/// Whole text files. Not part of the public surface.

#include <QString>

namespace Quire {

/// The text of the file \a path, empty when it cannot be read. A byte-order mark decides how it is read; without one it
/// is UTF-8, what is no UTF-8 is in the system's encoding, and what is not that either Latin-1, which loses no byte.
QString readTextFile(const QString &path);

/// Writes \a text to the file \a path, in UTF-8 with a byte-order mark. The file is replaced whole or, when anything
/// goes wrong, left as it was; links to it and its permissions stay. A file that may be written but not replaced (no
/// other may be made in its folder, or on Windows another program has it open) is overwritten, and gets its old
/// bytes back when that fails. True when it was written.
bool writeTextFile(const QString &path, const QString &text);

} // namespace Quire
