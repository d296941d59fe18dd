#pragma once

#include <QtGlobal>

#include <functional>

// Work of the log handler that has to wait for what its own thread has in hand, so that anything
// may be logged anywhere. While one of these lives, the handler leaves such work here; the end of
// the thread's last one of a reason does it, in order. A process that is killed meanwhile loses it.
class LogDelay
{
public:
    enum Reason {
        // The defaults are attached: a row for a table that the shared database lacks would land
        // in theirs. Keeps rows.
        Attachment,
        // A lock on the database. The handler takes one message at a time, and may wait for the
        // database with it: a thread that waited for the handler with a lock in hand, and one that
        // waits in the handler for that lock, would wait for ever. Keeps rows as well, and whole
        // messages where the handler is taken.
        Lock,
        ReasonCount
    };
    using Work = std::function<void()>;

    explicit LogDelay(Reason reason);
    ~LogDelay();
    Q_DISABLE_COPY_MOVE(LogDelay)

    // Whether there is one of this reason on the calling thread.
    static bool isNeeded(Reason reason);
    // Leaves the work to the end of the calling thread's last one of this reason, which must be.
    static void keep(Reason reason, Work work);
    // Whether any work was left to that end.
    static bool keepsAny(Reason reason);

private:
    struct Kept;

    static void begin(Reason reason);
    static void end(Reason reason);
    // What the calling thread has kept, null without a delay. A pointer, so that it can be asked
    // until the process is gone: static destructors log, too.
    static Kept*& kept(Reason reason);

    const Reason m_reason;
};
