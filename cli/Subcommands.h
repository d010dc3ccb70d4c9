// All subcommands of the tool, in the order in which its help lists them.
#pragma once

#include "cli/Subcommand.h"

#include <string>

namespace CLI {
class ParseError;
} // namespace CLI

namespace cli {

/// Gives `app` the tool's name, options and subcommands. When it is parsed, the subcommand that was called sets
/// `chosen`, which must outlive `app`.
void defineCommandLine(CLI::App& app, Action& chosen);

/// What is wrong with a command line that `app` refused with `error`, in UTF-8: with the nearest known name, if one is
/// near, and where to read on.
std::string explainRefusal(const CLI::App& app, const CLI::ParseError& error);

} // namespace cli
