#pragma once

#include <QObject>
#include <QThread>

class QDeadlineTimer;

// The updater's remote control: on the session bus, service and interface
// "org.merivon.softwareUpdater", object "/", it takes the one method call `quitApp` (no arguments,
// no reply value) and a signal of that name and hands either on as shutTheAppDown().
class Event : public QObject
{
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.merivon.softwareUpdater")

public:
    // Registers the service and the object. What fails is logged at critical level and otherwise
    // ignored: without a bus, beside a second copy of the program that holds the name, or when all
    // this is not done within two seconds, the updater runs on without remote control. The
    // object's registration ends with this object. The bus is served on a thread of its own, where
    // a call is a ProcessEnd::request() at once; shutTheAppDown() comes on this object's thread.
    explicit Event(QObject* parent = nullptr);
    ~Event() override;

signals:
    void shutTheAppDown();

public slots:
    Q_SCRIPTABLE void quitApp();

private:
    // Registers on the bus's thread. False when that was not done within the time, or when there is
    // no thread: then there is no remote control.
    bool serveBus(const QDeadlineTimer& deadline);

    QThread m_busThread;
};
