#pragma once

#include <QString>
#include <QStringView>

namespace kelvora::numbers {

// The leading-number parse every box of the program is read with: blanks, tabs and
// line feeds are skipped, then an optional sign, digits with one '.', an optional
// exponent (E or D), or a &H / &O radix prefix. Text that does not start with a
// number reads as 0.
double leadingNumber(QStringView text);

// Shortest text that reads back to the same double, '.' as decimal separator and no
// leading blank ("339.5", "97", "1.1"); exponent form only for very large or very
// small magnitudes.
QString format(double value);

} // namespace kelvora::numbers
