// LoopFiltersTest.cpp: large inner loops, symmetry edges, and the edges that the full blank holder gets.

#include "LoopFilters.h"

#include "BoundaryFixture.h"
#include "ElemProperty.h"
#include "SampleMeshes.h"
#include "Symmetry.h"
#include "VOZCatAxis.h"
#include "VecInspection.h"

#include <gtest/gtest.h>

#include <cmath>
#include <random>
#include <set>

namespace
{
using samples::Grid;
using samples::Ints;
using samples::Points;
using samples::Quads;
using samples::Sample;

Ints marks(LoopSizeFilter const & filter, FreeEdgeLoops const & loops)
{
    Ints result;
    for (int l = 1; l <= loops.numLoops(); ++l)
        result.push_back(filter.isFilteredLoop(l));
    return result;
}

Ints marks(LoopSymmetryFilter const & filter, FreeEdgeLoops const & loops)
{
    Ints result;
    for (int i = 1; i <= loops.numOuter(); ++i)
        result.push_back(filter.isSymmetryEdge(i));
    return result;
}

Ints xzNodes(LoopSymmetryFilter const & filter)
{
    Ints result;
    for (int i = 0; i < filter.numXZsymmetry(); ++i)
        result.push_back(filter.xzNode(i));
    return result;
}

Ints yzNodes(LoopSymmetryFilter const & filter)
{
    Ints result;
    for (int i = 0; i < filter.numYZsymmetry(); ++i)
        result.push_back(filter.yzNode(i));
    return result;
}

FullBlankHolder active()
{
    FullBlankHolder holder;
    holder.factor(0.5);
    return holder;
}

// A 10 x 10 plate of unit cells around a square hole from cell 2 of 1 to 6 cells a side.
Grid plate(int holeSize)
{
    Grid grid;
    grid.columns = grid.rows = 10;
    grid.x1 = grid.y1 = 10;
    grid.drop = [holeSize](int column, int row)
    { return column >= 2 && column < 2 + holeSize && row >= 2 && row < 2 + holeSize; };
    return grid;
}

TEST(LoopSizeFilter, OfOneLoopMarksNothing)
{
    Chained const chained(samples::quads({{1, 2, 3, 4}}));
    LoopSizeFilter const filter(chained.loops, 0.2F);
    EXPECT_EQ(filter.numFilteredInnerLoops(), 0);
    EXPECT_EQ(filter.numFilteredInnerEdges(), 0);
    EXPECT_EQ(filter.isFilteredLoop(1), 0);
}

TEST(LoopSizeFilter, MarksAnInnerLoopOfExactlyTheRatio)
{
    Chained const chained(plate(5).mesh()); // 20 around the hole, 40 around the plate
    ASSERT_EQ(chained.loops.loopLength(2), 20);
    LoopSizeFilter const filter(chained.loops, 0.5F);
    EXPECT_EQ(marks(filter, chained.loops), (Ints{0, 1}));
    EXPECT_EQ(filter.numFilteredInnerLoops(), 1);
    EXPECT_EQ(filter.numFilteredInnerEdges(), 20);
    EXPECT_EQ(marks(LoopSizeFilter(chained.loops, std::nextafter(0.5F, 1.0F)), chained.loops), (Ints{0, 0}));
}

// 0.2 as a float is a little more than 0.2: 8 of 40 is not enough.
TEST(LoopSizeFilter, FormsTheProductInDoubleFromTheFloat)
{
    Chained const chained(plate(2).mesh());
    ASSERT_EQ(chained.loops.loopLength(2), 8);
    EXPECT_EQ(marks(LoopSizeFilter(chained.loops, 0.2F), chained.loops), (Ints{0, 0}));
}

TEST(LoopSizeFilter, CountsTheEdgesOfAllMarkedLoops)
{
    Grid grid = plate(0);
    grid.drop = [](int column, int row)
    {
        return (row >= 1 && row < 4 && column >= 1 && column < 4) || (row == 6 && column == 6) ||
               (row == 8 && column < 9 && column > 4);
    };
    Chained const chained(grid.mesh());
    ASSERT_EQ(chained.loops.numLoops(), 4); // lengths 40, 12, 4, 10
    LoopSizeFilter const filter(chained.loops, 0.25F);
    EXPECT_EQ(marks(filter, chained.loops), (Ints{0, 1, 0, 1}));
    EXPECT_EQ(filter.numFilteredInnerLoops(), 2);
    EXPECT_EQ(filter.numFilteredInnerEdges(), 22);
}

TEST(LoopSizeFilter, WithoutAnOuterLoopMarksAll)
{
    VOZCatMesh const apart =
        samples::mesh({{0, 0, 0}, {2, 0, 0}, {2, 2, 0}, {0, 2, 0}, {10, 10, 0}, {12, 10, 0}, {12, 12, 0}, {10, 12, 0}},
                      Quads{{1, 2, 3, 4}, {5, 6, 7, 8}});
    Chained const chained(apart);
    ASSERT_EQ(chained.loops.outerLoopNum(), 0);
    EXPECT_EQ(marks(LoopSizeFilter(chained.loops, 0.2F), chained.loops), (Ints{1, 1}));
}

//   7---8---9
//   | 3 | 4 |
//   4---5---6
//   | 1 | 2 |
//   1---2---3      walked 1-2, 2-3, 3-6, 6-9, 9-8, 8-7, 7-4, 4-1
Grid quarter()
{
    Grid grid;
    grid.columns = grid.rows = 2;
    grid.x1 = grid.y1 = 2;
    return grid;
}

Ints startNodes(Chained const & chained)
{
    Ints result;
    for (int i = 1; i <= chained.loops.numOuter(); ++i)
        result.push_back(chained.edges.startNode(chained.loops.edge(i)));
    return result;
}

TEST(LoopSymmetryFilter, WithoutSymmetryMarksNothing)
{
    VOZCatMesh const mesh = quarter().mesh();
    Chained const chained(mesh);
    LoopSymmetryFilter const filter(mesh, chained.edges, chained.loops, Symmetry(), VOZCatAxis());
    EXPECT_EQ(filter.numXZsymmetry(), 0);
    EXPECT_EQ(filter.numYZsymmetry(), 0);
    EXPECT_EQ(marks(filter, chained.loops), Ints(8, 0));
}

TEST(LoopSymmetryFilter, MarksTheCutOfAHalfModelAndListsItsNodesOnce)
{
    VOZCatMesh const mesh = quarter().mesh();
    Chained const chained(mesh);
    ASSERT_EQ(startNodes(chained), (Ints{1, 2, 3, 6, 9, 8, 7, 4}));
    LoopSymmetryFilter const yz(mesh, chained.edges, chained.loops, Symmetry(false, true), VOZCatAxis());
    EXPECT_EQ(marks(yz, chained.loops), (Ints{0, 0, 0, 0, 0, 0, 2, 2}));
    EXPECT_EQ(yzNodes(yz), (Ints{7, 4, 1}));
    EXPECT_EQ(yz.numXZsymmetry(), 0);
    LoopSymmetryFilter const xz(mesh, chained.edges, chained.loops, Symmetry(true, false), VOZCatAxis());
    EXPECT_EQ(marks(xz, chained.loops), (Ints{1, 1, 0, 0, 0, 0, 0, 0}));
    EXPECT_EQ(xzNodes(xz), (Ints{1, 2, 3}));
    EXPECT_EQ(xz.numYZsymmetry(), 0);
}

TEST(LoopSymmetryFilter, MarksBothCutsOfAQuarterModel)
{
    VOZCatMesh const mesh = quarter().mesh();
    Chained const chained(mesh);
    LoopSymmetryFilter const filter(mesh, chained.edges, chained.loops, Symmetry(true, true), VOZCatAxis());
    EXPECT_EQ(marks(filter, chained.loops), (Ints{1, 1, 0, 0, 0, 0, 2, 2}));
    EXPECT_EQ(xzNodes(filter), (Ints{1, 2, 3}));
    EXPECT_EQ(yzNodes(filter), (Ints{7, 4, 1}));
}

// The corner is cut off by a short edge within the tolerance of both planes.
TEST(LoopSymmetryFilter, AnEdgeOnBothPlanesEndsAsTheSecondsAndStaysInBothLists)
{
    VOZCatMesh const mesh =
        samples::mesh({{0.2, 0, 0}, {2, 0, 0}, {0, 2, 0}, {0, 0.2, 0}, {2, 2, 0}}, Quads{{4, 1, 2, 4}, {4, 2, 5, 3}});
    Chained const chained(mesh);
    ASSERT_EQ(startNodes(chained), (Ints{4, 1, 2, 5, 3}));
    // edge 4-1 is 0.28 long: its tolerance 0.094 does not reach 0.2, so nothing is marked there
    LoopSymmetryFilter const out(mesh, chained.edges, chained.loops, Symmetry(true, true), VOZCatAxis());
    EXPECT_EQ(marks(out, chained.loops), (Ints{0, 1, 0, 0, 2}));
    VOZCatMesh near(mesh);
    near.node(1, vec(0.00005, 0, 0));
    near.node(4, vec(0, 0.00005, 0));
    Chained const nearChained(near);
    LoopSymmetryFilter const in(near, nearChained.edges, nearChained.loops, Symmetry(true, true), VOZCatAxis());
    EXPECT_EQ(marks(in, nearChained.loops), (Ints{2, 1, 0, 0, 2}));
    EXPECT_EQ(xzNodes(in), (Ints{4, 1, 2}));
    EXPECT_EQ(yzNodes(in), (Ints{4, 1, 3}));
}

TEST(LoopSymmetryFilter, TheToleranceIsAThirdOfTheEdgeAndItsBoundIsWithin)
{
    for (double const height : {0.333 * 2.0, std::nextafter(0.333 * 2.0, 1.0)})
    {
        VOZCatMesh const mesh =
            samples::mesh({{0, height, 0}, {2, height, 0}, {2, 9, 0}, {0, 9, 0}}, Quads{{1, 2, 3, 4}});
        Chained const chained(mesh);
        LoopSymmetryFilter const filter(mesh, chained.edges, chained.loops, Symmetry(true, false), VOZCatAxis());
        EXPECT_EQ(filter.isSymmetryEdge(1), height <= 0.333 * 2.0 ? 1 : 0);
    }
}

TEST(LoopSymmetryFilter, TheToleranceOfAShortEdgeIsATenThousandth)
{
    for (double const height : {0.0001, 0.00011})
    {
        VOZCatMesh const mesh =
            samples::mesh({{0, height, 0}, {1e-5, height, 0}, {1, 9, 0}, {0, 9, 0}}, Quads{{1, 2, 3, 4}});
        Chained const chained(mesh);
        LoopSymmetryFilter const filter(mesh, chained.edges, chained.loops, Symmetry(true, false), VOZCatAxis());
        EXPECT_EQ(filter.isSymmetryEdge(1), height <= 0.0001 ? 1 : 0);
    }
}

TEST(LoopSymmetryFilter, LooksInTheFramesCoordinates)
{
    VOZCatMesh mesh = quarter().mesh();
    mesh.Translate(vec(100, 50, 7));
    VOZCatAxis axis;
    axis.origin(vec(100, 50, 0));
    axis.axis(0, vec(0, 1, 0)); // local x = 0 is the global y = 50
    axis.axis(1, vec(1, 0, 0));
    Chained const chained(mesh);
    LoopSymmetryFilter const filter(mesh, chained.edges, chained.loops, Symmetry(true, true), axis);
    EXPECT_EQ(marks(filter, chained.loops), (Ints{2, 2, 0, 0, 0, 0, 1, 1}));
}

// A frame's axes need not be of unit length, and the edge counts as long as it is in the frame.
TEST(LoopSymmetryFilter, MeasuresTheEdgeInTheFrameToo)
{
    VOZCatMesh const mesh = samples::mesh({{0, 1.5, 0}, {2, 1.5, 0}, {2, 9, 0}, {0, 9, 0}}, Quads{{1, 2, 3, 4}});
    Chained const chained(mesh);
    VOZCatAxis stretched;
    stretched.axis(0, vec(3, 0, 0));
    Symmetry const xz(true, false);
    EXPECT_EQ(LoopSymmetryFilter(mesh, chained.edges, chained.loops, xz, VOZCatAxis()).isSymmetryEdge(1), 0);
    EXPECT_EQ(LoopSymmetryFilter(mesh, chained.edges, chained.loops, xz, stretched).isSymmetryEdge(1), 1);
}

TEST(LoopSymmetryFilter, PositionsBeyondTheOuterLoopCountAsZero)
{
    VOZCatMesh const mesh = quarter().mesh();
    Chained const chained(mesh);
    LoopSymmetryFilter const filter(mesh, chained.edges, chained.loops, Symmetry(true, true), VOZCatAxis());
    for (int const i : {-1, 0, 9, 1000000})
        EXPECT_EQ(filter.isSymmetryEdge(i), 0);
}

TEST(LoopSymmetryFilter, ListsEachNodeOnceInOrderOfFirstUseOnAnySample)
{
    for (Sample const & sample : samples::cleanSamples())
    {
        Chained const chained(sample.mesh);
        LoopSymmetryFilter const filter(sample.mesh, chained.edges, chained.loops, Symmetry(true, true), VOZCatAxis());
        Ints expected;
        for (int i = 1; i <= chained.loops.numOuter(); ++i)
            if (filter.isSymmetryEdge(i) == 2)
                for (int const n :
                     {chained.edges.startNode(chained.loops.edge(i)), chained.edges.endNode(chained.loops.edge(i))})
                    if (std::find(expected.begin(), expected.end(), n) == expected.end())
                        expected.push_back(n);
        EXPECT_EQ(yzNodes(filter), expected) << sample.name;
    }
}

struct Process
{
    Chained chained;
    LoopSizeFilter large;
    LoopSymmetryFilter onPlane;
    ProcessEdgeSequence sequence;

