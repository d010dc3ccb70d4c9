// The table of all rules.
#pragma once

#include "cli/Finding.h"

#include <vector>

namespace cli {

/// All rules, ordered by their codes.
std::vector<const Rule*> allRules();

} // namespace cli
