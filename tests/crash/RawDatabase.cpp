#include "RawDatabase.h"

#include "Dispenser.h"

#include <openssl/evp.h>

#define SQLITE_HAS_CODEC // declares the function that takes a key
#include <sqlite3.h>

namespace {

int takeRow(void* rows, int columns, char** values, char** /*names*/)
{
    QByteArrayList row;
    for (int i = 0; i < columns; ++i)
        row.append(values[i] == nullptr ? QByteArray("NULL") : '\'' + QByteArray(values[i]) + '\'');
    static_cast<QByteArrayList*>(rows)->append(row.join(','));
    return 0;
}

} // namespace

QByteArray RawDatabase::keyOf(const QByteArray& content)
{
    constexpr int rounds = 64000; // as SQLCipher 3 derives its keys
    const QByteArray salt = content.left(16);
    const QByteArray phrase = Dispenser::databaseKey.toUtf8();
    QByteArray key(32, '\0');
    PKCS5_PBKDF2_HMAC_SHA1(phrase.constData(), phrase.size(),
                           reinterpret_cast<const unsigned char*>(salt.constData()), salt.size(),
                           rounds, key.size(), reinterpret_cast<unsigned char*>(key.data()));
    return "x'" + key.toHex() + salt.toHex() + "'";
}

RawDatabase::RawDatabase(const Files& files, const QByteArray& key)
{
    const QString copy = QStringLiteral("/tmp/looked-at");
    writeFolder(copy, files);
    const QByteArray path = copy.toUtf8() + '/' + files.firstKey(); // its journal comes after it
    if (sqlite3_open(path.constData(), &m_database) != SQLITE_OK)
        m_fault = sqlite3_errmsg(m_database);
    sqlite3_key(m_database, key.constData(), key.size());
}

RawDatabase::~RawDatabase()
{
    sqlite3_close(m_database);
}

QByteArrayList RawDatabase::run(const QByteArray& sql)
{
    QByteArrayList rows;
    if (m_fault.isEmpty()
        && sqlite3_exec(m_database, sql.constData(), takeRow, &rows, nullptr) != SQLITE_OK)
        m_fault = sqlite3_errmsg(m_database);
    return rows;
}

void RawDatabase::check()
{
    const QByteArrayList found = run("PRAGMA integrity_check");
    if (m_fault.isEmpty() && found != QByteArrayList {"'ok'"})
        m_fault = found.join(' ');
}

QByteArray RawDatabase::content()
{
    QByteArrayList lines = run("SELECT name, sql FROM sqlite_master ORDER BY name");
    const QByteArrayList tables
        = run("SELECT name FROM sqlite_master WHERE type = 'table' ORDER BY name");
    for (const QByteArray& table : tables)
        lines += run("SELECT " + table + ", * FROM " + table.mid(1, table.size() - 2));
    return lines.join('\n');
}
