// What one run of the host makes of the menus: from the folders on disk to the stored lists, and errors on the way.
#include "bundle/EntryPoints.h"
#include "tests/AutoloaderTest.h"
#include "tests/unit/MenuKeys.h"

#include <memory>

namespace {

using hostdouble::Element;
using Lines = std::vector<std::string>;

class MenuRunTest : public AutoloaderTest
{
protected:
    MenuRunTest() { host.configuration = {{kHostKey, {L"h;/old"}}, {kBundleKey, {L"/old"}}}; }

    ~MenuRunTest() override { host.isMallocFailing = false; }

    std::wstring hostList() { return host.configuration[kHostKey].text; }
    std::wstring bundleList() { return host.configuration[kBundleKey].text; }

    /// A manifest with the identity `code` of one component, `module`, that depends on `needs`.
    static Element manifest(const std::wstring& code, const std::wstring& module,
                            const std::vector<std::wstring>& needs = {})
    {
        Element dependencies{L"DependentBundles"};
        for (const std::wstring& need : needs) {
            dependencies.children.push_back({L"DependentBundle", {{L"UpgradeCode", need}}});
        }
        return {L"ApplicationPackage",
                {{L"UpgradeCode", code}},
                {dependencies, {L"Components", {}, {{L"ComponentEntry", {{L"ModuleName", L"./" + module}}}}}}};
    }

