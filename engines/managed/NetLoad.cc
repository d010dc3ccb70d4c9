// The library's one export.
#include "engines/managed/Guest.h"
#include "engines/managed/Runtime.h"
#include "engines/managed/Text.h"

#include "host/Engines.h"
#include "host/LocaleText.h"
#include "host/StdString.h"

#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <sys/stat.h>
#include <type_traits>
#include <unistd.h>

namespace {

/// A file opened for reading, without waiting for anybody.
class OpenFile
{
public:
    explicit OpenFile(const std::string& path)
        : descriptor(::open(path.c_str(), O_RDONLY | O_NONBLOCK | O_NOCTTY | O_CLOEXEC)), error(errno)
    {
    }
    OpenFile(const OpenFile&) = delete;
    OpenFile& operator=(const OpenFile&) = delete;
    ~OpenFile()
    {
        if (descriptor >= 0) {
            ::close(descriptor);
        }
    }

    /// Why this can be no assembly, in one line; else empty.
    std::string problem() const
    {
        if (descriptor < 0) {
            return std::strerror(error);
        }
        struct stat found
        {
        };
        if (::fstat(descriptor, &found) != 0 || !S_ISREG(found.st_mode)) {
            return S_ISDIR(found.st_mode) ? "it is a folder" : "it is no regular file";
        }
        return found.st_size == 0 ? "the file is empty" : "";
    }

    std::string otherPath() const { return "/proc/self/fd/" + std::to_string(descriptor); }

private:
    int descriptor;
    int error;
};

engines::ManagedProblem load(const std::string& path)
{
    const OpenFile file(path);
    if (std::string problem = file.problem(); !problem.empty()) {
        return problem;
    }
    const engines::ManagedVisit visit;
    if (std::string problem = engines::startRuntime(); !problem.empty()) {
        return problem;
    }
    return engines::loadAssembly(path, file.otherPath());
}

} // namespace

// Declared by the type that hosts call it by: a wrong parameter does not compile.
extern "C" __attribute__((visibility("default"))) std::remove_pointer_t<engines::NetLoad> netLoad;

bool netLoad(const CStdStr<wchar_t>& path, int /*reserved*/)
{
    KestEngineHost* host = kestEngineHost();
    if (host == nullptr) {
        return false;
    }
    host->beginComponent(path);
    const std::string bytes = localetext::narrow(path);
    const engines::ManagedProblem problem = load(bytes);
    if (problem) {
        host->print(engines::repairedUtf8(bytes) + ": could not be loaded: " + *problem + "\n");
    }
    host->endComponent(problem ? problem->substr(0, problem->find('\n')) : "");
    return !problem;
}
