#include "sqlcipher/SqlCipherDriver.h"

#include "sqlcipher/SqlCipherError.h"
#include "sqlcipher/SqlCipherFields.h"
#include "sqlcipher/SqlCipherResult.h"

#include <QSqlField>
#include <QSqlIndex>
#include <QSqlQuery>

#include <sqlite3.h>

namespace {

bool isBracketed(const QString& identifier)
{
    return identifier.startsWith(QLatin1Char('[')) && identifier.endsWith(QLatin1Char(']'));
}

QString quoted(QString identifier)
{
    identifier.replace(QLatin1Char('"'), QLatin1String("\"\""));
    return QLatin1Char('"') + identifier + QLatin1Char('"');
}

// A default as it is declared; a text without its quotation marks.
QVariant defaultOf(const QVariant& declared)
{
    const QString text = declared.toString();
    if (text.size() < 2 || !text.startsWith(QLatin1Char('\'')) || !text.endsWith(QLatin1Char('\'')))
        return declared;
    return text.mid(1, text.size() - 2).replace(QLatin1String("''"), QLatin1String("'"));
}

} // namespace

SqlCipherDriver::SqlCipherDriver(QObject* parent) : QSqlDriver(parent) { }

SqlCipherDriver::~SqlCipherDriver()
{
    SqlCipherDriver::close();
    for (SqlCipherResult* result : qAsConst(m_results))
        result->loseDriver();
}

bool SqlCipherDriver::hasFeature(DriverFeature feature) const
{
    switch (feature) {
    case Transactions:
    case LastInsertId:
    case PreparedQueries:
    case PositionalPlaceholders:
    case NamedPlaceholders:
    case BLOB:
    case Unicode:
    case FinishQuery:
    case SimpleLocking:
    case LowPrecisionNumbers:
        return true;
    default:
        return false;
    }
}

bool SqlCipherDriver::open(const QString& path, const QString& /*user*/,
                           const QString& /*password*/, const QString& /*host*/, int /*port*/,
                           const QString& /*options*/)
{
    close();
    // Each connection stays on its thread, so SQLite need not lock it.
    const int code = sqlite3_open_v2(
        path.toUtf8().constData(), &m_database,
        SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE | SQLITE_OPEN_NOMUTEX, nullptr);
    if (code != SQLITE_OK) {
        setLastError(
            sqlCipherError("Error opening database", QSqlError::ConnectionError, m_database));
        sqlite3_close(m_database);
        m_database = nullptr;
    }
    m_key.setDatabase(m_database);
    setOpen(code == SQLITE_OK);
    setOpenError(code != SQLITE_OK);
    return code == SQLITE_OK;
}

void SqlCipherDriver::close()
{
    if (m_database == nullptr)
        return;
    for (SqlCipherResult* result : qAsConst(m_results))
        result->finalize();
    if (sqlite3_close(m_database) != SQLITE_OK) {
        setLastError(
            sqlCipherError("Error closing database", QSqlError::ConnectionError, m_database));
        return;
    }
    m_database = nullptr;
    m_key.setDatabase(nullptr);
    m_rolledBack = false;
    setOpen(false);
    setOpenError(false);
}

QSqlResult* SqlCipherDriver::createResult() const
{
    return new SqlCipherResult(this);
}

bool SqlCipherDriver::beginTransaction()
{
    return execute("BEGIN", "Unable to begin transaction");
}

bool SqlCipherDriver::commitTransaction()
{
    return execute("COMMIT", "Unable to commit transaction");
}

bool SqlCipherDriver::rollbackTransaction()
{
    if (m_rolledBack) {
        m_rolledBack = false;
        return true;
    }
    return execute("ROLLBACK", "Unable to rollback transaction");
}

bool SqlCipherDriver::execute(const char* sql, const char* what)
{
    if (!isOpen() || isOpenError())
        return false;
    const bool open = inTransaction();
    const int code = sqlite3_exec(m_database, sql, nullptr, nullptr, nullptr);
    if (code != SQLITE_OK) {
        setLastError(QSqlError(QString::fromLatin1(what),
                               QString::fromUtf8(sqlite3_errmsg(m_database)),
                               QSqlError::TransactionError));
    }
    followTransaction(open, code == SQLITE_OK);
    return code == SQLITE_OK;
}

