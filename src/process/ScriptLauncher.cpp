#include "process/ScriptLauncher.h"

#include "database/PlatformFolders.h"
#include "database/SystemMessage.h"

#include <QCoreApplication>
#include <QDebug>
#include <QDir>
#include <QProcess>
#include <QThread>

#include <csignal>
#include <cstdlib>

namespace {

constexpr int longWaitMs = 30000;
constexpr int startWaitMs = 1000;
constexpr int shortWaitMs = 10;

// What a log line holds of an output. All of it would be several times as long as the output: a
// hundred megabytes of it stop the updater for seconds, and more exhausts a board's memory.
constexpr int loggedBytes = 4096;

// A program that goes on when the updater ends: a remote quit must not cut an install short. With
// the updater the reader of its output is gone, and the signal for that, which is deadly again in
// every child of QProcess, would end it at the next line that it prints.
class LastingProcess : public QProcess
{
public:
    // Output is left here only when it has exceeded the memory. QProcess reads more of it while it
    // ends its program; a second want of memory would then end the updater.
    ~LastingProcess() override
    {
        if (QProcess::bytesAvailable() > 0)
            skip(QProcess::bytesAvailable());
    }

protected:
    void setupChildProcess() override { std::signal(SIGPIPE, SIG_IGN); }
};

QString scriptsFolder()
{
    return PlatformFolders::currentVersion + QStringLiteral("/ServiceUI/Scripts/");
}

QString inScriptsFolder(const QString& program)
{
    return program.startsWith('/') ? program : scriptsFolder() + program;
}

// What a program printed is text up to the first NUL: a C string, whatever its length.
QString textOf(const QByteArray& output)
{
    return QString::fromUtf8(output.constData());
}

void logOutput(const QByteArray& output)
{
    if (output.size() <= loggedBytes)
        qDebug() << output;
    else
        qDebug() << output.left(loggedBytes) << "and bytes more:" << output.size() - loggedBytes;
}

void postStartFailure(const char* text, const QString& command)
{
    SystemMessage::post(SystemMessage::Type::Error, QString::fromLatin1(text).arg(command));
}

void pumpEvents()
{
    QCoreApplication::processEvents();
    QCoreApplication::sendPostedEvents();
}

// QProcess's waits succeed only for what happens inside them. A start or an end that came in while
// events were pumped makes them fail for good, so whoever pumps asks the state as well.
bool hasEnded(const QProcess& process)
{
    return process.state() == QProcess::NotRunning;
}

bool hasStarted(const QProcess& process)
{
    return process.state() == QProcess::Running
        || (hasEnded(process) && process.error() != QProcess::FailedToStart);
}

// No limit and no way out for a program that cannot be started, on purpose: no caller could do
// anything about it. The pause is there because the wait for a start that has failed does not wait.
void awaitStart(QProcess& process)
{
    pumpEvents();
    while (!process.waitForStarted(startWaitMs) && !hasStarted(process)) {
        if (hasEnded(process))
            QThread::msleep(shortWaitMs);
        pumpEvents();
    }
}

void awaitEnd(QProcess& process)
{
    constexpr unsigned extraPumpEvery = 1000;
    pumpEvents();
    for (unsigned waits = 1; !process.waitForFinished(shortWaitMs) && !hasEnded(process); ++waits) {
        pumpEvents();
        if (waits % extraPumpEvery == 0)
            pumpEvents();
    }
}

// Waits for output to come in and takes it off the count of arrivals, which the pump raises too;
// false once the program has ended and nothing is left. Waits for the end, since that alone is not
// held up by a grandchild that prints without pause.
bool awaitOutput(QProcess& process, int& arrivals)
{
    if (process.bytesAvailable() == 0)
        arrivals = 0; // several that made up one line
    while (arrivals == 0 && !process.waitForFinished(shortWaitMs) && !hasEnded(process))
        pumpEvents();
    return arrivals-- > 0;
}

} // namespace

ScriptLauncher::ScriptLauncher(QObject* parent)
    : QObject(parent), m_scriptProcess(new QProcess(this))
{
}

QString ScriptLauncher::launchScript(const QString& program, const QStringList& argList)
{
    const QString script = inScriptsFolder(program);
    qDebug() << "launchScript:" << script << argList;
    m_scriptProcess->start(script, argList);
    if (!m_scriptProcess->waitForStarted(longWaitMs)) {
        qDebug() << "there was an error starting script " << script
                 << m_scriptProcess->errorString();
        postStartFailure("Script Failed [%1]", script);
        return QStringLiteral("there was an error starting script.");
    }
    m_scriptProcess->waitForFinished(-1);
    QString text = textOf(m_scriptProcess->readAllStandardOutput());
    m_scriptProcess->close();
    // Kept: a character goes here and a byte in launchProgram, as the platform's scripts know it.
    text.chop(1);
    qDebug() << text;
    return text;
}

