#include "cli/pages/ManPage.h"

#include "cli/Shown.h"
#include "manifest/BundleStrConst.h"

#include <algorithm>

namespace cli::pages {

namespace {

/// `text` as it is to be read: none of its characters is an instruction for the formatter.
std::string plain(const std::string& text)
{
    std::string escaped;
    for (const char character : text) {
        switch (character) {
        case '\\':
            escaped += "\\e";
            break;
        case '-':
            escaped += "\\-";
            break;
        case '\'':
            escaped += "\\(aq";
            break;
        case '`':
            escaped += "\\(ga";
            break;
        case '^':
            escaped += "\\(ha";
            break;
        case '~':
            escaped += "\\(ti";
            break;
        default:
            escaped += character;
        }
    }
    return escaped.starts_with('.') ? "\\&" + escaped : escaped;
}

std::string bold(const std::string& text)
{
    return "\\fB" + plain(text) + "\\fR";
}

std::string italic(const std::string& text)
{
    return "\\fI" + plain(text) + "\\fR";
}

std::string section(const std::string& title)
{
    return ".SH " + title + "\n";
}

/// A paragraph with a label that hangs over.
std::string item(const std::string& label, const std::string& text)
{
    return ".TP\n" + label + "\n" + plain(text) + "\n";
}

std::string valueOf(const OptionFacts& option)
{
    return option.kind == ValueKind::kNone ? "" : " " + italic(option.form);
}

std::string synopsisOf(const OptionFacts& option)
{
    const std::string text = option.names.empty() ? italic(option.form) : bold(option.names.back()) + valueOf(option);
    return (option.isRequired ? text : "[" + text + "]") + (option.isRepeatable ? " ...\\&" : "") + "\n";
}

std::string synopsis(const CommandFacts& command)
{
    std::string text = section("SYNOPSIS") + ".HP\n" + bold(command.callName()) + "\n";
    for (const OptionFacts& option : command.options) {
        text += synopsisOf(option);
    }
    for (const OptionFacts& argument : command.arguments) {
        text += synopsisOf(argument);
    }
    return text + (command.name.empty() ? italic("SUBCOMMAND") + " ...\\&\n" : "");
}

std::string described(const OptionFacts& option)
{
    std::string label;
    for (const std::string& name : option.names) {
        label += (label.empty() ? "" : ", ") + bold(name);
    }
    std::string help = option.help + ".";
    if (!option.choices.empty()) {
        help += " One of:";
        for (const std::string& choice : option.choices) {
            help += (&choice == &option.choices.front() ? " " : ", ") + choice;
        }
        help += ".";
    }
    return item(label.empty() ? italic(option.form) : label + valueOf(option), help);
}

std::string options(const CommandFacts& command)
{
    std::string text = section("OPTIONS");
    for (const OptionFacts& option : command.options) {
        text += described(option);
    }
    return text;
}

std::string examples(const std::vector<ExampleFacts>& all)
{
    std::string text = all.empty() ? "" : section("EXAMPLES");
    for (const ExampleFacts& example : all) {
        text += item(bold(example.command), example.explanation);
    }
    return text;
}

std::string files()
{
    using namespace BundleStrConst;
    const auto path = [](const std::wstring& wide) { return plainUtf8(wide); };
    return section("FILES") +
           item(italic("~/" + path(bundle_UserPath)), "The bundles of one user, folders whose names end in .bundle.") +
           item(italic(path(bundle_AllUserPath)), "The bundles for all users.") +
           item(italic(path(xml_FileNameConst)), "The manifest, directly in the bundle folder.") +
           item(italic("~/" + bundle_ErrorLogPath), "The error log. It is emptied at each start.");
}

std::string seeAlso(const ToolFacts& tool, const CommandFacts& command)
{
    std::vector<std::string> pages;
    const auto add = [&](const CommandFacts& other) {
        if (&other != &command) {
            pages.push_back(other.pageName());
        }
    };
    add(tool.tool);
    std::ranges::for_each(tool.subcommands, add);
    std::string text = section("SEE ALSO");
    for (const std::string& page : pages) {
        text += bold(page) + "(1)" + (&page == &pages.back() ? "\n" : ",\n");
    }
    return text;
}

std::string description(const ToolFacts& tool, const CommandFacts& command)
{
    std::string text =
        section("DESCRIPTION") + plain(command.summary) + (command.summary.ends_with('.') ? "\n" : ".\n");
    for (const std::string& remark : command.remarks) {
        text += ".PP\n" + plain(remark) + "\n";
    }
    for (const OptionFacts& argument : command.arguments) {
        text += described(argument);
    }
    if (command.name.empty()) {
        for (const CommandFacts& subcommand : tool.subcommands) {
            text += item(bold(subcommand.name), subcommand.summary + ".");
        }
    }
    return text;
}

/// The first example of every subcommand.
std::vector<ExampleFacts> examplesOfAll(const ToolFacts& tool)
{
    std::vector<ExampleFacts> all;
    for (const CommandFacts& subcommand : tool.subcommands) {
        if (!subcommand.examples.empty()) {
            all.push_back(subcommand.examples.front());
        }
    }
    return all;
}

/// Without the point at its end, which the page's first line has not.
std::string nameLine(const CommandFacts& command)
{
    std::string summary = command.summary;
    if (summary.ends_with('.')) {
        summary.pop_back();
    }
    return section("NAME") + plain(command.pageName()) + " \\- " + plain(summary) + "\n";
}

std::string upper(std::string text)
{
    std::ranges::transform(text, text.begin(), [](char one) {
        return one >= 'a' && one <= 'z' ? static_cast<char>(one - 'a' + 'A') : one;
    });
    return text;
}

} // namespace

std::string manPage(const ToolFacts& tool, const CommandFacts& command)
{
    const bool isTool = command.name.empty();
    const std::string exitStatus =
        isTool ? "0 all went well, 1 there is something to tell, 2 wrong use." : command.exitStatus;
    return ".TH " + upper(command.pageName()) + " 1 \"\" \"kestbundle " + tool.version + "\" \"User Commands\"\n" +
           ".nh\n.ad l\n" + nameLine(command) + synopsis(command) + description(tool, command) + options(command) +
           examples(isTool ? examplesOfAll(tool) : command.examples) +
           (exitStatus.empty() ? "" : section("EXIT STATUS") + plain(exitStatus) + "\n") + files() +
           seeAlso(tool, command);
}

} // namespace cli::pages
