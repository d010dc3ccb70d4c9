// Reading the error log of the running process, and of no other.
#include "cli/ErrorLog.h"

#include "standalone/Utf8.h"

#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <filesystem>
#include <sys/stat.h>
#include <unistd.h>

namespace cli {

namespace {

std::string reasonOf(int error)
{
    return standalone::displayable(std::string_view(std::strerror(error)));
}

bool isSameFile(const struct stat& one, const struct stat& other)
{
    return one.st_dev == other.st_dev && one.st_ino == other.st_ino;
}

/// Whether this process has `file` open.
bool isOpenHere(const struct stat& file)
{
    std::error_code error;
    for (const auto& descriptor : std::filesystem::directory_iterator("/proc/self/fd", error)) {
        struct stat opened
        {
        };
        if (::stat(descriptor.path().c_str(), &opened) == 0 && isSameFile(opened, file)) {
            return true;
        }
    }
    return false;
}

/// Why the file at `path` cannot be opened for writing, as the autoloader would; without making it.
std::string openingProblem(const std::string& path)
{
    const int descriptor = ::open(path.c_str(), O_WRONLY | O_NONBLOCK | O_CLOEXEC);
    if (descriptor < 0) {
        return reasonOf(errno);
    }
    ::close(descriptor);
    return "the system gives no reason";
}

/// Reads the regular file at `path` into `bytes`; returns why not, or empty text.
std::string readAll(const std::string& path, std::string& bytes)
{
    const int descriptor = ::open(path.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC);
    if (descriptor < 0) {
        return reasonOf(errno);
    }
    char buffer[65536];
    std::string problem;
    for (;;) {
        const ssize_t length = ::read(descriptor, buffer, sizeof(buffer));
        if (length > 0) {
            bytes.append(buffer, static_cast<std::size_t>(length));
        } else if (length == 0 || errno != EINTR) {
            problem = length == 0 ? "" : reasonOf(errno);
            break;
        }
    }
    ::close(descriptor);
    return problem;
}

} // namespace

ErrorLogFile readErrorLog(const std::string& path)
{
    ErrorLogFile log{path, "", {}};
    struct stat found
    {
    };
    if (::stat(path.c_str(), &found) != 0 || !isOpenHere(found)) {
        log.problem = "it could not be opened: " + openingProblem(path);
    } else if (!S_ISREG(found.st_mode)) { // some devices never come to an end
        log.problem = "it is not a regular file, so what was written there cannot be read back";
    } else {
        std::string bytes;
        if (const std::string problem = readAll(path, bytes); !problem.empty()) {
            log.problem = "it could not be read back: " + problem;
        }
        log.text = parseErrorLog(bytes);
        if (log.problem.empty() && !log.text.isComplete) {
            log.problem = "it is cut off: the disk may be full, or another run has emptied it meanwhile";
        }
    }
    return log;
}

} // namespace cli
