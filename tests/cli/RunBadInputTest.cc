// Inputs that are damaged, hostile or in the way: each has the outcome that it should, and a sound bundle beside it
// is not touched by it.
#include "tests/cli/ToolTest.h"

#include <fcntl.h>
#include <filesystem>
#include <fstream>
#include <sqlite3.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

namespace fs = std::filesystem;
using nlohmann::json;

class RunBadInputTest : public ToolTest
{
protected:
    RunBadInputTest()
    {
        installModule("greeter", install("Sound.bundle", manifestOf(startupEntry("./g.krx"))), "g.krx");
    }

    /// The bundle "Bad.bundle" of `report`, after a look at the sound one.
    static json badBundle(const json& report)
    {
        json bad;
        json soundState;
        for (const json& bundle : report["bundles"]) {
            const std::string folder = bundle["folder"];
            if (folder.ends_with("/Bad.bundle")) {
                bad = bundle;
            } else if (folder.ends_with("/Sound.bundle")) {
                soundState = bundle["state"];
            }
        }
        EXPECT_EQ(soundState, "kept");
        expectSoundLoaded(report);
        return bad;
    }

    static void expectSoundLoaded(const json& report)
    {
        bool isLoaded = false;
        for (const json& module : report["modules"]) {
            isLoaded = isLoaded || (std::string(module["path"]).ends_with("/Sound.bundle/g.krx") && module["loaded"]);
        }
        EXPECT_TRUE(isLoaded) << report.dump(2);
    }

    /// The manifest `content` is dropped as malformed; returns what the parser said.
    std::string expectMalformed(const std::string& content)
    {
        install("Bad.bundle", content);
        const json report = runJson();
        const json bad = badBundle(report);
        EXPECT_EQ(bad["state"], "dropped") << bad;
        EXPECT_EQ(bad["reasons"], json({"File format error"}));
        EXPECT_EQ(report["exitStatus"], 1);
        EXPECT_GT(bad["manifestProblem"]["line"].get<int>(), 0) << bad;
        return bad["manifestProblem"]["message"];
    }

    /// The manifest that stands in Bad.bundle cannot be opened; returns the reason.
    std::string expectUnreadable()
    {
        const json report = runJson();
        const json bad = badBundle(report);
        EXPECT_EQ(bad["state"], "unreadable") << bad;
        EXPECT_EQ(bad["reasons"], json::array());
        EXPECT_EQ(report["exitStatus"], 1);
        return bad["manifestProblem"]["message"];
    }

    std::string badManifest() const { return plugins() + "Bad.bundle/PackageContents.xml"; }
};

TEST_F(RunBadInputTest, AnEmptyManifestIsMalformed)
{
    install("Bad.bundle", "");
    const json report = runJson();
    EXPECT_EQ(badBundle(report)["state"], "dropped");
    EXPECT_EQ(badBundle(report)["reasons"], json({"File format error"}));
}

TEST_F(RunBadInputTest, ATruncatedManifestIsMalformed)
{
    const std::string whole = manifestOf(startupEntry("./x.krx"));
    EXPECT_NE(expectMalformed(whole.substr(0, whole.size() - 5)), "");
}

TEST_F(RunBadInputTest, AManifestInAnotherEncodingThanItSaysIsMalformed)
{
    EXPECT_NE(expectMalformed("<?xml version=\"1.0\" encoding=\"utf-8\"?><a b=\"\xE4\xF6\xFC\"/>"), "");
    EXPECT_NE(expectMalformed("<?xml version=\"1.0\" encoding=\"no-such-code\"?><a/>"), "");
}

TEST_F(RunBadInputTest, AManifestNestedTooDeepIsMalformed)
{
    std::string content;
    for (int level = 0; level < 100'000; ++level) {
        content += "<a>";
    }
    EXPECT_NE(expectMalformed(content), "");
}

