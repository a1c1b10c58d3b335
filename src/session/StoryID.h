#pragma once

/// \file
/// The three-part identifier of a story, its text form and its comparison.

#include <QString>

#include <quire/platform/Export.h>

namespace Quire {

/// Identifies one story on the server. A plain value, copied freely; passed by pointer where it may be absent.
///
/// What the server means by each part is the server's business. Only `part1` keys the session's story cache and the
/// server's story look-up.
struct StoryID
{
    int part1; ///< First number of the server's identifier text.
    int part2; ///< Second number.
    int part3; ///< Third number.
};

/// What CmpStoryID found.
enum SID_Diff_t {
    SID_Identical = 0,    ///< All three parts are equal.
    SID_FirstDiffers = 1, ///< Only `part1` differs.
    SID_OneDiffers = 2,   ///< Exactly one of `part2` and `part3` differs; `part1` is not looked at.
    SID_Different = 3     ///< Both `part2` and `part3` differ, or a record is absent.
};

/// The text "part1:part2", with \a full also ":part3", as signed decimal numbers without padding.
QUIRE_EXPORT QString StoryID2String(const StoryID &id, bool full);

/// Reads the numbers of \a text, separated by ":", in the given \a base into \a id.
///
/// When the text has a blank, only what follows the first blank is read. A missing or malformed number gives 0, further
/// numbers are ignored; no error is reported. A null \a id does nothing.
QUIRE_EXPORT void String2StoryID(const QString &text, StoryID *id, int base);

/// Compares two identifiers; SID_Different when either pointer is null.
QUIRE_EXPORT SID_Diff_t CmpStoryID(StoryID *a, StoryID *b);

} // namespace Quire
