#pragma once

/// \file
/// Searching in markup text.

#include <cstring>

#include <QStringView>

namespace XML {

/// The first \a c at or after \a at, or \a end.
inline const QChar *findChar(const QChar *at, const QChar *end, char16_t c)
{
    // Most ways are short in markup: a call and the setting up of a search by blocks would take longer than they are.
    constexpr int ShortWay = 24;
    const QChar *const stop = end - at > ShortWay ? at + ShortWay : end;
    for (; at != stop; ++at) {
        if (at->unicode() == c)
            return at;
    }
    const auto found = at == end ? -1 : QStringView(at, end).indexOf(QChar(c));
    return found < 0 ? end : at + found;
}

/// Whether the two texts are the same.
inline bool isSame(QStringView a, QStringView b)
{
    return a.size() == b.size() && std::memcmp(a.utf16(), b.utf16(), std::size_t(a.size()) * sizeof(QChar)) == 0;
}

} // namespace XML
