// The options of "check": for which host, what counts, and what is refused.
#include "tests/cli/ToolTest.h"

#include <filesystem>
#include <nlohmann/json.hpp>

namespace {

class CheckOptionsTest : public ToolTest
{
protected:
    CheckOptionsTest() { installEvaluator(); }

    ToolRun check(std::vector<std::string> arguments)
    {
        arguments.insert(arguments.begin(), "check");
        ToolRun run = runTool(arguments);
        run.output = normalised(run.output);
        run.errors = normalised(run.errors);
        return run;
    }

    /// Writes the bundle "Tools.bundle" in the tree's root.
    void bundle(const std::string& content) const
    {
        write(path("Tools.bundle/PackageContents.xml"),
              "<ApplicationPackage Name=\"Tools\" AppVersion=\"1\" UpgradeCode=\"{T}\">\n" + content +
                  "<Components><ComponentEntry ModuleName=\"./tools.lsp\"/></Components>\n</ApplicationPackage>\n");
        write(path("Tools.bundle/tools.lsp"), "(princ)\n");
    }

    /// The codes of all findings, with `arguments`.
    std::string codes(std::vector<std::string> arguments)
    {
        arguments.insert(arguments.end(), {"--json", "Tools.bundle"});
        const nlohmann::json document = nlohmann::json::parse(check(arguments).output);
        std::string all;
        for (const auto& finding : document["bundles"][0]["findings"]) {
            all += (all.empty() ? "" : " ") + finding["code"].get<std::string>();
        }
        return all;
    }
};

const char kNothingFound[] = "1 bundle checked: nothing found.\n";

TEST_F(CheckOptionsTest, TheAutoloadersOwnComparisonJudgesAnotherHostVersion)
{
    bundle("<RuntimeRequirements SeriesMin=\"27.0\" SeriesMax=\"26.5e0\" Architecture=\"aarch64\"/>\n");
    EXPECT_EQ(codes({"--arch", "aarch64"}), "KB213 KB301");
    bundle("<RuntimeRequirements SeriesMin=\"26.0\" SeriesMax=\"27.0\" Architecture=\"aarch64\"/>\n");
    EXPECT_EQ(codes({"--arch", "aarch64"}), "");
    EXPECT_EQ(codes({"--arch", "aarch64", "--host-version", "27.0"}), "");
    EXPECT_EQ(codes({"--arch", "aarch64", "--host-version", "27.1"}), "KB301");
    EXPECT_EQ(codes({"--arch", "aarch64", "--host-version", "25"}), "KB301");
}

TEST_F(CheckOptionsTest, MachineSystemAndProductAreThoseAskedFor)
{
    bundle("<RuntimeRequirements OS=\"Other\" Architecture=\"aarch64\" Platform=\"DRAFTER\"/>\n");
    EXPECT_EQ(codes({"--arch", "x86_64"}), "KB302 KB303 KB304");
    EXPECT_EQ(codes({"--arch", "aarch64", "--os", "Other"}), "KB304");
    EXPECT_EQ(codes({"--arch", "aarch64", "--os", "Other", "--product", "DRAFTER"}), "");
}

TEST_F(CheckOptionsTest, ModulesForTheMachineAskedForAreOnlyComparedWithIt)
{
    write(path("Tools.bundle/PackageContents.xml"),
          "<ApplicationPackage Name=\"Tools\" AppVersion=\"1\" UpgradeCode=\"{T}\"><Components>"
          "<ComponentEntry ModuleName=\"./tools.krx\"/></Components></ApplicationPackage>\n");
    std::string elf = "\x7F"
                      "ELF\x02\x01\x01";
    elf.resize(64);
    elf[18] = '\xF3'; // RISC-V
    elf[19] = 0;
    write(path("Tools.bundle/tools.krx"), elf);
    EXPECT_EQ(codes({"--arch", "riscv64"}), "");
    EXPECT_EQ(codes({"--arch", "i386"}), "KB811");
    EXPECT_EQ(codes({}), "KB811");
}

TEST_F(CheckOptionsTest, StrictWarningsAreErrors)
{
    bundle("<CompanyDetails/><CompanyDetails/>\n");
    const std::string finding = "Tools.bundle/PackageContents.xml:2:1: warning: There are several elements "
                                "\"CompanyDetails\", and only the last one counts. [KB205 repeated-element]\n"
                                "    Keep one of them.\n1 bundle checked: 1 warning in it.";
    EXPECT_EQ(check({"Tools.bundle"}), (ToolRun{0, finding + "\n", ""}));
    EXPECT_EQ(check({"--strict", "Tools.bundle"}), (ToolRun{1, finding + " Warnings count as errors.\n", ""}));
    const auto log = nlohmann::json::parse(check({"--strict", "--format", "sarif", "Tools.bundle"}).output);
    EXPECT_EQ(log["runs"][0]["results"][0]["level"], "error");
    EXPECT_EQ(log["runs"][0]["tool"]["driver"]["rules"][0]["defaultConfiguration"]["level"], "warning");
}

TEST_F(CheckOptionsTest, NeitherAHomeNorWhatIsInstalledCounts)
{
    bundle("");
    write(configurationFile(), "no database");
    install("Other.bundle", manifestOf("", "{T}"));
    EXPECT_EQ(check({"Tools.bundle"}), (ToolRun{0, kNothingFound, ""}));
    environment.erase(environment.begin()); // HOME
    EXPECT_EQ(check({"Tools.bundle"}), (ToolRun{0, kNothingFound, ""}));
}

TEST_F(CheckOptionsTest, AnEngineThatIsNotInstalledIsNoFaultOfTheBundle)
{
    bundle("");
    std::filesystem::remove(path("tool/lib/libKestLispEvaluator.so"));
    EXPECT_EQ(check({"--strict", "Tools.bundle"}),
              (ToolRun{0,
                       "Tools.bundle/PackageContents.xml:2:29: note: The engine for \"./tools.lsp\" is not installed "
                       "here; nothing more can be told of this file. [KB904 engine-missing]\n"
                       "    Install all engines with kestbundle, and check again.\n"
                       "1 bundle checked: 1 note in it. Warnings count as errors.\n",
                       ""}));
}

TEST_F(CheckOptionsTest, APathIsCheckedOnceHoweverItIsGiven)
{
    bundle("");
    EXPECT_EQ(check({"Tools.bundle/", "./Tools.bundle", path("Tools.bundle")}), (ToolRun{0, kNothingFound, ""}));
}

TEST_F(CheckOptionsTest, WhatIsNeitherABundleNorAFolderOfBundlesIsRefused)
{
    bundle("");
    EXPECT_EQ(check({"none"}), (ToolRun{2, "",
                                        "kestbundle: \"none\" is neither a bundle folder nor a folder of bundles: No "
                                        "such file or directory\n"}));
    EXPECT_EQ(check({"home"}),
              (ToolRun{2, "",
                       "kestbundle: \"home\" is neither a bundle folder nor a folder of bundles: its name does not end "
                       "in \".bundle\", it holds no \"PackageContents.xml\", and nothing in it does\n"}));
    EXPECT_EQ(check({"Tools.bundle/PackageContents.xml"}),
              (ToolRun{2, "",
                       "kestbundle: \"Tools.bundle/PackageContents.xml\" is a manifest; name the bundle folder that it "
                       "lies in\n"}));
}

TEST_F(CheckOptionsTest, ValuesThatCannotBeMeantAreRefused)
{
    bundle("");
    EXPECT_EQ(check({"--host-version", "26,0", "Tools.bundle"}),
              (ToolRun{2, "", "kestbundle: --host-version: \"26,0\" is no product version; write one such as 26.0\n"}));
    EXPECT_EQ(check({"--arch", "vax\x1B", "Tools.bundle"}),
              (ToolRun{2, "",
                       "kestbundle: --arch: the machine \"vax\\x1B\" is not known; give what \"uname -m\" says on it, "
                       "for example x86_64 or aarch64\n"}));
    EXPECT_EQ(check({"--format", "html", "Tools.bundle"}),
              (ToolRun{2, "",
                       "kestbundle: --format: --format must be one of text, json, sarif\nRun \"kestbundle check "
                       "--help\" for how it is used.\n"}));
}

TEST_F(CheckOptionsTest, AMenuIsNotSaidToWaitForABundleThatIsTakenForGranted)
{
    write(path("Tools.bundle/tools.cuix"), "x");
    write(path("Tools.bundle/PackageContents.xml"),
          "<ApplicationPackage Name=\"Tools\" AppVersion=\"1\" UpgradeCode=\"{T}\"><DependentBundles>"
          "<DependentBundle UpgradeCode=\"{OTHER}\"/><DependentBundle UpgradeCode=\"{T}\"/></DependentBundles>"
          "<Components><ComponentEntry ModuleName=\"./tools.cuix\"/></Components></ApplicationPackage>");
    const ToolRun done = check({"Tools.bundle"});
    EXPECT_NE(done.output.find("The menu \"./tools.cuix\" is not registered: its bundle depends on the UpgradeCode "
                               "\"{T}\", and no bundle with that gets its turn. [KB702 "),
              std::string::npos)
        << done;
}

} // namespace
