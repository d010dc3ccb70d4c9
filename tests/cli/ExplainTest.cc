// What "explain" takes for a bundle, a command or a menu, its JSON form, and what a hostile bundle can do to it.
#include "tests/cli/FaultFixture.h"

#include <algorithm>
#include <filesystem>
#include <nlohmann/json.hpp>

namespace {

namespace fs = std::filesystem;
using nlohmann::json;

class ExplainTest : public FaultFixture
{
protected:
    json explainJson(std::vector<std::string> arguments = {})
    {
        arguments.insert(arguments.begin(), {"explain", "--json"});
        const ToolRun done = tell(arguments);
        EXPECT_EQ(done.errors, "");
        json document = json::parse(done.output, nullptr, false);
        EXPECT_FALSE(document.is_discarded()) << done;
        EXPECT_EQ(document["exitStatus"], done.status);
        return document;
    }
};

constexpr char kAllOfTools[] = R"(Tools.bundle: loaded
  folder     /T/home/.config/ORRELIN/ApplicationPlugins/Tools.bundle
  manifest   PackageContents.xml is read to its end
  package    "Tools", version "1.0.0", UpgradeCode "{TOOLS}"
  requires   nothing
  depends on "{BASE}": Base.bundle, loaded
  components ./Contents/tools.lsp (line 7) is queued at start-up
             ./Contents/late.lsp (line 8) is queued when CUT or TRIM is used
             ./Contents/script.py (line 14) is loaded at start-up
             ./Contents/tools.cuix (line 15) is registered as a menu
  commands   CUT loads ./Contents/late.lsp
             TRIM loads ./Contents/late.lsp
  menus      ./Contents/tools.cuix: entry 3 of 3 in the host's list of menus

  Nothing stops it.
)";

TEST_F(ExplainTest, ABundleIsNamedByItsFolderWithOrWithoutEndingItsPathItsNameItsCodeOrAFileOfIts)
{
    installFault("nothing-wrong");
    for (const std::string& subject :
         {std::string("Tools.bundle"), std::string("Tools"), plugins() + "Tools.bundle", plugins() + "Tools.bundle/",
          std::string("home/.config/ORRELIN/../ORRELIN/ApplicationPlugins/Tools.bundle"), std::string("{TOOLS}"),
          std::string("late.lsp"), plugins() + "Tools.bundle/PackageContents.xml"}) {
        EXPECT_EQ(tell({"explain", subject}), (ToolRun{0, kAllOfTools, ""})) << subject;
    }
}

TEST_F(ExplainTest, ACommandIsNamedInAnyLetterCaseAndItsBundlesAreExplained)
{
    installFault("nothing-wrong");
    EXPECT_EQ(tell({"explain", "trim"}), (ToolRun{0, std::string(R"(Command TRIM
  loads      ./Contents/late.lsp of Tools.bundle
  declared   for ./Contents/late.lsp of Tools.bundle

)") + kAllOfTools,
                                                  ""}));
}

TEST_F(ExplainTest, OfACommandOfTwoBundlesTheOneThatIsNotLoadedIsSaidSo)
{
    installFault("command-of-another-bundle");
    const ToolRun done = tell({"explain", "Cut"});
    EXPECT_EQ(done.output.substr(0, done.output.find("\n\n")), R"(Command CUT
  loads      ./Contents/tools.lsp of First.bundle
  declared   for ./Contents/tools.lsp of First.bundle
             for ./Contents/tools.lsp of Second.bundle, which it does not load)");
    EXPECT_EQ(done.status, 1);
}

TEST_F(ExplainTest, ACommandOfABundleThatDoesNotLoadLoadsNothing)
{
    install("Late.bundle", manifestOf("<DependentBundles><DependentBundle UpgradeCode=\"gone\"/></DependentBundles>" +
                                          onDemandEntry("./late.lsp", {"LATE"}),
                                      "late"));
    const ToolRun done = tell({"explain", "late"});
    EXPECT_EQ(done.output.substr(0, done.output.find("\n\n")), R"(Command LATE
  loads      nothing: no bundle that declares it is loaded
  declared   for ./late.lsp of Late.bundle)");
}

