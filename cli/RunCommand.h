// The subcommand "run": starts the stand-alone host with the installed bundles and says what came of it.
#pragma once

#include "cli/HostOptions.h"
#include "cli/Subcommand.h"

#include <string>
#include <vector>

namespace cli {

/// What the command line says. Texts are narrow, in the encoding of the global locale.
struct RunOptions
{
    HostOptions host;
    std::vector<std::string> commands; ///< in the order given
    bool interactive = false;
    bool json = false;
};

/// Adds the subcommand to `app`; when it is called, `chosen` becomes what it does.
void addRunCommand(CLI::App& app, Action& chosen);

/// Runs. Returns the exit status: 0 when all went well, 1 when something in the run did not, 2 for wrong use.
int run(const RunOptions& options);

} // namespace cli
