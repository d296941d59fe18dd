#include "process/ProcessEnd.h"

#include <QDebug>
#include <QSemaphore>

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <mutex>
#include <system_error>
#include <thread>

#ifdef __SANITIZE_ADDRESS__
#include <sanitizer/lsan_interface.h>
#endif

namespace {

// What main has to come to its end by itself.
#ifdef __SANITIZE_ADDRESS__
constexpr std::chrono::milliseconds grace {3000}; // slower, and its look for leaks is wanted
#else
constexpr std::chrono::milliseconds grace {500};
#endif

// How long the end waits for a last action that another thread is at: starting a program takes some
// milliseconds, but it may be what the process is stuck in.
constexpr std::chrono::milliseconds patience {300};

QSemaphore requests;

// Held for good by the thread that ends the process, so that no other ends it half-way through.
std::mutex ending;

// Held by whoever does the last action, or what stands for it, and for good by the end of the
// process: what comes after that is too late.
std::mutex acting;
void (*lastAction)() = nullptr;

// By trying again, which the thread sanitizer sees, as it does not see a timed lock.
bool awaitTurn()
{
    constexpr std::chrono::milliseconds step {10};
    for (auto left = patience; !acting.try_lock(); left -= step) {
        if (left <= step)
            return false;
        std::this_thread::sleep_for(step);
    }
    return true;
}

void doLastAction()
{
    if (awaitTurn() && lastAction)
        lastAction();
}

// The objects of main live on, and a stuck thread may hold the locks of the standard streams.
[[noreturn]] void endForcibly()
{
    const std::lock_guard lock(ending);
    doLastAction();
    std::_Exit(EXIT_SUCCESS);
}

} // namespace

void ProcessEnd::watch()
{
    try {
        std::thread([] {
            requests.acquire();
            std::this_thread::sleep_for(grace);
            endForcibly();
        }).detach();
    } catch (const std::system_error& error) {
        qWarning() << "a quit has to wait for what the program waits for:" << error.what();
    }
}

void ProcessEnd::request()
{
    requests.release();
}

void ProcessEnd::setLastAction(void (*action)())
{
    const std::lock_guard lock(acting);
    lastAction = action;
}

void ProcessEnd::insteadOfLastAction(const std::function<void()>& action)
{
    const std::lock_guard lock(acting);
    lastAction = nullptr;
    action();
}

void ProcessEnd::now(int status)
{
    std::fflush(nullptr); // may wait for a stuck thread's stream, and must not keep `ending` then
    const std::lock_guard lock(ending);
    doLastAction();
#ifdef __SANITIZE_ADDRESS__
    __lsan_do_leak_check();
#endif
    std::_Exit(status);
}
