#include "cli/MenuDifference.h"

#include <map>
#include <string_view>

namespace cli {

std::vector<std::wstring> menuEntries(const std::optional<std::wstring>& list)
{
    std::vector<std::wstring> entries;
    if (!list || list->empty()) {
        return entries;
    }
    std::size_t begin = 0;
    for (std::size_t end = list->find(L';'); end != list->npos; end = list->find(L';', begin)) {
        entries.push_back(list->substr(begin, end - begin));
        begin = end + 1;
    }
    entries.push_back(list->substr(begin));
    return entries;
}

MenuDifference menuDifference(const std::optional<std::wstring>& before, const std::optional<std::wstring>& after)
{
    using Change = MenuDifference::Change;
    const std::vector<std::wstring> oldEntries = menuEntries(before);
    const std::vector<std::wstring> newEntries = menuEntries(after);
    std::map<std::wstring_view, std::size_t> inNew;
    for (const std::wstring& entry : newEntries) {
        ++inNew[entry];
    }
    MenuDifference difference{oldEntries.size(), newEntries.size(), {}};
    std::map<std::wstring_view, std::size_t> staying;
    for (const std::wstring& entry : oldEntries) {
        if (std::size_t& left = inNew[entry]; left > 0) {
            --left;
            ++staying[entry];
        } else {
            difference.lines.push_back({Change::kRemoved, entry});
        }
    }
    for (const std::wstring& entry : newEntries) {
        if (std::size_t& left = staying[entry]; left > 0) {
            --left;
            difference.lines.push_back({Change::kStays, entry});
        } else {
            difference.lines.push_back({Change::kAdded, entry});
        }
    }
    return difference;
}

} // namespace cli
