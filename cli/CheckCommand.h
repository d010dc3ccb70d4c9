// "kestbundle check": bundle folders are looked through before they are shipped.
#pragma once

#include "cli/Subcommand.h"

#include <string>
#include <vector>

namespace cli {

/// Texts are narrow; an empty one was not given.
struct CheckOptions
{
    std::vector<std::string> paths;
    std::string format = "text";
    bool isJson = false;
    bool isStrict = false;
    std::string hostVersion;
    std::string os;
    std::string architecture;
    std::string product;
};

void addCheckCommand(CLI::App& app, Action& chosen);

/// Checks, prints and returns the exit status. Throws WrongUse.
int check(const CheckOptions& options);

} // namespace cli
