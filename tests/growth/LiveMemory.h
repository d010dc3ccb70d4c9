// What of the process's heap is in use, to the byte, and its open descriptors.
#pragma once

#include <cstddef>
#include <ostream>
#include <string>
#include <vector>

/// Blocks of the heap, counted, and the bytes that were asked for.
struct Blocks
{
    std::size_t count = 0;
    std::size_t bytes = 0;

    /// Adds the block that begins at `block`; null is none.
    void add(const void* block);

    bool operator==(const Blocks&) const = default;
};

Blocks operator-(const Blocks& later, const Blocks& earlier);
std::ostream& operator<<(std::ostream& stream, const Blocks& blocks);

/// All blocks that somebody in this process has taken and not given back, whichever function of the C or C++ library
/// they came from. This program stands in for the allocator to know it.
Blocks liveBlocks() noexcept;

/// The open descriptors of this process, "number -> what it is", sorted.
std::vector<std::string> openDescriptors();

/// The parts of files that are mapped into this process, one line each.
std::vector<std::string> mappedFiles();
