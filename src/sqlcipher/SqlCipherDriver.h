#pragma once

#include "sqlcipher/ConnectionKey.h"

#include <QSqlDriver>
#include <QVector>

class SqlCipherResult;
struct sqlite3;

// The Qt SQL driver "QSQLCIPHER": SQLite databases encrypted by the system's SQLCipher library. The
// database name is the path of the file, which is made when it is not there.
//
// A pass phrase given with PRAGMA key is turned into the file's raw key once in a process, and
// ATTACH without a key gives the attached file the connection's pass phrase; see KeyStatements.h
// for the forms. All other forms go to SQLCipher as they are. The driver never waits for a lock:
// "database is locked" goes to the caller. A statement that holds a NUL is an error.
//
// Errors are told as by Qt's driver for SQLite, the databaseText being SQLite's own message; errors
// of the driver itself have an empty one. A rollback succeeds also when SQLite, after an error, has
// rolled back itself.
//
// What it cannot do: results only go forward, so last() and previous() fail and Qt's models take no
// query of this driver. User, password, host, port and connection options are not used. There are
// no event notifications and no virtual dbmsType().
//
// As with all Qt drivers, a connection is used by the thread that opened it; any number of threads
// may each have their own to the same file.
class SqlCipherDriver : public QSqlDriver
{
    Q_OBJECT

public:
    explicit SqlCipherDriver(QObject* parent = nullptr);
    ~SqlCipherDriver() override;

    bool hasFeature(DriverFeature feature) const override;
    bool open(const QString& path, const QString& user, const QString& password,
              const QString& host, int port, const QString& options) override;
    // Ends all statements first, so that the file is closed in any case.
    void close() override;
    QSqlResult* createResult() const override;
    bool beginTransaction() override;
    bool commitTransaction() override;
    bool rollbackTransaction() override;
    QStringList tables(QSql::TableType type) const override;
    QSqlRecord record(const QString& table) const override;
    QSqlIndex primaryIndex(const QString& table) const override;
    QString escapeIdentifier(const QString& identifier, IdentifierType type) const override;
    QVariant handle() const override;

private:
    friend class SqlCipherResult;

    bool execute(const char* sql, const char* what);
    bool inTransaction() const;
    // To be called after whatever may end a transaction, with what was there before it.
    void followTransaction(bool wasOpen, bool succeeded);
    QSqlRecord columnsOf(const QString& table, bool primaryKeyOnly) const;
    QString tableInfo(const QString& table) const;

    sqlite3* m_database = nullptr;
    ConnectionKey m_key;
    bool m_rolledBack = false; // by SQLite itself; who began the transaction does not know yet
    mutable QVector<SqlCipherResult*> m_results; // alive, whether they hold a statement or not
};

Q_DECLARE_OPAQUE_POINTER(sqlite3*)
Q_DECLARE_METATYPE(sqlite3*)
