#pragma once

#include <QString>
#include <QStringList>

namespace kelvora::choiceLists {

// The lists the main window fills at load, in their order.
QStringList groupCounts();     // nbgroup: 6 .. 102 by 6
QStringList wordDelays();      // delaimot, in ms
QStringList correctionDelays(); // cdelai, in ms
QStringList progressions();    // PROGRESS: the whole set, then the two learning orders
QStringList stockQueries();    // REQ: five ready-made conditions on mot
QStringList portNumbers();     // NCOM: 1 .. 10
QStringList startupHints();    // List1 until a word drill fills it

// nbgroup's own rule: below 1 becomes "1", above 102 becomes "102"; a text inside the
// bounds is kept as typed.
QString clampGroupCount(const QString &text);

// delaimot's own rule: below 50 becomes "50", above 10000 becomes "10000"; a text
// inside the bounds is kept as typed.
QString clampWordDelay(const QString &text);
// The word loop's pause a box's text stands for, in ms (its leading number, rounded).
int wordDelayOf(const QString &text);

// NCOM's own rule: below 1 becomes "1"; above 10 becomes "9", not "10" (a deliberate
// clamp: ports 1 to 10 can be typed, anything larger goes to 9); otherwise kept as typed.
QString clampPortNumber(const QString &text);
// The port number a box's text stands for: its leading number as a whole number.
int portNumberOf(const QString &text);

} // namespace kelvora::choiceLists
