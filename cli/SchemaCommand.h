// The subcommand "schema": prints the XML schema of manifests.
#pragma once

#include "cli/Subcommand.h"

namespace cli {

/// Adds the subcommand to `app`; when it is called, `chosen` becomes what it does.
void addSchemaCommand(CLI::App& app, Action& chosen);

} // namespace cli
