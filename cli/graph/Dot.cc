// The form that Graphviz reads.
#include "cli/graph/Pictures.h"

namespace cli {

namespace {

/// `text` within a quoted label: what Graphviz would take for an escape or a character's name stands for itself.
std::string dotLabel(const std::string& text)
{
    std::string label;
    for (const char character : text) {
        if (character == '"' || character == '\\') {
            label += '\\';
        }
        label += character;
        label += character == '&' ? "amp;" : "";
    }
    return label;
}

const char* styleOf(NodeStanding standing)
{
    switch (standing) {
    case NodeStanding::kFine:
        return R"(shape=box, style="rounded,filled", fillcolor="#eaf6ec", color="#1a7f37")";
    case NodeStanding::kDoubtful:
        return R"(shape=box, style="filled", fillcolor="#fff8e1", color="#7d4e00")";
    case NodeStanding::kBroken:
        return R"(shape=octagon, style="filled", fillcolor="#fdecec", color="#b3261e")";
    case NodeStanding::kMissing:
        break;
    }
    return R"(shape=ellipse, style="dashed", color="#57606a")";
}

std::string dotNode(const GraphNode& node, std::size_t id, const PictureOptions& options)
{
    std::string label = dotLabel(node.title);
    if (!node.folder.empty() && node.folder != node.title) {
        label += "\\n" + dotLabel(node.folder);
    }
    label += std::string("\\n") + node.state();
    for (const std::string& line : contentLines(node, options)) {
        label += "\\n" + dotLabel(line);
    }
    return "    n" + std::to_string(id) + " [label=\"" + label + "\", " + styleOf(standingOf(node)) + "];\n";
}

const char* styleOf(const GraphEdge& edge)
{
    if (edge.isInCycle) {
        return R"( [color="#b3261e", penwidth=2.5, style="bold"])";
    }
    return edge.isSatisfied ? "" : R"( [color="#57606a", style="dashed"])";
}

} // namespace

std::string dotText(const BundleGraph& graph, const PictureOptions& options)
{
    std::string text = "digraph bundles {\n"
                       "    rankdir=LR;\n"
                       "    node [fontname=\"sans-serif\", fontsize=11];\n";
    for (std::size_t id = 0; id < graph.nodes.size(); ++id) {
        text += dotNode(graph.nodes[id], id, options);
    }
    for (const GraphEdge& edge : graph.edges) {
        text += "    n" + std::to_string(edge.from) + " -> n" + std::to_string(edge.to) + styleOf(edge) + ";\n";
    }
    return text + "}\n";
}

} // namespace cli
