// The report for programs, compared whole.
#include "tests/cli/ToolTest.h"

#include <fstream>

namespace {

using nlohmann::json;

class RunJsonTest : public ToolTest
{
protected:
    /// The document in the golden file `name`.
    static json golden(const std::string& name)
    {
        std::ifstream stream(std::string(KEST_GOLDEN_FOLDER "/") + name);
        json document = json::parse(stream);
        document["version"] = KEST_VERSION;
        return document;
    }
};

TEST_F(RunJsonTest, AnEmptyHomeIsReportedInFull)
{
    EXPECT_EQ(runJson(), json::parse(R"({
        "format": 1,
        "version": ")" KEST_VERSION R"(",
        "exitStatus": 0,
        "problems": {
            "droppedBundles": 0, "unreadableManifests": 0, "failedComponents": 0, "failedExpressions": 0,
            "failedMenus": 0, "unstoredValues": 0, "failedCommands": 0, "notices": 0,
            "unreliableLog": false, "startCutShort": false},
        "failure": null,
        "host": {
            "product": "TARVIX", "vernum": "26.0_1_Linux_test", "programFolder": "/T/program", "home": "/T/home",
            "configurationFile": "/T/home/.config/ORRELIN/standalone.sqlite"},
        "bundles": [],
        "menus": {"before": null, "after": null, "added": [], "removed": []},
        "menuConversions": [],
        "configurationWrites": [],
        "modules": [],
        "scripts": [],
        "engines": [],
        "engineStarts": [],
        "expressions": [],
        "registeredCommands": [],
        "announcedCommands": [],
        "startOutput": "",
        "commandRuns": [],
        "log": {"path": "/T/home/.config/ORRELIN/BundleErrorLog.txt", "problem": null, "begun": "TIME", "records": []},
        "notices": []
    })"));
}

TEST_F(RunJsonTest, EveryKindOfFactIsReportedInFull)
{
    installEvaluator();
    installPythonStandIn();
    const std::string bundle = install(
        "All.bundle",
        manifestOf("<Components><ComponentEntry ModuleName=\"./g.krx\"/><ComponentEntry ModuleName=\"./m.cuix\"/>"
                   "<ComponentEntry ModuleName=\"./a.lsp\"/><ComponentEntry ModuleName=\"./n.dll\"/></Components>" +
                   scriptEntry("./hello.py", "standin") + scriptEntry("./skipped.py", "") +
                   onDemandEntry("./late.krx", {"late"}) + onDemandEntry("./broken.py", {"faulty"}, "standin")));
    installModule("greeter", bundle, "g.krx");
    installModule("late", bundle, "late.krx");
    install("Wrong.bundle", manifestOf("<RuntimeRequirements OS=\"Plan9\" Architecture=\"test\"/>"));
    install("Broken.bundle", "<a>\n <b>\n</a>\n");
    install("Menu.bundle", manifestOf(startupEntry("./missing.mnu"), "M"));
    EXPECT_EQ(runJson({"--command", "late", "--command", "colour", "--command", "faulty"}),
              golden("every-kind-of-fact.json"));
    EXPECT_GT(unmasked["modules"][0]["milliseconds"], 0);
}

TEST_F(RunJsonTest, WhatIsNoCharacterIsReplacedAndNothingIsEscapedTwice)
{
    install("\x1B[31m\xFF.bundle", manifestOf(""));
    const json report = runJson({"--command", "no\xFFpe"});
    EXPECT_EQ(report["bundles"][0]["folder"], "/T/home/.config/ORRELIN/ApplicationPlugins/\x1B[31m\xEF\xBF\xBD.bundle");
    EXPECT_EQ(report["commandRuns"][0]["name"], "no\xEF\xBF\xBDpe");
}

TEST_F(RunJsonTest, TheDocumentIsUtf8InEveryLocale)
{
    useLatin1();
    install("R\xF6hre.bundle", manifestOf(startupEntry("./\xE9\xBD\xBF.krx")));
    const json report = runJson();
    EXPECT_EQ(report["bundles"][0]["folder"], "/T/home/.config/ORRELIN/ApplicationPlugins/R\xC3\xB6hre.bundle");
    EXPECT_EQ(report["modules"][0]["path"],
              "/T/home/.config/ORRELIN/ApplicationPlugins/R\xC3\xB6hre.bundle/\xE9\xBD\xBF.krx");
}

TEST_F(RunJsonTest, AModuleThatWritesToStandardOutputDoesNotSpoilTheDocument)
{
    installModule("loudmouth", install("Loud.bundle", manifestOf(startupEntry("./l.krx"))), "l.krx");
    const ToolRun done = run({"--json"});
    EXPECT_EQ(done.status, 0);
    EXPECT_EQ(done.errors, "past the host\n");
    EXPECT_EQ(json::parse(done.output)["modules"][0]["loaded"], true);
}

TEST_F(RunJsonTest, ThePromptIsSilent)
{
    installModule("greeter", install("Greeter.bundle", manifestOf(startupEntry("./g.krx"))), "g.krx");
    const json report = runJson({"--interactive"}, "?\nhello\nhello\nquit\n");
    EXPECT_EQ(report["startOutput"], "greeter is here\n");
    const json hello = {{"name", "hello"},
                        {"outcome", "done"},
                        {"loadRequested", false},
                        {"problem", nullptr},
                        {"output", "hello\n\tand welcome\n"}};
    EXPECT_EQ(report["commandRuns"], json({hello, hello}));
}

TEST_F(RunJsonTest, ACommandNameMayBeAnyText)
{
    installModule("greeter", install("Greeter.bundle", manifestOf(startupEntry("./g.krx"))), "g.krx");
    const std::vector<std::string> names = {"", " ", "\"HELLO\"", "'hello'", "a b", "[hello,hello]", "{}", "%s%n"};
    std::vector<std::string> arguments;
    for (const std::string& name : names) {
        arguments.insert(arguments.end(), {"--command", name});
    }
    arguments.push_back("--command=--json");
    const json report = runJson(arguments);
    ASSERT_EQ(report["commandRuns"].size(), names.size() + 1);
    for (std::size_t i = 0; i < names.size(); ++i) {
        EXPECT_EQ(report["commandRuns"][i]["name"], names[i]);
        EXPECT_EQ(report["commandRuns"][i]["outcome"], "unknown") << names[i];
    }
    EXPECT_EQ(report["commandRuns"][names.size()]["name"], "--json");
}

TEST_F(RunJsonTest, ALineOfThePromptWithAZeroIsNoOtherCommand)
{
    installModule("late", install("Late.bundle", manifestOf(onDemandEntry("./late.krx", {"late"}))), "late.krx");
    const json report = runJson({"--interactive"}, std::string("late\0x\n", 7));
    EXPECT_EQ(report["modules"], json::array());
    EXPECT_EQ(report["commandRuns"][0]["loadRequested"], false);
}

} // namespace
