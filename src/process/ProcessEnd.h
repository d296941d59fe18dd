#pragma once

#include <functional>

// How the process ends: in one place, whoever asks for it and whatever the user-interface thread
// waits for at that time.
//
// A request is carried out by that thread: it leaves its event loop, main's objects die and main
// calls now(). It may wait for a program, a lock of the database or a medium instead, without
// limit; half a second after the request the process is then ended from a thread that waits for
// nothing else.
namespace ProcessEnd {

// From here on requests count; before, and in a program that never calls this, they do nothing. To
// be called once. Without a thread to be had, a warning in the log: then the user-interface thread
// alone ends the process.
void watch();

// Asks for the end with status 0. Any thread; returns at once and writes nothing to the log, which
// may be what the process is stuck in. Asking again changes nothing.
void request();

// Sets what is still to be done when the process ends before someone else has done it. It is called
// once, on any thread, and must not wait or log. Any thread.
void setLastAction(void (*action)());

// Calls `action` at once, and the last action never: one of them is done, whenever the process
// ends, unless `action` takes longer than 300 ms then. Does not return when the process is already
// ending. Any thread.
void insteadOfLastAction(const std::function<void()>& action);

// Does the last action and ends the process. Static objects are not destroyed: threads of jobs, of
// the bus and of media that do not answer are not waited for and may use them until the very end.
[[noreturn]] void now(int status);

} // namespace ProcessEnd
