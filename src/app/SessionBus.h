#pragma once

class QDeadlineTimer;

// The session bus before Qt's own code uses it. That waits without limit for a bus whose daemon is
// stopped, on any thread that wants the bus and, on X11 and Wayland, for the accessibility of the
// first item on the user-interface thread.
namespace SessionBus {

// Whether whoever listens at the session bus's address (DBUS_SESSION_BUS_ADDRESS, otherwise "bus"
// in XDG_RUNTIME_DIR) says anything before the deadline. Also true when nobody listens there and
// for other addresses than Unix sockets: that Qt finds out by itself, at once.
bool answers(const QDeadlineTimer& deadline);

// Lets QDBusConnection::sessionBus() give an unconnected bus at once, for the rest of the process
// and on every thread. To be called before anyone has asked for the session bus. The programs that
// the updater starts still get the bus's address.
void doWithout();

// Ends this process's connections to the bus, at a Unix socket, from below: whoever waits for the
// bus in Qt's code, on any thread, goes on with an unconnected one, and so does whoever asks later.
void hangUp();

} // namespace SessionBus
