#include "process/ChildProcess.h"

#include "process/Pipe.h"

#include <QDebug>

#include <cstdlib>
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

bool isPipe(int descriptor)
{
    struct stat info
    {
    };
    return fstat(descriptor, &info) == 0 && S_ISFIFO(info.st_mode);
}

// What follows runs in the child, between fork and exec: system calls only.

// Waits for the end of the reading, then for that of the output. A shell, as a copy of the updater
// would keep the updater's memory for as long as the program runs.
[[noreturn]] void becomeDrain(int output, int reading)
{
    setsid();
    dup2(output, STDIN_FILENO);
    dup2(open("/dev/null", O_WRONLY | O_CLOEXEC), STDOUT_FILENO);
    dup2(reading, STDERR_FILENO);
    execl("/bin/sh", "sh", "-c", "read -r line <&2; exec /bin/cat", nullptr);
    _exit(EXIT_FAILURE);
}

// Not a child of the program, which may wait for all that it has.
void leaveDrain(int output, int reading)
{
    const pid_t between = _Fork();
    if (between == 0) {
        if (_Fork() == 0)
            becomeDrain(output, reading);
        _exit(EXIT_SUCCESS);
    }
    waitpid(between, nullptr, 0);
}

} // namespace

ChildProcess::ChildProcess(QObject* parent) : QProcess(parent)
{
    setStandardErrorFile(nullDevice());
}

ChildProcess::~ChildProcess() = default;

void ChildProcess::launch(const QString& name, const QStringList& words)
{
    m_reading = std::make_unique<Pipe>();
    start(name, words);
    m_reading->closeReadEnd();
}

void ChildProcess::close()
{
    QProcess::close();
    m_reading.reset();
}

void ChildProcess::warnUnlessSuccessful() const
{
    if (error() == FailedToStart)
        return;
    if (exitStatus() == NormalExit)
        warnOfStatus(program(), exitCode());
    else
        warnOfSignal(program(), exitCode()); // which then is the signal's number
}

void ChildProcess::setupChildProcess()
{
    setsid();
    if (!m_reading || !isPipe(STDOUT_FILENO))
        return;
    const int output = ::open("/proc/self/fd/1", O_RDONLY | O_CLOEXEC);
    leaveDrain(output, m_reading->readEnd());
    ::close(output);
}

void warnUnlessSuccessful(const QString& commandLine, int waitStatus)
{
    if (WIFSIGNALED(waitStatus))
        warnOfSignal(commandLine, WTERMSIG(waitStatus));
    else
        warnOfStatus(commandLine, waitStatus < 0 ? waitStatus : WEXITSTATUS(waitStatus));
}
