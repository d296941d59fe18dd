#include "app/Event.h"

#include "app/RemoteControl.h"
#include "app/SessionBus.h"

#include <QDebug>

#include <QDeadlineTimer>

#include <chrono>
#include <future>
#include <memory>

namespace {

void tell(const RemoteControl::Failures& failures)
{
    if (failures.service)
        qCritical() << "DBUS SERVICE NOT REGISTERED: " << *failures.service;
    if (failures.object)
        qCritical() << "DBUS OBJECT NOT REGISTERED: " << *failures.object;
}

void tellOfSilence()
{
    qCritical() << "DBUS SESSION BUS DOES NOT ANSWER";
}

} // namespace

Event::Event(QObject* parent) : QObject(parent)
{
    const QDeadlineTimer deadline(std::chrono::milliseconds(2000));
    const bool answers = SessionBus::answers(QDeadlineTimer(std::chrono::milliseconds(1800)));
    if (!answers) {
        tellOfSilence();
        SessionBus::doWithout();
    }
    if (!serveBus(deadline) && answers)
        tellOfSilence();
}

bool Event::serveBus(const QDeadlineTimer& deadline)
{
    auto* const control = new RemoteControl;
    control->moveToThread(&m_busThread);
    connect(&m_busThread, &QThread::finished, control, &QObject::deleteLater);
    connect(control, &RemoteControl::quitAsked, this, &Event::quitApp);
    const auto answer = std::make_shared<std::promise<RemoteControl::Failures>>();
    QMetaObject::invokeMethod(
        control, [=] { answer->set_value(control->registerOnBus()); }, Qt::QueuedConnection);
    m_busThread.start();
    if (!m_busThread.isRunning()) { // no thread could be had
        delete control;
        return false;
    }
    std::future<RemoteControl::Failures> failures = answer->get_future();
    const std::chrono::milliseconds left(deadline.remainingTime());
    if (failures.wait_for(left) == std::future_status::timeout) {
        SessionBus::hangUp();
        return false;
    }
    tell(failures.get());
    return true;
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
