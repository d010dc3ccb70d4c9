// The picture that needs no other program.
#include "cli/graph/Layout.h"
#include "cli/graph/Pictures.h"
#include "cli/graph/SvgBox.h"
#include "cli/graph/TextWidth.h"

#include <algorithm>
#include <cstdlib>

namespace cli {

namespace {

constexpr int kBorder = 28;
constexpr int kHeadingHeight = 40;
constexpr int kLegend = 44; ///< that of the explanation at the foot

constexpr char kStyle[] = R"(<style>
text { font-family: "DejaVu Sans", Verdana, "Noto Sans", "Noto Sans CJK SC", sans-serif; fill: #1f2328; }
.heading { font-size: 17px; font-weight: bold; }
.title { font-size: 13px; font-weight: bold; }
.line, .legend { font-size: 11px; fill: #424a53; }
.box { stroke-width: 1.5; }
.fine { fill: #eaf6ec; stroke: #1a7f37; }
.doubtful { fill: #fff8e1; stroke: #7d4e00; }
.broken { fill: #fdecec; stroke: #b3261e; }
.missing { fill: #ffffff; stroke: #57606a; stroke-dasharray: 6 4; }
.sign { fill: none; stroke-width: 2; stroke-linecap: round; stroke-linejoin: round; }
.edge { fill: none; stroke: #57606a; stroke-width: 1.5; marker-end: url(#arrow); }
.open { stroke-dasharray: 6 4; }
.cyclic { stroke: #b3261e; stroke-width: 2.5; marker-end: url(#cyclic-arrow); }
.frame { fill: #fff5f5; stroke: #b3261e; stroke-width: 1.5; stroke-dasharray: 2 4; }
</style>
<defs>
<marker id="arrow" viewBox="0 0 8 8" refX="7.5" refY="4" markerWidth="8" markerHeight="8" markerUnits="userSpaceOnUse" orient="auto"><path d="M0 0L8 4L0 8z" fill="#57606a"/></marker>
<marker id="cyclic-arrow" viewBox="0 0 8 8" refX="7.5" refY="4" markerWidth="11" markerHeight="11" markerUnits="userSpaceOnUse" orient="auto"><path d="M0 0L8 4L0 8z" fill="#b3261e"/></marker>
</defs>
)";

std::string pointText(int x, int y)
{
    return std::to_string(x) + " " + std::to_string(y);
}

/// From point to point with level ends: straight within a column, curved between two.
std::string wayThrough(const std::vector<Point>& points)
{
    std::string way = "M" + pointText(points.front().x, points.front().y);
    for (std::size_t at = 1; at < points.size(); ++at) {
        const Point from = points[at - 1];
        const Point to = points[at];
        if (from.y == to.y) {
            way += "H" + std::to_string(to.x);
        } else {
            const int middle = (from.x + to.x) / 2;
            way += "C" + pointText(middle, from.y) + " " + pointText(middle, to.y) + " " + pointText(to.x, to.y);
        }
    }
    return way;
}

class Drawing
{
public:
    Drawing(const BundleGraph& drawnGraph, const PictureOptions& options) : graph(drawnGraph)
    {
        for (const GraphNode& node : graph.nodes) {
            boxes.push_back(svgBox(node, options));
        }
        widenCycles();
        std::vector<Size> sizes;
        for (const SvgBox& box : boxes) {
            sizes.push_back(box.size);
        }
        layout = layOut(graph, sizes);
    }

    std::string write() const
    {
        const std::string heading = "Bundles and what they depend on";
        const int width = std::max(layout.size.width, kNarrowest) + 2 * kBorder;
        const int height = layout.size.height + 2 * kBorder + kHeadingHeight + kLegend;
        std::string text = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
                           "<svg xmlns=\"http://www.w3.org/2000/svg\" role=\"img\" aria-labelledby=\"title desc\" "
                           "width=\"" +
                           std::to_string(width) + "\" height=\"" + std::to_string(height) + "\" viewBox=\"0 0 " +
                           pointText(width, height) + "\">\n<title id=\"title\">" + heading +
                           "</title>\n<desc id=\"desc\">" + description() + "</desc>\n" + kStyle +
                           "<rect width=\"100%\" height=\"100%\" fill=\"#ffffff\"/>\n";
        text += "<text class=\"heading\" x=\"" + std::to_string(kBorder) + "\" y=\"" + std::to_string(kBorder + 14) +
                "\">" + heading + "</text>\n";
        text +=
            "<g transform=\"translate(" + pointText(kBorder, kBorder + kHeadingHeight) + ")\">\n" + body() + "</g>\n";
        return text + legend(height - kBorder) + "</svg>\n";
    }

private:
    static constexpr int kNarrowest = 860; ///< so that the legend has its room

    /// Lines of a cycle run beside its boxes, which are to end at the same height.
    void widenCycles()
    {
        std::vector<int> widest(graph.cycles.size(), 0);
        for (std::size_t node = 0; node < boxes.size(); ++node) {
            if (const auto& cycle = graph.nodes[node].cycle) {
                widest[*cycle] = std::max(widest[*cycle], boxes[node].size.width);
            }
        }
        for (std::size_t node = 0; node < boxes.size(); ++node) {
            if (const auto& cycle = graph.nodes[node].cycle) {
                boxes[node].size.width = widest[*cycle];
            }
        }
    }

    std::string description() const
    {
        std::string text = graphSummary(graph) + ". A line leads from each bundle to those that it depends on.";
        for (const std::vector<std::size_t>& cycle : graph.cycles) {
            text += " Cycle: " + cycleText(graph, cycle, " > ") + ".";
        }
        for (const GraphNode& node : graph.nodes) {
            text += node.isMissing() ? " Missing: " + node.title + "." : "";
        }
        return xmlText(text);
    }

    std::string body() const
    {
        std::string text;
        for (const Rectangle& frame : layout.frames) {
            text += "<rect class=\"frame\" x=\"" + std::to_string(frame.corner.x) + "\" y=\"" +
                    std::to_string(frame.corner.y) + "\" width=\"" + std::to_string(frame.size.width) + "\" height=\"" +
                    std::to_string(frame.size.height) + "\" rx=\"12\"/>\n";
        }
        for (std::size_t edge = 0; edge < graph.edges.size(); ++edge) {
            text += edgeText(edge);
        }
        for (std::size_t node = 0; node < graph.nodes.size(); ++node) {
            text += drawn(boxes[node], graph.nodes[node], layout.corners[node]);
        }
        return text;
    }

    std::string edgeText(std::size_t index) const
    {
        const GraphEdge& edge = graph.edges[index];
        const char* const style = edge.isInCycle ? "edge cyclic" : edge.isSatisfied ? "edge" : "edge open";
        const std::vector<Point>& route = layout.routes[index];
        return "<path class=\"" + std::string(style) + "\" d=\"" + (route.empty() ? arc(edge) : wayThrough(route)) +
               "\"/>\n";
    }

    /// On the right of the boxes of a cycle; it leaves a box below its middle, and arrives at one above that.
    std::string arc(const GraphEdge& edge) const
    {
        constexpr int kReach = 52;
        const int right = layout.corners[edge.from].x + boxes[edge.from].size.width;
        const int from = middleOf(edge.from) + 7;
        const int to = middleOf(edge.to) - 7;
        return "M" + pointText(right, from) + "C" + pointText(right + kReach, from) + " " +
               pointText(right + kReach, to) + " " + pointText(right, to);
    }

    int middleOf(std::size_t node) const { return layout.corners[node].y + boxes[node].size.height / 2; }

    std::string legend(int y) const
    {
        int x = kBorder;
        std::string text;
        const auto say = [&](const std::string& words) {
            text += "<text class=\"legend\" x=\"" + std::to_string(x) + "\" y=\"" + std::to_string(y) + "\">" + words +
                    "</text>\n";
            x += textWidth(words, 11) + 18;
        };
        for (const auto& [standing, words] :
             {std::pair(NodeStanding::kFine, "loaded"), std::pair(NodeStanding::kDoubtful, "not, or not wholly loaded"),
              std::pair(NodeStanding::kBroken, "dropped or unreadable"),
              std::pair(NodeStanding::kMissing, "missing")}) {
            text += standingSign(standing, {x, y - 11});
            x += 20;
            say(words);
        }
        for (const auto& [style, words] : {std::pair("edge", "depends on"), std::pair("edge open", "not satisfied"),
                                           std::pair("edge cyclic", "in a cycle")}) {
            text += "<path class=\"" + std::string(style) + "\" d=\"M" + pointText(x, y - 4) + "h30\"/>\n";
            x += 38;
            say(words);
        }
        return text;
    }

    const BundleGraph& graph;
    std::vector<SvgBox> boxes;
    Layout layout;
};

} // namespace

std::string svgText(const BundleGraph& graph, const PictureOptions& options)
{
    return Drawing(graph, options).write();
}

} // namespace cli
