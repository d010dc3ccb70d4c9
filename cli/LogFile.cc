#include "cli/LogFile.h"

#include "cli/ExitStatus.h"
#include "cli/ReportLines.h"
#include "standalone/Utf8.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <string_view>
#include <sys/stat.h>
#include <unistd.h>

namespace cli {

namespace {

/// Far more than any start writes. What is longer was not written by one.
constexpr std::size_t kMostRead = 16UL << 20;

std::string folderOf(const std::string& path)
{
    const std::size_t end = path.rfind('/');
    return end == std::string::npos ? "." : path.substr(0, std::max<std::size_t>(end, 1));
}

[[noreturn]] void refuse(const std::string& path, const std::string& why)
{
    throw WrongUse("The error log " + cli::quoted(shown(path)) + " " + why);
}

[[noreturn]] void refuseMissing(const std::string& path, bool isUsual)
{
    const std::string folder = folderOf(path);
    struct stat found
    {
    };
    if (::stat(folder.c_str(), &found) != 0 && errno == ENOENT) {
        const std::string lacks = "is missing, and so is its folder";
        refuse(path, isUsual ? lacks + ". The autoloader does not make the folder, and without it nothing is logged: "
                                       "make it with mkdir -p, then start the host."
                             : lacks + ".");
    }
    refuse(path, isUsual ? "is missing. No host has started yet with this home folder, or it could not write there. "
                           "\"kestbundle list\" says what a start would come to."
                         : "is missing.");
}

/// Whether `line` is as "2026-03-07 14:05:09".
bool isTime(std::string_view line)
{
    constexpr std::string_view kForm = "0000-00-00 00:00:00";
    return std::equal(line.begin(), line.end(), kForm.begin(), kForm.end(), [](char character, char form) {
        return form == '0' ? character >= '0' && character <= '9' : character == form;
    });
}

/// The begin of the file behind `descriptor`, up to the longest that is read.
std::string readBegin(int descriptor, const std::string& path)
{
    std::string bytes;
    char buffer[65536];
    while (bytes.size() < kMostRead) {
        const ssize_t length = ::read(descriptor, buffer, std::min(sizeof(buffer), kMostRead - bytes.size()));
        if (length > 0) {
            bytes.append(buffer, static_cast<std::size_t>(length));
        } else if (length == 0) {
            break;
        } else if (errno != EINTR) {
            refuse(path, "cannot be read: " + standalone::displayable(std::string_view(std::strerror(errno))) + ".");
        }
    }
    return bytes;
}

} // namespace

LogFile readLogFile(const std::string& path, bool isUsual)
{
    const int descriptor = ::open(path.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC);
    if (descriptor < 0 && errno == ENOENT) {
        refuseMissing(path, isUsual);
    }
    if (descriptor < 0) {
        refuse(path, "cannot be opened: " + standalone::displayable(std::string_view(std::strerror(errno))) + ".");
    }
    const struct Closing
    {
        int file;
        ~Closing() { ::close(file); }
    } closing{descriptor};
    struct stat found
    {
    };
    if (::fstat(descriptor, &found) != 0 || !S_ISREG(found.st_mode)) { // some devices never come to an end
        refuse(path, "is no regular file.");
    }
    LogFile log{path, static_cast<std::uintmax_t>(found.st_size), true, false, {}};
    std::string bytes = readBegin(descriptor, path);
    log.isWhole = bytes.size() < kMostRead;
    if (!log.isWhole) { // the last record may be cut; what is before it is not
        bytes.resize(std::min(bytes.rfind("\n\n"), bytes.size() - 1) + 1);
    }
    log.text = parseErrorLog(bytes);
    log.isForeign = !bytes.empty() && !isTime(log.text.time);
    return log;
}

} // namespace cli