TEST_F(ExplainTest, ACommandThatNoComponentIsLoadedForIsExplainedNevertheless)
{
    install("Idle.bundle", manifestOf("<Components>"
                                      "<ComponentEntry ModuleName=\"./a.lsp\" LoadOnCommandInvocation=\"True\">"
                                      "<Commands><Command Local=\"Idle\"/></Commands></ComponentEntry>"
                                      "<ComponentEntry ModuleName=\"./b.lsp\" LoadOnTARVIXStartup=\"False\" "
                                      "LoadOnCommandInvocation=\"yes\">"
                                      "<Commands><Command Local=\"idle\"/></Commands></ComponentEntry>"
                                      "</Components>"));
    const ToolRun done = tell({"explain", "idle"});
    EXPECT_EQ(done.output.substr(0, done.output.find("\n\n")), R"(Command IDLE
  loads      nothing: no component that declares it loads on a command
  declared   for ./a.lsp of Idle.bundle, which loads at start-up
             for ./b.lsp of Idle.bundle)");
    EXPECT_EQ(done.status, 1);
}

TEST_F(ExplainTest, ACommandOfAComponentWithoutAFileLoadsNothing)
{
    install("Fileless.bundle", manifestOf(onDemandEntry("late.lsp", {"LATE"})));
    const ToolRun done = tell({"explain", "late"});
    EXPECT_EQ(done.output.substr(0, done.output.find("\n\n")), R"(Command LATE
  loads      nothing: the component that declares it has no file
  declared   for a component without a file of Fileless.bundle)");
    EXPECT_EQ(explainJson({"late"})["commands"][0]["loads"], nullptr);
}

TEST_F(ExplainTest, ACommandIsFoundByItsGlobalNameWhichDoesNothing)
{
    install("Global.bundle",
            manifestOf("<Components><ComponentEntry ModuleName=\"./a.lsp\" LoadOnTARVIXStartup=\"False\" "
                       "LoadOnCommandInvocation=\"True\"><Commands><Command Global=\"CutList\"/></Commands>"
                       "</ComponentEntry></Components>"));
    const ToolRun done = tell({"explain", "CUTLIST"});
    EXPECT_EQ(done.output.substr(0, done.output.find('\n')), "Global.bundle: loaded");
    EXPECT_NE(done.output.find("KB601"), std::string::npos) << done;
    EXPECT_EQ(done.status, 1);
}

TEST_F(ExplainTest, AMenuIsNamedByItsFileAndItsBundleIsExplained)
{
    installFault("nothing-wrong");
    EXPECT_EQ(
        tell({"explain", "tools.cuix"}),
        (ToolRun{0, std::string(R"(Menu /T/home/.config/ORRELIN/ApplicationPlugins/Tools.bundle/Contents/tools.cuix
  comes from ./Contents/tools.cuix of Tools.bundle
  stands     entry 3 of 3 in the host's list of menus

)") + kAllOfTools,
                 ""}));
}

TEST_F(ExplainTest, AMenuOfTheHostsOwnAndOneThatIsTakenOutAreExplainedToo)
{
    store("CUIX/LoadedCuix", "/host/own.cuix;/old/gone.cuix");
    store("CUIX/LoadedBundleCuix", "/old/gone.cuix");
    EXPECT_EQ(tell({"explain", "own.cuix", "/old/gone.cuix"}), (ToolRun{0, R"(Menu /host/own.cuix
  comes from no bundle that is installed
  stands     entry 1 of 1 in the host's list of menus

Menu /old/gone.cuix
  comes from no bundle that is installed
  stands     not in the host's list of menus
)",
                                                                        ""}));
}

TEST_F(ExplainTest, EverythingOfAGivenNameIsExplained)
{
    install("One.bundle", manifestOf(onDemandEntry("./one.lsp", {"TWO"}), "one"));
    install("Two.bundle", manifestOf(onDemandEntry("./two.lsp", {"ONE"}), "TWO"));
    const json document = explainJson({"TWO"});
    ASSERT_EQ(document["bundles"].size(), 2U);
    ASSERT_EQ(document["commands"].size(), 1U);
    EXPECT_EQ(document["commands"][0]["name"], "TWO");
}

