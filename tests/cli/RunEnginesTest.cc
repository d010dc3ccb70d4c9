// Scripts and assemblies in the report: which loaded, how long they and their engines took, and why others failed.
#include "tests/cli/LinkerMessages.h"
#include "tests/cli/ToolTest.h"

#include <filesystem>

namespace {

using nlohmann::json;

const std::string kScripts = "/T/home/.config/ORRELIN/ApplicationPlugins/Scripts.bundle/";
const std::string kNoManagedEngine =
    "VxManagedCommand.dll is not beside the tool and not among the system's libraries (VxManagedCommand.dll" +
    kMissing + "); this installation of kestbundle lacks its engine for managed assemblies";

class RunEnginesTest : public ToolTest
{
protected:
    void installScripts(const std::string& content) const { install("Scripts.bundle", manifestOf(content)); }

    /// The problem of the only script of a run, which failed before an engine got to see it: once at start-up and once
    /// on demand, where the command says the same.
    std::string problemOf(const std::string& script, const std::string& pythonVersion)
    {
        installScripts(script.ends_with(".py") ? scriptEntry("./" + script, pythonVersion)
                                               : startupEntry("./" + script));
        const json atStart = runJson();
        const std::string problem = expectOneFailure(atStart, script, nullptr);
        EXPECT_EQ(atStart["log"]["records"], json({{{"path", kScripts + script}, {"message", "loading failed"}}}));

        installScripts(onDemandEntry("./" + script, {"any"}, pythonVersion));
        const json onDemand = runJson({"--command", "any"});
        EXPECT_EQ(expectOneFailure(onDemand, script, 0), problem);
        EXPECT_EQ(onDemand["log"]["records"], json::array());
        EXPECT_EQ(onDemand["commandRuns"][0]["outcome"], "unknown");
        EXPECT_EQ(onDemand["commandRuns"][0]["problem"], "loading " + kScripts + script + " failed: " + problem);
        return problem;
    }

    static std::string expectOneFailure(const json& report, const std::string& script, const json& command)
    {
        EXPECT_EQ(report["exitStatus"], 1);
        EXPECT_EQ(report["problems"]["failedComponents"], 1);
        EXPECT_EQ(report["bundles"][0]["activity"]["componentsFailed"], 1);
        if (report["scripts"].size() != 1) {
            ADD_FAILURE() << report["scripts"];
            return "";
        }
        const json& failed = report["scripts"][0];
        EXPECT_EQ(failed["path"], kScripts + script);
        EXPECT_EQ(failed["loaded"], false);
        EXPECT_EQ(failed["milliseconds"], nullptr);
        EXPECT_EQ(failed["duringCommand"], command);
        EXPECT_EQ(failed["bundle"], kScripts.substr(0, kScripts.size() - 1));
        return failed["problem"];
    }
};

TEST_F(RunEnginesTest, WhatLoadsIsReportedWithItsTimeInTheOrderInWhichItBegan)
{
    installPythonStandIn();
    installScripts(scriptEntry("./one.py", "standin") + startupEntry("./g.krx") + scriptEntry("./hello.py", "standin") +
                   scriptEntry("./broken.py", "standin") + onDemandEntry("./broken2.py", {"faulty"}, "standin") +
                   onDemandEntry("./fine.py", {"nameless"}, "standin"));
    installModule("greeter", plugins() + "Scripts.bundle", "g.krx");
    EXPECT_EQ(run({"--command", "scripted", "--command", "faulty", "--command", "nameless"}), (ToolRun{1, kHead + R"(
Printed while starting
  | greeter is here

Bundles: 1 found, 1 kept, 0 dropped
  kept       /T/home/.config/ORRELIN/ApplicationPlugins/Scripts.bundle
             1 module loaded, 2 scripts or assemblies loaded, 4 commands registered, 2 commands announced, 1 component failed

Menus: none

Components
  loaded     /T/home/.config/ORRELIN/ApplicationPlugins/Scripts.bundle/one.py, N ms
  started    engine Stand-in 1.2, N ms
  loaded     /T/home/.config/ORRELIN/ApplicationPlugins/Scripts.bundle/g.krx, N ms
  loaded     /T/home/.config/ORRELIN/ApplicationPlugins/Scripts.bundle/hello.py, N ms
  failed     /T/home/.config/ORRELIN/ApplicationPlugins/Scripts.bundle/broken.py, N ms
             the script is broken

LISP expressions: none

Commands
  registered HELLO
             by /T/home/.config/ORRELIN/ApplicationPlugins/Scripts.bundle/g.krx
  registered COLOUR
             by /T/home/.config/ORRELIN/ApplicationPlugins/Scripts.bundle/g.krx
  registered MISHAP
             by /T/home/.config/ORRELIN/ApplicationPlugins/Scripts.bundle/g.krx
  registered SCRIPTED
             by /T/home/.config/ORRELIN/ApplicationPlugins/Scripts.bundle/hello.py
  announced  FAULTY
             for /T/home/.config/ORRELIN/ApplicationPlugins/Scripts.bundle; its component loads at first use
  announced  NAMELESS
             for /T/home/.config/ORRELIN/ApplicationPlugins/Scripts.bundle; its component loads at first use

Command "scripted"
  failed: the script has no time

Command "faulty"
  failed     /T/home/.config/ORRELIN/ApplicationPlugins/Scripts.bundle/broken2.py, N ms
             the script is broken
  unknown: loading /T/home/.config/ORRELIN/ApplicationPlugins/Scripts.bundle/broken2.py failed: the script is broken

Command "nameless"
  loaded     /T/home/.config/ORRELIN/ApplicationPlugins/Scripts.bundle/fine.py, N ms
  unknown: what was loaded for it has not registered a command of this name

Error log: /T/home/.config/ORRELIN/BundleErrorLog.txt
  begun TIME, 1 problem
  /T/home/.config/ORRELIN/ApplicationPlugins/Scripts.bundle/broken.py
    loading failed

Result: 2 components failed, 3 commands unknown or failed
)",
                                                                                                       ""}));
}

