#include "cli/graph/Blocks.h"

#include "cli/graph/Cycles.h"

#include <algorithm>
#include <set>

namespace cli {

namespace {

Size sizeOf(const Block& block, const std::vector<Size>& sizes)
{
    Size size;
    for (const std::size_t node : block.nodes) {
        size.width = std::max(size.width, sizes[node].width);
        size.height += sizes[node].height + kRowGap;
    }
    size.height -= kRowGap;
    if (block.isCycle) {
        size.width += 2 * kFramePadding + kArcRoom;
        size.height += 2 * kFramePadding;
    }
    return size;
}

} // namespace

Blocks blocksOf(const BundleGraph& graph, const std::vector<Size>& sizes)
{
    Successors successors(graph.nodes.size());
    for (const GraphEdge& edge : graph.edges) {
        successors[edge.from].push_back(edge.to);
    }
    Blocks blocks;
    blocks.blockOf = std::vector<std::size_t>(graph.nodes.size());
    for (std::vector<std::size_t>& component : connectedComponents(successors)) {
        for (const std::size_t node : component) {
            blocks.blockOf[node] = blocks.all.size();
        }
        Block block;
        block.isCycle = graph.nodes[component.front()].cycle.has_value() || component.size() > 1;
        block.nodes = std::move(component);
        block.size = sizeOf(block, sizes);
        blocks.all.push_back(std::move(block));
    }
    std::set<std::pair<std::size_t, std::size_t>> known;
    for (const GraphEdge& edge : graph.edges) {
        const std::size_t from = blocks.blockOf[edge.from];
        const std::size_t to = blocks.blockOf[edge.to];
        if (from != to && known.emplace(from, to).second) {
            blocks.all[from].next.push_back(to);
            blocks.all[to].previous.push_back(from);
        }
    }
    return blocks;
}

std::vector<std::vector<std::size_t>> groupsOf(const Blocks& blocks)
{
    std::vector<std::vector<std::size_t>> groups;
    std::vector<bool> isPlaced(blocks.all.size(), false);
    for (const std::size_t start : blocks.blockOf) {
        if (isPlaced[start] || blocks.all[start].isAlone()) {
            continue;
        }
        std::vector<std::size_t> group{start};
        isPlaced[start] = true;
        for (std::size_t at = 0; at < group.size(); ++at) {
            for (const auto* neighbours : {&blocks.all[group[at]].next, &blocks.all[group[at]].previous}) {
                for (const std::size_t neighbour : *neighbours) {
                    if (!isPlaced[neighbour]) {
                        isPlaced[neighbour] = true;
                        group.push_back(neighbour);
                    }
                }
            }
        }
        groups.push_back(std::move(group));
    }
    return groups;
}

} // namespace cli
