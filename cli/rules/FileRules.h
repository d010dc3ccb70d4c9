// KB80x: the files that a manifest names, and who may change them.
#pragma once

#include "cli/rules/LintInput.h"

#include <vector>

namespace cli {

inline constexpr Rule kFileMissing{"KB801", "file-missing", Severity::kError,
                                   "A component's file is not in the bundle."};
inline constexpr Rule kFileLetterCase{"KB802", "file-letter-case", Severity::kError,
                                      "A component's file has a name with other letter case."};
inline constexpr Rule kFileNotReadable{"KB803", "file-not-readable", Severity::kError,
                                       "A component's file is none that can be read."};
inline constexpr Rule kOutsideBundle{"KB804", "outside-bundle", Severity::kWarning,
                                     "A path leads out of the bundle folder."};
inline constexpr Rule kAttachmentMissing{"KB805", "attachment-missing", Severity::kWarning,
                                         "The icon or help file of a bundle is not there."};
inline constexpr Rule kWritableByAll{"KB806", "writable-by-all", Severity::kWarning,
                                     "Everybody may change a part of the bundle."};

std::vector<const Rule*> fileRules();

void addFileFindings(const LintInput& input, Findings& findings);

/// Whether the file of the component number `index` is one that can be read; if not, addFileFindings() says why.
bool isFileThere(const LintInput& input, std::size_t index);

} // namespace cli
