// Wide text as the configuration file keeps it.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace standalone {

/// `text` in UTF-8, with UTF-8's own scheme carried on to code units that are no characters (surrogates, which hold
/// bytes that a locale could not decode, and values above 0x10FFFF), so that every wide text can be kept.
std::string storedText(std::wstring_view text);

/// Undoes storedText(). Nothing when `bytes` cannot come from it.
std::optional<std::wstring> textFromStored(std::string_view bytes);

} // namespace standalone
