// NodeElemMapTest.cpp: the elements at each node, and the free edges at each node.

#include "EdgeSets.h"
#include "SampleMeshes.h"

#include <gtest/gtest.h>

#include <map>
#include <random>
#include <string>

namespace
{
using samples::Ints;
using samples::Points;
using samples::Quads;
using samples::Sample;

constexpr char const * kCountLimit = "NodeElemMap::NodeElemMap -- mOffset over limit\n";
constexpr char const * kFillLimit = "NodeElemMap::NodeElemMap -- mMap over limit\n";

Ints elemsAt(NodeElemMap const & map, int n)
{
    Ints result;
    for (int i = 0; i < map.references(n); ++i)
        result.push_back(map.elem(n, i));
    return result;
}

Ints edgesAt(NodeFreeEdgeMap const & map, int n)
{
    Ints result;
    for (int i = 0; i < map.references(n); ++i)
        result.push_back(map.edge(n, i));
    return result;
}

//   4---3---6
//   | 1 | \2|     3 is the triangle 2, 5, 6
//   1---2---5
TEST(NodeElemMap, ListsTheElementsOfEachNodeAscending)
{
    NodeElemMap const map(samples::quads({{1, 2, 3, 4}, {6, 3, 2, 6}, {2, 5, 6, 2}}));
    EXPECT_EQ(map.numNode(), 6);
    EXPECT_EQ(elemsAt(map, 1), (Ints{1}));
    EXPECT_EQ(elemsAt(map, 2), (Ints{1, 2, 3}));
    EXPECT_EQ(elemsAt(map, 3), (Ints{1, 2}));
    EXPECT_EQ(elemsAt(map, 4), (Ints{1}));
    EXPECT_EQ(elemsAt(map, 5), (Ints{3}));
    EXPECT_EQ(elemsAt(map, 6), (Ints{2, 3})); // a triangle's fourth entry is not entered
}

TEST(NodeElemMap, OfANodeThatNoElementUsesIsEmpty)
{
    NodeElemMap const map(samples::mesh(Points(5), Quads{{1, 2, 4, 1}}));
    EXPECT_EQ(map.references(3), 0);
    EXPECT_EQ(map.references(5), 0);
    EXPECT_EQ(map.references(4), 1);
}

TEST(NodeElemMap, OfNothingIsEmpty)
{
    EXPECT_EQ(NodeElemMap(VOZCatMesh()).numNode(), 0);
    VOZCatMesh counted;
    counted.numElem(7);
    EXPECT_EQ(NodeElemMap(counted).numNode(), 0);
    EXPECT_EQ(NodeElemMap(VOZCatMesh(3, 0)).references(3), 0);
}

TEST(NodeElemMap, AQuadrilateralThatRepeatsANodeIsEnteredTwiceThere)
{
    NodeElemMap const map(samples::quads({{1, 2, 3, 3}}));
    EXPECT_EQ(elemsAt(map, 3), (Ints{1, 1}));
}

TEST(NodeElemMap, AgreesWithASearchOnEverySampleWhateverTheOffset)
{
    for (Sample & sample : samples::cleanSamples())
        for (int const offset : {0, 1000})
        {
            sample.mesh.IdsOffset(offset, 2 * offset);
            NodeElemMap const map(sample.mesh);
            for (int n = 1; n <= sample.mesh.numNode(); ++n)
            {
                Ints expected;
                for (int e = 1; e <= sample.mesh.numElem(); ++e)
                    if (sample.mesh.GetElementNodePosition(e, n) >= 0)
                        expected.push_back(e);
                EXPECT_EQ(elemsAt(map, n), expected) << sample.name;
            }
        }
}

TEST(NodeElemMap, IsASnapshot)
{
    VOZCatMesh mesh = samples::quads({{1, 2, 3, 4}});
    NodeElemMap const map(mesh);
    mesh.elem(1, 0, 2);
    EXPECT_EQ(elemsAt(map, 1), (Ints{1}));
}

std::string printed(VOZCatMesh const & mesh)
{
    testing::internal::CaptureStdout();
    NodeElemMap const map(mesh);
    return testing::internal::GetCapturedStdout();
}

TEST(NodeElemMap, SaysWhenAnElementsFirstNodeIsOverTheLimitAndGoesOn)
{
    VOZCatMesh const mesh = samples::mesh(Points(3), Quads{{-1, 2, 3, -1}, {1, 2, 3, 1}, {5, 2, 3, 5}});
    testing::internal::CaptureStdout();
    NodeElemMap const map(mesh);
    EXPECT_EQ(testing::internal::GetCapturedStdout(), std::string(kCountLimit) + kCountLimit + kFillLimit + kFillLimit);
    EXPECT_EQ(elemsAt(map, 1), (Ints{2}));
    EXPECT_EQ(elemsAt(map, 3), (Ints{1, 2, 3}));
}

TEST(NodeElemMap, TestsTheFirstNodeOnlyAndOnlyBeyondOneMore)
{
    EXPECT_EQ(printed(samples::mesh(Points(3), Quads{{1, -9, 3, 1}})), kFillLimit);
    EXPECT_EQ(printed(samples::mesh(Points(3), Quads{{0, 2, 3, 0}})), kFillLimit);
    EXPECT_EQ(printed(samples::mesh(Points(3), Quads{{4, 2, 3, 4}})), kFillLimit);
    EXPECT_EQ(printed(samples::mesh(Points(3), Quads{{1, 2, 3, 1}})), "");
}

TEST(NodeFreeEdgeMap, OfASimpleBoundaryHasTwoEdgesAtEachNode)
{
    for (Sample const & sample : samples::cleanSamples())
    {
        FreeEdgeSet const edges(sample.mesh);
        NodeFreeEdgeMap const map(sample.mesh, edges);
        EXPECT_EQ(map.numNode(), sample.mesh.numNode());
        std::map<int, Ints> expected;
        for (int k = 1; k <= edges.numEdge(); ++k)
        {
            expected[edges.startNode(k)].push_back(k);
            expected[edges.endNode(k)].push_back(k);
        }
        for (int n = 1; n <= map.numNode(); ++n)
        {
            EXPECT_EQ(edgesAt(map, n), expected[n]) << sample.name;
            EXPECT_TRUE(map.references(n) == 0 || map.references(n) == 2) << sample.name;
        }
    }
}

TEST(NodeFreeEdgeMap, TakesTheNodeCountFromTheMeshAndDropsWhatLiesBeyond)
{
    VOZCatMesh const mesh = samples::quads({{1, 2, 3, 4}});
    FreeEdgeSet const edges(mesh);
    NodeFreeEdgeMap const map(VOZCatMesh(2, 0), edges);
    EXPECT_EQ(map.numNode(), 2);
    EXPECT_EQ(edgesAt(map, 1), (Ints{1, 4}));
    EXPECT_EQ(edgesAt(map, 2), (Ints{1, 2}));
}
} // namespace
