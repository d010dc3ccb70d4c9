// What "explain" and "list" say about every fault of tests/fixtures, whole. KEST_RENEW_GOLDEN=1 writes the golden files
// anew, and fails.
#include "tests/cli/FaultFixture.h"

#include <algorithm>
#include <cstdlib>

namespace {

std::string goldenFile(const std::string& fault)
{
    return KEST_GOLDEN_FOLDER "/explain/" + fault + ".txt";
}

/// `run` as a part of a golden file.
std::string section(const std::string& command, const ToolRun& run)
{
    return "$ kestbundle " + command + "\n" + run.output + run.errors + "exit status " + std::to_string(run.status) +
           "\n\n";
}

class FaultTest : public FaultFixture, public ::testing::WithParamInterface<std::string>
{
protected:
    /// What the tool says: a list, everything in short, and each bundle at length.
    std::string said()
    {
        std::string text = section("list", tell({"list"})) + section("explain", tell({"explain"}));
        for (const std::string& name : installed) {
            text += section("explain " + name, tell({"explain", name}));
        }
        return text;
    }
};

TEST_P(FaultTest, IsExplainedWhole)
{
    installFault(GetParam());
    const std::string text = said();
    if (std::getenv("KEST_RENEW_GOLDEN") != nullptr) {
        write(goldenFile(GetParam()), text);
        FAIL() << "the golden file is written anew";
    }
    EXPECT_EQ(text, contentOf(goldenFile(GetParam())));
}

INSTANTIATE_TEST_SUITE_P(Every, FaultTest, ::testing::ValuesIn(explainedFaults()), [](const auto& fault) {
    std::string name = fault.param;
    std::replace(name.begin(), name.end(), '-', '_');
    return name;
});

} // namespace
