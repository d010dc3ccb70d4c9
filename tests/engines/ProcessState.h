// What a process is to its host, to compare before and after the visit of an engine.
#pragma once

#include <array>
#include <cfenv>
#include <clocale>
#include <csignal>
#include <fcntl.h>
#include <filesystem>
#include <string>
#include <sys/stat.h>
#include <vector>

namespace enginetest {

/// The state of this process in lines of text, so that a difference can be read.
inline std::vector<std::string> processState()
{
    std::vector<std::string> lines;
    constexpr int kFirstRealTime = 32;    // those from here on are an engine's to keep
    constexpr int kRestorer = 0x04000000; // set by the C library with every action, of no effect of its own
    for (int number = 1; number < kFirstRealTime; ++number) {
        struct sigaction action
        {
        };
        ::sigaction(number, nullptr, &action);
        lines.push_back("signal " + std::to_string(number) + ": " +
                        std::to_string(reinterpret_cast<std::uintptr_t>(action.sa_handler)) + ", flags " +
                        std::to_string(action.sa_flags & ~kRestorer));
    }
    sigset_t mask{};
    ::pthread_sigmask(SIG_SETMASK, nullptr, &mask);
    for (int number = 1; number < kFirstRealTime; ++number) {
        lines.push_back("signal " + std::to_string(number) + (sigismember(&mask, number) == 1 ? " blocked" : " open"));
    }
    stack_t stack{};
    ::sigaltstack(nullptr, &stack);
    lines.push_back("signal stack " + std::to_string(reinterpret_cast<std::uintptr_t>(stack.ss_sp)));
    lines.push_back("rounding " + std::to_string(std::fegetround()));
#ifdef __GLIBC__
    lines.push_back("floating-point traps " + std::to_string(::fegetexcept()));
#endif
    lines.push_back(std::string("locale ") + std::setlocale(LC_ALL, nullptr));
    lines.push_back("working directory " + std::filesystem::current_path().string());
    for (int number = 0; number < 3; ++number) {
        struct stat file
        {
        };
        const bool isOpen = ::fstat(number, &file) == 0;
        lines.push_back("descriptor " + std::to_string(number) + ": " +
                        (isOpen ? std::to_string(file.st_dev) + "/" + std::to_string(file.st_ino) + ", flags " +
                                      std::to_string(::fcntl(number, F_GETFL))
                                : "closed"));
    }
    return lines;
}

} // namespace enginetest
