// KB3xx: what a bundle requires of the host.
#pragma once

#include "cli/rules/RuleInput.h"

namespace cli {

inline constexpr Rule kWrongProductVersion{"KB301", "wrong-product-version", Severity::kError,
                                           "The host's product version is outside the required range."};
inline constexpr Rule kWrongOS{"KB302", "wrong-os", Severity::kError, "The bundle requires another operating system."};
inline constexpr Rule kWrongArchitecture{"KB303", "wrong-architecture", Severity::kError,
                                         "The bundle requires another architecture, or names none."};
inline constexpr Rule kWrongPlatform{"KB304", "wrong-platform", Severity::kError,
                                     "The bundle requires another host product."};
inline constexpr Rule kVernumTooShort{"KB305", "vernum-too-short", Severity::kNote,
                                      "The host does not say its operating system and architecture."};
inline constexpr Rule kArchitectureParts{"KB306", "architecture-parts", Severity::kNote,
                                         "Only the part of Architecture before the first \"_\" counts."};
inline constexpr Rule kBoundWithoutNumber{"KB307", "bound-without-number", Severity::kWarning,
                                          "A bound of the product version is no number, or zero."};
inline constexpr Rule kUnreadRequirements{"KB308", "unread-requirements", Severity::kWarning,
                                          "RuntimeRequirements stand where nobody looks for them."};

std::vector<const Rule*> requirementRules();

void addRequirementFindings(const BundleInput& input, Findings& findings);

} // namespace cli
