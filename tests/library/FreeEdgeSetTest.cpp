// FreeEdgeSetTest.cpp: the boundary edges of a mesh, their numbering, and what hides a side.

#include "EdgeSets.h"
#include "SampleMeshes.h"

#include <gtest/gtest.h>

#include <random>

namespace
{
using samples::Ints;
using samples::Points;
using samples::Quads;
using samples::Sample;

using Row = std::array<int, 4>; // element, local, start, end

std::vector<Row> rows(FreeEdgeSet const & edges)
{
    std::vector<Row> result;
    for (int k = 1; k <= edges.numEdge(); ++k)
        result.push_back({edges.elem(k), edges.elemLocal(k), edges.startNode(k), edges.endNode(k)});
    return result;
}

// Every side of every element against every other element.
std::vector<Row> slowRows(VOZCatMesh const & mesh)
{
    std::vector<Row> result;
    for (int e = 1; e <= mesh.numElem(); ++e)
        for (int corner = 0; corner < 4; ++corner)
        {
            int const a = mesh.elem(e, corner);
            int const b = mesh.elem(e, (corner + 1) % 4);
            bool shared = false;
            for (int other = 1; other <= mesh.numElem(); ++other)
                shared = shared || (other != e && mesh.GetElementNodePosition(other, a) >= 0 &&
                                    mesh.GetElementNodePosition(other, b) >= 0);
            if (a != b && !shared)
                result.push_back({e, corner, a, b});
        }
    return result;
}

TEST(FreeEdgeSet, OfATriangleIsItsThreeSides)
{
    EXPECT_EQ(rows(FreeEdgeSet(samples::triangles({{1, 2, 3}}))),
              (std::vector<Row>{{1, 0, 1, 2}, {1, 1, 2, 3}, {1, 2, 3, 1}}));
}

TEST(FreeEdgeSet, OfAQuadrilateralIsItsFourSides)
{
    EXPECT_EQ(rows(FreeEdgeSet(samples::quads({{4, 3, 2, 1}}))),
              (std::vector<Row>{{1, 0, 4, 3}, {1, 1, 3, 2}, {1, 2, 2, 1}, {1, 3, 1, 4}}));
}

//   4---3
//   |2/1|
//   1---2
TEST(FreeEdgeSet, ASharedSideIsNotFree)
{
    EXPECT_EQ(rows(FreeEdgeSet(samples::triangles({{1, 2, 3}, {1, 3, 4}}))),
              (std::vector<Row>{{1, 0, 1, 2}, {1, 1, 2, 3}, {2, 1, 3, 4}, {2, 2, 4, 1}}));
}

TEST(FreeEdgeSet, DirectionPlaysNoPart)
{
    EXPECT_EQ(FreeEdgeSet(samples::triangles({{1, 2, 3}, {3, 1, 4}})).numEdge(), 4);
}

TEST(FreeEdgeSet, AnEdgeOfThreeElementsIsNothingSpecial)
{
    EXPECT_EQ(FreeEdgeSet(samples::triangles({{1, 2, 3}, {1, 2, 4}, {1, 2, 5}})).numEdge(), 6);
}

//   1-2-3-4 is a quadrilateral; the triangle 1-3-5 stands on its diagonal
TEST(FreeEdgeSet, OppositeCornersOfAQuadrilateralHideASide)
{
    EXPECT_EQ(rows(FreeEdgeSet(samples::quads({{1, 2, 3, 4}, {1, 3, 5, 1}}))),
              (std::vector<Row>{{1, 0, 1, 2}, {1, 1, 2, 3}, {1, 2, 3, 4}, {1, 3, 4, 1}, {2, 1, 3, 5}, {2, 2, 5, 1}}));
}

TEST(FreeEdgeSet, UnmergedNodesLeaveTheSeamOpen)
{
    VOZCatMesh const mesh =
        samples::mesh({{0, 0, 0}, {1, 0, 0}, {1, 1, 0}, {0, 1, 0}, {1, 0, 0}, {2, 0, 0}, {2, 1, 0}, {1, 1, 0}},
                      Quads{{1, 2, 3, 4}, {5, 6, 7, 8}});
    EXPECT_EQ(FreeEdgeSet(mesh).numEdge(), 8);
}

TEST(FreeEdgeSet, OfAClosedMeshOrOfNothingIsEmpty)
{
    EXPECT_EQ(FreeEdgeSet(samples::closedBox()).numEdge(), 0);
    EXPECT_EQ(FreeEdgeSet(VOZCatMesh()).numEdge(), 0);
    EXPECT_EQ(FreeEdgeSet(VOZCatMesh(4, 0)).numEdge(), 0);
}

TEST(FreeEdgeSet, IsASnapshot)
{
    VOZCatMesh mesh = samples::quads({{1, 2, 3, 4}});
    FreeEdgeSet const edges(mesh);
    mesh.reverse();
    EXPECT_EQ(edges.endNode(1), 2);
}

TEST(FreeEdgeSet, AgreesWithTheSlowSearchOnEverySampleWhateverTheOffset)
{
    for (Sample & sample : samples::cleanSamples())
    {
        std::vector<Row> const expected = slowRows(sample.mesh);
        EXPECT_EQ(rows(FreeEdgeSet(sample.mesh)), expected) << sample.name;
        sample.mesh.IdsOffset(1000, 2000);
        EXPECT_EQ(rows(FreeEdgeSet(sample.mesh)), expected) << sample.name;
    }
}

TEST(FreeEdgeSet, AgreesWithTheSlowSearchOnRandomTangles)
{
    std::mt19937 random(41);
    for (int round = 0; round < 500; ++round)
    {
        std::size_t const numNode = 4 + random() % 12;
        Quads tangle(1 + random() % 20);
        for (std::array<int, 4> & row : tangle)
        {
            for (int & entry : row)
                entry = 1 + static_cast<int>(random() % numNode);
            if (random() % 2)
                row[3] = row[0];
        }
        VOZCatMesh const mesh = samples::mesh(Points(numNode), tangle);
        ASSERT_EQ(rows(FreeEdgeSet(mesh)), slowRows(mesh)) << "round " << round;
    }
}

// All around one node: the search stays linear however many elements meet there.
TEST(FreeEdgeSet, OfAWideFanIsItsRim)
{
    int const spokes = 200000;
    samples::Triangles fan;
    for (int i = 0; i < spokes; ++i)
        fan.push_back({1, 2 + i, 2 + (i + 1) % spokes});
    FreeEdgeSet const edges(samples::mesh(Points(spokes + 1), fan));
    ASSERT_EQ(edges.numEdge(), spokes);
    for (int k = 1; k <= spokes; ++k)
        ASSERT_EQ(edges.elemLocal(k), 1);
}

TEST(FreeEdgeSet, CornersThatAreNoNodesShareNothing)
{
    testing::internal::CaptureStdout();
    FreeEdgeSet const edges(samples::mesh(Points(3), Quads{{1, 2, 99, 1}, {1, 3, 99, 1}, {-5, -6, 2000000000, 3}}));
    testing::internal::GetCapturedStdout();
    EXPECT_EQ(rows(edges), (std::vector<Row>{{1, 0, 1, 2},
                                             {1, 1, 2, 99},
                                             {1, 2, 99, 1},
                                             {2, 0, 1, 3},
                                             {2, 1, 3, 99},
                                             {2, 2, 99, 1},
                                             {3, 0, -5, -6},
                                             {3, 1, -6, 2000000000},
                                             {3, 2, 2000000000, 3},
                                             {3, 3, 3, -5}}));
}
} // namespace
