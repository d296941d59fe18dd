#include "app/RemoteControl.h"

#include "process/ProcessEnd.h"

#include <QDBusConnection>
#include <QDBusError>

namespace {
const QString serviceName = QStringLiteral("org.merivon.softwareUpdater");
const QString interfaceName = QStringLiteral("org.merivon.softwareUpdater");
const QString objectPath = QStringLiteral("/");
} // namespace

RemoteControl::Failures RemoteControl::registerOnBus()
{
    Failures failures;
    QDBusConnection bus = QDBusConnection::sessionBus();
    // The object first: who sees the name may call it at once.
    if (!bus.registerObject(objectPath, this, QDBusConnection::ExportScriptableSlots))
        failures.object = bus.lastError().message();
    if (!bus.registerService(serviceName))
        failures.service = bus.lastError().message();
    // By its string form: the bus connects to slots by name only. Not to a bus that has gone away
    // meanwhile: Qt would ask that for the service's owner, on which libdbus aborts.
    if (bus.isConnected())
        bus.connect(serviceName, objectPath, interfaceName, QStringLiteral("quitApp"), this,
                    SLOT(quitApp()));
    return failures;
}

void RemoteControl::quitApp()
{
    ProcessEnd::request();
    emit quitAsked();
}
