#include "bundle/BundleManager.h"

#include "bundle/HomeFolder.h"
#include "host/FileLayer.h"
#include "manifest/Bundle.h"
#include "manifest/BundleStrConst.h"

KestBundleManager* KestBundleManager::getInstance()
{
    static KestBundleManager manager;
    return &manager;
}

KestBundleManager::KestBundleManager()
{
    const CStdStr<wchar_t> path = localetext::widen(homeFolder() + "/" + BundleStrConst::bundle_ErrorLogPath);
    logFile.reset(_wfopen(path.c_str(), L"w"));
    CStdStr<wchar_t> time;
    getCurTime(time);
    time += L"\n";
    writeLogLine(time.c_str());
}

KestBundleManager::~KestBundleManager()
{
    for (const KestBundle* bundle : bundles) {
        delete bundle;
    }
    logFile.reset(); // before the lists go
}

void KestBundleManager::loadBundle()
{
    if (bundles.empty()) {
        return;
    }
    loadedStatus.reserve(bundles.size());
    std::vector<std::wstring_view> loaded;
    loaded.reserve(loadedStatus.size());
    for (const KestBundleStatus& status : loadedStatus) {
        loaded.push_back(status.upgradeCode);
    }
    attemptInDependencyOrder(
        loaded, [](const KestBundle& bundle) { return bundle.getIsLoad(); },
        [this](KestBundle& bundle) {
            bundle.load();
            if (bundle.getIsLoad()) {
                loadedStatus.push_back({bundle.package.upgradeCode});
            }
            return bundle.getIsLoad();
        });
}

void KestBundleManager::collectLoadCommand()
{
    for (const KestBundle* bundle : bundles) {
        commandMap.insert(bundle->commandModuleMap.begin(), bundle->commandModuleMap.end());
        pythonVersionMap.insert(bundle->pythonVersionMap.begin(), bundle->pythonVersionMap.end());
    }
}
