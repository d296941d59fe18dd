#include "sqlcipher/SqlCipherResult.h"

#include "sqlcipher/KeyStatements.h"
#include "sqlcipher/SqlCipherBinding.h"
#include "sqlcipher/SqlCipherDriver.h"
#include "sqlcipher/SqlCipherError.h"

#include <QSqlField>

#include <sqlite3.h>

SqlCipherResult::SqlCipherResult(const SqlCipherDriver* driver)
    : QSqlResult(driver),
      m_driver(const_cast<SqlCipherDriver*>(driver)) // Qt creates results through a const driver
{
    m_driver->m_results.append(this);
    QSqlResult::setForwardOnly(true);
}

SqlCipherResult::~SqlCipherResult()
{
    finalize();
    if (m_driver != nullptr)
        m_driver->m_results.removeOne(this);
}

void SqlCipherResult::finalize()
{
    sqlite3_finalize(m_statement);
    m_statement = nullptr;
    m_action = nullptr;
    m_rowAhead = false;
    m_rowsAffected = -1;
    setActive(false);
    setAt(QSql::BeforeFirstRow);
}

QVariant SqlCipherResult::handle() const
{
    return QVariant::fromValue(m_statement);
}

bool SqlCipherResult::fail(const char* what)
{
    setLastError(sqlCipherError(what, QSqlError::StatementError, m_driver->m_database));
    return false;
}

bool SqlCipherResult::failWithoutDatabase(const char* what)
{
    setLastError(QSqlError(QString::fromLatin1(what), QString(), QSqlError::StatementError));
    return false;
}

void SqlCipherResult::setForwardOnly(bool /*forward*/)
{
    QSqlResult::setForwardOnly(true);
}

bool SqlCipherResult::reset(const QString& sql)
{
    return prepare(sql) && exec();
}

bool SqlCipherResult::prepare(const QString& sql)
{
    finalize();
    if (m_driver == nullptr || m_driver->m_database == nullptr)
        return failWithoutDatabase("The database is not open");
    setSelect(false);
    if (prepareAction(sql))
        return true;
    const QByteArray text = sql.toUtf8();
    const char* tail = nullptr;
    if (sqlite3_prepare_v2(m_driver->m_database, text.constData(), text.size() + 1, &m_statement,
                           &tail)
        != SQLITE_OK)
        return fail("Unable to prepare statement");
    if (!QByteArray::fromRawData(tail, static_cast<int>(qstrlen(tail))).trimmed().isEmpty()) {
        finalize();
        return failWithoutDatabase("Unable to execute multiple statements at a time");
    }
    if (m_statement == nullptr)
        return failWithoutDatabase("There is no statement");
    return true;
}

bool SqlCipherResult::prepareAction(const QString& sql)
{
    if (const auto passPhrase = KeyStatements::passPhraseOf(sql)) {
        m_action = [this, key = *passPhrase] {
            return m_driver->giveKey(key) == SQLITE_OK || fail("Unable to give the key");
        };
    } else if (const auto attachment = KeyStatements::attachmentOf(sql)) {
        m_action = [this, it = *attachment] {
            return m_driver->attach(it.file, it.schema) == SQLITE_OK
                || fail("Unable to attach database");
        };
    }
    return m_action != nullptr;
}

bool SqlCipherResult::exec()
{
    if (m_driver == nullptr || (m_statement == nullptr && m_action == nullptr))
        return failWithoutDatabase("There is no statement");
    setLastError(QSqlError());
    setAt(QSql::BeforeFirstRow);
    setActive(false);
    if (!m_action)
        return execStatement();
    setActive(m_action());
    return isActive();
}

bool SqlCipherResult::execStatement()
{
    sqlite3_reset(m_statement); // a statement that runs cannot be bound again
    m_rowAhead = false;
    if (!bindValues())
        return false;
    m_rowAhead = step();
    if (lastError().isValid())
        return false;
    setSelect(sqlite3_column_count(m_statement) > 0);
    m_rowsAffected = isSelect() ? -1 : sqlite3_changes(m_driver->m_database);
    setActive(true);
    return true;
}

