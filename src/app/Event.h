#pragma once

#include <QObject>

// The updater's remote control: on the session bus, service and interface
// "org.merivon.softwareUpdater", object "/", it takes the one method call `quitApp` (no arguments,
// no reply value) and a signal of that name and hands either on as shutTheAppDown().
class Event : public QObject
{
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.merivon.softwareUpdater")

public:
    // Registers the service and this object. What fails is logged at critical level and otherwise
    // ignored: without a bus, or beside a second copy of the program that holds the name, the
    // updater runs on without remote control. The registration ends with the object.
    explicit Event(QObject* parent = nullptr);

signals:
    void shutTheAppDown();

public slots:
    Q_SCRIPTABLE void quitApp();
};
