#pragma once

// How the process ends: in one place, whoever asks for it and whatever the user-interface thread
// waits for at that time.
//
// A request is carried out by that thread: it leaves its event loop, main's objects die and main
// calls now(). It may wait for a program, a lock of the database or a medium instead, without
// limit; half a second after the request the process is then ended from a thread that waits for
// nothing else.
namespace ProcessEnd {

// From here on requests count; before, and in a program that never calls this, they do nothing. To
// be called once. Throws std::system_error when no thread can be had.
void watch();

// Asks for the end with status 0. Any thread; returns at once and writes nothing to the log, which
// may be what the process is stuck in. Asking again changes nothing.
void request();

// Sets what is still to be done when the process ends before someone else has done it; null:
// nothing any more. It is called once, on any thread, and must not wait or log. Any thread.
void setLastAction(void (*action)());

// Does the last action and ends the process. Static objects are not destroyed: threads of jobs, of
// the bus and of media that do not answer are not waited for and may use them until the very end.
[[noreturn]] void now(int status);

} // namespace ProcessEnd
