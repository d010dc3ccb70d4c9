#include "bundle/EntryPoints.h"

#include "bundle/BundleManager.h"

void excuteCuix()
{
    KestBundleManager* manager = KestBundleManager::getInstance();
    manager->fetchAllBundlePath();
    if (manager->collectBundle()) {
        manager->loadBundleCuix();
    } else {
        manager->writeCuixToConfig(CStdStr<wchar_t>()); // no bundle: the menus of the last run go
    }
}

void excute()
{
    KestBundleManager* manager = KestBundleManager::getInstance();
    manager->loadBundle();
    manager->collectLoadCommand();
}

void loadIfCmdNeeded(const wchar_t* name)
{
    KestBundleManager::getInstance()->loadCommandBundle(name);
}
