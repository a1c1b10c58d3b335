#pragma once

/// \file
/// Digits and nothing else; the newsroom's own.

#include <QStringView>

#include <algorithm>

namespace Newsroom {

/// Whether \a text is made of hexadecimal digits, one at least: conversions to numbers also take signs, blanks and
/// "0x".
inline bool areHexDigits(QStringView text)
{
    return !text.isEmpty() && std::all_of(text.begin(), text.end(), [](QChar c) {
        const QChar letter = c.toLower();
        return (c >= QLatin1Char('0') && c <= QLatin1Char('9')) ||
               (letter >= QLatin1Char('a') && letter <= QLatin1Char('f'));
    });
}

} // namespace Newsroom
