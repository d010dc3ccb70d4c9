// Finding bundle folders and turning them into bundles.
#include "bundle/BundleManager.h"
#include "bundle/HomeFolder.h"
#include "host/FileLayer.h"
#include "host/LocaleText.h"
#include "manifest/Bundle.h"
#include "manifest/BundleStrConst.h"

#include <algorithm>

namespace {

constexpr std::wstring_view kBundleSuffix = L".bundle";

bool endsLikeBundle(std::wstring_view name)
{
    const std::size_t length = std::min(name.size(), kBundleSuffix.size());
    return localetext::equalIgnoringCase(name.substr(name.size() - length), kBundleSuffix);
}

/// The path of `name` in `folder`, without room to spare: the lists keep paths as long as the library lives.
CStdStr<wchar_t> pathIn(const CStdStr<wchar_t>& folder, std::wstring_view name)
{
    CStdStr<wchar_t> path;
    path.reserve(folder.size() + 1 + name.size());
    path.append(folder).append(1, L'/').append(name);
    return path;
}

/// Calls `onEntry` for each entry of `folder` until it returns true. The handle is abandoned, as the host expects.
template <typename OnEntry>
void listFolder(const CStdStr<wchar_t>& folder, OnEntry onEntry)
{
    WIN32_FIND_DATAW entry{};
    FindHandle handle = FindFirstFileW(pathIn(folder, L"*").c_str(), &entry);
    if (handle == invalidFindHandle()) {
        return;
    }
    do {
        if (onEntry(entry)) {
            return;
        }
    } while (FindNextFileW(handle, &entry) != 0);
}

} // namespace

void KestBundleManager::fetchAllBundlePath()
{
    wchar_t programPath[1024] = {};
    GetKestProgramPath(programPath);
    fetchBundlePath(programPath + BundleStrConst::bundle_InstallPath); // the host's path ends with "/"
    fetchBundlePath(BundleStrConst::bundle_AllUserPath);
    fetchBundlePath(localetext::widen(homeFolder()) + L"/" + BundleStrConst::bundle_UserPath);
}

void KestBundleManager::fetchBundlePath(const CStdStr<wchar_t>& root)
{
    listFolder(root, [&](const WIN32_FIND_DATAW& entry) {
        if ((entry.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) != 0 && endsLikeBundle(entry.cFileName)) {
            CStdStr<wchar_t> folder = pathIn(root, entry.cFileName);
            if (fetchXmlPath(folder)) {
                bundlePaths.push_back(std::move(folder));
            }
        }
        return false;
    });
}

bool KestBundleManager::fetchXmlPath(const CStdStr<wchar_t>& folder)
{
    bool found = false;
    listFolder(folder, [&](const WIN32_FIND_DATAW& entry) {
        if (BundleStrConst::xml_FileNameConst == entry.cFileName) {
            manifestPaths.push_back(pathIn(folder, entry.cFileName));
            found = true;
        }
        return found;
    });
    return found;
}

bool KestBundleManager::collectBundle()
{
    if (bundlePaths.empty() || manifestPaths.size() != bundlePaths.size()) {
        return false;
    }
    bundles.reserve(bundles.size() + bundlePaths.size());
    for (std::size_t i = 0; i < bundlePaths.size(); ++i) {
        auto bundle = std::make_unique<KestBundle>(bundlePaths[i], manifestPaths[i]);
        bundle->parseXml();
        if (bundle->getIsRuntime() && !bundle->getIsReadError()) {
            bundles.push_back(bundle.release()); // room was made, so that it is never without an owner
        }
    }
    return true;
}
