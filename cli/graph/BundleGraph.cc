#include "cli/graph/BundleGraph.h"

#include "cli/ReportLines.h"
#include "cli/graph/Cycles.h"
#include "cli/graph/NodeContent.h"
#include "cli/graph/Providers.h"

#include <algorithm>
#include <map>
#include <set>

namespace cli {

namespace {

GraphNode nodeOf(const ExaminedBundle& bundle)
{
    GraphNode node;
    node.bundle = &bundle;
    node.folder = shortened(shown(bundle.folder.substr(bundle.folder.rfind(L'/') + 1)));
    node.upgradeCode = shortened(shown(bundle.records.package.upgradeCode));
    const std::string name = shown(bundle.records.package.name);
    const std::string version = shown(bundle.records.package.appVersion);
    node.title = name.empty() ? node.folder : shortened(name + (version.empty() ? "" : " " + version));
    return node;
}

GraphNode missingNode(const std::wstring& upgradeCode)
{
    GraphNode node;
    node.title = node.upgradeCode = shortened(shown(upgradeCode));
    return node;
}

void addEdges(BundleGraph& graph, const Providers& providers)
{
    std::map<std::wstring, std::size_t> missing;
    const std::size_t bundleCount = graph.nodes.size();
    for (std::size_t from = 0; from < bundleCount; ++from) {
        std::set<std::size_t> reached;
        for (const KestDependentBundle& dependency : graph.nodes[from].bundle->records.dependencies) {
            std::optional<std::size_t> to = providers.of(dependency.upgradeCode);
            if (!to) {
                to = missing.emplace(dependency.upgradeCode, graph.nodes.size()).first->second;
                if (*to == graph.nodes.size()) {
                    graph.nodes.push_back(missingNode(dependency.upgradeCode));
                }
            }
            if (reached.insert(*to).second) {
                const ExaminedBundle* const provider = graph.nodes[*to].bundle;
                graph.nodes[from].needs.push_back(graph.edges.size());
                graph.edges.push_back({from, *to, provider != nullptr && provider->isLoaded(), false});
            }
        }
    }
}

/// A bundle that is dropped is not what keeps others waiting for each other: it is no part of a cycle.
void findCycles(BundleGraph& graph)
{
    const auto counts = [&](std::size_t node) {
        return !graph.nodes[node].isMissing() && graph.nodes[node].bundle->isKept();
    };
    Successors successors(graph.nodes.size());
    for (const GraphEdge& edge : graph.edges) {
        if (counts(edge.from) && counts(edge.to)) {
            successors[edge.from].push_back(edge.to);
        }
    }
    std::vector<std::vector<std::size_t>> components = connectedComponents(successors);
    std::sort(components.begin(), components.end());
    for (const std::vector<std::size_t>& component : components) {
        std::vector<std::size_t> cycle = shortestCycle(successors, component);
        if (cycle.empty()) {
            continue;
        }
        for (const std::size_t node : component) {
            graph.nodes[node].cycle = graph.cycles.size();
        }
        graph.cycles.push_back(std::move(cycle));
    }
    for (GraphEdge& edge : graph.edges) {
        const auto& cycle = graph.nodes[edge.from].cycle;
        edge.isInCycle = cycle && cycle == graph.nodes[edge.to].cycle;
    }
}

} // namespace

NodeStanding standingOf(const GraphNode& node)
{
    if (node.isMissing()) {
        return NodeStanding::kMissing;
    }
    switch (node.bundle->state) {
    case BundleState::kLoaded:
    case BundleState::kMenusOnly:
        return NodeStanding::kFine;
    case BundleState::kKept:
    case BundleState::kLoadedWithFailures:
    case BundleState::kWaiting:
        return NodeStanding::kDoubtful;
    case BundleState::kNotABundle:
    case BundleState::kUnreadable:
    case BundleState::kMalformed:
    case BundleState::kRequirementNotMet:
        break;
    }
    return NodeStanding::kBroken;
}

const char* classOf(NodeStanding standing)
{
    switch (standing) {
    case NodeStanding::kFine:
        return "fine";
    case NodeStanding::kDoubtful:
        return "doubtful";
    case NodeStanding::kBroken:
        return "broken";
    case NodeStanding::kMissing:
        break;
    }
    return "missing";
}

BundleGraph bundleGraph(const Examination& examination)
{
    BundleGraph graph;
    for (const ExaminedBundle& bundle : examination.bundles) {
        if (bundle.state != BundleState::kNotABundle) {
            graph.nodes.push_back(nodeOf(bundle));
            addContent(graph.nodes.back(), examination);
        }
    }
    const Providers providers(graph.nodes);
    for (std::size_t node = 0; node < graph.nodes.size(); ++node) {
        const std::wstring& code = graph.nodes[node].bundle->records.package.upgradeCode;
        if (const auto provider = providers.of(code); !code.empty() && provider != node) {
            graph.nodes[node].remark = "has the UpgradeCode of " + graph.nodes[*provider].title;
        }
    }
    addEdges(graph, providers);
    findCycles(graph);
    return graph;
}

BundleGraph neededBy(const BundleGraph& graph, const std::vector<std::size_t>& wanted)
{
    std::vector<bool> isNeeded(graph.nodes.size(), false);
    std::vector<std::size_t> waiting = wanted;
    while (!waiting.empty()) {
        const std::size_t node = waiting.back();
        waiting.pop_back();
        if (isNeeded[node]) {
            continue;
        }
        isNeeded[node] = true;
        for (const std::size_t edge : graph.nodes[node].needs) {
            waiting.push_back(graph.edges[edge].to);
        }
    }
    BundleGraph part;
    std::vector<std::size_t> position(graph.nodes.size());
    for (std::size_t node = 0; node < graph.nodes.size(); ++node) {
        if (isNeeded[node]) {
            position[node] = part.nodes.size();
            part.nodes.push_back(graph.nodes[node]);
            part.nodes.back().needs.clear();
        }
    }
    for (const GraphEdge& edge : graph.edges) {
        if (isNeeded[edge.from]) {
            part.nodes[position[edge.from]].needs.push_back(part.edges.size());
            part.edges.push_back({position[edge.from], position[edge.to], edge.isSatisfied, edge.isInCycle});
        }
    }
    std::vector<std::size_t> cyclePosition(graph.cycles.size());
    for (std::size_t index = 0; index < graph.cycles.size(); ++index) {
        std::vector<std::size_t> cycle = graph.cycles[index];
        if (isNeeded[cycle.front()]) {
            std::transform(cycle.begin(), cycle.end(), cycle.begin(), [&](std::size_t node) { return position[node]; });
            cyclePosition[index] = part.cycles.size();
            part.cycles.push_back(std::move(cycle));
        }
    }
    for (GraphNode& node : part.nodes) {
        if (node.cycle) {
            node.cycle = cyclePosition[*node.cycle];
        }
    }
    return part;
}

} // namespace cli
