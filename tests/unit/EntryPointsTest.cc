// The three entry points, called as the host calls them, in the order that it should and in others.
#include "bundle/EntryPoints.h"
#include "tests/AutoloaderTest.h"

#include <stdexcept>

namespace {

using hostdouble::Element;
using Lines = std::vector<std::string>;
using Map = std::map<CStdStr<wchar_t>, CStdStr<wchar_t>>;

class EntryPointsTest : public AutoloaderTest
{
protected:
    static Element component(const wchar_t* module, const wchar_t* command = nullptr)
    {
        Element entry{L"ComponentEntry", {{L"ModuleName", module}}};
        if (command != nullptr) {
            entry.attributes.push_back({L"LoadOnTARVIXStartup", L"False"});
            entry.attributes.push_back({L"LoadOnCommandInvocation", L"True"});
            entry.children = {{L"Commands", {}, {{L"Command", {{L"Local", command}}}}}};
        }
        return entry;
    }

    static Element package(const wchar_t* upgradeCode, const std::vector<Element>& components)
    {
        return {L"ApplicationPackage", {{L"UpgradeCode", upgradeCode}}, {{L"Components", {}, components}}};
    }

    /// Everything but the calls that search and read.
    static Lines callsOfInterest()
    {
        return hostdouble::callsTo({"getValue", "setValue", "loadModule", "setKrxLoadType", "kds_queueexpr", "addEntry",
                                    "loadPythonFile", "netLoad"});
    }
};

TEST_F(EntryPointsTest, ExcuteBeforeAnyExcuteCuixLoadsNothingAndLogsNothing)
{
    install(kAllUsersRoot, L"Tools.bundle", Element{L"ApplicationPackage"});

    excute();

    EXPECT_EQ(host.calls, Lines());
    EXPECT_EQ(problems(), "");
    EXPECT_TRUE(manager().bundles.empty());
    EXPECT_TRUE(manager().loadedStatus.empty());
}

TEST_F(EntryPointsTest, LoadIfCmdNeededBeforeAnythingDoesNothing)
{
    install(kAllUsersRoot, L"Tools.bundle", package(L"a", {component(L"./a.lsp", L"one")}));

    loadIfCmdNeeded(L"one");
    loadIfCmdNeeded(L"");
    loadIfCmdNeeded(nullptr);

    EXPECT_EQ(host.calls, Lines());
    EXPECT_EQ(problems(), "");
}

TEST_F(EntryPointsTest, WithoutABundleTheMenusOfTheLastRunAreTakenOut)
{
    host.configuration[L"CUIX/LoadedBundleCuix"] = {L"/p/a.cuix"};
    host.configuration[L"CUIX/LoadedCuix"] = {L"h.cuix;/p/a.cuix"};

    excuteCuix();

    EXPECT_EQ(host.calls,
              (Lines{"GetKestProgramPath()", "FindFirstFileW(/program/ApplicationPlugins/*) -> invalid",
                     "FindFirstFileW(/usr/local/ORRELIN/ApplicationPlugins/*) -> invalid",
                     "FindFirstFileW(/home/user/.config/ORRELIN/ApplicationPlugins/*) -> invalid", "kestConfig()",
                     "getValue(4, CUIX/LoadedBundleCuix) -> /p/a.cuix", "setValue(4, CUIX/LoadedBundleCuix, )",
                     "getValue(4, CUIX/LoadedCuix) -> h.cuix;/p/a.cuix", "setValue(4, CUIX/LoadedCuix, h.cuix)"}));
}

TEST_F(EntryPointsTest, WithoutAFolderNoMenuIsRegisteredWhateverBundlesThereAre)
{
    addComponent(addBundle(L"a"), L"/a.cuix");

    excuteCuix();

    EXPECT_EQ(callsOfInterest(), (Lines{"getValue(4, CUIX/LoadedBundleCuix) -> 2"}));
    EXPECT_FALSE(manager().bundles[0]->getIsLoad());
}

TEST_F(EntryPointsTest, WhenEveryBundleIsRejectedTheMenusOfTheLastRunAreTakenOut)
{
    install(kUserRoot, L"a.bundle", Element{L"RuntimeRequirements", {{L"Architecture", L"mips"}}});
    host.configuration[L"CUIX/LoadedBundleCuix"] = {L"/p/a.cuix"};
    host.configuration[L"CUIX/LoadedCuix"] = {L"h.cuix;/p/a.cuix"};

    excuteCuix();

    EXPECT_EQ(host.configuration[L"CUIX/LoadedCuix"].text, L"h.cuix");
    EXPECT_EQ(host.configuration[L"CUIX/LoadedBundleCuix"].text, L"");
}

TEST_F(EntryPointsTest, OneBundlesRoadFromItsFolderToItsCommand)
{
    install(kUserRoot, L"Tools.bundle",
            package(L"tools", {component(L"./menu.cuix"), component(L"./a.krx"), component(L"./b.lsp", L"draw")}));
    const std::string folder = "/home/user/.config/ORRELIN/ApplicationPlugins/Tools.bundle";

    excuteCuix();
    EXPECT_EQ(callsOfInterest(),
              (Lines{"getValue(4, CUIX/LoadedBundleCuix) -> 2",
                     "setValue(4, CUIX/LoadedBundleCuix, " + folder + "/menu.cuix;)",
                     "getValue(4, CUIX/LoadedCuix) -> 2", "setValue(4, CUIX/LoadedCuix, ;" + folder + "/menu.cuix;)"}));

    host.calls.clear();
    excute();
    EXPECT_EQ(host.calls,
              (Lines{"KsRxDictionary::at(DynamicLinker)", "loadModule(" + folder + "/a.krx, false, false) -> true",
                     "setKrxLoadType(" + folder + "/a.krx, 2)", "addEntry(DRAW, 3)"}));

    host.calls.clear();
    loadIfCmdNeeded(L"Draw");
    EXPECT_EQ(host.calls, (Lines{"kds_queueexpr((LOAD \"" + folder + "/b.lsp\")) -> 5100"}));
    EXPECT_EQ(problems(), "");
}

TEST_F(EntryPointsTest, ABundleOfMenusOnlyIsNotLoadedAgainButSatisfiesOthers)
{
    install(kUserRoot, L"a.bundle", package(L"menus", {component(L"./m.cuix")}));
    Element dependent = package(L"b", {component(L"./b.lsp")});
    dependent.children.push_back({L"DependentBundles", {}, {{L"DependentBundle", {{L"UpgradeCode", L"menus"}}}}});
    install(kUserRoot, L"b.bundle", dependent);

    excuteCuix();
    host.calls.clear();
    excute();

    EXPECT_EQ(host.calls, (Lines{"kds_queueexpr((LOAD \"/home/user/.config/ORRELIN/ApplicationPlugins/b.bundle/"
                                 "b.lsp\")) -> 5100"}));
    ASSERT_EQ(manager().loadedStatus.size(), 2U);
    EXPECT_EQ(manager().loadedStatus[0].upgradeCode, L"menus");
    EXPECT_EQ(manager().loadedStatus[1].upgradeCode, L"b");
}

TEST_F(EntryPointsTest, OfTwoBundlesWithOneCommandThatOfTheFirstIsLoaded)
{
    install(kUserRoot, L"z.bundle", package(L"z", {component(L"./first.lsp", L"draw")}));
    install(kUserRoot, L"a.bundle", package(L"a", {component(L"./second.lsp", L"DRAW")}));
    excuteCuix();
    excute();
    host.calls.clear();

    loadIfCmdNeeded(L"draw");

    EXPECT_EQ(host.calls, (Lines{"kds_queueexpr((LOAD \"/home/user/.config/ORRELIN/ApplicationPlugins/z.bundle/"
                                 "first.lsp\")) -> 5100"}));
}

TEST_F(EntryPointsTest, CommandsAreUnknownUntilExcute)
{
    install(kUserRoot, L"a.bundle", package(L"a", {component(L"./a.lsp", L"draw")}));
    excuteCuix();
    host.calls.clear();

    loadIfCmdNeeded(L"draw");

    EXPECT_EQ(host.calls, Lines());
}

TEST_F(EntryPointsTest, ASecondExcuteLoadsNothingAgain)
{
    install(kUserRoot, L"a.bundle", package(L"a", {component(L"./a.lsp"), component(L"./b.lsp", L"draw")}));
    excuteCuix();
    excute();
    const Map commands = manager().commandMap;
    host.calls.clear();

    excute();

    EXPECT_EQ(host.calls, Lines());
    EXPECT_EQ(manager().loadedStatus.size(), 1U);
    EXPECT_EQ(manager().commandMap, commands);
}

TEST_F(EntryPointsTest, ASecondExcuteCuixFindsEverythingAgainAndExcuteLoadsTheNewCopies)
{
    install(kUserRoot, L"a.bundle", package(L"a", {component(L"./a.lsp")}));
    excuteCuix();
    excute();
    host.calls.clear();

    excuteCuix();
    EXPECT_EQ(manager().bundlePaths.size(), 2U);
    EXPECT_EQ(manager().manifestPaths.size(), 2U);
    EXPECT_EQ(manager().bundles.size(), 3U) << "the whole lists are walked again";
    EXPECT_EQ(callsOfInterest(), (Lines{"getValue(4, CUIX/LoadedBundleCuix) -> 2"}));

    host.calls.clear();
    excute();
    const std::string queued = "kds_queueexpr((LOAD \"/home/user/.config/ORRELIN/ApplicationPlugins/a.bundle/"
                               "a.lsp\")) -> 5100";
    EXPECT_EQ(host.calls, (Lines{queued, queued}));
    std::size_t count = 0;
    for (const KestBundleStatus& status : manager().loadedStatus) {
        count += status.upgradeCode == L"a" ? 1U : 0U;
    }
    EXPECT_EQ(count, 4U) << "the second gathering notes the loaded bundle once more";
    EXPECT_EQ(manager().loadedStatus.size(), 4U);
}

TEST_F(EntryPointsTest, WithoutAConfigurationComponentsAreLoadedNevertheless)
{
    host.hasConfiguration = false;
    install(kUserRoot, L"a.bundle", package(L"a", {component(L"./m.cuix"), component(L"./a.lsp")}));
    excuteCuix();
    host.calls.clear();
    excute();
    EXPECT_EQ(host.calls, (Lines{"kds_queueexpr((LOAD \"/home/user/.config/ORRELIN/ApplicationPlugins/a.bundle/"
                                 "a.lsp\")) -> 5100"}));
}

TEST_F(EntryPointsTest, WhenHomeIsUnsetAfterwardsTheSearchEndsWithTheLogicErrorBeforeAnythingIsCollected)
{
    install(kAllUsersRoot, L"a.bundle", package(L"a", {component(L"./a.lsp")}));
    unsetenv("HOME");
    std::string message;
    try {
        excuteCuix();
    } catch (const std::logic_error& error) {
        message = error.what();
    }
    EXPECT_EQ(message, "basic_string::_M_construct null not valid");
    EXPECT_EQ(manager().bundlePaths.size(), 1U);
    EXPECT_TRUE(manager().bundles.empty());
    EXPECT_EQ(callsOfInterest(), Lines()) << "no menu list is touched";
    excute();
    EXPECT_EQ(callsOfInterest(), Lines());
}

} // namespace
