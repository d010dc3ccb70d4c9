// The table of "list" on terminals and elsewhere, and its JSON form.
#include "tests/cli/FaultFixture.h"

#include "cli/ListReport.h"
#include "cli/Terminal.h"

#include <clocale>
#include <cstdlib>
#include <fcntl.h>
#include <nlohmann/json.hpp>
#include <sys/ioctl.h>
#include <unistd.h>

namespace {

using nlohmann::json;

class ListTest : public FaultFixture
{
protected:
    /// What `kestbundle list` writes to a terminal that is `columns` wide.
    std::string onTerminal(unsigned short columns)
    {
        const int terminal = ::posix_openpt(O_RDWR | O_NOCTTY);
        const winsize size{24, columns, 0, 0};
        EXPECT_TRUE(::grantpt(terminal) == 0 && ::unlockpt(terminal) == 0 && ::ioctl(terminal, TIOCSWINSZ, &size) == 0);
        standardOutput = ::ptsname(terminal);
        const int kept = ::open(standardOutput.c_str(), O_RDWR | O_NOCTTY); // what is written stays while it is open
        tell({"list"});
        ::close(kept); // all is read then before the end is
        std::string text;
        char piece[4096];
        for (ssize_t length = 0; (length = ::read(terminal, piece, sizeof piece)) > 0;) {
            text.append(piece, static_cast<std::size_t>(length));
        }
        ::close(terminal);
        return text;
    }
};

TEST_F(ListTest, OnATerminalTheTableFitsAndStatesHaveColours)
{
    installFault("no-components");
    environment.push_back("TERM=xterm");
    EXPECT_EQ(onTerminal(50), "NAME   VERSION  STATE  COMMANDS  MENUS  FOLDER\r\n"
                              "Tools  1.0.0    \x1B[33mkept\x1B[0m          0      0  user: T...\r\n"
                              "    warning KB501: The bundle has no components,\r\n"
                              "    so there is nothing to load, and no component\r\n"
                              "    of a bundle that depends on it ever loads.\r\n"
                              "\r\n1 bundle: 1 kept\r\n\"kestbundle explain Tools.bundle\" says why.\r\n");
}

TEST_F(ListTest, ATerminalWithoutColoursGetsNone)
{
    installFault("no-components");
    for (const char* wish : {"NO_COLOR=1", "TERM=dumb"}) {
        environment.emplace_back(wish);
        const std::string text = onTerminal(200);
        EXPECT_NE(text.find("kept"), std::string::npos);
        EXPECT_EQ(text.find('\x1B'), std::string::npos) << text;
        environment.pop_back();
    }
    environment.emplace_back("NO_COLOR=");
    EXPECT_NE(onTerminal(200).find("\x1B[33mkept\x1B[0m"), std::string::npos) << "empty is not set";
}

TEST_F(ListTest, AnEmptyHomeHasNoTable)
{
    EXPECT_EQ(tell({"list"}), (ToolRun{0, "0 bundles\n", ""}));
}

TEST_F(ListTest, ATableThatIsTooWideShrinksAndReasonsAreBrokenBetweenWords)
{
    installFault("missing-dependency");
    environment.push_back("COLUMNS=70");
    EXPECT_EQ(tell({"list"}), (ToolRun{1, R"(NAME   VERSION  STATE                     COMMANDS  MENUS  FOLDER
Base   1.0.0    loaded                           0      0  user: Ba...
Tools  1.0.0    waiting for a dependency         0      0  user: To...
    error KB401: The bundle depends on the UpgradeCode "{BASSE}", and
    no bundle here has it.

2 bundles: 1 waiting for a dependency, 1 loaded
"kestbundle explain Tools.bundle" says why.
)",
                                       ""}));
}

TEST_F(ListTest, ColoursAreThoseOfTheStateAndNothingElse)
{
    cli::Examination examination;
    examination.bundles.resize(2);
    examination.bundles[0].folder = L"/b/A.bundle";
    examination.bundles[0].state = cli::BundleState::kLoaded;
    examination.bundles[1].folder = L"/b/B.bundle";
    examination.bundles[1].state = cli::BundleState::kMalformed;
    EXPECT_EQ(cli::listText(examination, {}, {0, true}),
              "NAME  VERSION  STATE      COMMANDS  MENUS  FOLDER\n"
              "-     -        \x1B[32mloaded\x1B[0m            0      0  /b/A.bundle\n"
              "-     -        \x1B[31mmalformed\x1B[0m         0      0  /b/B.bundle\n"
              "\n2 bundles: 1 malformed, 1 loaded\n\"kestbundle explain B.bundle\" says why.\n");
}

