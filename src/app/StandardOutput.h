#pragma once

#include <QByteArray>

// The process's standard output as the log and the console check write to it: unbuffered, a
// line of usual length in one system call, so that lines of several threads and of child processes
// never mix.
namespace StandardOutput {

// Call it first of all. Makes sure that descriptors 0 to 2 are open (a closed one is bound to
// /dev/null) and that writing to a reader that has gone away is an error instead of the end of the
// process.
void prepare();

// Writes the bytes as they are, appending nothing. Where nobody takes them, it waits one second and
// loses what is left of them, and as long as it stays so does not wait again: the log keeps every
// thread waiting meanwhile. An error loses them as well. Neither is reported: there is nobody left
// to report it to. Any thread.
void write(const QByteArray& bytes);

} // namespace StandardOutput
