#pragma once

#include <QDateTime>
#include <QList>
#include <QMutex>
#include <QString>

// Events of the platform that its service pages list, on their way into the table
// "systemMessages" of the shared database.
namespace SystemMessage {

// Who raised a message. The numbers are the platform's own.
enum class Service { Unknown, MainUI, ServiceUI, HardwareMgr, VideoPlayer, SoftwareUpdater, IoT };

// How grave it is. The numbers are the platform's own.
enum class Type { Critical, Error, Warning, Message };

struct Message
{
    Service service;
    Type type;
    QString text;
    QDateTime date; // when it was raised

    // The service of an application name, exact and case-sensitive; Unknown for any other name.
    static Service serviceStringToEnum(const QString& name);
};

// The text that stands for a service or a type in the table; "Type::Unknown" for any number
// outside the enumeration, of either kind.
QString toText(Service service);
QString toText(Type type);
// A date as table and log show it, "dd-MM-yy hh:mm:ss", in ASCII digits whatever the locale.
QString toText(const QDateTime& date);

// Keeps a message that is raised again within 60 seconds out of the table, for the whole process.
// Nothing here locks: a caller holds _systemMessageMutex from building a message until log
// returns, as post does.
class Status
{
public:
    static QMutex _systemMessageMutex;

    // Writes the message to the table, on the calling thread's connection, unless canAdd refuses
    // it. Returns whether it was accepted; a failed write shows in the log only.
    static bool log(const Message& message);

    // False when a message of the same service, type and text was accepted less than 60 seconds
    // ago; otherwise remembers this one and returns true. The times are compared in UTC, so the
    // zone may change; messages of the future, from before the clock was set back, do not count.
    static bool canAdd(const Message& message);

    // Forgets the remembered messages that are 60 seconds old or older, or of the future.
    static void removePastDue();

private:
    static QList<Message> _messages; // with dates in UTC
};

// Raises a message: service from the running application's name, time now. Any thread; takes the
// mutex. Returns whether it was accepted.
bool post(Type type, const QString& text);

} // namespace SystemMessage
