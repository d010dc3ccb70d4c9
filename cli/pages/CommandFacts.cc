#include "cli/pages/CommandFacts.h"

#include "cli/Subcommands.h"

#include <CLI/CLI.hpp>
#include <sstream>
#include <string_view>

namespace cli::pages {

namespace {

ValueKind kindOfForm(std::string_view form)
{
    if (form == "DIR" || form == "FOLDER" || form == "BUNDLE") {
        return ValueKind::kFolder;
    }
    return form == "FILE" || form == "PATH" ? ValueKind::kFile : ValueKind::kText;
}

/// The texts between the commas of "{one,other}"; none when `text` has another form.
std::vector<std::string> choicesIn(const std::string& text)
{
    std::vector<std::string> choices;
    if (text.starts_with('{') && text.ends_with('}')) {
        std::istringstream list(text.substr(1, text.size() - 2));
        for (std::string choice; std::getline(list, choice, ',');) {
            choices.push_back(choice);
        }
    }
    return choices;
}

OptionFacts factsOf(const CLI::Option& option)
{
    OptionFacts facts;
    for (const std::string& name : option.get_snames()) {
        facts.names.push_back("-" + name);
    }
    for (const std::string& name : option.get_lnames()) {
        facts.names.push_back("--" + name);
    }
    facts.help = option.get_description();
    facts.isRequired = option.get_required();
    if (option.get_items_expected_max() == 0) {
        return facts;
    }
    const std::string type = option.get_type_name(); // the form, then what each check says about itself
    const std::size_t colon = type.find(':');
    facts.form = type.substr(0, colon);
    facts.choices = colon == std::string::npos ? std::vector<std::string>() : choicesIn(type.substr(colon + 1));
    facts.kind = facts.choices.empty() ? kindOfForm(facts.form) : ValueKind::kChoice;
    facts.isRepeatable =
        option.get_multi_option_policy() == CLI::MultiOptionPolicy::TakeAll || option.get_items_expected_max() > 1;
    return facts;
}

std::string trimmed(const std::string& line)
{
    const std::size_t begin = line.find_first_not_of(' ');
    return begin == std::string::npos ? "" : line.substr(begin);
}

void addTo(std::string& paragraph, const std::string& line)
{
    paragraph += (paragraph.empty() ? "" : " ") + line;
}

/// Takes the help's last part to pieces: "Examples:" with commands and, further in, their explanations; paragraphs;
/// "Exit status: ...".
void readFooter(const std::string& footer, CommandFacts& facts)
{
    constexpr std::string_view kExitStatus = "Exit status: ";
    std::istringstream lines(footer);
    std::string paragraph;
    const auto endParagraph = [&] {
        if (paragraph.starts_with(kExitStatus)) {
            facts.exitStatus = paragraph.substr(kExitStatus.size());
        } else if (!paragraph.empty()) {
            facts.remarks.push_back(paragraph);
        }
        paragraph.clear();
    };
    for (std::string line; std::getline(lines, line);) {
        if (line.empty() || line == "Examples:") {
            endParagraph();
        } else if (line.starts_with("   ") && !facts.examples.empty()) {
            addTo(facts.examples.back().explanation, trimmed(line));
        } else if (line.starts_with("  ")) {
            facts.examples.push_back({trimmed(line), ""});
        } else {
            addTo(paragraph, line);
        }
    }
    endParagraph();
}

CommandFacts factsOf(const CLI::App& app, const std::string& name)
{
    CommandFacts facts;
    facts.name = name;
    facts.summary = app.get_description();
    for (const CLI::Option* option : app.get_options()) {
        if (!option->get_group().empty()) {
            (option->nonpositional() ? facts.options : facts.arguments).push_back(factsOf(*option));
        }
    }
    readFooter(app.get_footer(), facts);
    return facts;
}

} // namespace

ToolFacts toolFacts()
{
    CLI::App app;
    Action chosen;
    defineCommandLine(app, chosen);
    ToolFacts facts{KEST_VERSION, factsOf(app, ""), {}};
    for (const CLI::App* subcommand : app.get_subcommands([](const CLI::App*) { return true; })) {
        if (!subcommand->get_group().empty()) {
            facts.subcommands.push_back(factsOf(*subcommand, subcommand->get_name()));
        }
    }
    return facts;
}

} // namespace cli::pages
