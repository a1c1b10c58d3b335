#pragma once

/// \file
/// One cell of a story form.

#include <QString>
#include <QtGlobal>

#include <quire/platform/Export.h>

namespace Quire {

/// Which story field a cell of a form shows, and how. A plain value: the values of one object belong to one thread at a
/// time, copies are independent.
class QUIRE_EXPORT Field
{
public:
    /// The larger of m_Length and m_LabelLength.
    int Width() const;

    QString m_Id;             ///< Name of the story field.
    qint32 m_Length = 0;      ///< Width of the value, in characters.
    qint32 m_Style = 0;       ///< Style of the value: 1 bold, 2 italic, 4 underlined.
    qint32 m_Align = 0;       ///< Alignment of the value: 0 left, 1 centre, 2 right.
    QString m_Label;          ///< Text of the cell; null when it does not begin with text.
    qint32 m_LabelLength = 0; ///< Width of the label, in characters.
    qint32 m_LabelStyle = 0;  ///< Style of the label, as m_Style.
    qint32 m_LabelAlign = 0;  ///< Alignment of the label; always 0 in a form that was read.
    bool m_ReadOnly = false;  ///< People may not edit the field here.
    qint32 m_Extra = 0;       ///< The host's own; always 0 in a form that was read.
};

} // namespace Quire
