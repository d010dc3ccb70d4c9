#include "cli/graph/Cycles.h"

#include <gtest/gtest.h>

namespace {

using cli::connectedComponents;
using cli::shortestCycle;
using Nodes = std::vector<std::size_t>;
using Components = std::vector<Nodes>;

TEST(CyclesTest, ComponentsComeBeforeThoseThatPointToThem)
{
    EXPECT_EQ(connectedComponents({}), Components());
    EXPECT_EQ(connectedComponents({{1, 2}, {3}, {3}, {}}), (Components{{3}, {1}, {2}, {0}}));
    EXPECT_EQ(connectedComponents({{1}, {2}, {0, 3}, {4}, {3}, {0}}), (Components{{3, 4}, {0, 1, 2}, {5}}));
}

TEST(CyclesTest, AChainOfAHundredThousandTakesNoStack)
{
    constexpr std::size_t kLength = 100000;
    cli::Successors chain(kLength);
    for (std::size_t node = 0; node + 1 < kLength; ++node) {
        chain[node] = {node + 1};
    }
    EXPECT_EQ(connectedComponents(chain).size(), kLength);
    chain.back() = {0};
    const Components components = connectedComponents(chain);
    ASSERT_EQ(components.size(), 1U);
    EXPECT_EQ(shortestCycle(chain, components.front()).size(), kLength);
}

TEST(CyclesTest, AShortestCycleIsGivenInTheOrderOfItsEdges)
{
    EXPECT_EQ(shortestCycle({{1, 2}, {2}, {3}, {0}}, {0, 1, 2, 3}), (Nodes{0, 2, 3}));
    EXPECT_EQ(shortestCycle({{0}}, {0}), Nodes{0});
    EXPECT_EQ(shortestCycle({{1}, {}}, {0}), Nodes());
}

} // namespace
