#include "PlainDatabase.h"

#include "sqlcipher/KeyCache.h"

#include <QFile>

#include <stdexcept>

#define SQLITE_HAS_CODEC // declares the functions that take a key
#include <sqlite3.h>

namespace {

void require(bool condition, sqlite3* database)
{
    if (!condition)
        throw std::runtime_error(sqlite3_errmsg(database));
}

} // namespace

PlainDatabase::PlainDatabase(const QByteArray& path, const QByteArray& key)
{
    require(sqlite3_open(path.constData(), &m_database) == SQLITE_OK, m_database);
    require(sqlite3_key(m_database, key.constData(), key.size()) == SQLITE_OK, m_database);
}

PlainDatabase::~PlainDatabase()
{
    sqlite3_close(m_database);
}

QByteArray PlainDatabase::text(const QByteArray& sql)
{
    return PlainStatement(*this, sql).text();
}

void PlainDatabase::run(const QByteArray& sql)
{
    require(sqlite3_exec(m_database, sql.constData(), nullptr, nullptr, nullptr) == SQLITE_OK,
            m_database);
}

QByteArray PlainDatabase::rawKeyOf(const QByteArray& path)
{
    QFile file(QString::fromUtf8(path));
    if (!file.open(QIODevice::ReadOnly))
        throw std::runtime_error("cannot read " + path.toStdString());
    return KeyCache::instance().rawKey("d8pantry%", file.read(KeyCache::saltSize));
}

PlainStatement::PlainStatement(PlainDatabase& database, const QByteArray& sql)
    : m_database(database.m_database)
{
    require(sqlite3_prepare_v2(m_database, sql.constData(), sql.size(), &m_statement, nullptr)
                == SQLITE_OK,
            m_database);
}

PlainStatement::~PlainStatement()
{
    sqlite3_finalize(m_statement);
}

QByteArray PlainStatement::text()
{
    QByteArray result;
    const int code = sqlite3_step(m_statement);
    require(code == SQLITE_ROW || code == SQLITE_DONE, m_database);
    if (code == SQLITE_ROW)
        result = reinterpret_cast<const char*>(sqlite3_column_text(m_statement, 0));
    require(sqlite3_reset(m_statement) == SQLITE_OK, m_database);
    return result;
}
