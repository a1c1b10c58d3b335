#pragma once

/// \file
/// How wide a text is on a terminal, and how to make it fit. Free functions without state; any thread may call them.
///
/// A column is one cell of the terminal. East Asian wide characters and emoji take two, combining marks and other
/// invisible characters none, and what reads as one character (a flag, a family joined by zero-width joiners, a letter
/// with its accents) is measured and cut as one.

#include <QString>

namespace Tool {

/// Blanks between two columns of a table.
constexpr int columnGap = 2;

/// The columns that \a text takes. Control characters count as none: see visible().
int textWidth(const QString &text);

/// \a text when it takes at most \a columns; else its beginning followed by "…", at most \a columns wide. Never cuts
/// inside a character. Empty for \a columns below 1.
QString fitText(const QString &text, int columns);

/// \a text with blanks behind it up to \a columns; a wider text stays as it is.
QString padText(const QString &text, int columns);

/// \a text with blanks before it up to \a columns; a wider text stays as it is.
QString padTextLeft(const QString &text, int columns);

/// \a text for a line that holds other things as well: a text with right-to-left characters comes back between the
/// marks FIRST STRONG ISOLATE and POP DIRECTIONAL ISOLATE, which take no column, so that it does not turn its
/// neighbours around. Any other text stays as it is.
QString isolate(const QString &text);

/// \a text with every control character replaced by its visible picture (U+2400..), so that a name from a server can
/// neither break a line nor command a terminal.
QString visible(const QString &text);

/// \a text in lines of at most \a columns, broken at blanks; a word that is longer is broken inside. Line feeds of the
/// text stay. An empty text gives one empty line.
QStringList wrapText(const QString &text, int columns);

} // namespace Tool
