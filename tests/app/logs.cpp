// Logs through the updater's message handler: `logs [LEVEL TEXT COUNT]...` what it is told to,
// `logs restore` the lines of a restore of the settings, which others may hold up.
#include "Dispenser.h"
#include "app/Logger.h"
#include "app/MessageHandler.h"
#include "database/DatabaseBase.h"

#include <QCoreApplication>
#include <QMap>

int main(int argc, char** argv)
{
    if (argc < 2 || !Dispenser::isHere())
        return 1; // what it does may reboot the machine
    QCoreApplication::setApplicationName("SoftwareUpdater");
    Logger::getLogDevMessages();
    qInstallMessageHandler(myMessageHandler);
    if (qstrcmp(argv[1], "restore") == 0)
        DatabaseBase().genericRestoreTable("dictionary");

    const QMap<QByteArray, QtMsgType> levels {{"debug", QtDebugMsg},
                                              {"info", QtInfoMsg},
                                              {"warning", QtWarningMsg},
                                              {"critical", QtCriticalMsg},
                                              {"fatal", QtFatalMsg}};
    for (int i = 1; i + 2 < argc; i += 3) {
        // Not by way of Qt's qFatal(), which ends the process.
        for (int count = atoi(argv[i + 2]); count > 0; --count)
            myMessageHandler(levels[argv[i]], {}, argv[i + 1]);
    }
}
