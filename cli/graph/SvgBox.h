// One bundle in a drawn picture.
#pragma once

#include "cli/graph/Layout.h"
#include "cli/graph/NodeContent.h"

#include <string>
#include <vector>

namespace cli {

/// A box with its lines of text, already short enough.
struct SvgBox
{
    std::string title;
    std::vector<std::string> lines;
    Size size;
};

SvgBox svgBox(const GraphNode& node, const PictureOptions& options);

/// The elements that draw `box`, which stands for `node`, at `corner`.
std::string drawn(const SvgBox& box, const GraphNode& node, Point corner);

/// The sign of a standing, 14 pixels high and wide. Signs differ in form, not only in colour.
std::string standingSign(NodeStanding standing, Point corner);

/// `text` as the text of an element or an attribute.
std::string xmlText(const std::string& text);

} // namespace cli
