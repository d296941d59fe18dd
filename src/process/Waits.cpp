#include "process/Waits.h"

#include "process/OutputPipe.h"

#include <QCoreApplication>
#include <QProcess>
#include <QThread>

namespace {

constexpr int startWaitMs = 1000;
constexpr int shortWaitMs = 10;

bool hasStarted(const QProcess& process)
{
    return process.state() == QProcess::Running
        || (hasEnded(process) && process.error() != QProcess::FailedToStart);
}

} // namespace

void pumpEvents()
{
    QCoreApplication::processEvents();
    QCoreApplication::sendPostedEvents();
}

bool hasEnded(const QProcess& process)
{
    return process.state() == QProcess::NotRunning;
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

void awaitEnd(QProcess& process, OutputPipe& output)
{
    constexpr unsigned extraPumpEvery = 1000;
    pumpEvents();
    for (unsigned waits = 1;
         output.takeMore(process) || !(process.waitForFinished(shortWaitMs) || hasEnded(process));
         ++waits) {
        pumpEvents();
        if (waits % extraPumpEvery == 0)
            pumpEvents();
    }
}

// Waits for the end, since that alone is not held up by a grandchild that prints without pause.
bool awaitOutput(QProcess& process, int& arrivals)
{
    if (process.bytesAvailable() == 0)
        arrivals = 0; // several that made up one line
    while (arrivals == 0 && !process.waitForFinished(shortWaitMs) && !hasEnded(process))
        pumpEvents();
    return arrivals-- > 0;
}
