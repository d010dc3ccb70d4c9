// The list of bundles, for people and for scripts.
#pragma once

#include "cli/Examination.h"

#include <string>

namespace cli {

/// A table in UTF-8. Colours are for terminals only.
std::string listText(const Examination& examination, bool hasColours);

/// One JSON document, as docs/list-json.md describes it. `exitStatus` is what the tool returns.
std::string listJson(const Examination& examination, int exitStatus);

} // namespace cli
