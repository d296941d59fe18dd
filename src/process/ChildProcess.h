#pragma once

#include <QProcess>

#include <memory>

class OutputDrain;

// A program started by the updater. It goes on when the updater ends, however that ends: an install
// must not be cut short. So it has a session of its own, which no Ctrl-C and no hang-up of our
// terminal reaches, and what it writes to standard error goes nowhere. A standard output that is a
// pipe has a second reader (OutputDrain) for what comes once this object reads no more, so that
// writing neither fails nor waits for good then. SIGPIPE has its default action.
//
// As with any QProcess, destroying the object ends a program that still runs; ProcessEnd::now()
// destroys none.
class ChildProcess final : public QProcess
{
public:
    explicit ChildProcess(QObject* parent = nullptr);
    ~ChildProcess() override;

    // To be called in place of QProcess::start(), and does the same.
    void launch(const QString& name, const QStringList& words);

    // As QProcess, which ends the program. What processes that it left behind print from now on is
    // dropped.
    void close() override;

    // Writes a warning to the log if the program, which has ended, did so with another status than
    // 0 or by a signal. One that could not be started has no status.
    void warnUnlessSuccessful() const;

protected:
    void setupChildProcess() override;

private:
    std::unique_ptr<OutputDrain> m_drain; // of the program launched last
};

// The same for any wait status, as runInShell gives it.
void warnUnlessSuccessful(const QString& commandLine, int waitStatus);
