// The account of the host's list of menus, compared whole.
#include "tests/cli/GoldenFile.h"
#include "tests/cli/ToolTest.h"

#include "host/Configuration.h"
#include "standalone/Configuration.h"

#include <filesystem>
#include <regex>

namespace {

namespace fs = std::filesystem;
using nlohmann::json;

class MenusTest : public ToolTest
{
protected:
    void store(const wchar_t* key, const std::wstring& text) const
    {
        standalone::Journal journal;
        standalone::Configuration store(configurationFile(), journal);
        ASSERT_TRUE(store.store(TarvixConfig::kMenus, key, text));
    }
    void storeHostList(const std::wstring& list) const { store(L"CUIX/LoadedCuix", list); }
    void storeBundleList(const std::wstring& list) const { store(L"CUIX/LoadedBundleCuix", list); }

    /// A bundle with a start-up component for each of `modules`.
    std::string installWith(const std::string& name, const std::vector<std::string>& modules,
                            const std::string& code = "") const
    {
        std::string entries;
        for (const std::string& module : modules) {
            entries += "<ComponentEntry ModuleName=\"" + module + "\"/>";
        }
        return install(name, manifestOf("<Components>" + entries + "</Components>", code));
    }

    ToolRun menus(std::vector<std::string> arguments = {})
    {
        arguments.insert(arguments.begin(),
                         {"menus", "--program-dir", path("program"), "--vernum", "26.0_1_Linux_test"});
        ToolRun done = runTool(arguments);
        done.output = std::regex_replace(normalised(done.output), std::regex("-[0-9A-F]{16}\\.cuix"), "-HASH.cuix");
        return done;
    }
};

TEST_F(MenusTest, WithoutMenusThereIsNothingToTell)
{
    EXPECT_EQ(menus(), (ToolRun{0, R"(The host's list of menus: 0 entries now, 0 after the next start.

Nothing was written.
)",
                                ""}));
}

TEST_F(MenusTest, OfAMenuThatCannotBeConvertedTheFileIsToBeMendedAndNotItsPlace)
{
    write(installWith("A.bundle", {"./new.cuix", "./old.mnu"}) + "/old.mnu", "no item\n");
    const ToolRun done = menus();
    EXPECT_NE(done.output.find(R"(  + (an empty entry)
      of /T/home/.config/ORRELIN/ApplicationPlugins/A.bundle
      note KB703 empty-menu-entry, PackageContents.xml:3:54
        The component "./old.mnu" stands behind a menu and gives none, so it leaves an empty entry in the host's list of menus.
        change    Mend the menu file.
)"),
              std::string::npos)
        << done;
}

TEST_F(MenusTest, EachEntryStandsWithWhereItComesFrom)
{
    storeHostList(L"/host.cuix;/gone.cuix");
    storeBundleList(L"/gone.cuix");
    write(installWith("A.bundle", {"./new.cuix", "./old.mnu"}) + "/old.mnu", "[Draw]\nLine = LINE\n");
    const std::string before = contentOf(configurationFile());
    EXPECT_EQ(menus(), (ToolRun{0, R"(The host's list of menus: 2 entries now, 3 after the next start.

  - /gone.cuix
      a bundle's, registered at an earlier start; no bundle brings it any more
    /host.cuix
      the host's own
  + /T/home/.config/ORRELIN/ApplicationPlugins/A.bundle/new.cuix
      of /T/home/.config/ORRELIN/ApplicationPlugins/A.bundle
  + /T/home/.config/ORRELIN/ConvertedMenus/old-HASH.cuix
      of /T/home/.config/ORRELIN/ApplicationPlugins/A.bundle
      converted from /T/home/.config/ORRELIN/ApplicationPlugins/A.bundle/old.mnu

Nothing was written.
)",
                                ""}));
    EXPECT_EQ(contentOf(configurationFile()), before);
    EXPECT_FALSE(fs::exists(home() + "/.config/ORRELIN/ConvertedMenus"));
}

