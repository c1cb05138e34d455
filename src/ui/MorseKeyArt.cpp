#include "ui/MorseKeyArt.h"

#include <QPainter>
#include <QPainterPath>
#include <QPixmap>

namespace kelvora::morseKeyArt {

void paint(QPainter &painter, const QRectF &target)
{
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.translate(target.topLeft());
    painter.scale(target.width() / 64.0, target.height() / 64.0);

    // Wooden base.
    painter.setPen(QPen(QColor(0x5a, 0x32, 0x14), 1.5));
    painter.setBrush(QColor(0x9c, 0x5b, 0x2a));
    painter.drawRoundedRect(QRectF(4, 46, 56, 11), 3, 3);
    // Pivot post and contact.
    painter.setPen(QPen(QColor(0x3c, 0x3c, 0x3c), 1));
    painter.setBrush(QColor(0xb8, 0x86, 0x2e));
    painter.drawRect(QRectF(40, 35, 7, 11));
    painter.drawRect(QRectF(15, 41, 5, 5));
    // Lever, tilted down towards the knob.
    painter.setPen(QPen(QColor(0x70, 0x78, 0x80), 4, Qt::SolidLine, Qt::RoundCap));
    painter.drawLine(QPointF(14, 36), QPointF(56, 32));
    // Knob.
    painter.setPen(QPen(QColor(0x10, 0x10, 0x10), 1));
    painter.setBrush(QColor(0x22, 0x22, 0x22));
    painter.drawEllipse(QRectF(7, 24, 15, 11));
    // A dot and a dash above the key.
    painter.setPen(Qt::NoPen);
    painter.setBrush(QColor(0x1f, 0x5f, 0xbf));
    painter.drawEllipse(QRectF(28, 10, 7, 7));
    painter.drawRoundedRect(QRectF(39, 10, 19, 7), 3.5, 3.5);
    painter.restore();
}

QIcon icon()
{
    QIcon result;
    for (int size : {16, 24, 32, 48, 64, 128}) {
        QPixmap pixmap(size, size);
        pixmap.fill(Qt::transparent);
        QPainter painter(&pixmap);
        paint(painter, QRectF(0, 0, size, size));
        painter.end();
        result.addPixmap(pixmap);
    }
    return result;
}

} // namespace kelvora::morseKeyArt
