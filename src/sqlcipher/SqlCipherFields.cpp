#include "sqlcipher/SqlCipherFields.h"

#include <QSqlField>

#include <sqlite3.h>

namespace {

QVariant::Type typeOfStorage(int storageClass)
{
    switch (storageClass) {
    case SQLITE_INTEGER:
        return QVariant::Int;
    case SQLITE_FLOAT:
        return QVariant::Double;
    case SQLITE_BLOB:
        return QVariant::ByteArray;
    case SQLITE_NULL:
        return QVariant::Invalid;
    default:
        return QVariant::String;
    }
}

QSqlField fieldOf(sqlite3_stmt* statement, int column, bool atRow)
{
    const char* declared = sqlite3_column_decltype(statement, column);
    const int storageClass = sqlite3_column_type(statement, column);
    QSqlField field(QString::fromUtf8(sqlite3_column_name(statement, column)),
                    declared != nullptr ? fieldTypeOf(QString::fromUtf8(declared))
                                        : typeOfStorage(storageClass),
                    QString::fromUtf8(sqlite3_column_table_name(statement, column)));
    field.setSqlType(atRow ? storageClass : -1);
    return field;
}

} // namespace

QVariant::Type fieldTypeOf(const QString& declaredType)
{
    const QString type = declaredType.toLower();
    if (type == QLatin1String("int") || type == QLatin1String("integer"))
        return QVariant::Int;
    if (type == QLatin1String("bool") || type == QLatin1String("boolean"))
        return QVariant::Bool;
    if (type == QLatin1String("real") || type == QLatin1String("double")
        || type == QLatin1String("float") || type.startsWith(QLatin1String("numeric")))
        return QVariant::Double;
    if (type == QLatin1String("blob"))
        return QVariant::ByteArray;
    return QVariant::String;
}

QSqlRecord recordOf(sqlite3_stmt* statement, bool atRow)
{
    QSqlRecord columns;
    for (int i = 0; i < sqlite3_column_count(statement); ++i)
        columns.append(fieldOf(statement, i, atRow));
    return columns;
}