TEST_F(RunBadInputTest, AManifestFullOfEntityExpansionsIsMalformedAndQuick)
{
    std::string content = "<?xml version=\"1.0\"?>\n<!DOCTYPE a [<!ENTITY e0 \"lol\">\n";
    for (int level = 1; level < 12; ++level) {
        content += "<!ENTITY e" + std::to_string(level) + " \"";
        for (int i = 0; i < 10; ++i) {
            content += "&e" + std::to_string(level - 1) + ";";
        }
        content += "\">\n";
    }
    EXPECT_NE(expectMalformed(content + "]>\n<a b=\"&e11;\"/>\n"), "");
}

TEST_F(RunBadInputTest, AManifestOfAHundredMegabytesIsRead)
{
    install("Bad.bundle", manifestOf(""));
    {
        std::ofstream stream(badManifest(), std::ios::binary);
        stream << "<ApplicationPackage>\n";
        const std::string line = "<Other Text=\"" + std::string(1000, 'x') + "\"/>\n";
        for (int i = 0; i < 100'000; ++i) {
            stream << line;
        }
        stream << onDemandEntry("./late.krx", {"late"}) << "</ApplicationPackage>\n";
    }
    installModule("late", plugins() + "Bad.bundle", "late.krx");
    const json report = runJson({"--command", "late"});
    EXPECT_EQ(badBundle(report)["state"], "kept");
    EXPECT_EQ(report["commandRuns"][0]["output"], "late, but here\n");
    EXPECT_EQ(report["exitStatus"], 0);
}

TEST_F(RunBadInputTest, AManifestThatIsNoReadableFileCountsAsSoundAndEmpty)
{
    fs::create_directories(badManifest());
    EXPECT_NE(expectUnreadable(), "");
    fs::remove(badManifest());
    ASSERT_EQ(::mkfifo(badManifest().c_str(), 0600), 0);
    EXPECT_NE(expectUnreadable(), "");
    fs::remove(badManifest());
    fs::create_symlink("nowhere", badManifest());
    EXPECT_EQ(expectUnreadable(), "No such file or directory");
}

TEST_F(RunBadInputTest, AManifestWithoutReadPermissionCountsAsSoundAndEmpty)
{
    install("Bad.bundle", manifestOf(""));
    ASSERT_EQ(::chmod(badManifest().c_str(), 0), 0);
    runUnprivileged();
    EXPECT_EQ(expectUnreadable(), "Permission denied");
}

TEST_F(RunBadInputTest, ARootOfTenThousandEntriesIsWalked)
{
    for (int i = 0; i < 10'000; ++i) {
        const std::string name = plugins() + "Entry" + std::to_string(i);
        if (i % 10 == 0) {
            write(name + ".bundle/PackageContents.xml", manifestOf("", name));
        } else {
            write(name + ".bundle.txt", "");
        }
    }
    const json report = runJson();
    EXPECT_EQ(report["bundles"].size(), 1001U);
    expectSoundLoaded(report);
    EXPECT_EQ(report["exitStatus"], 0);
}

TEST_F(RunBadInputTest, AModulePathOfFiveThousandCharactersFailsToLoad)
{
    installEvaluator();
    const std::string name(5000, 'x');
    install("Bad.bundle", manifestOf("<Components><ComponentEntry ModuleName=\"./" + name +
                                     ".krx\"/><ComponentEntry ModuleName=\"./" + name + ".lsp\"/></Components>"));
    const json report = runJson();
    EXPECT_EQ(badBundle(report)["state"], "kept");
    EXPECT_EQ(report["exitStatus"], 1);
    ASSERT_EQ(report["log"]["records"].size(), 1U) << report["log"];
    EXPECT_EQ(report["log"]["records"][0]["path"],
              "/T/home/.config/ORRELIN/ApplicationPlugins/Bad.bundle/" + name + ".krx");
    EXPECT_EQ(report["log"]["records"][0]["message"], "loading failed");
    EXPECT_EQ(report["modules"][0]["problem"], "File name too long");
    ASSERT_EQ(report["expressions"].size(), 1U);
    EXPECT_LE(std::string(report["expressions"][0]["expression"]).size(), 2048U) << "cut off";
}

