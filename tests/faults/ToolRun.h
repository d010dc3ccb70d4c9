// The command, run in a process of its own that is forked from this one: everything is loaded already, and a fault can
// be set for it.
#pragma once

#include "tests/faults/FaultPoint.h"

#include <string>
#include <vector>

/// What cli/main.cc defines; it is built under this name for these programs.
int kestbundleMain(int argumentCount, char** arguments);

namespace faults {

/// What a run left behind.
struct ToolRun
{
    int status = 0;       ///< the exit status; 128 and the signal when one ended it
    std::string output;   ///< standard output
    std::string errors;   ///< standard error
    std::string leftOpen; ///< descriptors that were not open before, "5 -> /dev/null" and so on
    Progress progress;
};

/// Exit status of a run in which a sanitizer found something.
inline constexpr int kSanitizerStatus = 99;

/// Runs the command with `arguments`; call number `which` fails in the way `way`, none when that is 0. What is printed
/// is kept in files in `folder` meanwhile. A run that takes longer than `seconds` is ended.
ToolRun runTool(const std::string& folder, std::vector<std::string> arguments, const Way& way, long which,
                unsigned seconds, bool isShown);

/// Calls `task` in a process of its own; returns what it returned.
std::string inOtherProcess(const std::string& folder, std::string (*task)(const std::string&),
                           const std::string& argument);

/// The bytes of the file at `path`; empty when it cannot be read.
std::string contentOf(const std::string& path);

} // namespace faults
