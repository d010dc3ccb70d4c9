// Every option of "run", and every wrong use with its message.
#include "tests/cli/ToolTest.h"

#include <filesystem>
#include <unistd.h>

namespace {

namespace fs = std::filesystem;
using nlohmann::json;

const std::string kHint = "\nRun \"kestbundle --help\" for how it is used.\n";
const std::string kRunHint = "\nRun \"kestbundle run --help\" for how it is used.\n";

class RunOptionsTest : public ToolTest
{
protected:
    /// A wrong use: nothing on standard output, nothing made in the home folder.
    void expectWrongUse(const std::vector<std::string>& arguments, const std::string& message)
    {
        EXPECT_EQ(runTool(arguments), (ToolRun{2, "", "kestbundle: " + message}));
        EXPECT_TRUE(fs::is_empty(home()));
    }
};

TEST_F(RunOptionsTest, VersionIsOneLine)
{
    EXPECT_EQ(runTool({"--version"}), (ToolRun{0, "kestbundle " KEST_VERSION "\n", ""}));
}

TEST_F(RunOptionsTest, HelpNamesEveryOptionAndGivesExamples)
{
    const ToolRun help = runTool({"run", "--help"});
    EXPECT_EQ(help.status, 0);
    EXPECT_EQ(help.errors, "");
    for (const char* part : {"--help", "--home DIR", "--program-dir DIR", "--vernum TEXT", "--product TEXT",
                             "--config FILE", "--command NAME", "--interactive", "--json", "Examples:",
                             "kestbundle run --home /tmp/try --command UNITS", "Exit status: 0 all went well"}) {
        EXPECT_NE(help.output.find(part), std::string::npos) << part << "\n" << help.output;
    }
    const ToolRun overview = runTool({"--help"});
    EXPECT_EQ(overview.status, 0);
    EXPECT_NE(overview.output.find("run "), std::string::npos) << overview.output;
}

TEST_F(RunOptionsTest, WhatTheCommandLineCannotMeanIsWrongUse)
{
    expectWrongUse({}, "A subcommand is required" + kHint);
    expectWrongUse({"--bogus", "run"}, "The argument \"--bogus\" was not expected" + kHint);
    expectWrongUse({"walk"}, "\"walk\" is no subcommand" + kHint);
    expectWrongUse({"run", "--bogus"}, "The argument \"--bogus\" was not expected" + kRunHint);
    expectWrongUse({"run", "stray"}, "The argument \"stray\" was not expected" + kRunHint);
    expectWrongUse({"run", "--home"}, "--home: 1 required DIR missing" + kRunHint);
    expectWrongUse({"run", "--command"}, "--command: 1 required NAME missing" + kRunHint);
    expectWrongUse({"run", "--config", ""}, "--config: --config must not be empty" + kRunHint);
}

TEST_F(RunOptionsTest, TheNearestNameIsProposedForOneThatIsNotKnown)
{
    expectWrongUse({"rum"}, "\"rum\" is no subcommand; did you mean \"run\"?" + kHint);
    expectWrongUse({"rnu", "--json"}, "\"rnu\" is no subcommand; did you mean \"run\"?" + kHint);
    expectWrongUse({"--versoin"}, "The argument \"--versoin\" was not expected; did you mean \"--version\"?" + kHint);
    expectWrongUse({"run", "--Jsn"}, "The argument \"--Jsn\" was not expected; did you mean \"--json\"?" + kRunHint);
}

TEST_F(RunOptionsTest, AnArgumentWithTerminalEscapesIsShownEscaped)
{
    expectWrongUse({"run", "\x1B[31m"}, "The argument \"\\x1B[31m\" was not expected" + kRunHint);
}

TEST_F(RunOptionsTest, AHomeThatIsNoFolderIsWrongUse)
{
    write(path("file"), "");
    expectWrongUse({"run", "--home", path("missing")},
                   "--home: \"" + path("missing") + "\": No such file or directory\n");
    expectWrongUse({"run", "--home", path("file")}, "--home: \"" + path("file") + "\": Not a directory\n");
    expectWrongUse({"run", "--program-dir", path("missing")},
                   "--program-dir: \"" + path("missing") + "\": No such file or directory\n");
    environment[0] = "HOME=";
    expectWrongUse({"run"}, "HOME: \"\": No such file or directory\n");
    environment[0] = "OTHER=";
    expectWrongUse({"run"}, "HOME is not set; set it, or say --home DIR\n");
}

TEST_F(RunOptionsTest, WithoutTheAutoloaderLibraryNothingCanBeRun)
{
    fs::remove(path("tool/lib/libkestbundle.so"));
    const std::string missing = ": cannot open shared object file: No such file or directory";
    expectWrongUse({"run"}, "The autoloader library cannot be opened:\n" + path("tool/lib/libkestbundle.so") + missing +
                                "\nlibkestbundle.so" + missing + "\n");
}

TEST_F(RunOptionsTest, ALibraryThatIsNotTheAutoloaderIsRefused)
{
    fs::remove(path("tool/lib/libkestbundle.so"));
    installModule("entryless", path("tool/lib"), "libkestbundle.so");
    const std::string problem = "libkestbundle.so: undefined symbol: excuteCuix\n";
    expectWrongUse({"run"}, "The autoloader library cannot be opened:\n" + path("tool/lib/") + problem +
                                path("tool/bin/../lib/") + problem);
}

TEST_F(RunOptionsTest, HomeIsTheOneGivenAndStaysSoForModules)
{
    fs::create_directory(path("other"));
    const json report = runJson({"--home", path("other")});
    EXPECT_EQ(report["host"]["home"], "/T/other");
    EXPECT_EQ(report["host"]["configurationFile"], "/T/other/.config/ORRELIN/standalone.sqlite");
    EXPECT_EQ(report["log"]["path"], "/T/other/.config/ORRELIN/BundleErrorLog.txt");
    EXPECT_TRUE(fs::is_empty(home()));
    EXPECT_EQ(runJson({"--home", "other/"})["host"]["home"], "/T/other") << "relative to the working directory";
}

TEST_F(RunOptionsTest, TheProgramFolderIsTheToolsOwnUnlessGiven)
{
    write(path("tool/bin/ApplicationPlugins/Mine.bundle/PackageContents.xml"), manifestOf(""));
    environment[0] = "HOME=" + home();
    const ToolRun done = runTool({"run", "--json"});
    const json report = json::parse(normalised(done.output));
    EXPECT_EQ(done.status, 0) << done;
    EXPECT_EQ(report["host"]["programFolder"], "/T/tool/bin");
    EXPECT_EQ(report["bundles"][0]["folder"], "/T/tool/bin/ApplicationPlugins/Mine.bundle");
    EXPECT_EQ(runJson()["bundles"], json::array());
}

TEST_F(RunOptionsTest, VernumAndProductAreWhatRequirementsAreComparedWith)
{
    install("Strict.bundle",
            manifestOf("<RuntimeRequirements OS=\"Linux\" Architecture=\"m68k\" Platform=\"ORREL\"/>"));
    const json fitting = runJson({"--vernum", "26.0_1_Linux_m68k", "--product", "ORREL"});
    EXPECT_EQ(fitting["host"]["vernum"], "26.0_1_Linux_m68k");
    EXPECT_EQ(fitting["host"]["product"], "ORREL");
    EXPECT_EQ(fitting["bundles"][0]["state"], "kept");
    EXPECT_EQ(fitting["exitStatus"], 0);
    const json other = runJson();
    EXPECT_EQ(other["host"]["product"], "TARVIX");
    EXPECT_EQ(other["bundles"][0]["state"], "dropped");
    EXPECT_EQ(other["bundles"][0]["reasons"], json({"The architecture of the RuntimeRequirements element is incorrect",
                                                    "The platform of the RuntimeRequirements element is incorrect"}));
    EXPECT_EQ(other["exitStatus"], 1);
}

TEST_F(RunOptionsTest, TheConfigurationIsKeptInTheFileGiven)
{
    write(install("Menu.bundle", manifestOf(startupEntry("./m.cuix"))) + "/m.cuix", "<x/>");
    const json report = runJson({"--config", "kept/here.sqlite"});
    EXPECT_EQ(report["host"]["configurationFile"], "/T/kept/here.sqlite");
    EXPECT_EQ(report["exitStatus"], 0);
    EXPECT_TRUE(fs::is_regular_file(path("kept/here.sqlite")));
    EXPECT_FALSE(fs::exists(configurationFile()));
}

TEST_F(RunOptionsTest, WhenNothingIsToBeStoredNoConfigurationFileIsMade)
{
    EXPECT_EQ(runJson()["exitStatus"], 0);
    EXPECT_FALSE(fs::exists(configurationFile()));
}

TEST_F(RunOptionsTest, StandardInputIsNotReadUnlessInteractive)
{
    EXPECT_EQ(runJson({}, "HELLO\n")["commandRuns"], json::array());
}

TEST_F(RunOptionsTest, AReportThatCannotBeWrittenIsAFailure)
{
    standardOutput = "/dev/full";
    EXPECT_EQ(run(), (ToolRun{1, "", "kestbundle: standard output could not be written\n"}));
    EXPECT_EQ(run({"--json"}), (ToolRun{1, "",
                                        "kestbundle: the run ended with an exception: standard output: No space left "
                                        "on device\n"}));
}

} // namespace
