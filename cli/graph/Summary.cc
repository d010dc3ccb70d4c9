// What all pictures of a graph say in words.
#include "cli/ReportLines.h"
#include "cli/graph/Pictures.h"

#include <algorithm>

namespace cli {

std::string graphSummary(const BundleGraph& graph)
{
    const auto missing = static_cast<std::size_t>(
        std::count_if(graph.nodes.begin(), graph.nodes.end(), [](const GraphNode& node) { return node.isMissing(); }));
    std::string text = counted(graph.nodes.size() - missing, "bundle", "bundles") + ", " +
                       counted(graph.edges.size(), "dependency", "dependencies");
    text += missing > 0 ? ", " + counted(missing, "missing bundle", "missing bundles") : "";
    return graph.cycles.empty() ? text : text + ", " + counted(graph.cycles.size(), "cycle", "cycles");
}

std::string cycleText(const BundleGraph& graph, const std::vector<std::size_t>& cycle, const std::string& arrow)
{
    constexpr std::size_t kShownAtEachEnd = 8;
    std::string text;
    for (std::size_t at = 0; at < cycle.size(); ++at) {
        if (at == kShownAtEachEnd && cycle.size() > 2 * kShownAtEachEnd + 1) {
            at = cycle.size() - kShownAtEachEnd;
            text += "(" + std::to_string(at - kShownAtEachEnd) + " more)" + arrow;
        }
        text += graph.nodes[cycle[at]].title + arrow;
    }
    return text + graph.nodes[cycle.front()].title;
}

} // namespace cli
