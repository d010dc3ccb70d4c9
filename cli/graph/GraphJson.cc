#include "cli/Shown.h"
#include "cli/graph/Pictures.h"

#include <nlohmann/json.hpp>

namespace cli {

namespace {

using Json = nlohmann::ordered_json;

Json commandsOf(const GraphNode& node)
{
    Json commands = Json::array();
    for (const GraphCommand& command : node.commands) {
        commands.push_back({{"name", command.name},
                            {"isLive", command.isLive},
                            {"why", command.isLive ? Json() : Json(command.otherwise)}});
    }
    return commands;
}

Json menusOf(const GraphNode& node)
{
    Json menus = Json::array();
    for (const GraphMenu& menu : node.menus) {
        menus.push_back({{"file", menu.file}, {"isRegistered", menu.isRegistered}});
    }
    return menus;
}

Json jsonOf(const GraphNode& node, std::size_t id)
{
    const auto text = [&](const std::wstring& value) { return node.isMissing() ? Json() : Json(plainUtf8(value)); };
    const ExaminedBundle none;
    const ExaminedBundle& bundle = node.isMissing() ? none : *node.bundle;
    return {{"id", id},
            {"state", node.state()},
            {"title", node.title},
            {"folder", text(bundle.folder)},
            {"name", text(bundle.records.package.name)},
            {"version", text(bundle.records.package.appVersion)},
            {"upgradeCode", node.isMissing() ? Json(node.upgradeCode) : text(bundle.records.package.upgradeCode)},
            {"remark", node.remark.empty() ? Json() : Json(node.remark)},
            {"cycle", node.cycle ? Json(*node.cycle) : Json()},
            {"commands", commandsOf(node)},
            {"menus", menusOf(node)}};
}

} // namespace

std::string graphJson(const BundleGraph& graph, const std::string& failure, int exitStatus)
{
    Json nodes = Json::array();
    for (const GraphNode& node : graph.nodes) {
        nodes.push_back(jsonOf(node, nodes.size()));
    }
    Json edges = Json::array();
    for (const GraphEdge& edge : graph.edges) {
        edges.push_back(
            {{"from", edge.from}, {"to", edge.to}, {"isSatisfied", edge.isSatisfied}, {"isInCycle", edge.isInCycle}});
    }
    const Json document = {{"format", 1},
                           {"version", KEST_VERSION},
                           {"exitStatus", exitStatus},
                           {"failure", failure.empty() ? Json() : Json(failure)},
                           {"nodes", std::move(nodes)},
                           {"edges", std::move(edges)},
                           {"cycles", graph.cycles}};
    return document.dump(2, ' ', false, Json::error_handler_t::replace) + "\n";
}

} // namespace cli
