#pragma once

/// \file
/// The three numbers by which the newsroom knows a story.

#include <QString>
#include <QtGlobal>

namespace Newsroom {

/// Identifies a story for as long as it lives. `part1` alone is unique in the newsroom; `part2` is by default the
/// number of the queue in which the story was created and `part3` is 0. A plain value.
struct StoryId
{
    qint32 part1 = 0; ///< The story's number.
    qint32 part2 = 0; ///< The second part.
    qint32 part3 = 0; ///< The third part.

    /// Decimal "part1:part2:part3", as a client is told it.
    QString unique() const;

    /// Lower-case hexadecimal "part1:part2:part3:revision", as the header's storyid element holds it.
    QString headerText(qint32 revision) const;

    /// Reads what headerText() writes; the revision goes to \a revision when that is not null (0 when the text has
    /// none). False, with nothing written, when the text is not three or four hexadecimal numbers of 32 bits.
    static bool fromHeaderText(const QString &text, StoryId *id, qint32 *revision);

    /// Reads what unique() writes; false, with nothing written, for anything else.
    static bool fromUnique(const QString &text, StoryId *id);

    /// All three parts are the same.
    friend bool operator==(const StoryId &a, const StoryId &b)
    {
        return a.part1 == b.part1 && a.part2 == b.part2 && a.part3 == b.part3;
    }
    /// Any part differs.
    friend bool operator!=(const StoryId &a, const StoryId &b) { return !(a == b); }
};

} // namespace Newsroom