TEST_F(ExplainTest, ANameThatNothingHasIsWrongUseAndTheNearestIsProposed)
{
    installFault("nothing-wrong");
    EXPECT_EQ(tell({"explain", "Toosl"}),
              (ToolRun{2, "", "kestbundle: no bundle, command or menu is named \"Toosl\"; did you mean \"Tools\"?\n"}));
    EXPECT_EQ(tell({"explain", "TRIMM"}),
              (ToolRun{2, "", "kestbundle: no bundle, command or menu is named \"TRIMM\"; did you mean \"TRIM\"?\n"}));
    EXPECT_EQ(tell({"explain", "trom"}),
              (ToolRun{2, "", "kestbundle: no bundle, command or menu is named \"trom\"; did you mean \"TRIM\"?\n"}));
    EXPECT_EQ(tell({"explain", "something else"}),
              (ToolRun{2, "",
                       "kestbundle: no bundle, command or menu is named \"something else\"; \"kestbundle list\" shows "
                       "what there is\n"}));
    EXPECT_EQ(tell({"explain", ""}).status, 2);
}

TEST_F(ExplainTest, TheJsonFormSaysAllThatTheTextSays)
{
    installFault("missing-dependency");
    json document = explainJson({"Tools"});
    document["version"] = "V";
    EXPECT_EQ(document, json::parse(R"({
        "format": 1, "version": "V", "exitStatus": 1, "failure": null, "commands": [], "menus": [], "findings": [],
        "bundles": [{
            "folder": "/T/home/.config/ORRELIN/ApplicationPlugins/Tools.bundle",
            "state": "waiting for a dependency",
            "manifest": "/T/home/.config/ORRELIN/ApplicationPlugins/Tools.bundle/PackageContents.xml",
            "name": "Tools", "version": "1.0.0", "upgradeCode": "{TOOLS}",
            "requirements": [],
            "dependencies": [{"upgradeCode": "{BASSE}", "standing": "missing", "bundle": null, "chain": []}],
            "components": [{
                "module": "/T/home/.config/ORRELIN/ApplicationPlugins/Tools.bundle/Contents/tools.lsp", "line": 7,
                "outcome": "not reached", "problem": null, "menu": null, "commands": [], "firstUse": null}],
            "findings": [{
                "code": "KB401", "name": "missing-dependency", "severity": "error",
                "bundle": "/T/home/.config/ORRELIN/ApplicationPlugins/Tools.bundle", "subject": "{BASSE}",
                "file": "/T/home/.config/ORRELIN/ApplicationPlugins/Tools.bundle/PackageContents.xml",
                "line": 4, "column": 22,
                "what": "The bundle depends on the UpgradeCode \"{BASSE}\", and no bundle here has it.",
                "expected": "a bundle with UpgradeCode=\"{BASSE}\"", "found": "none",
                "change": "Install the bundle with this UpgradeCode, or remove the DependentBundle. Did you mean \"{BASE}\"?"}]
        }]
    })"));
}