TEST_F(RunEnginesTest, TheTimeOfAnEngineIsTheOneThatItTells)
{
    installPythonStandIn();
    installScripts(scriptEntry("./one.py", "standin"));
    const ToolRun people = runTool({"run", "--program-dir", path("program")});
    EXPECT_NE(people.output.find("\n  started    engine Stand-in 1.2, 34.6 ms\n"), std::string::npos) << people;
    const ToolRun programs = runTool({"run", "--program-dir", path("program"), "--json"});
    const json report = json::parse(programs.output);
    EXPECT_EQ(report["engineStarts"], json::parse(R"([{
        "description": "Stand-in 1.2", "milliseconds": 34.568, "bundle": null, "duringCommand": null}])"));
    EXPECT_EQ(report["bundles"][0]["activity"]["scriptsLoaded"], 1);
    EXPECT_EQ(report["bundles"][0]["active"], true);
    EXPECT_EQ(report["exitStatus"], 0);
}

TEST_F(RunEnginesTest, AScriptWithoutPythonVersionIsSaidToBeSkipped)
{
    installPythonStandIn();
    installScripts(scriptEntry("./s.py", "") + scriptEntry("./one.py", "standin") +
                   onDemandEntry("./later.py", {"later"}));
    EXPECT_EQ(run({"--command", "Later"}), (ToolRun{1, kHead + R"(
Bundles: 1 found, 1 kept, 0 dropped
  kept       /T/home/.config/ORRELIN/ApplicationPlugins/Scripts.bundle
             1 script or assembly loaded, 1 command announced
             its Python script /T/home/.config/ORRELIN/ApplicationPlugins/Scripts.bundle/s.py names no PythonVersion, so it is skipped
             its Python script /T/home/.config/ORRELIN/ApplicationPlugins/Scripts.bundle/later.py names no PythonVersion, so it is skipped

Menus: none

Components
  loaded     /T/home/.config/ORRELIN/ApplicationPlugins/Scripts.bundle/one.py, N ms
  started    engine Stand-in 1.2, N ms

LISP expressions: none

Commands
  announced  LATER
             for /T/home/.config/ORRELIN/ApplicationPlugins/Scripts.bundle; its component loads at first use

Command "Later"
  unknown: its Python script /T/home/.config/ORRELIN/ApplicationPlugins/Scripts.bundle/later.py names no PythonVersion, so it is skipped

Error log: /T/home/.config/ORRELIN/BundleErrorLog.txt
  begun TIME, no problems

Result: 1 command unknown or failed
)",
                                                    ""}));
    const json report = runJson();
    EXPECT_EQ(report["bundles"][0]["hasSilentComponents"], true);
    EXPECT_EQ(report["exitStatus"], 0) << "a rule, not a failure";
}

