#pragma once

#include <QObject>
#include <QStringList>

// Runs a program on a thread of its own, so that the scene stays responsive while a long job runs.
// Several jobs may run at once, also of one object. An object that is destroyed while its jobs run
// hears no more of them; the jobs themselves go on.
class LaunchAsync : public QObject
{
    Q_OBJECT

public:
    explicit LaunchAsync(QObject* parent = nullptr);
    ~LaunchAsync() override;

    // Emits beginLaunch, starts a job and returns at once. `command` is an absolute path or a name
    // in the platform's scripts folder. A program that cannot be started keeps its thread for good
    // and is never told of.
    Q_INVOKABLE void launch(const QString& command, const QStringList& args = {}) const;

signals:
    // Emitted by launch itself, on the caller's thread.
    void beginLaunch() const;

    // Emitted on the job's thread when the program has ended: its standard output less the last
    // byte, or "Error: " and the reason, as ScriptLauncher::launchProgram gives it; by launch
    // itself when no thread could be had. It is emitted under the lock of all jobs, so a receiver
    // is connected queued, or directly if it is short; never blocking-queued, as its thread may be
    // waiting for that lock.
    void endLaunch(const QString& result) const;
};
