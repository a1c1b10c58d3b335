#include "StoryDelegate.h"

#include <QApplication>
#include <QPainter>
#include <QStyle>

#include <quire/models/ModelRoles.h>

#include "Appearance.h"
#include "Icons.h"
#include "UpdateMarks.h"

namespace Desk {

namespace {

constexpr int signSize = 16;
constexpr int cellMargin = 4;

QIcon dot(const QColor &colour)
{
    QPixmap pixmap(signSize, signSize);
    pixmap.fill(Qt::transparent);
    QPainter painter(&pixmap);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(colour);
    painter.drawEllipse(QRectF(4.5, 4.5, 7, 7));
    return pixmap;
}

QIcon nothing()
{
    QPixmap pixmap(signSize, signSize);
    pixmap.fill(Qt::transparent);
    return pixmap;
}

} // namespace

StoryDelegate::StoryDelegate(const UpdateMarks *marks, QObject *parent)
    : QStyledItemDelegate(parent)
    , m_marks(marks)
{}

/// The background over the whole cell, and the text with some room at both sides.
void StoryDelegate::paint(QPainter *painter, const QStyleOptionViewItem &option, const QModelIndex &index) const
{
    QStyleOptionViewItem cell = option;
    initStyleOption(&cell, index);
    const QStyle &style = *QApplication::style();
    style.drawPrimitive(QStyle::PE_PanelItemViewItem, &cell, painter, cell.widget);
    cell.rect.adjust(cellMargin, 0, -cellMargin, 0);
    cell.backgroundBrush = Qt::NoBrush;
    cell.state &= ~(QStyle::State_Selected | QStyle::State_HasFocus);
    style.drawControl(QStyle::CE_ItemViewItem, &cell, painter, cell.widget);
}

void StoryDelegate::initStyleOption(QStyleOptionViewItem *option, const QModelIndex &index) const
{
    QStyledItemDelegate::initStyleOption(option, index);
    bool marked = false;
    if (m_marks && !m_marks->isEmpty()) {
        const QString identifier = index.data(Quire::IdentifierRole).toString();
        marked = m_marks->isMarked(identifier);
        if (m_marks->isFresh(identifier))
            option->backgroundBrush = Appearance::colours().newsTint;
    }
    if (index.data(Quire::UrgencyRole).toInt() > 0) {
        option->palette.setColor(QPalette::Text, Appearance::colours().urgent);
        option->palette.setColor(QPalette::HighlightedText, Appearance::colours().urgent);
    }
    if (index.column() == m_signColumn)
        addSign(option, index, marked);
}

void StoryDelegate::addSign(QStyleOptionViewItem *option, const QModelIndex &index, bool marked) const
{
    option->features |= QStyleOptionViewItem::HasDecoration;
    option->decorationSize = QSize(signSize, signSize);
    option->decorationPosition = QStyleOptionViewItem::Left;
    option->decorationAlignment = Qt::AlignCenter;
    if (index.data(Quire::LockRole).isValid())
        option->icon = Icons::icon(Icons::Lock);
    else
        option->icon = marked ? dot(Appearance::colours().news) : nothing();
}

} // namespace Desk
