#include "standalone/FolderLock.h"

#include <cerrno>
#include <fcntl.h>
#include <sys/file.h>
#include <thread>
#include <unistd.h>

namespace standalone {

FolderLock::Outcome FolderLock::take(const std::string& folder, std::chrono::steady_clock::time_point deadline)
{
    constexpr std::chrono::milliseconds kBetweenTries{2};
    descriptor = ::open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (descriptor < 0) {
        return Outcome::kFailed;
    }
    // Trying again and again, because a waiting flock() cannot be told when to give up.
    while (::flock(descriptor, LOCK_EX | LOCK_NB) != 0) {
        if (errno == EINTR) {
            continue;
        }
        if (errno != EWOULDBLOCK) {
            release();
            return Outcome::kUnsupported;
        }
        if (std::chrono::steady_clock::now() >= deadline) {
            release();
            return Outcome::kBusy;
        }
        std::this_thread::sleep_for(kBetweenTries);
    }
    return Outcome::kHeld;
}

void FolderLock::release() noexcept
{
    if (descriptor >= 0) {
        ::flock(descriptor, LOCK_UN); // closing alone would leave the lock to a child process that inherited it
        ::close(descriptor);
        descriptor = -1;
    }
}

} // namespace standalone
