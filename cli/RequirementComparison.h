// What a bundle requires of the host beside what the host is. The autoloader has compared the two; its verdict is taken
// from what it logged.
#pragma once

#include "cli/Examination.h"

#include <optional>
#include <string>
#include <vector>

namespace cli {

enum class Requirement
{
    kProductVersion,
    kOS,
    kArchitecture,
    kPlatform,
};

struct RequirementComparison
{
    Requirement requirement = Requirement::kProductVersion;
    std::wstring required; ///< as it is compared: of an architecture the part before the first "_"
    std::wstring found;
    bool isMade = false; ///< else the autoloader does not compare: nothing is required, or VERNUM is too short
    bool isMet = true;
};

/// "product version", "OS", "architecture" or "platform": the word in all reports; stable, since scripts read it.
const char* nameOf(Requirement requirement);

/// The comparisons for the last RuntimeRequirements element that was read, in the order in which they are made. Empty
/// when none was read.
std::vector<RequirementComparison> comparisonsOf(const Examination& examination, const ExaminedBundle& bundle);

/// The fields of VERNUM.
std::vector<std::wstring> vernumFields(const Examination& examination);

/// Whether VERNUM has as many fields as it takes to compare the operating system and the architecture.
bool isVernumCompared(const Examination& examination);

} // namespace cli