bool SqlCipherResult::bindValues()
{
    const int parameters = sqlite3_bind_parameter_count(m_statement);
    for (int i = 1; i <= parameters; ++i) {
        const char* name = sqlite3_bind_parameter_name(m_statement, i);
        // Named in any case: Qt gives each "?" a name of its own.
        const QVariant value = boundValue(QString::fromUtf8(name));
        if (bindSqlCipherValue(m_statement, i, value) != SQLITE_OK)
            return fail("Unable to bind parameters");
    }
    if (bindingSyntax() == PositionalBinding && boundValueCount() > parameters)
        return failWithoutDatabase("Parameter count mismatch");
    return true;
}

// True at a row; at the end and on an error false, then with the error set.
bool SqlCipherResult::step()
{
    const int code = sqlite3_step(m_statement);
    if (code == SQLITE_ROW)
        return true;
    if (code != SQLITE_DONE)
        fail("Unable to fetch row");
    sqlite3_reset(m_statement); // lets go of the lock
    return false;
}

bool SqlCipherResult::fetchFirst()
{
    if (!m_rowAhead)
        return false;
    m_rowAhead = false;
    setAt(0);
    return true;
}

bool SqlCipherResult::fetchNext()
{
    if (m_statement == nullptr || at() < 0)
        return false;
    if (!step()) {
        setAt(QSql::AfterLastRow);
        return false;
    }
    setAt(at() + 1);
    return true;
}

bool SqlCipherResult::fetch(int row)
{
    if (row < 0 || (at() != QSql::BeforeFirstRow && row < at()))
        return false;
    while (at() < row) {
        if (!(at() == QSql::BeforeFirstRow ? fetchFirst() : fetchNext()))
            return false;
    }
    return true;
}

bool SqlCipherResult::fetchLast()
{
    // SQLite tells the last row only by what follows it, and there is no way back.
    return failWithoutDatabase("The last row cannot be asked for");
}

bool SqlCipherResult::hasColumn(int column) const
{
    return m_statement != nullptr && isValid() && column >= 0
        && column < sqlite3_column_count(m_statement);
}

QVariant SqlCipherResult::data(int column)
{
    return hasColumn(column) ? readSqlCipherValue(m_statement, column) : QVariant();
}

bool SqlCipherResult::isNull(int column)
{
    return !hasColumn(column) || sqlite3_column_type(m_statement, column) == SQLITE_NULL;
}

int SqlCipherResult::size()
{
    return -1; // not known before the last row
}

int SqlCipherResult::numRowsAffected()
{
    return m_rowsAffected;
}

QVariant SqlCipherResult::lastInsertId() const
{
    if (!isActive() || m_driver == nullptr || m_driver->m_database == nullptr)
        return {};
    const sqlite3_int64 id = sqlite3_last_insert_rowid(m_driver->m_database);
    return id != 0 ? QVariant(static_cast<qint64>(id)) : QVariant();
}

QSqlRecord SqlCipherResult::record() const
{
    QSqlRecord columns;
    if (!isActive() || !isSelect() || m_statement == nullptr)
        return columns;
    for (int i = 0; i < sqlite3_column_count(m_statement); ++i) {
        const char* declared = sqlite3_column_decltype(m_statement, i);
        columns.append(QSqlField(QString::fromUtf8(sqlite3_column_name(m_statement, i)),
                                 typeOf(QString::fromUtf8(declared))));
    }
    return columns;
}

void SqlCipherResult::detachFromResultSet()
{
    if (m_statement != nullptr)
        sqlite3_reset(m_statement);
    m_rowAhead = false;
}

QVariant::Type SqlCipherResult::typeOf(const QString& declaredType)
{
    const QString type = declaredType.toLower();
    if (type.contains(QLatin1String("int")) || type.startsWith(QLatin1String("bool")))
        return QVariant::LongLong;
    if (type == QLatin1String("real") || type.startsWith(QLatin1String("double"))
        || type.startsWith(QLatin1String("float")) || type.startsWith(QLatin1String("numeric")))
        return QVariant::Double;
    if (type == QLatin1String("blob"))
        return QVariant::ByteArray;
    return QVariant::String;
}
