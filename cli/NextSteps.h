// What is to be done with a new bundle until it runs.
#pragma once

#include "cli/NewBundle.h"

#include <string>
#include <vector>

namespace cli {

/// A command line for a shell, in UTF-8.
struct NextStep
{
    std::string kind; ///< "build", "prepare" (the system), "check", "install" (the bundle) or "run"
    std::string command;
};

/// Where a new bundle lies. Paths are narrow and absolute.
struct NewPlace
{
    std::string installation; ///< the folder that "bin" with this tool is in
    std::string bundle;
    std::string ownBundles; ///< where it is to be put for hosts to find it; empty: it lies there
    std::string home;       ///< as the option "--home" gave it
};

std::vector<NextStep> nextSteps(const NewBundle& bundle, const NewPlace& place, bool isPythonThere);

} // namespace cli
