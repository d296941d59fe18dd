#include "database/DatabaseBase.h"

#include "database/DatabaseFiles.h"
#include "database/LogLine.h"
#include "database/SqlQuery.h"
#include "database/SystemMessage.h"

#include <QFileInfo>
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
    LogLine() << "s" << query;
    LogLine() << "query: " << definition;
    LogLine() << QStringLiteral("result: %1").arg(created ? 1 : 0);
}

QString definitionQuery(const QString& schema, const QString& table)
{
    return QStringLiteral("select sql from %1sqlite_master where name='%2'").arg(schema, table);
}

} // namespace

DatabaseBase::MaintenanceConnection::MaintenanceConnection(DatabaseBase& database)
    : m_database(database), m_hold(std::in_place)
{
    m_database.openDatabase();
}

DatabaseBase::MaintenanceConnection::~MaintenanceConnection()
{
    m_hold.reset();
    m_database.closeUnlessHeld();
}

QString DatabaseBase::attachStatement()
{
    return QStringLiteral("ATTACH DATABASE '%1%2' AS defaults")
        .arg(DatabaseFiles::defaultsFolder, DatabaseFiles::defaultsFile);
}

bool DatabaseBase::attachDefaults()
{
    // Once, also where the connection has just been opened: the driver ignores a repeated key.
    genericQuery(DatabaseFiles::keyStatement);
    // SQLite would make the missing file, and attach it empty.
    return QFileInfo(DatabaseFiles::defaultsFolder + DatabaseFiles::defaultsFile).isFile()
        && genericQuery(attachStatement());
}

void DatabaseBase::detachDefaults()
{
    genericQuery(QStringLiteral("DETACH defaults"));
    genericQuery(DatabaseFiles::keyStatement);
}

bool DatabaseBase::genericTableExists(QString table)
{
    openDatabase();
    SqlQuery query;
    query.prepare(QStringLiteral("SELECT name FROM sqlite_master WHERE type='table' AND name='%1'")
                      .arg(table));
    if (!query.exec()) {
        qDebug() << "Error searching for table: " << query->lastError();
        return false;
    }
    return query->next(); // the connection stays open, see the header
}

bool DatabaseBase::genericColumnExists(QString table, QString column)
{
    const QVariantList rows
        = genericGetMapList(QStringLiteral("PRAGMA table_info(%1)").arg(table)).toList();
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
    const QString sql
        = QStringLiteral("ALTER TABLE %1 ADD COLUMN %2 %3").arg(table, column, definition);
    qDebug() << "Adding a new column to the database";
    qDebug() << sql;
    return genericQuery(sql);
}

bool DatabaseBase::genericDropTable(QString table)
{
    return dropTable(table, table);
}

bool DatabaseBase::dropTable(const QString& table, const QString& qualifiedName)
{
    LogLine() << "DROPPING TABLE " << table;
    const bool dropped = genericQuery(QStringLiteral("DROP TABLE IF EXISTS %1").arg(qualifiedName));
    if (!dropped)
        LogLine() << "failed to drop table";
    return dropped;
}

bool DatabaseBase::genericRestoreTable(QString table)
{
    const MaintenanceConnection connection(*this);
    qDebug() << "RESTORING TABLE " << table << " FROM DEFAULT";
    if (!attachDefaults()) {
        qDebug() << "unable to attach default database";
        closeDatabase();
        return false;
    }
    const QString query = definitionQuery(QStringLiteral("defaults."), table);
    const QString definition = genericGetColumn(query).toString();
    // What cannot be made again must not be dropped.
    const Replaced replaced
        = definition.isEmpty() ? Replaced::NotCreated : replaceTable(table, query, definition);
    if (definition.isEmpty())
        logCreation(query, definition, false);
    detachDefaults();
    if (replaced != Replaced::NotDropped)
        qDebug() << "restore complete";
    return replaced == Replaced::Created;
}

// Power may fail at any moment: the table is to be as before or restored, never dropped or empty.
DatabaseBase::Replaced DatabaseBase::replaceTable(const QString& table, const QString& query,
                                                  const QString& definition)
{
    const LogLine::Deferral nothingLoggedInTheTransaction;
    if (!beginWriting())
        return Replaced::NotDropped;
    // Qualified: without a schema the drop would reach the defaults' table when ours is missing.
    if (!dropTable(table, QLatin1String("main.") + table)) {
        genericQuery(QStringLiteral("ROLLBACK"));
        return Replaced::NotDropped;
    }
    const bool created = genericQuery(definition);
    logCreation(query, definition, created);
    genericQuery(QStringLiteral("INSERT INTO main.%1 SELECT * FROM defaults.%1;").arg(table));
    if (genericQuery(QStringLiteral("COMMIT")))
        return created ? Replaced::Created : Replaced::NotCreated;
    genericQuery(QStringLiteral("ROLLBACK"));
    return Replaced::NotCreated;
}

// Begins a transaction with the write lock of the shared database in hand, since waiting for it
// later, with a read lock in hand, could last for ever. BEGIN IMMEDIATE would lock the attached
// database too, which need not be writable, and spread the transaction over two files.
bool DatabaseBase::beginWriting()
{
    if (!genericQuery(QStringLiteral("BEGIN")))
        return false;
    // Takes the lock and, in a database without auto-vacuum, does nothing else.
    if (genericQuery(QStringLiteral("PRAGMA main.incremental_vacuum(1)")))
        return true;
    genericQuery(QStringLiteral("ROLLBACK"));
    return false;
}

bool DatabaseBase::genericUpdateTable(QString table)
{
    const MaintenanceConnection connection(*this);
    if (!genericTableExists(table))
        return genericRestoreTable(table);
    if (!attachDefaults()) {
        qDebug() << "unable to attach default database";
        closeDatabase();
        return false;
    }
    const QString actual = genericGetColumn(definitionQuery(QString(), table)).toString();
    const QString expected
        = genericGetColumn(definitionQuery(QStringLiteral("defaults."), table)).toString();
    detachDefaults();
    if (actual.isEmpty() || expected.isEmpty()) {
        qDebug() << "unable to get sql from current or default database for table" << table;
        closeDatabase();
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
