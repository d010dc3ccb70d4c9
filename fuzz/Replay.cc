// Runs the committed inputs without a fuzzer: for each target a test that takes its whole corpus, and a test for each
// fault that a fuzzer has found, named as the fault.
#include "fuzz/Target.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <sstream>

namespace {

namespace fs = std::filesystem;

/// The files in the folder at `path`, sorted; none when there is no such folder.
std::vector<fs::path> filesIn(const fs::path& path)
{
    std::vector<fs::path> files;
    if (fs::is_directory(path)) {
        for (const auto& entry : fs::directory_iterator(path)) {
            files.push_back(entry.path());
        }
    }
    std::sort(files.begin(), files.end());
    return files;
}

class ReplayTest : public testing::Test
{
public:
    ReplayTest(fuzz::Target taken, std::vector<fs::path> inputs) : target(std::move(taken)), files(std::move(inputs)) {}

private:
    void TestBody() override
    {
        ASSERT_FALSE(files.empty());
        for (const fs::path& file : files) {
            std::ostringstream content;
            content << std::ifstream(file, std::ios::binary).rdbuf();
            try {
                target.run(content.str());
            } catch (const fuzz::Broken& broken) {
                ADD_FAILURE() << file << ": " << broken.what();
            }
        }
    }

    fuzz::Target target;
    std::vector<fs::path> files;
};

void addTest(const std::string& group, const std::string& name, const fuzz::Target& target,
             const std::vector<fs::path>& files)
{
    testing::RegisterTest(group.c_str(), name.c_str(), nullptr, nullptr, __FILE__, __LINE__,
                          [=]() -> testing::Test* { return new ReplayTest(target, files); });
}

} // namespace

int main(int argc, char** argv)
{
    testing::InitGoogleTest(&argc, argv);
    fuzz::prepareProcess();
    const fs::path folder = KEST_FUZZ_FOLDER;
    for (const fuzz::Target& target : fuzz::targets()) {
        addTest("FuzzCorpus", target.name, target, filesIn(folder / "corpus" / target.name));
        for (const fs::path& finding : filesIn(folder / "findings" / target.name)) {
            addTest("FuzzFinding_" + target.name, finding.filename().string(), target, {finding});
        }
    }
    return RUN_ALL_TESTS();
}
