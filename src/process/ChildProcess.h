#pragma once

#include <QProcess>

// A program started by the updater. It goes on when the updater ends, however that ends: an install
// must not be cut short. So it has a session of its own, which no Ctrl-C and no hang-up of our
// terminal reaches, what it writes to standard error goes nowhere, and writing to a standard output
// that the updater reads through a pipe never fails for want of the reader: the program itself
// holds that end too. What nobody reads any more has to fit into the pipe, 64 KiB. SIGPIPE has its
// default action.
//
// As with any QProcess, destroying the object ends a program that still runs; ProcessEnd::now()
// destroys none.
class ChildProcess : public QProcess
{
public:
    explicit ChildProcess(QObject* parent = nullptr);

    // Writes a warning to the log if the program, which has ended, did so with another status than
    // 0 or by a signal.
    void warnUnlessSuccessful() const;

protected:
    void setupChildProcess() override;
};

// The same for any wait status, as runInShell gives it.
void warnUnlessSuccessful(const QString& commandLine, int waitStatus);
