// Names of bundles: the ending of the folder's, what it allows beside that, and the command that is made of it.
#pragma once

#include <string>
#include <string_view>

namespace cli {

/// Why a bundle cannot be called `name`, as a sentence without its end, in UTF-8; empty when it can. Letters, digits,
/// blanks and most other characters of every script are fine.
std::string problemWithBundleName(std::wstring_view name);

/// Why a bundle cannot lie in `folder`, an absolute path; empty when it can.
std::string problemWithBundleFolder(std::wstring_view folder);

/// Why `text` cannot stand in a manifest; empty when it can.
std::string problemWithManifestText(std::wstring_view text);

/// What the name of a bundle's folder ends in, in any letter case.
inline constexpr std::wstring_view kBundleEnding = L".bundle";

bool hasBundleEnding(std::wstring_view name);

/// `given` without that ending, if it has it.
std::wstring withoutBundleEnding(std::wstring_view given);

/// The name of a command for the bundle `name`: its letters and digits in upper case. Never empty.
std::wstring commandNameFor(std::wstring_view name);

} // namespace cli
