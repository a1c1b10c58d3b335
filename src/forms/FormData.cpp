#include <quire/forms/FormData.h>

#include <cstddef>
#include <memory>

#include <QVarLengthArray>

#include <quire/markup/NamedTag.h>
#include <quire/markup/Parser.h>

#include "../markup/TagWalk.h"

namespace Quire {

namespace {

/// A row and which of the form's cells lie within it: those from firstCell up to endOfCells.
struct GridRow
{
    XML::NamedTag *element;
    std::size_t firstCell;
    std::size_t endOfCells;
};

/// Rows and cells, both in document order. Only cells that name a field, since no others give any.
struct Grid
{
    std::vector<GridRow> rows;
    std::vector<XML::NamedTag *> cells;
};

/// The value of an attribute, null when it is missing.
QString attribute(const XML::NamedTag &element, const QString &name)
{
    return element.m_Attributes.value(name);
}

void readLength(const QString &value, qint32 &length)
{
    if (!value.isNull())
        length = value.toInt() / 4;
}

void readStyle(const QString &value, qint32 &style)
{
    if (value.isNull())
        return;
    const QString lowered = value.toLower();
    if (lowered == QLatin1String("b"))
        style = 1;
    else if (lowered == QLatin1String("i"))
        style = 2;
    else
        style = lowered == QLatin1String("u") ? 4 : 0;
}

void readAlign(const QString &value, qint32 &align)
{
    if (value.isNull())
        return;
    const QString lowered = value.toLower();
    if (lowered == QLatin1String("right"))
        align = 2;
    else
        align = lowered == QLatin1String("center") ? 1 : 0;
}

/// Changes \a field by what \a element says. There is no reading "lalign": labels are always on the left.
void read(XML::NamedTag &element, Field &field)
{
    const QString id = attribute(element, QStringLiteral("idref"));
    if (!id.isNull())
        field.m_Id = id;
    // A bare "ro" is a yes: whether the attribute is there counts for more than whether it has a value.
    field.m_ReadOnly = element.HasAttribute(QStringLiteral("ro")) &&
                       attribute(element, QStringLiteral("ro")).toLower() != QLatin1String("no");
    readLength(attribute(element, QStringLiteral("length")), field.m_Length);
    readStyle(attribute(element, QStringLiteral("style")), field.m_Style);
    readAlign(attribute(element, QStringLiteral("align")), field.m_Align);
    const QString label = element.GetEnclosedTextItem();
    field.m_Label = label.isEmpty() ? QString() : label;
    readLength(attribute(element, QStringLiteral("llength")), field.m_LabelLength);
    readStyle(attribute(element, QStringLiteral("lstyle")), field.m_LabelStyle);
}

/// Finds all rows and cells of \a form in one walk: a walk for each cell, or each row, would take far too long in a
/// large form.
Grid gridOf(XML::Tag &form)
{
    const QString rowName = QStringLiteral("zeko:row");
    const QString cellName = QStringLiteral("zeko:cell");
    Grid grid;
    QVarLengthArray<std::size_t, 16> openRows;
    const auto enter = [&](XML::Tag *tag) {
        if (tag->TagMatch(rowName, QString(), QString())) {
            openRows.append(grid.rows.size());
            grid.rows.push_back({static_cast<XML::NamedTag *>(tag), grid.cells.size(), 0});
        } else if (tag->TagMatch(cellName, QString(), QString())) {
            auto *cell = static_cast<XML::NamedTag *>(tag);
            if (!attribute(*cell, QStringLiteral("idref")).isNull())
                grid.cells.push_back(cell);
        }
        return XML::Walk::Enter;
    };
    const auto leave = [&](const XML::Tag *tag) {
        if (openRows.isEmpty() || grid.rows[openRows.last()].element != tag)
            return;
        grid.rows[openRows.last()].endOfCells = grid.cells.size();
        openRows.removeLast();
    };
    XML::walkForest(form.m_Child, enter, leave);
    return grid;
}

} // namespace

FormData::FormData(const QString &name, const QString &text)
    : m_FormName(name)
{
    const std::unique_ptr<XML::Tag> root(XML::Parser().Parse(text));
    XML::Tag *form = root->FindTag(QStringLiteral("zeko:form"), QString(), QString());
    if (!form)
        return;
    Field ofForm;
    read(static_cast<XML::NamedTag &>(*form), ofForm);
    const Grid grid = gridOf(*form);
    for (const GridRow &row : grid.rows) {
        Field ofRow = ofForm;
        read(*row.element, ofRow);
        for (std::size_t cell = row.firstCell; cell < row.endOfCells; ++cell) {
            m_Fields.push_back(ofRow);
            read(*grid.cells[cell], m_Fields.back());
        }
    }
}

} // namespace Quire
