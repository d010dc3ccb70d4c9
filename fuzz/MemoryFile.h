// A file without a place in a folder, for what reads files by their paths.
#pragma once

#include "fuzz/Target.h"

#include <string>
#include <string_view>
#include <sys/mman.h>
#include <sys/types.h>
#include <unistd.h>

namespace fuzz {

/// Lives as long as the process: a target keeps one and fills it anew for each input.
class MemoryFile
{
public:
    MemoryFile() : descriptor(::memfd_create("input", MFD_CLOEXEC)) {}

    std::string path() const { return "/proc/self/fd/" + std::to_string(descriptor); }

    void fill(std::string_view bytes) const
    {
        require(::ftruncate(descriptor, 0) == 0, "a file in memory can be emptied");
        require(::pwrite(descriptor, bytes.data(), bytes.size(), 0) == static_cast<ssize_t>(bytes.size()),
                "a file in memory can be written");
    }

private:
    int descriptor;
};

} // namespace fuzz
