// docs/authoring.md, command by command: what it shows is what comes of it.
#include "tests/cli/Lines.h"
#include "tests/cli/ToolTest.h"

#include <array>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <sys/wait.h>

namespace {

namespace fs = std::filesystem;

/// A command of the page, and the lines that it is to print.
struct Step
{
    std::string command;
    std::vector<std::string> shown;
};

/// The commands in the blocks "console" of the page at `file`.
std::vector<Step> stepsOf(const std::string& file)
{
    std::ifstream page(file);
    std::vector<Step> steps;
    bool isInside = false;
    for (std::string line; std::getline(page, line);) {
        if (line.starts_with("```")) {
            isInside = line == "```console";
        } else if (isInside && line.starts_with("$ ")) {
            steps.push_back({line.substr(2), {}});
        } else if (isInside && !steps.empty()) {
            steps.back().shown.push_back(line);
        }
    }
    return steps;
}

/// Whether `lines` from `line` on are what `shown` from `at` on says; "..." stands for any lines.
bool fits(const std::vector<std::string>& lines, std::size_t line, const std::vector<std::string>& shown,
          std::size_t at)
{
    if (at == shown.size()) {
        return line == lines.size();
    }
    if (shown[at] == "...") {
        for (std::size_t next = line; next <= lines.size(); ++next) {
            if (fits(lines, next, shown, at + 1)) {
                return true;
            }
        }
        return false;
    }
    return line < lines.size() && lines[line] == shown[at] && fits(lines, line + 1, shown, at + 1);
}

std::string replaced(std::string text, const std::string& from, const std::string& by)
{
    for (std::size_t at = text.find(from); at != std::string::npos; at = text.find(from, at + by.size())) {
        text.replace(at, from.size(), by);
    }
    return text;
}

class AuthoringTest : public ToolTest
{
protected:
    AuthoringTest() { fs::create_directories(path("work")); }

    /// What `command` prints, in a shell in the folder "work".
    std::string outputOf(const std::string& command) const
    {
        const std::string script = path("script");
        write(script, "cd '" + path("work") + "'\nexport HOME='" + home() +
                          "' LC_ALL=C.UTF-8 CXX='" KEST_CXX "' PREFIX='" + path("tool") + "'\nPATH='" +
                          path("tool/bin") + "':$PATH\n" + command + "\n");
        std::FILE* const pipe = ::popen(("bash '" + script + "' 2>&1").c_str(), "r");
        std::string output;
        std::array<char, 4096> piece{};
        for (std::size_t length = 0; (length = std::fread(piece.data(), 1, piece.size(), pipe)) > 0;) {
            output.append(piece.data(), length);
        }
        ::pclose(pipe);
        return replaced(output, path("work"), "/home/you");
    }
};

TEST_F(AuthoringTest, WhatThePageShowsIsWhatComesOfItsCommands)
{
    if (KEST_HAS_LISP + KEST_HAS_MANAGED < 2 || commandThatStarts("tool").size() > 1) {
        GTEST_SKIP() << "not all engines are built, or the tool is for another machine than the compilers";
    }
    installEngines();
    fs::create_directories(path("tool/include"));
    fs::create_directory_symlink(KEST_BUILD_FOLDER "/include/kestbundle", path("tool/include/kestbundle"));
    fs::create_directory_symlink(fs::path(KEST_ENGINE_FOLDER) / "kest", path("tool/lib/kest"));
    const std::vector<Step> steps = stepsOf(KEST_SOURCE_FOLDER "/docs/authoring.md");
    EXPECT_GT(steps.size(), 15U);
    for (const Step& step : steps) {
        const std::string output = replaced(outputOf(step.command), "Linux_aarch64", "Linux_x86_64");
        EXPECT_TRUE(fits(linesOf(output), 0, step.shown, 0)) << "$ " << step.command << "\n" << output;
    }
}

} // namespace
