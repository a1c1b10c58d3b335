#pragma once

/// \file
/// A column of a table of stories.

#include <QString>
#include <QtGlobal>

namespace Quire {

/// What a column of a QueueModel or a SearchModel shows. A plain value.
struct StoryColumn
{
    /// Where the text comes from.
    enum Source {
        Name,  ///< The story's name.
        Field, ///< A field of the story, which \a key names.
        Header ///< An attribute of the story's header or of the item, one of the `Attr_*` keys.
    };

    Source source = Name; ///< Where the text comes from.
    QString key;          ///< Empty for the name.
    QString title;        ///< For the header.
    qint32 width = 0;     ///< In characters, as the form has it; 0 when nobody says.
    qint32 align = 0;     ///< As Field::m_Align: 0 left, 1 centre, 2 right.
    qint32 style = 0;     ///< As Field::m_Style: 1 bold, 2 italic, 4 underlined.
};

} // namespace Quire
