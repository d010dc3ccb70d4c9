// The options that say which host a subcommand is about: its home, its program folder, what it says it is.
#pragma once

#include "standalone/Host.h"

#include <string>

namespace CLI {
class App;
class Option;
} // namespace CLI

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
void addHostOptions(CLI::App& subcommand, HostOptions& options);

/// Adds an option with one value of the form `form`, which must not be empty; the last one given counts.
CLI::Option* addTextOption(CLI::App& subcommand, const std::string& name, std::string& target, const std::string& form,
                           const std::string& help);

/// Sets HOME to the folder asked for and returns the settings of that host. Throws WrongUse when a folder is missing.
standalone::HostSettings settingsFrom(const HostOptions& options);

} // namespace cli
