#pragma once

// Ends the process with the exit status, once everything that main made is destroyed. A worker of
// LaunchAsync is detached and may still wait for its program: while one runs, static objects, which
// it uses, are not destroyed beside it.
[[noreturn]] void endProcess(int status);
