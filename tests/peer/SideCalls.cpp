#include "Side.h"

#include <QDateTime>
#include <QSqlError>
#include <QSqlIndex>
#include <QSqlRecord>

#include <limits>
#include <numeric>
#include <random>

namespace {

// clang-format off
const QStringList statements {
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
const QStringList names {":x", ":y", "@z", ":none"};
const QStringList tables {"t", "T", "\"a b\"", "a b", "main.a b", "v", "m.t", "u", "no", "[t]", ""};
const QVariantList values {
    QVariant(), QString(), "", QString::fromUtf8("caf\u00e9 \U0001F964"), "'; DROP TABLE t; --", "12",
    QString("a") + QChar::Null + "b", QChar('c'), QStringList("a"), 0, 1, -3, true, 0.1,
    std::numeric_limits<double>::quiet_NaN(), std::numeric_limits<uint>::max(),
    std::numeric_limits<qint64>::max(), std::numeric_limits<quint64>::max(), QDate(2024, 2, 29),
    QTime(1, 2, 3, 4), QDateTime({2024, 2, 29}, {1, 2, 3, 4}, Qt::UTC), QByteArray(),
    QByteArray("\0\xff\0a", 4),
};
// Of these the drivers make different values: they are only selected, never stored.
const QVariantList unlikeValues {
    QVariant::fromValue<short>(-1), QVariant::fromValue<ushort>(1), QVariant::fromValue(-1L),
    QVariant::fromValue(1UL), quint64(7), 1.5F, QByteArray(""), QString(QChar(0xd800)),
};
// clang-format on

// All that a call may take, and its answer.
struct Call
{
    Side& side;
    QSqlQuery& query;
    QSqlDatabase& database;
    QString sql;
    QString name;
    QString table;
    QVariant value;
    QVariant unlike;
    int number;
    QString answer = "answer";

    template <typename... Values> void tell(const Values&... told)
    {
        answer += ' ' + toText(told...);
    }

    void ran(bool succeeded)
    {
        // Of a SELECT Qt's driver tells what was changed before it.
        tell(succeeded, succeeded && !query.isSelect() ? query.numRowsAffected() : -1);
    }

    void ended(bool succeeded)
    {
        // The last error stays behind when a later call succeeds, or finds the connection closed.
        const bool failed = !succeeded && database.isOpen();
        const QSqlError error = failed ? database.lastError() : QSqlError();
        tell(succeeded, database.isOpen(), error.type(), error);
    }

    void bindEach(bool batch)
    {
        for (int i = 0; i < query.boundValues().size(); ++i) {
            const QVariant bound = i == 0 ? value : number;
            query.bindValue(i, batch ? QVariantList {bound, 1} : bound);
        }
    }

    // Prepares as well: with a value too many in a batch Qt's driver falls over.
    void execBatch()
    {
        tell(query.prepare(sql));
        bindEach(true);
        ran(query.execBatch());
    }

    void setPrecision()
    {
        database.setNumericalPrecisionPolicy(QSql::NumericalPrecisionPolicy(number));
        side.clear();
    }

    // Tells of every lock that the other connection's queries hold.
    void tryLock()
    {
        QSqlQuery once(database);
        tell(once.exec("BEGIN EXCLUSIVE"));
        tell(once.lastError());
        tell(once.exec("ROLLBACK"));
    }

    void select(const QVariant& selected)
    {
        QSqlQuery once(database);
        once.prepare("SELECT :x, typeof(:x), hex(:x)");
        once.bindValue(":x", selected);
        tell(once.exec());
        tell(once.next());
        for (int column = 0; column < 3; ++column)
            tell(once.value(column), once.isNull(column));
    }
};

const struct
{
    int weight; // how often it is drawn, beside the others
    const char* words;
    void (*make)(Call& c);
} kinds[] = {
    {12, "exec(SQL)", [](Call& c) { c.ran(c.query.exec(c.sql)); }},
    {12, "prepare(SQL)", [](Call& c) { c.tell(c.query.prepare(c.sql)); }},
    {10, "exec()", [](Call& c) { c.ran(c.query.exec()); }},
    {8, "exec() with VALUE, NUMBER...", [](Call& c) { c.bindEach(false), c.ran(c.query.exec()); }},
    {2, "execBatch(SQL) with (VALUE, 1), (NUMBER, 1)...", [](Call& c) { c.execBatch(); }},
    {3, "bindValue(NUMBER, VALUE)", [](Call& c) { c.query.bindValue(c.number, c.value); }},
    {8, "bindValue(NAME, VALUE)", [](Call& c) { c.query.bindValue(c.name, c.value); }},
    {4, "addBindValue(VALUE)", [](Call& c) { c.query.addBindValue(c.value); }},
    {14, "next()", [](Call& c) { c.tell(c.query.next()); }},
    {2, "first()", [](Call& c) { c.tell(c.query.first()); }},
    {2, "seek(NUMBER)", [](Call& c) { c.tell(c.query.seek(c.number)); }},
    {2, "seek(NUMBER, relative)", [](Call& c) { c.tell(c.query.seek(c.number, true)); }},
    {6, "finish()", [](Call& c) { c.query.finish(); }},
    {1, "setNumericalPrecisionPolicy(NUMBER), new queries", [](Call& c) { c.setPrecision(); }},
    {2, "select VALUE", [](Call& c) { c.select(c.value); }},
    {2, "select UNLIKE", [](Call& c) { c.select(c.unlike); }},
    {6, "transaction()", [](Call& c) { c.ended(c.database.transaction()); }},
    {2, "commit()", [](Call& c) { c.ended(c.database.commit()); }},
    {6, "rollback()", [](Call& c) { c.ended(c.database.rollback()); }},
    {6, "BEGIN EXCLUSIVE; ROLLBACK", [](Call& c) { c.tryLock(); }},
    {1, "open()", [](Call& c) { c.ended(c.database.open()); }},
    {1, "close()", [](Call& c) { c.database.close(); }},
    {1, "tables(NUMBER)", [](Call& c) { c.tell(c.database.tables(QSql::TableType(c.number))); }},
    {2, "record(TABLE)", [](Call& c) { c.tell(c.database.record(c.table)); }},
    {2, "primaryIndex(TABLE)", [](Call& c) { c.tell(c.database.primaryIndex(c.table)); }},
};

QString inWords(QString words, const Call& c)
{
    words.replace("NUMBER", QString::number(c.number)).replace("NAME", c.name);
    words.replace("TABLE", c.table).replace("UNLIKE", toText(c.unlike));
    return words.replace("VALUE", toText(c.value))
        .replace("SQL", c.sql)
        .replace(QChar::Null, "\\0");
}

} // namespace

QStringList Side::call(unsigned random)
{
    std::mt19937 draw(random);
    const auto below = [&draw](int limit) { return int(draw() % unsigned(limit)); };
    const auto oneOf = [below](const auto& list) { return list.at(below(list.size())); };
    const int query = below(4);
    Call c {*this, queries[query], databases[query % 2], {}, {}, {}, {}, {}, 0};
    c.sql = oneOf(statements);
    c.name = oneOf(names);
    c.table = oneOf(tables);
    c.value = oneOf(values);
    c.unlike = oneOf(unlikeValues);
    c.number = below(5);
    const auto add = [](int sum, const auto& kind) { return sum + kind.weight; };
    int weight = below(std::accumulate(std::begin(kinds), std::end(kinds), 0, add));
    const auto* kind = kinds;
    while (weight >= kind->weight)
        weight -= kind++->weight;
    kind->make(c);
    const QString words = QString("query %1: ").arg(query) + inWords(kind->words, c);
    return QStringList {words, c.answer} << state();
}
