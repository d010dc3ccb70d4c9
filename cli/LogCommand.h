// The subcommand "log": the error log, each record explained.
#pragma once

#include "cli/HostOptions.h"
#include "cli/Subcommand.h"

#include <string>

namespace cli {

struct LogOptions
{
    HostOptions host;
    std::string file; ///< narrow; empty: the log of the home folder
    bool json = false;
};

/// Adds the subcommand to `app`; when it is called, `chosen` becomes what it does.
void addLogCommand(CLI::App& app, Action& chosen);

/// Explains. Returns 0 when nothing is logged, 1 when something is or the log is cut off. Throws WrongUse when the log
/// cannot be read or is none.
int log(const LogOptions& options);

} // namespace cli
