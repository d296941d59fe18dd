#include "process/LaunchAsync.h"

#include "process/ScriptLauncher.h"

#include <QDebug>

#include <list>
#include <mutex>
#include <system_error>
#include <thread>

namespace {

struct Job
{
    QString command;
    QStringList args;
    const LaunchAsync* owner; // null once it was destroyed
};

// The jobs that run now. An owner is used under the mutex only, so that it cannot be destroyed
// while a job speaks through it; recursive, as a slot called by that may launch the next job.
struct Registry
{
    std::recursive_mutex mutex;
    std::list<Job> jobs;
};

using Lock = std::lock_guard<std::recursive_mutex>;
using JobPosition = std::list<Job>::iterator;

Registry& registry()
{
    static Registry instance;
    return instance;
}

JobPosition enter(Job job)
{
    const Lock lock(registry().mutex);
    return registry().jobs.insert(registry().jobs.end(), std::move(job));
}

void leave(JobPosition job)
{
    const Lock lock(registry().mutex);
    registry().jobs.erase(job);
}

void tellEnd(const Job& job, const QString& result)
{
    const Lock lock(registry().mutex);
    if (job.owner)
        emit job.owner->endLaunch(result);
}

} // namespace

LaunchAsync::LaunchAsync(QObject* parent) : QObject(parent) { }

LaunchAsync::~LaunchAsync()
{
    const Lock lock(registry().mutex);
    for (Job& job : registry().jobs) {
        if (job.owner == this)
            job.owner = nullptr;
    }
}

void LaunchAsync::launch(const QString& command, const QStringList& args) const
{
    emit beginLaunch();
    const JobPosition job = enter({command, args, this});
    try {
        std::thread([job] {
            tellEnd(*job, ScriptLauncher().launchProgram(job->command, job->args));
            leave(job);
        }).detach();
    } catch (const std::system_error& error) {
        qDebug() << "launch:" << command << error.what();
        leave(job);
        emit endLaunch(QStringLiteral("Error: no thread for ") + command);
    }
}
