#include "database/SystemMessage.h"

#include "database/TableMessages.h"

#include <QCoreApplication>
#include <QLocale>
#include <QMutexLocker>

#include <algorithm>
#include <array>

namespace SystemMessage {

namespace {

constexpr qint64 repeatBlockMsecs = 60000;

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

// Whether a repeat of a message of this time is kept out now. One of the future, from before the
// clock was set back, keeps nothing out.
bool isRecent(const QDateTime& date)
{
    const qint64 age = date.msecsTo(QDateTime::currentDateTimeUtc());
    return date.isValid() && age >= 0 && age < repeatBlockMsecs;
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

QString toText(const QDateTime& date)
{
    return QLocale::c().toString(date, QStringLiteral("dd-MM-yy hh:mm:ss"));
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
    removePastDue();
    const bool repeated = std::any_of(_messages.cbegin(), _messages.cend(),
                                      [&](const Message& known) { return isSame(known, message); });
    if (!repeated)
        _messages.append({message.service, message.type, message.text, message.date.toUTC()});
    return !repeated;
}

void Status::removePastDue()
{
    const auto isDue = [](const Message& message) { return !isRecent(message.date); };
    _messages.erase(std::remove_if(_messages.begin(), _messages.end(), isDue), _messages.end());
}

bool post(Type type, const QString& text)
{
    const QMutexLocker locker(&Status::_systemMessageMutex);
    const Service service = Message::serviceStringToEnum(QCoreApplication::applicationName());
    return Status::log({service, type, text, QDateTime::currentDateTimeUtc()});
}

} // namespace SystemMessage
