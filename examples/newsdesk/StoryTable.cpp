#include "StoryTable.h"

#include <QHeaderView>
#include <QScrollBar>

#include <algorithm>

#include <quire/models/ModelRoles.h>

#include "StoryDelegate.h"
#include "StoryHeader.h"

namespace Desk {

namespace {

constexpr int storyHeight = 28;
constexpr int margins = 20;
constexpr int leastTitle = 240;

} // namespace

StoryTable::StoryTable(const UpdateMarks *marks, QWidget *parent)
    : QTableView(parent)
    , m_delegate(new StoryDelegate(marks, this))
{
    setItemDelegate(m_delegate);
    setSelectionBehavior(SelectRows);
    setSelectionMode(SingleSelection);
    setEditTriggers(NoEditTriggers);
    setAlternatingRowColors(true);
    setShowGrid(false);
    setWordWrap(false);
    setTabKeyNavigation(false);
    setHorizontalScrollMode(ScrollPerPixel);
    setVerticalScrollMode(ScrollPerPixel);
    setCornerButtonEnabled(false);
    // All rows are as high: a long queue costs nothing to lay out.
    verticalHeader()->setSectionResizeMode(QHeaderView::Fixed);
    verticalHeader()->setMinimumSectionSize(storyHeight);
    verticalHeader()->setDefaultSectionSize(storyHeight);
    verticalHeader()->hide();
    setHorizontalHeader(new StoryHeader(this));
}

void StoryTable::setLeastWidth(int column, int width)
{
    m_leastWidths.insert(column, width);
}

void StoryTable::arrangeColumns(int title, const QList<int> &hidden)
{
    m_title = title;
    m_shown.clear();
    for (int column = 0; column < model()->columnCount(); ++column) {
        setColumnHidden(column, hidden.contains(column));
        if (!hidden.contains(column))
            m_shown.append(column);
    }
    m_delegate->setSignColumn(m_shown.value(0, -1));
    m_letterWidth = 0;
    fitColumns();
}

/// Letters are mostly small, digits are not: dates are seen whole where there is the room. Widths that somebody chose
/// stay until it comes or goes.
void StoryTable::fitColumns()
{
    const int wide = fontMetrics().averageCharWidth();
    int needed = leastTitle;
    for (const int column : qAsConst(m_shown))
        needed += column == m_title ? 0 : widthOf(column, wide);
    const int letterWidth = needed <= viewport()->width() ? wide : wide * 4 / 5;
    if (letterWidth != m_letterWidth) {
        m_letterWidth = letterWidth;
        for (const int column : qAsConst(m_shown))
            setColumnWidth(column, widthOf(column, letterWidth));
    }
    stretchTitle();
}

/// What the form says, but room for the title of the column in any case.
int StoryTable::widthOf(int column, int letterWidth) const
{
    const QAbstractItemModel &table = *model();
    const int letters = std::clamp(table.headerData(column, Qt::Horizontal, Quire::WidthRole).toInt(), 3, 24);
    const int ofTitle = fontMetrics().horizontalAdvance(table.headerData(column, Qt::Horizontal).toString()) + margins;
    const int ofSign = column == m_shown.first() ? StoryHeader::signWidth : 0;
    return std::max({letters * letterWidth + margins, ofTitle, m_leastWidths.value(column)}) + ofSign;
}

void StoryTable::stretchTitle()
{
    if (!model() || m_title < 0 || m_title >= model()->columnCount() || isColumnHidden(m_title))
        return;
    const int others = horizontalHeader()->length() - columnWidth(m_title);
    setColumnWidth(m_title, std::max(leastTitle, viewport()->width() - others));
}

void StoryTable::resizeEvent(QResizeEvent *event)
{
    QTableView::resizeEvent(event);
    fitColumns();
}

} // namespace Desk
