#include "StoryHeader.h"

#include <QPainter>

#include "Appearance.h"

namespace Desk {

StoryHeader::StoryHeader(QWidget *parent)
    : QHeaderView(Qt::Horizontal, parent)
{
    setHighlightSections(false);
    setSectionsMovable(true);
    setSectionsClickable(true);
    setDefaultAlignment(Qt::AlignLeft | Qt::AlignVCenter);
}

bool StoryHeader::isFirst(int section) const
{
    for (int visual = 0; visual < visualIndex(section); ++visual) {
        if (!isSectionHidden(logicalIndex(visual)))
            return false;
    }
    return true;
}

void StoryHeader::paintSection(QPainter *painter, const QRect &rect, int section) const
{
    if (!isFirst(section))
        return QHeaderView::paintSection(painter, rect, section);
    painter->save(); // the base restores less than it changes
    QHeaderView::paintSection(painter, rect.adjusted(signWidth, 0, 0, 0), section);
    painter->restore();
    const QRect signs(rect.left(), rect.top(), signWidth, rect.height());
    painter->fillRect(signs, Appearance::colours().pane);
    painter->fillRect(signs.left(), signs.bottom(), signWidth, 1, Appearance::colours().line);
}

} // namespace Desk
