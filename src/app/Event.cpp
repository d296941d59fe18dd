#include "app/Event.h"

#include "app/RemoteControl.h"
#include "app/SessionBus.h"

#include <QDebug>

#include <chrono>
#include <future>

Event::Event(QObject* parent) : QObject(parent)
{
    if (!SessionBus::answers(std::chrono::seconds(2))) {
        qCritical() << "DBUS SESSION BUS DOES NOT ANSWER";
        SessionBus::doWithout();
    }
    auto* const control = new RemoteControl;
    control->moveToThread(&m_busThread);
    connect(&m_busThread, &QThread::finished, control, &QObject::deleteLater);
    connect(control, &RemoteControl::quitAsked, this, &Event::quitApp);
    std::promise<RemoteControl::Failures> answer;
    QMetaObject::invokeMethod(
        control, [&] { answer.set_value(control->registerOnBus()); }, Qt::QueuedConnection);
    m_busThread.start();

    const RemoteControl::Failures failures = answer.get_future().get();
    if (failures.service)
        qCritical() << "DBUS SERVICE NOT REGISTERED: " << *failures.service;
    if (failures.object)
        qCritical() << "DBUS OBJECT NOT REGISTERED: " << *failures.object;
}

Event::~Event()
{
    m_busThread.quit();
    m_busThread.wait();
}

void Event::quitApp()
{
    emit shutTheAppDown();
}
