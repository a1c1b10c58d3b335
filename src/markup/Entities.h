#pragma once

/// \file
/// Escaping of characters in markup text.

#include <QChar>
#include <QString>

#include <quire/platform/Export.h>

namespace XML {

/// While true, quotes are not escaped: the server's own markup. True at first; only the host changes it.
extern QUIRE_EXPORT bool xZEKO_Mode;

/// Whether EncodeString replaces the character: "&", "<", ">", quotes unless xZEKO_Mode, and whatever is not printable.
/// White space and the null character are never special.
QUIRE_EXPORT bool IsSpecialChar(QChar &c);

/// Replaces special characters by references, in place.
///
/// Characters without a name get a decimal number that is meant to be odd: up to U+007F their own, up to U+00FF their
/// own plus 65280, above that 0. This is what stored stories hold. A replacement for which the text would become longer
/// than a QString can be is left out, as is all that follows.
QUIRE_EXPORT void EncodeString(QString &s);

/// Replaces references by characters, in place: gt, lt, amp, quot and apos in any case, and decimal numbers from 1 to
/// 65535. Any other text between "&" and the next ";" is removed with them, and the character that then stands in its
/// place is not looked at again, even when it is another "&". Without a ";" a "&" stays.
QUIRE_EXPORT void DecodeString(QString &s);

} // namespace XML
