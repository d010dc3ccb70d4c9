// The samples as they are built: "check" finds the faults that are in them on purpose, and no others.
#include "tests/cli/ToolTest.h"

#include <filesystem>
#include <nlohmann/json.hpp>
#include <set>

namespace {

class CheckSamplesTest : public ToolTest
{
};

TEST_F(CheckSamplesTest, HaveTheFaultsThatAreInThemOnPurpose)
{
    if (!KEST_HAS_MANAGED) {
        GTEST_SKIP() << "the managed samples are not built";
    }
    // Of the machine, and of what is installed on it: no faults of the samples.
    const std::set<std::string> ofTheMachine{"KB306", "KB511", "KB904"};
    const ToolRun run = runTool({"check", "--json", KEST_SAMPLE_FOLDER});
    EXPECT_EQ(run.errors, "");
    EXPECT_EQ(run.status, 1);
    const auto document = nlohmann::json::parse(run.output);
    std::string found;
    for (const auto& bundle : document["bundles"]) {
        for (const auto& finding : bundle["findings"]) {
            if (!ofTheMachine.contains(finding["code"])) {
                found += std::filesystem::path(bundle["folder"].get<std::string>()).filename().string() + ": " +
                         finding["severity"].get<std::string>() + " " + finding["code"].get<std::string>() + "\n";
            }
        }
    }
    EXPECT_EQ(found, "AnchorPlates.bundle: note KB408\n"
                     "BoltCatalogue.bundle: note KB408\n"
                     "CycleHatches.bundle: error KB404\n"
                     "CycleLinetypes.bundle: error KB404\n"
                     "Malformed.bundle: error KB111\n"
                     "MissingDependency.bundle: note KB408\n"
                     "MissingDependency.bundle: note KB413\n"
                     "OtherArchitecture.bundle: error KB303\n"
                     "PartsList.bundle: note KB408\n");
}

} // namespace