TEST_F(RunBadInputTest, ALogThatIsAFolderIsSaidSoAndLoadingGoesOn)
{
    fs::create_directories(logFile());
    install("Bad.bundle", manifestOf("<RuntimeRequirements OS=\"Plan9\" Architecture=\"test\"/>"));
    const json report = runJson();
    EXPECT_EQ(badBundle(report)["state"], "unknown") << "nobody wrote down whether it was dropped";
    EXPECT_EQ(report["log"]["problem"], "it could not be opened: Is a directory");
    EXPECT_EQ(report["problems"]["unreliableLog"], true);
    EXPECT_EQ(report["exitStatus"], 1);
}

TEST_F(RunBadInputTest, ALogOnAFullDiskIsSaidSoAndLoadingGoesOn)
{
    fs::create_directories(fs::path(logFile()).parent_path());
    fs::create_symlink("/dev/full", logFile());
    const json report = runJson();
    EXPECT_EQ(report["log"]["problem"], "it is not a regular file, so what was written there cannot be read back");
    expectSoundLoaded(report);
    EXPECT_EQ(report["exitStatus"], 1);
}

TEST_F(RunBadInputTest, AnOldLogThatMayNotBeWrittenIsNotTakenForThisRuns)
{
    write(logFile(), "2001-01-01 00:00:00\n\n---------------------------------------\n/old.krx loading failed\n");
    ASSERT_EQ(::chmod(logFile().c_str(), 0400), 0);
    runUnprivileged();
    const json report = runJson();
    EXPECT_EQ(report["log"]["problem"], "it could not be opened: Permission denied");
    EXPECT_EQ(report["log"]["records"], json::array());
}

TEST_F(RunBadInputTest, ADamagedConfigurationIsLeftAsItIs)
{
    const std::string damage(5000, '?');
    write(configurationFile(), damage);
    install("Bad.bundle", manifestOf(startupEntry("./m.cuix")));
    const json report = runJson();
    badBundle(report);
    ASSERT_EQ(report["notices"].size(), 1U) << report["notices"];
    EXPECT_EQ(report["notices"][0], "The configuration file \"/T/home/.config/ORRELIN/standalone.sqlite\" could not be "
                                    "read: file is not a database; move it away to start with new lists");
    EXPECT_EQ(report["menus"],
              json({{"before", nullptr}, {"after", nullptr}, {"added", json::array()}, {"removed", json::array()}}));
    for (const json& one : report["configurationWrites"]) {
        EXPECT_EQ(one["stored"], false);
    }
    EXPECT_EQ(report["exitStatus"], 1);
    EXPECT_EQ(contentOf(configurationFile()), damage);
}

TEST_F(RunBadInputTest, AConfigurationThatAnotherProcessLocksIsWaitedForAndThenLeftAlone)
{
    install("Bad.bundle", manifestOf(startupEntry("./m.cuix")));
    EXPECT_EQ(runJson()["exitStatus"], 0) << "the file is there now";
    sqlite3* other = nullptr;
    ASSERT_EQ(sqlite3_open(configurationFile().c_str(), &other), SQLITE_OK);
    ASSERT_EQ(sqlite3_exec(other, "BEGIN EXCLUSIVE", nullptr, nullptr, nullptr), SQLITE_OK);
    const json report = runJson();
    sqlite3_close(other);
    badBundle(report);
    EXPECT_EQ(report["exitStatus"], 1);
    ASSERT_EQ(report["notices"].size(), 1U) << report["notices"];
    EXPECT_EQ(report["notices"][0], "The configuration file \"/T/home/.config/ORRELIN/standalone.sqlite\" could not be "
                                    "read: database is locked; close the program that uses it and try again");
}

