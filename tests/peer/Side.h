#pragma once

#include <QDateTime>
#include <QDebug>
#include <QSqlDatabase>
#include <QSqlError>
#include <QSqlIndex>
#include <QSqlQuery>
#include <QSqlRecord>

#include <limits>
#include <numeric>
#include <random>

// Values as Qt's debug stream writes them, on one line, with one kind of quotation marks.
template <typename... Values> QString toText(const Values&... values)
{
    QString text;
    (QDebug(&text) << qSetRealNumberPrecision(17) << ... << values);
    return text.simplified().replace('"', '\'');
}

inline const char* const schema[] = {
    "CREATE TABLE t (id INTEGER PRIMARY KEY, name TEXT NOT NULL DEFAULT 'it''s', size REAL,"
    " data BLOB, flag BOOLEAN DEFAULT 1, amount NUMERIC(5,2))",
    "CREATE TABLE \"a b\" (k VARCHAR(20), n INT, PRIMARY KEY (k, n)) WITHOUT ROWID",
    "CREATE VIEW v AS SELECT id + 1 AS next, name FROM t",
    "INSERT INTO t (name, size, data) VALUES ('one', 1.5, x'00ff'), ('two', NULL, 4), ('', 3, '')",
    "INSERT INTO \"a b\" VALUES ('k', 1), ('l', 2)",
};

// clang-format off
inline const QStringList statements {
    "SELECT * FROM t", "SELECT id, size * 2 AS d, data, flag FROM t WHERE id >= ? ORDER BY id",
    "SELECT k, count(*) FROM \"a b\" GROUP BY k", "SELECT size AS 'f g' FROM t WHERE 0",
    "SELECT v.next, t.size FROM v, t WHERE t.name = :x", "SELECT abs((id = 2) * (1 << 63)) FROM t",
    "SELECT ?, typeof(?)", "SELECT ?2 || ?1, ?", "SELECT :y || :x", "SELECT :x || :x, typeof(:x)",
    "SELECT @z, :x, $y", "SELECT @z, :x, :x, :x", "SELECT ':y', /* :y ? */ :x -- ?",
    "INSERT INTO t (name, size, data) VALUES (?, ?, ?)", "DELETE FROM t WHERE id = ?",
    "INSERT INTO t (id, name) VALUES (:x % 100, :y)", "UPDATE t SET name = NULL",
    "INSERT OR ROLLBACK INTO t (id, name) VALUES (1, 'x')", "UPDATE OR ROLLBACK t SET id = 1",
    "INSERT INTO t (name, amount) SELECT name, id FROM t LIMIT 2", "INSERT INTO u VALUES (?, ?)",
    "INSERT OR REPLACE INTO \"a b\" VALUES (:x, :y)", "CREATE TABLE u (x INT UNIQUE, y DOUBLE)",
    "UPDATE t SET name = name || :x WHERE id > :y", "CREATE TEMP TABLE s (x)", "DROP TABLE s",
    "SELECT x, y FROM u", "DROP TABLE u", "CREATE TABLE m.t AS SELECT * FROM main.t",
    "ATTACH ':memory:' AS m", "DETACH m", "BEGIN IMMEDIATE", "BEGIN", "COMMIT",
    "ROLLBACK", "SAVEPOINT s", "ROLLBACK TO s", "RELEASE s",
    "PRAGMA table_info(t)", "PRAGMA user_version = 7", "PRAGMA user_version", "SELECT * FROM nowhere",
    "SELECT sqlite_source_id()", // a second engine would not go unnoticed
    "SELEC", "SELECT 'open", "SELECT 1; SELECT 2", "SELECT 1; -- no more", "-- nothing", "",
    QString("SELECT 1") + QChar::Null + "a",
};
inline const QList<int> numbers {0, 1, 2, 3, 4};
inline const QStringList names {":x", ":y", "@z", ":none"};
inline const QStringList tables {"t", "T", "\"a b\"", "a b", "main.a b", "v", "m.t", "u", "no", "[t]", ""};
inline const QVariantList values {
    QVariant(), QString(), "", QString::fromUtf8("caf\u00e9 \U0001F964"), "'; DROP TABLE t; --", "12",
    QString("a") + QChar::Null + "b", QChar('c'), QStringList("a"), 0, 1, -3, true, 0.1,
    std::numeric_limits<double>::quiet_NaN(), std::numeric_limits<uint>::max(),
    std::numeric_limits<qint64>::max(), std::numeric_limits<quint64>::max(), QDate(2024, 2, 29),
    QTime(1, 2, 3, 4), QDateTime({2024, 2, 29}, {1, 2, 3, 4}, Qt::UTC), QByteArray(),
    QByteArray("\0\xff\0a", 4),
};
// Of these the drivers make different values: they are only selected, never stored.
inline const QVariantList unlikeValues {
    QVariant::fromValue<short>(-1), QVariant::fromValue<ushort>(1), QVariant::fromValue(-1L),
    QVariant::fromValue(1UL), quint64(7), 1.5F, QByteArray(""), QString(QChar(0xd800)),
};
// clang-format on

// With a column before the first and one behind the last.
inline QString rowOf(const QSqlQuery& query)
{
    QString row;
    for (int column = -1; column <= query.record().count(); ++column)
        row += toText(query.value(column), query.isNull(column));
    return row;
}

// A call in the making, in words with all that is drawn for it, and its answer.
struct Call
{
    std::mt19937& draw;
    QSqlQuery& query;
    QSqlDatabase& database;
    QString words;
    QString answer = "answer";

    template <typename List> auto oneOf(const List& list)
    {
        const auto drawn = list.at(int(draw() % unsigned(list.size())));
        words += ' ' + toText(drawn);
        return drawn;
    }

