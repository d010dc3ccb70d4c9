// The form of flowcharts that Mermaid reads.
#include "cli/graph/Pictures.h"

#include <cstdint>
#include <string_view>

namespace cli {

namespace {

/// `text` within a quoted label. What is not surely plain is written as a character's number: the reader looks for
/// directives, comments, entities, line breaks and markup also within quotes.
std::string mermaidLabel(const std::string& text)
{
    constexpr std::string_view kPlain = " .,-_/";
    std::string label;
    for (const char character : text) {
        const bool isLetter = (character >= 'a' && character <= 'z') || (character >= 'A' && character <= 'Z');
        const bool isDigit = character >= '0' && character <= '9';
        const auto byte = static_cast<std::uint8_t>(character);
        if (isLetter || isDigit || byte >= 0x80 || kPlain.find(character) != std::string_view::npos) {
            label += character;
        } else {
            label += "#" + std::to_string(int{byte}) + ";";
        }
    }
    return label;
}

std::string mermaidNode(const GraphNode& node, std::size_t id, const PictureOptions& options)
{
    std::string label = mermaidLabel(node.title);
    if (!node.folder.empty() && node.folder != node.title) {
        label += "<br/>" + mermaidLabel(node.folder);
    }
    label += std::string("<br/>") + node.state();
    for (const std::string& line : contentLines(node, options)) {
        label += "<br/>" + mermaidLabel(line);
    }
    const NodeStanding standing = standingOf(node);
    const bool isBroken = standing == NodeStanding::kBroken;
    const char* const open = isBroken ? "{{\"" : standing == NodeStanding::kMissing ? "([\"" : "[\"";
    const char* const close = isBroken ? "\"}}" : standing == NodeStanding::kMissing ? "\"])" : "\"]";
    return "    n" + std::to_string(id) + open + label + close + ":::" + classOf(standing) + "\n";
}

} // namespace

std::string mermaidText(const BundleGraph& graph, const PictureOptions& options)
{
    std::string text = "flowchart LR\n"
                       "    classDef fine fill:#eaf6ec,stroke:#1a7f37,color:#1f2328\n"
                       "    classDef doubtful fill:#fff8e1,stroke:#7d4e00,color:#1f2328\n"
                       "    classDef broken fill:#fdecec,stroke:#b3261e,color:#1f2328\n"
                       "    classDef missing fill:#ffffff,stroke:#57606a,color:#1f2328,stroke-dasharray:5 4\n";
    for (std::size_t id = 0; id < graph.nodes.size(); ++id) {
        text += mermaidNode(graph.nodes[id], id, options);
    }
    for (const GraphEdge& edge : graph.edges) {
        const char* const arrow = edge.isInCycle ? " == cycle ==> " : edge.isSatisfied ? " --> " : " -.-> ";
        text += "    n" + std::to_string(edge.from) + arrow + "n" + std::to_string(edge.to) + "\n";
    }
    return text;
}

} // namespace cli
