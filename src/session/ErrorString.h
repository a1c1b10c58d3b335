#pragma once

/// \file
/// Server errors in words.

#include <QString>

#include <quire/platform/Export.h>

namespace Quire {

/// A sentence for the user that says what the HRESULT \a code means. Only the low 32 bits of \a code count.
///
/// Codes of the server's own two ranges (0x80040400 to 0x800407ff for commands, 0x80040800 to 0x80040bff for signing
/// on; the severity is not looked at) have texts of the library, which go through the application's translators
/// (context "QObject"); a code of these ranges without a text gives an empty string. All other codes give the operating
/// system's message on one line, followed by the code, as in "The parameter is incorrect. (x80070057)". \a login tells
/// that the code came from signing on: the network failures that a sign-on typically meets then have texts of their
/// own.
///
/// The texts are English unless the host has installed a translator. German, French and Spanish come with the library:
///
///     QTranslator translator;
///     if (translator.load(QLocale(), "quire", "_", folder)) // quire_de.qm, ... from share/quire/translations
///         QCoreApplication::installTranslator(&translator);
///
/// The system's messages are in the system's language whatever translator is installed.
///
/// Never fails. Any thread, also while a translator is installed or removed.
QUIRE_EXPORT QString getErrorString(long code, bool login);

} // namespace Quire
