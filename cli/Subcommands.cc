#include "cli/Subcommands.h"

#include "cli/CheckCommand.h"
#include "cli/ExplainCommand.h"
#include "cli/GraphCommand.h"
#include "cli/ListCommand.h"
#include "cli/LogCommand.h"
#include "cli/MenusCommand.h"
#include "cli/NearestName.h"
#include "cli/NewCommand.h"
#include "cli/ReportLines.h"
#include "cli/RunCommand.h"
#include "cli/SchemaCommand.h"

#include <CLI/CLI.hpp>
#include <optional>
#include <string>
#include <vector>

namespace cli {

namespace {

using AddSubcommand = void (*)(CLI::App& app, Action& chosen);

constexpr AddSubcommand kSubcommands[] = {
    addRunCommand,   addNewCommand,   addListCommand, addExplainCommand, addCheckCommand,
    addGraphCommand, addMenusCommand, addLogCommand,  addSchemaCommand,
};

/// What could have stood in place of an argument: the options of `app`, or its subcommands.
std::vector<std::string> namesLike(const CLI::App& app, const std::string& argument)
{
    std::vector<std::string> names;
    if (argument.starts_with('-')) {
        for (const CLI::Option* option : app.get_options()) {
            names.push_back(option->get_name());
        }
    } else {
        for (const CLI::App* subcommand : app.get_subcommands({})) {
            names.push_back(subcommand->get_name());
        }
    }
    return names;
}

std::string didYouMean(const CLI::App& app, const std::string& argument)
{
    const std::optional<std::string> nearest = nearestName(argument, namesLike(app, argument));
    return nearest ? "; did you mean \"" + *nearest + "\"?" : "";
}

} // namespace

void defineCommandLine(CLI::App& app, Action& chosen)
{
    app.name("kestbundle");
    app.description("Runs and examines plug-in bundles.");
    app.set_version_flag("--version", "kestbundle " KEST_VERSION);
    app.require_subcommand(1);
    app.footer("\"kestbundle SUBCOMMAND --help\" says more.");
    for (const AddSubcommand add : kSubcommands) {
        add(app, chosen);
    }
}

std::string explainRefusal(const CLI::App& app, const CLI::ParseError& error)
{
    const std::vector<CLI::App*> called = app.get_subcommands();
    const CLI::App& refusing = called.empty() || !app.remaining().empty() ? app : *called.front();
    std::string text = shown(std::string(error.what()));
    // What is left over of the command line is the likeliest cause, also when the complaint is that something lacks.
    if (const std::vector<std::string> unexpected = refusing.remaining(); !unexpected.empty()) {
        const std::string& first = unexpected.front();
        const bool isSubcommand = &refusing == &app && !first.starts_with('-');
        text = isSubcommand ? quoted(shown(first)) + " is no subcommand"
                            : "The argument " + quoted(shown(first)) + " was not expected";
        text += didYouMean(refusing, first);
    }
    return text + "\nRun \"kestbundle " + (&refusing == &app ? "" : refusing.get_name() + " ") +
           "--help\" for how it is used.";
}

} // namespace cli
