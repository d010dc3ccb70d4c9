// Scripts and managed assemblies that failed before an engine could tell the host of them: since the engine, or what
// the engine needs, is not installed.
#pragma once

#include "cli/RunReport.h"

#include <string>

namespace cli {

/// Adds to report.scripts those that the log says failed while starting, with the reason as far as it can be found out
/// after the fact. The bundles are judged already.
void addUntoldFailures(RunReport& report);

/// The same for the component that brings the command `name`, once what happened during `command` is collected.
void addUntoldFailure(RunReport& report, const std::wstring& name, std::size_t command);

/// Why the command `name`, which stayed unknown during `command`, was not brought: the first component that failed, or
/// a script that was passed over. Empty when neither is known. UTF-8, one line.
std::string loadingProblemOf(const RunReport& report, const std::wstring& name, std::size_t command);

} // namespace cli