TEST_F(ListTest, WhatToAskNextCanBeTypedIntoAShell)
{
    const auto lastLineFor = [](const wchar_t* folder) {
        cli::Examination examination;
        examination.bundles.resize(1);
        examination.bundles[0].folder = folder;
        const std::string text = cli::listText(examination, {}, {});
        return text.substr(text.rfind('\n', text.size() - 2) + 1);
    };
    EXPECT_EQ(lastLineFor(L"/b/My $HOME.bundle"), "\"kestbundle explain -- 'My $HOME.bundle'\" says why.\n");
    EXPECT_EQ(lastLineFor(L"/b/-x.bundle"), "\"kestbundle explain -- '-x.bundle'\" says why.\n");
    EXPECT_EQ(lastLineFor(L"/b/it's.bundle"), "\"kestbundle explain\" says why.\n");
    EXPECT_EQ(lastLineFor(L"/b/\x1B.bundle"), "\"kestbundle explain\" says why.\n");
}

TEST_F(ListTest, TheJsonFormSaysAllThatTheTableSays)
{
    installFault("first-use-fails");
    const ToolRun done = tell({"list", "--json"});
    json document = json::parse(done.output);
    document["version"] = "V";
    document["bundles"][0]["reason"].erase("what");
    document["bundles"][0]["reason"].erase("change");
    EXPECT_EQ(document, json::parse(R"({
        "format": 1, "version": "V", "exitStatus": 1, "failure": null,
        "roots": [
            {"folder": "/T/program/ApplicationPlugins", "exists": false, "problem": null},
            {"folder": "/usr/local/ORRELIN/ApplicationPlugins", "exists": false, "problem": null},
            {"folder": "/T/home/.config/ORRELIN/ApplicationPlugins", "exists": true, "problem": null}],
        "bundles": [{
            "folder": "/T/home/.config/ORRELIN/ApplicationPlugins/Tools.bundle", "state": "loaded",
            "name": "Tools", "version": "1.0.0", "upgradeCode": "{TOOLS}", "commands": ["CUT", "FOLD", "TRIM"], "menus": 0,
            "reason": {
                "code": "KB513", "name": "first-use-fails", "severity": "error",
                "bundle": "/T/home/.config/ORRELIN/ApplicationPlugins/Tools.bundle",
                "subject": "/T/home/.config/ORRELIN/ApplicationPlugins/Tools.bundle/Contents/gone.krx",
                "file": "/T/home/.config/ORRELIN/ApplicationPlugins/Tools.bundle/PackageContents.xml",
                "line": 4, "column": 36, "expected": null, "found": null}}]
    })"));
    EXPECT_EQ(done.status, 1);
}

TEST_F(ListTest, TheFoldersOfTheThreeRootsAreTold)
{
    write(path("program/ApplicationPlugins/Own.bundle/PackageContents.xml"), manifestOf(startupEntry("./m.cuix"), "o"));
    write(path("program/ApplicationPlugins/Own.bundle/m.cuix"), "x");
    EXPECT_EQ(tell({"list"}), (ToolRun{0, R"(NAME  VERSION  STATE       COMMANDS  MENUS  FOLDER
-     -        menus only         0      1  program: Own.bundle

1 bundle: 1 menus only
)",
                                       ""}));
}

TEST(TerminalTest, ColumnsAreCountedAsATerminalShowsThem)
{
    std::setlocale(LC_ALL, "C.UTF-8");
    EXPECT_EQ(cli::columnsOf("abc"), 3U);
    EXPECT_EQ(cli::columnsOf("\u5DE5\u5177"), 4U);
    EXPECT_EQ(cli::columnsOf("e\u0301"), 1U);
    EXPECT_EQ(cli::fittedTo(4, "\u5DE5\u5177"), "\u5DE5\u5177");
    EXPECT_EQ(cli::fittedTo(6, "\u5DE5\u5177\u5DE5\u5177"), "\u5DE5...");
    EXPECT_EQ(cli::fittedTo(5, "abcdef"), "ab...");
    EXPECT_EQ(cli::fittedTo(2, "abcdef"), "..");
}

} // namespace
