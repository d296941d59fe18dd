#include "process/ChildProcess.h"

#include <QDebug>

#include <fcntl.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

namespace {

void warn(const QString& program, const char* what, int number)
{
    qWarning() << program << what << number;
}

void warnOfStatus(const QString& program, int status)
{
    if (status != 0)
        warn(program, "ended with status", status);
}

void warnOfSignal(const QString& program, int signal)
{
    warn(program, "was ended by signal", signal);
}

// Runs in the child: a pipe that is opened for both has a reader as long as it has a writer.
void holdBothEndsOf(int descriptor, const char* path)
{
    struct stat info
    {
    };
    if (fstat(descriptor, &info) != 0 || !S_ISFIFO(info.st_mode))
        return;
    const int both = open(path, O_RDWR);
    if (both < 0)
        return;
    dup2(both, descriptor);
    close(both);
}

} // namespace

ChildProcess::ChildProcess(QObject* parent) : QProcess(parent)
{
    setStandardErrorFile(nullDevice());
}

void ChildProcess::warnUnlessSuccessful() const
{
    if (exitStatus() == NormalExit)
        warnOfStatus(program(), exitCode());
    else
        warnOfSignal(program(), exitCode()); // which then is the signal's number
}

void ChildProcess::setupChildProcess()
{
    setsid();
    holdBothEndsOf(STDOUT_FILENO, "/proc/self/fd/1");
}

void warnUnlessSuccessful(const QString& commandLine, int waitStatus)
{
    if (WIFSIGNALED(waitStatus))
        warnOfSignal(commandLine, WTERMSIG(waitStatus));
    else
        warnOfStatus(commandLine, waitStatus < 0 ? waitStatus : WEXITSTATUS(waitStatus));
}
