// The subcommand "new": makes a bundle that loads, to begin with.
#pragma once

#include "cli/Subcommand.h"

namespace cli {

/// Adds the subcommand to `app`; when it is called, `chosen` becomes what it does.
void addNewCommand(CLI::App& app, Action& chosen);

} // namespace cli
