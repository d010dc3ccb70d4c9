#include "cli/FindingJson.h"
#include "cli/ListReport.h"
#include "cli/ListedBundle.h"
#include "cli/Shown.h"

#include <nlohmann/json.hpp>

namespace cli {

namespace {

using Json = nlohmann::ordered_json;

Json bundleJson(const ListedBundle& listed)
{
    const auto& package = listed.bundle->records.package;
    Json commands = Json::array();
    for (const std::wstring& name : listed.commands) {
        commands.push_back(plainUtf8(name));
    }
    return {{"folder", plainUtf8(listed.bundle->folder)},
            {"state", nameOf(listed.bundle->state)},
            {"name", plainUtf8(package.name)},
            {"version", plainUtf8(package.appVersion)},
            {"upgradeCode", plainUtf8(package.upgradeCode)},
            {"commands", std::move(commands)},
            {"menus", listed.menus},
            {"reason", listed.reason != nullptr ? findingJson(*listed.reason) : Json()}};
}

} // namespace

std::string listJson(const Examination& examination, const Findings& reasons, int exitStatus)
{
    Json roots = Json::array();
    for (const ExaminedRoot& root : examination.roots) {
        roots.push_back({{"folder", plainUtf8(root.path)},
                         {"exists", root.exists},
                         {"problem", root.problem.empty() ? Json() : Json(root.problem)}});
    }
    Json bundles = Json::array();
    for (const ListedBundle& listed : listedBundles(examination, reasons)) {
        bundles.push_back(bundleJson(listed));
    }
    const Json document = {{"format", 1},
                           {"version", KEST_VERSION},
                           {"exitStatus", exitStatus},
                           {"failure", examination.failure.empty() ? Json() : Json(examination.failure)},
                           {"roots", std::move(roots)},
                           {"bundles", std::move(bundles)}};
    return document.dump(2, ' ', false, Json::error_handler_t::replace) + "\n";
}

} // namespace cli