bool SqlCipherDriver::inTransaction() const
{
    return sqlite3_get_autocommit(m_database) == 0;
}

void SqlCipherDriver::followTransaction(bool wasOpen, bool succeeded)
{
    if (inTransaction())
        m_rolledBack = false;
    else if (wasOpen && !succeeded)
        m_rolledBack = true;
}

QStringList SqlCipherDriver::tables(QSql::TableType type) const
{
    if (!isOpen())
        return {};
    QStringList kinds;
    if (type & QSql::Tables)
        kinds.append(QStringLiteral("'table'"));
    if (type & QSql::Views)
        kinds.append(QStringLiteral("'view'"));
    QStringList names;
    QSqlQuery query(createResult());
    if (!kinds.isEmpty())
        query.exec(QStringLiteral("SELECT name FROM sqlite_master WHERE type IN (%1) UNION ALL"
                                  " SELECT name FROM sqlite_temp_master WHERE type IN (%1)")
                       .arg(kinds.join(QLatin1Char(','))));
    while (query.next())
        names.append(query.value(0).toString());
    if (type & QSql::SystemTables)
        names.append(QStringLiteral("sqlite_master"));
    return names;
}

QSqlRecord SqlCipherDriver::record(const QString& table) const
{
    return columnsOf(table, false);
}

QSqlIndex SqlCipherDriver::primaryIndex(const QString& table) const
{
    QSqlIndex index;
    const QSqlRecord columns = columnsOf(table, true);
    for (int i = 0; i < columns.count(); ++i)
        index.append(columns.field(i));
    return index;
}

QSqlRecord SqlCipherDriver::columnsOf(const QString& table, bool primaryKeyOnly) const
{
    enum Column { Name = 1, DeclaredType = 2, NotNull = 3, Default = 4, PrimaryKey = 5 };
    QSqlRecord columns;
    QSqlQuery query(createResult());
    query.exec(tableInfo(table));
    while (query.next()) {
        if (primaryKeyOnly && query.value(PrimaryKey).toInt() == 0)
            continue;
        const QString declaredType = query.value(DeclaredType).toString();
        QSqlField field(query.value(Name).toString(), fieldTypeOf(declaredType),
                        stripDelimiters(table, TableName));
        field.setRequired(query.value(NotNull).toBool());
        field.setDefaultValue(defaultOf(query.value(Default)));
        field.setAutoValue(query.value(PrimaryKey).toInt() != 0
                           && declaredType.compare(QLatin1String("integer"), Qt::CaseInsensitive)
                               == 0);
        columns.append(field);
    }
    return columns;
}

// The statement that lists the table's columns; the schema stands before the pragma's own name.
QString SqlCipherDriver::tableInfo(const QString& table) const
{
    const int dot = table.startsWith(QLatin1Char('"')) ? -1 : table.indexOf(QLatin1Char('.'));
    const QString schema
        = dot < 0 ? QString() : escapeIdentifier(table.left(dot), FieldName) + QLatin1Char('.');
    return QStringLiteral("PRAGMA %1table_info(%2)")
        .arg(schema, escapeIdentifier(table.mid(dot + 1), TableName));
}

QString SqlCipherDriver::escapeIdentifier(const QString& identifier, IdentifierType type) const
{
    if (identifier.isEmpty() || isIdentifierEscaped(identifier, type) || isBracketed(identifier))
        return identifier;
    const int dot = type == TableName ? identifier.indexOf(QLatin1Char('.')) : -1;
    if (dot < 0)
        return quoted(identifier);
    return escapeIdentifier(identifier.left(dot), FieldName) + QLatin1Char('.')
        + escapeIdentifier(identifier.mid(dot + 1), type);
}

QVariant SqlCipherDriver::handle() const
{
    return QVariant::fromValue(m_database);
}
