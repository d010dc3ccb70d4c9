#include "cli/FreshManager.h"

#include "manifest/Bundle.h"

#include <memory>
#include <set>
#include <string>
#include <vector>

namespace cli {

FreshManager::FreshManager() : one(*KestBundleManager::getInstance())
{
    std::destroy_at(&one);
    std::construct_at(&one);
}

FreshManager::~FreshManager()
{
    for (const KestBundle* bundle : one.bundles) {
        delete bundle;
    }
    one.bundles.clear();
}

void addOtherBundles(KestBundleManager& manager)
{
    std::set<std::wstring> wanted;
    for (const KestBundle* bundle : manager.bundles) {
        for (const KestDependentBundle& dependency : bundle->dependentBundles) {
            wanted.insert(dependency.upgradeCode);
        }
    }
    for (const KestBundle* bundle : manager.bundles) {
        wanted.erase(bundle->package.upgradeCode);
    }
    std::vector<KestBundle*> all; // owned by the manager, as soon as it has them
    all.reserve(wanted.size() + manager.bundles.size());
    manager.loadedStatus.reserve(manager.loadedStatus.size() + wanted.size());
    for (const std::wstring& identity : wanted) {
        auto other = std::make_unique<KestBundle>();
        other->isLoad = true;
        other->package.upgradeCode = identity;
        manager.loadedStatus.push_back({identity});
        all.push_back(other.release()); // room was made
    }
    all.insert(all.end(), manager.bundles.begin(), manager.bundles.end());
    manager.bundles.swap(all);
}

} // namespace cli