    template <typename... Values> void tell(const Values&... told)
    {
        answer += ' ' + toText(told...);
    }

    void ran(bool succeeded)
    {
        // Of a SELECT Qt's driver tells what was changed before it.
        tell(succeeded, succeeded && !query.isSelect() ? query.numRowsAffected() : -1);
    }

    void ended(bool succeeded) { tell(succeeded, database.isOpen()); }

    template <typename Place> void bind(const Place& place)
    {
        query.bindValue(place, oneOf(values));
    }

    void execWithValues()
    {
        for (int i = 0; i < query.boundValues().size(); ++i)
            bind(i);
        ran(query.exec());
    }

    // Tells of every lock that the other connection's queries hold.
    void tryLock()
    {
        QSqlQuery once(database);
        tell(once.exec("BEGIN EXCLUSIVE"));
        tell(once.lastError());
        tell(once.exec("ROLLBACK"));
    }

    void selectUnlike()
    {
        query.prepare("SELECT :x, typeof(:x), hex(:x)");
        query.bindValue(":x", oneOf(unlikeValues));
        ran(query.exec());
        query.next();
    }
};

inline const struct
{
    int weight; // how often it is drawn, beside the others
    const char* name;
    void (*make)(Call& c);
} kinds[] = {
    {12, "exec", [](Call& c) { c.ran(c.query.exec(c.oneOf(statements))); }},
    {12, "prepare", [](Call& c) { c.tell(c.query.prepare(c.oneOf(statements))); }},
    {10, "exec()", [](Call& c) { c.ran(c.query.exec()); }},
    {10, "exec() with", [](Call& c) { c.execWithValues(); }},
    {3, "bindValue", [](Call& c) { c.bind(c.oneOf(numbers)); }},
    {8, "bindValue", [](Call& c) { c.bind(c.oneOf(names)); }},
    {4, "addBindValue", [](Call& c) { c.query.addBindValue(c.oneOf(values)); }},
    {14, "next", [](Call& c) { c.tell(c.query.next()); }},
    {4, "seek", [](Call& c) { c.tell(c.query.seek(c.oneOf(numbers))); }},
    {2, "seek from here", [](Call& c) { c.tell(c.query.seek(c.oneOf(numbers), true)); }},
    {6, "finish", [](Call& c) { c.query.finish(); }},
    {2, "select", [](Call& c) { c.selectUnlike(); }},
    {6, "transaction", [](Call& c) { c.ended(c.database.transaction()); }},
    {2, "commit", [](Call& c) { c.ended(c.database.commit()); }},
    {6, "rollback", [](Call& c) { c.ended(c.database.rollback()); }},
    {6, "BEGIN EXCLUSIVE; ROLLBACK", [](Call& c) { c.tryLock(); }},
    {1, "open", [](Call& c) { c.ended(c.database.open()); }},
    {1, "close", [](Call& c) { c.database.close(); }},
    {1, "tables", [](Call& c) { c.tell(c.database.tables(QSql::TableType(c.oneOf(numbers)))); }},
    {2, "record", [](Call& c) { c.tell(c.database.record(c.oneOf(tables))); }},
    {2, "primaryIndex", [](Call& c) { c.tell(c.database.primaryIndex(c.oneOf(tables))); }},
};

// One of the two drivers that are compared: two connections to a new database, two queries on each.
class Side
{
public:
    // One Side of a driver at a time.
    Side(const QString& driver, const QString& file)
    {
        for (QSqlDatabase& database : m_databases) {
            const QString name = driver + QString::number(&database - m_databases);
            QSqlDatabase::removeDatabase(name); // that of the Side before
            database = QSqlDatabase::addDatabase(driver, name);
            database.setDatabaseName(file);
            if (driver == "QSQLITE")
                database.setConnectOptions("QSQLITE_BUSY_TIMEOUT=0"); // ours never waits for a lock
            database.open();
        }
        for (const char* statement : schema)
            QSqlQuery(m_databases[0]).exec(statement);
        clear();
    }

    // Puts new queries in the places of the old ones.
    void clear()
    {
        for (QSqlQuery& query : m_queries) {
            query = QSqlQuery(m_databases[(&query - m_queries) % 2]);
            query.setForwardOnly(true); // as ours always is
        }
    }

    // Makes one call on a query or its connection: the same for the same number. Gives the call in
    // words, its answer, and all that the queries tell of themselves then.
    QStringList call(unsigned random)
    {
        std::mt19937 draw(random);
        const int query = int(draw() % 4);
        const auto add = [](unsigned sum, const auto& kind) { return sum + kind.weight; };
        int left = int(draw() % std::accumulate(std::begin(kinds), std::end(kinds), 0U, add));
        const auto* kind = kinds;
        while (left >= kind->weight)
            left -= kind++->weight;
        const QString words = QString("query %1: %2").arg(query).arg(kind->name);
        Call c {draw, m_queries[query], m_databases[query % 2], words};
        kind->make(c);
        return QStringList {c.words, c.answer} << state();
    }

private:
    QStringList state() const
    {
        QStringList state;
        for (const QSqlQuery& it : m_queries) {
            // Qt's driver falls over a connection that was closed.
            const bool open = m_databases[(&it - m_queries) % 2].isOpen();
            const QSqlError error = it.lastError();
            state << "is "
                    + toText(open, it.isActive(), it.isSelect(), it.at(), it.isValid(),
                             error.type(), error)
                  << "id " + toText(open ? it.lastInsertId() : QVariant())
                  << "texts " + toText(it.lastQuery(), it.executedQuery(), it.boundValues())
                  << "record " + toText(it.record()) << "row " + rowOf(it);
        }
        return state;
    }

    QSqlDatabase m_databases[2];
    QSqlQuery m_queries[4]; // of the connections in turn
};
