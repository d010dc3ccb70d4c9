// The subcommand "explain": the whole road of a bundle, a command or a menu, and what stops it.
#pragma once

#include "cli/HostOptions.h"
#include "cli/Subcommand.h"

#include <string>
#include <vector>

namespace cli {

struct ExplainOptions
{
    HostOptions host;
    std::vector<std::string> subjects; ///< narrow, as on the command line; none: everything, briefly
    bool json = false;
};

/// Adds the subcommand to `app`; when it is called, `chosen` becomes what it does.
void addExplainCommand(CLI::App& app, Action& chosen);

/// Explains. Returns 0 when nothing stops what was asked for, 1 when there is an error or a warning. Throws WrongUse
/// when a subject names nothing.
int explain(const ExplainOptions& options);

} // namespace cli
