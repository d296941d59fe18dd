#pragma once

#include "Replay.h"
#include "sqlcipher/KeyCache.h"

#define SQLITE_HAS_CODEC // declares the function that takes a key
#include <sqlite3.h>

// The files of an encrypted database, opened as the next program does, but through the SQLCipher
// library, beside the updater's driver.
class OpenedFiles
{
public:
    OpenedFiles(const Files& files, const QByteArray& key)
    {
        writeFolder("/tmp/opened/", files);
        sqlite3_open(("/tmp/opened/" + files.firstKey().toUtf8()).constData(), &m_database);
        sqlite3_key(m_database, key.constData(), key.size());
    }
    ~OpenedFiles() { sqlite3_close(m_database); }
    Q_DISABLE_COPY_MOVE(OpenedFiles)

    // The rows, each with its values in apostrophes between commas. After an error nothing is run.
    QByteArrayList run(const QByteArray& sql)
    {
        QByteArrayList rows;
        if (fault.isEmpty()
            && sqlite3_exec(m_database, sql.constData(), takeRow, &rows, nullptr) != SQLITE_OK)
            fault = sqlite3_errmsg(m_database);
        return rows;
    }

    // Definitions and rows of all tables, if the database passes SQLite's own check.
    QByteArray content()
    {
        const QByteArray check = run("PRAGMA integrity_check").join(' ').simplified();
        if (fault.isEmpty() && check != "'ok'")
            fault = check;
        QByteArrayList lines = run("SELECT name, sql FROM sqlite_master ORDER BY name");
        const QByteArrayList tables
            = run("SELECT name FROM sqlite_master WHERE type = 'table' ORDER BY name");
        for (const QByteArray& table : tables)
            lines += run("SELECT " + table + ", * FROM " + table.mid(1, table.size() - 2));
        return lines.join('\n');
    }

    QByteArray fault; // the first error

private:
    static int takeRow(void* rows, int columns, char** values, char** /*names*/)
    {
        QByteArrayList row;
        for (int i = 0; i < columns; ++i)
            row += values[i] == nullptr ? QByteArray("NULL") : '\'' + QByteArray(values[i]) + '\'';
        *static_cast<QByteArrayList*>(rows) += row.join(',');
        return 0;
    }

    sqlite3* m_database = nullptr;
};

// Says of the states of a database how many of some transactions they hold.
class Judge
{
public:
    struct Finding
    {
        int transactions; // that the state holds, from the first on; -1 for a faulty one
        QByteArray fault;
    };

    // The files before the first transaction, and each transaction as SQL. No content may come back
    // after another.
    Judge(const Files& before, const QStringList& transactions) : m_key(keyOf(before.first()))
    {
        OpenedFiles files(before, m_key);
        m_contents += files.content();
        for (const QString& transaction : transactions) {
            files.run(transaction.toUtf8());
            m_contents += files.content();
        }
        if (!files.fault.isEmpty())
            qFatal("%s", files.fault.constData());
    }

    int transactions() const { return m_contents.size() - 1; }

    // A good state opens, passes SQLite's own check, and has all tables as before the first
    // transaction or as after one of them.
    Finding look(const Files& state) const
    {
        OpenedFiles files(state, m_key);
        const QByteArray content = files.content();
        const int found = files.fault.isEmpty() ? m_contents.indexOf(content) : -1;
        if (found >= 0)
            return {found, {}};
        return {-1, files.fault.isEmpty() ? "neither before nor after a transaction" : files.fault};
    }

private:
    // Derived once, as SQLCipher 3 does, since each opening with the pass phrase would cost tens of
    // milliseconds; in the raw form, with the salt at the head of the file.
    static QByteArray keyOf(const QByteArray& file)
    {
        return KeyCache::instance().rawKey(Dispenser::databaseKey.toUtf8(),
                                           file.left(KeyCache::saltSize));
    }

    QByteArray m_key;
    QByteArrayList m_contents; // before the first transaction and after each
};
