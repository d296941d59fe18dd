#include "Figures.h"
#include "process/ScriptLauncher.h"

#include <algorithm>
#include <chrono>
#include <functional>
#include <sys/resource.h>
#include <thread>

namespace {

// Of all threads of this process; the programs that it started are not in it.
double processorSeconds()
{
    rusage usage {};
    getrusage(RUSAGE_SELF, &usage);
    const auto seconds = [](const timeval& time) {
        return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_usec) / 1e6;
    };
    return seconds(usage.ru_utime) + seconds(usage.ru_stime);
}

double shareOfCoreDuring(const std::function<void()>& wait)
{
    const auto begin = std::chrono::steady_clock::now();
    const double used = processorSeconds();
    wait();
    const std::chrono::duration<double> passed = std::chrono::steady_clock::now() - begin;
    return (processorSeconds() - used) / passed.count();
}

double waitForProgram()
{
    return shareOfCoreDuring(
        [] { std::thread([] { ScriptLauncher().launchProgram("/bin/sleep", {"10"}); }).join(); });
}

// The launch never returns, so it is left behind on its thread.
double waitForMissingProgram()
{
    return shareOfCoreDuring([] {
        std::thread([] { ScriptLauncher().launchProgram("/usr/bin/no-such-program"); }).detach();
        std::this_thread::sleep_for(std::chrono::seconds(10));
    });
}

} // namespace

Figures launchFigures()
{
    const double started = waitForProgram();
    return {{"launch-cpu", std::max(started, waitForMissingProgram()), 0.005}};
}