TEST_F(MenusTest, EntriesThatAnUpdateDamagesAndMenusThatItLeavesOutAreFindings)
{
    storeHostList(L"/own.cuix;/a/own.cuix;/b.cuix;");
    storeBundleList(L"/own.cuix");
    installWith("A.bundle", {"./one.cuix", "./native.krx", "./two.cuix"}, "A");
    install("B.bundle", "<ApplicationPackage><Components><ComponentEntry ModuleName=\"./dropped.cuix\"/>");
    write(installWith("C.bundle", {"./bad.mnu"}, "C") + "/bad.mnu", "no menu\n");
    installWith("D.bundle", {"./twin.cuix"}, "A");
    install("E.bundle", manifestOf("<DependentBundles><DependentBundle UpgradeCode=\"nowhere\"/></DependentBundles>"
                                   "<Components><ComponentEntry ModuleName=\"./waiting.cuix\"/></Components>",
                                   "E"));
    installWith("F;G.bundle", {"./split.cuix"}, "F");
    install("H.bundle", manifestOf("<Components><ComponentEntry ModuleName=\"./later.cuix\" "
                                   "LoadOnTARVIXStartup=\"false\"/></Components>",
                                   "H"));
    const ToolRun done = menus();
    EXPECT_EQ(done.errors, "");
    EXPECT_EQ(done.status, 1);
    expectGolden("menus-damaged.txt", done.output);
    expectGolden("menus-damaged.json", menus({"--json"}).output);
}

TEST_F(MenusTest, AComponentWithoutAPathIsNoMenuAndLeavesAnEmptyEntry)
{
    install("A.bundle",
            manifestOf(
                "<Components><ComponentEntry ModuleName=\"./one.cuix\"/><ComponentEntry ModuleName=\"pathless.krx\"/>"
                "</Components>"));
    EXPECT_EQ(menus(), (ToolRun{0, R"(The host's list of menus: 0 entries now, 3 after the next start.

  + (an empty entry)
      The bundles' menus are appended behind a ";", also to an empty list.
  + /T/home/.config/ORRELIN/ApplicationPlugins/A.bundle/one.cuix
      of /T/home/.config/ORRELIN/ApplicationPlugins/A.bundle
  + (an empty entry)
      of /T/home/.config/ORRELIN/ApplicationPlugins/A.bundle
      note KB703 empty-menu-entry, PackageContents.xml:3:54
        A component without a file stands behind a menu and gives none, so it leaves an empty entry in the host's list of menus.
        change    Put the menus behind all other components.

Nothing was written.
)",
                                ""}));
}

TEST_F(MenusTest, OfComponentsWithOneMenuEachThatIsNotRegisteredHasItsOwnFinding)
{
    install("A.bundle", manifestOf("<Components>\n<ComponentEntry ModuleName=\"./one.cuix\"/>\n"
                                   "<ComponentEntry ModuleName=\"./one.cuix\" LoadCtrlFlag=\"2\"/>\n"
                                   "<ComponentEntry ModuleName=\"./one.cuix\" LoadOnTARVIXStartup=\"False\"/>\n"
                                   "</Components>",
                                   "A"));
    EXPECT_EQ(menus(), (ToolRun{1, R"(The host's list of menus: 0 entries now, 2 after the next start.

  + (an empty entry)
      The bundles' menus are appended behind a ";", also to an empty list.
  + /T/home/.config/ORRELIN/ApplicationPlugins/A.bundle/one.cuix
      of /T/home/.config/ORRELIN/ApplicationPlugins/A.bundle

Menus of bundles that are not registered:
  /T/home/.config/ORRELIN/ApplicationPlugins/A.bundle/one.cuix
      error KB701 menu-not-at-startup, PackageContents.xml:5:41
        The menu "./one.cuix" is not to be loaded at start-up, and menus are registered only then; a command does not load it either.
        expected  "1", or no LoadCtrlFlag
        found     "2"
        change    Remove LoadCtrlFlag.
  /T/home/.config/ORRELIN/ApplicationPlugins/A.bundle/one.cuix
      error KB701 menu-not-at-startup, PackageContents.xml:6:41
        The menu "./one.cuix" is not to be loaded at start-up, and menus are registered only then; a command does not load it either.
        expected  LoadOnTARVIXStartup="True", or none
        found     "False"
        change    Remove LoadOnTARVIXStartup and LoadOnCommandInvocation.

Nothing was written.
)",
                                ""}));
}

