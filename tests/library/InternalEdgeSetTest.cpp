#include "EdgeSets.h"
#include "SampleMeshes.h"

#include <gtest/gtest.h>

#include <random>
#include <set>

namespace
{
using samples::Points;
using samples::Quads;
using samples::Sample;
using Edge = std::pair<int, int>;
using Edges = std::vector<Edge>;

Edges listed(VOZCatMesh const & mesh)
{
    InternalEdgeSet const edges(mesh);
    Edges result;
    for (int k = 1; k <= edges.numEdge(); ++k)
        result.emplace_back(edges.startNode(k), edges.endNode(k));
    return result;
}

TEST(InternalEdgeSet, OfOneElementOrNothingIsEmpty)
{
    EXPECT_EQ(listed(samples::triangles({{1, 2, 3}})), Edges());
    EXPECT_EQ(listed(VOZCatMesh()), Edges());
}

TEST(InternalEdgeSet, ListsASharedSideFromItsHigherNode)
{
    EXPECT_EQ(listed(samples::triangles({{1, 2, 3}, {1, 3, 4}})), (Edges{{3, 1}}));
}

TEST(InternalEdgeSet, OfNeighboursThatRunTheSameWayListsTheSideTwiceOrNever)
{
    EXPECT_EQ(listed(samples::triangles({{3, 1, 2}, {3, 1, 4}})), (Edges{{3, 1}, {3, 1}}));
    EXPECT_EQ(listed(samples::triangles({{1, 3, 2}, {1, 3, 4}})), Edges());
}

TEST(InternalEdgeSet, HoldsEachEdgeOfAClosedMeshOnce)
{
    EXPECT_EQ(listed(samples::closedBox()).size(), 12U);
}

TEST(InternalEdgeSet, OnEverySampleItAndTheFreeEdgesAreAllEdgesOnce)
{
    for (Sample & sample : samples::cleanSamples())
        for (int const offset : {0, 500})
        {
            sample.mesh.IdsOffset(offset, 0);
            std::set<Edge> expected;
            for (int e = 1; e <= sample.mesh.numElem(); ++e)
                for (int corner = 0; corner < 4; ++corner)
                    if (sample.mesh.elem(e, corner) != sample.mesh.elem(e, (corner + 1) % 4))
                        expected.insert(
                            std::minmax({sample.mesh.elem(e, corner), sample.mesh.elem(e, (corner + 1) % 4)}));
            FreeEdgeSet const free(sample.mesh);
            Edges const internal = listed(sample.mesh);
            EXPECT_EQ(internal.size() + static_cast<std::size_t>(free.numEdge()), expected.size()) << sample.name;
            for (int k = 1; k <= free.numEdge(); ++k)
                EXPECT_EQ(expected.erase(std::minmax({free.startNode(k), free.endNode(k)})), 1U) << sample.name;
            for (Edge const & edge : internal)
            {
                EXPECT_GT(edge.first, edge.second);
                EXPECT_EQ(expected.erase(Edge(edge.second, edge.first)), 1U) << sample.name;
            }
        }
}

TEST(InternalEdgeSet, AgreesWithTheSlowSearchOnRandomTangles)
{
    std::mt19937 random(43);
    for (int round = 0; round < 300; ++round)
    {
        std::size_t const numNode = 4 + random() % 10;
        Quads tangle(1 + random() % 15);
        for (std::array<int, 4> & row : tangle)
            for (int & entry : row)
                entry = 1 + static_cast<int>(random() % numNode);
        VOZCatMesh const mesh = samples::mesh(Points(numNode), tangle);
        Edges expected;
        for (int e = 1; e <= mesh.numElem(); ++e)
            for (int corner = 0; corner < 4; ++corner)
            {
                int const a = mesh.elem(e, corner);
                int const b = mesh.elem(e, (corner + 1) % 4);
                bool shared = false;
                for (int other = 1; other <= mesh.numElem(); ++other)
                    shared = shared || (other != e && mesh.GetElementNodePosition(other, a) >= 0 &&
                                        mesh.GetElementNodePosition(other, b) >= 0);
                if (a > b && shared)
                    expected.emplace_back(a, b);
            }
        ASSERT_EQ(listed(mesh), expected) << "round " << round;
    }
}
} // namespace