TEST_F(ExplainTest, TheJsonFormHasCommandsMenusRequirementsAndChains)
{
    installFault("first-use-fails");
    const json firstUse = explainJson({"cut"});
    EXPECT_EQ(firstUse["commands"], json::parse(R"([{"name": "CUT",
        "loads": {"bundle": "/T/home/.config/ORRELIN/ApplicationPlugins/Tools.bundle",
                  "module": "/T/home/.config/ORRELIN/ApplicationPlugins/Tools.bundle/Contents/gone.krx"},
        "declaredBy": [{"bundle": "/T/home/.config/ORRELIN/ApplicationPlugins/Tools.bundle",
                        "module": "/T/home/.config/ORRELIN/ApplicationPlugins/Tools.bundle/Contents/gone.krx"}]}])"));
    EXPECT_EQ(firstUse["bundles"][0]["components"][0]["firstUse"],
              json::parse(R"({"loaded": false, "problem": "No such file or directory"})"));
    installFault("dependency-cycle");
    EXPECT_EQ(explainJson({"A.bundle"})["bundles"][0]["dependencies"], json::parse(R"([{
        "upgradeCode": "{B}", "standing": "in a cycle",
        "bundle": "/T/home/.config/ORRELIN/ApplicationPlugins/B.bundle",
        "chain": ["/T/home/.config/ORRELIN/ApplicationPlugins/A.bundle",
                  "/T/home/.config/ORRELIN/ApplicationPlugins/B.bundle",
                  "/T/home/.config/ORRELIN/ApplicationPlugins/C.bundle",
                  "/T/home/.config/ORRELIN/ApplicationPlugins/A.bundle"]}])"));
    installFault("wrong-os");
    EXPECT_EQ(explainJson({"Other"})["bundles"][0]["requirements"], json::parse(R"([
        {"name": "product version", "required": null, "found": "26.0", "compared": false, "met": true},
        {"name": "OS", "required": "Plan9", "found": "Linux", "compared": true, "met": false},
        {"name": "architecture", "required": "test", "found": "test", "compared": true, "met": true},
        {"name": "platform", "required": null, "found": "TARVIX", "compared": false, "met": true}])"));
}

TEST_F(ExplainTest, APathLongerThanALispExpressionIsSaidSo)
{
    const std::string part = "/" + std::string(200, 'd');
    std::string name = ".";
    for (int count = 0; count < 11; ++count) {
        name += part;
    }
    install("Long.bundle", manifestOf(startupEntry(name + "/a.lsp"), "long"));
    const json findings = explainJson({"Long"})["bundles"][0]["findings"];
    ASSERT_EQ(findings.size(), 2U);
    const std::size_t length = plugins().size() + std::string("Long.bundle/").size() + 11 * 201 + 5;
    EXPECT_EQ(findings[0]["code"], "KB515");
    EXPECT_EQ(findings[0]["expected"], "2039 characters at most");
    EXPECT_EQ(findings[0]["found"], std::to_string(length) + " characters");
    EXPECT_EQ(findings[1]["code"], "KB514");
}

TEST_F(ExplainTest, APathOfJustTheLengthOfALispExpressionIsNot)
{
    const std::string folder = plugins() + "Long.bundle";
    std::string name;
    while (folder.size() + name.size() + 201 < 2039 - 4) {
        name += "/" + std::string(200, 'd');
    }
    name += "/" + std::string(2039 - 5 - folder.size() - name.size(), 'd') + ".lsp";
    install("Long.bundle", manifestOf(startupEntry("." + name), "long"));
    EXPECT_EQ(explainJson({"Long"})["bundles"][0]["findings"][0]["code"], "KB514");
    install("Long.bundle", manifestOf(startupEntry("./" + name), "long"));
    EXPECT_EQ(explainJson({"Long"})["bundles"][0]["findings"][0]["code"], "KB515");
}

TEST_F(ExplainTest, EscapesInNamesNeitherReachTheTerminalNorBreakTheJson)
{
    install("\x1B[31m\n\xFF.bundle",
            manifestOf("<DependentBundles><DependentBundle UpgradeCode=\"&#x9B;31m&#10;x\"/></DependentBundles>"
                       "<Components><ComponentEntry ModuleName=\"&#x202E;&#x7F;.lsp\"/></Components>"));
    for (const char* subcommand : {"explain", "list"}) {
        const ToolRun text = tell({subcommand});
        EXPECT_EQ(text.output.find_first_of(std::string("\x1B\x7F\xFF")), std::string::npos) << text;
        EXPECT_EQ(text.output.find("\xC2\x9B"), std::string::npos) << text;
        EXPECT_NE(text.output.find("\\x1B[31m\\x0A\\xFF"), std::string::npos) << text;
        EXPECT_EQ(text.output.find("\xE2\x80\xAE"), std::string::npos) << "it turns the line round\n" << text;
    }
    EXPECT_EQ(explainJson()["bundles"][0]["folder"],
              "/T/home/.config/ORRELIN/ApplicationPlugins/\x1B[31m\n\xEF\xBF\xBD.bundle");
}

