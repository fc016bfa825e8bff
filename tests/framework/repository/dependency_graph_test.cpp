#include "repository/dependency_graph.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace
{
using repository::DependencyGraph;
using testing::ElementsAre;
using testing::UnorderedElementsAre;

TEST(DependencyGraph, OrdersAfterWhatIsNeededAndOtherwiseByNumber)
{
    DependencyGraph graph(4);
    graph.add(0, 3);
    graph.add(3, 2);
    EXPECT_THAT(graph.order(), ElementsAre(1, 2, 3, 0));
    EXPECT_TRUE(graph.circles().empty());
}

TEST(DependencyGraph, CirclesAreFoundAndNotFollowed)
{
    DependencyGraph graph(5);
    graph.add(0, 1);
    graph.add(1, 2);
    graph.add(2, 0);
    graph.add(3, 0);
    graph.add(4, 4);
    EXPECT_THAT(graph.circles(), UnorderedElementsAre(UnorderedElementsAre(0, 1, 2), ElementsAre(4)));
    EXPECT_THAT(graph.order(), ElementsAre(0, 1, 2, 3, 4));
}

TEST(DependencyGraph, LongChainsNeedNoDeepStack)
{
    constexpr std::size_t kNodes = 300000;
    DependencyGraph graph(kNodes);
    for (std::size_t node = 0; node + 1 < kNodes; ++node)
    {
        graph.add(node, node + 1);
    }
    const auto order = graph.order();
    ASSERT_EQ(order.size(), kNodes);
    EXPECT_EQ(order.front(), kNodes - 1);
    EXPECT_TRUE(graph.circles().empty());
}
} // namespace
