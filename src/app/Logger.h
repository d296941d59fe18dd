#pragma once

#include <atomic>

// The log's switch.
class Logger
{
public:
    // Whether warnings and worse are copied into the system-message table. Read by the message
    // handler on every thread.
    static std::atomic<bool> logDevMessages;

    // Sets the switch from the setting "logDevMessages" of the dictionary table: on for "true" in
    // any letter case, off for anything else, for a missing setting and for a database that cannot
    // be read. Works without the application object.
    static void getLogDevMessages();
};
