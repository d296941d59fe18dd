#pragma once

#include <QSqlDatabase>
#include <QString>

// The calling thread's connection to the shared database: registered with Qt under the thread's
// name, opened and closed around the statements, and kept open by whoever is in the middle of
// something. What its scopes hold lies in one object for each thread.
class ThreadConnection
{
public:
    static ThreadConnection& current();

    // The calling thread's name in Qt's registry: its native identifier cut to 32 bits, as a signed
    // decimal number.
    static QString name();

    // Registers the connection, with a line in the log, unless this thread has done so already.
    void ensureRegistered();

    // As registered; invalid before. Not opened by this.
    static QSqlDatabase database();

    // Registers and opens it if need be, and gives it its key. True when it is open afterwards.
    bool open();
    // Closes it at once, whoever holds it. True when it is still open afterwards.
    bool close();
    void closeUnlessHeld();

    // Keeps the connection, open or not, from being closed behind a statement that runs: the log
    // handler may write lines of this very statement into the database, over the same connection.
    class Hold
    {
    public:
        Hold() { ++current().m_holds; }
        ~Hold() { --current().m_holds; }
        Q_DISABLE_COPY_MOVE(Hold)
    };

private:
    ThreadConnection() = default;

    int m_holds = 0;
    // The system gives the identifier of a dead thread to a later one, which then finds a
    // connection of its own name that Qt will not let it use: so whether it is this thread's own.
    bool m_registered = false;
};
