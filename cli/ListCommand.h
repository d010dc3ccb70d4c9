// The subcommand "list": every bundle in the three roots, and its one final state.
#pragma once

#include "cli/HostOptions.h"
#include "cli/Subcommand.h"

namespace cli {

struct ListOptions
{
    HostOptions host;
    bool json = false;
};

/// Adds the subcommand to `app`; when it is called, `chosen` becomes what it does.
void addListCommand(CLI::App& app, Action& chosen);

/// Lists. Returns 0 when every bundle is loaded, 1 when one is not or something in it fails.
int list(const ListOptions& options);

} // namespace cli
