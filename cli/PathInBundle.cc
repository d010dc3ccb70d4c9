#include "cli/PathInBundle.h"

#include "cli/Shown.h"

#include "host/LocaleText.h"

#include <cerrno>
#include <cstring>
#include <cwctype>
#include <filesystem>
#include <sys/stat.h>
#include <system_error>
#include <unistd.h>

namespace cli {

namespace {

namespace fs = std::filesystem;

bool isEqualInAnyCase(const std::wstring& one, const std::wstring& other)
{
    if (one.size() != other.size()) {
        return false;
    }
    for (std::size_t at = 0; at < one.size(); ++at) {
        if (std::towlower(static_cast<std::wint_t>(one[at])) != std::towlower(static_cast<std::wint_t>(other[at]))) {
            return false;
        }
    }
    return true;
}

/// The entry of `folder` whose name is `name` but for its letter case; empty when there is none.
std::wstring similarEntry(const std::wstring& folder, const std::wstring& name)
{
    std::error_code error;
    for (fs::directory_iterator entry(localetext::narrow(folder), error), end; !error && entry != end;
         entry.increment(error)) {
        std::wstring candidate = localetext::widen(entry->path().filename().string());
        if (isEqualInAnyCase(candidate, name)) {
            return candidate;
        }
    }
    return L"";
}

bool isThere(const std::wstring& path)
{
    struct stat found
    {
    };
    return ::lstat(localetext::narrow(path).c_str(), &found) == 0;
}

/// `path`, below `folder`, with each part as it is called on disk; empty when a part is not there in any letter case.
std::wstring pathOnDisk(const std::wstring& folder, const std::wstring& path)
{
    std::wstring real = folder;
    for (std::size_t begin = folder.size() + 1; begin < path.size();) {
        const std::size_t end = std::min(path.find(L'/', begin), path.size());
        std::wstring name = path.substr(begin, end - begin);
        std::wstring place = real;
        if (!name.empty() && !isThere(place.append(L"/").append(name))) {
            name = similarEntry(real, name);
            if (name.empty()) {
                return L"";
            }
        }
        real += L"/" + name;
        begin = end + 1;
    }
    return real;
}

bool isOutside(const std::wstring& folder, const std::wstring& path)
{
    std::error_code error;
    const fs::path inside = fs::canonical(localetext::narrow(folder), error);
    const fs::path whole = error ? fs::path() : fs::canonical(localetext::narrow(path), error);
    return !error && !whole.string().starts_with(inside.string() + "/");
}

std::string reason(int error)
{
    return shownLine(plainUtf8FromLocale(std::strerror(error)));
}

} // namespace

PathInBundle lookFor(const std::wstring& folder, const std::wstring& path)
{
    PathInBundle place;
    const std::string file = localetext::narrow(path);
    struct stat found
    {
    };
    if (::stat(file.c_str(), &found) != 0) {
        if (errno != ENOENT && errno != ENOTDIR) { // a link in a circle, a folder that cannot be entered
            place.state = PathState::kNotReadable;
            place.problem = reason(errno);
        } else if (isThere(path)) {
            place.state = PathState::kNotReadable;
            place.problem = "it is a link that leads nowhere";
        } else {
            place.found = pathOnDisk(folder, path);
            place.state = place.found.empty() ? PathState::kMissing : PathState::kLetterCase;
        }
        return place;
    }
    place.isOutside = isOutside(folder, path);
    if (!S_ISREG(found.st_mode)) {
        place.state = PathState::kNotReadable;
        place.problem = S_ISDIR(found.st_mode) ? "it is a folder" : "it is not a regular file";
    } else if (::access(file.c_str(), R_OK) != 0) {
        place.state = PathState::kNotReadable;
        place.problem = reason(errno);
    } else {
        place.state = PathState::kFile;
    }
    return place;
}

} // namespace cli
