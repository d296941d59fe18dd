#pragma once

#include "database/ThreadConnection.h"

#include <optional>

// Opens the calling thread's connection and keeps it open to the end of the scope, which closes it
// unless an outer scope of the thread still needs it. A failed opening shows in the log and in the
// statements that follow. To be destroyed by the thread that made it.
class OpenConnection
{
public:
    OpenConnection() : m_hold(std::in_place) { ThreadConnection::current().open(); }
    ~OpenConnection()
    {
        m_hold.reset();
        ThreadConnection::current().closeUnlessHeld();
    }
    Q_DISABLE_COPY_MOVE(OpenConnection)

private:
    std::optional<ThreadConnection::Hold> m_hold;
};
