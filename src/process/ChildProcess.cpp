#include "process/ChildProcess.h"

#include "process/OutputDrain.h"

#include <QDebug>

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

} // namespace

ChildProcess::ChildProcess(QObject* parent) : QProcess(parent)
{
    setStandardErrorFile(nullDevice());
}

ChildProcess::~ChildProcess() = default;

void ChildProcess::launch(const QString& name, const QStringList& words)
{
    m_drain = std::make_unique<OutputDrain>();
    start(name, words);
    m_drain->programStarted();
}

void ChildProcess::close()
{
    QProcess::close();
    m_drain.reset();
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
    if (m_drain && isPipe(STDOUT_FILENO))
        m_drain->leave();
}

void warnUnlessSuccessful(const QString& commandLine, int waitStatus)
{
    if (WIFSIGNALED(waitStatus))
        warnOfSignal(commandLine, WTERMSIG(waitStatus));
    else
        warnOfStatus(commandLine, waitStatus < 0 ? waitStatus : WEXITSTATUS(waitStatus));
}
