// Logs through the updater's message handler what its argument names; `messages` looks at what
// comes of it.
#include "Dispenser.h"
#include "app/Logger.h"
#include "app/MessageHandler.h"
#include "database/DatabaseBase.h"

#include <QCoreApplication>
#include <QDebug>

#include <thread>

namespace {

void logOneOfEach()
{
    qDebug("debug");
    qInfo("info");
    qWarning("warning Tür ☕");
    qCritical("critical");
    // The handler itself must live through it; Qt's own qFatal() ends the process after it.
    myMessageHandler(QtFatalMsg, {}, "fatal");
}

void logFromThreads()
{
    std::thread threads[8];
    for (int id = 0; id < 8; ++id) {
        threads[id] = std::thread([id] {
            for (int line = 0; line < 200; ++line)
                qDebug("%d %d", id, line);
        });
    }
    for (std::thread& thread : threads)
        thread.join();
}

// Everything that goes wrong with the database on the way into the table is itself logged.
void logIntoBrokenDatabase()
{
    Dispenser::writeFile(Dispenser::sharedDatabase, QByteArray(8192, 'x'));
    qWarning("through Qt");
    myMessageHandler(QtWarningMsg, {}, "directly");
    std::thread([] { qCritical("from a new thread"); }).join();
    for (int repeat = 0; repeat < 1001; ++repeat)
        qInfo("the flood's own look-up fails too");
    qDebug("still here");
}

// The lines of a change that others may hold up.
void logARestore()
{
    DatabaseBase().genericRestoreTable("dictionary");
}

void logMany(const QByteArray& kind, int count)
{
    for (int i = 0; i < count; ++i) {
        const bool other = kind == "alternating" && i % 2;
        const char* const text = other ? "other" : kind == "empty" ? "" : "same";
        kind == "info" ? qInfo("%s", text) : qDebug("%s", text);
    }
}

} // namespace

// logs levels | threads | broken | restore, or logs same | info | alternating | empty COUNT
int main(int argc, char** argv)
{
    if (argc < 2 || !Dispenser::isHere())
        return 1; // what it does may reboot the machine
    const QByteArray name = argv[1];
    QCoreApplication::setApplicationName("SoftwareUpdater");
    Logger::getLogDevMessages();
    qInstallMessageHandler(myMessageHandler);
    if (name == "levels")
        logOneOfEach();
    else if (name == "threads")
        logFromThreads();
    else if (name == "broken")
        logIntoBrokenDatabase();
    else if (name == "restore")
        logARestore();
    else
        logMany(name, atoi(argv[argc - 1]));
}
