// Where the boxes of a picture stand, and by which ways its lines go.
#pragma once

#include "cli/graph/BundleGraph.h"

#include <vector>

namespace cli {

struct Point
{
    int x = 0;
    int y = 0;
};

struct Size
{
    int width = 0;
    int height = 0;
};

struct Rectangle
{
    Point corner; ///< upper left
    Size size;
};

/// Pixels; the picture's upper left corner is the origin.
struct Layout
{
    std::vector<Point> corners;             ///< upper left, of each node
    std::vector<std::vector<Point>> routes; ///< of each edge: points that it passes through from left to right; empty
                                            ///< for an edge within a cycle
    std::vector<Rectangle> frames;          ///< around the nodes of each cycle
    Size size;
};

/// Columns from left to right: what a bundle depends on stands to its right, as near as all others allow. The nodes of
/// a cycle share a column. Bundles without any dependency stand in a grid below.
Layout layOut(const BundleGraph& graph, const std::vector<Size>& sizes);

} // namespace cli
