#pragma once

#include <QVariant>
#include <QtSql/qtsqlglobal.h>

struct sqlite3_stmt;

// Between QVariant and SQLite's five kinds of values.

// Binds a value to a parameter, counted from 1; returns SQLite's result code. A null value binds
// NULL, an empty text does not; an unsigned number beyond the signed range of 64 bits binds its
// digits as text.
int bindSqlCipherValue(sqlite3_stmt* statement, int parameter, const QVariant& value);

// The value of a column, counted from 0, in the row that the statement is at: qint64, double,
// QByteArray or QString; a null string for NULL. Low precision makes integers of real numbers.
QVariant readSqlCipherValue(sqlite3_stmt* statement, int column,
                            QSql::NumericalPrecisionPolicy precision);
