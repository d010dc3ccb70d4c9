#include "cli/ListReport.h"

#include "cli/ReportLines.h"
#include "cli/Shown.h"

#include <algorithm>
#include <array>
#include <nlohmann/json.hpp>

namespace cli {

namespace {

using Json = nlohmann::ordered_json;

std::size_t menuCount(const ExaminedBundle& bundle)
{
    return static_cast<std::size_t>(std::count_if(bundle.components.begin(), bundle.components.end(),
                                                  [](const auto& one) { return !one.menu.empty(); }));
}

/// The commands that load a component of the bundle, sorted.
std::vector<std::wstring> commandsOf(const ExaminedBundle& bundle)
{
    std::vector<std::wstring> names;
    for (const ExaminedComponent& component : bundle.components) {
        names.insert(names.end(), component.commands.begin(), component.commands.end());
    }
    std::sort(names.begin(), names.end());
    names.erase(std::unique(names.begin(), names.end()), names.end());
    return names;
}

const char* colourOf(BundleState state)
{
    switch (state) {
    case BundleState::kLoaded:
    case BundleState::kMenusOnly:
        return "\x1B[32m";
    case BundleState::kKept:
    case BundleState::kLoadedWithFailures:
    case BundleState::kWaiting:
        return "\x1B[33m";
    case BundleState::kNotABundle:
    case BundleState::kUnreadable:
    case BundleState::kMalformed:
    case BundleState::kRequirementNotMet:
        break;
    }
    return "\x1B[31m";
}

} // namespace

std::string listText(const Examination& examination, bool hasColours)
{
    constexpr std::size_t kStateWidth = 24;
    std::string text;
    for (const ExaminedBundle& bundle : examination.bundles) {
        std::string state = nameOf(bundle.state);
        const std::string padding(kStateWidth - state.size() + 2, ' ');
        if (hasColours) {
            state = colourOf(bundle.state) + state + "\x1B[0m";
        }
        text += state + padding + shownLine(plainUtf8(bundle.folder)) + "\n";
    }
    return text;
}

std::string listJson(const Examination& examination, int exitStatus)
{
    Json bundles = Json::array();
    for (const ExaminedBundle& bundle : examination.bundles) {
        Json commands = Json::array();
        for (const std::wstring& name : commandsOf(bundle)) {
            commands.push_back(plainUtf8(name));
        }
        bundles.push_back({{"folder", plainUtf8(bundle.folder)},
                           {"state", nameOf(bundle.state)},
                           {"name", plainUtf8(bundle.records.package.name)},
                           {"version", plainUtf8(bundle.records.package.appVersion)},
                           {"upgradeCode", plainUtf8(bundle.records.package.upgradeCode)},
                           {"commands", std::move(commands)},
                           {"menus", menuCount(bundle)}});
    }
    const Json document = {{"format", 1},
                           {"version", KEST_VERSION},
                           {"exitStatus", exitStatus},
                           {"failure", examination.failure.empty() ? Json() : Json(examination.failure)},
                           {"bundles", std::move(bundles)}};
    return document.dump(2, ' ', false, Json::error_handler_t::replace) + "\n";
}

} // namespace cli
