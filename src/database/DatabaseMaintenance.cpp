#include "database/DatabaseBase.h"

#include "database/AttachedDefaults.h"
#include "database/OpenConnection.h"
#include "database/SqlQuery.h"
#include "database/SqlText.h"
#include "database/SystemMessage.h"
#include "database/Transaction.h"

#include <QMap>
#include <QRegularExpression>
#include <QSet>

namespace {

using Definitions = QMap<QString, QString>;

// The parts of a CREATE statement by their first word. The statement's own beginning is one of
// them; it is the same on both sides of a comparison. Kept: only blanks around the separators are
// dropped, so the defaults' statements must each stand on one line.
Definitions definitionsOf(const QString& createStatement)
{
    static const QRegularExpression separator(QStringLiteral(" *[(,)] *"));
    Definitions definitions;
    const QStringList parts = createStatement.split(separator, Qt::SkipEmptyParts);
    for (const QString& part : parts)
        definitions.insert(part.section(' ', 0, 0), part.section(' ', 1, -1));
    return definitions;
}

// What the current definitions need to become the wanted ones by adding alone; empty when that is
// not possible, or when they are equal.
Definitions additionsTo(Definitions current, const Definitions& wanted)
{
    Definitions additions;
    for (auto it = wanted.cbegin(); it != wanted.cend(); ++it) {
        if (!current.contains(it.key()))
            additions.insert(it.key(), it.value());
    }
    current.insert(additions);
    return current == wanted ? additions : Definitions();
}

void logCreation(const QString& query, const QString& definition, bool created)
{
    qDebug() << "s" << query;
    qDebug() << "query: " << definition;
    qDebug() << QStringLiteral("result: %1").arg(created ? 1 : 0);
}

QString definitionQuery(const QString& schema, const QString& table)
{
    return SqlText::fill(QStringLiteral("select sql from %1sqlite_master where name='%2'"), schema,
                         table);
}

} // namespace

bool DatabaseBase::genericTableExists(QString table)
{
    openDatabase();
    SqlQuery query;
    query.prepare(SqlText::fill(
        QStringLiteral("SELECT name FROM sqlite_master WHERE type='table' AND name='%1'"), table));
    if (!query.exec()) {
        qDebug() << "Error searching for table: " << query->lastError();
        return false;
    }
    return query->next(); // the connection stays open, see the header
}

bool DatabaseBase::genericColumnExists(QString table, QString column)
{
    const QVariantList rows
        = genericGetMapList(SqlText::fill(QStringLiteral("PRAGMA table_info(%1)"), table)).toList();
    for (const QVariant& row : rows) {
        if (row.toList().value(1).toString() == column)
            return true;
    }
    SystemMessage::post(SystemMessage::Type::Warning,
                        QStringLiteral("Database column does not exist- [%1]").arg(column));
    return false;
}

bool DatabaseBase::genericAddColumn(QString table, QString column, QString definition)
{
    const QString sql = SqlText::fill(QStringLiteral("ALTER TABLE %1 ADD COLUMN %2 %3"), table,
                                      column, definition);
    qDebug() << "Adding a new column to the database";
    qDebug() << SqlText::shown(sql);
    return genericQuery(sql);
}

bool DatabaseBase::genericDropTable(QString table)
{
    return dropTable(table, table);
}

bool DatabaseBase::dropTable(const QString& table, const QString& qualifiedName)
{
    qDebug() << "DROPPING TABLE " << table;
    const bool dropped
        = genericQuery(SqlText::fill(QStringLiteral("DROP TABLE IF EXISTS %1"), qualifiedName));
    if (!dropped)
        qDebug() << "failed to drop table";
    return dropped;
}

bool DatabaseBase::genericRestoreTable(QString table)
{
    qDebug() << "RESTORING TABLE " << table << " FROM DEFAULT";
    const OpenConnection connection;
    const Restored restored = restoreFromDefaults(table);
    if (restored != Restored::Stopped)
        qDebug() << "restore complete"; // kept: told whenever the drop was not what failed
    return restored == Restored::Yes;
}

DatabaseBase::Restored DatabaseBase::restoreFromDefaults(const QString& table)
{
    const AttachedDefaults defaults(*this);
    if (!defaults.areThere()) {
        qDebug() << "unable to attach default database";
        return Restored::Stopped;
    }
    const QString query = definitionQuery(QStringLiteral("defaults."), table);
    const QString definition = genericGetColumn(query).toString();
    if (!definition.isEmpty())
        return replaceTable(table, query, definition);
    logCreation(query, definition, false);
    return Restored::No; // what cannot be made again must not be dropped
}

// Power may fail at any moment: the table is to be as before or restored, never dropped or empty.
DatabaseBase::Restored DatabaseBase::replaceTable(const QString& table, const QString& query,
                                                  const QString& definition)
{
    Transaction transaction(*this);
    // Qualified: without a schema the drop would reach the defaults' table when ours is missing.
    if (!transaction.hasBegun() || !dropTable(table, QLatin1String("main.") + table))
        return Restored::Stopped;
    const bool created = genericQuery(definition);
    logCreation(query, definition, created);
    // Kept: a definition that cannot be carried out leaves no table, and the next update tries
    // again. Nothing is copied then: SQLite may have rolled back by itself, and the old table be
    // there.
    const bool whole = !created
        || genericQuery(
            SqlText::fill(QStringLiteral("INSERT INTO main.%1 SELECT * FROM defaults.%1;"), table));
    return whole && transaction.commit() && created ? Restored::Yes : Restored::No;
}

bool DatabaseBase::genericUpdateTable(QString table)
{
    const OpenConnection connection;
    if (!genericTableExists(table))
        return genericRestoreTable(table);
    QString actual;
    QString expected;
    {
        const AttachedDefaults defaults(*this);
        if (!defaults.areThere()) {
            qDebug() << "unable to attach default database";
            return false;
        }
        actual = genericGetColumn(definitionQuery(QString(), table)).toString();
        expected = genericGetColumn(definitionQuery(QStringLiteral("defaults."), table)).toString();
    }
    if (actual.isEmpty() || expected.isEmpty()) {
        qDebug() << "unable to get sql from current or default database for table" << table;
        return false;
    }
    return alignTable(table, actual, expected);
}

bool DatabaseBase::alignTable(const QString& table, const QString& actual, const QString& expected)
{
    const Definitions current = definitionsOf(actual);
    const Definitions wanted = definitionsOf(expected);
    if (current == wanted)
        return true;
    qDebug() << "DatabaseBase::genericUpdateTable updating table " << table << "...";
    const Definitions additions = additionsTo(current, wanted);
    if (additions.isEmpty()) {
        qDebug() << "DatabaseBase::genericUpdateTable mismatched column definition";
        qDebug() << "DatabaseBase::genericUpdateTable expected: " << expected;
        qDebug() << "DatabaseBase::genericUpdateTable actual: " << actual;
        return genericRestoreTable(table);
    }
    bool added = false;
    for (auto it = additions.cbegin(); it != additions.cend(); ++it) {
        qDebug() << "DatabaseBase::genericUpdateTable adding " << it.key() << it.value();
        added = genericAddColumn(table, it.key(), it.value());
    }
    return added;
}
