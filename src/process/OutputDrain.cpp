#include "process/OutputDrain.h"

#include <fcntl.h>
#include <sys/wait.h>
#include <unistd.h>

OutputDrain::OutputDrain()
{
    posix_spawn_file_actions_init(&m_files);
    posix_spawn_file_actions_addopen(&m_files, STDERR_FILENO, "/proc/self/fd/1", O_RDONLY, 0);
    posix_spawn_file_actions_adddup2(&m_files, m_life.readEnd(), STDOUT_FILENO);
    posix_spawnattr_init(&m_attributes);
    posix_spawnattr_setflags(&m_attributes, POSIX_SPAWN_SETSID);
}

OutputDrain::~OutputDrain()
{
    posix_spawnattr_destroy(&m_attributes);
    posix_spawn_file_actions_destroy(&m_files);
}

// A shell, since a copy of the updater would keep the updater's memory for as long as the program
// runs; behind a shell that ends, as the program may wait for all its children.
void OutputDrain::leave() const
{
    const char* const arguments[]
        = {"sh", "-c", "(read -r line <&1; exec /bin/cat <&2 >/dev/null 2>&1) &", nullptr};
    pid_t shell = 0;
    // posix_spawn leaves the arguments alone; its declaration is older than const.
    if (posix_spawn(&shell, "/bin/sh", &m_files, &m_attributes, const_cast<char* const*>(arguments),
                    environ)
        == 0)
        waitpid(shell, nullptr, 0);
}

void OutputDrain::programStarted()
{
    m_life.closeReadEnd();
}
