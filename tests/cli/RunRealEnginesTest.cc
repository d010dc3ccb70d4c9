// The engines that come with the tool, at work in it. What the build has left out, and what the machine lacks, is
// skipped.
#include "tests/cli/ToolTest.h"

#include <dlfcn.h>

namespace {

using nlohmann::json;

const std::string kBundle = "/T/home/.config/ORRELIN/ApplicationPlugins/Mixed.bundle";

class RunRealEnginesTest : public ToolTest
{
protected:
    RunRealEnginesTest() { installEngines(); }

    /// Why the script at `index` failed; its wording is the engine's.
    static std::string problemAt(const json& report, std::size_t index)
    {
        const json problem = index < report["scripts"].size() ? report["scripts"][index]["problem"] : json();
        return problem.is_string() ? problem.get<std::string>() : "";
    }

    /// The only engine that the last run has started has a description that begins with `begin`.
    void expectStarted(const std::string& begin, const json& command) const
    {
        ASSERT_EQ(unmasked["engineStarts"].size(), 1U) << unmasked["engineStarts"];
        const json& start = unmasked["engineStarts"][0];
        EXPECT_TRUE(start["description"].get<std::string>().starts_with(begin)) << start;
        EXPECT_GT(start["milliseconds"], 0);
        EXPECT_EQ(start["duringCommand"], command);
    }
};

TEST_F(RunRealEnginesTest, PythonScriptsRunAndFailWithTheirReason)
{
    void* library = ::dlopen("libpython3.11.so", RTLD_LAZY);
    if (library == nullptr) {
        GTEST_SKIP() << ::dlerror();
    }
    ::dlclose(library);
    const std::string bundle = install("Mixed.bundle", manifestOf(scriptEntry("./hello.py", "python3.11") +
                                                                  scriptEntry("./bad.py", "python3.11") +
                                                                  onDemandEntry("./gone.py", {"gone"}, "python3.11")));
    write(bundle + "/hello.py",
          "import kest\nkest.register_command('Hello', lambda: kest.print('from a script\\n'))\n");
    write(bundle + "/bad.py", "1/0\n");
    const json report = runJson({"--command", "hello", "--command", "gone"});
    expectStarted("Python 3.11.", nullptr);
    EXPECT_NE(problemAt(report, 1).find("ZeroDivisionError: division by zero"), std::string::npos);
    EXPECT_NE(problemAt(report, 2).find("FileNotFoundError"), std::string::npos);
    EXPECT_GT(unmasked["scripts"][0]["milliseconds"], 0);
    EXPECT_EQ(report["scripts"], json({{{"path", kBundle + "/hello.py"},
                                        {"loaded", true},
                                        {"problem", nullptr},
                                        {"milliseconds", 0},
                                        {"bundle", kBundle},
                                        {"duringCommand", nullptr}},
                                       {{"path", kBundle + "/bad.py"},
                                        {"loaded", false},
                                        {"problem", problemAt(report, 1)},
                                        {"milliseconds", 0},
                                        {"bundle", kBundle},
                                        {"duringCommand", nullptr}},
                                       {{"path", kBundle + "/gone.py"},
                                        {"loaded", false},
                                        {"problem", problemAt(report, 2)},
                                        {"milliseconds", 0},
                                        {"bundle", kBundle},
                                        {"duringCommand", 1}}}));
    EXPECT_EQ(report["commandRuns"][0]["output"], "from a script\n");
    EXPECT_EQ(report["commandRuns"][1]["problem"], "loading " + kBundle + "/gone.py failed: " + problemAt(report, 2));
    EXPECT_EQ(report["bundles"][0]["activity"]["scriptsLoaded"], 1);
    EXPECT_EQ(report["bundles"][0]["activity"]["componentsFailed"], 2);
    EXPECT_EQ(report["problems"]["failedComponents"], 2);
    EXPECT_EQ(report["exitStatus"], 1);
}

TEST_F(RunRealEnginesTest, WhatAScriptPrintsAfterItClosedStandardOutputIsShown)
{
    void* library = ::dlopen("libpython3.11.so", RTLD_LAZY);
    if (library == nullptr) {
        GTEST_SKIP() << ::dlerror();
    }
    ::dlclose(library);
    const std::string bundle = install("Mixed.bundle", manifestOf(scriptEntry("./closes.py", "python3.11")));
    write(bundle + "/closes.py", "import os\nos.close(1)\nprint('heard')\n");
    const ToolRun result = run();
    EXPECT_EQ(result.status, 0) << result;
    EXPECT_NE(result.output.find("\n  | heard\n"), std::string::npos) << result;
    EXPECT_EQ(result.errors, "");
}

TEST_F(RunRealEnginesTest, LispFilesAreEvaluated)
{
    if (!KEST_HAS_LISP) {
        GTEST_SKIP() << "built without the LISP evaluator";
    }
    const std::string bundle =
        install("Mixed.bundle", manifestOf(onDemandEntry("./hello.lsp", {"hello"}) + startupEntry("./two.lsp")));
    write(bundle + "/hello.lsp",
          "(kest-register-command \"hello\" (lambda () (kest-print (format nil \"from LISP~%\"))))\n");
    write(bundle + "/two.lsp", "(car 5)\n");
    const json report = runJson({"--command", "hello"});
    expectStarted("LISP (ECL ", nullptr);
    ASSERT_EQ(report["expressions"].size(), 2U);
    EXPECT_EQ(report["expressions"][0]["succeeded"], false);
    EXPECT_GT(unmasked["expressions"][0]["milliseconds"], 0);
    EXPECT_EQ(report["expressions"][1]["succeeded"], true);
    EXPECT_EQ(report["expressions"][1]["duringCommand"], 0);
    EXPECT_EQ(report["commandRuns"][0]["output"], "from LISP\n");
    EXPECT_EQ(
        report["registeredCommands"],
        json({{{"name", "HELLO"}, {"module", kBundle + "/hello.lsp"}, {"bundle", kBundle}, {"duringCommand", 0}}}));
    EXPECT_EQ(report["problems"]["failedExpressions"], 1);
    EXPECT_EQ(report["problems"]["failedComponents"], 0);
}

TEST_F(RunRealEnginesTest, AnAssemblyThatIsNoneFailsWithTheReasonOfItsEngine)
{
    if (!KEST_HAS_MANAGED) {
        GTEST_SKIP() << "built without the engine for managed assemblies";
    }
    write(install("Mixed.bundle", manifestOf(onDemandEntry("./bad.dll", {"bad"}))) + "/bad.dll", "no assembly");
    const json report = runJson({"--command", "bad"});
    expectStarted("managed (Mono ", 0);
    const std::string problem = problemAt(report, 0);
    EXPECT_NE(problem.find("Invalid Image"), std::string::npos) << "what Mono says";
    EXPECT_EQ(report["engines"], json::parse(R"([{
        "name": "VxManagedCommand.dll", "opened": true, "problem": null, "bundle": null, "duringCommand": 0}])"));
    EXPECT_EQ(report["scripts"], json({{{"path", kBundle + "/bad.dll"},
                                        {"loaded", false},
                                        {"problem", problem},
                                        {"milliseconds", 0},
                                        {"bundle", kBundle},
                                        {"duringCommand", 0}}}));
    EXPECT_EQ(report["commandRuns"][0]["problem"], "loading " + kBundle + "/bad.dll failed: " + problem);
    EXPECT_EQ(report["problems"]["failedComponents"], 1);
    EXPECT_EQ(report["exitStatus"], 1);
}

} // namespace
