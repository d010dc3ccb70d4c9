// The pages of the manual and the completions, held to what the tool itself says in its help.
#include "cli/ShellWord.h"
#include "tests/cli/Lines.h"
#include "tests/cli/ToolTest.h"

#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <regex>
#include <set>
#include <sstream>

namespace {

namespace fs = std::filesystem;
using Names = std::set<std::string>;

const std::string kShare = KEST_BUILD_FOLDER "/share/";
const std::string kManual = kShare + "man/man1/";
const std::string kBash = kShare + "bash-completion/completions/kestbundle";
const std::string kZsh = kShare + "zsh/site-functions/_kestbundle";

/// All that a shell command prints.
std::string outputOf(const std::string& command)
{
    std::string output;
    std::FILE* pipe = ::popen((command + " 2>&1").c_str(), "r");
    for (int character = std::fgetc(pipe); character != EOF; character = std::fgetc(pipe)) {
        output += static_cast<char>(character);
    }
    ::pclose(pipe);
    return output;
}

bool isInstalled(const std::string& program)
{
    return !outputOf("command -v " + program).empty();
}

/// The lines of a part of a help text or page: what follows `title` up to the next line that begins with `end`.
Lines partOf(const std::string& text, const std::string& title, const std::string& end)
{
    const Lines lines = linesOf(text);
    auto begin = std::find(lines.begin(), lines.end(), title);
    if (begin != lines.end()) {
        ++begin;
    }
    return {begin, std::find_if(begin, lines.end(), [&](const std::string& line) {
                return end.empty() ? line.empty() : line.starts_with(end);
            })};
}

/// Every name of an option in `text`: a hyphen and a letter, or two hyphens and a word.
void addOptions(const std::string& text, Names& names)
{
    const std::regex option("(^|[^-\\w])(--[a-z][-a-z]*|-[a-z])(?![-\\w])");
    for (std::sregex_iterator one(text.begin(), text.end(), option), end; one != end; ++one) {
        names.insert((*one)[2]);
    }
}

class PagesTest : public ToolTest
{
protected:
    PagesTest()
    {
        commands.emplace_back(); // the tool itself
        for (const std::string& line : partOf(help(""), "Subcommands:", "")) {
            std::istringstream words(line);
            words >> commands.emplace_back();
        }
    }

    std::string help(const std::string& command)
    {
        return runTool(command.empty() ? Lines{"--help"} : Lines{command, "--help"}).output;
    }

    Names optionsInHelp(const std::string& command)
    {
        Names names;
        for (const std::string& line : partOf(help(command), "Options:", "")) {
            if (line.starts_with("  -")) {
                addOptions(line.substr(0, line.find(' ', 2)), names);
            }
        }
        return names;
    }

    static std::string pageOf(const std::string& command)
    {
        return kManual + "kestbundle" + (command.empty() ? "" : "-" + command) + ".1";
    }

    /// What bash proposes when these are the words of the command line, the last one being typed.
    Names bashProposes(const Lines& words)
    {
        std::string command = "cd " + cli::shellWord(root) +
                              " && bash --norc -c 'source \"$1\" && shift && COMP_WORDS=(\"$@\") && "
                              "COMP_CWORD=$(($# - 1)) && _kestbundle && printf \"%s\\n\" \"${COMPREPLY[@]}\"' bash " +
                              cli::shellWord(kBash);
        for (const std::string& word : words) {
            command += " " + cli::shellWord(word);
        }
        Names proposed;
        for (const std::string& line : linesOf(outputOf(command))) {
            if (!line.empty()) {
                proposed.insert(line);
            }
        }
        return proposed;
    }

