#include "sqlcipher/SqlCipherResult.h"

#include "sqlcipher/KeyStatements.h"
#include "sqlcipher/SqlCipherBinding.h"
#include "sqlcipher/SqlCipherDriver.h"
#include "sqlcipher/SqlCipherError.h"
#include "sqlcipher/SqlCipherFields.h"

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
    m_boundByPosition = false;
    m_rowAhead = false;
    m_rowsAffected = -1;
    setActive(false);
    setAt(QSql::BeforeFirstRow);
}

QVariant SqlCipherResult::handle() const
{
    return QVariant::fromValue(m_statement);
}

bool SqlCipherResult::fail(const QSqlError& error)
{
    setLastError(error);
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
        return fail(driverError("The database is not open"));
    setSelect(false);
    // SQLite would run what stands before it.
    if (sql.contains(QChar::Null))
        return fail(driverError("The statement holds a NUL"));
    if (prepareAction(sql))
        return true;
    const QByteArray text = sql.toUtf8();
    const char* tail = nullptr;
    if (sqlite3_prepare_v2(m_driver->m_database, text.constData(), text.size() + 1, &m_statement,
                           &tail)
        != SQLITE_OK)
        return fail(sqlCipherError("Unable to execute statement", QSqlError::StatementError,
                                   m_driver->m_database));
    if (!QByteArray::fromRawData(tail, static_cast<int>(qstrlen(tail))).trimmed().isEmpty()) {
        finalize();
        return fail(driverError("Unable to execute multiple statements at a time"));
    }
    return true;
}

// Takes up what the driver does itself, true then. All else goes to SQLCipher as it is.
bool SqlCipherResult::prepareAction(const QString& sql)
{
    ConnectionKey& key = m_driver->m_key;
    if (const auto passPhrase = KeyStatements::passPhraseOf(sql))
        m_action = [&key, passPhrase] { return key.give(*passPhrase); };
    else if (const auto it = KeyStatements::attachmentOf(sql); it && key.isKnown())
        m_action = [&key, it] { return key.attach(it->file, it->schema); };
    else if (KeyStatements::givesKey(sql))
        key.forget();
    else if (KeyStatements::setsParameter(sql))
        key.expectParameters();
    return m_action != nullptr;
}

void SqlCipherResult::bindValue(int position, const QVariant& value, QSql::ParamType type)
{
    m_boundByPosition = true;
    QSqlResult::bindValue(position, value, type);
}

bool SqlCipherResult::exec()
{
    setLastError(QSqlError());
    setAt(QSql::BeforeFirstRow);
    setActive(false);
    setSelect(false);
    m_rowAhead = false;
    m_rowsAffected = -1;
    if (m_driver == nullptr || (m_statement == nullptr && m_action == nullptr)) {
        setAt(QSql::AfterLastRow);
        return fail(QSqlError(QStringLiteral("Unable to fetch row"), QStringLiteral("No query"),
                              QSqlError::ConnectionError));
    }
    if (!(m_action ? execAction() : execStatement()))
        return false;
    if (!isSelect())
        m_rowsAffected = sqlite3_changes(m_driver->m_database);
    setActive(true);
    return true;
}

bool SqlCipherResult::execAction()
{
    setAt(QSql::AfterLastRow);
    const QSqlError error = m_action();
    return !error.isValid() || fail(error);
}

bool SqlCipherResult::execStatement()
{
    sqlite3_reset(m_statement); // a statement that runs cannot be bound again
    if (!bindValues())
        return false;
    m_rowAhead = step();
    if (lastError().isValid())
        return false;
    setSelect(sqlite3_column_count(m_statement) > 0);
    m_record = recordOf(m_statement, m_rowAhead);
    return true;
}

// One run for each entry of the lists that are bound.
bool SqlCipherResult::execBatch(bool /*arrayBind*/)
{
    QVector<QVariant> lists;
    lists.swap(boundValues());
    const int runs = lists.value(0).toList().size();
    bool succeeded = !lists.isEmpty();
    for (int run = 0; run < runs && succeeded; ++run) {
        QVector<QVariant> values;
        for (const QVariant& list : qAsConst(lists))
            values.append(list.toList().value(run));
        boundValues().swap(values); // they keep their names, which bindValue() would not
        succeeded = exec();
    }
    boundValues().swap(lists);
    return succeeded;
}

bool SqlCipherResult::bindValues()
{
    const QVector<QVariant> values = valuesByParameter();
    if (values.size() != sqlite3_bind_parameter_count(m_statement))
        return fail(driverError("Parameter count mismatch"));
    for (int i = 0; i < values.size(); ++i) {
        if (bindSqlCipherValue(m_statement, i + 1, values.at(i)) != SQLITE_OK)
            return fail(sqlCipherError("Unable to bind parameters", QSqlError::StatementError,
                                       m_driver->m_database));
    }
    return true;
}

// The bound values in the order of SQLite's parameters, which has one for a name that stands in the
// statement twice, and none for a name in a comment. Qt counts both; values that were bound by
// position cannot be told apart then, and are all of them too many.
QVector<QVariant> SqlCipherResult::valuesByParameter() const
{
    const int parameters = sqlite3_bind_parameter_count(m_statement);
    if (boundValueCount() <= parameters || m_boundByPosition)
        return boundValues();
    QStringList names;
    for (int i = 0; i < boundValueCount(); ++i)
        names.append(boundValueName(i));
    QVector<QVariant> values;
    for (int i = 1; i <= parameters; ++i) {
        const QString name = QString::fromUtf8(sqlite3_bind_parameter_name(m_statement, i));
        if (names.contains(name))
            values.append(boundValue(name));
    }
    return values;
}

// True at a row; at the end and on an error false, then with the error set.
bool SqlCipherResult::step()
{
    const bool inTransaction = m_driver->inTransaction();
    const int code = sqlite3_step(m_statement);
    if (code == SQLITE_ROW)
        return true;
    if (code != SQLITE_DONE) {
        // The type that Qt's driver for SQLite gives as well.
        fail(sqlCipherError("Unable to fetch row", QSqlError::ConnectionError,
                            m_driver->m_database));
    }
    sqlite3_reset(m_statement); // lets go of the lock
    m_driver->followTransaction(inTransaction, code == SQLITE_DONE);
    setAt(QSql::AfterLastRow);
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
    if (!step())
        return false;
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
    return fail(driverError("The last row cannot be asked for"));
}

bool SqlCipherResult::hasColumn(int column) const
{
    return m_statement != nullptr && isValid() && column >= 0
        && column < sqlite3_column_count(m_statement);
}

QVariant SqlCipherResult::data(int column)
{
    return hasColumn(column) ? readSqlCipherValue(m_statement, column, numericalPrecisionPolicy())
                             : QVariant();
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
    return isActive() && isSelect() ? m_record : QSqlRecord();
}

void SqlCipherResult::detachFromResultSet()
{
    if (m_statement != nullptr)
        sqlite3_reset(m_statement);
    m_rowAhead = false;
}
