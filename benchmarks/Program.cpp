#include "Program.h"

#include "Measure.h"

#include <fcntl.h>
#include <fstream>
#include <spawn.h>
#include <stdexcept>
#include <sys/wait.h>
#include <unistd.h>

namespace {

std::vector<char*> pointersTo(std::vector<std::string>& texts)
{
    std::vector<char*> pointers;
    pointers.reserve(texts.size() + 1);
    for (std::string& text : texts)
        pointers.push_back(text.data());
    pointers.push_back(nullptr);
    return pointers;
}

std::vector<std::string> environmentWith(std::vector<std::string> entries)
{
    // The first entry of a name counts.
    for (char** entry = environ; *entry != nullptr; ++entry)
        entries.emplace_back(*entry);
    return entries;
}

// The wait status.
int run(char* const* arguments, char* const* environment)
{
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_addopen(&actions, STDOUT_FILENO, "/dev/null", O_WRONLY, 0);
    pid_t process = 0;
    int status = -1;
    if (posix_spawnp(&process, arguments[0], &actions, nullptr, arguments, environment) == 0)
        waitpid(process, &status, 0);
    posix_spawn_file_actions_destroy(&actions);
    return status;
}

} // namespace

double secondsOfProgram(const std::vector<std::string>& command,
                        const std::vector<std::string>& environment)
{
    std::vector<std::string> arguments = command;
    std::vector<std::string> entries = environmentWith(environment);
    const std::vector<char*> argumentPointers = pointersTo(arguments);
    const std::vector<char*> entryPointers = pointersTo(entries);
    int status = -1;
    const double seconds
        = Measure::secondsOf([&] { status = run(argumentPointers.data(), entryPointers.data()); });
    if (status != 0)
        throw std::runtime_error(command.front() + " failed");
    return seconds;
}

double peakKibibytes(pid_t process)
{
    std::ifstream status("/proc/" + std::to_string(process) + "/status");
    for (std::string word; status >> word;) {
        double kibibytes = 0;
        if (word == "VmHWM:" && status >> kibibytes)
            return kibibytes;
    }
    throw std::runtime_error("the peak memory cannot be read");
}
