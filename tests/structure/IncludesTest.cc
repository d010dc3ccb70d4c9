// The checkout itself: its include lines and the length of its files.
#include "tests/structure/IncludeRules.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <sstream>

namespace {

using Problems = std::vector<std::string>;

constexpr std::size_t kLongest = 400;

/// The C++ sources of the folders of the checkout that hold some.
const structure::Sources& checkout()
{
    static const structure::Sources sources = [] {
        namespace fs = std::filesystem;
        const fs::path top = KEST_SOURCE_DIR;
        structure::Sources found;
        for (const char* folder : {"host", "manifest", "loading", "menus", "bundle", "standalone", "engines", "cli",
                                   "samples", "tests", "bench", "fuzz"}) {
            if (!fs::is_directory(top / folder)) {
                continue;
            }
            for (const auto& entry : fs::recursive_directory_iterator(top / folder)) {
                const std::string extension = entry.path().extension().string();
                const bool isSource =
                    extension == ".h" || extension == ".cc" || extension == ".cpp" || extension == ".c";
                if (isSource && entry.is_regular_file()) { // fixtures have links that lead nowhere
                    std::ostringstream text;
                    text << std::ifstream(entry.path(), std::ios::binary).rdbuf();
                    found[fs::relative(entry.path(), top).generic_string()] = text.str();
                }
            }
        }
        return found;
    }();
    return sources;
}

TEST(IncludesTest, TheFoldersOfTheHouseAreFound)
{
    for (const char* path : {"host/StdString.h", "manifest/Bundle.h", "loading/StartupLoad.cc", "menus/VariantText.h",
                             "bundle/BundleManager.h", "standalone/Host.h", "tests/structure/IncludesTest.cc"}) {
        EXPECT_EQ(checkout().count(path), 1U) << path;
    }
}

TEST(IncludesTest, NoFileIncludesWhatIsNotForItsFolder)
{
    EXPECT_EQ(structure::wrongIncludes(checkout()), Problems());
}

TEST(IncludesTest, NoFileIsSoLongThatItHoldsMoreThanOneIdea)
{
    EXPECT_EQ(structure::longFiles(checkout(), kLongest), Problems());
}

TEST(IncludesTest, TheContractWithTheHostIsDeclarationsAlone)
{
    for (const auto& [path, text] : checkout()) {
        if (path.rfind("host/", 0) == 0) {
            EXPECT_EQ(path.substr(path.size() - 2), ".h") << path;
        }
    }
}

} // namespace
