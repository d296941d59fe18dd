#include "Side.h"

#include <QSqlError>
#include <QSqlRecord>

namespace {

const char* const schema[] = {
    "CREATE TABLE t (id INTEGER PRIMARY KEY, name TEXT NOT NULL DEFAULT 'it''s', size REAL,"
    " data BLOB, flag BOOLEAN DEFAULT 1, amount NUMERIC(5,2))",
    "CREATE TABLE \"a b\" (k VARCHAR(20), n INT, PRIMARY KEY (k, n)) WITHOUT ROWID",
    "CREATE VIEW v AS SELECT id + 1 AS next, name FROM t",
    "INSERT INTO t (name, size, data) VALUES ('one', 1.5, x'00ff'), ('two', NULL, 4), ('', 3, '')",
    "INSERT INTO \"a b\" VALUES ('k', 1), ('l', 2)",
};

// With a column before the first and one behind the last.
QString rowOf(const QSqlQuery& query)
{
    QString row;
    for (int column = -1; column <= query.record().count(); ++column)
        row += toText(query.value(column), query.isNull(column));
    return row;
}

} // namespace

Side::Side(const QString& driver, const QString& file)
{
    for (QSqlDatabase& database : databases) {
        const QString name = driver + QString::number(&database - databases);
        QSqlDatabase::removeDatabase(name); // that of the Side before
        database = QSqlDatabase::addDatabase(driver, name);
        database.setDatabaseName(file);
        if (driver == "QSQLITE")
            database.setConnectOptions("QSQLITE_BUSY_TIMEOUT=0"); // ours never waits for a lock
        database.open();
    }
    for (const char* statement : schema)
        QSqlQuery(databases[0]).exec(statement);
    clear();
}

void Side::clear()
{
    for (QSqlQuery& query : queries) {
        query = QSqlQuery(databases[(&query - queries) % 2]);
        query.setForwardOnly(true); // as ours always is
    }
}

QStringList Side::state() const
{
    QStringList state;
    for (const QSqlQuery& it : queries) {
        // Qt's driver falls over a connection that was closed.
        const bool open = databases[(&it - queries) % 2].isOpen();
        const QSqlError error = it.lastError();
        state << "is "
                + toText(open, it.isActive(), it.isSelect(), it.at(), it.isValid(), error.type(),
                         error)
              << "id " + toText(open ? it.lastInsertId() : QVariant())
              << "texts " + toText(it.lastQuery(), it.executedQuery(), it.boundValues())
              << "record " + toText(it.record()) << "row " + rowOf(it);
    }
    return state;
}
