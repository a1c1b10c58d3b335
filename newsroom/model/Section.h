#pragma once

/// \file
/// The numbered sections of a story.

#include <QString>
#include <QtGlobal>

namespace Newsroom {

/// Section numbers are bits; several can be asked for at once.
namespace Section {
constexpr qint32 Head = 1;       ///< "head".
constexpr qint32 Look = 2;       ///< "look".
constexpr qint32 Fields = 4;     ///< "fields".
constexpr qint32 Body = 8;       ///< "body".
constexpr qint32 Aeset = 16;     ///< "aeset".
constexpr qint32 FieldAtts = 32; ///< "field-atts".
constexpr qint32 AesetAtts = 64; ///< "aeset-atts".
constexpr qint32 Whole = 127;    ///< All of them: the whole story.
} // namespace Section

/// True when \a bits names at least one section and nothing that is none.
constexpr bool isSectionSet(qint32 bits)
{
    return bits > 0 && (bits & ~Section::Whole) == 0;
}

/// True when \a bits names exactly one section.
constexpr bool isSingleSection(qint32 bits)
{
    return isSectionSet(bits) && (bits & (bits - 1)) == 0;
}

/// The element name of the one section \a bit ("head", "look", ...); empty when \a bit is not exactly one section.
QString sectionName(qint32 bit);

/// The section of the element \a name, with or without the prefix "zeko:"; 0 when it is none.
qint32 sectionByName(const QString &name);

} // namespace Newsroom
