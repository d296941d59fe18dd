#pragma once

#include <string>
#include <sys/types.h>
#include <vector>

// Runs a program, looked for on the path, to its end and gives the seconds from its start to its
// end. Its output goes nowhere; the environment entries ("NAME=value") are added to our own. Throws
// when it cannot be started or fails.
double secondsOfProgram(const std::vector<std::string>& command,
                        const std::vector<std::string>& environment = {});

// The most memory that a process of ours has had in use so far, in KiB. Throws when there is no
// such process any more.
double peakKibibytes(pid_t process);
