#pragma once

/// \file
/// What has to hold for the values that a server hands out, as the automation system keeps them. Each check answers
/// what is wrong, an empty string when nothing is.

#include <QByteArray>
#include <QString>

namespace PlatformFuzz {

/// Texts: as bytes of any number, as characters with NULs among them, replaced by a part of themselves, and in the
/// library's own form. No character is lost and, natively, no text left.
QString checkStrings(const QByteArray &input);

/// Values of any type: a copy is equal, also of what is referred to, and freed like any other; the stand-in reads a
/// position out of those that hold a number; only an object is taken for one.
QString checkVariants(const QByteArray &input);

/// An array of texts under any calls: put, get, resize, copy, lock. It is always what a list of texts would be.
QString checkArrays(const QByteArray &input);

} // namespace PlatformFuzz
