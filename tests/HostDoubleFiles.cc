// The recording host's folders and its error log, which is kept in memory.
#include "tests/HostDoubleRecord.h"

#include "host/FileLayer.h"

#include <cstring>
#include <memory>

namespace hostdouble {

namespace {

struct Listing
{
    std::vector<FolderEntry> entries;
    std::size_t at = 0;
};
std::vector<std::unique_ptr<Listing>> listings;

char* logBuffer = nullptr;
std::size_t logLength = 0;
std::FILE* logStream = nullptr;

/// Closing the log is seen through a stream of its own that forwards to memory.
ssize_t writeLog(void*, const char* bytes, size_t count)
{
    auto* grown = static_cast<char*>(std::realloc(logBuffer, logLength + count + 1));
    if (grown == nullptr) {
        return 0;
    }
    logBuffer = grown;
    std::memcpy(logBuffer + logLength, bytes, count);
    logLength += count;
    return static_cast<ssize_t>(count);
}

int closeLog(void*)
{
    state().isLogClosed = true;
    state().calls.emplace_back("fclose(log)");
    logStream = nullptr;
    return 0;
}

} // namespace

void forgetFiles()
{
    if (logStream != nullptr && !state().isLogClosed) {
        std::fflush(logStream);
    }
    listings.clear();
}

std::string logText()
{
    return logBuffer == nullptr ? "" : std::string(logBuffer, logLength);
}

} // namespace hostdouble

using namespace hostdouble;

void GetKestProgramPath(wchar_t* buffer)
{
    record("GetKestProgramPath", {});
    state().programPath.copy(buffer, 1023);
}

FindHandle FindFirstFileW(const wchar_t* pattern, WIN32_FIND_DATAW* data)
{
    const bool fails = record("FindFirstFileW", {utf8(pattern)});
    std::wstring folder = pattern;
    folder.resize(folder.size() < 2 ? 0 : folder.size() - 2);
    const auto found = state().folders.find(folder);
    if (fails || found == state().folders.end() || found->second.empty()) {
        return result(invalidFindHandle(), "invalid");
    }
    listings.push_back(std::make_unique<Listing>(Listing{found->second}));
    const FolderEntry& entry = listings.back()->entries[0];
    *data = {};
    data->dwFileAttributes = entry.isFolder ? FILE_ATTRIBUTE_DIRECTORY | 0x1 : 0x80;
    entry.name.copy(data->cFileName, 259);
    return result(static_cast<FindHandle>(listings.back().get()), utf8(entry.name));
}

int FindNextFileW(FindHandle handle, WIN32_FIND_DATAW* data)
{
    const bool fails = record("FindNextFileW", {});
    auto* listing = static_cast<Listing*>(handle);
    if (fails || ++listing->at >= listing->entries.size()) {
        return result(0, "0");
    }
    const FolderEntry& entry = listing->entries[listing->at];
    *data = {};
    data->dwFileAttributes = entry.isFolder ? FILE_ATTRIBUTE_DIRECTORY | 0x1 : 0x80;
    entry.name.copy(data->cFileName, 259);
    return result(5, utf8(entry.name));
}

std::FILE* _wfopen(const wchar_t* path, const wchar_t* mode)
{
    const bool fails = record("_wfopen", {utf8(path), utf8(mode)});
    if (fails || !state().isLogOpenable) {
        return result(static_cast<std::FILE*>(nullptr), "null");
    }
    std::free(logBuffer);
    logBuffer = nullptr;
    logLength = 0;
    state().isLogClosed = false;
    logStream = fopencookie(nullptr, "w", {nullptr, writeLog, nullptr, closeLog});
    return result(logStream, "stream");
}

std::uint32_t GetCurrentDirectoryW(std::uint32_t size, wchar_t* buffer)
{
    const bool fails = record("GetCurrentDirectoryW", {std::to_string(size)});
    if (fails || !state().workingDirectory || state().workingDirectory->size() >= size) {
        return result(0U, "0");
    }
    buffer[state().workingDirectory->copy(buffer, size - 1)] = L'\0';
    return result(static_cast<std::uint32_t>(state().workingDirectory->size()), utf8(*state().workingDirectory));
}

int SetCurrentDirectoryW(const wchar_t* path)
{
    if (record("SetCurrentDirectoryW", {utf8(path)})) {
        return 0;
    }
    state().workingDirectory = path;
    return 1;
}
