// The system's calls as the process under test sees them: the program's own symbols come before the C library's, for
// every library that it loads.
#include "tests/faults/FaultPoint.h"

#include <cstdarg>
#include <cstddef>
#include <cstdio>
#include <dirent.h>
#include <dlfcn.h>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <sys/types.h>
#include <unistd.h>

using faults::Kind;
using faults::strike;

/// The definition that would have been used without this one.
#define KEST_NEXT(name)                                                                                                \
    ([] {                                                                                                              \
        static auto* const next = reinterpret_cast<decltype(&::name)>(::dlsym(RTLD_NEXT, #name));                      \
        return next;                                                                                                   \
    }())

/// Returns from the enclosing function: `failed` when the call is to fail, else what the call answers.
#define KEST_CALL(kind, failed, name, ...)                                                                             \
    return strike(Kind::kind, #name) != nullptr ? (failed) : KEST_NEXT(name)(__VA_ARGS__)

namespace {

/// How much of `size` a call of `kind` is to move, or -1 for a failure.
ssize_t allowed(Kind kind, const char* name, std::size_t size)
{
    const faults::Way* const way = strike(kind, name);
    if (way == nullptr) {
        return static_cast<ssize_t>(size);
    }
    return way->error != 0 ? -1 : static_cast<ssize_t>(size > 1 ? size / 2 : size);
}

} // namespace

#define KEST_TRANSFER(kind, name, size, ...)                                                                           \
    const ssize_t part = allowed(Kind::kind, #name, size);                                                             \
    return part < 0 ? -1 : KEST_NEXT(name)(__VA_ARGS__)

#define KEST_MODE(last)                                                                                                \
    va_list rest;                                                                                                      \
    va_start(rest, last);                                                                                              \
    const mode_t mode = (last & (O_CREAT | __O_TMPFILE)) != 0 ? va_arg(rest, mode_t) : 0;                              \
    va_end(rest)

extern "C" {

int open(const char* path, int flags, ...)
{
    KEST_MODE(flags);
    KEST_CALL(kOpen, -1, open, path, flags, mode);
}

int open64(const char* path, int flags, ...)
{
    KEST_MODE(flags);
    KEST_CALL(kOpen, -1, open64, path, flags, mode);
}

int openat(int folder, const char* path, int flags, ...)
{
    KEST_MODE(flags);
    KEST_CALL(kOpen, -1, openat, folder, path, flags, mode);
}

int mkostemp(char* pattern, int flags)
{
    KEST_CALL(kOpen, -1, mkostemp, pattern, flags);
}

int mkostemp64(char* pattern, int flags)
{
    KEST_CALL(kOpen, -1, mkostemp64, pattern, flags);
}

std::FILE* fopen(const char* path, const char* mode)
{
    KEST_CALL(kOpen, nullptr, fopen, path, mode);
}

std::FILE* fopen64(const char* path, const char* mode)
{
    KEST_CALL(kOpen, nullptr, fopen64, path, mode);
}

ssize_t read(int file, void* bytes, std::size_t size)
{
    KEST_TRANSFER(kRead, read, size, file, bytes, static_cast<std::size_t>(part));
}

ssize_t pread64(int file, void* bytes, std::size_t size, off64_t at)
{
    KEST_TRANSFER(kRead, pread64, size, file, bytes, static_cast<std::size_t>(part), at);
}

ssize_t write(int file, const void* bytes, std::size_t size)
{
    KEST_TRANSFER(kWrite, write, size, file, bytes, static_cast<std::size_t>(part));
}

ssize_t pwrite64(int file, const void* bytes, std::size_t size, off64_t at)
{
    KEST_TRANSFER(kWrite, pwrite64, size, file, bytes, static_cast<std::size_t>(part), at);
}

std::size_t fwrite(const void* bytes, std::size_t size, std::size_t count, std::FILE* stream)
{
    KEST_CALL(kStream, 0, fwrite, bytes, size, count, stream);
}

int fflush(std::FILE* stream)
{
    KEST_CALL(kStream, EOF, fflush, stream);
}

std::FILE* fdopen(int file, const char* mode) noexcept
{
    KEST_CALL(kStream, nullptr, fdopen, file, mode);
}

int fclose(std::FILE* stream)
{
    const int result = KEST_NEXT(fclose)(stream); // the stream is gone in either case
    return strike(Kind::kStream, "fclose") != nullptr ? EOF : result;
}

int close(int file)
{
    const int result = KEST_NEXT(close)(file); // as the kernel does it: the descriptor is free even after an error
    return strike(Kind::kClose, "close") != nullptr ? -1 : result;
}

int mkdir(const char* path, mode_t mode) noexcept
{
    KEST_CALL(kMakeFolder, -1, mkdir, path, mode);
}

int fsync(int file)
{
    KEST_CALL(kSync, -1, fsync, file);
}

int fdatasync(int file)
{
    KEST_CALL(kSync, -1, fdatasync, file);
}

DIR* opendir(const char* path)
{
    KEST_CALL(kList, nullptr, opendir, path);
}

dirent* readdir(DIR* folder)
{
    KEST_CALL(kList, nullptr, readdir, folder);
}

dirent64* readdir64(DIR* folder)
{
    KEST_CALL(kList, nullptr, readdir64, folder);
}

ssize_t getdents64(int folder, void* block, std::size_t size) noexcept
{
    KEST_CALL(kList, -1, getdents64, folder, block, size);
}

int rename(const char* from, const char* to) noexcept
{
    KEST_CALL(kRename, -1, rename, from, to);
}

int linkat(int fromFolder, const char* from, int toFolder, const char* to, int flags) noexcept
{
    KEST_CALL(kRename, -1, linkat, fromFolder, from, toFolder, to, flags);
}

int unlink(const char* path) noexcept
{
    KEST_CALL(kRename, -1, unlink, path);
}

int ftruncate64(int file, off64_t size) noexcept
{
    KEST_CALL(kRename, -1, ftruncate64, file, size);
}

int stat(const char* path, struct stat* found) noexcept
{
    KEST_CALL(kStat, -1, stat, path, found);
}

int stat64(const char* path, struct stat64* found) noexcept
{
    KEST_CALL(kStat, -1, stat64, path, found);
}

int lstat(const char* path, struct stat* found) noexcept
{
    KEST_CALL(kStat, -1, lstat, path, found);
}

int lstat64(const char* path, struct stat64* found) noexcept
{
    KEST_CALL(kStat, -1, lstat64, path, found);
}

int fstat(int file, struct stat* found) noexcept
{
    KEST_CALL(kStat, -1, fstat, file, found);
}

int fstat64(int file, struct stat64* found) noexcept
{
    KEST_CALL(kStat, -1, fstat64, file, found);
}

int fstatat(int folder, const char* path, struct stat* found, int flags) noexcept
{
    KEST_CALL(kStat, -1, fstatat, folder, path, found, flags);
}

int fstatat64(int folder, const char* path, struct stat64* found, int flags) noexcept
{
    KEST_CALL(kStat, -1, fstatat64, folder, path, found, flags);
}

int flock(int file, int operation) noexcept
{
    // Giving back what one holds does not fail.
    return operation != LOCK_UN && strike(Kind::kLock, "flock") != nullptr ? -1 : KEST_NEXT(flock)(file, operation);
}

int fcntl64(int file, int command, ...)
{
    va_list rest;
    va_start(rest, command);
    void* const argument = va_arg(rest, void*); // a number stands in the same place
    va_end(rest);
    KEST_CALL(kLock, -1, fcntl64, file, command, argument);
}

int fcntl(int file, int command, ...)
{
    va_list rest;
    va_start(rest, command);
    void* const argument = va_arg(rest, void*);
    va_end(rest);
    KEST_CALL(kLock, -1, fcntl, file, command, argument);
}

char* getcwd(char* buffer, std::size_t size) noexcept
{
    KEST_CALL(kPlace, nullptr, getcwd, buffer, size);
}

int chdir(const char* path) noexcept
{
    KEST_CALL(kPlace, -1, chdir, path);
}

int access(const char* path, int rights) noexcept
{
    KEST_CALL(kPlace, -1, access, path, rights);
}

ssize_t readlink(const char* path, char* buffer, std::size_t size) noexcept
{
    KEST_CALL(kPlace, -1, readlink, path, buffer, size);
}

void* dlopen(const char* path, int flags) noexcept
{
    const faults::MemoryAtHand whileOpening;
    // A failure of its own, so that dlerror() has something to say.
    return KEST_NEXT(dlopen)(strike(Kind::kLinker, "dlopen") != nullptr ? "/none/such.so" : path, flags);
}

} // extern "C"
