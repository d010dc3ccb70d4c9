#include "cli/DependencyStanding.h"

#include <algorithm>
#include <queue>
#include <utility>

namespace cli {

namespace {

constexpr std::size_t kNone = static_cast<std::size_t>(-1);

/// Tarjan's strongly connected components, without recursion: a chain of dependencies may be long.
class CycleFinder
{
public:
    explicit CycleFinder(const std::vector<std::vector<std::size_t>>& allEdges)
        : edges(allEdges), groups(edges.size(), kNone), order(edges.size(), kNone), lowest(edges.size(), kNone)
    {
        for (std::size_t node = 0; node < edges.size(); ++node) {
            if (order[node] == kNone) {
                visitAllFrom(node);
            }
        }
    }

    std::vector<std::size_t> takeGroups() { return std::move(groups); }

private:
    struct Visit
    {
        std::size_t node;
        std::size_t nextEdge;
    };

    void visitAllFrom(std::size_t root)
    {
        std::vector<Visit> visits;
        enter(root, visits);
        while (!visits.empty()) {
            Visit& visit = visits.back();
            const std::size_t node = visit.node;
            if (visit.nextEdge < edges[node].size()) {
                const std::size_t target = edges[node][visit.nextEdge++];
                if (order[target] == kNone) {
                    enter(target, visits);
                } else if (groups[target] == kNone) {
                    lowest[node] = std::min(lowest[node], order[target]);
                }
                continue;
            }
            visits.pop_back();
            if (!visits.empty()) {
                lowest[visits.back().node] = std::min(lowest[visits.back().node], lowest[node]);
            }
            closeGroup(node);
        }
    }

    void enter(std::size_t node, std::vector<Visit>& visits)
    {
        order[node] = lowest[node] = entered++;
        open.push_back(node);
        visits.push_back({node, 0});
    }

    void closeGroup(std::size_t node)
    {
        if (lowest[node] != order[node]) {
            return;
        }
        std::size_t member = kNone;
        do {
            member = open.back();
            open.pop_back();
            groups[member] = node;
        } while (member != node);
    }

