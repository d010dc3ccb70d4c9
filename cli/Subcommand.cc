#include "cli/Subcommand.h"

#include "cli/NearestName.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <optional>
#include <utility>

namespace cli {

namespace {

std::string joined(const std::vector<std::string>& texts, const std::string& separator)
{
    std::string all;
    for (const std::string& text : texts) {
        all += (all.empty() ? "" : separator) + text;
    }
    return all;
}

CLI::Validator oneOf(const std::vector<std::string>& choices)
{
    const auto check = [choices](const std::string& given) {
        if (std::ranges::find(choices, given) != choices.end()) {
            return std::string();
        }
        const std::optional<std::string> nearest = nearestName(given, choices);
        return "\"" + given + "\" is none of " + joined(choices, ", ") +
               (nearest ? "; did you mean \"" + *nearest + "\"?" : "");
    };
    return {check, "{" + joined(choices, ",") + "}"};
}

CLI::Option* addTexts(CLI::App& app, const std::string& name, std::vector<std::string>& target, const std::string& form,
                      const std::string& help)
{
    const auto take = [&target](const CLI::results_t& given) {
        target = given;
        return true;
    };
    return app.add_option(name, take, help)
        ->type_name(form)
        ->type_size(1)
        ->expected(1)
        ->multi_option_policy(CLI::MultiOptionPolicy::TakeAll)
        ->allow_extra_args(false);
}

} // namespace

Subcommand::Subcommand(CLI::App& app, const std::string& name, const std::string& description)
    : parser(*app.add_subcommand(name, description))
{
}

void Subcommand::flag(const std::string& name, bool& target, const std::string& help, CLI::Option* other)
{
    CLI::Option* const added = parser.add_flag(name, target, help);
    if (other != nullptr) {
        added->excludes(other); // by its name it would be looked up in a function that cannot bear lack of memory
    }
}

CLI::Option* Subcommand::text(const std::string& name, std::string& target, const std::string& form,
                              const std::string& help, ValueCheck check)
{
    if (!check) {
        check = [name](const std::string& given) {
            return given.empty() ? name + " must not be empty" : std::string();
        };
    }
    return parser.add_option(name, target, help)->type_name(form)->take_last()->check(std::move(check));
}

void Subcommand::texts(const std::string& name, std::vector<std::string>& target, const std::string& form,
                       const std::string& help)
{
    addTexts(parser, name, target, form, help);
}

void Subcommand::choices(const std::string& name, std::vector<std::string>& target, const std::string& form,
                         const std::string& help, const std::vector<std::string>& choices)
{
    addTexts(parser, name, target, form, help)->delimiter(',')->check(oneOf(choices));
}

void Subcommand::argument(const std::string& name, std::string& target, const std::string& form,
                          const std::string& help, Presence presence)
{
    parser.add_option(name, target, help)->type_name(form)->required(presence == Presence::kRequired);
}

void Subcommand::arguments(const std::string& name, std::vector<std::string>& target, const std::string& form,
                           const std::string& help, Presence presence)
{
    parser.add_option(name, target, help)->type_name(form)->required(presence == Presence::kRequired);
}

void Subcommand::footer(const std::string& text)
{
    parser.footer(text);
}

void Subcommand::does(Action& chosen, Action action)
{
    parser.callback([&chosen, action = std::move(action)] { chosen = action; });
}

} // namespace cli
