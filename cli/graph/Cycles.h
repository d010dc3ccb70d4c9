// Cycles in a graph.
#pragma once

#include <cstddef>
#include <vector>

namespace cli {

/// For each node those that it points to.
using Successors = std::vector<std::vector<std::size_t>>;

/// The strongly connected components of the graph, each before those that point to it, its nodes in ascending order.
/// Needs no stack of its own depth.
std::vector<std::vector<std::size_t>> connectedComponents(const Successors& successors);

/// A shortest cycle through the first of `component`, in the order of its edges; empty when there is none, which can
/// only be when the component is a single node.
std::vector<std::size_t> shortestCycle(const Successors& successors, const std::vector<std::size_t>& component);

} // namespace cli
