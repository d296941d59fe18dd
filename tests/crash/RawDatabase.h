#pragma once

#include "Replay.h"

#include <QByteArrayList>

struct sqlite3;

// The files of an encrypted database, opened through the SQLCipher library, beside the updater's
// driver, as the next program does: what a journal left open is rolled back. The first error is the
// fault, and nothing is run after it.
class RawDatabase
{
public:
    // The key of a database in the form that costs nothing when it is opened, from the pass phrase
    // and the salt at the head of the file.
    static QByteArray keyOf(const QByteArray& content);

    // Opens a copy of the files with such a key.
    RawDatabase(const Files& files, const QByteArray& key);
    ~RawDatabase();
    Q_DISABLE_COPY_MOVE(RawDatabase)

    // The rows, each with its values in apostrophes between commas.
    QByteArrayList run(const QByteArray& sql);
    // SQLite's integrity check, with the authentication of each page.
    void check();
    // Definitions and rows of all tables.
    QByteArray content();
    // Empty when all went well.
    QByteArray fault() const { return m_fault; }

private:
    sqlite3* m_database = nullptr;
    QByteArray m_fault;
};
