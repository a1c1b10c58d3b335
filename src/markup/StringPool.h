#pragma once

/// \file
/// Equal short texts as one shared string.

#include <array>

#include <QString>
#include <QStringView>

#include "TextSearch.h"

namespace XML {

/// Remembers short strings of one parse, so that repeated names and values share their memory. Holds a fixed number;
/// a newcomer takes the place of one that hashes alike.
class StringPool
{
public:
    /// \a text as a string that shares its memory with an equal one handed out before, if that is still remembered.
    QString get(QStringView text)
    {
        const auto length = text.size();
        if (length == 0 || length > MaxLength)
            return text.toString();
        const unsigned first = text.front().unicode();
        const unsigned middle = text[length / 2].unicode();
        const unsigned last = text.back().unicode();
        QString &place = m_Places[(first * 31U + middle * 7U + last + unsigned(length) * 61U) % Places];
        if (!isSame(place, text))
            place = text.toString();
        return place;
    }

private:
    static constexpr int MaxLength = 32;
    static constexpr unsigned Places = 128;

    std::array<QString, Places> m_Places;
};

} // namespace XML
