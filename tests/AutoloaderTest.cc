#include "tests/AutoloaderTest.h"

#include "tests/FreshManager.h"

#include <clocale>
#include <cstdlib>

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
    restartManagerAndHost();
}

std::string AutoloaderTest::problems() const
{
    return loggedProblems();
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
