// What becomes of the host's list of menus, told as plainly and slowly as can be.
#pragma once

#include <string>
#include <vector>

namespace menulistmodel {

inline std::vector<std::wstring> entriesOf(const std::wstring& list)
{
    std::vector<std::wstring> entries(1);
    for (const wchar_t unit : list) {
        if (unit == L';') {
            entries.emplace_back();
        } else {
            entries.back() += unit;
        }
    }
    return entries;
}

/// The host's list after `removed` was taken out of `list` at every place, from the front to the back.
inline std::wstring without(const std::wstring& list, const std::wstring& removed)
{
    std::wstring rest = list;
    for (std::size_t at = 0; at < rest.size() && !removed.empty();) {
        if (rest.substr(at, removed.size()) == removed) {
            rest.erase(at, removed.size());
        } else {
            ++at;
        }
    }
    return rest;
}

/// The host's list that is stored.
inline std::wstring hostListAfter(const std::wstring& hostList, const std::wstring& previous, const std::wstring& added)
{
    std::wstring list = hostList;
    const std::vector<std::wstring> hostEntries = entriesOf(hostList);
    for (const std::wstring& old : entriesOf(previous)) {
        for (std::size_t i = 0; i < hostEntries.size(); ++i) {
            if (hostEntries[i] == old) {
                list = without(list, i == 0 ? old : L";" + old);
            }
        }
    }
    return added.empty() ? list : list + L";" + added;
}

} // namespace menulistmodel
