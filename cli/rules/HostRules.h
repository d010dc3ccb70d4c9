// KB9xx: the host itself, its error log and its configuration.
#pragma once

#include "cli/rules/RuleInput.h"

namespace cli {

inline constexpr Rule kLogNotOpened{"KB901", "log-not-opened", Severity::kWarning,
                                    "The error log cannot be written, so nothing is ever logged."};
inline constexpr Rule kHostNotice{"KB902", "host-notice", Severity::kWarning, "The host itself has a problem."};
inline constexpr Rule kStartCutShort{"KB903", "start-cut-short", Severity::kError,
                                     "An error ended the start before all bundles had their turn."};

/// In place of kComponentFails and kFirstUseFails where it is not the bundle's fault.
inline constexpr Rule kEngineMissing{"KB904", "engine-missing", Severity::kNote,
                                     "An engine is not installed here, so less can be told of a component."};

std::vector<const Rule*> hostRules();

void addHostFindings(const Examination& examination, Findings& findings);

} // namespace cli
