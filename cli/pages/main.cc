// Writes the pages of the manual and the completions for shells. usage: kest_pages FOLDER
// Made are FOLDER/man/man1/*.1, FOLDER/bash-completion/completions/kestbundle, FOLDER/zsh/site-functions/_kestbundle.
#include "cli/pages/Completion.h"
#include "cli/pages/ManPage.h"

#include <cstdio>
#include <exception>
#include <filesystem>
#include <fstream>
#include <stdexcept>

namespace {

namespace fs = std::filesystem;

void write(const fs::path& file, const std::string& content)
{
    fs::create_directories(file.parent_path());
    std::ofstream stream(file, std::ios::binary | std::ios::trunc);
    if (!(stream << content).flush()) {
        throw std::runtime_error(file.string() + " cannot be written");
    }
}

void writeAll(const fs::path& folder)
{
    using namespace cli::pages;
    const ToolFacts facts = toolFacts();
    const fs::path manual = folder / "man/man1";
    fs::remove_all(manual); // a subcommand that is gone leaves no page
    write(manual / (facts.tool.pageName() + ".1"), manPage(facts, facts.tool));
    for (const CommandFacts& subcommand : facts.subcommands) {
        write(manual / (subcommand.pageName() + ".1"), manPage(facts, subcommand));
    }
    write(folder / "bash-completion/completions/kestbundle", bashCompletion(facts));
    write(folder / "zsh/site-functions/_kestbundle", zshCompletion(facts));
}

} // namespace

int main(int argumentCount, char** arguments)
{
    if (argumentCount != 2) {
        std::fputs("usage: kest_pages FOLDER\n", stderr);
        return 2;
    }
    try {
        writeAll(arguments[1]);
        return 0;
    } catch (const std::exception& error) {
        std::fprintf(stderr, "kest_pages: %s\n", error.what());
        return 1;
    }
}
