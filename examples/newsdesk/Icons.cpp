#include "Icons.h"

#include <QHash>
#include <QPainter>
#include <QPainterPath>
#include <QPixmap>

#include "Appearance.h"

namespace Desk {

namespace {

constexpr int size = 16;
constexpr int scale = 2; // for screens with many pixels

QPainterPath directoryPath()
{
    QPainterPath path;
    path.moveTo(1.5, 13);
    path.lineTo(1.5, 3.5);
    path.lineTo(6, 3.5);
    path.lineTo(7.5, 5.5);
    path.lineTo(14.5, 5.5);
    path.lineTo(14.5, 13);
    path.closeSubpath();
    return path;
}

QPainterPath queuePath()
{
    QPainterPath path;
    path.addRoundedRect(QRectF(2.5, 1.5, 11, 13), 1.5, 1.5);
    for (const double y : {5.0, 8.0, 11.0}) {
        path.moveTo(5, y);
        path.lineTo(11, y);
    }
    return path;
}

QPainterPath lockPath()
{
    QPainterPath path;
    path.addRoundedRect(QRectF(3, 7, 10, 7.5), 1.5, 1.5);
    path.moveTo(5, 7);
    path.lineTo(5, 5);
    path.arcTo(QRectF(5, 1.8, 6, 6), 180, -180);
    path.lineTo(11, 7);
    return path;
}

QPainterPath refreshPath()
{
    QPainterPath path;
    path.arcMoveTo(QRectF(2.5, 2.5, 11, 11), 40);
    path.arcTo(QRectF(2.5, 2.5, 11, 11), 40, 290);
    path.moveTo(13, 1.5);
    path.lineTo(12.8, 5.2);
    path.lineTo(9.2, 4.8);
    return path;
}

QPainterPath editPath()
{
    QPainterPath path;
    path.moveTo(2.5, 13.5);
    path.lineTo(3.2, 10.3);
    path.lineTo(11, 2.5);
    path.lineTo(13.5, 5);
    path.lineTo(5.7, 12.8);
    path.closeSubpath();
    return path;
}

QPainterPath savePath()
{
    QPainterPath path;
    path.moveTo(8, 2);
    path.lineTo(8, 10);
    path.moveTo(4.5, 7);
    path.lineTo(8, 10.5);
    path.lineTo(11.5, 7);
    path.moveTo(2.5, 11);
    path.lineTo(2.5, 13.5);
    path.lineTo(13.5, 13.5);
    path.lineTo(13.5, 11);
    return path;
}

QPainterPath searchPath()
{
    QPainterPath path;
    path.addEllipse(QRectF(2, 2, 8.5, 8.5));
    path.moveTo(9.5, 9.5);
    path.lineTo(14, 14);
    return path;
}

QPainterPath themePath()
{
    QPainterPath path;
    path.addEllipse(QRectF(2.5, 2.5, 11, 11));
    path.moveTo(8, 2.5);
    path.lineTo(8, 13.5);
    path.moveTo(10.3, 3.4);
    path.lineTo(10.3, 12.6);
    path.moveTo(12.3, 5);
    path.lineTo(12.3, 11);
    return path;
}

QPainterPath pathOf(Icons::Kind kind)
{
    switch (kind) {
    case Icons::Directory:
        return directoryPath();
    case Icons::Queue:
        return queuePath();
    case Icons::Lock:
        return lockPath();
    case Icons::Refresh:
        return refreshPath();
    case Icons::Edit:
        return editPath();
    case Icons::Save:
        return savePath();
    case Icons::Search:
        return searchPath();
    case Icons::Theme:
        return themePath();
    }
    return {};
}

QPixmap draw(const QPainterPath &path, const QColor &colour, int factor)
{
    QPixmap pixmap(size * factor, size * factor);
    pixmap.setDevicePixelRatio(factor);
    pixmap.fill(Qt::transparent);
    QPainter painter(&pixmap);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QPen(colour, 1.4, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    painter.drawPath(path);
    return pixmap;
}

} // namespace

QIcon Icons::icon(Kind kind)
{
    return icon(kind, Appearance::colours().faint);
}

QIcon Icons::icon(Kind kind, const QColor &colour)
{
    static QHash<QPair<int, QRgb>, QIcon> drawn; // few: a delegate asks for each row that it paints
    QIcon &icon = drawn[{int{kind}, colour.rgba()}];
    if (!icon.isNull())
        return icon;
    for (int factor = 1; factor <= scale; ++factor)
        icon.addPixmap(draw(pathOf(kind), colour, factor));
    return icon;
}

} // namespace Desk
