#include "standalone/WholeFile.h"

#include "standalone/Folders.h"
#include "standalone/Utf8.h"

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace standalone {

namespace {

std::string systemReason()
{
    return displayable(std::string_view(std::strerror(errno)));
}

class Descriptor
{
public:
    explicit Descriptor(int opened) noexcept : number(opened) {}
    Descriptor(const Descriptor&) = delete;
    Descriptor& operator=(const Descriptor&) = delete;
    ~Descriptor()
    {
        if (number >= 0) {
            ::close(number);
        }
    }

    int get() const noexcept { return number; }

private:
    int number;
};

/// Returns 0 or an errno.
int writeAll(int descriptor, std::string_view content)
{
    while (!content.empty()) {
        const ssize_t written = ::write(descriptor, content.data(), content.size());
        if (written < 0 && errno != EINTR) {
            return errno;
        }
        content.remove_prefix(written < 0 ? 0 : static_cast<std::size_t>(written));
    }
    return ::fsync(descriptor) == 0 ? 0 : errno;
}

std::string unfinishedName(const std::string& path)
{
    return path + ".new";
}

/// Puts the file `from` in the place of `to`; takes it away when that fails, or when `error` says that it is not whole.
/// Returns 0 or an errno.
int putInPlace(const std::string& from, const std::string& to, int error)
{
    if (error == 0 && ::rename(from.c_str(), to.c_str()) != 0) {
        error = errno;
    }
    if (error != 0) {
        ::unlink(from.c_str());
    }
    return error;
}

/// Replaces the file at `path` by one that gets a name only when it is whole. Fails also where there are no such files,
/// and when another process takes the file away before it is in its place.
bool replaceByNameless(const std::string& path, std::string_view content)
{
    const Descriptor file(::open(folderOf(path).c_str(), O_TMPFILE | O_WRONLY | O_CLOEXEC, 0600));
    if (file.get() < 0 || writeAll(file.get(), content) != 0) {
        return false;
    }
    const std::string source = "/proc/self/fd/" + std::to_string(file.get());
    const std::string beside = unfinishedName(path);
    // A link replaces nothing, so there has to be a name in between. Whatever bears it already is whole as well: its
    // process is dead, or notices that it is gone and takes the other way.
    while (::linkat(AT_FDCWD, source.c_str(), AT_FDCWD, beside.c_str(), AT_SYMLINK_FOLLOW) != 0) {
        if (errno != EEXIST || (::unlink(beside.c_str()) != 0 && errno != ENOENT)) {
            return false;
        }
    }
    return putInPlace(beside, path, 0) == 0;
}

/// The same by a file that has a name of its own from the beginning. Returns 0 or an errno.
int replaceByNamed(const std::string& path, std::string_view content)
{
    std::string beside = path + ".XXXXXX";
    int error = 0;
    {
        const Descriptor file(::mkostemp(beside.data(), O_CLOEXEC));
        if (file.get() < 0) {
            return errno;
        }
        error = writeAll(file.get(), content);
    }
    return putInPlace(beside, path, error);
}

} // namespace

std::string readWholeFile(const std::string& path, std::size_t limit, std::string& content)
{
    const Descriptor file(::open(path.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC | O_NOCTTY));
    struct stat found
    {
    };
    if (file.get() < 0 || ::fstat(file.get(), &found) != 0) {
        return "the file cannot be opened: " + systemReason();
    }
    if (!S_ISREG(found.st_mode)) {
        return "it is not a regular file";
    }
    content.clear();
    // One byte more than allowed is asked for, since a file may grow while it is read.
    while (content.size() <= limit) {
        constexpr std::size_t kPiece = 64UL << 10;
        const std::size_t before = content.size();
        content.resize(std::min(before + kPiece, limit + 1));
        const ssize_t got = ::read(file.get(), content.data() + before, content.size() - before);
        if (got < 0 && errno != EINTR) {
            return "the file cannot be read: " + systemReason();
        }
        content.resize(before + (got < 0 ? 0 : static_cast<std::size_t>(got)));
        if (got == 0) {
            return "";
        }
    }
    return "the file is larger than " + std::to_string(limit >> 20) + " MB";
}

int replaceWholeFile(const std::string& path, std::string_view content)
{
    return replaceByNameless(path, content) ? 0 : replaceByNamed(path, content);
}

void discardUnfinished(const std::string& path)
{
    ::unlink(unfinishedName(path).c_str());
}

} // namespace standalone
