#pragma once

/// \file
/// A story form: which fields the stories of a queue show, and how.

#include <vector>

#include <QString>

#include <quire/forms/Field.h>
#include <quire/platform/Export.h>

namespace Quire {

/// A form, read into a flat list of its cells. A plain value: one object belongs to one thread at a time, or to several
/// that only read; copies are independent.
class QUIRE_EXPORT FormData
{
public:
    /// Reads the markup \a text of the form called \a name.
    ///
    /// The form is the first element "zeko:form", at any depth. Its rows are the elements "zeko:row" within it at any
    /// depth, in document order, and the cells of a row the elements "zeko:cell" within that row at any depth: what
    /// lies in a row within a row belongs to both. Each cell that names a story field gives a Field. A text without a
    /// form gives none; nothing is reported.
    ///
    /// What form, row and cell may say, the names of attributes exactly as here and their values in any letter case.
    /// But for "ro" and the label, what the form says holds for all its rows and what a row says for all its cells,
    /// unless the lower element says otherwise. An attribute without a value, or with "" for one, counts as not there,
    /// but for "ro".
    ///
    /// - idref: m_Id. A cell must name it itself.
    /// - length, llength: m_Length and m_LabelLength as four times the number of characters, in decimal; the quotient
    ///   is rounded towards zero. What is no number of 32 bits counts as 0.
    /// - style, lstyle: m_Style and m_LabelStyle, "b", "i" or "u". Any other value is none of them.
    /// - align: m_Align, "center" or "right". Any other value is left.
    /// - ro: the cell is read-only, unless the value is "no". Without it the cell is not, whatever IsAttributeReadOnly
    ///   says of the field.
    /// - m_Label is the text that a cell begins with, null when it begins with none.
    FormData(const QString &name, const QString &text);

    QString m_FormName;          ///< The name that the form was asked for by.
    std::vector<Field> m_Fields; ///< The cells in document order, row by row.
};

} // namespace Quire
