#pragma once

/// \file
/// Escaping and unescaping of characters on plain buffers.

#include <QChar>

#include "TextSink.h"

namespace XML {

/// IsSpecialChar with \a zeko in the place of xZEKO_Mode.
bool isSpecial(QChar c, bool zeko);

/// The first special character at or after \a begin, or \a end.
const QChar *findSpecial(const QChar *begin, const QChar *end, bool zeko);

/// Appends \a length characters of \a text to \a sink, the special ones replaced.
void putEncoded(TextSink &sink, const QChar *text, int length, bool zeko);

/// Replaces the references in \a length characters of \a text, in place. Answers the new length, never a greater one.
int decode(QChar *text, int length);

} // namespace XML
