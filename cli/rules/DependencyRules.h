// KB4xx: identities of bundles, and dependencies between them.
#pragma once

#include "cli/rules/RuleInput.h"

namespace cli {

inline constexpr Rule kMissingDependency{"KB401", "missing-dependency", Severity::kError,
                                         "A bundle that this one depends on is not installed."};
inline constexpr Rule kDroppedDependency{"KB402", "dropped-dependency", Severity::kError,
                                         "A bundle that this one depends on was dropped."};
inline constexpr Rule kWaitingDependency{"KB403", "waiting-dependency", Severity::kError,
                                         "A bundle that this one depends on waits itself."};
inline constexpr Rule kDependencyCycle{"KB404", "dependency-cycle", Severity::kError,
                                       "Bundles depend on each other in a circle."};
inline constexpr Rule kSelfDependency{"KB405", "self-dependency", Severity::kError, "A bundle depends on itself."};
inline constexpr Rule kDependencyNeverLoads{"KB406", "dependency-never-loads", Severity::kError,
                                            "A bundle that this one depends on has nothing to load."};
inline constexpr Rule kLoadingEndedEarly{"KB407", "loading-ended-early", Severity::kError,
                                         "Bundles with nothing to load made the loading end early."};
inline constexpr Rule kVersionsNotCompared{"KB408", "versions-not-compared", Severity::kNote,
                                           "The version range of a dependency is not looked at."};
inline constexpr Rule kNoUpgradeCode{"KB409", "no-upgrade-code", Severity::kWarning,
                                     "A bundle without UpgradeCode has no identity."};
inline constexpr Rule kRepeatedUpgradeCode{"KB410", "repeated-upgrade-code", Severity::kWarning,
                                           "Several bundles have the same UpgradeCode."};
inline constexpr Rule kDependencyWithoutCode{"KB411", "dependency-without-code", Severity::kWarning,
                                             "A DependentBundle without UpgradeCode is passed over."};
inline constexpr Rule kNoApplicationPackage{"KB412", "no-application-package", Severity::kWarning,
                                            "The manifest has no ApplicationPackage element."};
/// In place of kMissingDependency where only some bundles are looked at.
inline constexpr Rule kDependencyElsewhere{"KB413", "dependency-elsewhere", Severity::kNote,
                                           "A bundle depends on one that is not among those checked."};

std::vector<const Rule*> dependencyRules();

void addDependencyFindings(const BundleInput& input, Findings& findings);

} // namespace cli
