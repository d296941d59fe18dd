#include "sqlcipher/SqlCipherBinding.h"

#include <sqlite3.h>

#include <limits>

namespace {

int bindText(sqlite3_stmt* statement, int parameter, const QByteArray& text)
{
    return sqlite3_bind_text(statement, parameter, text.constData(), text.size(), SQLITE_TRANSIENT);
}

// SQLite has no integers beyond the signed range: their digits, rather than another number.
int bindUnsigned(sqlite3_stmt* statement, int parameter, quint64 number)
{
    if (number > static_cast<quint64>(std::numeric_limits<qint64>::max()))
        return bindText(statement, parameter, QByteArray::number(number));
    return sqlite3_bind_int64(statement, parameter, static_cast<qint64>(number));
}

QVariant readReal(sqlite3_stmt* statement, int column, QSql::NumericalPrecisionPolicy precision)
{
    switch (precision) {
    case QSql::LowPrecisionInt32:
        return sqlite3_column_int(statement, column);
    case QSql::LowPrecisionInt64:
        return static_cast<qint64>(sqlite3_column_int64(statement, column));
    default:
        return sqlite3_column_double(statement, column);
    }
}

} // namespace

int bindSqlCipherValue(sqlite3_stmt* statement, int parameter, const QVariant& value)
{
    if (value.isNull())
        return sqlite3_bind_null(statement, parameter);
    switch (static_cast<QMetaType::Type>(value.userType())) {
    case QMetaType::Bool:
    case QMetaType::Int:
    case QMetaType::UInt:
    case QMetaType::Short:
    case QMetaType::UShort:
    case QMetaType::Long:
    case QMetaType::LongLong:
        return sqlite3_bind_int64(statement, parameter, value.toLongLong());
    case QMetaType::ULong:
    case QMetaType::ULongLong:
        return bindUnsigned(statement, parameter, value.toULongLong());
    case QMetaType::Float:
    case QMetaType::Double:
        return sqlite3_bind_double(statement, parameter, value.toDouble());
    case QMetaType::QByteArray: {
        const QByteArray blob = value.toByteArray();
        return sqlite3_bind_blob(statement, parameter, blob.constData(), blob.size(),
                                 SQLITE_TRANSIENT);
    }
    default:
        return bindText(statement, parameter, value.toString().toUtf8());
    }
}

QVariant readSqlCipherValue(sqlite3_stmt* statement, int column,
                            QSql::NumericalPrecisionPolicy precision)
{
    switch (sqlite3_column_type(statement, column)) {
    case SQLITE_INTEGER:
        return static_cast<qint64>(sqlite3_column_int64(statement, column));
    case SQLITE_FLOAT:
        return readReal(statement, column, precision);
    case SQLITE_BLOB: {
        const auto* bytes = static_cast<const char*>(sqlite3_column_blob(statement, column));
        return QByteArray(bytes, sqlite3_column_bytes(statement, column));
    }
    case SQLITE_NULL:
        return QVariant(QVariant::String);
    default: {
        const auto* text = reinterpret_cast<const char*>(sqlite3_column_text(statement, column));
        return QString::fromUtf8(text, sqlite3_column_bytes(statement, column));
    }
    }
}
