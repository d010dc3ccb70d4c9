// What "check" says about the folders tests/fixtures/check-*, whole, in each of its forms. KEST_RENEW_GOLDEN=1 writes
// the golden files anew, and fails.
#include "tests/cli/ToolTest.h"

#include "standalone/ModuleFile.h"

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <nlohmann/json.hpp>
#include <regex>
#include <set>

namespace {

namespace fs = std::filesystem;

std::vector<std::string> allFixtures()
{
    std::vector<std::string> names;
    for (const fs::directory_entry& entry : fs::directory_iterator(KEST_FIXTURE_FOLDER)) {
        if (const std::string name = entry.path().filename().string(); name.starts_with("check-")) {
            names.push_back(name);
        }
    }
    std::sort(names.begin(), names.end());
    return names;
}

/// `content` with the first `what` exchanged for `by`, which is as long.
std::string changed(std::string content, const std::string& what, const std::string& by)
{
    const std::size_t at = content.find(what);
    EXPECT_NE(at, std::string::npos) << what;
    return content.replace(at, by.size(), by);
}

class CheckTest : public ToolTest, public ::testing::WithParamInterface<std::string>
{
protected:
    CheckTest()
    {
        installEvaluator();
        installPythonStandIn();
        installModule("late", path("tool/lib"), "VxManagedCommand.dll"); // never opened
    }

    /// Puts the fixture into the folder "bundles", and beside it what files in a checkout cannot hold.
    void installFixture(const std::string& name) const
    {
        fs::copy(std::string(KEST_FIXTURE_FOLDER) + "/" + name, path("bundles"),
                 fs::copy_options::recursive | fs::copy_options::copy_symlinks);
        if (name == "check-files") { // links upset other programs in a checkout
            fs::create_symlink("../../shared/shared.lsp", path("bundles/Tools.bundle/Contents/link.lsp"));
            fs::create_symlink("circle.lsp", path("bundles/Tools.bundle/Contents/circle.lsp"));
        } else if (name == "check-modules") {
            makeModules(path("bundles/Tools.bundle/Contents"));
        } else if (name == "check-set") {
            fs::permissions(path("bundles/Second.bundle/Contents"), fs::perms::others_write, fs::perm_options::add);
        }
    }

    static void makeModules(const std::string& folder)
    {
        installModule("greeter", folder, "good.krx");
        installModule("entryless", folder, "entry.krx");
        const std::string good = contentOf(folder + "/good.krx");
        write(folder + "/library.krx", changed(good, "libstdc++.so.6", "libstdc++.so.0"));
        write(folder + "/symbol.krx", changed(good, "kestRegisterCommand", "kestRegisterCommanX"));
        std::string foreign = good;
        foreign[18] = 8; // the place of the machine's number
        write(folder + "/machine.krx", foreign);
    }

    ToolRun check(std::vector<std::string> arguments)
    {
        arguments.insert(arguments.begin(), "check");
        ToolRun run = runTool(arguments);
        const std::string machine = standalone::machineName(standalone::ownMachine());
        run.output = normalised(run.output);
        run.output = std::regex_replace(run.output, std::regex("\"(x86|aarch64)(\\\\?)\""), "\"MACHINE$2\"");
        for (std::size_t at = run.output.find(machine); at != std::string::npos; at = run.output.find(machine)) {
            run.output.replace(at, machine.size(), "THIS MACHINE");
        }
        run.output = std::regex_replace(run.output, std::regex("\"vernum\": \"[^\"]*\""), "\"vernum\": \"VERNUM\"");
        run.output =
            std::regex_replace(run.output, std::regex("\"version\": \"" KEST_VERSION "\""), "\"version\": \"VERSION\"");
        run.errors = normalised(run.errors);
        return run;
    }

    void expectGolden(const std::string& form, const ToolRun& run)
    {
        const std::string file = KEST_GOLDEN_FOLDER "/check/" + GetParam() + "." + form;
        const std::string text = run.output + run.errors + "exit status " + std::to_string(run.status) + "\n";
        if (std::getenv("KEST_RENEW_GOLDEN") != nullptr) {
            write(file, text);
            ADD_FAILURE() << "the golden file is written anew";
        }
        EXPECT_EQ(text, contentOf(file));
    }
};

TEST_P(CheckTest, IsReportedWholeInEveryForm)
{
    installFixture(GetParam());
    expectGolden("txt", check({"bundles"}));
    expectGolden("json", check({"--json", "bundles"}));
    expectGolden("sarif", check({"--format", "sarif", "bundles"}));
}

TEST_P(CheckTest, TheSarifLogHoldsTogether)
{
    installFixture(GetParam());
    const auto log = nlohmann::json::parse(check({"--format", "sarif", "./bundles/"}).output);
    EXPECT_EQ(log["version"], "2.1.0");
    EXPECT_TRUE(log["$schema"].is_string());
    ASSERT_EQ(log["runs"].size(), 1U);
    const auto& rules = log["runs"][0]["tool"]["driver"]["rules"];
    EXPECT_EQ(log["runs"][0]["tool"]["driver"]["name"], "kestbundle");
    const std::set<std::string> levels{"error", "warning", "note"};
    std::set<std::string> ids;
    for (const auto& rule : rules) {
        EXPECT_TRUE(ids.insert(rule["id"]).second) << rule;
        EXPECT_TRUE(levels.contains(rule["defaultConfiguration"]["level"])) << rule;
        EXPECT_TRUE(rule["shortDescription"]["text"].is_string()) << rule;
    }
    for (const auto& result : log["runs"][0]["results"]) {
        EXPECT_EQ(rules[result["ruleIndex"].get<std::size_t>()]["id"], result["ruleId"]);
        EXPECT_TRUE(levels.contains(result["level"])) << result;
        EXPECT_FALSE(result["message"]["text"].get<std::string>().empty());
        ASSERT_EQ(result["locations"].size(), 1U);
        const auto& place = result["locations"][0]["physicalLocation"];
        EXPECT_TRUE(std::regex_match(place["artifactLocation"]["uri"].get<std::string>(),
                                     std::regex("bundles/([-A-Za-z0-9._~/]|%[0-9A-F]{2})+")))
            << place;
        if (place.contains("region")) {
            EXPECT_GE(place["region"]["startLine"], 1);
            EXPECT_GE(place["region"].value("startColumn", 1), 1);
        }
    }
}

INSTANTIATE_TEST_SUITE_P(Every, CheckTest, ::testing::ValuesIn(allFixtures()), [](const auto& fixture) {
    std::string name = fixture.param;
    std::replace(name.begin(), name.end(), '-', '_');
    return name;
});

} // namespace
