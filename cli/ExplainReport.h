// The explanation, for people and for scripts.
#pragma once

#include "cli/Explanation.h"

#include <string>

namespace cli {

/// For people, in UTF-8: everything about what was asked for, or a few lines about each bundle.
std::string explainText(const Explanation& explanation, bool hasColours);

/// One JSON document, as docs/explain-json.md describes it. `exitStatus` is what the tool returns.
std::string explainJson(const Explanation& explanation, int exitStatus);

} // namespace cli
