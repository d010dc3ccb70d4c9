// The subcommand "run": starts the stand-alone host with the installed bundles and says what came of it.
#pragma once

#include <string>
#include <vector>

namespace CLI {
class App;
}

namespace cli {

/// What the command line says. Texts are narrow, in the encoding of the global locale.
struct RunOptions
{
    std::string home;       ///< empty: the environment's HOME
    std::string programDir; ///< empty: the tool's own folder
    std::string vernum;
    std::string product;
    std::string config;
    std::vector<std::string> commands; ///< in the order given
    bool interactive = false;
    bool json = false;
};

/// Adds the subcommand to `app`; `options`, which must outlive it, are filled when it is parsed.
CLI::App* addRunCommand(CLI::App& app, RunOptions& options);

/// Runs. Returns the exit status: 0 when all went well, 1 when something in the run did not, 2 for wrong use.
int run(const RunOptions& options);

} // namespace cli
