#include "process/ProcessEnd.h"

#include <QSemaphore>

#include <atomic>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <mutex>
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

QSemaphore requests;
std::atomic<void (*)()> lastAction {nullptr};

// Held for good by the thread that ends the process, so that no other ends it half-way through.
std::mutex ending;

void doLastAction()
{
    if (const auto action = lastAction.exchange(nullptr))
        action();
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
    std::thread([] {
        requests.acquire();
        std::this_thread::sleep_for(grace);
        endForcibly();
    }).detach();
}

void ProcessEnd::request()
{
    requests.release();
}

void ProcessEnd::setLastAction(void (*action)())
{
    lastAction = action;
}

void ProcessEnd::now(int status)
{
    const std::lock_guard lock(ending);
    doLastAction();
#ifdef __SANITIZE_ADDRESS__
    __lsan_do_leak_check();
#endif
    std::fflush(nullptr);
    std::_Exit(status);
}
