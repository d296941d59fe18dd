#pragma once

#include <QString>
#include <QtGlobal>

// The process's Qt message handler, callable from every thread.
//
// Writes a debug, warning, critical or fatal message as one line, "dd-MM-yy hh:mm:ss", the level
// and the text, in UTF-8 to standard output; info messages are not written. While
// Logger::logDevMessages is on, warnings and worse are also put into the system-message table. When
// one text has been repeated 1000 times after its first occurrence it runs the command "reboot",
// unless the dictionary value "rebootHour" is negative: a loop that logs for ever is a device that
// hangs. It never ends the process itself.
//
// One message is handled at a time, the others wait. Called again by the thread that it is working
// for (a database failure on the way into the table; not through Qt, which writes such a line to
// standard error by itself), it writes the line and does no more. What a thread logs with a lock on
// the database in hand does not wait: it is handled at once or, where the handler is taken, when
// the thread has let go of the lock; its rows when it has also detached the defaults (LogDelay).
// Both have the time of the call.
void myMessageHandler(QtMsgType type, const QMessageLogContext& context, const QString& msg);
