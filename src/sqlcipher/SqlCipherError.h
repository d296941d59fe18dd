#pragma once

#include <QSqlError>

struct sqlite3;

// SQLite's last error on this connection, as Qt tells it. To be called at once after the failing
// call: the next one overwrites SQLite's message.
QSqlError sqlCipherError(const char* what, QSqlError::ErrorType type, sqlite3* database);

// An error of the driver's own, of which SQLite knows nothing: without databaseText.
QSqlError driverError(const char* what);
