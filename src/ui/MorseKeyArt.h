#pragma once

#include <QIcon>

class QPainter;
class QRectF;

namespace kelvora::morseKeyArt {

// A straight Morse key drawn in code, so that no image file has to be shipped.
void paint(QPainter &painter, const QRectF &target);
QIcon icon();

} // namespace kelvora::morseKeyArt