    const std::vector<std::vector<std::size_t>>& edges;
    std::vector<std::size_t> groups; ///< a node of each group is its number
    std::vector<std::size_t> order;
    std::vector<std::size_t> lowest;
    std::vector<std::size_t> open;
    std::size_t entered = 0;
};

} // namespace

const char* nameOf(Standing standing)
{
    switch (standing) {
    case Standing::kLoaded:
        return "loaded";
    case Standing::kMissing:
        return "missing";
    case Standing::kDropped:
        return "dropped";
    case Standing::kItself:
        return "the bundle itself";
    case Standing::kCycle:
        return "in a cycle";
    case Standing::kWaiting:
        return "waiting";
    case Standing::kNothingToLoad:
        return "nothing to load";
    case Standing::kNotAttempted:
        return "not attempted";
    }
    return "";
}

Dependencies::Dependencies(const Examination& examination) : facts(examination), waitsFor(facts.bundles.size())
{
    for (const ExaminedBundle& bundle : facts.bundles) {
        const std::wstring_view code = bundle.records.package.upgradeCode;
        if (bundle.isKept()) {
            kept[code].push_back(&bundle);
        } else if (bundle.state != BundleState::kNotABundle && !code.empty()) {
            dropped.try_emplace(code, &bundle);
        }
    }
    for (const ExaminedBundle& bundle : facts.bundles) {
        for (const KestDependentBundle& dependency : bundle.records.dependencies) {
            if (bundle.isKept() && standingOf(bundle, dependency).standing != Standing::kLoaded) {
                for (const ExaminedBundle* needed : keptWith(dependency.upgradeCode)) {
                    waitsFor[positionOf(bundle)].push_back(positionOf(*needed));
                }
            }
        }
    }
    group = CycleFinder(waitsFor).takeGroups();
}

DependencyStanding Dependencies::standingOf(const ExaminedBundle& bundle, const KestDependentBundle& dependency) const
{
    const auto& providers = keptWith(dependency.upgradeCode);
    const auto loaded =
        std::find_if(providers.begin(), providers.end(), [](const auto* one) { return one->isLoaded(); });
    if (loaded != providers.end()) {
        return {Standing::kLoaded, *loaded, {}};
    }
    if (providers.empty()) {
        const auto gone = dropped.find(dependency.upgradeCode);
        return gone == dropped.end() ? DependencyStanding{} : DependencyStanding{Standing::kDropped, gone->second, {}};
    }
    const ExaminedBundle* const needed = providers.front();
    const std::size_t from = positionOf(bundle);
    const std::size_t to = positionOf(*needed);
    if (needed == &bundle) {
        return {Standing::kItself, needed, {}};
    }
    if (!group.empty() && group[from] == group[to]) {
        return {Standing::kCycle, needed, cycleThrough(from, to)};
    }
    if (needed->state == BundleState::kWaiting) {
        return {Standing::kWaiting, needed, group.empty() ? decltype(DependencyStanding::chain)() : wayFrom(from, to)};
    }
    return {needed->components.empty() ? Standing::kNothingToLoad : Standing::kNotAttempted, needed, {}};
}

const KestDependentBundle* Dependencies::firstUnsatisfied(const ExaminedBundle& bundle) const
{
    const auto& all = bundle.records.dependencies;
    const auto found = std::find_if(all.begin(), all.end(), [&](const KestDependentBundle& dependency) {
        const auto& providers = keptWith(dependency.upgradeCode);
        return std::none_of(providers.begin(), providers.end(), [](const auto* one) { return one->isLoaded(); });
    });
    return found != all.end() ? &*found : nullptr;
}

const std::vector<const ExaminedBundle*>& Dependencies::keptWith(std::wstring_view upgradeCode) const
{
    static const std::vector<const ExaminedBundle*> kNobody;
    const auto found = kept.find(upgradeCode);
    return found != kept.end() ? found->second : kNobody;
}

std::size_t Dependencies::positionOf(const ExaminedBundle& bundle) const
{
    return static_cast<std::size_t>(&bundle - facts.bundles.data());
}

std::vector<const ExaminedBundle*> Dependencies::cycleThrough(std::size_t from, std::size_t to) const
{
    // Breadth first from `to`, so that the shortest way back to `from` is found.
    std::vector<std::size_t> cameFrom(waitsFor.size(), kNone);
    std::queue<std::size_t> next({to});
    while (!next.empty() && cameFrom[from] == kNone) {
        const std::size_t node = next.front();
        next.pop();
        for (const std::size_t target : waitsFor[node]) {
            if (group[target] == group[from] && target != to && cameFrom[target] == kNone) {
                cameFrom[target] = node;
                next.push(target);
            }
        }
    }
    std::vector<const ExaminedBundle*> chain;
    for (std::size_t node = from; node != kNone; node = cameFrom[node]) {
        chain.push_back(&facts.bundles[node]);
    }
    chain.push_back(&facts.bundles[from]);
    std::reverse(chain.begin(), chain.end());
    return chain;
}

std::vector<const ExaminedBundle*> Dependencies::wayFrom(std::size_t from, std::size_t to) const
{
    std::vector<const ExaminedBundle*> chain{&facts.bundles[from]};
    std::vector<bool> isInChain(waitsFor.size());
    isInChain[from] = true;
    for (std::size_t node = to;; node = waitsFor[node].front()) {
        chain.push_back(&facts.bundles[node]);
        const KestDependentBundle* const cause = firstUnsatisfied(facts.bundles[node]);
        if (isInChain[node] || cause == nullptr || keptWith(cause->upgradeCode).empty()) {
            return chain;
        }
        isInChain[node] = true;
    }
}

} // namespace cli
