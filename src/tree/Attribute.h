#pragma once

/// \file
/// One name and value of an item or a story.

#include <QString>
#include <QtGlobal>

namespace Quire {

/// A name/value pair. A plain value, copied and moved freely.
struct Attribute
{
    QString name;     ///< One of the `Attr_*` keys, or the identifier of a form field.
    QString value;    ///< The value as text. Attributes that are mere flags have an empty one.
    qint32 flags = 0; ///< Carried along and never interpreted. Story::InitStoryItem's fields tell urgency and the like.
};

} // namespace Quire
