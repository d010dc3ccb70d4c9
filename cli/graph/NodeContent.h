// The commands and menus of a node.
#pragma once

#include "cli/graph/BundleGraph.h"

namespace cli {

/// Adds the commands and menus of the bundle of `node`, each name once, in manifest order.
void addContent(GraphNode& node, const Examination& examination);

/// `text`, UTF-8, or its begin and "…" when it is too long for a picture.
std::string shortened(const std::string& text);

/// What a picture shows of each bundle beside its name and state.
struct PictureOptions
{
    bool commands = false;
    bool menus = false;
};

/// The lines that a picture shows for the remark, the commands and the menus of `node`.
std::vector<std::string> contentLines(const GraphNode& node, const PictureOptions& options);

} // namespace cli
