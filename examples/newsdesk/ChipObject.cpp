#include "ChipObject.h"

#include <QFontMetricsF>
#include <QPainter>
#include <QRegularExpression>
#include <QTextDocument>

#include "Appearance.h"
#include "BodyDocument.h"

namespace Desk {

namespace {

constexpr double chipMargin = 4;

/// What people see of it: "a titles-evening".
QString shown(const QTextFormat &format)
{
    static const QRegularExpression start(QStringLiteral("^<([^>]*?)/?>"));
    static const QRegularExpression name(QStringLiteral("\\w+=\"?([^\"]*)\"?"));
    QString text = start.match(format.stringProperty(RawProperty)).captured(1);
    text.replace(name, QStringLiteral("\\1"));
    return text.left(40);
}

QFont fontOf(const QTextDocument &document)
{
    QFont font = document.defaultFont();
    font.setPointSizeF(font.pointSizeF() * 0.8);
    return font;
}

} // namespace

QSizeF ChipObject::intrinsicSize(QTextDocument *document, int /*position*/, const QTextFormat &format)
{
    const QFontMetricsF metrics(fontOf(*document));
    return {metrics.horizontalAdvance(shown(format)) + 2 * chipMargin + 4, metrics.height()};
}

void ChipObject::drawObject(QPainter *painter, const QRectF &rect, QTextDocument *document, int /*position*/,
                            const QTextFormat &format)
{
    painter->save();
    painter->setRenderHint(QPainter::Antialiasing);
    painter->setPen(Appearance::colours().line);
    painter->setBrush(Appearance::colours().window);
    painter->drawRoundedRect(rect.adjusted(1.5, 0.5, -2.5, -0.5), 3, 3);
    painter->setPen(Appearance::colours().faint);
    painter->setFont(fontOf(*document));
    painter->drawText(rect, Qt::AlignCenter, shown(format));
    painter->restore();
}

} // namespace Desk
