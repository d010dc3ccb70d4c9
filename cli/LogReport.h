// The explained error log, for people and for scripts.
#pragma once

#include "cli/LogAccount.h"

#include <string>
#include <vector>

namespace cli {

/// A report in UTF-8. Colours are for terminals only.
std::string logText(const LogFile& log, const std::vector<LogEntry>& entries, bool hasColours);

/// One JSON document, as docs/log-json.md describes it. `exitStatus` is what the tool returns.
std::string logJson(const LogFile& log, const std::vector<LogEntry>& entries, int exitStatus);

} // namespace cli
