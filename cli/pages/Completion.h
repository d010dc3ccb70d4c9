// Completion of the tool's command lines by shells.
#pragma once

#include "cli/pages/CommandFacts.h"

namespace cli::pages {

/// A script for bash, which defines the function "_kestbundle" and has it complete "kestbundle".
std::string bashCompletion(const ToolFacts& tool);

/// A function file for zsh, "_kestbundle".
std::string zshCompletion(const ToolFacts& tool);

} // namespace cli::pages
