#include "app/ProcessEnd.h"

#include "process/LaunchAsync.h"

#include <cstdio>
#include <cstdlib>

void endProcess(int status)
{
    if (!LaunchAsync::hasRunningJobs())
        std::exit(status);
    std::fflush(nullptr);
    std::_Exit(status);
}
