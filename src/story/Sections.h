#pragma once

/// \file
/// The numbers and names of a story's sections. Not part of the public surface.

#include <QString>

namespace Quire {
namespace Section {

const int Head = 1;
const int Fields = 4;
const int Whole = 127;

/// Name of the element that is section \a number; null when the number names no single section.
inline QString elementName(int number)
{
    switch (number) {
    case Head:
        return QStringLiteral("head");
    case 2:
        return QStringLiteral("look");
    case Fields:
        return QStringLiteral("fields");
    case 8:
        return QStringLiteral("body");
    case 16:
        return QStringLiteral("aeset");
    case 32:
        return QStringLiteral("field-atts");
    case 64:
        return QStringLiteral("aeset-atts");
    default:
        return QString();
    }
}

} // namespace Section
} // namespace Quire
