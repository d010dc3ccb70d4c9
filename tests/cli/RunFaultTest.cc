// Errors that leave the autoloader's entry points: libraries that stand in for it throw them.
#include "tests/cli/ToolTest.h"

#include <filesystem>

namespace {

using nlohmann::json;

class RunFaultTest : public ToolTest
{
protected:
    /// Puts the test module `module` in the place of the autoloader library.
    void standIn(const std::string& module) const
    {
        std::filesystem::remove(path("tool/lib/libkestbundle.so"));
        installModule(module, path("tool/lib"), "libkestbundle.so");
    }
};

TEST_F(RunFaultTest, AnErrorOfTheHostEndsTheStartAndIsReported)
{
    standIn("menufault");
    const json report = runJson({"--command", "any"});
    EXPECT_EQ(report["failure"], "The registration of menus ended with error 6 of the host, number 0: \"\"");
    EXPECT_EQ(report["problems"]["startCutShort"], true);
    EXPECT_EQ(report["commandRuns"][0]["outcome"], "unknown");
    EXPECT_EQ(report["exitStatus"], 1);
}

TEST_F(RunFaultTest, AnErrorOfUnknownTypeIsReportedForPeople)
{
    standIn("loadfault");
    EXPECT_EQ(run({"--command", "any"}), (ToolRun{1, kHead + R"(
The start was cut short: The loading of start-up components ended with an exception of unknown type

Bundles: none found

Menus: none

Components: none

LISP expressions: none

Commands: none

Command "any"
  unknown: The loading of the command ended with an exception: not \x1B[1mnow

Error log: /T/home/.config/ORRELIN/BundleErrorLog.txt
  not to be relied on: it could not be opened: No such file or directory

Result: 1 command unknown or failed, no reliable error log, the start was cut short
)",
                                                  ""}));
}

} // namespace
