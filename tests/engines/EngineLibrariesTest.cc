// The engine libraries as files: what they export, and that nothing brings them along.
#include <gtest/gtest.h>

#include <array>
#include <cstdio>
#include <memory>
#include <sstream>
#include <string>
#include <vector>

namespace {

/// What `command` writes, line by line.
std::vector<std::string> linesOf(const std::string& command)
{
    const std::unique_ptr<FILE, int (*)(FILE*)> pipe(::popen(command.c_str(), "r"), &::pclose);
    std::string text;
    std::array<char, 4096> part{};
    while (pipe && std::fgets(part.data(), part.size(), pipe.get()) != nullptr) {
        text += part.data();
    }
    std::vector<std::string> lines;
    std::istringstream stream(text);
    for (std::string line; std::getline(stream, line);) {
        lines.push_back(line);
    }
    return lines;
}

/// The names that `library` exports; what instruments a sanitizer build is left out.
std::vector<std::string> exportsOf(const std::string& library)
{
    return linesOf("nm -D --defined-only '" KEST_ENGINE_FOLDER "/" + library +
                   "' | sed 's/^[^ ]* . //; s/@.*//' | grep -v '^__\\(asan\\|odr_asan\\|start\\|stop\\)' | sort");
}

TEST(EngineLibrariesTest, ThePythonEngineExportsItsTwoDoors)
{
    EXPECT_EQ(exportsOf("libVxPythonLoad.so"), (std::vector<std::string>{"loadPythonFile", "setPythonVersion"}));
}

TEST(EngineLibrariesTest, TheManagedEngineExportsItsDoor)
{
    if (KEST_HAS_MANAGED == 0) {
        GTEST_SKIP() << "the managed engine is not built";
    }
    EXPECT_EQ(exportsOf("VxManagedCommand.dll"), std::vector<std::string>{"netLoad"});
}

TEST(EngineLibrariesTest, TheLispEngineExportsItsDoor)
{
    if (KEST_HAS_LISP == 0) {
        GTEST_SKIP() << "the LISP engine is not built";
    }
    EXPECT_EQ(exportsOf("libKestLispEvaluator.so"), std::vector<std::string>{"kestLispEvaluate"});
}

TEST(EngineLibrariesTest, ThePythonEngineNeedsNoPython)
{
    const auto needed = linesOf("readelf -d '" KEST_ENGINE_FOLDER "/libVxPythonLoad.so' | grep NEEDED");
    ASSERT_FALSE(needed.empty());
    for (const std::string& line : needed) {
        EXPECT_EQ(line.find("python"), std::string::npos) << line;
    }
}

} // namespace
