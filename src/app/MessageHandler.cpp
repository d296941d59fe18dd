#include "app/MessageHandler.h"

#include "app/Logger.h"
#include "app/StandardOutput.h"
#include "database/LogDelay.h"
#include "database/SystemMessage.h"
#include "database/TableDictionary.h"
#include "database/TableMessages.h"
#include "process/ShellCommand.h"

#include <QCoreApplication>
#include <QDateTime>

#include <mutex>

namespace {

struct Level
{
    const char* tag; // in the log line; null: not written
    const char* word; // in the system-message table; null: not copied
};

// The colon after "Debug" alone is kept: log readers split lines by these tags.
Level levelOf(QtMsgType type)
{
    switch (type) {
    case QtDebugMsg:
        return {" Debug : ", nullptr};
    case QtWarningMsg:
        return {" Warning ", "Warning"};
    case QtCriticalMsg:
        return {" Critical ", "Critical"};
    case QtFatalMsg:
        return {" Fatal ", "Fatal"};
    case QtInfoMsg:
        break;
    }
    return {nullptr, nullptr};
}

void writeLine(const QDateTime& time, const Level& level, const QString& text)
{
    if (level.tag)
        StandardOutput::write(SystemMessage::toText(time).toUtf8() + level.tag + text.toUtf8()
                              + '\n');
}

void reactToFlood(const QDateTime& time)
{
    TableDictionary dictionary(nullptr);
    StandardOutput::write(SystemMessage::toText(time).toUtf8()
                          + " Message flood detected, rebooting...\n");
    const QString rebootHour = dictionary.getDictionaryValue(QStringLiteral("rebootHour"));
    if (rebootHour.toInt() < 0) {
        // Without a line end, and so in front of the next line: kept, as log readers know it.
        StandardOutput::write("REBOOT DISABLED!!!");
        return;
    }
    // Not through the script launcher: it logs, and this runs inside the log.
    runInShell("reboot");
}

// What one message at a time may use.
struct Handling
{
    std::mutex mutex;
    QString lastMessage;
    quint64 lastMessageCount = 0; // repeats in a row of lastMessage after its first occurrence

    void guardAgainstFlood(const QDateTime& time, const QString& text)
    {
        if (text != lastMessage) {
            lastMessage = text;
            lastMessageCount = 0;
        } else if (++lastMessageCount > 999) {
            reactToFlood(time);
        }
    }
};

// A thread's turn in the handler.
class Turn
{
public:
    Turn() : m_lock(handling().mutex) { ours = true; } // waits for it
    explicit Turn(std::try_to_lock_t) : m_lock(handling().mutex, std::try_to_lock)
    {
        ours = m_lock.owns_lock();
    }
    ~Turn() { ours = false; }
    Q_DISABLE_COPY_MOVE(Turn)

    bool hasCome() const { return m_lock.owns_lock(); }

    Handling* operator->() const { return &handling(); }

    // Whether it is the calling thread's.
    static bool isOurs() { return ours; }

private:
    inline static thread_local bool ours = false;

    // Never destroyed: static destructors and detached workers log until the process is gone.
    static Handling& handling()
    {
        static auto* const instance = new Handling;
        return *instance;
    }

    const std::unique_lock<std::mutex> m_lock;
};

void insertRow(const QDateTime& time, const Level& level, const QString& text)
{
    // The level goes into the name column and the program into the type column, the reverse of
    // every other system message: kept, the service pages tell log copies by it.
    if (Logger::logDevMessages)
        TableMessages::insertSystemMessage(QLatin1String(level.word),
                                           QCoreApplication::applicationName(), text, time);
}

void copyToTable(const QDateTime& time, const Level& level, const QString& text)
{
    if (!Logger::logDevMessages || !level.word)
        return;
    if (!LogDelay::isNeeded(LogDelay::Attachment)) {
        insertRow(time, level, text);
        return;
    }
    LogDelay::keep(LogDelay::Attachment, [time, level, text] {
        const Turn turn;
        insertRow(time, level, text);
    });
}

void handle(const Turn& turn, const QDateTime& time, QtMsgType type, const QString& text)
{
    const Level level = levelOf(type);
    writeLine(time, level, text);
    copyToTable(time, level, text);
    turn->guardAgainstFlood(time, text);
}

// What a thread logs with a lock on the database in hand must not wait for its turn, but is told at
// once where it need not: a lock that is waited for is seen as such, also by whoever ends the wait.
// Kept in its place behind the first that could not be told.
void handleWithLock(const QDateTime& time, QtMsgType type, const QString& text)
{
    const Turn turn(std::try_to_lock);
    if (turn.hasCome() && !LogDelay::keepsAny(LogDelay::Lock))
        handle(turn, time, type, text);
    else if (type == QtFatalMsg)
        writeLine(time, levelOf(type), text); // Qt ends the process behind it: there is no later
    else
        LogDelay::keep(LogDelay::Lock, [time, type, text] { handle(Turn(), time, type, text); });
}

} // namespace

void myMessageHandler(QtMsgType type, const QMessageLogContext& /*context*/, const QString& msg)
{
    if (Turn::isOurs()) {
        writeLine(QDateTime::currentDateTime(), levelOf(type), msg);
    } else if (LogDelay::isNeeded(LogDelay::Lock)) {
        handleWithLock(QDateTime::currentDateTime(), type, msg);
    } else {
        const Turn turn;
        handle(turn, QDateTime::currentDateTime(), type, msg);
    }
}
