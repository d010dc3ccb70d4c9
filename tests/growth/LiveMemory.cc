#include "tests/growth/LiveMemory.h"

#include <algorithm>
#include <atomic>
#include <cerrno>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <malloc.h>

// The system's allocator under the names by which its own library calls it.
extern "C" {
void* __libc_malloc(std::size_t size);
void* __libc_memalign(std::size_t alignment, std::size_t size);
void __libc_free(void* block);
}

namespace {

std::atomic<std::size_t> liveCount;
std::atomic<std::size_t> liveBytes;

/// Stands before each block. The allocator itself does not say how much was asked for: it gives what it has at hand.
struct alignas(16) Label
{
    std::size_t size;
    void* whole; ///< label and block, as the system's allocator gave them
};

Label& labelOf(void* block) noexcept
{
    return *(static_cast<Label*>(block) - 1);
}

/// A block of `size` bytes; `alignment` is a power of two.
void* take(std::size_t size, std::size_t alignment) noexcept
{
    const std::size_t before = std::max(alignment, sizeof(Label));
    void* const whole = size > PTRDIFF_MAX - before ? nullptr
                        : before == sizeof(Label)   ? __libc_malloc(before + size)
                                                    : __libc_memalign(alignment, before + size);
    if (whole == nullptr) {
        errno = ENOMEM;
        return nullptr;
    }
    void* const block = static_cast<char*>(whole) + before;
    labelOf(block) = {size, whole};
    ++liveCount;
    liveBytes += size;
    return block;
}

} // namespace

extern "C" {

void* malloc(std::size_t size)
{
    return take(size, 1);
}

void free(void* block)
{
    if (block != nullptr) {
        --liveCount;
        liveBytes -= labelOf(block).size;
        __libc_free(labelOf(block).whole);
    }
}

void* calloc(std::size_t count, std::size_t size)
{
    std::size_t bytes = 0;
    if (__builtin_mul_overflow(count, size, &bytes)) {
        errno = ENOMEM;
        return nullptr;
    }
    void* const block = take(bytes, 1);
    return block != nullptr ? std::memset(block, 0, bytes) : nullptr;
}

void* realloc(void* block, std::size_t size)
{
    if (block == nullptr || size == 0) {
        free(block);
        return block == nullptr ? malloc(size) : nullptr;
    }
    void* const moved = take(size, 1);
    if (moved != nullptr) {
        std::memcpy(moved, block, std::min(size, labelOf(block).size));
        free(block);
    }
    return moved;
}

void* memalign(std::size_t alignment, std::size_t size)
{
    return take(size, alignment);
}

void* aligned_alloc(std::size_t alignment, std::size_t size)
{
    return take(size, alignment);
}

int posix_memalign(void** block, std::size_t alignment, std::size_t size)
{
    *block = take(size, alignment);
    return *block != nullptr ? 0 : ENOMEM;
}

std::size_t malloc_usable_size(void* block)
{
    return block != nullptr ? labelOf(block).size : 0;
}

} // extern "C"

void Blocks::add(const void* block)
{
    if (block != nullptr) {
        ++count;
        bytes += labelOf(const_cast<void*>(block)).size;
    }
}

Blocks operator-(const Blocks& later, const Blocks& earlier)
{
    return {later.count - earlier.count, later.bytes - earlier.bytes};
}

std::ostream& operator<<(std::ostream& stream, const Blocks& blocks)
{
    return stream << blocks.count << " blocks with " << blocks.bytes << " bytes";
}

Blocks liveBlocks() noexcept
{
    return {liveCount, liveBytes};
}

std::vector<std::string> openDescriptors()
{
    std::vector<std::string> descriptors;
    for (const auto& entry : std::filesystem::directory_iterator("/proc/self/fd")) {
        std::error_code isGone; // the descriptor of this very walk
        const std::filesystem::path target = std::filesystem::read_symlink(entry.path(), isGone);
        descriptors.push_back(entry.path().filename().string() + " -> " + target.string());
    }
    std::sort(descriptors.begin(), descriptors.end());
    return descriptors;
}

std::vector<std::string> mappedFiles()
{
    std::ifstream maps("/proc/self/maps");
    std::vector<std::string> lines;
    for (std::string line; std::getline(maps, line);) {
        if (line.find('/') != std::string::npos) {
            lines.push_back(line);
        }
    }
    return lines;
}
