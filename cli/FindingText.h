// Findings as people read them, in one form in all subcommands.
#pragma once

#include "cli/Finding.h"

#include <string>

namespace cli {

/// "error", in colour when there are colours.
std::string severityText(Severity severity, bool hasColours);

/// "PackageContents.xml:5:3": the file without the folder `bundle`, in which most of them lie; empty without a file.
std::string placeText(const Place& place, const std::wstring& bundle);

/// All of a finding: a head line, its sentence, and what was expected, found and is to be changed, indented below.
std::string findingText(const Finding& finding, bool hasColours);

/// A finding in one line.
std::string findingLine(const Finding& finding, bool hasColours);

/// "2 errors, 1 warning, 3 notes"; empty when there are none.
std::string findingCounts(const Findings& findings);

} // namespace cli
