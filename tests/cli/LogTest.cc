// The error log, explained and compared whole.
#include "tests/cli/GoldenFile.h"
#include "tests/cli/ToolTest.h"

#include <filesystem>
#include <fstream>
#include <sys/stat.h>
#include <unistd.h>

namespace {

namespace fs = std::filesystem;
using nlohmann::json;

constexpr char kTime[] = "2026-03-07 14:05:09\n";
constexpr char kGroup[] = "\n---------------------------------------\n";
constexpr char kSilence[] = "\nMuch is never logged: bundles that wait for others, menus, commands. \"kestbundle "
                            "list\" says what becomes of\neach bundle.\n";

class LogTest : public ToolTest
{
protected:
    ToolRun log(std::vector<std::string> arguments = {})
    {
        arguments.insert(arguments.begin(), {"log", "--program-dir", path("program"), "--vernum", "26.0_1_Linux_test"});
        ToolRun done = runTool(arguments);
        done.output = normalised(done.output);
        done.errors = normalised(done.errors);
        return done;
    }

    /// What a run that refuses the log says.
    static ToolRun refusal(const std::string& text) { return {2, "", "kestbundle: " + text + "\n"}; }
};

TEST_F(LogTest, AStartThatLoggedNothingIsAllWell)
{
    EXPECT_EQ(run().status, 0);
    EXPECT_EQ(log(), (ToolRun{0,
                              std::string("Error log: /T/home/.config/ORRELIN/BundleErrorLog.txt\n"
                                          "Begun TIME; nothing was logged at that start.\n") +
                                  kSilence,
                              ""}));
}

TEST_F(LogTest, EveryKindOfRecordIsExplainedWithWhatHoldsNow)
{
    install("Broken.bundle", "<ApplicationPackage>\n  <Components>\n</ApplicationPackage>\n");
    install("Failing.bundle", manifestOf(startupEntry("./gone.krx")));
    install("Mended.bundle", manifestOf("<RuntimeRequirements OS=\"Plan9\"/>"));
    install("Wrong.bundle",
            manifestOf("<RuntimeRequirements OS=\"Plan9\" Architecture=\"vax\" Platform=\"Other\" SeriesMin=\"99\"/>"));
    const std::string removed = install("Removed.bundle", "<");
    EXPECT_EQ(run().status, 1);
    fs::remove_all(removed);
    install("Mended.bundle", manifestOf("<RuntimeRequirements OS=\"Linux\" Architecture=\"test\"/>"));
    std::ofstream(logFile(), std::ios::app) << kGroup << "a line of another program\n";
    const std::string before = contentOf(logFile());
    const ToolRun done = log();
    EXPECT_EQ(done.status, 1);
    EXPECT_EQ(done.errors, "");
    expectGolden("log.txt", done.output);
    expectGolden("log.json", log({"--json"}).output);
    EXPECT_EQ(contentOf(logFile()), before);
}

TEST_F(LogTest, AMissingLogIsRefusedWithWhyItMayBeMissing)
{
    EXPECT_EQ(log(),
              refusal("The error log \"/T/home/.config/ORRELIN/BundleErrorLog.txt\" is missing, and so is its folder. "
                      "The autoloader does not make the folder, and without it nothing is logged: make it with mkdir "
                      "-p, then start the host."));
    fs::create_directories(home() + "/.config/ORRELIN");
    EXPECT_EQ(log(), refusal("The error log \"/T/home/.config/ORRELIN/BundleErrorLog.txt\" is missing. No host has "
                             "started yet with this home folder, or it could not write there. \"kestbundle list\" "
                             "says what a start would come to."));
    EXPECT_EQ(log({path("nothing.txt")}), refusal("The error log \"/T/nothing.txt\" is missing."));
    EXPECT_EQ(log({path("no/folder.txt")}),
              refusal("The error log \"/T/no/folder.txt\" is missing, and so is its folder."));
}

TEST_F(LogTest, WhatIsNoLogIsRefused)
{
    EXPECT_EQ(log({home()}), refusal("The error log \"/T/home\" is no regular file."));
    EXPECT_EQ(log({"/dev/zero"}), refusal("The error log \"/dev/zero\" is no regular file."));
    ASSERT_EQ(::mkfifo(path("pipe").c_str(), 0600), 0);
    EXPECT_EQ(log({path("pipe")}), refusal("The error log \"/T/pipe\" is no regular file."));
    fs::create_symlink("circle", path("circle"));
    EXPECT_EQ(log({path("circle")}),
              refusal("The error log \"/T/circle\" cannot be opened: Too many levels of symbolic links."));
    write(path("other.txt"), "Jan 01 syslog\n");
    EXPECT_EQ(log({path("other.txt")}),
              refusal("The file \"/T/other.txt\" is no error log of the autoloader: its first line is no time."));
}

TEST_F(LogTest, ALogThatIsCutOffOrEmptyCannotBeReliedOn)
{
    const std::string head = "Error log: /T/cut.txt\n";
    write(path("cut.txt"), "");
    EXPECT_EQ(
        log({path("cut.txt")}),
        (ToolRun{1, head + "It is empty: a start has opened it and written nothing. The disk may be full.\n" + kSilence,
                 ""}));
    write(path("cut.txt"), std::string(kTime) + kGroup + "/x/PackageContents.xml  File form");
    EXPECT_EQ(log({path("cut.txt")}), (ToolRun{1, head + R"(Begun TIME; 1 record.
It ends in the middle of a line: the disk may be full, or a start is just under way.

/x/PackageContents.xml  File form
  The autoloader writes no such line.
  The log may be damaged, or another program has written into it.
)" + kSilence,
                                               ""}));
}

TEST_F(LogTest, OfAFarTooLongLogOnlyTheBeginIsRead)
{
    const std::string group = std::string(kGroup) + "/x/" + std::string(4000, 'y') + "  File format error\n";
    std::string text = kTime;
    while (text.size() < (16UL << 20)) {
        text += group;
    }
    write(path("long.txt"), text);
    ASSERT_EQ(::truncate(path("long.txt").c_str(), 1L << 30), 0); // a gigabyte, of zero bytes
    const json document = json::parse(runTool({"log", path("long.txt"), "--json"}).output);
    EXPECT_EQ(document["isWhole"], false);
    EXPECT_EQ(document["size"], 1L << 30);
    EXPECT_EQ(document["records"].size(), (16UL << 20) / group.size());
    EXPECT_EQ(document["records"].back()["problem"], "malformed");
}

TEST_F(LogTest, WhatWouldUpsetATerminalIsShownHarmlessly)
{
    write(path("hostile.txt"), std::string(kTime) + kGroup + "/\x1B[2J\x9B\n\x07  File format error\n");
    EXPECT_EQ(log({path("hostile.txt")}), (ToolRun{1, R"(Error log: /T/hostile.txt
Begun TIME; 1 record.

/\x1B[2J�\x0A\x07
  logged: File format error
  The manifest is no well-formed XML; the bundle was dropped.
  No bundle that is installed now has this path; it may have been removed or moved since.
)" + std::string(kSilence),
                                                   ""}));
}

} // namespace
