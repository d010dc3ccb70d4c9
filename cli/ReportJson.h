// A report for programs: one JSON document, described in docs/run-json.md.
#pragma once

#include "cli/RunReport.h"

#include <string>

namespace cli {

/// The number that stands under "format". It grows when a reader of the old document would misread the new one.
inline constexpr int kReportFormat = 1;

/// The whole report, UTF-8, ended by a line end. `exitStatus` is what the tool is about to return.
std::string reportJson(const RunReport& report, int exitStatus);

} // namespace cli
