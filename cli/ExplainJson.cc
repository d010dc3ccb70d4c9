#include "cli/ComponentText.h"
#include "cli/ExplainReport.h"
#include "cli/FindingJson.h"
#include "cli/JsonTexts.h"
#include "cli/RequirementComparison.h"
#include "cli/Shown.h"

#include <nlohmann/json.hpp>

namespace cli {

namespace {

using Json = nlohmann::ordered_json;

Json requirementsJson(const Explanation& explanation, const ExaminedBundle& bundle)
{
    Json list = Json::array();
    for (const RequirementComparison& one : comparisonsOf(explanation.examination(), bundle)) {
        list.push_back({{"name", nameOf(one.requirement)},
                        {"required", orNull(plainUtf8(one.required))},
                        {"found", orNull(plainUtf8(one.found))},
                        {"compared", one.isMade},
                        {"met", one.isMet}});
    }
    return list;
}

Json dependenciesJson(const Explanation& explanation, const ExaminedBundle& bundle)
{
    Json list = Json::array();
    for (const KestDependentBundle& dependency : bundle.records.dependencies) {
        const DependencyStanding standing = explanation.all.dependencies.standingOf(bundle, dependency);
        Json chain = Json::array();
        for (const ExaminedBundle* one : standing.chain) {
            chain.push_back(plainUtf8(one->folder));
        }
        list.push_back({{"upgradeCode", plainUtf8(dependency.upgradeCode)},
                        {"standing", nameOf(standing.standing)},
                        {"bundle", standing.bundle != nullptr ? Json(plainUtf8(standing.bundle->folder)) : Json()},
                        {"chain", std::move(chain)}});
    }
    return list;
}

Json componentsJson(const ExplainedBundle& explained)
{
    Json list = Json::array();
    for (std::size_t index = 0; index < explained.bundle->components.size(); ++index) {
        const ExaminedComponent& one = explained.bundle->components[index];
        const int line = explained.components[index].line;
        Json firstUse;
        if (one.onDemand) {
            firstUse = {{"loaded", one.onDemand->isLoaded}, {"problem", orNull(one.onDemand->problem)}};
        }
        list.push_back({{"module", orNull(plainUtf8(one.record.moduleName))},
                        {"line", line > 0 ? Json(line) : Json()},
                        {"outcome", nameOf(one.outcome)},
                        {"problem", orNull(one.problem)},
                        {"menu", orNull(plainUtf8(one.menu))},
                        {"commands", textsJson(one.commands)},
                        {"firstUse", std::move(firstUse)}});
    }
    return list;
}

Json bundlesJson(const Explanation& explanation)
{
    Json list = Json::array();
    for (const ExplainedBundle& explained : explanation.bundles) {
        const ExaminedBundle& bundle = *explained.bundle;
        const auto& package = bundle.records.package;
        list.push_back({{"folder", plainUtf8(bundle.folder)},
                        {"state", nameOf(bundle.state)},
                        {"manifest", orNull(plainUtf8(bundle.manifest))},
                        {"name", plainUtf8(package.name)},
                        {"version", plainUtf8(package.appVersion)},
                        {"upgradeCode", plainUtf8(package.upgradeCode)},
                        {"requirements", requirementsJson(explanation, bundle)},
                        {"dependencies", dependenciesJson(explanation, bundle)},
                        {"components", componentsJson(explained)},
                        {"findings", findingsJson(explained.findings)}});
    }
    return list;
}

Json placeJson(const ComponentPlace& place)
{
    return {{"bundle", plainUtf8(place.bundle->folder)}, {"module", plainUtf8((*place).record.moduleName)}};
}

Json commandsJson(const Explanation& explanation)
{
    Json list = Json::array();
    for (const ExplainedCommand& command : explanation.commands) {
        Json declaredBy = Json::array();
        for (const ComponentPlace& place : command.declaredBy) {
            declaredBy.push_back(placeJson(place));
        }
        list.push_back(
            {{"name", plainUtf8(command.name)},
             {"loads",
              command.loads && !(**command.loads).record.moduleName.empty() ? placeJson(*command.loads) : Json()},
             {"declaredBy", std::move(declaredBy)}});
    }
    return list;
}

Json menusJson(const Explanation& explanation)
{
    Json list = Json::array();
    for (const ExplainedMenu& menu : explanation.menus) {
        list.push_back(
            {{"path", plainUtf8(menu.path)}, {"component", menu.component ? placeJson(*menu.component) : Json()}});
    }
    return list;
}

} // namespace

std::string explainJson(const Explanation& explanation, int exitStatus)
{
    const Json document = {{"format", 1},
                           {"version", KEST_VERSION},
                           {"exitStatus", exitStatus},
                           {"failure", orNull(explanation.examination().failure)},
                           {"commands", commandsJson(explanation)},
                           {"menus", menusJson(explanation)},
                           {"bundles", bundlesJson(explanation)},
                           {"findings", findingsJson(explanation.general)}};
    return document.dump(2, ' ', false, Json::error_handler_t::replace) + "\n";
}

} // namespace cli
