// Findings as scripts read them, in one form in all subcommands.
#pragma once

#include "cli/Finding.h"

#include <nlohmann/json.hpp>

namespace cli {

nlohmann::ordered_json findingJson(const Finding& finding);
nlohmann::ordered_json findingsJson(const Findings& findings);

} // namespace cli
