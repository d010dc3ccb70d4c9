#include "cli/NewFiles.h"

#include "cli/ReportLines.h"
#include "standalone/Folders.h"

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace cli {

namespace {

[[noreturn]] void fail(const std::string& path, int error)
{
    throw NotMade(shown(path) + ": " + shown(std::strerror(error)));
}

/// Returns 0, or the errno of the step that failed.
int writeAll(int descriptor, std::string_view content)
{
    while (!content.empty()) {
        const ssize_t written = ::write(descriptor, content.data(), content.size());
        if (written < 0 && errno != EINTR) {
            return errno;
        }
        content.remove_prefix(written < 0 ? 0 : static_cast<std::size_t>(written));
    }
    return 0;
}

} // namespace

NewFiles::~NewFiles()
{
    for (; !made.empty(); made.pop_back()) {
        static_cast<void>(std::remove(made.back().c_str()));
    }
}

void NewFiles::makeFolder(const std::string& path, mode_t mode)
{
    made.push_back(path); // first, since remembering it can fail
    if (::mkdir(path.c_str(), mode) != 0) {
        const int problem = errno;
        made.pop_back();
        fail(path, problem);
    }
}

void NewFiles::makeMissingFolders(const std::string& path)
{
    std::vector<std::string> missing; // the innermost first
    struct stat found
    {
    };
    for (std::string one = path; ::stat(one.c_str(), &found) != 0; one = standalone::folderOf(one)) {
        if (errno != ENOENT) {
            fail(one, errno);
        }
        missing.push_back(one);
    }
    for (; !missing.empty(); missing.pop_back()) {
        makeFolder(missing.back(), 0700);
    }
}

void NewFiles::write(const std::string& path, std::string_view content)
{
    made.push_back(path);
    const int descriptor = ::open(path.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0666);
    if (descriptor < 0) {
        const int problem = errno;
        made.pop_back();
        fail(path, problem);
    }
    const int problem = writeAll(descriptor, content);
    const bool isClosed = ::close(descriptor) == 0;
    if (problem != 0 || !isClosed) {
        fail(path, problem != 0 ? problem : errno);
    }
}

} // namespace cli
