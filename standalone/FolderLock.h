// The lock by which hosts on one machine take turns at a configuration folder.
#pragma once

#include <chrono>
#include <string>

namespace standalone {

/// An advisory lock on a folder, which leaves no file behind and ends with its process at the latest.
class FolderLock
{
public:
    enum class Outcome
    {
        kHeld,
        kBusy,        ///< somebody else held it until the deadline
        kUnsupported, ///< the file system has no such lock (some network file systems)
        kFailed,      ///< the folder cannot be opened; errno says why
    };

    FolderLock() noexcept = default;
    FolderLock(const FolderLock&) = delete;
    FolderLock& operator=(const FolderLock&) = delete;
    ~FolderLock() { release(); }

    /// Takes the lock on `folder`, waiting until `deadline` at most; it must not be held already.
    Outcome take(const std::string& folder, std::chrono::steady_clock::time_point deadline);

    /// Gives the lock back, if it is held.
    void release() noexcept;

private:
    int descriptor = -1;
};

} // namespace standalone
