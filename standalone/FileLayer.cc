#include "host/FileLayer.h"

#include "standalone/FindHandles.h"
#include "standalone/Host.h"
#include "standalone/Rehearsal.h"
#include "standalone/Utf8.h"

#include "host/LocaleText.h"

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <cwchar>
#include <fcntl.h>
#include <memory>
#include <string>
#include <string_view>
#include <sys/stat.h>
#include <unistd.h>

namespace standalone {

namespace {

constexpr std::size_t kProgramPathRoom = 1024; ///< in code units, the zero at the end included

FindHandles& findHandles()
{
    static FindHandles handles;
    return handles;
}

void noticeFailure(std::wstring_view path, std::string_view failure, int error)
{
    if (Host* const host = Host::living()) {
        host->notice("\"" + displayable(path) + "\" " + std::string(failure) + ": " +
                     displayable(std::string_view(std::strerror(error))));
    }
}

/// The flags of open() for `mode`, or -1 for a mode that is not known. Nothing waits for the other end of a pipe, no
/// terminal becomes the process's own.
int openFlags(std::wstring_view mode)
{
    constexpr int kAlways = O_CLOEXEC | O_NONBLOCK | O_NOCTTY;
    if (mode == L"r" || mode == L"rb") {
        return O_RDONLY | kAlways;
    }
    if (mode == L"w" || mode == L"wb") {
        return O_WRONLY | O_CREAT | O_TRUNC | kAlways;
    }
    if (mode == L"a" || mode == L"ab") {
        return O_WRONLY | O_CREAT | O_APPEND | kAlways;
    }
    return -1;
}

/// 0 when `descriptor` is something to read or write as a file is; else the errno that says why not. Leaves devices
/// waiting, as a stream expects them.
int checkStreamTarget(int descriptor)
{
    struct stat status = {};
    if (::fstat(descriptor, &status) != 0) {
        return errno;
    }
    if (S_ISREG(status.st_mode)) {
        return 0;
    }
    if (S_ISDIR(status.st_mode)) {
        return EISDIR;
    }
    if (S_ISFIFO(status.st_mode)) {
        return EINVAL;
    }
    const int flags = ::fcntl(descriptor, F_GETFL);
    return flags >= 0 && ::fcntl(descriptor, F_SETFL, flags & ~O_NONBLOCK) == 0 ? 0 : errno;
}

/// A stream over the file at `path`, or null with errno set.
std::FILE* openStream(const std::string& path, int flags, const char* mode)
{
    const int descriptor = ::open(path.c_str(), flags, 0666);
    if (descriptor < 0) {
        return nullptr;
    }
    int error = checkStreamTarget(descriptor);
    if (error == 0) {
        if (std::FILE* const stream = ::fdopen(descriptor, mode)) {
            return stream;
        }
        error = errno;
    }
    ::close(descriptor);
    errno = error;
    return nullptr;
}

} // namespace

} // namespace standalone

using namespace standalone;

void GetKestProgramPath(wchar_t* buffer)
{
    std::wstring folder = localetext::widen(Host::current().settings().programFolder);
    folder.erase(folder.find_last_not_of(L'/') + 1);
    folder += L'/';
    if (folder.size() >= kProgramPathRoom) {
        buffer[0] = L'\0';
        Host::current().notice("The program folder is not searched: its path is longer than " +
                               std::to_string(kProgramPathRoom - 1) + " characters");
        return;
    }
    std::wmemcpy(buffer, folder.c_str(), folder.size() + 1);
}

FindHandle FindFirstFileW(const wchar_t* pattern, WIN32_FIND_DATAW* data)
{
    const std::wstring_view whole(pattern);
    // Relative to nothing: a root that could not be named must not become a folder of the working directory.
    if (!whole.starts_with(L'/') || !whole.ends_with(L"/*")) {
        return invalidFindHandle();
    }
    const std::wstring_view folder = whole.substr(0, whole.size() - 1); // with the "/": the root folder is one too
    int error = 0;
    const FindHandle handle = findHandles().begin(localetext::narrow(folder).c_str(), error);
    if (handle == invalidFindHandle()) {
        if (error != ENOENT) { // most folders that are looked for are not there, and need not be
            noticeFailure(folder, "cannot be listed", error);
        }
        return handle;
    }
    return findHandles().next(handle, *data) ? handle : invalidFindHandle();
}

int FindNextFileW(FindHandle handle, WIN32_FIND_DATAW* data)
{
    return findHandles().next(handle, *data) ? 1 : 0;
}

std::FILE* _wfopen(const wchar_t* path, const wchar_t* mode)
{
    const int flags = openFlags(mode);
    if (flags < 0) {
        errno = EINVAL;
        return nullptr;
    }
    Host* const host = Host::living();
    Rehearsal* const rehearsal = host != nullptr && (flags & O_ACCMODE) != O_RDONLY ? host->rehearsal() : nullptr;
    const std::string file = localetext::narrow(path);
    std::FILE* const stream = rehearsal != nullptr ? rehearsal->openForWriting(file)
                                                   : openStream(file, flags, localetext::narrow(mode).c_str());
    if (stream == nullptr) {
        const int error = errno;
        noticeFailure(path, "cannot be opened", error);
        errno = error;
    }
    return stream;
}

std::uint32_t GetCurrentDirectoryW(std::uint32_t size, wchar_t* buffer)
{
    const std::unique_ptr<char, void (*)(void*)> path(::getcwd(nullptr, 0), std::free);
    if (path == nullptr || *path != '/') { // the kernel marks a folder out of reach with a text before the path
        return 0;
    }
    const std::wstring folder = localetext::widen(path.get());
    if (folder.size() >= size) {
        return 0;
    }
    std::wmemcpy(buffer, folder.c_str(), folder.size() + 1);
    return static_cast<std::uint32_t>(folder.size());
}

int SetCurrentDirectoryW(const wchar_t* path)
{
    return ::chdir(localetext::narrow(path).c_str()) == 0 ? 1 : 0;
}
