#include "standalone/RegularFile.h"

#include "standalone/Utf8.h"

#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace standalone {

namespace {

std::string reason(int error)
{
    return displayable(std::string_view(std::strerror(error)));
}

} // namespace

std::string RegularFile::open(const char* path)
{
    close();
    do {
        // Not blocking: opening a pipe would wait for somebody to write.
        descriptor = ::open(path, O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY);
    } while (descriptor < 0 && errno == EINTR);
    if (descriptor < 0) {
        return reason(errno);
    }
    struct stat status = {};
    if (::fstat(descriptor, &status) != 0) {
        const int error = errno;
        close();
        return reason(error);
    }
    if (!S_ISREG(status.st_mode)) {
        close();
        return S_ISDIR(status.st_mode) ? reason(EISDIR) : "Not a regular file";
    }
    expectedSize = static_cast<std::uint64_t>(status.st_size);
    position = 0;
    return {};
}

std::string RegularFile::read(char* buffer, std::size_t room, std::size_t& length)
{
    length = 0;
    while (length < room) {
        const ssize_t taken = ::read(descriptor, buffer + length, room - length);
        if (taken < 0 && errno == EINTR) {
            continue;
        }
        if (taken < 0) {
            const int error = errno;
            close();
            return reason(error);
        }
        length += static_cast<std::size_t>(taken);
        position += static_cast<std::uint64_t>(taken);
        // Less than asked for, at the very place where the file should end: asking again would answer 0.
        if (taken == 0 || (length < room && position == expectedSize)) {
            close();
            return {};
        }
    }
    return {};
}

void RegularFile::close() noexcept
{
    if (descriptor >= 0) {
        ::close(descriptor);
        descriptor = -1;
    }
}

} // namespace standalone
