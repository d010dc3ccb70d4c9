// What the terminal behind standard output can show.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace cli {

/// Whether colours may be written: on a terminal that is not a dumb one, unless NO_COLOR is set.
bool hasColours();

/// The columns of the terminal; 0 when standard output is none. COLUMNS has the say where it is set.
std::size_t terminalWidth();

/// How many columns `text`, UTF-8 for one line, takes: ideographs take two, combining characters none.
std::size_t columnsOf(std::string_view text);

/// `text` in at most `columns` columns; a text that is cut ends with "...".
std::string fittedTo(std::size_t columns, std::string_view text);

} // namespace cli
