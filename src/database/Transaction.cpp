#include "database/Transaction.h"

#include "database/DatabaseBase.h"
#include "database/SqlQuery.h"

Transaction::Transaction(DatabaseBase& database) : m_database(database)
{
    m_open = m_database.genericQuery(QStringLiteral("BEGIN"));
    if (m_open)
        takeWriteLock();
}

// Waiting for it later, with a read lock in hand, could last for ever. BEGIN IMMEDIATE would lock
// an attached database too, which need not be writable, and spread the transaction over two files.
void Transaction::takeWriteLock()
{
    SqlQuery query;
    // Takes the lock and, in a database without auto-vacuum, does nothing else.
    query.prepare(QStringLiteral("PRAGMA main.incremental_vacuum(1)"));
    if (query.exec())
        m_lockTaken.emplace(LogDelay::Lock); // not before: to wait for the lock is not to have it
}

Transaction::~Transaction()
{
    // Not as a statement: after some failures, such as a full disk, SQLite has done it itself, and
    // then it would fail. The connection's end would roll back as well.
    if (m_open)
        ThreadConnection::database().rollback();
}

bool Transaction::commit()
{
    const bool committed = m_database.genericQuery(QStringLiteral("COMMIT"));
    m_open = !committed;
    return committed;
}
