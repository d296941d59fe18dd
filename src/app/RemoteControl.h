#pragma once

#include <QObject>
#include <QString>

#include <optional>

// The side of Event that is on the bus. It lives on a thread of its own, so that a call is taken
// whatever the user-interface thread waits for.
class RemoteControl : public QObject
{
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.merivon.softwareUpdater")

public:
    // The bus's own words about what failed.
    struct Failures
    {
        std::optional<QString> service;
        std::optional<QString> object;
    };

    // Registers this object and the service on the session bus and, where there is one, listens to
    // the signal. Waits for the bus's answers. To be called on this object's thread.
    Failures registerOnBus();

signals:
    void quitAsked();

public slots:
    // Requests the end of the process and emits quitAsked().
    Q_SCRIPTABLE void quitApp();
};
