// What becomes of a component, in words.
#pragma once

#include "cli/Examination.h"

#include <string>

namespace cli {

/// The word for `outcome` in all reports; stable, since scripts read it.
const char* nameOf(ComponentOutcome outcome);

/// What will happen to `component`, in UTF-8 for one line: "is loaded at start-up", "is loaded when CUT is used".
std::string fateOf(const ExaminedBundle& bundle, const ExaminedComponent& component);

} // namespace cli
