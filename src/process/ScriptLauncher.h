#pragma once

#include <QObject>
#include <QStringList>
#include <QVariant>

#include <functional>

class ChildProcess;
class QProcess;

// The one place where the updater starts other programs: the platform's scripts, its control
// command and plain shell command lines.
//
// Programs are started with an argument list, without a shell (but for executeSystemCommand). Only
// standard output is ever read; it is UTF-8, and text ends at its first NUL. Every operation blocks
// its caller; a launcher belongs to one thread. Where "script name" is said, a relative name is
// looked for in the platform's scripts folder,
// "/opt/Merivon/Versions/Merivon-current/ServiceUI/Scripts/". The system message of a failed start
// has type Error. A program that ends with another status than 0 or by a signal is a warning in the
// log. One that still runs when the updater ends goes on.
class ScriptLauncher : public QObject
{
    Q_OBJECT

public:
    explicit ScriptLauncher(QObject* parent = nullptr);

    // Runs a script (script name) and gives its output less the last character, usually the line
    // end. Waits 30 s for the start and without limit until the script has closed its output or has
    // ended, and pumps no events; a script that still runs 100 ms after closing it is killed. The
    // log has the first 4096 characters. When it does not start: "there was an error starting
    // script.", a log line and a system message.
    Q_INVOKABLE QString launchScript(const QString& program, const QStringList& argList = {});

    // Runs a program (script name) to its end, pumping events, and gives its output less the last
    // byte; the log has the first 4096 bytes. There is no limit: when it cannot be started, this
    // does not return. What goes wrong here, such as an output that exceeds the memory, gives
    // "Error: " and the reason.
    Q_INVOKABLE QString launchProgram(const QString& command, const QStringList& args = {});

    // launchProgram after about `sec` seconds, with events pumped. A negative `sec` waits for days.
    Q_INVOKABLE QString launchProgramWithDelay(const QString& command, const QStringList& arg = {},
                                               int sec = 2);

    // Starts a program so that it outlives the updater, by the platform's helper script
    // "start_detached_process.sh" in the scripts folder. A relative name is taken from the current
    // folder. Pumps no events; waits 30 s for the helper's start, 30 s for its end and, with a line
    // in the log, 30 s more; it is killed when it still runs then. What is printed goes nowhere. A
    // helper that does not start shows in the log and as a system message.
    Q_INVOKABLE void launchDetachedProcess(const QString& command, QStringList argList = {});

    // The same in place of the process's last action (ProcessEnd), so that the program is started
    // once whenever the process ends meanwhile.
    void launchLastAction(const QString& command, QStringList argList);

    // The same for the end of the process, when nothing may be waited for, nor the log be used: for
    // an absolute path, without a wait for the helper. False when that does not start. Any thread.
    static bool startDetachedProcess(const QString& program, const QStringList& args);

    // Runs a script, found as a process finds it, that tells its progress a line at a time. Each
    // time output comes in, loadCompleted hands one line on: of lines that came in together, those
    // that no further output follows are never told. Starts after 2 s, rests 1 s after each line
    // and pumps events; a script that prints faster is waited for longer than it runs.
    // "1" when the exit code is 1, "0" for any other code and for a script that did not start,
    // which also shows in the log and as a system message.
    Q_INVOKABLE QString runScript(const QString& command, const QStringList& args);

    // Runs a program, found as a process finds it, and says whether it started within 30 s and
    // ended, in whatever way, within another 30 s; it is killed when it did not. Pumps no events.
    // Either failure shows in the log, a failed start also as a system message.
    Q_INVOKABLE bool systemCommand(const QString& command, const QStringList& argList);

    // Hands a command line to the shell, waits for it without pumping events and gives what
    // system(3) gives: a wait status, not an exit code; -1 when no process could be made. What the
    // command line prints goes to the updater's own standard output.
    Q_INVOKABLE int executeSystemCommand(const QString& command);

    // Pauses about `sec` seconds in rounds of 10 ms with events pumped; one round at least.
    Q_INVOKABLE void sleep(int sec);

signals:
    // Progress of runScript. While it runs: value is the per cent done, as an integer, and status
    // the script's line as bytes, line end included. Last: 100 and "Success..." or "Error...".
    void loadCompleted(QVariant value, QVariant status);

private:
    using Start = std::function<void()>;

    // `starter` is to call what it is given.
    void launchDetached(const QString& command, QStringList argList,
                        const std::function<void(const Start&)>& starter);

    QString outputOfScript(const QString& script, const QStringList& argList);

    struct Progress
    {
        int percent = 5;
        QByteArray line;
    };

    // Tells of a script's output until the script has ended; gives what was told last. `arrivals`
    // counts up each time output comes in.
    Progress reportProgress(QProcess& process, int& arrivals);

    ChildProcess* m_scriptProcess; // launchScript's, used again for every script
};
