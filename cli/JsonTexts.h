// Texts as the JSON forms of the reports have them.
#pragma once

#include "cli/Shown.h"

#include <nlohmann/json.hpp>
#include <string>
#include <utility>
#include <vector>

namespace cli {

/// The text `utf8`, or null when it is empty: there is nothing to say.
inline nlohmann::ordered_json orNull(std::string utf8)
{
    return utf8.empty() ? nlohmann::ordered_json() : nlohmann::ordered_json(std::move(utf8));
}

inline nlohmann::ordered_json textsJson(const std::vector<std::wstring>& texts)
{
    nlohmann::ordered_json list = nlohmann::ordered_json::array();
    for (const std::wstring& text : texts) {
        list.push_back(plainUtf8(text));
    }
    return list;
}

} // namespace cli
