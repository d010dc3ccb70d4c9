// KB21x: the values of a manifest's attributes, and its encoding.
#pragma once

#include "cli/rules/LintInput.h"

#include <vector>

namespace cli {

inline constexpr Rule kNotAWholeNumber{"KB211", "not-a-whole-number", Severity::kWarning,
                                       "A value that is to be a whole number is none."};
inline constexpr Rule kSurroundingBlank{"KB212", "surrounding-blank", Severity::kWarning,
                                        "A value that is compared letter for letter has a blank at its end."};
inline constexpr Rule kEmptySeries{"KB213", "empty-series", Severity::kError,
                                   "No product version lies between SeriesMin and SeriesMax."};
inline constexpr Rule kEmptyVersionRange{"KB214", "empty-version-range", Severity::kWarning,
                                         "No version lies between VersionMin and VersionMax."};
inline constexpr Rule kDamagedText{"KB215", "damaged-text", Severity::kWarning,
                                   "A text was decoded wrongly before it was written."};
inline constexpr Rule kOtherEncoding{"KB216", "other-encoding", Severity::kNote,
                                     "A manifest is written in another encoding than UTF-8."};
inline constexpr Rule kIncompletePackage{"KB217", "incomplete-package", Severity::kNote,
                                         "A bundle does not say what it is called, or which version it is."};
inline constexpr Rule kPartlyReadBound{"KB218", "partly-read-bound", Severity::kWarning,
                                       "Of a bound only the number that it begins with counts."};

std::vector<const Rule*> valueRules();

void addValueFindings(const LintInput& input, Findings& findings);

} // namespace cli
