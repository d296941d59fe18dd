#pragma once

// Hands a command line to the shell and waits for it, as system(3) does, and gives what that gives:
// a wait status, or -1 when no shell could be started. Unlike there the shell has a session of its
// own, so that a Ctrl-C or a hang-up of our terminal does not cut it short, and SIGPIPE, which this
// process ignores, does to it what it does to any program. Writes nothing to the log. Any thread.
int runInShell(const char* commandLine);
