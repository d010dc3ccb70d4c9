// KB1xx: what is found in the search roots, and what is not.
#pragma once

#include "cli/rules/RuleInput.h"

namespace cli {

inline constexpr Rule kRootMissing{"KB101", "root-missing", Severity::kNote, "A search root does not exist."};
inline constexpr Rule kRootNotListable{"KB102", "root-not-listable", Severity::kWarning,
                                       "A search root cannot be listed."};
inline constexpr Rule kNoManifest{"KB103", "no-manifest", Severity::kError, "A bundle folder has no manifest."};
inline constexpr Rule kManifestLetterCase{"KB104", "manifest-letter-case", Severity::kError,
                                          "The manifest's name has another letter case."};
inline constexpr Rule kManifestTooDeep{"KB105", "manifest-too-deep", Severity::kError,
                                       "The manifest lies in a folder below the bundle folder."};
inline constexpr Rule kNotAFolder{"KB106", "not-a-folder", Severity::kError,
                                  "Something named like a bundle is not a folder."};
inline constexpr Rule kBrokenLink{"KB107", "broken-link", Severity::kError, "A bundle is a link that leads nowhere."};
inline constexpr Rule kNameWithoutEnding{"KB108", "name-without-ending", Severity::kWarning,
                                         "A folder with a manifest is not named as a bundle."};
inline constexpr Rule kFolderNotListable{"KB109", "folder-not-listable", Severity::kError,
                                         "A bundle folder cannot be listed."};
inline constexpr Rule kManifestNotOpened{"KB110", "manifest-not-opened", Severity::kError,
                                         "The manifest cannot be opened."};
inline constexpr Rule kMalformedManifest{"KB111", "malformed-manifest", Severity::kError,
                                         "The manifest is no well-formed XML."};
inline constexpr Rule kBundleTooDeep{"KB112", "bundle-too-deep", Severity::kError,
                                     "A bundle lies in a folder of a search root."};

std::vector<const Rule*> searchRules();

/// What there is to say about the search roots.
void addRootFindings(const Examination& examination, Findings& findings);

/// Why `bundle` is none, or its manifest is not read.
void addSearchFindings(const BundleInput& input, Findings& findings);

} // namespace cli
