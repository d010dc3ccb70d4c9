#include "cli/NearBundles.h"

#include "cli/BundleName.h"

#include "host/FileLayer.h"
#include "host/LocaleText.h"
#include "manifest/BundleStrConst.h"
#include "standalone/Utf8.h"

#include <algorithm>
#include <filesystem>
#include <set>
#include <system_error>

namespace cli {

namespace {

namespace fs = std::filesystem;

bool holdsAManifest(const fs::path& folder)
{
    std::error_code ignored;
    return fs::exists(folder / localetext::narrow(BundleStrConst::xml_FileNameConst), ignored);
}

std::vector<std::wstring> rootsOf(const Examination& examination)
{
    std::wstring program = localetext::widen(examination.host.programFolder);
    program.erase(program.find_last_not_of(L'/') + 1);
    return {program + L"/" + BundleStrConst::bundle_InstallPath, BundleStrConst::bundle_AllUserPath,
            localetext::widen(examination.home) + L"/" + BundleStrConst::bundle_UserPath};
}

/// The bundles in folders of the root `folder` that are none themselves; one level deep, since what an archive was
/// unpacked into is.
std::vector<std::wstring> bundlesTooDeep(const std::wstring& folder)
{
    std::vector<std::wstring> paths;
    std::error_code error;
    for (fs::directory_iterator entry(localetext::narrow(folder), error), end; !error && entry != end;
         entry.increment(error)) {
        std::error_code ignored;
        if (looksLikeABundle(localetext::widen(entry->path().string())) || !entry->is_directory(ignored)) {
            continue;
        }
        for (fs::directory_iterator one(entry->path(), ignored), none; !ignored && one != none;
             one.increment(ignored)) {
            if (hasBundleEnding(localetext::widen(one->path().filename().string())) && holdsAManifest(one->path())) {
                const fs::path below = entry->path().filename() / one->path().filename();
                paths.push_back(folder + L"/" + localetext::widen(below.string()));
            }
        }
    }
    std::sort(paths.begin(), paths.end());
    return paths;
}

} // namespace

bool looksLikeABundle(const std::wstring& path)
{
    const std::wstring name = path.substr(path.rfind(L'/') + 1);
    return hasBundleEnding(name) || holdsAManifest(localetext::narrow(path));
}

std::vector<std::wstring> nearBundles(const std::wstring& folder)
{
    std::vector<std::string> names;
    std::error_code error;
    for (fs::directory_iterator entry(localetext::narrow(folder), error), end; !error && entry != end;
         entry.increment(error)) {
        if (hasBundleEnding(localetext::widen(entry->path().filename().string())) || holdsAManifest(entry->path())) {
            names.push_back(entry->path().filename().string());
        }
    }
    std::sort(names.begin(), names.end());
    std::vector<std::wstring> paths;
    paths.reserve(names.size());
    for (const std::string& name : names) {
        paths.push_back(folder + (folder.back() == L'/' ? L"" : L"/") + localetext::widen(name));
    }
    return paths;
}

void addRoots(Examination& examination)
{
    std::set<std::wstring> found;
    for (const ExaminedBundle& bundle : examination.bundles) {
        found.insert(bundle.folder);
    }
    for (const std::wstring& path : rootsOf(examination)) {
        ExaminedRoot root{path, false, ""};
        std::error_code error;
        const fs::directory_iterator listing(localetext::narrow(path), error);
        root.exists = !error;
        if (error && error != std::errc::no_such_file_or_directory) {
            root.problem = standalone::displayable(std::string_view(error.message()));
        }
        std::vector<std::wstring> near;
        if (root.exists) {
            near = nearBundles(root.path);
            const std::vector<std::wstring> deep = bundlesTooDeep(root.path);
            near.insert(near.end(), deep.begin(), deep.end());
        }
        for (const std::wstring& folder : near) {
            if (found.insert(folder).second) {
                ExaminedBundle none;
                none.folder = folder;
                examination.bundles.push_back(std::move(none));
            }
        }
        examination.roots.push_back(std::move(root));
    }
}

} // namespace cli
