#pragma once

/// \file
/// What has to hold for what people and servers give to the command line. Each check answers what is wrong, an empty
/// string when nothing is.

#include <QByteArray>
#include <QString>

namespace ToolFuzz {

/// Numbers, codes and section names, as people write them: what is understood is what was meant, and anything else is
/// refused as a mistake of the user's.
QString checkWords(const QString &text);

/// Texts on a terminal: cut, padded, broken and made visible, they take the columns that they may, and lose nothing
/// else.
QString checkWidth(const QString &text);

/// Bodies of stories as plain text and back, and the characters that markup reserves.
QString checkBody(const QString &text);

/// A file for an editor, which writes the input there: what was not changed comes back, and what was is read as UTF-8
/// or UTF-16, or refused.
QString checkEditing(const QByteArray &input);

/// A command line that is being typed: every word that completes it fits what is there.
QString checkCompletion(const QString &text);

/// Arrays of a server's objects on their way through the trace: what the library reads as objects is traced, anything
/// else stays as it is, and nothing is left.
QString checkTrace(const QByteArray &input);

/// Changes of fields, one a line: refused as a mistake of the user's exactly when one is none.
QString checkChanges(const QString &text);

/// Rows of a table, a line each, with tabulators between the cells: no line is wider than it may be, and with room for
/// all of it nothing is missing.
QString checkTable(const QString &text);

/// The same of a tree: a line each of a branch, a name and details.
QString checkTree(const QString &text);

/// A queue whose stories have these fields, a story a line: as a table, sorted, and as comma-separated values that come
/// back.
QString checkStories(const QString &text);

/// Markup as a tree that is drawn: a line for each node, none wider than it may be.
QString checkDrawing(const QString &text);

} // namespace ToolFuzz
