#include "cli/ReservedOutput.h"

#include <cerrno>
#include <cstdio>
#include <fcntl.h>
#include <string_view>
#include <system_error>
#include <unistd.h>

namespace cli {

namespace {

[[noreturn]] void fail()
{
    throw std::system_error(errno, std::generic_category(), "standard output");
}

} // namespace

ReservedOutput::ReservedOutput() : descriptor(::fcntl(STDOUT_FILENO, F_DUPFD_CLOEXEC, STDERR_FILENO + 1))
{
    if (descriptor < 0) {
        fail();
    }
    if (::dup2(STDERR_FILENO, STDOUT_FILENO) < 0) {
        const int error = errno;
        ::close(descriptor);
        errno = error;
        fail();
    }
}

ReservedOutput::~ReservedOutput()
{
    std::fflush(stdout);
    ::dup2(descriptor, STDOUT_FILENO);
    ::close(descriptor);
}

void ReservedOutput::write(const std::string& document)
{
    for (std::string_view rest = document; !rest.empty();) {
        const ssize_t written = ::write(descriptor, rest.data(), rest.size());
        if (written >= 0) {
            rest.remove_prefix(static_cast<std::size_t>(written));
        } else if (errno != EINTR) {
            fail();
        }
    }
}

} // namespace cli
