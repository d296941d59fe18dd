#include "process/ShellCommand.h"

#include <cerrno>
#include <csignal>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

namespace {

class SpawnAttributes
{
public:
    SpawnAttributes()
    {
        sigset_t defaults;
        sigemptyset(&defaults);
        sigaddset(&defaults, SIGPIPE);
        posix_spawnattr_init(&m_attributes);
        posix_spawnattr_setsigdefault(&m_attributes, &defaults);
        posix_spawnattr_setflags(&m_attributes, POSIX_SPAWN_SETSIGDEF | POSIX_SPAWN_SETSID);
    }
    ~SpawnAttributes() { posix_spawnattr_destroy(&m_attributes); }
    SpawnAttributes(const SpawnAttributes&) = delete;
    SpawnAttributes& operator=(const SpawnAttributes&) = delete;

    const posix_spawnattr_t* get() const { return &m_attributes; }

private:
    posix_spawnattr_t m_attributes;
};

int waitFor(pid_t child)
{
    int status = -1;
    while (waitpid(child, &status, 0) < 0) {
        if (errno != EINTR)
            return -1;
    }
    return status;
}

} // namespace

int runInShell(const char* commandLine)
{
    const char* const arguments[] = {"sh", "-c", commandLine, nullptr};
    const SpawnAttributes attributes;
    pid_t shell = 0;
    // posix_spawn leaves the arguments alone; its declaration is older than const.
    if (posix_spawn(&shell, "/bin/sh", nullptr, attributes.get(),
                    const_cast<char* const*>(arguments), environ)
        != 0)
        return -1;
    return waitFor(shell);
}
