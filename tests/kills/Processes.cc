#include "tests/kills/Processes.h"

#include "tests/SpawnWords.h"

#include <cerrno>
#include <csignal>
#include <cstdint>
#include <elf.h>
#include <fcntl.h>
#include <gtest/gtest.h>
#include <set>
#include <sys/ptrace.h>
#include <sys/syscall.h>
#include <sys/time.h>
#include <sys/uio.h>
#include <sys/user.h>
#include <sys/wait.h>
#include <unistd.h>

namespace {

constexpr int kNotPrepared = 125;
constexpr int kCallStop = SIGTRAP | 0x80;

const std::set<std::uint64_t> kWrites = {SYS_write, SYS_pwrite64};
const std::set<std::uint64_t> kChanges = {
    SYS_write,     SYS_pwrite64, SYS_writev,   SYS_pwritev,   SYS_fsync,  SYS_fdatasync, SYS_ftruncate,
    SYS_fallocate, SYS_mkdirat,  SYS_unlinkat, SYS_renameat2, SYS_linkat, SYS_symlinkat, SYS_fchmodat,
    SYS_fchmod,    SYS_fchown,   SYS_renameat,
#ifdef SYS_rename // what younger machines do without
    SYS_rename,    SYS_unlink,   SYS_mkdir,    SYS_rmdir,     SYS_creat,  SYS_link,      SYS_chmod,
#endif
};

/// Starts `command` after `prepare`, which is called in the new process and says whether that can go on.
template <typename Prepare>
pid_t start(const ProcessCommand& command, Prepare prepare)
{
    const std::vector<char*> words = pointersTo(command.words);
    const std::vector<char*> environment = pointersTo(command.environment);
    const pid_t process = ::fork();
    if (process == 0) {
        const int output = ::open(command.output.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0600);
        if (output < 0 || ::dup2(output, STDOUT_FILENO) < 0 || ::dup2(output, STDERR_FILENO) < 0) {
            ::_exit(126);
        }
        ::close(output);
        if (!prepare()) {
            ::_exit(kNotPrepared);
        }
        ::execve(words[0], words.data(), environment.data());
        ::_exit(127);
    }
    return process;
}

/// Halves the number of bytes that the write at whose beginning `process` stands is to write.
void halveWrite(pid_t process)
{
    user_regs_struct registers{};
    iovec place{&registers, sizeof registers};
    EXPECT_EQ(::ptrace(PTRACE_GETREGSET, process, NT_PRSTATUS, &place), 0);
#if defined(__x86_64__)
    registers.rdx /= 2;
#elif defined(__aarch64__)
    registers.regs[2] /= 2;
#else
#error "which register holds the third argument of a system call?"
#endif
    EXPECT_EQ(::ptrace(PTRACE_SETREGSET, process, NT_PRSTATUS, &place), 0);
}

} // namespace

int endOf(pid_t process)
{
    int status = 0;
    while (::waitpid(process, &status, 0) < 0) {
        EXPECT_EQ(errno, EINTR);
    }
    return status;
}

CountedRun runCounted(const ProcessCommand& command, long fatalCall)
{
    CountedRun run;
    const pid_t process = start(command, [] {
        ::alarm(60); // outlives exec: a run that hangs ends
        return ::ptrace(PTRACE_TRACEME, 0, nullptr, nullptr) == 0;
    });
    run.status = endOf(process);
    if (!WIFSTOPPED(run.status)) {
        run.isTraceable = !WIFEXITED(run.status) || WEXITSTATUS(run.status) != kNotPrepared;
        return run;
    }
    EXPECT_EQ(::ptrace(PTRACE_SETOPTIONS, process, nullptr, PTRACE_O_TRACESYSGOOD | PTRACE_O_EXITKILL), 0);
    bool dies = false;
    int signal = 0;
    for (;;) {
        if (dies) {
            ::kill(process, SIGKILL);
        }
        ::ptrace(PTRACE_SYSCALL, process, nullptr, signal); // fails when it has been killed
        run.status = endOf(process);
        if (!WIFSTOPPED(run.status)) {
            return run;
        }
        signal = WSTOPSIG(run.status) == kCallStop ? 0 : WSTOPSIG(run.status);
        if (signal != 0 || dies) {
            continue;
        }
        __ptrace_syscall_info call{};
        if (::ptrace(PTRACE_GET_SYSCALL_INFO, process, sizeof call, &call) <= 0 ||
            call.op != PTRACE_SYSCALL_INFO_ENTRY) {
            dies = run.calls == fatalCall && fatalCall != 0; // half a write has been done
            continue;
        }
        ++run.calls;
        if (kChanges.contains(call.entry.nr)) {
            run.changingCalls.push_back(run.calls);
        }
        if (run.calls == fatalCall) {
            if (kWrites.contains(call.entry.nr)) {
                halveWrite(process);
            } else {
                dies = true;
            }
        }
    }
}

int runAtMost(const ProcessCommand& command, std::chrono::microseconds longest)
{
    return endOf(start(command, [longest] {
        itimerval timer{};
        timer.it_value = {longest.count() / 1'000'000, longest.count() % 1'000'000};
        return ::setitimer(ITIMER_REAL, &timer, nullptr) == 0; // outlives exec
    }));
}

pid_t startBehind(const int (&gate)[2], const ProcessCommand& command)
{
    return start(command, [&gate] {
        ::alarm(120); // outlives exec: a run that hangs ends
        char byte = 0;
        ::close(gate[1]);
        const bool isOpen = ::read(gate[0], &byte, 1) == 0;
        ::close(gate[0]);
        return isOpen;
    });
}
