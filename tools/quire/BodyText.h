#pragma once

/// \file
/// A story's body between its markup and plain text, a line for each paragraph. Free functions without state.

#include <QString>

namespace Tool {

/// The text of the body element \a markup without its markup: each paragraph a line, a break begins a new one.
QString bodyToText(const QString &markup);

/// The body element whose paragraphs are the lines of \a text; without lines an empty body.
QString textToBody(const QString &text);

/// Whether plain text holds all of the body element \a markup: it says nothing beyond its paragraphs. White space
/// between the paragraphs does not count.
bool isPlainBody(const QString &markup);

/// \a text with the characters that markup reserves replaced by references.
QString escapeMarkup(const QString &text);

/// The characters that \a markup, a piece without elements, stands for.
QString unescapeMarkup(const QString &markup);

} // namespace Tool
