#pragma once

#include "database/LogDelay.h"
#include "database/OpenConnection.h"

#include <QString>

#include <optional>

class DatabaseBase;

// The defaults database of the current version, attached to the calling thread's connection as
// "defaults" to the end of the scope. Not to be nested.
class AttachedDefaults
{
public:
    explicit AttachedDefaults(DatabaseBase& database);
    ~AttachedDefaults();
    Q_DISABLE_COPY_MOVE(AttachedDefaults)

    // False when the file is missing or cannot be read with the platform's key.
    bool areThere() const { return m_attached.has_value(); }

    // The statement that attaches them.
    static QString statement();

private:
    DatabaseBase& m_database;
    const OpenConnection m_connection;
    std::optional<LogDelay> m_attached;
};
