#pragma once

#include <QSqlRecord>
#include <QVariant>

struct sqlite3_stmt;

// What columns look like to Qt, as its own driver for SQLite describes them.

// The QVariant type of a declared column type such as "VARCHAR(20)".
QVariant::Type fieldTypeOf(const QString& declaredType);

// The columns of a statement that was stepped: a column of a table as it is declared, any other one
// as the value in the row that the statement is at; without a row, as none.
QSqlRecord recordOf(sqlite3_stmt* statement, bool atRow);