TEST_F(RunEnginesTest, WhatFailedBeforeAnEngineSawItComesLast)
{
    installScripts(scriptEntry("./s.py", "python3.999") + startupEntry("./n.dll") + startupEntry("./g.krx"));
    installModule("greeter", plugins() + "Scripts.bundle", "g.krx");
    const ToolRun done = run();
    const std::size_t begin = done.output.find("\nComponents\n");
    const std::size_t end = done.output.find("\nLISP expressions: none\n");
    ASSERT_NE(end, std::string::npos) << done;
    EXPECT_EQ(done.output.substr(begin, end - begin),
              "\nComponents\n"
              "  failed     engine VxManagedCommand.dll\n"
              "             " +
                  kNoManagedEngine +
                  "\n"
                  "  loaded     " +
                  kScripts +
                  "g.krx, N ms\n"
                  "  failed     " +
                  kScripts +
                  "s.py\n"
                  "             no library of its PythonVersion can be opened (libpython3.999.so" +
                  kMissing + "; libpython3.999m.so" + kMissing +
                  "); install the Debian package libpython3.999-dev\n"
                  "  failed     " +
                  kScripts + "n.dll\n             " + kNoManagedEngine + "\n");
    EXPECT_TRUE(done.output.ends_with("\nResult: 2 components failed\n")) << done;
}

TEST_F(RunEnginesTest, WithoutThePythonLibraryAScriptSaysWhatToInstall)
{
    EXPECT_EQ(problemOf("s.py", "python3.999"), "no library of its PythonVersion can be opened (libpython3.999.so" +
                                                    kMissing + "; libpython3.999m.so" + kMissing +
                                                    "); install the Debian package libpython3.999-dev");
}

TEST_F(RunEnginesTest, APythonVersionThatNamesNoLibraryIsExplained)
{
    EXPECT_EQ(problemOf("s.py", "3.11"),
              "no library of its PythonVersion can be opened (lib3.11.so" + kMissing + "; lib3.11m.so" + kMissing +
                  "); PythonVersion is the name of an installed Python, for example python3.11");
}

TEST_F(RunEnginesTest, APythonVersionThatIsAPathIsNotTried)
{
    EXPECT_EQ(problemOf("s.py", "../python3.11"), "its PythonVersion is a path; PythonVersion is the name of an "
                                                  "installed Python, for example python3.11");
}

TEST_F(RunEnginesTest, TheComponentOfACommandIsTheOneThatLoadsOnDemand)
{
    installPythonStandIn();
    const std::string commands = "<Commands><Command Local=\"any\"/></Commands></ComponentEntry>";
    installScripts("<Components><ComponentEntry ModuleName=\"./early.py\" PythonVersion=\"standin\" "
                   "LoadOnCommandInvocation=\"true\">" +
                   commands +
                   "<ComponentEntry ModuleName=\"./never.py\" PythonVersion=\"standin\" LoadCtrlFlag=\"0\">" +
                   commands + "</Components>" + onDemandEntry("./mute.py", {"any"}, "standin"));
    const json report = runJson({"--command", "any"});
    EXPECT_EQ(report["commandRuns"][0]["problem"],
              "loading " + kScripts + "mute.py failed: the Python engine gave no reason");
    installScripts("<Components><ComponentEntry ModuleName=\"./mute2.py\" PythonVersion=\"standin\" "
                   "LoadCtrlFlag=\"0\" LoadOnCommandInvocation=\"TRUE\">" +
                   commands + "</Components>");
    EXPECT_EQ(runJson({"--command", "any"})["commandRuns"][0]["problem"],
              "loading " + kScripts + "mute2.py failed: the Python engine gave no reason");
}

TEST_F(RunEnginesTest, WithoutThePythonEngineTheInstallationIsAtFault)
{
    installModule("entryless", path("tool/lib"), "libstandinm.so"); // the second of the names that are tried
    EXPECT_EQ(problemOf("s.py", "standin"), "the Python engine cannot be used: libVxPythonLoad.so" + kMissing +
                                                "; this installation of kestbundle lacks its engine for Python "
                                                "scripts");
}

TEST_F(RunEnginesTest, APythonEngineThatRunsNothingIsSaidSo)
{
    installPythonStandIn();
    std::filesystem::remove(path("tool/lib/libVxPythonLoad.so"));
    installModule("entryless", path("tool/lib"), "libVxPythonLoad.so");
    EXPECT_EQ(problemOf("s.py", "standin"), "the Python engine cannot be used: /T/tool/bin/../lib/libVxPythonLoad.so: "
                                            "undefined symbol: loadPythonFile");
}

TEST_F(RunEnginesTest, AnEngineThatTellsTheHostNothingGivesNoReason)
{
    installPythonStandIn();
    EXPECT_EQ(problemOf("mute.py", "standin"), "the Python engine gave no reason");
    EXPECT_EQ(problemOf("endless.py", "standin"), "the engine has not said what became of it");
    installModule("entryless", path("tool/lib"), "VxManagedCommand.dll");
    EXPECT_EQ(problemOf("n.dll", ""), "the engine for managed assemblies gave no reason");
}

TEST_F(RunEnginesTest, WithoutTheManagedEngineTheInstallationIsAtFault)
{
    EXPECT_EQ(problemOf("n.dll", ""), kNoManagedEngine);
}

