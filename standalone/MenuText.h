// The legacy menu formats, as docs/menu-formats.md describes them, turned into the current one.
#pragma once

#include <string>
#include <string_view>

namespace standalone {

/// A converted menu, or what is wrong with the legacy one.
struct MenuText
{
    std::string cuix;    ///< empty on failure
    std::string problem; ///< UTF-8, one line, with the line number in front; empty on success
};

/// Converts the bytes of a ".mnu" or ".mns" file.
MenuText cuixFromSourceMenu(std::string_view bytes);

/// Converts the bytes of a ".menuc" file.
MenuText cuixFromCompactMenu(std::string_view bytes);

} // namespace standalone
