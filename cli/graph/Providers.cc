#include "cli/graph/Providers.h"

#include <functional>
#include <queue>
#include <set>

namespace cli {

namespace {

std::wstring_view codeOf(const GraphNode& node)
{
    return node.bundle->records.package.upgradeCode;
}

} // namespace

Providers::Providers(const std::vector<GraphNode>& nodes)
{
    addLoaded(nodes);
    for (const bool isKept : {true, false}) {
        for (std::size_t node = 0; node < nodes.size(); ++node) {
            if (nodes[node].bundle->isKept() == isKept) {
                providers.try_emplace(codeOf(nodes[node]), node);
            }
        }
    }
}

/// Walks the loaded bundles in an order in which they can have been loaded: each after all that it depends on. Without
/// it a bundle could seem to depend on a namesake of the one that was there for it, and so on itself.
void Providers::addLoaded(const std::vector<GraphNode>& nodes)
{
    std::set<std::wstring_view> loadedCodes;
    for (const GraphNode& node : nodes) {
        if (node.bundle->isLoaded()) {
            loadedCodes.insert(codeOf(node));
        }
    }
    std::unordered_map<std::wstring_view, std::vector<std::size_t>> waiters;
    std::vector<std::size_t> unsatisfied(nodes.size(), 0);
    std::priority_queue<std::size_t, std::vector<std::size_t>, std::greater<>> ready;
    for (std::size_t node = 0; node < nodes.size(); ++node) {
        if (!nodes[node].bundle->isLoaded()) {
            continue;
        }
        for (const KestDependentBundle& dependency : nodes[node].bundle->records.dependencies) {
            if (loadedCodes.contains(dependency.upgradeCode)) {
                waiters[dependency.upgradeCode].push_back(node);
                ++unsatisfied[node];
            }
        }
        if (unsatisfied[node] == 0) {
            ready.push(node);
        }
    }
    while (!ready.empty()) {
        const std::size_t node = ready.top();
        ready.pop();
        if (!providers.try_emplace(codeOf(nodes[node]), node).second) {
            continue;
        }
        for (const std::size_t waiter : waiters[codeOf(nodes[node])]) {
            if (--unsatisfied[waiter] == 0) {
                ready.push(waiter);
            }
        }
    }
    for (std::size_t node = 0; node < nodes.size(); ++node) { // menus are registered in an order of their own
        if (nodes[node].bundle->isLoaded()) {
            providers.try_emplace(codeOf(nodes[node]), node);
        }
    }
}

std::optional<std::size_t> Providers::of(const std::wstring& upgradeCode) const
{
    const auto found = providers.find(upgradeCode);
    return found == providers.end() ? std::nullopt : std::optional(found->second);
}

} // namespace cli
