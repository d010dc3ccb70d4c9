#include "cli/pages/Completion.h"

namespace cli::pages {

namespace {

constexpr char kHead[] = R"(# Completion of kestbundle for bash. Made from the definitions of its command line.

# Proposes what "compgen" with these options finds.
_kestbundle_propose()
{
    local line
    COMPREPLY=()
    while IFS= read -r line; do
        COMPREPLY+=("$line")
    done < <(compgen "$@" -- "$current")
}

_kestbundle_propose_paths()
{
    compopt -o filenames 2>/dev/null
    _kestbundle_propose "$@"
}

_kestbundle()
{
    local current=${COMP_WORDS[COMP_CWORD]} previous=${COMP_WORDS[COMP_CWORD-1]} subcommand='' i
    COMPREPLY=()
    for ((i = 1; i < COMP_CWORD; i++)); do
        if [[ ${COMP_WORDS[i]} != -* ]]; then
            subcommand=${COMP_WORDS[i]}
            break
        fi
    done
    # "--option=value" comes as three words
    if [[ $current == = ]]; then
        current=''
    elif [[ $previous == = ]] && ((COMP_CWORD > 1)); then
        previous=${COMP_WORDS[COMP_CWORD-2]}
    fi
)";

constexpr char kTail[] = R"(}

complete -F _kestbundle kestbundle
)";

std::string joined(const std::vector<std::string>& words)
{
    std::string all;
    for (const std::string& word : words) {
        all += (all.empty() ? "" : " ") + word;
    }
    return all;
}

std::string proposalOf(const OptionFacts& value)
{
    switch (value.kind) {
    case ValueKind::kChoice:
        return "_kestbundle_propose -W '" + joined(value.choices) + "'";
    case ValueKind::kFolder:
        return "_kestbundle_propose_paths -d";
    case ValueKind::kFile:
        return "_kestbundle_propose_paths -f";
    case ValueKind::kText:
    case ValueKind::kNone:
        break;
    }
    return "";
}

/// The branches for the values of a command's options.
std::string valueBranches(const CommandFacts& command)
{
    std::string text;
    for (const OptionFacts& option : command.options) {
        if (option.kind == ValueKind::kNone) {
            continue;
        }
        std::string patterns;
        for (const std::string& name : option.names) {
            patterns += (patterns.empty() ? "" : " | ") + ("'" + command.name + " " + name + "'");
        }
        const std::string proposal = proposalOf(option);
        text += "    " + patterns + ")\n" + (proposal.empty() ? "" : "        " + proposal + "\n") +
                "        return\n        ;;\n";
    }
    return text;
}

/// The branch for whatever else can stand behind the command: options, or its first kind of argument.
std::string wordBranch(const CommandFacts& command, const std::vector<std::string>& otherWords)
{
    std::vector<std::string> words = otherWords;
    for (const OptionFacts& option : command.options) {
        words.insert(words.end(), option.names.begin(), option.names.end());
    }
    const std::string options = "_kestbundle_propose -W '" + joined(words) + "'\n";
    const std::string proposal = command.arguments.empty() ? "" : proposalOf(command.arguments.front());
    std::string text = "    " + (command.name.empty() ? "''" : command.name) + ")\n";
    if (proposal.empty()) {
        text += "        " + options;
    } else {
        text += "        if [[ $current == -* ]]; then\n            " + options + "        else\n            " +
                proposal + "\n        fi\n";
    }
    return text + "        ;;\n";
}

} // namespace

std::string bashCompletion(const ToolFacts& tool)
{
    std::vector<std::string> subcommandNames;
    std::string values = valueBranches(tool.tool);
    for (const CommandFacts& subcommand : tool.subcommands) {
        subcommandNames.push_back(subcommand.name);
        values += valueBranches(subcommand);
    }
    std::string text = kHead;
    text += "    case \"$subcommand $previous\" in\n" + values + "    esac\n    case $subcommand in\n" +
            wordBranch(tool.tool, subcommandNames);
    for (const CommandFacts& subcommand : tool.subcommands) {
        text += wordBranch(subcommand, {});
    }
    return text + "    esac\n" + kTail;
}

} // namespace cli::pages
