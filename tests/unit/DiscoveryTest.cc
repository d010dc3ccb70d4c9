// Where bundles are looked for, and which folders count as bundles.
#include "tests/AutoloaderTest.h"
#include "tests/TestLocale.h"

#include <stdexcept>

namespace {

using hostdouble::Element;
using Lines = std::vector<std::string>;
using Paths = std::vector<CStdStr<wchar_t>>;

class DiscoveryTest : public AutoloaderTest
{
protected:
    const Element sound{L"ApplicationPackage"};

    /// What one scan of kUserRoot finds there; nothing may be logged.
    Paths scan()
    {
        manager().fetchBundlePath(kUserRoot);
        EXPECT_EQ(problems(), "");
        EXPECT_EQ(manager().manifestPaths.size(), manager().bundlePaths.size());
        for (std::size_t i = 0; i < manager().bundlePaths.size(); ++i) {
            EXPECT_EQ(manager().manifestPaths[i], manager().bundlePaths[i] + L"/PackageContents.xml");
        }
        return manager().bundlePaths;
    }

    /// Puts a folder with a manifest into kUserRoot.
    void addFolder(const std::wstring& name) { install(kUserRoot, name, sound); }
};

TEST_F(DiscoveryTest, TheThreeRootsAreListedInTheirOrder)
{
    manager().fetchAllBundlePath();
    EXPECT_EQ(host.calls, (Lines{"GetKestProgramPath()", "FindFirstFileW(/program/ApplicationPlugins/*) -> invalid",
                                 "FindFirstFileW(/usr/local/ORRELIN/ApplicationPlugins/*) -> invalid",
                                 "FindFirstFileW(/home/user/.config/ORRELIN/ApplicationPlugins/*) -> invalid"}));
}

TEST_F(DiscoveryTest, WhenNoRootExistsBothListsStayEmptyAndNothingIsCollected)
{
    manager().fetchAllBundlePath();
    EXPECT_EQ(manager().bundlePaths, Paths());
    EXPECT_EQ(manager().manifestPaths, Paths());
    EXPECT_FALSE(manager().collectBundle());
    EXPECT_EQ(problems(), "");
}

TEST_F(DiscoveryTest, NothingIsPutBetweenTheProgramPathAndTheFirstRoot)
{
    host.programPath = L"/opt/host";
    manager().fetchAllBundlePath();
    EXPECT_EQ(host.calls.at(1), "FindFirstFileW(/opt/hostApplicationPlugins/*) -> invalid");
}

TEST_F(DiscoveryTest, AnEmptyProgramPathGivesARelativeRoot)
{
    host.programPath = L"";
    manager().fetchAllBundlePath();
    EXPECT_EQ(host.calls.at(1), "FindFirstFileW(ApplicationPlugins/*) -> invalid");
}

TEST_F(DiscoveryTest, TheLongestProgramPathIsTakenWhole)
{
    host.programPath = L"/" + std::wstring(1021, L'p') + L"/";
    manager().fetchAllBundlePath();
    EXPECT_EQ(host.calls.at(1), "FindFirstFileW(/" + std::string(1021, 'p') + "/ApplicationPlugins/*) -> invalid");
}

TEST_F(DiscoveryTest, AnEmptyHomeGivesARootBelowTheTopFolder)
{
    setenv("HOME", "", 1);
    manager().fetchAllBundlePath();
    EXPECT_EQ(host.calls.at(3), "FindFirstFileW(/.config/ORRELIN/ApplicationPlugins/*) -> invalid");
}

TEST_F(DiscoveryTest, HomeIsReadAtEachSearch)
{
    setenv("HOME", "/first", 1);
    manager().fetchAllBundlePath();
    setenv("HOME", "/second", 1);
    manager().fetchAllBundlePath();
    EXPECT_EQ(host.calls.at(3), "FindFirstFileW(/first/.config/ORRELIN/ApplicationPlugins/*) -> invalid");
    EXPECT_EQ(host.calls.at(7), "FindFirstFileW(/second/.config/ORRELIN/ApplicationPlugins/*) -> invalid");
}

TEST_F(DiscoveryTest, HomeIsWidenedByTheGlobalLocale)
{
    setenv("HOME", "/\xE4", 1);
    {
        const TestLocale german("de_DE.ISO-8859-1");
        host.folders[L"/\u00e4/.config/ORRELIN/ApplicationPlugins"] = {{L"a.bundle"}};
        host.folders[L"/\u00e4/.config/ORRELIN/ApplicationPlugins/a.bundle"] = {{L"PackageContents.xml", false}};
        manager().fetchAllBundlePath();
    }
    EXPECT_EQ(manager().bundlePaths, (Paths{L"/\u00e4/.config/ORRELIN/ApplicationPlugins/a.bundle"}));
}

TEST_F(DiscoveryTest, AHomeThatTheLocaleCannotDecodeIsSearchedNevertheless)
{
    setenv("HOME", "/\xE4", 1);
    host.folders[L"/\xDCE4/.config/ORRELIN/ApplicationPlugins"] = {{L"a.bundle"}};
    host.folders[L"/\xDCE4/.config/ORRELIN/ApplicationPlugins/a.bundle"] = {{L"PackageContents.xml", false}};
    manager().fetchAllBundlePath();
    EXPECT_EQ(manager().bundlePaths, (Paths{L"/\xDCE4/.config/ORRELIN/ApplicationPlugins/a.bundle"}));
}

TEST_F(DiscoveryTest, WithoutHomeTheFirstTwoRootsAreSearchedBeforeTheLogicError)
{
    install(kProgramRoot, L"a.bundle", sound);
    install(kAllUsersRoot, L"b.bundle", sound);
    unsetenv("HOME");
    std::string message;
    try {
        manager().fetchAllBundlePath();
    } catch (const std::logic_error& error) {
        message = error.what();
    }
    EXPECT_EQ(message, "basic_string::_M_construct null not valid");
    EXPECT_EQ(manager().bundlePaths, (Paths{kProgramRoot + L"/a.bundle", kAllUsersRoot + L"/b.bundle"}));
    EXPECT_TRUE(manager().bundles.empty());
}

TEST_F(DiscoveryTest, AFolderIsListedUntilItsManifestIsFoundAndTheRootToItsEnd)
{
    host.folders[kUserRoot] = {{L"."}, {L".."}, {L"a.bundle"}, {L"b.txt", false}};
    host.folders[kUserRoot + L"/a.bundle"] = {{L"."}, {L".."}, {L"PackageContents.xml", false}, {L"z", false}};

    manager().fetchBundlePath(kUserRoot);

    EXPECT_EQ(host.calls, (Lines{"FindFirstFileW(/home/user/.config/ORRELIN/ApplicationPlugins/*) -> .",
                                 "FindNextFileW() -> ..", "FindNextFileW() -> a.bundle",
                                 "FindFirstFileW(/home/user/.config/ORRELIN/ApplicationPlugins/a.bundle/*) -> .",
                                 "FindNextFileW() -> ..", "FindNextFileW() -> PackageContents.xml",
                                 "FindNextFileW() -> b.txt", "FindNextFileW() -> 0"}));
}

TEST_F(DiscoveryTest, FoldersAreTakenInTheOrderOfTheListing)
{
    addFolder(L"c.bundle");
    addFolder(L"a.bundle");
    addFolder(L"b.bundle");
    EXPECT_EQ(scan(), (Paths{kUserRoot + L"/c.bundle", kUserRoot + L"/a.bundle", kUserRoot + L"/b.bundle"}));
}

TEST_F(DiscoveryTest, TheLetterCaseOfTheFoldersEndDoesNotMatter)
{
    addFolder(L"Tools.BUNDLE");
    addFolder(L"Tools.Bundle");
    addFolder(L"Tools.bUnDlE");
    EXPECT_EQ(scan(),
              (Paths{kUserRoot + L"/Tools.BUNDLE", kUserRoot + L"/Tools.Bundle", kUserRoot + L"/Tools.bUnDlE"}));
}

TEST_F(DiscoveryTest, ARegularFileNamedLikeABundleIsNoneAndIsNotLookedInto)
{
    host.folders[kUserRoot] = {{L"tools.bundle", false}};
    host.folders[kUserRoot + L"/tools.bundle"] = {{L"PackageContents.xml", false}};
    EXPECT_EQ(scan(), Paths());
    EXPECT_EQ(hostdouble::callsTo({"FindFirstFileW"}).size(), 1U);
}

TEST_F(DiscoveryTest, AFolderNamedExactlyBundleIsAccepted)
{
    addFolder(L".bundle");
    EXPECT_EQ(scan(), (Paths{kUserRoot + L"/.bundle"}));
}

TEST_F(DiscoveryTest, FoldersWithOtherEndsAreNotLookedInto)
{
    for (const wchar_t* name :
         {L"bundle", L"a.bundl", L"a.bundle.bak", L"a.bundle ", L"abundle", L"a.bundles", L"dle", L"a_bundle"}) {
        addFolder(name);
    }
    EXPECT_EQ(scan(), Paths());
    EXPECT_EQ(hostdouble::callsTo({"FindFirstFileW"}).size(), 1U);
}

TEST_F(DiscoveryTest, TheFoldersEndIsFoldedByTheClassicLocaleOnly)
{
    const TestLocale turkish("tr_TR.UTF-8");
    addFolder(L"a.B\u00dcNDLE");
    addFolder(L"a.\uff22UNDLE");
    addFolder(L"b.BUNDLE");
    EXPECT_EQ(scan(), (Paths{kUserRoot + L"/b.BUNDLE"}));
}

TEST_F(DiscoveryTest, NamesAboveAsciiAndUndecodableOnesAreTakenAsTheyStand)
{
    addFolder(L"\U0001F600\u4e2d.bundle");
    addFolder(L"\xDCFF.bundle");
    EXPECT_EQ(scan(), (Paths{kUserRoot + L"/\U0001F600\u4e2d.bundle", kUserRoot + L"/\xDCFF.bundle"}));
}

TEST_F(DiscoveryTest, ANameOfTheGreatestLengthIsTakenWhole)
{
    const std::wstring name = std::wstring(252, L'n') + L".bundle";
    addFolder(name);
    EXPECT_EQ(scan(), (Paths{kUserRoot + L"/" + name}));
}

TEST_F(DiscoveryTest, AManifestInAnotherLetterCaseIsNoneAndNothingIsLogged)
{
    host.folders[kUserRoot] = {{L"Tools.bundle"}};
    host.folders[kUserRoot + L"/Tools.bundle"] = {{L"packagecontents.xml", false}, {L"PackageContents.XML", false}};
    EXPECT_EQ(scan(), Paths());
}

TEST_F(DiscoveryTest, TheManifestsNameMustMatchWhole)
{
    host.folders[kUserRoot] = {{L"Tools.bundle"}};
    host.folders[kUserRoot + L"/Tools.bundle"] = {
        {L"PackageContents.xml~", false}, {L"PackageContents.xm", false}, {L".PackageContents.xml", false}};
    EXPECT_EQ(scan(), Paths());
}

TEST_F(DiscoveryTest, AManifestOneLevelDeeperIsNotFound)
{
    host.folders[kUserRoot] = {{L"Tools.bundle"}};
    host.folders[kUserRoot + L"/Tools.bundle"] = {{L"Contents"}};
    host.folders[kUserRoot + L"/Tools.bundle/Contents"] = {{L"PackageContents.xml", false}};
    EXPECT_EQ(scan(), Paths());
    EXPECT_EQ(hostdouble::callsTo({"FindFirstFileW"}).size(), 2U);
}

TEST_F(DiscoveryTest, ABundleOneLevelDeeperIsNotFound)
{
    host.folders[kUserRoot] = {{L"more"}};
    install(kUserRoot + L"/more", L"Tools.bundle", sound);
    EXPECT_EQ(scan(), Paths());
}

TEST_F(DiscoveryTest, WhatBearsTheManifestsNameNeedNotBeAFile)
{
    host.folders[kUserRoot] = {{L"Tools.bundle"}};
    host.folders[kUserRoot + L"/Tools.bundle"] = {{L"PackageContents.xml", true}};
    EXPECT_EQ(scan(), (Paths{kUserRoot + L"/Tools.bundle"}));
}

TEST_F(DiscoveryTest, AFolderThatCannotBeListedIsSkippedWithoutAMessage)
{
    host.folders[kUserRoot] = {{L"locked.bundle"}, {L"Tools.bundle"}};
    host.folders[kUserRoot + L"/Tools.bundle"] = {{L"PackageContents.xml", false}};
    EXPECT_EQ(scan(), (Paths{kUserRoot + L"/Tools.bundle"}));
}

TEST_F(DiscoveryTest, TheListsAreAppendedToAndTheSameFolderIsListedTwice)
{
    addFolder(L"a.bundle");
    scan();
    EXPECT_EQ(scan(), (Paths{kUserRoot + L"/a.bundle", kUserRoot + L"/a.bundle"}));
}

TEST_F(DiscoveryTest, LookingForAManifestAppendsItsPathAloneAndOnlyWhenThereIsOne)
{
    host.folders[L"/f"] = {{L"PackageContents.xml", false}};
    EXPECT_FALSE(manager().fetchXmlPath(L"/missing"));
    EXPECT_EQ(manager().manifestPaths, Paths());
    EXPECT_TRUE(manager().fetchXmlPath(L"/f"));
    EXPECT_EQ(manager().manifestPaths, (Paths{L"/f/PackageContents.xml"}));
    EXPECT_EQ(manager().bundlePaths, Paths());
}

} // namespace
