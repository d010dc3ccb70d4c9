// The table of rules itself, and what no fixture can bring about.
#include "cli/rules/AllRules.h"

#include "cli/rules/HostRules.h"
#include "cli/rules/Reasons.h"

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <set>
#include <sstream>
#include <string>

namespace {

namespace fs = std::filesystem;

/// All golden files of "explain", one behind the other.
std::string allGoldens()
{
    std::ostringstream text;
    for (const fs::directory_entry& entry : fs::directory_iterator(KEST_GOLDEN_FOLDER "/explain")) {
        text << std::ifstream(entry.path()).rdbuf();
    }
    return text.str();
}

TEST(RulesTest, CodesAndNamesAreOneEachAndTheTableIsInTheirOrder)
{
    std::set<std::string_view> names;
    std::string_view last;
    for (const cli::Rule* rule : cli::allRules()) {
        EXPECT_LT(last, rule->code);
        EXPECT_TRUE(names.insert(rule->name).second) << rule->name;
        EXPECT_TRUE(rule->title.ends_with('.')) << rule->title;
        last = rule->code;
    }
}

TEST(RulesTest, EveryRuleAboutAStartIsShownByAFixture)
{
    const std::set<std::string_view> elsewhere{
        "KB413", // of "check": CheckTest
        "KB515", // a path too long for a checkout: ExplainTest
        "KB903", // below
        "KB904", // of "check": CheckOptionsTest
    };
    const std::string goldens = allGoldens();
    for (const cli::Rule* rule : cli::allRules()) {
        const bool isChecked = rule->code.starts_with("KB2") || rule->code.starts_with("KB8"); // by "check" alone
        const std::string head = " " + std::string(rule->code) + " " + std::string(rule->name);
        const std::string line = " " + std::string(rule->code) + ": ";
        EXPECT_TRUE(isChecked || elsewhere.contains(rule->code) || goldens.find(head) != std::string::npos ||
                    goldens.find(line) != std::string::npos)
            << rule->code << " " << rule->name;
    }
}

TEST(RulesTest, AStartThatAnErrorEndedIsSaidSo)
{
    cli::Examination examination;
    examination.home = "/nowhere";
    examination.failure = "a VxErrorStatus (3)";
    const cli::Findings findings = cli::findReasons(examination);
    ASSERT_EQ(findings.size(), 2U);
    EXPECT_EQ(findings[0].rule, &cli::kLogNotOpened);
    EXPECT_EQ(findings[1].rule, &cli::kStartCutShort);
    EXPECT_EQ(findings[1].what, "An error ended the start before all bundles had their turn: a VxErrorStatus (3)");
}

} // namespace
