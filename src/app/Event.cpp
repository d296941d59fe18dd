#include "app/Event.h"

#include <QDBusConnection>
#include <QDBusError>
#include <QDebug>

namespace {
const QString serviceName = QStringLiteral("org.merivon.softwareUpdater");
const QString interfaceName = QStringLiteral("org.merivon.softwareUpdater");
const QString objectPath = QStringLiteral("/");
} // namespace

Event::Event(QObject* parent) : QObject(parent)
{
    QDBusConnection bus = QDBusConnection::sessionBus();
    if (!bus.registerService(serviceName))
        qCritical() << "DBUS SERVICE NOT REGISTERED: " << bus.lastError().message();
    if (!bus.registerObject(objectPath, this, QDBusConnection::ExportScriptableSlots))
        qCritical() << "DBUS OBJECT NOT REGISTERED: " << bus.lastError().message();
    // By its string form: the bus connects to slots by name only.
    bus.connect(serviceName, objectPath, interfaceName, QStringLiteral("quitApp"), this,
                SLOT(quitApp()));
}

void Event::quitApp()
{
    emit shutTheAppDown();
}
