// All subcommands of the tool, in the order in which its help lists them.
#pragma once

#include <functional>
#include <string>

namespace CLI {
class App;
class ParseError;
} // namespace CLI

namespace cli {

/// What a subcommand does once the command line is understood; returns the exit status. Throws WrongUse.
using Action = std::function<int()>;

/// Gives `app` the tool's name, options and subcommands. When it is parsed, the subcommand that was called sets
/// `chosen`, which must outlive `app`.
void defineCommandLine(CLI::App& app, Action& chosen);

/// What is wrong with a command line that `app` refused with `error`, in UTF-8: with the nearest known name, if one is
/// near, and where to read on.
std::string explainRefusal(const CLI::App& app, const CLI::ParseError& error);

} // namespace cli
