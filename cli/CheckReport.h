// What "kestbundle check" found, for people and for programs.
#pragma once

#include "cli/CheckTargets.h"
#include "cli/CheckedBundles.h"

#include <string>

namespace cli {

struct CheckReport
{
    const CheckedBundles& checked;
    const CheckTargets& targets;
    bool isStrict = false; ///< warnings count as errors
    int exitStatus = 0;
};

/// How many findings of this severity there are.
std::size_t countOf(const CheckedBundles& checked, Severity severity);

/// The place of a finding; its bundle folder when it has none.
Place placeOf(const Finding& finding);

/// A line for each finding, begun by its place as compilers do it, then a summary.
std::string checkText(const CheckReport& report, bool hasColours);

/// One JSON document; docs/check-json.md describes its form.
std::string checkJson(const CheckReport& report);

/// A log in the Static Analysis Results Interchange Format, version 2.1.0.
std::string checkSarif(const CheckReport& report);

} // namespace cli
