#include "tests/AutoloaderTest.h"

#include <clocale>
#include <cstdlib>
#include <memory>

AutoloaderTest::AutoloaderTest()
{
    std::setlocale(LC_ALL, "C.UTF-8");
    setenv("HOME", "/home/user", 1);
    restartManager();
}

AutoloaderTest::~AutoloaderTest()
{
    std::setlocale(LC_ALL, "C.UTF-8");
    setenv("HOME", "/home/user", 1);
}

void AutoloaderTest::restartManager()
{
    KestBundleManager* one = KestBundleManager::getInstance();
    std::destroy_at(one); // what it still says goes to the old host
    hostdouble::reset();
    std::construct_at(one);
    host.calls.clear();
    host.stringCopies = 0;
}

std::string AutoloaderTest::problems() const
{
    const std::string log = hostdouble::logText();
    return log.substr(std::min(log.size(), log.find('\n') + 1));
}

void AutoloaderTest::install(const std::wstring& searchRoot, const std::wstring& name,
                             const hostdouble::Document& manifest)
{
    host.folders[searchRoot].push_back({name});
    const std::wstring folder = searchRoot + L"/" + name;
    host.folders[folder].push_back({L"PackageContents.xml", false});
    host.documents[folder + L"/PackageContents.xml"] = manifest;
}

KestBundle& AutoloaderTest::addBundle(const std::wstring& upgradeCode, const std::vector<std::wstring>& dependencies)
{
    auto* bundle = new KestBundle(L"/bundles/" + upgradeCode, L"/bundles/" + upgradeCode + L"/PackageContents.xml");
    manager().bundles.push_back(bundle);
    bundle->package.upgradeCode = upgradeCode;
    for (const std::wstring& dependency : dependencies) {
        bundle->dependentBundles.emplace_back().upgradeCode = dependency;
    }
    return *bundle;
}

KestComponentEntry& AutoloaderTest::addComponent(KestBundle& bundle, const std::wstring& path, int loadFlags,
                                                 int loadCtrlFlag)
{
    KestComponentEntry& entry = bundle.components.emplace_back();
    entry.moduleName = path;
    entry.loadFlags = loadFlags;
    entry.loadCtrlFlag = loadCtrlFlag;
    return entry;
}
