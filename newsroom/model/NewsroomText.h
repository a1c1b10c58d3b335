#pragma once

/// \file
/// A newsroom written as indented text: how tests describe theirs in a few lines, and how the sample is kept.

#include <QString>

namespace Newsroom {

class Model;

/// Builds newsrooms from indented text. What belongs to an entry stands below it, further indented by blanks (no tabs).
/// Empty lines and lines that start with "#" are skipped outside of texts. Values with blanks stand in double quotes.
///
///     server NEWSROOM-A alias=NEWSROOM-B read-rate=180 word-length=6 session-limit=0
///     user journalist password=news full="Nora Vale" mail=MAIL.NORA device=DESK-4 number=7 rights=3
///     user intern password=i read-only
///     user producer password=p superuser
///     form STORY
///       <zeko:form><zeko:row><zeko:cell idref=title length=80>Title</zeko:cell></zeko:row></zeko:form>
///     blob desk/layout
///       any text
///     directory NEWS indexed
///       directory SPORT
///         queue TODAY form=STORY number=12 live sorted
///           story id=100:12:0 locked-by=anna lock-type=1 hold=H rate=170
///             title: Rain delays the final
///             priority[urgency=2]: 2
///
///             The first paragraph of the body, which may go on
///             over several lines.
///
///             <p>A paragraph that starts with "<" is taken as markup.</p>
///       queue WIRE form=WIRE read-only purge-locked
///
/// Words behind a directory or queue: the flags indexed, locked, locked-e, confirm-edit, inverted, sorted, live; for
/// queues also read-only, purge-locked, form=NAME, number=N. Behind a story: id=PART1[:PART2:PART3], revision=N,
/// form=NAME, locked-by=USER, lock-type=N; any other name=value is an attribute of its header (wire, mail, words, rate,
/// locked, break, float, hold). Its lines up to the first empty one are fields ("id: value", attributes in brackets);
/// the rest is the body, whose paragraphs are separated by empty lines. Without words=N the words are counted. Fields
/// of the form that are not named are not added. The names of directories and queues are single components; they stand
/// below their directory.
namespace NewsroomText {

/// Adds what \a text describes to \a model. False, with \a error (may be null) as "line N: ...", at the first line that
/// is wrong; what stood before it has been added.
bool addTo(Model *model, const QString &text, QString *error = nullptr);

/// The same for text that belongs below the directory \a path.
bool addTo(Model *model, const QString &path, const QString &text, QString *error);

} // namespace NewsroomText
} // namespace Newsroom
