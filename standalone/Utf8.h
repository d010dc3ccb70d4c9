// UTF-8 in and out of the stand-alone host: what modules hand over, what people and reports get to read.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace standalone {

/// What nextCodePoint() answers where the bytes are not UTF-8.
inline constexpr char32_t kNotUtf8 = 0xFFFFFFFF;

/// The code point that starts at `at` (less than the size of `text`), and moves `at` behind it. Overlong forms,
/// surrogates and values above 0x10FFFF are not UTF-8; then `at` stays where it is.
char32_t nextCodePoint(std::string_view text, std::size_t& at) noexcept;

/// `text` widened, or nothing when it is not UTF-8. Independent of the locale.
std::optional<std::wstring> wideFromUtf8(std::string_view text);

/// Sets `wide` to `text` widened; a byte that is no UTF-8 becomes U+FFFD. Independent of the locale.
void widenUtf8(std::string_view text, std::wstring& wide);

/// `text` with "\xNN" for each byte that is no UTF-8 or of a character that does something to a line instead of
/// standing in it: control characters but those in `allowed`, marks of direction, ends of lines and paragraphs.
std::string escapedUnseen(std::string_view text, std::string_view allowed = {});

/// `text` for a report line: valid UTF-8 without control characters and their like. A byte that the locale could not
/// decode takes its place again; then as escapedUnseen().
std::string displayable(std::wstring_view text);

/// The same for `text` in the encoding of the global locale: file names, system and library messages.
std::string displayable(std::string_view text);

} // namespace standalone
