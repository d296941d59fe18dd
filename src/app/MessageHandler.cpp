#include "app/MessageHandler.h"

#include "app/Logger.h"
#include "app/StandardOutput.h"
#include "database/TableDictionary.h"
#include "database/TableMessages.h"

#include <QCoreApplication>
#include <QDateTime>
#include <QScopedValueRollback>

#include <cstdlib>
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

QByteArray timeStamp()
{
    return QDateTime::currentDateTime().toString(QStringLiteral("dd-MM-yy hh:mm:ss")).toLatin1();
}

void writeLine(const QByteArray& time, const Level& level, const QString& text)
{
    if (level.tag)
        StandardOutput::write(time + level.tag + text.toUtf8() + '\n');
}

void copyToTable(const Level& level, const QString& text)
{
    // The level goes into the name column and the program into the type column, the reverse of
    // every other system message: kept, the service pages tell log copies by it.
    if (Logger::logDevMessages && level.word)
        TableMessages::insertSystemMessage(QLatin1String(level.word),
                                           QCoreApplication::applicationName(), text);
}

void reactToFlood(const QByteArray& time)
{
    TableDictionary dictionary(nullptr);
    StandardOutput::write(time + " Message flood detected, rebooting...\n");
    const QString rebootHour = dictionary.getDictionaryValue(QStringLiteral("rebootHour"));
    if (rebootHour.toInt() < 0) {
        // Without a line end, and so in front of the next line: kept, as log readers know it.
        StandardOutput::write("REBOOT DISABLED!!!");
        return;
    }
    // Not through the script launcher: it logs, and this runs inside the log.
    [[maybe_unused]] const int status = std::system("reboot");
}

// What one message at a time may use.
struct Handling
{
    std::mutex mutex;
    QString lastMessage;
    quint64 lastMessageCount = 0; // repeats in a row of lastMessage after its first occurrence

    void guardAgainstFlood(const QByteArray& time, const QString& text)
    {
        if (text != lastMessage) {
            lastMessage = text;
            lastMessageCount = 0;
        } else if (++lastMessageCount > 999) {
            reactToFlood(time);
        }
    }
};

// Never destroyed: static destructors and detached workers log until the process is gone.
Handling& handling()
{
    static auto* const instance = new Handling;
    return *instance;
}

thread_local bool handlingOnThisThread = false;

} // namespace

void myMessageHandler(QtMsgType type, const QMessageLogContext& /*context*/, const QString& msg)
{
    const Level level = levelOf(type);
    if (handlingOnThisThread) {
        writeLine(timeStamp(), level, msg);
        return;
    }
    const QScopedValueRollback<bool> nestedCallsOnlyWrite(handlingOnThisThread, true);
    Handling& shared = handling();
    const std::lock_guard oneAtATime(shared.mutex);
    const QByteArray time = timeStamp();
    writeLine(time, level, msg);
    copyToTable(level, msg);
    shared.guardAgainstFlood(time, msg);
}
