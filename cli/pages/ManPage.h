// Pages of the manual.
#pragma once

#include "cli/pages/CommandFacts.h"

namespace cli::pages {

/// The page of one of the tool's commands, or of the tool itself, in the macros of man(7).
std::string manPage(const ToolFacts& tool, const CommandFacts& command);

} // namespace cli::pages