    Process(VOZCatMesh const & mesh, Symmetry const & symmetry, FullBlankHolder const & holder, float ratio = 0.2F)
        : chained(mesh), large(chained.loops, ratio),
          onPlane(mesh, chained.edges, chained.loops, symmetry, VOZCatAxis()),
          sequence(mesh, chained.edges, chained.loops, symmetry, onPlane, holder, large)
    {
    }

    Ints edges() const
    {
        Ints result;
        for (int i = 1; i <= sequence.numBlankHolder(); ++i)
            result.push_back(sequence.blankHolderEdge(i));
        return result;
    }
};

TEST(ProcessEdgeSequence, OfAnInactiveHolderIsEmpty)
{
    Process const process(quarter().mesh(), Symmetry(), FullBlankHolder());
    EXPECT_EQ(process.sequence.numBlankHolder(), 0);
    EXPECT_EQ(process.sequence.outerBHolderCount(), 0);
    EXPECT_EQ(process.sequence.outerBHLength(), 0);
}

TEST(ProcessEdgeSequence, ListsTheOuterLoopInWalkingOrder)
{
    Process const process(quarter().mesh(), Symmetry(), active());
    EXPECT_EQ(process.edges(), walk(process.chained.loops, 1));
    EXPECT_EQ(process.sequence.outerBHolderCount(), 1);
    EXPECT_EQ(process.sequence.outerBHLength(), 8);
}

TEST(ProcessEdgeSequence, LeavesSymmetryEdgesOut)
{
    Process const process(quarter().mesh(), Symmetry(true, true), active());
    Ints const outer = walk(process.chained.loops, 1);
    EXPECT_EQ(process.edges(), Ints(outer.begin() + 2, outer.begin() + 6));
    EXPECT_EQ(process.sequence.outerBHLength(), 4);
}

TEST(ProcessEdgeSequence, TakesLargeInnerLoopsAndNotSmallOnes)
{
    Process const large(plate(5).mesh(), Symmetry(), active());
    EXPECT_EQ(large.sequence.numBlankHolder(), 60);
    EXPECT_EQ(large.sequence.outerBHolderCount(), 2);
    EXPECT_EQ(large.sequence.outerBHLength(), 60);
    Process const small(plate(1).mesh(), Symmetry(), active());
    EXPECT_EQ(small.sequence.numBlankHolder(), 40);
    EXPECT_EQ(small.sequence.outerBHolderCount(), 1);
}

// The mark is the outer loop's at the same position: the inner loop loses its first ten edges to the plate's cut along
// y = 0, though the hole is far from it.
TEST(ProcessEdgeSequence, ReadsTheOuterLoopsMarksForInnerLoopsToo)
{
    Process const process(plate(5).mesh(), Symmetry(true, false), active());
    ASSERT_EQ(process.chained.loops.numLoopEdges(2), 20);
    for (int i = 1; i <= 40; ++i)
        ASSERT_EQ(process.onPlane.isSymmetryEdge(i), i <= 10 ? 1 : 0);
    Ints const outer = walk(process.chained.loops, 1);
    Ints const inner = walk(process.chained.loops, 2);
    Ints expected(outer.begin() + 10, outer.end());
    expected.insert(expected.end(), inner.begin() + 10, inner.end());
    EXPECT_EQ(process.edges(), expected);
    EXPECT_EQ(process.sequence.outerBHLength(), 40);
}

// An inner loop with more edges than the outer one: its positions beyond have no mark.
TEST(ProcessEdgeSequence, PositionsBeyondTheOuterLoopAreTaken)
{
    // a square ring: 4 edges outside, 8 inside
    VOZCatMesh const ring = samples::mesh({{0, 0, 0},
                                           {4, 0, 0},
                                           {4, 4, 0},
                                           {0, 4, 0},
                                           {1, 1, 0},
                                           {2, 1, 0},
                                           {3, 1, 0},
                                           {3, 2, 0},
                                           {3, 3, 0},
                                           {2, 3, 0},
                                           {1, 3, 0},
                                           {1, 2, 0}},
                                          samples::closed({{1, 6, 5},
                                                           {1, 2, 6},
                                                           {2, 7, 6},
                                                           {2, 8, 7},
                                                           {2, 3, 8},
                                                           {3, 9, 8},
                                                           {3, 10, 9},
                                                           {3, 4, 10},
                                                           {4, 11, 10},
                                                           {4, 12, 11},
                                                           {4, 1, 12},
                                                           {1, 5, 12}}));
    Process const process(ring, Symmetry(true, false), active());
    ASSERT_EQ(process.chained.loops.numLoops(), 2);
    int const outer = process.chained.loops.outerLoopNum();
    ASSERT_EQ(process.chained.loops.numLoopEdges(outer), 4);
    ASSERT_EQ(process.chained.loops.numLoopEdges(3 - outer), 8);
    EXPECT_EQ(process.sequence.numBlankHolder(), 3 + 7);
    EXPECT_EQ(process.sequence.outerBHolderCount(), 2);
}
} // namespace
