#include "cli/graph/Cycles.h"

#include <algorithm>
#include <cstdint>
#include <deque>
#include <unordered_map>
#include <unordered_set>

namespace cli {

namespace {

/// Tarjan's algorithm, with the calls on a stack of its own: a chain of bundles may be longer than any call stack.
class CycleSearch
{
public:
    explicit CycleSearch(const Successors& graph) : successors(graph), order(graph.size(), 0), lowest(graph.size(), 0)
    {
    }

    std::vector<std::vector<std::size_t>> run()
    {
        for (std::size_t node = 0; node < successors.size(); ++node) {
            if (order[node] == 0) {
                visitFrom(node);
            }
        }
        return std::move(components);
    }

private:
    struct Visit
    {
        std::size_t node;
        std::size_t next; ///< of its successors
    };

    void enter(std::size_t node)
    {
        order[node] = lowest[node] = ++count;
        open.push_back(node);
        visits.push_back({node, 0});
    }

    void visitFrom(std::size_t start)
    {
        enter(start);
        while (!visits.empty()) {
            Visit& visit = visits.back();
            const std::size_t node = visit.node;
            if (visit.next == successors[node].size()) {
                leave(node);
                continue;
            }
            const std::size_t successor = successors[node][visit.next++];
            if (order[successor] == 0) {
                enter(successor);
            } else if (order[successor] != kClosed) {
                lowest[node] = std::min(lowest[node], order[successor]);
            }
        }
    }

    void leave(std::size_t node)
    {
        visits.pop_back();
        if (!visits.empty()) {
            std::size_t& before = lowest[visits.back().node];
            before = std::min(before, lowest[node]);
        }
        if (lowest[node] != order[node]) {
            return;
        }
        std::vector<std::size_t> component;
        do {
            component.push_back(open.back());
            open.pop_back();
        } while (component.back() != node);
        for (const std::size_t member : component) {
            order[member] = kClosed;
        }
        std::sort(component.begin(), component.end());
        components.push_back(std::move(component));
    }

    static constexpr std::size_t kClosed = SIZE_MAX;

    const Successors& successors;
    std::vector<std::size_t> order;  ///< of the first visit, from 1; kClosed once its component is known
    std::vector<std::size_t> lowest; ///< order of what is reached from it
    std::vector<std::size_t> open;
    std::vector<Visit> visits;
    std::size_t count = 0;
    std::vector<std::vector<std::size_t>> components;
};

} // namespace

std::vector<std::vector<std::size_t>> connectedComponents(const Successors& successors)
{
    return CycleSearch(successors).run();
}

std::vector<std::size_t> shortestCycle(const Successors& successors, const std::vector<std::size_t>& component)
{
    const std::unordered_set<std::size_t> isMember(component.begin(), component.end());
    const std::size_t start = component.front();
    std::unordered_map<std::size_t, std::size_t> reachedFrom;
    std::deque<std::size_t> waiting{start};
    while (!waiting.empty() && !reachedFrom.contains(start)) {
        const std::size_t node = waiting.front();
        waiting.pop_front();
        for (const std::size_t successor : successors[node]) {
            if (isMember.contains(successor) && reachedFrom.emplace(successor, node).second) {
                waiting.push_back(successor);
            }
        }
    }
    std::vector<std::size_t> cycle;
    if (reachedFrom.contains(start)) {
        for (std::size_t node = reachedFrom[start]; node != start; node = reachedFrom[node]) {
            cycle.push_back(node);
        }
        cycle.push_back(start);
        std::reverse(cycle.begin(), cycle.end());
    }
    return cycle;
}

} // namespace cli
