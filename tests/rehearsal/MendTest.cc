// What findings tell an author to change helps: in random trees each mend is applied for real.
#include "tests/rehearsal/MendCheck.h"
#include "tests/rehearsal/RandomTree.h"
#include "tests/rehearsal/RehearsalFolder.h"

#include "cli/Examination.h"
#include "cli/Shown.h"
#include "cli/rules/AllRules.h"
#include "cli/rules/Reasons.h"

#include <cstdlib>
#include <gtest/gtest.h>

namespace rehearsal {

namespace {

namespace fs = std::filesystem;

Looked lookedAt(const cli::Examination& examination)
{
    Looked looked;
    EXPECT_EQ(examination.failure, "");
    for (const cli::Finding& finding : cli::findReasons(examination)) {
        looked.findings.push_back({std::string(finding.rule->code), cli::plainUtf8(finding.bundle),
                                   cli::plainUtf8(finding.subject), cli::plainUtf8(finding.place.file),
                                   finding.place.line, finding.place.column, finding.expected, finding.found,
                                   finding.mend});
    }
    for (const cli::ExaminedBundle& bundle : examination.bundles) {
        looked.states[cli::plainUtf8(bundle.folder)] = nameOf(bundle.state);
    }
    return looked;
}

class MendTest : public RehearsalFolder
{
protected:
    MendTest()
    {
        tree.top = root;
        tree.plugins = home / ".config/ORRELIN/ApplicationPlugins";
        tree.configuration = settings.configurationFile;
        tree.soundModule = KEST_SOUND_MODULE;
        tree.look = [this] { return lookedAt(cli::examineInstalled(settings)); };
    }

    const fs::path home = root / "home";
    const fs::path program = root / "program";
    const standalone::HostSettings settings = settingsFor(home, program);
    MendTree tree;
};

TEST_F(MendTest, EachMendTakesItsFindingAwayAndNothingThatLoaded)
{
    constexpr std::uint64_t kOneIn = 10; // each tree is looked at some fifty times
    const char* const asked = std::getenv("KEST_REHEARSAL_TREES");
    const std::uint64_t trees = asked != nullptr ? std::strtoull(asked, nullptr, 10) / kOneIn : 10;
    MendCounts counts;
    for (std::uint64_t seed = 1; seed <= trees && !HasFailure(); ++seed) {
        const auto make = [&] {
            fs::remove_all(home);
            fs::remove_all(program);
            RandomTree(seed, home, program, KEST_SOUND_MODULE).write();
        };
        expectMends("seed " + std::to_string(seed), make, tree, counts);
    }
    EXPECT_GT(counts.size(), 30U) << "few of the mends came about in " << trees << " trees";
}

TEST(MendTableTest, EachRuleThatTellsAReasonHasAMendOrAReasonToHaveNone)
{
    for (const cli::Rule* rule : cli::allRules()) {
        const std::string code(rule->code);
        const bool isOfCheckOnly =
            (code >= "KB206" && code < "KB3" && code != "KB208" && code != "KB209") || code.starts_with("KB8");
        const auto& all = allMends();
        const auto hasMend = std::count_if(all.begin(), all.end(), [&](const Mend& mend) { return mend.rule == rule; });
        EXPECT_EQ(hasMend == 0, isOfCheckOnly || rulesWithoutMend().contains(code)) << code;
    }
}

} // namespace

} // namespace rehearsal
