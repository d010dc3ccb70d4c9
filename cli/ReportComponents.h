// The parts of the report for people that say what was loaded, by which engine, and how long that took.
#pragma once

#include "cli/RunReport.h"

#include <optional>
#include <string>

namespace cli {

/// Modules, scripts, assemblies and engines of the start, or of the command `command`, in the order in which they
/// began. UTF-8; empty when there are none.
std::string componentsText(const RunReport& report, std::optional<std::size_t> command);

/// The same for LISP expressions.
std::string expressionsText(const RunReport& report, std::optional<std::size_t> command);

} // namespace cli
