// Text from bundles, modules and the system as people get to see it. Such text may hold anything, terminal escapes
// among it, and is shown in a form that does nothing to a terminal and is always valid UTF-8.
#pragma once

#include <cstdio>
#include <string>
#include <string_view>

namespace cli {

/// `text` in UTF-8 for one line of a report: control characters and their like, marks of direction among them, and
/// bytes that are no UTF-8 show as "\xNN".
std::string shownLine(std::string_view text);

/// The same for what a module printed: line ends and tabs stay.
std::string shownOutput(std::string_view text);

/// `text` in UTF-8, valid whatever it held: what is no character becomes U+FFFD. Nothing is escaped.
std::string plainUtf8(std::wstring_view text);

/// The same for `text` in the encoding of the global locale: file names and lines of the error log.
std::string plainUtf8FromLocale(std::string_view text);

/// Writes `text`, valid UTF-8, to `stream` in the encoding of the global locale; a character that it lacks shows as
/// "\u{NNNN}". The stream is flushed.
void print(std::FILE* stream, std::string_view text);

/// Writes `text` as it is, for programs: their forms are UTF-8 in every locale. The stream is flushed.
void printUtf8(std::FILE* stream, std::string_view text);

} // namespace cli
