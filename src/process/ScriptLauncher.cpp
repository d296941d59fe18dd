#include "process/ScriptLauncher.h"

#include "database/PlatformFolders.h"
#include "database/SystemMessage.h"
#include "process/ChildProcess.h"
#include "process/OutputPipe.h"
#include "process/ProcessEnd.h"
#include "process/ShellCommand.h"
#include "process/Waits.h"

#include <QDebug>
#include <QDir>
#include <QThread>

#include <cstring>
#include <exception>
#include <utility>

namespace {

constexpr int longWaitMs = 30000;
constexpr int endWaitMs = 100; // for a script that has closed its output

// What a log line holds of an output. All of it would be several times as long as the output: a
// hundred megabytes of it stop the updater for seconds, and more exhausts a board's memory.
constexpr int loggedSize = 4096;

QString scriptsFolder()
{
    return PlatformFolders::currentVersion + QStringLiteral("/ServiceUI/Scripts/");
}

QString inScriptsFolder(const QString& program)
{
    return program.startsWith('/') ? program : scriptsFolder() + program;
}

QString detachingScript()
{
    return scriptsFolder() + QStringLiteral("start_detached_process.sh");
}

// What a program printed is text up to the first NUL: a C string, whatever its length.
QString textOf(const QByteArray& output)
{
    const auto size = static_cast<std::size_t>(output.size());
    return QString::fromUtf8(output.constData(),
                             static_cast<int>(strnlen(output.constData(), size)));
}

// Without a copy, as the output may be large.
QByteArray lessLastByte(const QByteArray& output)
{
    return QByteArray::fromRawData(output.constData(), qMax(0, output.size() - 1));
}

template <typename Text> void logOutput(const Text& output, const char* more)
{
    if (output.size() <= loggedSize)
        qDebug() << output;
    else
        qDebug() << output.left(loggedSize) << more << output.size() - loggedSize;
}

void postStartFailure(const char* text, const QString& command)
{
    SystemMessage::post(SystemMessage::Type::Error, QString::fromLatin1(text).arg(command));
}

// What goes wrong on the way, such as an output that exceeds the memory, is the result: the scene,
// from which most calls come, could not be left by an exception on the board.
template <typename Run> QString resultOf(const char* operation, const QString& program, Run run)
{
    try {
        return run();
    } catch (const std::exception& error) {
        qWarning() << operation << program << error.what();
        return QStringLiteral("Error: ") + QString::fromLocal8Bit(error.what());
    }
}

QString outputOf(const QString& program, const QStringList& args)
{
    OutputPipe pipe;
    ChildProcess process;
    process.setStandardOutputFile(pipe.path());
    process.launch(program, args);
    qDebug() << "launch program"
             << "wait for started" << program << args;
    awaitStart(process);
    pipe.closeWriteEnd();
    qDebug() << "launch program"
             << "wait for finished";
    awaitEnd(process, pipe);

    const QByteArray output = lessLastByte(pipe.output());
    qDebug() << "launch program"
             << "finished";
    logOutput(output, "and bytes more:");
    qDebug() << process.error();
    qDebug() << process.errorString();
    process.warnUnlessSuccessful();
    return textOf(output);
}

} // namespace

ScriptLauncher::ScriptLauncher(QObject* parent)
    : QObject(parent), m_scriptProcess(new ChildProcess(this))
{
}

QString ScriptLauncher::launchScript(const QString& program, const QStringList& argList)
{
    const QString script = inScriptsFolder(program);
    return resultOf("launchScript", script, [&] { return outputOfScript(script, argList); });
}

QString ScriptLauncher::outputOfScript(const QString& script, const QStringList& argList)
{
    qDebug() << "launchScript:" << script << argList;
    OutputPipe pipe;
    m_scriptProcess->setStandardOutputFile(pipe.path());
    m_scriptProcess->launch(script, argList);
    if (!m_scriptProcess->waitForStarted(longWaitMs)) {
        qDebug() << "there was an error starting script " << script
                 << m_scriptProcess->errorString();
        postStartFailure("Script Failed [%1]", script);
        return QStringLiteral("there was an error starting script.");
    }
    pipe.closeWriteEnd();
    while (pipe.takeMore(*m_scriptProcess))
        ;
    QString text = textOf(pipe.output());
    // Most scripts close their output by ending.
    const bool endedByItself
        = hasEnded(*m_scriptProcess) || m_scriptProcess->waitForFinished(endWaitMs);
    m_scriptProcess->close();
    // Kept: a character goes here and a byte in launchProgram, as the platform's scripts know it.
    text.chop(1);
    logOutput(text, "and characters more:");
    if (endedByItself)
        m_scriptProcess->warnUnlessSuccessful();
    return text;
}

QString ScriptLauncher::launchProgram(const QString& command, const QStringList& args)
{
    const QString program = inScriptsFolder(command);
    return resultOf("launch program", program, [&] { return outputOf(program, args); });
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
    launchDetached(command, std::move(argList), [](const Start& start) { start(); });
}

void ScriptLauncher::launchLastAction(const QString& command, QStringList argList)
{
    launchDetached(command, std::move(argList), &ProcessEnd::insteadOfLastAction);
}

void ScriptLauncher::launchDetached(const QString& command, QStringList argList,
                                    const std::function<void(const Start&)>& starter)
{
    const QString program = command.startsWith('/') ? command : QDir::currentPath() + '/' + command;
    argList.prepend(program);
    qDebug() << "launchDetachedProcess:" << program << argList;
    ChildProcess process;
    // Not a pipe, which the platform would inherit and, once it is full, stand still for good.
    process.setStandardOutputFile(QProcess::nullDevice());
    starter([&] { process.launch(detachingScript(), argList); });
    if (!process.waitForStarted(longWaitMs)) {
        qDebug() << "Failed to execute";
        postStartFailure("System Command Failed [%1]", program);
    }
    if (!process.waitForFinished(longWaitMs)) {
        qDebug() << "Failed to execute";
        process.waitForFinished(longWaitMs);
    }
    if (hasEnded(process))
        process.warnUnlessSuccessful();
}

bool ScriptLauncher::startDetachedProcess(const QString& program, const QStringList& args)
{
    QProcess process;
    process.setProgram(detachingScript());
    process.setArguments(QStringList(program) + args);
    process.setStandardOutputFile(QProcess::nullDevice());
    process.setStandardErrorFile(QProcess::nullDevice());
    return process.startDetached();
}

QString ScriptLauncher::runScript(const QString& command, const QStringList& args)
{
    sleep(2);
    qDebug() << "arg::" << args;
    int arrivals = 0;
    ChildProcess process;
    connect(&process, &QProcess::readyReadStandardOutput, this, [&arrivals] { ++arrivals; });
    process.launch(command, args);
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
    process.warnUnlessSuccessful();
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
    ChildProcess process;
    process.setStandardOutputFile(QProcess::nullDevice());
    process.launch(command, argList);
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
    process.warnUnlessSuccessful();
    return true;
}

int ScriptLauncher::executeSystemCommand(const QString& command)
{
    qDebug() << "executeSystemCommand:" << command;
    const int waitStatus = runInShell(command.toUtf8().constData());
    warnUnlessSuccessful(command, waitStatus);
    return waitStatus;
}

void ScriptLauncher::sleep(int sec)
{
    constexpr int roundMs = 10;
    qint64 elapsedMs = 0;
    do {
        pumpEvents();
        elapsedMs += roundMs;
        QThread::msleep(roundMs);
    } while (elapsedMs / 1000 < sec);
}
