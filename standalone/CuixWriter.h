// Writes menu files in the current format (".cuix"), which docs/menu-formats.md describes.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace standalone {

/// Builds one document, element by element. Texts are UTF-8 without characters that XML cannot hold. Each step
/// answers with an empty text, or with what is wrong, in UTF-8; after that the document is of no use.
class CuixWriter
{
public:
    static constexpr std::size_t kDeepestNesting = 64;          ///< submenus within each other
    static constexpr std::size_t kLargestDocument = 64UL << 20; ///< bytes

    CuixWriter();

    /// Starts a menu; what follows belongs to it.
    std::string startMenu(std::string_view title);
    /// Starts a submenu, opened in `line` of the source.
    std::string startSubmenu(std::string_view label, int line);
    std::string endSubmenu();
    std::string addItem(std::string_view label, std::string_view command);
    std::string addSeparator();
    /// Closes the document, which must hold a menu.
    std::string finish();

    /// The document; call it after finish().
    std::string take() noexcept { return std::move(document); }

private:
    std::string endMenu();
    std::string startLine(std::string_view element);
    void attribute(std::string_view name, std::string_view value);

    std::string document;
    bool inMenu = false;
    std::vector<int> open; ///< the source lines of the open submenus, innermost last
};

} // namespace standalone
