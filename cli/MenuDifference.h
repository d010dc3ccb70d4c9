// How the host's list of menus has changed.
#pragma once

#include <optional>
#include <string>
#include <vector>

namespace cli {

/// The entries of a menu list: what stands between its ";", empty ones included. A list without text has none.
std::vector<std::wstring> menuEntries(const std::optional<std::wstring>& list);

/// The entries of two lists side by side.
struct MenuDifference
{
    enum class Change
    {
        kStays,
        kRemoved,
        kAdded,
    };

    struct Line
    {
        Change change;
        std::wstring entry;

        bool operator==(const Line&) const = default;
    };

    std::size_t before = 0; ///< the number of entries
    std::size_t after = 0;
    std::vector<Line> lines; ///< first what was removed, then the new list in its order
};

/// An entry counts as staying as often as it stands in both lists.
MenuDifference menuDifference(const std::optional<std::wstring>& before, const std::optional<std::wstring>& after);

} // namespace cli
