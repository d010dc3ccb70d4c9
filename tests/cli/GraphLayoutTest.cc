// Where boxes stand: none on another, and each left of what it depends on.
#include "cli/graph/Layout.h"
#include "cli/graph/TextWidth.h"

#include <gtest/gtest.h>

namespace {

using namespace cli;

/// A graph of `count` nodes with edges that a fixed sequence of numbers chooses.
BundleGraph graphOf(std::size_t count, std::size_t edges)
{
    static const ExaminedBundle kNoMatterWhich{};
    BundleGraph graph;
    graph.nodes.resize(count);
    for (GraphNode& node : graph.nodes) {
        node.bundle = &kNoMatterWhich;
    }
    std::size_t number = 12345;
    for (std::size_t at = 0; at < edges; ++at) {
        number = (number * 1103515245 + 12345) % 2147483648U;
        const std::size_t from = number / 16 % (count - 1);
        number = (number * 1103515245 + 12345) % 2147483648U;
        const std::size_t to = from + 1 + number / 16 % (count - 1 - from);
        graph.nodes[from].needs.push_back(graph.edges.size());
        graph.edges.push_back({from, to});
    }
    return graph;
}

bool overlap(const Layout& layout, const std::vector<Size>& sizes, std::size_t one, std::size_t other)
{
    const Point a = layout.corners[one];
    const Point b = layout.corners[other];
    return a.x < b.x + sizes[other].width && b.x < a.x + sizes[one].width && a.y < b.y + sizes[other].height &&
           b.y < a.y + sizes[one].height;
}

TEST(GraphLayoutTest, NoBoxStandsOnAnotherAndEachStandsLeftOfWhatItDependsOn)
{
    for (const std::size_t edges : {0U, 10U, 40U, 200U}) {
        const BundleGraph graph = graphOf(40, edges);
        std::vector<Size> sizes;
        for (int at = 0; at < 40; ++at) {
            sizes.push_back({60 + at * 7 % 90, 40 + at * 11 % 50});
        }
        const Layout layout = layOut(graph, sizes);
        for (std::size_t one = 0; one < sizes.size(); ++one) {
            EXPECT_GE(layout.corners[one].x, 0);
            EXPECT_GE(layout.corners[one].y, 0);
            EXPECT_LE(layout.corners[one].x + sizes[one].width, layout.size.width);
            EXPECT_LE(layout.corners[one].y + sizes[one].height, layout.size.height);
            for (std::size_t other = 0; other < one; ++other) {
                EXPECT_FALSE(overlap(layout, sizes, one, other)) << one << " and " << other << ", " << edges;
            }
        }
        for (std::size_t edge = 0; edge < graph.edges.size(); ++edge) {
            const std::size_t from = graph.edges[edge].from;
            const std::size_t to = graph.edges[edge].to;
            EXPECT_LT(layout.corners[from].x + sizes[from].width, layout.corners[to].x);
            EXPECT_EQ(layout.routes[edge].front().x, layout.corners[from].x + sizes[from].width);
            EXPECT_EQ(layout.routes[edge].back().x, layout.corners[to].x);
        }
    }
}

TEST(GraphLayoutTest, ALineThatLeadsFurtherPassesBetweenTheBoxes)
{
    BundleGraph graph = graphOf(3, 0);
    graph.edges = {{0, 1}, {1, 2}, {0, 2}};
    const std::vector<Size> sizes(3, {100, 50});
    const Layout layout = layOut(graph, sizes);
    const std::vector<Point>& route = layout.routes[2];
    ASSERT_EQ(route.size(), 5U); // it begins, ends its column, passes one from end to end, and arrives
    EXPECT_EQ(route[2].x, layout.corners[1].x);
    EXPECT_EQ(route[3].x, layout.corners[1].x + 100);
    EXPECT_EQ(route[2].y, route[3].y);
    EXPECT_TRUE(route[2].y < layout.corners[1].y || route[2].y > layout.corners[1].y + 50);
}

TEST(GraphLayoutTest, IdeographsAreTwiceAsWideAndCombiningCharactersHaveNoWidth)
{
    EXPECT_EQ(textWidth("", 10), 0);
    EXPECT_EQ(textWidth("aa", 10), 13);
    EXPECT_EQ(textWidth("图纸", 10), 20);
    EXPECT_EQ(textWidth("e\u0301", 10), textWidth("e", 10));
    EXPECT_EQ(clippedText("abc", 10, 100), "abc");
    EXPECT_EQ(clippedText("图纸标注", 10, 30), "图纸…");
}

} // namespace
