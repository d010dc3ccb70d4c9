// Files and folders through the host's Win32-style layer. Paths are wide, separated by "/", absolute.
#pragma once

#include <cstdint>
#include <cstdio>

/// The directory attribute in WIN32_FIND_DATAW::dwFileAttributes.
inline constexpr std::uint32_t FILE_ATTRIBUTE_DIRECTORY = 0x10;

struct FILETIME
{
    std::uint32_t dwLowDateTime;
    std::uint32_t dwHighDateTime;
};

/// One entry of a listing. The autoloader reads dwFileAttributes and cFileName only; the host may leave the rest zero.
struct WIN32_FIND_DATAW
{
    std::uint32_t dwFileAttributes;
    FILETIME ftCreationTime;
    FILETIME ftLastAccessTime;
    FILETIME ftLastWriteTime;
    std::uint32_t nFileSizeHigh;
    std::uint32_t nFileSizeLow;
    std::uint32_t dwReserved0;
    std::uint32_t dwReserved1;
    wchar_t cFileName[260]; ///< the entry's own name, without its folder, ended by a zero code unit
    wchar_t cAlternateFileName[14];
};

/// Identifies a listing. The invalid value has all bits set.
using FindHandle = void*;

inline FindHandle invalidFindHandle() noexcept
{
    return reinterpret_cast<FindHandle>(~std::uintptr_t{0}); // NOLINT(performance-no-int-to-ptr): it points nowhere
}

extern "C" {

/// Writes the folder of the host program, ended by "/" and a zero code unit, into `buffer`, which has room for 1024
/// code units and is filled with zeros.
void GetKestProgramPath(wchar_t* buffer);

/// Starts listing what matches `pattern`, a folder followed by "/*", and fills `data` with the first entry. Returns
/// invalidFindHandle() when the folder cannot be listed. "." and ".." may be among the entries; the order is the
/// host's.
///
/// The autoloader closes no handle: it abandons a listing when it has seen enough. It walks one listing per folder
/// inside one listing of the folder's root, so the host must bear many abandoned listings beside one in use.
FindHandle FindFirstFileW(const wchar_t* pattern, WIN32_FIND_DATAW* data);

/// Fills `data` with the next entry and returns nonzero; returns 0 when there is none.
int FindNextFileW(FindHandle handle, WIN32_FIND_DATAW* data);

/// Opens the file at `path` with `mode` (only L"w" is used); creates no folder. Null on failure. The stream belongs
/// to the caller, who closes it with fclose(), and must accept byte output.
std::FILE* _wfopen(const wchar_t* path, const wchar_t* mode);

/// Writes the working directory into `buffer`, which has room for `size` code units. Returns its length, or 0 on
/// failure, when the buffer is too small among others.
std::uint32_t GetCurrentDirectoryW(std::uint32_t size, wchar_t* buffer);

/// Makes `path` the working directory. Returns nonzero on success, 0 on failure.
int SetCurrentDirectoryW(const wchar_t* path);

} // extern "C"
