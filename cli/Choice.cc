#include "cli/Choice.h"

#include "cli/NearestName.h"

#include <algorithm>
#include <optional>

namespace cli {

namespace {

std::string joined(const std::vector<std::string>& texts, const std::string& separator)
{
    std::string all;
    for (const std::string& text : texts) {
        all += (all.empty() ? "" : separator) + text;
    }
    return all;
}

} // namespace

CLI::Validator oneOf(const std::vector<std::string>& choices)
{
    const auto check = [choices](const std::string& given) {
        if (std::ranges::find(choices, given) != choices.end()) {
            return std::string();
        }
        const std::optional<std::string> nearest = nearestName(given, choices);
        return "\"" + given + "\" is none of " + joined(choices, ", ") +
               (nearest ? "; did you mean \"" + *nearest + "\"?" : "");
    };
    return {check, "{" + joined(choices, ",") + "}"};
}

} // namespace cli