TEST_F(RunEnginesTest, ADamagedEngineIsNotCalledMissing)
{
    write(path("tool/lib/VxManagedCommand.dll"), "");
    EXPECT_EQ(problemOf("n.dll", ""),
              "VxManagedCommand.dll cannot be loaded (/T/tool/lib/VxManagedCommand.dll: file too short)");
}

TEST_F(RunEnginesTest, APathThatTheLogShowsOtherwiseIsTheSameComponent)
{
    installScripts(scriptEntry("./a%d.py", "python3.999"));
    const json report = runJson();
    EXPECT_EQ(report["log"]["records"][0]["path"], kScripts + "a.py");
    expectOneFailure(report, "a%d.py", nullptr);
    installPythonStandIn();
    installScripts(scriptEntry("./broken%d.py", "standin"));
    const json told = runJson();
    EXPECT_EQ(told["log"]["records"][0]["path"], kScripts + "broken.py");
    EXPECT_EQ(told["problems"]["failedComponents"], 1);
    EXPECT_EQ(told["bundles"][0]["activity"]["componentsFailed"], 1);
    EXPECT_EQ(told["scripts"].size(), 1U);
}

TEST_F(RunEnginesTest, ACommandWhoseModuleOrFileFailsSaysWhy)
{
    installModule(
        "thrower",
        install("Scripts.bundle", manifestOf(onDemandEntry("./t.krx", {"throw"}) + onDemandEntry("./l.lsp", {"lisp"}) +
                                             onDemandEntry("./o.txt", {"other"}))),
        "t.krx");
    const json report = runJson({"--command", "throw", "--command", "lisp", "--command", "other"});
    EXPECT_EQ(report["commandRuns"][0]["problem"],
              "loading " + kScripts + "t.krx failed: its entry ended with an exception: no licence");
    const std::string noLisp = "no LISP evaluator is installed beside the tool: libKestLispEvaluator.so" + kMissing +
                               "; this installation of kestbundle lacks its engine for LISP files";
    EXPECT_EQ(report["commandRuns"][1]["problem"], "loading " + kScripts + "l.lsp failed: " + noLisp);
    EXPECT_EQ(report["expressions"][0]["problem"], noLisp);
    EXPECT_EQ(report["expressions"][0]["milliseconds"], nullptr) << "not evaluated";
    EXPECT_EQ(report["commandRuns"][2]["problem"],
              "a bundle announced it, but loading its component has not registered it");
    EXPECT_EQ(report["problems"]["failedComponents"], 1);
    EXPECT_EQ(report["problems"]["failedExpressions"], 1);
    EXPECT_EQ(report["scripts"], json::array());
}

TEST_F(RunEnginesTest, AScriptThatLoadedBeforeMayFailBeforeItsEngineSeesItAgain)
{
    installPythonStandIn();
    installScripts(scriptEntry("./sulky.py", "standin") + onDemandEntry("./sulky.py", {"sulk"}, "standin"));
    const json report = runJson({"--command", "sulk"});
    EXPECT_EQ(report["commandRuns"][0]["problem"],
              "loading " + kScripts + "sulky.py failed: the Python engine gave no reason");
    ASSERT_EQ(report["scripts"].size(), 2U);
    EXPECT_EQ(report["scripts"][0]["loaded"], true);
    EXPECT_EQ(report["scripts"][1]["loaded"], false);
    EXPECT_EQ(report["scripts"][1]["path"], report["scripts"][0]["path"]);
}

TEST_F(RunEnginesTest, OfNestedFailuresACommandTellsTheOutermost)
{
    installPythonStandIn();
    installScripts(onDemandEntry("./outer.py", {"nest"}, "standin"));
    const json report = runJson({"--command", "nest"});
    EXPECT_EQ(report["commandRuns"][0]["problem"], "loading " + kScripts + "outer.py failed: its inner script failed");
    ASSERT_EQ(report["scripts"].size(), 2U);
    EXPECT_EQ(report["scripts"][1]["path"], kScripts + "outer.py.inner");
    EXPECT_EQ(report["scripts"][1]["problem"], "the inner script is broken");
    EXPECT_EQ(report["problems"]["failedComponents"], 2);
}

TEST_F(RunEnginesTest, ALispFileThatFailsOnDemandSaysWhy)
{
    installEvaluator();
    installScripts(onDemandEntry("./broken.lsp", {"lisp"}));
    const json report = runJson({"--command", "lisp"});
    EXPECT_EQ(report["commandRuns"][0]["problem"], "loading " + kScripts + "broken.lsp failed: the file is broken");
    EXPECT_EQ(report["expressions"][0]["milliseconds"], 0) << "a time, masked";
}

} // namespace
