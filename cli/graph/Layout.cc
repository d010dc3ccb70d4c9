#include "cli/graph/Layout.h"

#include "cli/graph/Blocks.h"
#include "cli/graph/Columns.h"

#include <algorithm>
#include <cmath>

namespace cli {

namespace {

constexpr int kGroupGap = 40;
constexpr int kNarrowestGrid = 1100;
constexpr std::size_t kLinePlaces = 50000; ///< of all lines together: beyond, lines cross boxes

class Layouter
{
public:
    Layouter(const BundleGraph& drawn, const std::vector<Size>& boxSizes)
        : graph(drawn), sizes(boxSizes), blocks(blocksOf(drawn, boxSizes)), edgesOf(blocks.all.size())
    {
        layout.corners.resize(graph.nodes.size());
        layout.routes.resize(graph.edges.size());
        for (std::size_t edge = 0; edge < graph.edges.size(); ++edge) {
            edgesOf[blocks.blockOf[graph.edges[edge].from]].push_back(edge);
        }
    }

    Layout run()
    {
        std::size_t linePlaces = kLinePlaces;
        for (const std::vector<std::size_t>& group : groupsOf(blocks)) {
            placeGroup(Columns(blocks, group, linePlaces));
        }
        placeAlone();
        layout.size.height -= layout.size.height > 0 ? kGroupGap : 0;
        return std::move(layout);
    }

private:
    void placeGroup(const Columns& columns)
    {
        std::vector<int> lefts;
        std::vector<int> rights;
        int x = 0;
        for (const std::vector<std::size_t>& column : columns.columns) {
            int width = 0;
            for (const std::size_t slot : column) {
                const auto& block = columns.slots[slot].block;
                width = std::max(width, block ? blocks.all[*block].size.width : 0);
            }
            lefts.push_back(x);
            rights.push_back(x + width);
            x += width + kColumnGap;
        }
        for (const Slot& slot : columns.slots) {
            if (slot.block) {
                placeBlock(blocks.all[*slot.block], {lefts[slot.column], layout.size.height + slot.top});
            }
        }
        for (const Slot& slot : columns.slots) {
            for (const std::size_t edge : slot.block ? edgesOf[*slot.block] : std::vector<std::size_t>()) {
                route(edge, columns, lefts, rights, rights[slot.column]);
            }
        }
        layout.size.width = std::max(layout.size.width, x - kColumnGap);
        layout.size.height += columns.height + kGroupGap;
    }

    void placeBlock(const Block& block, Point corner)
    {
        if (block.isCycle) {
            layout.frames.push_back({corner, block.size});
            corner = {corner.x + kFramePadding, corner.y + kFramePadding};
        }
        for (const std::size_t node : block.nodes) {
            layout.corners[node] = corner;
            corner.y += sizes[node].height + kRowGap;
        }
    }

    void route(std::size_t index, const Columns& columns, const std::vector<int>& lefts, const std::vector<int>& rights,
               int columnEnd)
    {
        const GraphEdge& edge = graph.edges[index];
        const std::pair<std::size_t, std::size_t> between(blocks.blockOf[edge.from], blocks.blockOf[edge.to]);
        if (between.first == between.second) {
            return;
        }
        const Point from = layout.corners[edge.from];
        const Point to = layout.corners[edge.to];
        const int y = from.y + sizes[edge.from].height / 2;
        std::vector<Point>& points = layout.routes[index];
        points = {{from.x + sizes[edge.from].width, y}, {columnEnd, y}};
        if (const auto passed = columns.passed.find(between); passed != columns.passed.end()) {
            for (const std::size_t place : passed->second) {
                const Slot& slot = columns.slots[place];
                points.push_back({lefts[slot.column], layout.size.height + slot.middle()});
                points.push_back({rights[slot.column], layout.size.height + slot.middle()});
            }
        }
        points.push_back({to.x, to.y + sizes[edge.to].height / 2});
    }

    /// In rows, as near to the shape of a screen as the width above allows.
    void placeAlone()
    {
        std::vector<std::size_t> alone;
        Size cell;
        for (std::size_t node = 0; node < graph.nodes.size(); ++node) {
            if (blocks.all[blocks.blockOf[node]].isAlone()) {
                alone.push_back(node);
                cell.width = std::max(cell.width, sizes[node].width + kRowGap);
                cell.height = std::max(cell.height, sizes[node].height + kRowGap);
            }
        }
        if (alone.empty()) {
            return;
        }
        std::size_t perRow =
            static_cast<std::size_t>(std::max(1, (std::max(kNarrowestGrid, layout.size.width) + kRowGap) / cell.width));
        while (perRow * perRow * static_cast<std::size_t>(cell.width) <
               alone.size() * static_cast<std::size_t>(cell.height)) {
            ++perRow;
        }
        for (std::size_t first = 0; first < alone.size(); first += perRow) {
            int height = 0;
            for (std::size_t at = first; at < std::min(first + perRow, alone.size()); ++at) {
                layout.corners[alone[at]] = {static_cast<int>(at - first) * cell.width, layout.size.height};
                height = std::max(height, sizes[alone[at]].height);
            }
            layout.size.height += height + kRowGap;
        }
        layout.size.width =
            std::max(layout.size.width, static_cast<int>(std::min(perRow, alone.size())) * cell.width - kRowGap);
        layout.size.height += kGroupGap - kRowGap;
    }

    const BundleGraph& graph;
    const std::vector<Size>& sizes;
    Blocks blocks;
    std::vector<std::vector<std::size_t>> edgesOf; ///< by the block where they begin
    Layout layout;
};

} // namespace

Layout layOut(const BundleGraph& graph, const std::vector<Size>& sizes)
{
    return Layouter(graph, sizes).run();
}

} // namespace cli
