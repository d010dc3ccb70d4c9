#include "cli/pages/Completion.h"

#include "cli/ShellWord.h"

#include <string_view>

namespace cli::pages {

namespace {

/// Between two arguments of a call.
constexpr char kBreak[] = " \\\n            ";

std::string withBackslashes(const std::string& text, const char* special)
{
    std::string escaped;
    for (const char character : text) {
        if (std::string_view(special).find(character) != std::string_view::npos) {
            escaped += '\\';
        }
        escaped += character;
    }
    return escaped;
}

/// What completes a value: a message, then an action.
std::string zshValue(const OptionFacts& value)
{
    std::string text = ":" + withBackslashes(value.form, "\\:") + ":";
    switch (value.kind) {
    case ValueKind::kChoice:
        text += "(";
        for (const std::string& choice : value.choices) {
            text += (text.ends_with('(') ? "" : " ") + withBackslashes(choice, "\\:() ");
        }
        return text + ")";
    case ValueKind::kFolder:
        return text + "_files -/";
    case ValueKind::kFile:
        return text + "_files";
    case ValueKind::kText:
    case ValueKind::kNone:
        break;
    }
    return text + " ";
}

/// One for each name of the option; when one of them was given, none is proposed again.
std::string zshOption(const OptionFacts& option)
{
    const bool hasValue = option.kind != ValueKind::kNone;
    std::string before = "*";
    if (!option.isRepeatable) {
        before = "(";
        for (const std::string& name : option.names) {
            before += (before.size() > 1 ? " " : "") + name;
        }
        before += ")";
    }
    std::string text;
    for (const std::string& name : option.names) {
        text += kBreak + shellWord(before + name + (hasValue && name.starts_with("--") ? "=" : "") + "[" +
                                   withBackslashes(option.help, "\\[]") + "]" + (hasValue ? zshValue(option) : ""));
    }
    return text;
}

std::string zshArguments(const CommandFacts& command)
{
    std::string text;
    for (const OptionFacts& option : command.options) {
        text += zshOption(option);
    }
    for (const OptionFacts& argument : command.arguments) {
        text += kBreak + shellWord((argument.isRepeatable ? "*" : "") + zshValue(argument));
    }
    return text;
}

} // namespace

std::string zshCompletion(const ToolFacts& tool)
{
    std::string text = "#compdef kestbundle\n"
                       "# Completion of kestbundle for zsh. Made from the definitions of its command line.\n\n"
                       "_kestbundle()\n{\n"
                       "    local context state state_descr line\n"
                       "    local -a subcommands\n"
                       "    typeset -A opt_args\n"
                       "    _arguments -C" +
                       zshArguments(tool.tool) + kBreak + "'1: :->subcommand'" + kBreak + "'*:: :->argument'\n";
    std::string names;
    std::string branches;
    for (const CommandFacts& subcommand : tool.subcommands) {
        names += kBreak + shellWord(withBackslashes(subcommand.name, ":") + ":" + subcommand.summary);
        branches += "        " + subcommand.name + ")\n            _arguments" + zshArguments(subcommand) +
                    "\n            ;;\n";
    }
    text += "    case $state in\n"
            "    subcommand)\n"
            "        subcommands=(" +
            names +
            ")\n"
            "        _describe subcommand subcommands\n"
            "        ;;\n"
            "    argument)\n"
            "        case $line[1] in\n" +
            branches +
            "        esac\n"
            "        ;;\n"
            "    esac\n"
            "}\n\n"
            "_kestbundle \"$@\"\n";
    return text;
}

} // namespace cli::pages
