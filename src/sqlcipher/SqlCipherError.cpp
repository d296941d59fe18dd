#include "sqlcipher/SqlCipherError.h"

#include <sqlite3.h>

QSqlError sqlCipherError(const char* what, QSqlError::ErrorType type, sqlite3* database)
{
    return QSqlError(QString::fromLatin1(what), QString::fromUtf8(sqlite3_errmsg(database)), type,
                     QString::number(sqlite3_errcode(database)));
}

QSqlError driverError(const char* what)
{
    return QSqlError(QString::fromLatin1(what), QString(), QSqlError::StatementError);
}
