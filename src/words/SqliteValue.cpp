#include "words/SqliteValue.h"

#include <QByteArray>
#include <QString>

#include <sqlite3.h>

namespace kelvora::sqliteValue {

bool bind(sqlite3_stmt *statement, int index, const QVariant &value)
{
    if (!value.isValid() || value.isNull())
        return sqlite3_bind_null(statement, index) == SQLITE_OK;
    switch (value.typeId()) {
    case QMetaType::Bool:
    case QMetaType::Int:
    case QMetaType::UInt:
    case QMetaType::LongLong:
    case QMetaType::ULongLong:
    case QMetaType::Short:
    case QMetaType::UShort:
    case QMetaType::Long:
    case QMetaType::ULong:
    case QMetaType::Char:
    case QMetaType::SChar:
    case QMetaType::UChar:
        return sqlite3_bind_int64(statement, index, value.toLongLong()) == SQLITE_OK;
    case QMetaType::Double:
    case QMetaType::Float:
        return sqlite3_bind_double(statement, index, value.toDouble()) == SQLITE_OK;
    case QMetaType::QByteArray: {
        const QByteArray bytes = value.toByteArray();
        return sqlite3_bind_blob64(statement, index, bytes.constData(), sqlite3_uint64(bytes.size()),
                                   SQLITE_TRANSIENT) == SQLITE_OK;
    }
    default:
        break;
    }
    if (value.typeId() != QMetaType::QString && !value.canConvert<QString>())
        return false;
    const QByteArray utf8 = value.toString().toUtf8();
    return sqlite3_bind_text64(statement, index, utf8.constData(), sqlite3_uint64(utf8.size()),
                               SQLITE_TRANSIENT, SQLITE_UTF8) == SQLITE_OK;
}

QVariant column(sqlite3_stmt *statement, int index)
{
    switch (sqlite3_column_type(statement, index)) {
    case SQLITE_INTEGER:
        return QVariant(qlonglong(sqlite3_column_int64(statement, index)));
    case SQLITE_FLOAT:
        return QVariant(sqlite3_column_double(statement, index));
    case SQLITE_TEXT: {
        const auto *text = reinterpret_cast<const char *>(sqlite3_column_text(statement, index));
        return QVariant(QString::fromUtf8(text, sqlite3_column_bytes(statement, index)));
    }
    case SQLITE_BLOB: {
        const auto *data = static_cast<const char *>(sqlite3_column_blob(statement, index));
        return QVariant(QByteArray(data, sqlite3_column_bytes(statement, index)));
    }
    default:
        return QVariant();
    }
}

} // namespace kelvora::sqliteValue
