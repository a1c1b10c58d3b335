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

void StoryTable::arrangeColumns(int title, const QList<int> &hidden)
{
    m_title = title;
    int first = -1;
    for (int column = 0; column < model()->columnCount(); ++column) {
        setColumnHidden(column, hidden.contains(column));
        if (hidden.contains(column))
            continue;
        if (first < 0)
            first = column;
        setColumnWidth(column, widthOf(column) + (column == first ? StoryHeader::signWidth : 0));
    }
    m_delegate->setSignColumn(first);
    stretchTitle();
}

/// What the form says, in letters that are mostly small, but room for the title of the column in any case.
int StoryTable::widthOf(int column) const
{
    const QAbstractItemModel &table = *model();
    const int letters = std::clamp(table.headerData(column, Qt::Horizontal, Quire::WidthRole).toInt(), 3, 24);
    const int ofTitle = fontMetrics().horizontalAdvance(table.headerData(column, Qt::Horizontal).toString()) + margins;
    return std::max(letters * fontMetrics().averageCharWidth() * 4 / 5 + margins, ofTitle);
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
    stretchTitle();
}

} // namespace Desk
