// The list of bundles, for people and for scripts.
#pragma once

#include "cli/Examination.h"
#include "cli/Finding.h"

#include <cstddef>
#include <string>

namespace cli {

/// How a table may look.
struct TableLook
{
    std::size_t width = 0; ///< columns of the terminal; 0: as many as it takes
    bool hasColours = false;
};

/// A table in UTF-8. `reasons` are those of findReasons(): the first one stands below each bundle that does not load.
std::string listText(const Examination& examination, const Findings& reasons, TableLook look);

/// One JSON document, as docs/list-json.md describes it. `exitStatus` is what the tool returns.
std::string listJson(const Examination& examination, const Findings& reasons, int exitStatus);

} // namespace cli
