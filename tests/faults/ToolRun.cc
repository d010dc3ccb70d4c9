#include "tests/faults/ToolRun.h"

#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <cstring>
#include <dirent.h>
#include <fcntl.h>
#include <fstream>
#include <map>
#include <memory>
#include <sstream>
#include <stdexcept>
#include <sys/mman.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

extern "C" {
// A status of its own, so that what a sanitizer finds is not taken for the command's answer.
const char* __asan_default_options();
const char* __asan_default_options()
{
    return "exitcode=99";
}
const char* __ubsan_default_options();
const char* __ubsan_default_options()
{
    return "exitcode=99:print_stacktrace=1";
}
}

namespace faults {

namespace {

/// What the process of a run tells the one that forked it.
struct Shared
{
    Progress progress;
    char leftOpen[512];
};

Shared& sharedMemory()
{
    static void* const memory =
        ::mmap(nullptr, sizeof(Shared), PROT_READ | PROT_WRITE, MAP_SHARED | MAP_ANONYMOUS, -1, 0);
    if (memory == MAP_FAILED) {
        throw std::runtime_error(std::strerror(errno));
    }
    return *static_cast<Shared*>(memory);
}

/// The descriptors of this process and what they lead to.
std::map<int, std::string> openDescriptors()
{
    std::map<int, std::string> found;
    const std::unique_ptr<DIR, int (*)(DIR*)> folder(::opendir("/proc/self/fd"), ::closedir);
    while (const dirent* const entry = ::readdir(folder.get())) {
        const int descriptor = std::atoi(entry->d_name);
        char target[256];
        const ssize_t length =
            ::readlink(("/proc/self/fd/" + std::string(entry->d_name)).c_str(), target, sizeof target);
        if (length >= 0 && descriptor != ::dirfd(folder.get())) {
            found.emplace(descriptor, std::string(target, static_cast<std::size_t>(length)));
        }
    }
    return found;
}

void redirect(const std::string& file, int descriptor)
{
    const int opened = ::open(file.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0600);
    if (opened < 0 || ::dup2(opened, descriptor) < 0) {
        ::_exit(126);
    }
    ::close(opened);
}

int statusOf(pid_t process)
{
    int status = 0;
    while (::waitpid(process, &status, 0) < 0) {
        if (errno != EINTR) {
            throw std::runtime_error(std::strerror(errno));
        }
    }
    return WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
}

pid_t forked()
{
    const pid_t process = ::fork();
    if (process < 0) {
        throw std::runtime_error(std::strerror(errno));
    }
    return process;
}

[[noreturn]] void runHere(std::vector<std::string>& arguments, const Way& way, long which, bool isShown)
{
    std::vector<char*> pointers;
    for (std::string& argument : arguments) {
        pointers.push_back(argument.data());
    }
    pointers.push_back(nullptr);
    Shared& shared = sharedMemory();
    const std::map<int, std::string> before = openDescriptors();
    arm(way, which, shared.progress, isShown);
    const int status = kestbundleMain(static_cast<int>(arguments.size()), pointers.data());
    disarm();
    std::string leftOpen;
    for (const auto& [descriptor, target] : openDescriptors()) {
        leftOpen += before.contains(descriptor) ? "" : std::to_string(descriptor) + " -> " + target + " ";
    }
    std::strncpy(shared.leftOpen, leftOpen.c_str(), sizeof shared.leftOpen - 1);
    std::exit(status);
}

} // namespace

ToolRun runTool(const std::string& folder, std::vector<std::string> arguments, const Way& way, long which,
                unsigned seconds, bool isShown)
{
    Shared& shared = sharedMemory();
    shared = Shared();
    const std::string output = folder + "/output";
    const std::string errors = folder + "/errors";
    const pid_t process = forked();
    if (process == 0) {
        ::alarm(seconds);
        const rlimit noCore{0, 0};
        ::setrlimit(RLIMIT_CORE, &noCore);
        redirect(output, STDOUT_FILENO);
        redirect(errors, STDERR_FILENO);
        runHere(arguments, way, which, isShown);
    }
    ToolRun run;
    run.status = statusOf(process);
    run.output = contentOf(output);
    run.errors = contentOf(errors);
    run.leftOpen = shared.leftOpen;
    run.progress = shared.progress;
    return run;
}

std::string inOtherProcess(const std::string& folder, std::string (*task)(const std::string&),
                           const std::string& argument)
{
    const std::string answer = folder + "/answer";
    const pid_t process = forked();
    if (process == 0) {
        std::ofstream(answer, std::ios::binary) << task(argument);
        ::_exit(0);
    }
    const int status = statusOf(process);
    return status == 0 ? contentOf(answer) : "ended with status " + std::to_string(status);
}

std::string contentOf(const std::string& path)
{
    std::ifstream stream(path, std::ios::binary);
    std::ostringstream content;
    content << stream.rdbuf();
    return content.str();
}

} // namespace faults
