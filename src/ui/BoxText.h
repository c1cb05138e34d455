#pragma once

#include <QString>

class QWidget;

namespace kelvora::boxText {

// The live value of a control as the settings store keeps it: a combo box's or a text
// box's text, a check box's "1" or "0".
QString text(const QWidget *box);
// Sets a control as a program does, so that its own change handlers run. A combo box
// that is not editable only takes one of its entries. False when nothing was set.
bool setText(QWidget *box, const QString &text);

} // namespace kelvora::boxText
