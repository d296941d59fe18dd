#include "app/ProcessEnd.h"

#include "app/Logger.h"
#include "process/LaunchAsync.h"

#include <cstdio>
#include <cstdlib>

void endProcess(int status)
{
    // Static objects that die now may still warn, and the table's connection may be gone by then.
    Logger::logDevMessages = false;
    if (!LaunchAsync::hasRunningJobs())
        std::exit(status);
    std::fflush(nullptr);
    std::_Exit(status);
}
