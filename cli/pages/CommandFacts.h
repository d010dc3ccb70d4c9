// The tool's command line as data: what the definitions of its subcommands say, for pages and completions.
#pragma once

#include <string>
#include <vector>

namespace cli::pages {

/// What a shell can propose as a value.
enum class ValueKind
{
    kNone, ///< the option has no value
    kText,
    kChoice,
    kFolder,
    kFile,
};

struct OptionFacts
{
    std::vector<std::string> names; ///< with their hyphens, the short one first; empty for a positional argument
    ValueKind kind = ValueKind::kNone;
    std::string form;                 ///< how the value is called: "DIR"
    std::vector<std::string> choices; ///< all values that there are
    std::string help;
    bool isRequired = false;
    bool isRepeatable = false; ///< each time it is given counts
};

struct ExampleFacts
{
    std::string command;
    std::string explanation;
};

struct CommandFacts
{
    std::string name; ///< of the subcommand; empty for the tool itself
    std::string summary;
    std::vector<OptionFacts> options;
    std::vector<OptionFacts> arguments;
    std::vector<ExampleFacts> examples;
    std::vector<std::string> remarks; ///< the other paragraphs of what its help ends with
    std::string exitStatus;           ///< "0 all went well, 1 ..."

    std::string pageName() const { return name.empty() ? "kestbundle" : "kestbundle-" + name; }
    std::string callName() const { return name.empty() ? "kestbundle" : "kestbundle " + name; }
};

struct ToolFacts
{
    std::string version;
    CommandFacts tool;
    std::vector<CommandFacts> subcommands; ///< in the order of the help
};

/// What defineCommandLine() defines. Hidden options and subcommands are left out, as in the help.
ToolFacts toolFacts();

} // namespace cli::pages
