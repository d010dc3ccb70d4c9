// The tree for terminals.
#include "cli/graph/Pictures.h"

#include <deque>

namespace cli {

namespace {

/// The pieces that lines are made of.
struct Strokes
{
    const char* branch;
    const char* last;
    const char* pipe;
    const char* blank;
    const char* point;
    const char* arrow;
};

constexpr Strokes kLines = {"├─ ", "└─ ", "│  ", "   ", "· ", " → "};
constexpr Strokes kAscii = {"|- ", "`- ", "|  ", "   ", "* ", " > "};

const char* colourOf(NodeStanding standing)
{
    switch (standing) {
    case NodeStanding::kFine:
        return "\x1B[32m";
    case NodeStanding::kDoubtful:
        return "\x1B[33m";
    case NodeStanding::kBroken:
    case NodeStanding::kMissing:
        break;
    }
    return "\x1B[31m";
}

class Tree
{
public:
    Tree(const BundleGraph& drawn, const PictureOptions& shown, const TreeStyle& form)
        : graph(drawn),
          options(shown),
          style(form),
          strokes(form.isAscii ? kAscii : kLines),
          isExpanded(drawn.nodes.size(), false),
          isOnPath(drawn.nodes.size(), false)
    {
    }

    std::string write()
    {
        std::vector<bool> isNeeded(graph.nodes.size(), false);
        for (const GraphEdge& edge : graph.edges) {
            isNeeded[edge.to] = true;
        }
        for (std::size_t node = 0; node < graph.nodes.size(); ++node) {
            if (!isNeeded[node]) {
                writeFrom(node);
            }
        }
        for (std::size_t node = 0; node < graph.nodes.size(); ++node) { // what only cycles lead to
            if (!isExpanded[node] && !graph.nodes[node].isMissing()) {
                writeFrom(node);
            }
        }
        return std::move(text);
    }

private:
    struct Visit
    {
        std::size_t node;
        std::size_t next; ///< of its edges
        std::string prefix;
    };

    /// Trees deeper than this go on at the left margin: a chain of thousands would otherwise be wider than it is long.
    static constexpr std::size_t kDeepest = 16;

    void writeFrom(std::size_t root)
    {
        std::deque<std::size_t> roots{root};
        for (bool isContinued = false; !roots.empty(); isContinued = true) {
            const std::size_t node = roots.front();
            roots.pop_front();
            if (isExpanded[node]) {
                continue;
            }
            text += (isContinued ? "(continued) " : "") + labelOf(node) + "\n";
            expand({node, 0, ""}, roots);
        }
    }

    void expand(Visit first, std::deque<std::size_t>& roots)
    {
        std::vector<Visit> path;
        enter(path, std::move(first));
        while (!path.empty()) {
            Visit& visit = path.back();
            const GraphNode& node = graph.nodes[visit.node];
            if (visit.next == node.needs.size()) {
                isOnPath[visit.node] = false;
                path.pop_back();
                continue;
            }
            const GraphEdge& edge = graph.edges[node.needs[visit.next++]];
            const bool isLast = visit.next == node.needs.size();
            const std::string prefix = visit.prefix;
            text += prefix + (isLast ? strokes.last : strokes.branch) + labelOf(edge.to);
            if (isOnPath[edge.to]) {
                text += " (a cycle)";
            } else if (isExpanded[edge.to]) {
                text += graph.nodes[edge.to].needs.empty() ? "" : " (see above)";
            } else if (path.size() == kDeepest && !graph.nodes[edge.to].needs.empty()) {
                text += " (continued below)";
                roots.push_back(edge.to);
            } else {
                text += "\n";
                enter(path, {edge.to, 0, prefix + (isLast ? strokes.blank : strokes.pipe)});
                continue;
            }
            text += "\n";
        }
    }

    void enter(std::vector<Visit>& path, Visit visit)
    {
        isExpanded[visit.node] = isOnPath[visit.node] = true;
        const GraphNode& node = graph.nodes[visit.node];
        for (const std::string& line : contentLines(node, options)) {
            text += visit.prefix + (node.needs.empty() ? strokes.blank : strokes.pipe) + strokes.point + line + "\n";
        }
        path.push_back(std::move(visit));
    }

    std::string labelOf(std::size_t index) const
    {
        const GraphNode& node = graph.nodes[index];
        const bool hasFolder = !node.folder.empty() && node.folder != node.title;
        const std::string state = style.hasColours ? colourOf(standingOf(node)) + std::string(node.state()) + "\x1B[0m"
                                                   : std::string(node.state());
        return node.title + (hasFolder ? " (" + node.folder + ")" : "") + ": " + state;
    }

    const BundleGraph& graph;
    const PictureOptions& options;
    const TreeStyle& style;
    const Strokes& strokes;
    std::vector<bool> isExpanded;
    std::vector<bool> isOnPath;
    std::string text;
};

/// The titles of those that depend on each node of no bundle.
std::string missingText(const BundleGraph& graph)
{
    constexpr std::size_t kMostNamed = 8;
    std::vector<std::vector<std::size_t>> dependents(graph.nodes.size());
    for (const GraphEdge& edge : graph.edges) {
        dependents[edge.to].push_back(edge.from);
    }
    std::string text;
    for (std::size_t node = 0; node < graph.nodes.size(); ++node) {
        if (!graph.nodes[node].isMissing()) {
            continue;
        }
        text += "Missing: no bundle has the UpgradeCode \"" + graph.nodes[node].upgradeCode + "\", needed by ";
        for (std::size_t at = 0; at < dependents[node].size() && at < kMostNamed; ++at) {
            text += (at > 0 ? ", " : "") + graph.nodes[dependents[node][at]].title;
        }
        const std::size_t count = dependents[node].size();
        text += (count > kMostNamed ? " and " + std::to_string(count - kMostNamed) + " more" : "") + "\n";
    }
    return text;
}

} // namespace

std::string treeText(const BundleGraph& graph, const PictureOptions& options, const TreeStyle& style)
{
    std::string text = Tree(graph, options, style).write() + (graph.nodes.empty() ? "" : "\n");
    for (const std::vector<std::size_t>& cycle : graph.cycles) {
        text += "Cycle: " + cycleText(graph, cycle, style.isAscii ? kAscii.arrow : kLines.arrow) + "\n";
    }
    return text + missingText(graph) + graphSummary(graph) + "\n";
}

} // namespace cli
