// Columns of a table in the shared database, and in the defaults, a line each: how it is aligned.

#include "Dispenser.h"
#include "Fuzz.h"
#include "SqlTest.h"
#include "database/DatabaseBase.h"

#include <QRegularExpression>
#include <QSet>
#include <QSqlRecord>

namespace {

// Each row as one text of names and values.
QStringList rowsOf(TestConnection& database, const QString& sql)
{
    QStringList rows;
    QSqlQuery query(database);
    query.exec(sql);
    while (query.next()) {
        rows.append(QString());
        for (int i = 0; i < query.record().count(); ++i)
            rows.last() += query.record().fieldName(i) + '=' + query.value(i).toString() + ';';
    }
    return rows;
}

// The rows of table t, and a text for each of its columns.
struct Table
{
    explicit Table(TestConnection& database)
        : rows(rowsOf(database, "SELECT * FROM t")),
          columns(rowsOf(database, "PRAGMA table_info(t)").replaceInStrings(place, QString()))
    {
    }
    bool operator==(const Table& other) const
    {
        return rows == other.rows && columns == other.columns;
    }
    bool continues(const Table& former) const
    {
        return columns.mid(0, former.columns.size()) == former.columns
            && rows.size() == former.rows.size()
            && (rows.isEmpty() || rows.constFirst().startsWith(former.rows.constFirst()));
    }

    QStringList rows;
    QStringList columns;

private:
    static inline const QRegularExpression place {"^cid=\\d+;"};
};

// With a row, in which all differs from the other database's.
bool makeTable(TestConnection& database, const QString& columns, const QString& value)
{
    QSqlQuery query(database);
    query.exec("DROP TABLE IF EXISTS t");
    if (!query.exec("CREATE TABLE t (" + columns + ')'))
        return false;
    const QString values = QString(value + ',').repeated(Table(database).columns.size());
    query.exec("INSERT INTO t VALUES(" + values.chopped(1) + ')');
    return true;
}

QStringList othersOf(TestConnection& database)
{
    return rowsOf(database, "SELECT * FROM sqlite_master WHERE tbl_name<>'t'")
        + rowsOf(database, "SELECT * FROM dictionary");
}

bool isPlain(const QString& columns)
{
    static const QRegularExpression plain(
        "\\A[a-z]+( (INTEGER|TEXT))?(, ?[a-z]+( (INTEGER|TEXT))?)*\\z");
    return plain.match(columns).hasMatch();
}

QSet<QString> setOf(const QStringList& columns)
{
    return {columns.begin(), columns.end()};
}

} // namespace

void tryInput(const QByteArray& input)
{
    static TestConnection ours(Dispenser::sharedDatabase);
    static TestConnection defaults(Dispenser::defaultsDatabase);
    const QStringList lines = linesOf(input, 2);
    if (!makeTable(ours, lines.constFirst(), "1") || !makeTable(defaults, lines.constLast(), "2"))
        return;
    const Table before(ours);
    const Table wanted(defaults);
    const QStringList others = othersOf(ours) + othersOf(defaults);

    const bool updated = DatabaseBase().genericUpdateTable("t");

    const Table after(ours);
    HOLDS(after == wanted || after.continues(before), lines << after.rows << after.columns);
    HOLDS(Table(defaults) == wanted && othersOf(ours) + othersOf(defaults) == others, lines);
    HOLDS(ours.value("PRAGMA integrity_check") == "ok", lines);
    if (isPlain(lines.constFirst()) && isPlain(lines.constLast())) {
        const bool mayStay = setOf(wanted.columns).contains(setOf(before.columns));
        HOLDS(updated && setOf(after.columns) == setOf(wanted.columns), lines << after.columns);
        HOLDS(mayStay ? after.continues(before) : after == wanted, lines << after.rows);
    }
}
