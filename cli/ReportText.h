// A report for people. It comes in three parts, so that what a command prints can stand between them as it comes.
#pragma once

#include "cli/RunReport.h"

#include <string>

namespace cli {

/// What is about to be started, before anything can go wrong. Every text here is UTF-8 and ends with a line end.
std::string hostText(const RunReport& report);

/// What the start brought.
std::string startText(const RunReport& report);

/// The line that opens the part of the command `name`.
std::string commandHeading(const std::wstring& name);

/// What became of the command at `index`.
std::string commandText(const RunReport& report, std::size_t index);

/// The error log, the host's notices and the verdict.
std::string endText(const RunReport& report);

/// The verdict alone, in one line.
std::string verdictText(const Problems& problems);

} // namespace cli