    /// Runs excuteCuix(); the error that it throws, or null.
    static std::unique_ptr<VxErrorStatus> errorOfRun()
    {
        try {
            excuteCuix();
        } catch (VxErrorStatus* error) {
            return std::unique_ptr<VxErrorStatus>(error);
        }
        return nullptr;
    }
};

TEST_F(MenuRunTest, WithoutBundleFoldersTheMenusOfTheLastRunAreTakenOut)
{
    excuteCuix();

    EXPECT_EQ(host.calls,
              (Lines{"GetKestProgramPath()", "FindFirstFileW(/program/ApplicationPlugins/*) -> invalid",
                     "FindFirstFileW(/usr/local/ORRELIN/ApplicationPlugins/*) -> invalid",
                     "FindFirstFileW(/home/user/.config/ORRELIN/ApplicationPlugins/*) -> invalid", "kestConfig()",
                     "getValue(4, CUIX/LoadedBundleCuix) -> /old", "setValue(4, CUIX/LoadedBundleCuix, )",
                     "getValue(4, CUIX/LoadedCuix) -> h;/old", "setValue(4, CUIX/LoadedCuix, h)"}));
}

TEST_F(MenuRunTest, WithoutBundleFoldersAndWithoutAPreviousListNothingIsWritten)
{
    host.configuration.erase(kBundleKey);

    excuteCuix();

    EXPECT_EQ(hostdouble::callsTo({"kestConfig", "getValue", "setValue"}),
              (Lines{"kestConfig()", "getValue(4, CUIX/LoadedBundleCuix) -> 2"}));
}

TEST_F(MenuRunTest, WhenEveryBundleIsRejectedTheMenusOfTheLastRunAreTakenOut)
{
    hostdouble::Document malformed;
    malformed.isMalformed = true;
    install(kUserRoot, L"X.bundle", malformed);

    excuteCuix();

    EXPECT_EQ(bundleList(), L"");
    EXPECT_EQ(hostList(), L"h");
}

TEST_F(MenuRunTest, WhenTheSearchFoundNoPairOfPathsTheMenusAreTakenOutWhateverTheManagerHolds)
{
    addComponent(addBundle(L"held"), L"/held.cuix");
    manager().manifestPaths.push_back(L"/stray/PackageContents.xml");

    excuteCuix();

    EXPECT_EQ(bundleList(), L"");
    EXPECT_EQ(hostList(), L"h");
}

TEST_F(MenuRunTest, WhenNoBundleHasAStartupMenuTheMenusOfTheLastRunAreTakenOut)
{
    install(kUserRoot, L"X.bundle", manifest(L"x", L"x.krx"));

    excuteCuix();

    EXPECT_EQ(bundleList(), L"");
    EXPECT_EQ(hostList(), L"h");
    EXPECT_TRUE(manager().loadedStatus.empty());
}

TEST_F(MenuRunTest, TheMenusOfAllRootsAreRegisteredInTheOrderOfTheirDependencies)
{
    install(kProgramRoot, L"P.bundle", manifest(L"p", L"p.cuix", {L"u"}));
    install(kAllUsersRoot, L"A.bundle", manifest(L"a", L"a.cuix"));
    install(kUserRoot, L"U.bundle", manifest(L"u", L"u.cuix"));

    excuteCuix();

    const std::wstring menus =
        kAllUsersRoot + L"/A.bundle/a.cuix;" + kUserRoot + L"/U.bundle/u.cuix;" + kProgramRoot + L"/P.bundle/p.cuix";
    EXPECT_EQ(bundleList(), menus);
    EXPECT_EQ(hostList(), L"h;" + menus);
    ASSERT_EQ(manager().loadedStatus.size(), 3U);
    EXPECT_EQ(manager().loadedStatus[0].upgradeCode, L"a");
    EXPECT_EQ(manager().loadedStatus[1].upgradeCode, L"u");
    EXPECT_EQ(manager().loadedStatus[2].upgradeCode, L"p");
}

TEST_F(MenuRunTest, WhatIsMarkedLoadedHereIsSkippedAtStartupAndMeetsDependenciesThere)
{
    install(kUserRoot, L"M.bundle", manifest(L"m", L"m.cuix"));
    install(kUserRoot, L"X.bundle", manifest(L"x", L"x.krx", {L"m"}));
    excuteCuix();
    host.calls.clear();

    excute();

    EXPECT_EQ(hostdouble::callsTo({"loadModule"}),
              Lines{"loadModule(/home/user/.config/ORRELIN/ApplicationPlugins/X.bundle/x.krx, false, false) -> true"});
    EXPECT_TRUE(manager().bundles.at(1)->getIsLoad());
}

TEST_F(MenuRunTest, TheNextRunWithTheSameBundlesLeavesBothListsUnchanged)
{
    install(kUserRoot, L"M.bundle", manifest(L"m", L"m.cuix"));
    excuteCuix();
    const std::wstring bundleMenus = bundleList();
    const std::wstring hostMenus = hostList();
    const auto configuration = host.configuration;

    restartManager();
    install(kUserRoot, L"M.bundle", manifest(L"m", L"m.cuix"));
    host.configuration = configuration;
    excuteCuix();

    EXPECT_EQ(bundleList(), bundleMenus);
    EXPECT_EQ(hostList(), hostMenus);
}

TEST_F(MenuRunTest, MemoryThatRunsOutAtTheFirstListLeavesBothAsTheyWere)
{
    install(kUserRoot, L"M.bundle", manifest(L"m", L"m.mnu"));
    host.convertMenu = [this](const std::wstring&, std::wstring& converted) {
        converted = L"/new";
        return host.isMallocFailing = true;
    };

    const auto error = errorOfRun();
    host.isMallocFailing = false;

    ASSERT_NE(error, nullptr);
    EXPECT_EQ(error->status(), 6);
    EXPECT_EQ(host.recordedErrors, Lines{"6 \"\" 0"});
    EXPECT_EQ(hostdouble::callsTo({"setValue"}), Lines());
    EXPECT_EQ(bundleList(), L"/old");
    EXPECT_EQ(hostList(), L"h;/old");
}

TEST_F(MenuRunTest, MemoryThatRunsOutBetweenTheListsLeavesTheNewBundleListAndTheOldHostList)
{
    install(kUserRoot, L"M.bundle", manifest(L"m", L"m.mnu"));
    host.convertedMenus = {{kUserRoot + L"/M.bundle/m.mnu", L"/new"}};
    host.onStore = [this](const std::wstring& key) { host.isMallocFailing = key == kBundleKey; };

    const auto error = errorOfRun();
    host.isMallocFailing = false;

    ASSERT_NE(error, nullptr);
    EXPECT_EQ(error->status(), 6);
    EXPECT_STREQ(error->text(), L"\"\"");
    EXPECT_EQ(error->number(), 0);
    EXPECT_EQ(bundleList(), L"/new");
    EXPECT_EQ(hostList(), L"h;/old");
    const Lines calls =
        hostdouble::callsTo({"getValue", "setValue", "kestGetCrashRecorder", "KestCrashRecorder::record"});
    EXPECT_EQ(calls, (Lines{"getValue(4, CUIX/LoadedBundleCuix) -> /old", "setValue(4, CUIX/LoadedBundleCuix, /new)",
                            "getValue(4, CUIX/LoadedCuix) -> h;/old", "kestGetCrashRecorder()",
                            "KestCrashRecorder::record(6 \"\" 0)"}));
}

} // namespace
