#pragma once

/// \file
/// Numbers that people write, and the server's failures in words. Free functions without state.

#include <optional>

#include <QString>

#include <quire/platform/Automation.h>

namespace Tool {

/// The 32-bit number in \a text: decimal, signed or unsigned, or hexadecimal after "0x" or "x"; none when it is
/// anything else or does not fit.
std::optional<qint32> parseCode(const QString &text);

/// The signed decimal 32-bit number in \a text.
std::optional<qint32> parseNumber(const QString &text);

/// "0x80040405".
QString hexCode(qint32 code);

/// Why the server refused: its sentence, or the bare code when there is no sentence for it. \a login: while signing on.
QString reason(HRESULT code, bool login);

/// What happened when a call to the server ended in \a error.
QString serverFailure(const _com_error &error);

/// "1 story", "12 stories".
QString counted(qint64 number, const QString &one, const QString &many);

} // namespace Tool
