// KB20x: the elements and attributes of a manifest, and where they stand.
#pragma once

#include "cli/rules/LintInput.h"

#include <vector>

namespace cli {

inline constexpr Rule kMisspeltElement{"KB201", "misspelt-element", Severity::kWarning,
                                       "An element is not known, and its name is near to a known one."};
inline constexpr Rule kMisspeltAttribute{"KB202", "misspelt-attribute", Severity::kWarning,
                                         "An attribute is not known, and its name is near to a known one."};
inline constexpr Rule kNameLetterCase{"KB203", "name-letter-case", Severity::kError,
                                      "The name of an element or attribute has the wrong letter case."};
inline constexpr Rule kMisplacedElement{"KB204", "misplaced-element", Severity::kWarning,
                                        "An element stands where it is not looked for."};
inline constexpr Rule kRepeatedElement{"KB205", "repeated-element", Severity::kWarning,
                                       "Of several elements of a kind only the last one counts."};
inline constexpr Rule kUnknownElement{"KB206", "unknown-element", Severity::kNote, "An element is not known."};
inline constexpr Rule kUnknownAttribute{"KB207", "unknown-attribute", Severity::kNote, "An attribute is not known."};
inline constexpr Rule kNestedElement{"KB208", "nested-element", Severity::kError,
                                     "An element stands inside another of its own kind."};
inline constexpr Rule kCutOffElement{"KB209", "cut-off-element", Severity::kError,
                                     "An element stands behind what counts as the end of the one that it is in."};

std::vector<const Rule*> formRules();

void addFormFindings(const ManifestInput& input, Findings& findings);

} // namespace cli
