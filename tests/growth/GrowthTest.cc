// How much of the heap a process has in use after many calls of the entry points. The autoloader's lists are never
// cleared, so that it grows; but by what they hold and by nothing else.
#include "bundle/BundleManager.h"
#include "bundle/EntryPoints.h"
#include "standalone/Host.h"
#include "tests/growth/HeldBlocks.h"
#include "tests/standalone/HostFixture.h"

#include <cstdlib>
#include <iostream>
#include <memory>
#include <utility>

namespace {

using standalonetest::OwnFolder;
using standalonetest::writeFile;

/// Growth begins to be counted when whoever keeps things for use again has them: the host keeps some folder listings.
constexpr int kSettlingCalls = 40;

/// The manager of a process is never made anew: a process serves one test, as the runner of the tests does it.
bool hasManager = false;

class GrowthTest : public ::testing::Test
{
protected:
    GrowthTest()
    {
        useHome("home");
        settings.programFolder = folder / "program";
        settings.configurationFile = folder / "home/.config/ORRELIN/kest.db";
        host = std::make_unique<standalone::Host>(settings, nullptr);
    }

    void SetUp() override
    {
        if (std::exchange(hasManager, true)) {
            GTEST_SKIP() << "this process has done another of these tests; choose one with --gtest_filter";
        }
    }

    /// Makes `name` the home folder, in which nothing is installed yet.
    void useHome(const std::string& name)
    {
        std::filesystem::create_directories(folder / (name + "/.config/ORRELIN/ApplicationPlugins"));
        ::setenv("HOME", (folder / name).c_str(), 1);
    }

    void install(const std::string& name, const std::string& manifest)
    {
        const std::string bundle = folder / ("home/.config/ORRELIN/ApplicationPlugins/" + name + ".bundle");
        std::filesystem::create_directories(bundle);
        writeFile(bundle + "/PackageContents.xml", manifest);
    }

    /// Three bundles that depend on each other, with menus, commands and every record that there is.
    void installThreeBundles()
    {
        install("Frames", R"(<ApplicationPackage Name="Frames of doors" UpgradeCode="{Frames-and-more}">
            <CompanyDetails Name="A company with a long name" Phone="0123456789-0" Url="https://example.org/"/>
            <DependentBundles><DependentBundle UpgradeCode="{Windows-and-more}" VersionMin="1"/></DependentBundles>
            <Components><ComponentEntry ModuleName="./a-folder/frames.cuix"/></Components></ApplicationPackage>)");
        install("Stairs", R"(<ApplicationPackage Author="Somebody Who Draws" UpgradeCode="{Stairs}"><Components>
            <ComponentEntry ModuleName="./stairs.lsp" LoadOnTARVIXStartup="False" LoadOnCommandInvocation="True">
            <Commands GroupName="STAIRCASES"><Command Global="_STAIRS" Local="stairs"/>
            <Command Global="_SPIRALSTAIRCASE" Local="spiralstaircase"/></Commands></ComponentEntry>
            <ComponentEntry ModuleName="./steps.py" PythonVersion="libpython3.11.so" LoadOnTARVIXStartup="False"
            LoadOnCommandInvocation="True"><Commands><Command Global="_STEPS" Local="steps"/></Commands>
            </ComponentEntry></Components></ApplicationPackage>)");
        install("Windows", R"(<ApplicationPackage UpgradeCode="{Windows-and-more}"><Components>
            <ComponentEntry ModuleName="./windows.cuix"/></Components></ApplicationPackage>)");
    }

    /// One call of both entry points. What the host's journal notes of it is no growth of the autoloader's.
    void callBoth()
    {
        excuteCuix();
        excute();
        host->journal().clear();
    }

    /// What is in use beyond what the autoloader's lists hold.
    static Blocks inUseBesidesTheLists() { return liveBlocks() - blocksHeldBy(manager()); }

    static const KestBundleManager& manager() { return *KestBundleManager::getInstance(); }

    /// Calls both entry points `calls` times, and expects after each that only the lists have grown.
    void expectOnlyTheListsToGrow(int calls)
    {
        const std::vector<std::string> descriptors = openDescriptors();
        const Blocks others = inUseBesidesTheLists();
        const Blocks held = blocksHeldBy(manager());
        for (int call = 1; call <= calls; ++call) {
            callBoth();
            ASSERT_EQ(inUseBesidesTheLists(), others) << "after call " << call;
        }
        EXPECT_EQ(openDescriptors(), descriptors);
        grown = blocksHeldBy(manager()) - held;
        std::cout << calls << " calls: the lists grew by " << grown << "; " << manager().bundlePaths.size()
                  << " paths, " << manager().bundles.size() << " bundles; all else kept its " << others << "\n";
    }

    OwnFolder folder;
    standalone::HostSettings settings;
    std::unique_ptr<standalone::Host> host;
    Blocks grown;
};

TEST_F(GrowthTest, AThousandCallsWithoutBundlesTakeNothing)
{
    for (int call = 0; call < kSettlingCalls; ++call) {
        callBoth();
    }

    expectOnlyTheListsToGrow(1000);

    EXPECT_EQ(grown, Blocks());
}

TEST_F(GrowthTest, AThousandCallsTakeWhatTheListsHoldAndNothingElse)
{
    installThreeBundles();
    callBoth();
    ASSERT_EQ(manager().bundles.size(), 3U);
    useHome("emptyHome"); // the three stay in the lists and are read in each call, but no folder is found again
    for (int call = 0; call < kSettlingCalls; ++call) {
        callBoth();
    }
    const Blocks before = blocksHeldBy(manager());
    callBoth();
    const Blocks ofOneCall = blocksHeldBy(manager()) - before;

    expectOnlyTheListsToGrow(1000);

    EXPECT_EQ(manager().bundlePaths.size(), 3U);
    EXPECT_EQ(manager().bundles.size(), (1U + kSettlingCalls + 1U + 1000U) * 3U);
    EXPECT_EQ(grown.count, 1000 * ofOneCall.count); // by the same for each, whatever came before
}

TEST_F(GrowthTest, CallsThatFindTheirBundlesAgainTakeWhatTheListsHoldAndNothingElse)
{
    installThreeBundles();
    for (int call = 0; call < kSettlingCalls; ++call) {
        callBoth();
    }

    expectOnlyTheListsToGrow(60);

    EXPECT_EQ(manager().bundlePaths.size(), 100U * 3);
    EXPECT_EQ(manager().bundles.size(), 100U * 101 / 2 * 3); // a copy of each path in the list, in each call
}

TEST_F(GrowthTest, BundlesThatAreDroppedLeaveTheirPathsAndNothingElse)
{
    install("Broken", "<ApplicationPackage><Components></ApplicationPackage>");
    install("Elsewhere", R"(<ApplicationPackage><RuntimeRequirements OS="Plan9" Platform="Another"/>
        <Components/></ApplicationPackage>)");
    for (int call = 0; call < kSettlingCalls; ++call) {
        callBoth();
    }

    expectOnlyTheListsToGrow(160);

    EXPECT_EQ(manager().bundlePaths.size(), 200U * 2);
    EXPECT_EQ(manager().bundles.size(), 0U);
}

} // namespace
