// The subcommand "graph": bundles and what they depend on, as a picture.
#pragma once

#include "cli/HostOptions.h"
#include "cli/Subcommand.h"
#include "cli/graph/NodeContent.h"

#include <string>
#include <vector>

namespace cli {

struct GraphOptions
{
    HostOptions host;
    std::string format = "tree"; ///< "tree", "dot", "mermaid" or "svg"
    bool json = false;
    PictureOptions picture;
    std::vector<std::string> bundles; ///< narrow; none: all
};

/// Adds the subcommand to `app`; when it is called, `chosen` becomes what it does.
void addGraphCommand(CLI::App& app, Action& chosen);

/// Draws. Returns 0 when each bundle finds loaded what it depends on, 1 when one does not. Throws WrongUse when a
/// bundle that is asked for is none.
int graph(const GraphOptions& options);

} // namespace cli
