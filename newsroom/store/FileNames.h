#pragma once

/// \file
/// Names of the newsroom as names of files, and the other way round.

#include <QString>

namespace Newsroom {

/// Reversible names. What cannot stand in a name is written as "%" and two hexadecimal digits, or "%u" and four for
/// characters above U+007F. Free of state, any thread.
namespace FileNames {

/// The file name for a name of the tree: fit for every file system that keeps letters of all scripts, also where it
/// ignores letter case (names of one directory differ anyway), forbids reserved device names (CON, NUL, LPT1, ...) and
/// drops blanks and dots at the end.
QString ofEntry(const QString &name);

/// The file name, without suffix, for a name in which letter case counts (forms, blobs): capital letters are encoded,
/// too, so that no two such names meet where letter case is ignored.
QString ofExactName(const QString &name);

/// The name that ofEntry() or ofExactName() was given; false, with nothing written, when \a fileName is none of theirs.
bool decode(const QString &fileName, QString *name);

/// The component of a newsroom path for a file name: dots, control characters and blanks at the ends are encoded, so
/// that isComponentName() holds. The first \a letters letters are encoded, too, which tells apart names that differ
/// only in letter case. decode() gives the file name back.
QString component(const QString &fileName, int letters = 0);

} // namespace FileNames
} // namespace Newsroom
