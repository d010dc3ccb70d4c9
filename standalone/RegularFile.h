// A regular file that is read from front to end.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

namespace standalone {

/// Holds a descriptor while it is open. Never waits: what is no regular file is not opened. The file may be changed
/// meanwhile; then what is read is what is there at the time.
class RegularFile
{
public:
    RegularFile() noexcept = default;
    ~RegularFile() { close(); }
    RegularFile(const RegularFile&) = delete;
    RegularFile& operator=(const RegularFile&) = delete;

    /// Opens the file at `path`, which is narrow. Returns an empty text, or what is wrong in UTF-8.
    std::string open(const char* path);

    /// The size at the time of opening.
    std::uint64_t size() const noexcept { return expectedSize; }

    /// Fills `buffer` with up to `room` (not 0) bytes. Fewer mean that the end is reached, and the file is closed.
    /// Returns an empty text, or what is wrong in UTF-8.
    std::string read(char* buffer, std::size_t room, std::size_t& length);

    bool isOpen() const noexcept { return descriptor >= 0; }
    void close() noexcept;

private:
    std::uint64_t expectedSize = 0;
    std::uint64_t position = 0;
    int descriptor = -1;
};

} // namespace standalone
