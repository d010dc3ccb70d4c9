// Reading the error log of the running process, and of no other.
#include "cli/ErrorLog.h"

#include "standalone/Utf8.h"

#include <cerrno>
#include <cstring>
#include <dirent.h>
#include <fcntl.h>
#include <memory>
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

/// Whether this process has `file` open. The standard library's own listing would end the process without memory.
bool isOpenHere(const struct stat& file)
{
    const std::unique_ptr<DIR, int (*)(DIR*)> folder(::opendir("/proc/self/fd"), ::closedir);
    if (!folder) {
        return false;
    }
    while (const dirent* const descriptor = ::readdir(folder.get())) {
        struct stat opened
        {
        };
        if (::fstatat(::dirfd(folder.get()), descriptor->d_name, &opened, 0) == 0 && isSameFile(opened, file)) {
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
    const struct Closing // also when there is no memory for the bytes
    {
        int file;
        ~Closing() { ::close(file); }
    } closing{descriptor};
    char buffer[65536];
    for (;;) {
        const ssize_t length = ::read(closing.file, buffer, sizeof(buffer));
        if (length > 0) {
            bytes.append(buffer, static_cast<std::size_t>(length));
        } else if (length == 0 || errno != EINTR) {
            return length == 0 ? "" : reasonOf(errno);
        }
    }
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
