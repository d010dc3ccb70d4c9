// Which menus a bundle brings, and in which order the bundles bring them.
#include "bundle/BundleManager.h"
#include "host/Configuration.h"
#include "host/MenuDatabase.h"
#include "manifest/Bundle.h"
#include "menus/MenuKind.h"

#include <unordered_set>

namespace {

/// The path of the menu in the host's format that the module at `path` is or is converted to; empty when it is none.
CStdStr<wchar_t> menuOf(const CStdStr<wchar_t>& path)
{
    const MenuKind kind = menuKindOf(path);
    if (kind == MenuKind::kCurrent) {
        return path;
    }
    CStdStr<wchar_t> converted;
    if (kind == MenuKind::kLegacy && Database::convertMenuToCuix(path, converted)) {
        return converted;
    }
    return {};
}

} // namespace

bool KestBundle::loadCuix(CStdStr<wchar_t>& menuList)
{
    CStdStr<wchar_t> ownList;
    std::size_t menuCount = 0;
    for (const KestComponentEntry& entry : components) {
        if (!entry.loadsAtStartup()) {
            continue;
        }
        if (!ownList.empty()) {
            ownList += L';'; // meant: before it is known whether a menu follows, so that empty entries come about
        }
        const CStdStr<wchar_t> menu = menuOf(entry.moduleName);
        if (!menu.empty()) {
            ownList += menu;
            ++menuCount;
        }
    }
    if (ownList.empty()) {
        return false;
    }
    if (!menuList.empty()) {
        menuList += L';';
    }
    menuList += ownList;
    if (menuCount == components.size()) {
        isLoad = true;
    }
    return true;
}

void KestBundleManager::loadBundleCuix()
{
    if (bundles.empty()) {
        writeCuixToConfig(CStdStr<wchar_t>());
        return;
    }
    if (kestConfig() == nullptr) {
        return;
    }
    std::unordered_set<std::wstring_view> placed;
    placed.reserve(bundles.size());
    CStdStr<wchar_t> menuList;
    attemptInDependencyOrder(
        {}, [&](const KestBundle& bundle) { return placed.contains(bundle.package.upgradeCode); },
        [&](KestBundle& bundle) {
            bundle.loadCuix(menuList);
            if (bundle.getIsLoad()) {
                loadedStatus.push_back({bundle.package.upgradeCode});
            }
            placed.insert(bundle.package.upgradeCode);
            return true;
        });
    writeCuixToConfig(menuList);
}