TEST_F(MenusTest, ABundleWithoutMenusOfItsOwnTakesTheTurnOfItsUpgradeCodeAllTheSame)
{
    install("A.bundle", manifestOf(startupEntry("./a.lsp"), "same"));
    install("B.bundle", manifestOf(startupEntry("./b.lsp"), "needed"));
    install("C.bundle", manifestOf("<DependentBundles><DependentBundle UpgradeCode=\"needed\"/></DependentBundles>" +
                                       startupEntry("./one.cuix"),
                                   "same"));
    const json unregistered = json::parse(menus({"--json"}).output)["unregistered"];
    ASSERT_EQ(unregistered.size(), 1U);
    EXPECT_EQ(unregistered[0]["reason"],
              "The menu \"./one.cuix\" is not registered: \"/T/home/.config/ORRELIN/ApplicationPlugins/A.bundle\" has "
              "the same UpgradeCode, \"same\", and comes first.");
    EXPECT_EQ(unregistered[0]["findings"][0]["code"], "KB702");
    EXPECT_EQ(unregistered[0]["findings"][1]["code"], "KB410");
    EXPECT_EQ(unregistered[0]["findings"].size(), 2U);
}

TEST_F(MenusTest, WhatADroppedBundleRequiresInVainIsSaidOfItsMenusOneByOne)
{
    install("A.bundle", manifestOf(startupEntry("./one.cuix") + // what stands behind a requirement is not read
                                       "<RuntimeRequirements OS=\"Plan9\" Platform=\"OTHER\" Architecture=\"test\" "
                                       "SeriesMin=\"none\"/>",
                                   "A"));
    const json unregistered = json::parse(menus({"--json"}).output)["unregistered"];
    ASSERT_EQ(unregistered.size(), 1U);
    std::vector<std::string> codes;
    for (const json& finding : unregistered[0]["findings"]) {
        codes.push_back(finding["code"]);
    }
    EXPECT_EQ(codes, (std::vector<std::string>{"KB302", "KB304"}));
}

TEST_F(MenusTest, NamesThatWouldUpsetATerminalAreShownHarmlessly)
{
    storeHostList(L"/\x1B[2Jclear.cuix;/line\nbreak.cuix");
    EXPECT_EQ(menus(), (ToolRun{0, R"(The host's list of menus: 2 entries now, 2 after the next start.

    /\x1B[2Jclear.cuix
      the host's own
    /line\x0Abreak.cuix
      the host's own

Nothing was written.
)",
                                ""}));
    EXPECT_EQ(json::parse(menus({"--json"}).output)["hostList"]["after"],
              json({"/\x1B[2Jclear.cuix", "/line\nbreak.cuix"}));
}

TEST_F(MenusTest, OfAListThatCannotBeReadNoBundleIsSaidToBeAtFault)
{
    write(configurationFile(), "no database");
    write(installWith("A.bundle", {"./one.cuix", "./two.mnu"}) + "/two.mnu", "[Draw]\nLine = LINE\n");
    EXPECT_EQ(menus(), (ToolRun{1, R"(The host's list of menus: 0 entries now, 0 after the next start.

Menus of bundles that are not registered:
  /T/home/.config/ORRELIN/ApplicationPlugins/A.bundle/one.cuix
      error KB702 menu-not-registered, PackageContents.xml:3:29
        The menu "./one.cuix" is not registered: the host's list of menus is not brought up to date.
        change    Mend what "kestbundle explain" says about the host.
  /T/home/.config/ORRELIN/ApplicationPlugins/A.bundle/two.mnu
      error KB702 menu-not-registered, PackageContents.xml:3:70
        The menu "./two.mnu" is not registered: the host's list of menus is not brought up to date.
        change    Mend what "kestbundle explain" says about the host.

The host says: The configuration file "/T/home/.config/ORRELIN/standalone.sqlite" could not be read: file is not a database; move it away to start with new lists

Nothing was written.
)",
                                ""}));
}

TEST_F(MenusTest, AListThatCannotBeReadIsToldOf)
{
    write(configurationFile(), "no database");
    EXPECT_EQ(menus(), (ToolRun{1, R"(The host's list of menus: 0 entries now, 0 after the next start.

The host says: The configuration file "/T/home/.config/ORRELIN/standalone.sqlite" could not be read: file is not a database; move it away to start with new lists

Nothing was written.
)",
                                ""}));
}

} // namespace
