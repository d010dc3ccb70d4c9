// A graph of bundles in each of the forms in which it can be written. All are UTF-8, and the same for the same graph.
#pragma once

#include "cli/graph/BundleGraph.h"
#include "cli/graph/NodeContent.h"

#include <string>

namespace cli {

/// How a tree is drawn.
struct TreeStyle
{
    bool hasColours = false; ///< for terminals only
    bool isAscii = false;    ///< for locales without line-drawing characters
};

/// Below each bundle what it depends on; below that the cycles and the missing bundles.
std::string treeText(const BundleGraph& graph, const PictureOptions& options, const TreeStyle& style);

/// For Graphviz.
std::string dotText(const BundleGraph& graph, const PictureOptions& options);

/// A Mermaid flowchart.
std::string mermaidText(const BundleGraph& graph, const PictureOptions& options);

/// A picture that needs no other program.
std::string svgText(const BundleGraph& graph, const PictureOptions& options);

/// One JSON document, as docs/graph-json.md describes it. `exitStatus` is what the tool returns.
std::string graphJson(const BundleGraph& graph, const std::string& failure, int exitStatus);

/// "12 bundles, 5 dependencies, 1 missing bundle, 2 cycles"; the last two only when there are any.
std::string graphSummary(const BundleGraph& graph);

/// A long cycle with its middle left out: "A > B > A", with `arrow` between the titles.
std::string cycleText(const BundleGraph& graph, const std::vector<std::size_t>& cycle, const std::string& arrow);

} // namespace cli
