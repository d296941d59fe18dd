#pragma once

#include <chrono>

// The session bus before Qt's own code uses it. That waits without limit for a bus whose daemon is
// stopped, on any thread that wants the bus and, on X11 and Wayland, for the accessibility of the
// first item on the user-interface thread.
namespace SessionBus {

// Whether whoever listens at the session bus's address (DBUS_SESSION_BUS_ADDRESS, otherwise "bus"
// in XDG_RUNTIME_DIR) says anything within the limit. Also true when nobody listens there and for
// other addresses than Unix sockets: that Qt finds out by itself, at once.
bool answers(std::chrono::milliseconds limit);

// Lets QDBusConnection::sessionBus() give an unconnected bus at once, for the rest of the process
// and on every thread. To be called before anyone has asked for the session bus. The programs that
// the updater starts still get the bus's address.
void doWithout();

} // namespace SessionBus
