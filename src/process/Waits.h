#pragma once

class OutputPipe;
class QProcess;

// Waits that keep the caller's thread alive: between short waits they process its events. None has
// a limit.

// All pending events of this thread, then all posted ones.
void pumpEvents();

// QProcess's own waits succeed only for what happens inside them. A start or an end that came in
// while events were pumped makes them fail for good, so whoever pumps asks the state as well.
bool hasEnded(const QProcess& process);

// Waits for the start of a program; for good when it cannot be started.
void awaitStart(QProcess& process);

// Waits for the end of a program, and takes its output meanwhile.
void awaitEnd(QProcess& process, OutputPipe& output);

// Waits for output to come in and takes it off the count of arrivals, which the pump raises too.
// False once the program has ended and nothing is left.
bool awaitOutput(QProcess& process, int& arrivals);
