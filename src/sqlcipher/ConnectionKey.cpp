#include "sqlcipher/ConnectionKey.h"

#include "sqlcipher/KeyCache.h"
#include "sqlcipher/SqlCipherError.h"

#include <memory>

#define SQLITE_HAS_CODEC // declares the functions that take a key
#include <sqlite3.h>

namespace {

struct CloseDatabase
{
    void operator()(sqlite3* database) const { sqlite3_close(database); }
};

struct FinalizeStatement
{
    void operator()(sqlite3_stmt* statement) const { sqlite3_finalize(statement); }
};

using Statement = std::unique_ptr<sqlite3_stmt, FinalizeStatement>;

// Null on an error.
Statement prepared(sqlite3* database, const char* sql)
{
    sqlite3_stmt* statement = nullptr;
    sqlite3_prepare_v2(database, sql, -1, &statement, nullptr);
    return Statement(statement);
}

void bindText(const Statement& statement, int parameter, const QByteArray& text)
{
    sqlite3_bind_text(statement.get(), parameter, text.constData(), text.size(), SQLITE_STATIC);
}

// The salt at the head of an open database's file, read through SQLite's own handle of it: a
// descriptor of our own would, when closed, drop all locks that this process has on the file.
// Empty for a file that holds no salt yet.
QByteArray saltOf(sqlite3* database)
{
    sqlite3_file* file = nullptr;
    sqlite3_file_control(database, "main", SQLITE_FCNTL_FILE_POINTER, &file);
    QByteArray salt(KeyCache::saltSize, '\0');
    if (file == nullptr || file->pMethods == nullptr
        || file->pMethods->xRead(file, salt.data(), salt.size(), 0) != SQLITE_OK)
        return {};
    return salt;
}

QByteArray saltOfFile(const QByteArray& path)
{
    sqlite3* opened = nullptr;
    const int code = sqlite3_open_v2(path.constData(), &opened, SQLITE_OPEN_READONLY, nullptr);
    const std::unique_ptr<sqlite3, CloseDatabase> database(opened);
    return code == SQLITE_OK ? saltOf(database.get()) : QByteArray();
}

// Whether SQLCipher would derive a key as KeyCache does; its defaults are the whole process's.
bool derivesAsUsual(sqlite3* database)
{
    const Statement statement = prepared(database, "PRAGMA cipher_default_kdf_iter");
    return statement != nullptr && sqlite3_step(statement.get()) == SQLITE_ROW
        && sqlite3_column_int(statement.get(), 0) == KeyCache::rounds;
}

// Reads the head of the file: SQLITE_NOTADB when the key is wrong.
int probe(sqlite3* database)
{
    return sqlite3_exec(database, "PRAGMA schema_version", nullptr, nullptr, nullptr);
}

// Without it a power cut right behind a commit may take the commit back: the journal's removal is
// what commits, and by default it is not synced. Costs a sync of the folder for each commit. A
// setting of the connection, which takes an open file.
void makeCommitsLast(sqlite3* database)
{
    sqlite3_exec(database, "PRAGMA synchronous=EXTRA", nullptr, nullptr, nullptr);
}

} // namespace

void ConnectionKey::setDatabase(sqlite3* database)
{
    m_database = database;
    forget();
}

void ConnectionKey::forget()
{
    m_passPhrase.reset();
    m_raw = false;
    m_opened = false;
}

QSqlError ConnectionKey::give(const QByteArray& passPhrase)
{
    const QByteArray salt = saltOf(m_database);
    const bool repeated = m_passPhrase == passPhrase;
    if (repeated && salt.isEmpty())
        return {}; // a new file, which a transaction may be filling
    // A file of other parameters may have been read since.
    if (QSqlError failed = tryPending(); failed.isValid())
        return failed;
    if (m_opened)
        return repeated ? QSqlError() : driverError("The database was opened with another key");
    m_passPhrase = passPhrase;
    const QByteArray key = keyFor(salt);
    m_raw = key != passPhrase;
    if (QSqlError failed = setKey(key); failed.isValid() || !m_raw)
        return failed; // SQLCipher derives its key when it reads, so that parameters can be set
    return tryPending();
}

// Finds out whether the key opens the file. That it does not is no error here, a lock is one.
QSqlError ConnectionKey::tryPending()
{
    if (!m_passPhrase || m_opened)
        return {};
    const int code = probe(m_database);
    m_opened = code == SQLITE_OK;
    if (m_opened)
        makeCommitsLast(m_database);
    return m_opened || code == SQLITE_NOTADB ? QSqlError() : error("Unable to give the key");
}

void ConnectionKey::expectParameters()
{
    if (!m_raw || m_opened)
        return;
    m_raw = false;
    setKey(*m_passPhrase);
}

QSqlError ConnectionKey::attach(const QByteArray& file, const QByteArray& schema) const
{
    // Without a key of its own the file would get the raw key, and with it the salt, of this
    // connection's file.
    const QByteArray key = keyFor(saltOfFile(file));
    const Statement statement = prepared(m_database, "ATTACH ?1 AS ?2 KEY ?3");
    if (statement == nullptr)
        return error("Unable to attach database");
    bindText(statement, 1, file);
    bindText(statement, 2, schema);
    bindText(statement, 3, key);
    const bool attached = sqlite3_step(statement.get()) == SQLITE_DONE;
    return attached ? QSqlError() : error("Unable to attach database");
}

// What to give SQLCipher for a file of this salt: the raw key where it is known, else the pass
// phrase, which SQLCipher derives a key from with whatever parameters are set.
QByteArray ConnectionKey::keyFor(const QByteArray& salt) const
{
    QByteArray raw;
    if (!salt.isEmpty() && derivesAsUsual(m_database))
        raw = KeyCache::instance().rawKey(*m_passPhrase, salt);
    return raw.isEmpty() ? *m_passPhrase : raw;
}

QSqlError ConnectionKey::setKey(const QByteArray& key)
{
    const int code = sqlite3_key(m_database, key.constData(), key.size());
    return code == SQLITE_OK ? QSqlError() : error("Unable to give the key");
}

QSqlError ConnectionKey::error(const char* what) const
{
    return sqlCipherError(what, QSqlError::StatementError, m_database);
}