QString ScriptLauncher::launchProgram(const QString& command, const QStringList& args)
{
    const QString program = inScriptsFolder(command);
    LastingProcess process;
    process.start(program, args);
    qDebug() << "launch program"
             << "wait for started" << program << args;
    awaitStart(process);
    qDebug() << "launch program"
             << "wait for finished";
    awaitEnd(process);

    QByteArray output = process.readAllStandardOutput();
    output.chop(1);
    qDebug() << "launch program"
             << "finished";
    logOutput(output);
    qDebug() << process.error();
    qDebug() << process.errorString();
    return textOf(output);
}

QString ScriptLauncher::launchProgramWithDelay(const QString& command, const QStringList& arg,
                                               int sec)
{
    // Kept: the count runs to zero and not below it, so a negative delay wraps around and takes
    // days. Unsigned, because that is where wrapping is defined.
    for (unsigned pauses = static_cast<unsigned>(sec) * 1000U; pauses != 0; --pauses) {
        pumpEvents();
        QThread::usleep(1000);
    }
    return launchProgram(command, arg);
}

void ScriptLauncher::launchDetachedProcess(const QString& command, QStringList argList)
{
    const QString program = command.startsWith('/') ? command : QDir::currentPath() + '/' + command;
    argList.prepend(program);
    qDebug() << "launchDetachedProcess:" << program << argList;
    QProcess process;
    process.start(scriptsFolder() + QStringLiteral("start_detached_process.sh"), argList);
    if (!process.waitForStarted(longWaitMs)) {
        qDebug() << "Failed to execute";
        postStartFailure("System Command Failed [%1]", program);
    }
    if (!process.waitForFinished(longWaitMs))
        qDebug() << "Failed to execute";
    process.waitForReadyRead(longWaitMs);
    process.readAllStandardOutput();
}

QString ScriptLauncher::runScript(const QString& command, const QStringList& args)
{
    sleep(2);
    qDebug() << "arg::" << args;
    int arrivals = 0;
    QProcess process;
    connect(&process, &QProcess::readyReadStandardOutput, this, [&arrivals] { ++arrivals; });
    process.start(command, args);
    if (!process.waitForStarted(longWaitMs)) {
        postStartFailure("Script Failed [%1]", command);
        // Kept: the capital letter, by which the log is searched for this failure alone.
        qDebug() << "Failed to Execute";
    }
    const Progress last = reportProgress(process, arrivals);

    // Kept: 1 is the only error that the platform's scripts know. A script that never ran has 0.
    const bool failed = process.exitCode() == 1;
    emit loadCompleted(100, failed ? QStringLiteral("Error...") : QStringLiteral("Success..."));
    sleep(1);
    qDebug() << "last " << last.percent << " " << last.line;
    return failed ? QStringLiteral("1") : QStringLiteral("0");
}

ScriptLauncher::Progress ScriptLauncher::reportProgress(QProcess& process, int& arrivals)
{
    Progress progress;
    while (awaitOutput(process, arrivals)) {
        // Kept: one line only, though more may have come in with it. They follow as more comes in.
        progress.line = process.readLine();
        progress.percent = qMin(progress.percent + 10, 100);
        emit loadCompleted(progress.percent, progress.line);
        sleep(1);
    }
    return progress;
}

bool ScriptLauncher::systemCommand(const QString& command, const QStringList& argList)
{
    QProcess process;
    process.start(command, argList);
    qDebug() << "systemCommand:" << command << argList;
    if (!process.waitForStarted(longWaitMs)) {
        qDebug() << "Failed to execute";
        postStartFailure("System Command Failed [%1]", command);
        return false;
    }
    if (!process.waitForFinished(longWaitMs)) {
        qDebug() << "Failed to execute";
        return false;
    }
    return true;
}

int ScriptLauncher::executeSystemCommand(const QString& command)
{
    qDebug() << "executeSystemCommand:" << command;
    return std::system(command.toUtf8().constData());
}

void ScriptLauncher::sleep(int sec)
{
    qint64 elapsedMs = 0;
    do {
        pumpEvents();
        elapsedMs += shortWaitMs;
        QThread::msleep(shortWaitMs);
    } while (elapsedMs / 1000 < sec);
}
