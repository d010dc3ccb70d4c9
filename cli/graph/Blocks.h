// Boxes that a layout moves as one: a node, or all nodes of a cycle above each other.
#pragma once

#include "cli/graph/Layout.h"

#include <cstddef>
#include <vector>

namespace cli {

inline constexpr int kRowGap = 18;       ///< between boxes above each other
inline constexpr int kColumnGap = 96;    ///< between columns
inline constexpr int kFramePadding = 16; ///< between the frame of a cycle and its boxes
inline constexpr int kArcRoom = 44;      ///< on the right within that frame, for the lines of the cycle

struct Block
{
    std::vector<std::size_t> nodes;
    Size size;
    std::vector<std::size_t> next; ///< blocks that nodes of it depend on, each once
    std::vector<std::size_t> previous;
    bool isCycle = false;

    bool isAlone() const { return next.empty() && previous.empty() && !isCycle; }
};

struct Blocks
{
    std::vector<Block> all;           ///< each before those that depend on it
    std::vector<std::size_t> blockOf; ///< by node
};

Blocks blocksOf(const BundleGraph& graph, const std::vector<Size>& sizes);

/// The blocks that hang together, in groups, in the order of their first nodes; those that stand alone are in none.
std::vector<std::vector<std::size_t>> groupsOf(const Blocks& blocks);

} // namespace cli
