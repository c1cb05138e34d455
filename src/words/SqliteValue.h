#pragma once

#include <QVariant>

struct sqlite3_stmt;

namespace kelvora::sqliteValue {

// Binds one value to the 1-based placeholder `index`: null, integers and booleans,
// floating point, text (UTF-8), byte arrays as blobs, anything else through its text.
// False when the value has no usable form.
bool bind(sqlite3_stmt *statement, int index, const QVariant &value);

// One column of the current row: qlonglong, double, QString, QByteArray or a null QVariant.
QVariant column(sqlite3_stmt *statement, int index);

} // namespace kelvora::sqliteValue
