// Processes that are killed, at the system call of a chosen number or at a moment, and processes that begin together.
#pragma once

#include <chrono>
#include <string>
#include <sys/types.h>
#include <vector>

/// What to start, and where its output goes.
struct ProcessCommand
{
    std::vector<std::string> words;       ///< the program's path, then its arguments
    std::vector<std::string> environment; ///< "NAME=VALUE"
    std::string output;                   ///< the file for both streams
};

struct CountedRun
{
    bool isTraceable = true;         ///< false: this system lets nobody watch a process; nothing was run
    int status = 0;                  ///< as waitpid() tells it
    long calls = 0;                  ///< how many system calls were begun
    std::vector<long> changingCalls; ///< the numbers of those that change what is on disk, from 1
};

/// Runs `command`. With `fatalCall`, from 1, it gets SIGKILL when it begins the system call of that number; of a write
/// the first half is done then, of any other call nothing.
CountedRun runCounted(const ProcessCommand& command, long fatalCall = 0);

/// Runs `command` without looking at it, for no longer than `longest`. A signal ends it then, which the kernel sends
/// and the process does not handle. Returns what waitpid() tells.
int runAtMost(const ProcessCommand& command, std::chrono::microseconds longest);

/// Starts a process that runs `command` once nobody has the writing end of the pipe `gate` open any more.
pid_t startBehind(const int (&gate)[2], const ProcessCommand& command);

/// Waits for `process` to end and returns what waitpid() tells.
int endOf(pid_t process);
