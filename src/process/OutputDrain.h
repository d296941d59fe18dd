#pragma once

#include "process/Pipe.h"

#include <spawn.h>

// The second reader of a program's standard output, a process that outlives the updater: it takes,
// and drops, what is printed once this object is gone, whether destroyed or with the updater.
class OutputDrain
{
public:
    OutputDrain();
    ~OutputDrain();
    Q_DISABLE_COPY_MOVE(OutputDrain)

    // Starts that process for the pipe that is the caller's standard output. To be called in the
    // program's process between fork and exec; makes system calls only. Without a process to be
    // had there is no second reader.
    void leave() const;

    // To be called when the program was started, with or without success.
    void programStarted();

private:
    Pipe m_life; // nothing is written to it: its writing end, ours alone, tells of our end
    posix_spawn_file_actions_t m_files;
    posix_spawnattr_t m_attributes;
};
