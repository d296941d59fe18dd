#pragma once

#include "database/LogDelay.h"
#include "database/OpenConnection.h"

#include <optional>

class DatabaseBase;

// A transaction on the calling thread's connection that has the shared database's write lock from
// its beginning, which waits for it. Rolled back at the end of the scope, or when the process dies,
// unless it was committed. Not to be nested.
class Transaction
{
public:
    explicit Transaction(DatabaseBase& database);
    ~Transaction();
    Q_DISABLE_COPY_MOVE(Transaction)

    // False when it could not be begun, with the reason in the log; there is nothing to do then.
    bool hasBegun() const { return m_lockTaken.has_value(); }

    // Waits for those who read. False, with the reason in the log, when nothing was changed.
    bool commit();

private:
    void takeWriteLock();

    DatabaseBase& m_database;
    const OpenConnection m_connection;
    std::optional<LogDelay> m_lockTaken;
    bool m_open = false;
};