    Lines commands; ///< empty text: the tool itself
};

TEST_F(PagesTest, TheToolAndEachSubcommandHaveAPage)
{
    EXPECT_GE(commands.size(), 4U);
    Names expected;
    for (const std::string& command : commands) {
        expected.insert(pageOf(command));
    }
    Names found;
    for (const fs::directory_entry& entry : fs::directory_iterator(kManual)) {
        found.insert(entry.path().string());
    }
    EXPECT_EQ(found, expected);
}

TEST_F(PagesTest, EachPageHasAllSections)
{
    for (const std::string& command : commands) {
        Lines sections;
        for (const std::string& line : linesOf(contentOf(pageOf(command)))) {
            if (line.starts_with(".SH ")) {
                sections.push_back(line.substr(4));
            }
        }
        EXPECT_EQ(sections,
                  (Lines{"NAME", "SYNOPSIS", "DESCRIPTION", "OPTIONS", "EXAMPLES", "EXIT STATUS", "FILES", "SEE ALSO"}))
            << command << ": its help ends with \"Examples:\" and \"Exit status: \"";
    }
}

TEST_F(PagesTest, EachPageDescribesTheOptionsOfItsHelpAndNoOthers)
{
    for (const std::string& command : commands) {
        Names described;
        bool isLabel = false;
        for (const std::string& line : partOf(contentOf(pageOf(command)), ".SH OPTIONS", ".SH")) {
            if (isLabel) {
                addOptions(std::regex_replace(line, std::regex("\\\\(f.|(-))"), "$2"), described);
            }
            isLabel = line == ".TP";
        }
        EXPECT_FALSE(described.empty());
        EXPECT_EQ(described, optionsInHelp(command)) << command;
    }
}

TEST_F(PagesTest, TheFormatterHasNothingToWarnAbout)
{
    if (!isInstalled("groff")) {
        GTEST_SKIP() << "groff is not installed";
    }
    for (const std::string& command : commands) {
        EXPECT_EQ(outputOf("groff -man -Tutf8 -ww -z " + cli::shellWord(pageOf(command))), "") << command;
    }
}

TEST_F(PagesTest, BashCompletesTheOptionsOfTheHelpAndNoOthers)
{
    for (const std::string& command : commands) {
        Lines words = {"kestbundle"};
        if (!command.empty()) {
            words.push_back(command);
        }
        words.emplace_back("-");
        EXPECT_EQ(bashProposes(words), optionsInHelp(command)) << command;
    }
}

TEST_F(PagesTest, BashCompletesSubcommands)
{
    Names all = bashProposes({"kestbundle", ""});
    for (const std::string& option : optionsInHelp("")) {
        EXPECT_EQ(all.erase(option), 1U) << option;
    }
    EXPECT_EQ(all, Names(commands.begin() + 1, commands.end()));
    EXPECT_EQ(bashProposes({"kestbundle", "sch"}), Names{"schema"});
    EXPECT_EQ(bashProposes({"kestbundle", "nothing", ""}), Names());
}

TEST_F(PagesTest, BashCompletesFixedValuesFoldersAndFiles)
{
    EXPECT_EQ(bashProposes({"kestbundle", "new", "x", "--kind", ""}),
              (Names{"native", "lisp", "python", "managed", "menus"}));
    EXPECT_EQ(bashProposes({"kestbundle", "new", "--kind", "=", "m"}), (Names{"managed", "menus"}));
    EXPECT_EQ(bashProposes({"kestbundle", "new", "--kind", "="}),
              (Names{"native", "lisp", "python", "managed", "menus"}));
    fs::create_directory(path("hidden place"));
    write(path("hidden file"), "");
    EXPECT_EQ(bashProposes({"kestbundle", "run", "--home", "h"}), (Names{"home", "hidden place"}));
    EXPECT_EQ(bashProposes({"kestbundle", "run", "--config", "h"}), (Names{"home", "hidden place", "hidden file"}));
    EXPECT_EQ(bashProposes({"kestbundle", "run", "--vernum", ""}), Names()) << "a text: anything";
}

TEST_F(PagesTest, ZshReadsItsFileAndCompletesTheOptionsOfTheHelpAndNoOthers)
{
    if (!isInstalled("zsh")) {
        GTEST_SKIP() << "zsh is not installed";
    }
    EXPECT_EQ(outputOf("zsh -n " + cli::shellWord(kZsh)), "");
    // zsh's own functions stand aside: the first call says where the cursor is, the second one what can stand there.
    const std::string standIns = "_describe() { print -rl -- ${(P)2%%:*} }\n"
                                 "_arguments() { if [[ $1 = -C ]]; then shift; state=$where; line=($command); "
                                 "[[ -n $where ]] && return; fi; print -rl -- \"$@\" }\n";
    const auto calledWith = [&](const std::string& where, const std::string& command) {
        return linesOf(outputOf("where=" + where + " command=" + command + " zsh -f -c " +
                                cli::shellWord(standIns + "source " + cli::shellWord(kZsh))));
    };
    for (const std::string& command : commands) {
        Names options;
        for (const std::string& line : calledWith(command.empty() ? "''" : "argument", command)) {
            addOptions(line.substr(0, line.find('[')), options);
        }
        EXPECT_EQ(options, optionsInHelp(command)) << command;
    }
    const Lines subcommands = calledWith("subcommand", "''");
    EXPECT_EQ(Names(subcommands.begin(), subcommands.end()), Names(commands.begin() + 1, commands.end()));
}

} // namespace
