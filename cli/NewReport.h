// What "kestbundle new" says when it has made a bundle.
#pragma once

#include "cli/NewBundle.h"
#include "cli/NextSteps.h"

#include <string>
#include <vector>

namespace cli {

struct NewBundleReport
{
    NewBundle bundle;
    std::string folder;             ///< the bundle's own, absolute, narrow
    std::vector<std::string> files; ///< in the folder, in the order in which they were made
    std::vector<NextStep> next;
};

/// For people.
std::string newBundleText(const NewBundleReport& report);

/// For programs: one JSON document, described in docs/new-json.md.
std::string newBundleJson(const NewBundleReport& report);

} // namespace cli
