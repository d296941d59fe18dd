#include "UpdaterInterface.h" // made from the description of the interface

#include <QCoreApplication>

// Asks the updater to quit as another program of the platform would. Status 1 when the call fails.
int main(int argc, char** argv)
{
    QCoreApplication app(argc, argv);
    org::merivon::softwareUpdater updater(QStringLiteral("org.merivon.softwareUpdater"),
                                          QStringLiteral("/"), QDBusConnection::sessionBus());
    QDBusPendingReply<> reply = updater.quitApp();
    reply.waitForFinished();
    return reply.isError() ? 1 : 0;
}
