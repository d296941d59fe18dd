// Columns of a table in the shared database, and in the defaults, a line each: how it is aligned.

#include "Dispenser.h"
#include "Fuzz.h"
#include "SqlTest.h"
#include "database/DatabaseBase.h"

#include <QRegularExpression>
#include <QSqlRecord>

namespace {

using Rows = QStringList;

// Each row as one text, its columns' names before their values.
Rows rowsOf(TestConnection& database, const QString& sql)
{
    Rows rows;
    QSqlQuery query(database);
    query.exec(sql);
    while (query.next()) {
        QStringList row;
        for (int i = 0; i < query.record().count(); ++i)
            row.append(query.record().fieldName(i) + '=' + query.value(i).toString());
        rows.append(row.join(';'));
    }
    return rows;
}

QStringList columnsOf(TestConnection& database)
{
    QStringList columns;
    QSqlQuery query(database);
    query.exec("PRAGMA table_info(t)");
    while (query.next())
        columns.append(query.value(1).toString() + ' ' + query.value(2).toString());
    return columns;
}

// A table with a row, in which all differs from the other database's.
bool makeTable(TestConnection& database, const QString& columns, const char* value)
{
    QSqlQuery query(database);
    query.exec("DROP TABLE IF EXISTS t");
    if (!query.exec("CREATE TABLE t (" + columns + ')'))
        return false;
    const QString values
        = QString(value + QLatin1String(", ")).repeated(columnsOf(database).size());
    query.exec("INSERT INTO t VALUES(" + values.chopped(2) + ')');
    return true;
}

Rows othersOf(TestConnection& database)
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

} // namespace

void tryInput(const QByteArray& input)
{
    static TestConnection ours(Dispenser::sharedDatabase);
    static TestConnection defaults(Dispenser::defaultsDatabase);
    const QString all = QStringLiteral("SELECT * FROM t");
    const QStringList lines = linesOf(input, 2);
    if (!makeTable(ours, lines.constFirst(), "1") || !makeTable(defaults, lines.constLast(), "2"))
        return;
    const Rows before = rowsOf(ours, all);
    const Rows wanted = rowsOf(defaults, all);
    const QStringList columnsBefore = columnsOf(ours);
    const QStringList columnsWanted = columnsOf(defaults);
    const Rows others = othersOf(ours) + othersOf(defaults);

    const bool updated = DatabaseBase().genericUpdateTable("t");

    const Rows after = rowsOf(ours, all);
    QStringList columns = columnsOf(ours);
    const bool restored = after == wanted && columns == columnsWanted;
    const bool kept = after.size() == before.size()
        && columns.mid(0, columnsBefore.size()) == columnsBefore
        && (before.isEmpty() || after.constFirst().startsWith(before.constFirst()));
    HOLDS(restored || kept, lines << before << after << columns);
    HOLDS(rowsOf(defaults, all) == wanted && othersOf(ours) + othersOf(defaults) == others, lines);
    HOLDS(ours.value("PRAGMA integrity_check") == "ok", lines);
    if (isPlain(lines.constFirst()) && isPlain(lines.constLast())) {
        columns.sort();
        QStringList sorted = columnsWanted;
        sorted.sort();
        const bool mayKeep
            = std::all_of(columnsBefore.begin(), columnsBefore.end(),
                          [&](const QString& each) { return sorted.contains(each); });
        HOLDS(updated && columns == sorted && (mayKeep ? kept : restored),
              lines << after << columns);
    }
}
