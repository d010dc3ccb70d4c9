// Memory as the process under test sees it: operator new, and the C library's functions for everybody else. The latter
// are the address sanitizer's own in an instrumented program, which allocates before it can run any code of ours.
#include "tests/faults/FaultPoint.h"

#include <cstdlib>
#include <new>

using faults::Kind;
using faults::strike;

#ifndef KEST_INSTRUMENTED
extern "C" {

// The functions that would have been used without the ones below; asking the dynamic linker for them needs memory.
void* __libc_malloc(std::size_t size);
void* __libc_calloc(std::size_t count, std::size_t size);
void* __libc_realloc(void* block, std::size_t size);

void* malloc(std::size_t size) noexcept
{
    return strike(Kind::kMalloc, "malloc") != nullptr ? nullptr : __libc_malloc(size);
}

void* calloc(std::size_t count, std::size_t size) noexcept
{
    return strike(Kind::kMalloc, "calloc") != nullptr ? nullptr : __libc_calloc(count, size);
}

void* realloc(void* block, std::size_t size) noexcept
{
    return strike(Kind::kMalloc, "realloc") != nullptr ? nullptr : __libc_realloc(block, size);
}

} // extern "C"
#endif

namespace {

/// Memory for operator new, whose failures are a kind of their own.
void* unstruck(std::size_t size) noexcept
{
#ifdef KEST_INSTRUMENTED
    return std::malloc(size);
#else
    return __libc_malloc(size);
#endif
}

void* allocate(std::size_t size, std::size_t alignment) noexcept
{
    if (strike(Kind::kNew, "operator new") != nullptr) {
        return nullptr;
    }
    if (alignment > __STDCPP_DEFAULT_NEW_ALIGNMENT__) {
        void* block = nullptr;
        return ::posix_memalign(&block, alignment, size) == 0 ? block : nullptr;
    }
    return unstruck(size > 0 ? size : 1);
}

void* allocateOrThrow(std::size_t size, std::size_t alignment)
{
    if (void* const block = allocate(size, alignment)) {
        return block;
    }
    throw std::bad_alloc();
}

} // namespace

void* operator new(std::size_t size)
{
    return allocateOrThrow(size, 1);
}

void* operator new[](std::size_t size)
{
    return allocateOrThrow(size, 1);
}

void* operator new(std::size_t size, std::align_val_t alignment)
{
    return allocateOrThrow(size, static_cast<std::size_t>(alignment));
}

void* operator new[](std::size_t size, std::align_val_t alignment)
{
    return allocateOrThrow(size, static_cast<std::size_t>(alignment));
}

void* operator new(std::size_t size, const std::nothrow_t&) noexcept
{
    return allocate(size, 1);
}

void* operator new[](std::size_t size, const std::nothrow_t&) noexcept
{
    return allocate(size, 1);
}

void* operator new(std::size_t size, std::align_val_t alignment, const std::nothrow_t&) noexcept
{
    return allocate(size, static_cast<std::size_t>(alignment));
}

void* operator new[](std::size_t size, std::align_val_t alignment, const std::nothrow_t&) noexcept
{
    return allocate(size, static_cast<std::size_t>(alignment));
}

#ifndef __cpp_sized_deallocation // then <new> leaves them to the library that is linked
void operator delete(void* block, std::size_t size) noexcept;
void operator delete[](void* block, std::size_t size) noexcept;
void operator delete(void* block, std::size_t size, std::align_val_t alignment) noexcept;
void operator delete[](void* block, std::size_t size, std::align_val_t alignment) noexcept;
#endif

void operator delete(void* block) noexcept
{
    std::free(block);
}

void operator delete[](void* block) noexcept
{
    std::free(block);
}

void operator delete(void* block, std::size_t) noexcept
{
    std::free(block);
}

void operator delete[](void* block, std::size_t) noexcept
{
    std::free(block);
}

void operator delete(void* block, std::align_val_t) noexcept
{
    std::free(block);
}

void operator delete[](void* block, std::align_val_t) noexcept
{
    std::free(block);
}

void operator delete(void* block, std::size_t, std::align_val_t) noexcept
{
    std::free(block);
}

void operator delete[](void* block, std::size_t, std::align_val_t) noexcept
{
    std::free(block);
}
