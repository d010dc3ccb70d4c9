#include "cli/CheckTargets.h"

#include "cli/ExitStatus.h"
#include "cli/NearBundles.h"
#include "cli/Shown.h"

#include "host/LocaleText.h"
#include "manifest/BundleStrConst.h"

#include <algorithm>
#include <filesystem>
#include <system_error>

namespace cli {

namespace {

namespace fs = std::filesystem;

std::string shownPath(const std::string& path)
{
    return "\"" + shownLine(plainUtf8FromLocale(path)) + "\"";
}

std::wstring withoutSlashes(std::wstring path)
{
    while (path.size() > 1 && path.back() == L'/') {
        path.pop_back();
    }
    return path;
}

/// Throws WrongUse when `path` is no folder that can be listed.
void requireFolder(const std::string& path)
{
    std::error_code error;
    const fs::directory_iterator listing(path, error);
    if (!error) {
        return;
    }
    if (fs::path(path).filename() == localetext::narrow(BundleStrConst::xml_FileNameConst)) {
        throw WrongUse(shownPath(path) + " is a manifest; name the bundle folder that it lies in");
    }
    throw WrongUse(shownPath(path) + " is neither a bundle folder nor a folder of bundles: " +
                   shownLine(plainUtf8FromLocale(error.message())));
}

} // namespace

CheckTargets::CheckTargets(const std::vector<std::string>& paths)
{
    for (const std::string& path : paths) {
        requireFolder(path);
        const std::wstring absolute = withoutSlashes(localetext::widen(fs::absolute(path).lexically_normal().string()));
        given.emplace_back(absolute, withoutSlashes(localetext::widen(path)));
        if (looksLikeABundle(absolute)) {
            add(absolute);
            continue;
        }
        const std::vector<std::wstring> inside = nearBundles(absolute);
        if (inside.empty()) {
            throw WrongUse(shownPath(path) + " is neither a bundle folder nor a folder of bundles: its name does not "
                                             "end in \".bundle\", it holds no \"PackageContents.xml\", and nothing in "
                                             "it does");
        }
        std::for_each(inside.begin(), inside.end(), [this](const std::wstring& folder) { add(folder); });
    }
    // The longest one fits best.
    std::stable_sort(given.begin(), given.end(),
                     [](const auto& one, const auto& other) { return one.first.size() > other.first.size(); });
}

void CheckTargets::add(const std::wstring& folder)
{
    if (std::find(bundleFolders.begin(), bundleFolders.end(), folder) == bundleFolders.end()) {
        bundleFolders.push_back(folder);
    }
}

std::wstring CheckTargets::asGiven(const std::wstring& path) const
{
    for (const auto& [absolute, written] : given) {
        if (path == absolute) {
            return written;
        }
        if (path.starts_with(absolute) && (absolute.back() == L'/' || path[absolute.size()] == L'/')) {
            const std::wstring rest = path.substr(absolute.size() + (absolute.back() == L'/' ? 0 : 1));
            std::wstring shorter = written == L"." ? L"" : written;
            if (!shorter.empty() && shorter.back() != L'/') {
                shorter += L'/';
            }
            return shorter + rest;
        }
    }
    return path;
}

} // namespace cli