TEST_F(RunBadInputTest, AReadOnlyConfigurationIsSaidSo)
{
    install("Bad.bundle", manifestOf(startupEntry("./m.cuix")));
    EXPECT_EQ(runJson()["exitStatus"], 0);
    ASSERT_EQ(::chmod(configurationFile().c_str(), 0400), 0);
    install("Other.bundle", manifestOf(startupEntry("./n.cuix"), "other"));
    runUnprivileged();
    const json report = runJson();
    EXPECT_EQ(report["exitStatus"], 1);
    EXPECT_EQ(report["menus"]["after"], report["menus"]["before"]);
    EXPECT_EQ(report["notices"].size(), 1U) << report["notices"];
}

TEST_F(RunBadInputTest, AConfigurationOnAFullDiskKeepsItsOldValues)
{
    install("Bad.bundle", manifestOf(startupEntry("./m.cuix"), "bad"));
    largestFile = 4096;
    EXPECT_EQ(run(), (ToolRun{1, kHead + R"(
Printed while starting
  | greeter is here

Bundles: 2 found, 2 kept, 0 dropped
  kept       /T/home/.config/ORRELIN/ApplicationPlugins/Bad.bundle
             nothing of it has loaded: its dependencies may be missing or in a cycle, its UpgradeCode may be another bundle's too, or it has no start-up components
  kept       /T/home/.config/ORRELIN/ApplicationPlugins/Sound.bundle
             1 module loaded, 3 commands registered

Menus: none
  not stored CUIX/LoadedBundleCuix
             disk I/O error; make room on its disk, or mend the disk, and try again
  not stored CUIX/LoadedCuix
             disk I/O error; make room on its disk, or mend the disk, and try again

Components
  loaded     /T/home/.config/ORRELIN/ApplicationPlugins/Sound.bundle/g.krx, N ms

LISP expressions: none

Commands
  registered HELLO
             by /T/home/.config/ORRELIN/ApplicationPlugins/Sound.bundle/g.krx
  registered COLOUR
             by /T/home/.config/ORRELIN/ApplicationPlugins/Sound.bundle/g.krx
  registered MISHAP
             by /T/home/.config/ORRELIN/ApplicationPlugins/Sound.bundle/g.krx

Error log: /T/home/.config/ORRELIN/BundleErrorLog.txt
  begun TIME, no problems

Notices of the host
  The configuration file "/T/home/.config/ORRELIN/standalone.sqlite" could not be written: disk I/O error; make room on its disk, or mend the disk, and try again

Result: 2 values not stored, 1 notice of the host
)",
                              ""}));
}

TEST_F(RunBadInputTest, ModulesThatFailLeaveTheirReason)
{
    const std::string bundle = install(
        "Bad.bundle", manifestOf("<Components><ComponentEntry ModuleName=\"./t.krx\"/><ComponentEntry "
                                 "ModuleName=\"./e.krx\"/><ComponentEntry ModuleName=\"./none.krx\"/><ComponentEntry "
                                 "ModuleName=\"./text.krx\"/></Components>"));
    installModule("thrower", bundle, "t.krx");
    installModule("entryless", bundle, "e.krx");
    write(bundle + "/text.krx", "no library");
    const json report = runJson({"--command", "never"});
    badBundle(report);
    const std::string folder = "/T/home/.config/ORRELIN/ApplicationPlugins/Bad.bundle/";
    json problems;
    for (const json& module : report["modules"]) {
        const std::string path = module["path"];
        if (path.starts_with(folder)) {
            problems[path.substr(folder.size())] = module["problem"];
        }
    }
    EXPECT_EQ(problems, json({{"t.krx", "its entry ended with an exception: no licence"},
                              {"e.krx", "it does not export kestModuleEntry: " + folder +
                                            "e.krx: undefined symbol: kestModuleEntry"},
                              {"none.krx", "No such file or directory"},
                              {"text.krx", folder + "text.krx: file too short"}}));
    EXPECT_EQ(report["problems"]["failedComponents"], 4);
    EXPECT_EQ(report["commandRuns"][0]["outcome"], "unknown") << "what a failed module registered is taken back";
    EXPECT_EQ(report["exitStatus"], 1);
}

} // namespace
