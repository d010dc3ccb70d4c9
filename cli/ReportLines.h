// The lines that a report for people is made of. Every text is UTF-8.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace cli {

/// Text of the system, for one line: see displayable().
std::string shown(std::wstring_view text);
std::string shown(const std::string& bytesOfLocale);

std::string quoted(const std::string& text);

/// `text` behind `label`, which is padded so that the texts stand in one column, with a line end.
std::string labelled(const std::string& label, const std::string& text);

/// A further line below a labelled one.
std::string below(const std::string& text);

/// "1 module", "2 modules".
std::string counted(std::size_t count, const std::string& one, const std::string& many);

/// A time that something took, as in "3.2 ms"; the same in every locale.
std::string timeText(double milliseconds);

} // namespace cli
