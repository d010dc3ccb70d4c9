// Bundles and what they depend on, as nodes and edges: what all pictures of them are drawn from.
#pragma once

#include "cli/Examination.h"

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

namespace cli {

/// A command that a component of a bundle declares.
struct GraphCommand
{
    std::string name;      ///< UTF-8, one line
    bool isLive = false;   ///< its first use loads the component, or the component registers it itself at start-up
    std::string otherwise; ///< of one that is not: why, in a few words
};

/// A menu that a bundle brings.
struct GraphMenu
{
    std::string file; ///< UTF-8, one line; without the bundle's folder
    bool isRegistered = false;
};

/// A bundle, or the gap where one is missing. All texts are UTF-8, of one line each, and not too long for a picture.
struct GraphNode
{
    const ExaminedBundle* bundle = nullptr; ///< null: nothing that is installed has the UpgradeCode
    std::string title;                      ///< name and version, or what stands in for them; never empty
    std::string folder;                     ///< its last part; empty for a missing bundle
    std::string upgradeCode;
    std::string remark;               ///< that another bundle stands for its UpgradeCode; mostly empty
    std::optional<std::size_t> cycle; ///< the cycle that it is in
    std::vector<std::size_t> needs;   ///< edges that begin here
    std::vector<GraphCommand> commands;
    std::vector<GraphMenu> menus;

    bool isMissing() const { return bundle == nullptr; }
    /// The word for what becomes of it: a bundle's state, or "missing".
    const char* state() const { return isMissing() ? "missing" : nameOf(bundle->state); }
};

/// "`from` depends on `to`".
struct GraphEdge
{
    std::size_t from = 0;
    std::size_t to = 0;
    bool isSatisfied = false; ///< `to` is loaded
    bool isInCycle = false;
};

struct BundleGraph
{
    std::vector<GraphNode> nodes;                 ///< bundles in the order found, then the missing ones
    std::vector<GraphEdge> edges;                 ///< by `from`; those of one bundle in its manifest's order, each once
    std::vector<std::vector<std::size_t>> cycles; ///< nodes of each, so that each depends on the next, the last on the
                                                  ///< first; where cycles share nodes, one of the shortest
};

/// How grave a node is, for all pictures alike.
enum class NodeStanding
{
    kFine,
    kDoubtful, ///< kept, and not or not wholly loaded
    kBroken,   ///< dropped or unreadable
    kMissing,
};
NodeStanding standingOf(const GraphNode& node);

/// The name of the style in which a node of this standing is drawn.
const char* classOf(NodeStanding standing);

/// The graph of `examination`, which must outlive it.
BundleGraph bundleGraph(const Examination& examination);

/// The part of `graph` that the bundles at `wanted` need, they themselves included.
BundleGraph neededBy(const BundleGraph& graph, const std::vector<std::size_t>& wanted);

} // namespace cli
