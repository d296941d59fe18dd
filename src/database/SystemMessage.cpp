#include "database/SystemMessage.h"

#include "database/TableMessages.h"

#include <QCoreApplication>
#include <QMutexLocker>

#include <algorithm>
#include <array>

namespace SystemMessage {

namespace {

constexpr qint64 repeatBlockSeconds = 60;

struct ServiceName
{
    Service service;
    const char* name;
};

constexpr std::array<ServiceName, 6> services {{
    {Service::MainUI, "MainUI"},
    {Service::ServiceUI, "ServiceUI"},
    {Service::HardwareMgr, "HardwareMgr"},
    {Service::VideoPlayer, "VideoPlayer"},
    {Service::SoftwareUpdater, "SoftwareUpdater"},
    {Service::IoT, "IoT"},
}};

// An unknown service is called a type as well; the service pages filter on this text.
QString unknownText()
{
    return QStringLiteral("Type::Unknown");
}

bool isSame(const Message& a, const Message& b)
{
    return a.type == b.type && a.service == b.service && a.text == b.text;
}

bool isPastDue(const Message& message, const QDateTime& now)
{
    return now >= message.date.addSecs(repeatBlockSeconds);
}

} // namespace

Service Message::serviceStringToEnum(const QString& name)
{
    for (const ServiceName& entry : services) {
        if (name == QLatin1String(entry.name))
            return entry.service;
    }
    return Service::Unknown;
}

QString toText(Service service)
{
    for (const ServiceName& entry : services) {
        if (service == entry.service)
            return QString::fromLatin1(entry.name);
    }
    return unknownText();
}

QString toText(Type type)
{
    switch (type) {
    case Type::Critical:
        return QStringLiteral("Critical");
    case Type::Error:
        return QStringLiteral("Error");
    case Type::Warning:
        return QStringLiteral("Warning");
    case Type::Message:
        return QStringLiteral("Message");
    }
    return unknownText();
}

QMutex Status::_systemMessageMutex;
QList<Message> Status::_messages;

bool Status::log(const Message& message)
{
    if (!canAdd(message))
        return false;
    TableMessages::insertSystemMessage(toText(message.service), toText(message.type), message.text);
    return true;
}

bool Status::canAdd(const Message& message)
{
    const auto earlier = std::find_if(_messages.cbegin(), _messages.cend(),
                                      [&](const Message& known) { return isSame(known, message); });
    const bool repeated
        = earlier != _messages.cend() && !isPastDue(*earlier, QDateTime::currentDateTime());
    removePastDue();
    if (!repeated)
        _messages.append(message);
    return !repeated;
}

void Status::removePastDue()
{
    const QDateTime now = QDateTime::currentDateTime();
    const auto pastDue = [&](const Message& message) { return isPastDue(message, now); };
    _messages.erase(std::remove_if(_messages.begin(), _messages.end(), pastDue), _messages.end());
}

bool post(Type type, const QString& text)
{
    const QMutexLocker locker(&Status::_systemMessageMutex);
    const Service service = Message::serviceStringToEnum(QCoreApplication::applicationName());
    return Status::log({service, type, text, QDateTime::currentDateTime()});
}

} // namespace SystemMessage
