// Columns of a table in the shared database, and in the defaults, a line each: how it is aligned.

#include "Dispenser.h"
#include "Fuzz.h"
#include "SqlTest.h"
#include "database/DatabaseBase.h"

#include <QRegularExpression>
#include <QSet>

namespace {

// Its row, and its definition up to where columns are added.
QStringList tableIn(TestConnection& database)
{
    return {database.value("SELECT count(*) || ' of ' || max(origin) FROM t"),
            database.value("SELECT rtrim(sql, ')') FROM sqlite_master WHERE name='t'")};
}

bool continues(const QStringList& table, const QStringList& former)
{
    return table.first() == former.first() && table.last().startsWith(former.last());
}

// With a row that tells which database it is of.
bool makeTable(TestConnection& database, const QString& columns, int origin)
{
    QSqlQuery query(database);
    query.exec("DROP TABLE IF EXISTS t");
    const bool made = query.exec("CREATE TABLE t (origin INTEGER, " + columns + ')');
    query.exec(QString("INSERT INTO t(origin) VALUES(%1)").arg(origin));
    return made;
}

// Of a definition that needs no more than its missing columns added; none of the rarer forms.
QSet<QString> plainColumns(const QString& definition)
{
    static const QRegularExpression plain(
        "\\A[a-z]+( INTEGER| TEXT)?(, [a-z]+( INTEGER| TEXT)?)*\\z");
    if (!plain.match(definition).hasMatch())
        return {};
    const QStringList columns = definition.split(", ");
    return {columns.begin(), columns.end()};
}

} // namespace

void tryInput(const QByteArray& input)
{
    static TestConnection ours(Dispenser::sharedDatabase);
    static TestConnection defaults(Dispenser::defaultsDatabase);
    const QStringList lines = textOf(input).split('\n');
    if (!makeTable(ours, lines.constFirst(), 1) || !makeTable(defaults, lines.constLast(), 2))
        return;
    const QStringList before = tableIn(ours);
    const QStringList wanted = tableIn(defaults);

    DatabaseBase().genericUpdateTable("t");

    const QStringList after = tableIn(ours);
    HOLDS(after == wanted || continues(after, before), lines << after);
    HOLDS(tableIn(defaults) == wanted, lines);
    const QSet<QString> had = plainColumns(lines.constFirst());
    const QSet<QString> has = plainColumns(lines.constLast());
    const bool isAligned = after.last().size() == wanted.last().size();
    if (!had.isEmpty() && !has.isEmpty())
        HOLDS(has.contains(had) ? continues(after, before) && isAligned : after == wanted,
              lines << after);
}