TEST_F(ExplainTest, HugeTextsAreAbridged)
{
    const std::string huge(1U << 20, 'x');
    install("Huge.bundle", manifestOf("<DependentBundles><DependentBundle UpgradeCode=\"" + huge +
                                          "\"/></DependentBundles>" + onDemandEntry(huge, {huge}),
                                      huge));
    EXPECT_LT(tell({"explain"}).output.size(), 10000U);
    EXPECT_LT(tell({"explain", "Huge"}).output.size(), 10000U);
    EXPECT_LT(tell({"list"}).output.size(), 10000U);
    EXPECT_LT(tell({"explain", huge.substr(0, 100000)}).errors.size(), 2000U);
}

TEST_F(ExplainTest, AChainOfManyBundlesIsWalkedAndAbridged)
{
    constexpr int kCount = 300;
    for (int index = 0; index < kCount; ++index) {
        install("B" + std::to_string(index) + ".bundle",
                manifestOf("<DependentBundles><DependentBundle UpgradeCode=\"" + std::to_string((index + 1) % kCount) +
                               "\"/></DependentBundles>" + startupEntry("./a.lsp"),
                           std::to_string(index)));
    }
    const ToolRun text = tell({"explain", "B7"});
    EXPECT_EQ(text.status, 1);
    EXPECT_NE(text.output.find("\n    The bundles wait for each other in a circle: B7.bundle > B8.bundle > B9.bundle > "
                               "B10.bundle > B11.bundle > B12.bundle > B13.bundle > B14.bundle > B15.bundle > ... "
                               "(289 more) > B5.bundle > B6.bundle > B7.bundle.\n"),
              std::string::npos)
        << text;
    EXPECT_EQ(explainJson({"B7"})["bundles"][0]["dependencies"][0]["chain"].size(), kCount + 1U);
}

TEST_F(ExplainTest, OfManyFindingsTheShortFormShowsTheFirst)
{
    std::string entries;
    for (int index = 0; index < 12; ++index) {
        entries += startupEntry("./" + std::to_string(index) + ".lsp");
    }
    install("Many.bundle", manifestOf(entries, "many"));
    const std::string output = tell({"explain"}).output;
    EXPECT_NE(output.find("\"./9.lsp\" cannot be read: No such file or directory. Its loading is queued all the same, "
                          "and fails later.\n  ... and 2 more\nThe host\n"),
              std::string::npos)
        << output;
}

TEST_F(ExplainTest, AMissingFolderOfTheErrorLogIsSaidSo)
{
    fs::remove_all(home() + "/.config");
    EXPECT_EQ(tell({"explain"}), (ToolRun{1, R"(The host
  note KB101: /T/program/ApplicationPlugins: The search root does not exist, so no bundle is found there.
  note KB101: /usr/local/ORRELIN/ApplicationPlugins: The search root does not exist, so no bundle is found there.
  note KB101: /T/home/.config/ORRELIN/ApplicationPlugins: The search root does not exist, so no bundle is found there.
  warning KB901 log-not-opened, /T/home/.config/ORRELIN/BundleErrorLog.txt
    The error log cannot be written: its folder is not there. Then nothing is ever logged, and everything else goes on.
    change    Make the folder "/T/home/.config/ORRELIN", and let the user of the host write to it.

0 bundles
1 warning, 3 notes
)",
                                          ""}));
}

TEST_F(ExplainTest, NothingIsWritten)
{
    installFault("nothing-wrong");
    const auto files = [&] {
        std::vector<std::string> names;
        for (const fs::directory_entry& entry : fs::recursive_directory_iterator(home())) {
            names.push_back(entry.path().string());
        }
        std::sort(names.begin(), names.end());
        return names;
    };
    const std::vector<std::string> before = files();
    EXPECT_EQ(tell({"explain"}).status, 0);
    EXPECT_EQ(files(), before);
}

} // namespace
