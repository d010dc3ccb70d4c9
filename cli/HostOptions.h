// The options that say which host a subcommand is about: its home, its program folder, what it says it is.
#pragma once

#include "cli/Subcommand.h"
#include "standalone/Host.h"

#include <string>

namespace cli {

/// Texts are narrow, in the encoding of the global locale; an empty one was not given.
struct HostOptions
{
    std::string home;       ///< empty: the environment's HOME
    std::string programDir; ///< empty: the tool's own folder
    std::string vernum;
    std::string product;
    std::string config;
};

/// Adds the options to `subcommand`; `options`, which must outlive it, are filled when it is parsed.
void addHostOptions(Subcommand& subcommand, HostOptions& options);

/// Sets HOME to the folder asked for and returns the settings of that host. Throws WrongUse when a folder is missing.
standalone::HostSettings settingsFrom(const HostOptions& options);

} // namespace cli
