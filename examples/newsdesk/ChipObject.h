#pragma once

#include <QObject>
#include <QTextObjectInterface>

namespace Desk {

/// Draws the chips of a BodyDocument: the name of the element that stands there.
class ChipObject : public QObject, public QTextObjectInterface
{
    Q_OBJECT
    Q_INTERFACES(QTextObjectInterface)

public:
    using QObject::QObject;

    QSizeF intrinsicSize(QTextDocument *document, int position, const QTextFormat &format) override;
    void drawObject(QPainter *painter, const QRectF &rect, QTextDocument *document, int position,
                    const QTextFormat &format) override;
};

} // namespace Desk
