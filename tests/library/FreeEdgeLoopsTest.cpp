// FreeEdgeLoopsTest.cpp. Meshes are drawn: nodes at the crossings, elements in the cells.
// Chained(mesh) runs the boundary pipeline up to the loops, as every caller does: see BoundaryFixture.h.

#include "FreeEdgeLoops.h"

#include "BoundaryFixture.h"
#include "HostFixture.h"
#include "SampleMeshes.h"
#include "Symmetry.h"
#include "Tip.h"
#include "VOZCatAxis.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <map>
#include <random>

namespace
{
using samples::Grid;
using samples::Ints;
using samples::Point;
using samples::Points;
using samples::Quads;
using samples::Sample;

//   4---3
//   | 1 |
//   1---2
TEST(FreeEdgeLoops, OneQuadrilateralIsOneLoopInWalkingOrder)
{
    Chained const chained(samples::quads({{1, 2, 3, 4}}));
    EXPECT_EQ(chained.error, 0);
    EXPECT_EQ(chained.loops.numLoops(), 1);
    EXPECT_EQ(walk(chained.loops, 1), (Ints{1, 2, 3, 4}));
    EXPECT_EQ(chained.loops.outerLoopNum(), 1);
    EXPECT_EQ(chained.loops.numOuter(), 4);
    EXPECT_EQ(chained.loops.edge(3), 3);
    EXPECT_EQ(chained.loops.length(), chained.loops.loopLength(1));
}

//   4---3
//   |2/1|
//   1---2      free edges 1: 1-2, 2: 2-3, 3: 3-4, 4: 4-1
TEST(FreeEdgeLoops, LeavesThroughTheEndNodeOfTheFirstEdge)
{
    EXPECT_EQ(allWalks(samples::triangles({{1, 2, 3}, {1, 3, 4}})), (Ints{1, 2, 3, 4}));
    // the other way round: 1: 1-4, 2: 4-3, 3: 3-2, 4: 2-1
    EXPECT_EQ(allWalks(samples::triangles({{1, 4, 3}, {1, 3, 2}})), (Ints{1, 2, 3, 4}));
}

//   4---3---6
//   | 1 | 2 |      2 runs the other way: free edges 1: 1-2, 2: 3-4, 3: 4-1 of 1; 4: 3-6, 5: 6-5, 6: 5-2 of 2
//   1---2---5
TEST(FreeEdgeLoops, WalksAgainstTheDirectionOfAnEdge)
{
    VOZCatMesh const mesh = samples::quads({{1, 2, 3, 4}, {2, 3, 6, 5}});
    EXPECT_EQ(allWalks(mesh), (Ints{1, 6, 5, 4, 2, 3}));
    EXPECT_EQ(Chained(mesh).error, 0);
}

TEST(FreeEdgeLoops, AreNumberedByTheirLowestEdge)
{
    Chained const chained(samples::quads({{5, 6, 7, 8}, {1, 2, 3, 4}}));
    ASSERT_EQ(chained.loops.numLoops(), 2);
    EXPECT_EQ(walk(chained.loops, 1), (Ints{1, 2, 3, 4}));
    EXPECT_EQ(walk(chained.loops, 2), (Ints{5, 6, 7, 8}));
}

TEST(FreeEdgeLoops, LengthsAreTheSumsOfTheirEdges)
{
    Chained const chained(samples::plateWithHole(5).mesh());
    ASSERT_EQ(chained.loops.numLoops(), 2);
    EXPECT_EQ(chained.loops.numLoopEdges(1), 20);
    EXPECT_EQ(chained.loops.loopLength(1), 20);
    EXPECT_EQ(chained.loops.numLoopEdges(2), 4);
    EXPECT_EQ(chained.loops.loopLength(2), 4);
    EXPECT_EQ(chained.loops.outerLoopNum(), 1);
    EXPECT_EQ(chained.loops.loopLength(0), 0);
    EXPECT_EQ(chained.loops.numLoopEdges(0), 0);
}

TEST(FreeEdgeLoops, SumWithinALoopInAscendingEdgeNumber)
{
    for (Sample const & sample : samples::cleanSamples())
    {
        Chained const chained(sample.mesh);
        for (int l = 1; l <= chained.loops.numLoops(); ++l)
        {
            double expected = 0.0;
            for (int const k : sorted(walk(chained.loops, l)))
            {
                double square = 0.0;
                for (int c = 0; c < 3; ++c)
                {
                    double const d =
                        sample.mesh.node(chained.edges.startNode(k), c) - sample.mesh.node(chained.edges.endNode(k), c);
                    square += d * d;
                }
                expected += std::sqrt(square);
            }
            EXPECT_EQ(chained.loops.loopLength(l), expected) << sample.name; // the same bits
        }
    }
}

TEST(FreeEdgeLoops, OnEverySampleEachFreeEdgeIsWalkedOnceAlongACurve)
{
    for (Sample const & sample : samples::cleanSamples())
    {
        Chained const chained(sample.mesh);
        EXPECT_EQ(chained.error, 0) << sample.name;
        EXPECT_EQ(sorted(allWalks(sample.mesh)), oneTo(chained.edges.numEdge())) << sample.name;
        for (int l = 1; l <= chained.loops.numLoops(); ++l)
        {
            Ints const edges = walk(chained.loops, l);
            EXPECT_EQ(edges[0], sorted(edges)[0]) << sample.name;
            for (std::size_t i = 0; i < edges.size(); ++i) // consistently oriented: end to start
                EXPECT_EQ(chained.edges.endNode(edges[i]), chained.edges.startNode(edges[(i + 1) % edges.size()]))
                    << sample.name;
        }
    }
}

// Labels are offsets for the solvers' sake; the analysis works on positions.
TEST(FreeEdgeLoops, LabelOffsetsChangeNothing)
{
    for (Sample & sample : samples::cleanSamples())
    {
        Ints const before = allWalks(sample.mesh);
        int const outer = Chained(sample.mesh).loops.outerLoopNum();
        sample.mesh.IdsOffset(1000, 2000);
        EXPECT_EQ(allWalks(sample.mesh), before) << sample.name;
        EXPECT_EQ(Chained(sample.mesh).loops.outerLoopNum(), outer) << sample.name;
    }
}

//       6---7
//       | 2 |
//   4---3---5      node 3 has four free edges, so the boundary is no set of simple curves
//   | 1 |
//   1---2
TEST(FreeEdgeLoops, RefusesTwoLoopsThatMeetAtANode)
{
    Chained const chained(samples::quads({{1, 2, 3, 4}, {3, 5, 7, 6}}));
    EXPECT_EQ(chained.error, 1);
    EXPECT_EQ(chained.loops.numLoops(), 1);
    EXPECT_EQ(chained.loops.outerLoopNum(), 0);
}

TEST(FreeEdgeLoops, RefusesTwoHolesThatMeetAtANode)
{
    Grid grid;
    grid.columns = grid.rows = 6;
    grid.drop = [](int column, int row) { return (column == 2 && row == 2) || (column == 3 && row == 3); };
    Chained const chained(grid.mesh());
    EXPECT_EQ(chained.error, 1);
    EXPECT_EQ(chained.loops.numLoops(), 2); // the outer loop was whole
}

// A fin: the side 1-2 of the quadrilateral 1-2-5-6 is hidden by the two others on the edge, and so is node 2's way on.
TEST(FreeEdgeLoops, RefusesABoundaryThatEnds)
{
    // of the triangle 1-2-3 the sides 2-3 and 3-1 are hidden by quadrilaterals across whose diagonals they run
    Chained const chained(samples::quads({{1, 2, 3, 1}, {2, 8, 3, 9}, {3, 10, 1, 11}}));
    EXPECT_EQ(chained.edges.numEdge(), 9);
    EXPECT_EQ(chained.edges.startNode(1), 1);
    EXPECT_EQ(chained.edges.endNode(1), 2);
    EXPECT_EQ(chained.error, 1);
}

TEST(FreeEdgeLoops, RefusesANodeWithOneFreeEdge)
{
    // a mesh of fewer nodes than its edges name: the map knows one edge of node 2, and none of nodes 3 and 4
    VOZCatMesh const mesh = samples::quads({{1, 2, 3, 4}});
    FreeEdgeSet const edges(mesh);
    int error = 0;
    FreeEdgeLoops const loops(edges, VOZCatMesh(2, 0), &error);
    EXPECT_EQ(error, 1);
}

TEST(FreeEdgeLoops, RefusesCornersThatAreNoNodes)
{
    testing::internal::CaptureStdout();
    for (Quads const & rows : {Quads{{1, 2, 99, 1}}, Quads{{-3, 1, 2, -3}}, Quads{{0, 0, 1, 2}}})
        EXPECT_EQ(Chained(samples::mesh(Points(3), rows)).error, 1);
    testing::internal::GetCapturedStdout();
}

TEST(FreeEdgeLoops, OfAClosedMeshIsEmptyAndAnError)
{
    Chained const chained(samples::closedBox());
    EXPECT_EQ(chained.error, 1);
    EXPECT_EQ(chained.loops.numLoops(), 0);
    EXPECT_EQ(chained.loops.outerLoopNum(), 0);
    EXPECT_EQ(chained.loops.numOuter(), 0);
    EXPECT_EQ(chained.loops.length(), 0);
}

TEST(FreeEdgeLoops, WithoutAnErrorArgumentRefusalsAreSilent)
{
    VOZCatMesh const touching = samples::quads({{1, 2, 3, 4}, {3, 5, 7, 6}});
    FreeEdgeLoops const refused(FreeEdgeSet(touching), touching, nullptr);
    EXPECT_EQ(refused.numLoops(), 1);
    VOZCatMesh const box = samples::closedBox();
    EXPECT_EQ(FreeEdgeLoops(FreeEdgeSet(box), box, nullptr).numLoops(), 0);
    VOZCatMesh const plate = samples::quads({{1, 2, 3, 4}});
    EXPECT_EQ(FreeEdgeLoops(FreeEdgeSet(plate), plate, nullptr).numLoops(), 1);
}

TEST(FreeEdgeLoops, AnErrorPresetIsNeverCleared)
{
    EXPECT_EQ(Chained(samples::quads({{1, 2, 3, 4}}), 7).error, 7);
    EXPECT_EQ(Chained(samples::closedBox(), 7).error, 1);
}

// A plate of size x size around a hole whose edge runs up and down: longer than the plate's own edge.
Grid plateWithWavyHole(double wave)
{
    Grid grid = samples::plateWithHole(15);
    grid.drop = [](int column, int row) { return column >= 3 && column < 12 && row >= 3 && row < 12; };
    grid.surface = [wave](double x, double y)
    {
        bool const onHole = (x == 3 || x == 12) ? (y >= 3 && y <= 12) : ((y == 3 || y == 12) && x >= 3 && x <= 12);
        bool const odd = static_cast<int>(x + y) % 2 != 0;
        return Point{x, y, onHole && odd ? wave : 0.0};
    };
    return grid;
}

TEST(FreeEdgeLoops, ThePlatesEdgeIsOuterThoughTheHolesIsLonger)
{
    Chained const chained(plateWithWavyHole(4).mesh());
    ASSERT_EQ(chained.loops.numLoops(), 2);
    EXPECT_GT(chained.loops.loopLength(2), 1.5 * chained.loops.loopLength(1));
    EXPECT_EQ(chained.loops.outerLoopNum(), 1);
}

// Two plates: `one` and `two` columns wide, rows high as given, with the second moved to (x, y).
VOZCatMesh twoPlates(double width1, double height1, double width2, double height2, double x, double y)
{
    return samples::mesh({{0, 0, 0},
                          {width1, 0, 0},
                          {width1, height1, 0},
                          {0, height1, 0},
                          {x, y, 0},
                          {x + width2, y, 0},
                          {x + width2, y + height2, 0},
                          {x, y + height2, 0}},
                         Quads{{1, 2, 3, 4}, {5, 6, 7, 8}});
}

//   +-------------+  +--+     the line x = cx, at 7.25, crosses the first plate alone: two votes; left is the first's,
//   |      1      |  |2 |     right the second's
//   +-------------+  +--+
TEST(FreeEdgeLoops, ThreeOfFourExtremeCrossingsCarry)
{
    Chained const chained(twoPlates(9, 1, 1, 30, 10, -14.5));
    ASSERT_EQ(chained.loops.numLoops(), 2);
    EXPECT_GT(chained.loops.loopLength(2), chained.loops.loopLength(1));
    EXPECT_EQ(chained.loops.outerLoopNum(), 1); // outvoted though the second is the longer
}

//   +--+        +---+     x = cx crosses none: upper and lower are 0; left 1, right 2
//   |1 |        | 2 |
//   +--+        +---+
TEST(FreeEdgeLoops, AtNoMajorityTheLongestStands)
{
    EXPECT_EQ(Chained(twoPlates(2, 2, 3, 2, 10, 0)).loops.outerLoopNum(), 2);
    EXPECT_EQ(Chained(twoPlates(3, 2, 2, 2, 10, 0)).loops.outerLoopNum(), 1);
}

TEST(FreeEdgeLoops, ATieInLengthGoesToTheLowerNumber)
{
    EXPECT_EQ(Chained(twoPlates(2, 2, 2, 2, 10, 0)).loops.outerLoopNum(), 1);
}

//             +---+
//             | 2 |       neither line meets a plate: four votes for 0
//   +---+     +---+
//   | 1 |
//   +---+
TEST(FreeEdgeLoops, WithNoCrossingAtAllTheOuterLoopIsZero)
{
    Chained const chained(twoPlates(2, 2, 2, 2, 10, 10));
    EXPECT_EQ(chained.error, 0);
    EXPECT_EQ(chained.loops.outerLoopNum(), 0);
    EXPECT_EQ(chained.loops.numOuter(), 0);
    EXPECT_EQ(chained.loops.length(), 0);
}

//     +-----2-----+     1's right side leans across x = cx between y = 0 and 6 and would be the lowest crossing;
//     without
//   +-|--+        |     it the lowest is 2's lower side, at 4, and 2 has three votes. y = cy, at 4.5, gives one to
//   each. | +--|--------+
//   +-1--+              1 is the longer, by its lean
TEST(FreeEdgeLoops, ASegmentThatLeansByAMillionthOrLessIsNotCrossed)
{
    for (double const lean : {0.8e-6, 1.2e-6})
    {
        Chained const chained(samples::mesh(
            {{-2, 0, 0}, {-lean / 2, 0, 0}, {lean / 2, 6, 0}, {-2, 6, 0}, {-1, 4, 0}, {3, 4, 0}, {3, 8, 0}, {-1, 8, 0}},
            Quads{{1, 2, 3, 4}, {5, 6, 7, 8}}));
        ASSERT_EQ(chained.loops.numLoops(), 2);
        EXPECT_EQ(chained.loops.outerLoopNum(), lean > 1e-6 ? 1 : 2) << lean;
    }
}

// The rule told once more, slowly, on the local coordinates that the tip gives.
int slowOuterLoop(VOZCatMesh const & mesh, Chained const & chained)
{
    FreeEdgeLoops const & loops = chained.loops;
    int best = 0;
    for (int l = 1; l <= loops.numLoops(); ++l)
        if (loops.loopLength(l) > loops.loopLength(best))
            best = l;
    VOZCatAxis axis;
    Symmetry symmetry;
    int count = 0;
    double angle = 0;
    AverageTip(mesh).tip(axis, symmetry, count, angle);
    std::vector<std::vector<std::array<double, 2>>> points(static_cast<std::size_t>(loops.numLoops()) + 1);
    std::array<double, 2> centre{};
    double number = 0;
    for (int l = 1; l <= loops.numLoops(); ++l)
        for (int const k : walk(loops, l))
        {
            int const n = chained.edges.startNode(k);
            double const global[3] = {mesh.NodeValue(n, 0), mesh.NodeValue(n, 1), mesh.NodeValue(n, 2)};
            Vec const local = axis.fromGlobal(Vec(global));
            points[static_cast<std::size_t>(l)].push_back({local[0], local[1]});
            centre[0] += local[0];
            centre[1] += local[1];
            ++number;
        }
    centre[0] /= number;
    centre[1] /= number;
    Ints votes;
    for (std::size_t along : {0U, 1U})
    {
        double high = -std::numeric_limits<float>::max();
        double low = std::numeric_limits<float>::max();
        int highest = 0;
        int lowest = 0;
        for (int l = 1; l <= loops.numLoops(); ++l)
        {
            auto const & polygon = points[static_cast<std::size_t>(l)];
            for (std::size_t k = 0; k < polygon.size(); ++k)
            {
                auto const & p = polygon[k];
                auto const & q = polygon[(k + 1) % polygon.size()];
                double const c = centre[along];
                if (!((c < p[along] && q[along] <= c) || (p[along] < c && c <= q[along])) ||
                    std::fabs(q[along] - p[along]) <= 1e-6)
                    continue;
                double const at = p[1 - along] + (c - p[along]) / (q[along] - p[along]) * (q[1 - along] - p[1 - along]);
                if (at > high)
                {
                    high = at;
                    highest = l;
                }
                if (at < low)
                {
                    low = at;
                    lowest = l;
                }
            }
        }
        votes.push_back(highest);
        votes.push_back(lowest);
    }
    for (int const vote : votes)
        if (std::count(votes.begin(), votes.end(), vote) >= 3)
            return vote;
    return best;
}

TEST(FreeEdgeLoops, TheVoteAgreesWithTheSlowRuleOnRandomPlates)
{
    std::mt19937 random(47);
    std::map<int, int> seen;
    for (int round = 0; round < 500; ++round)
    {
        Points points;
        Quads cells;
        int const plates = 1 + static_cast<int>(random() % 4);
        for (int i = 0; i < plates; ++i)
        {
            double const x = static_cast<double>(random() % 10) + 12 * (i % 2);
            double const y = static_cast<double>(random() % 10) + 12 * (i / 2);
            double const z = static_cast<double>(random() % 3);
            double const w = 1.0 + static_cast<double>(random() % 12);
            double const h = 1.0 + static_cast<double>(random() % 12);
            points.insert(points.end(), {{x, y, z}, {x + w, y, 0}, {x + w, y + h, z}, {x, y + h, 1}});
            cells.push_back({4 * i + 1, 4 * i + 2, 4 * i + 3, 4 * i + 4});
        }
        VOZCatMesh const mesh = samples::mesh(points, cells);
        Chained const chained(mesh);
        ASSERT_EQ(chained.error, 0);
        EXPECT_EQ(chained.loops.outerLoopNum(), slowOuterLoop(mesh, chained)) << "round " << round;
        ++seen[chained.loops.outerLoopNum()];
    }
    EXPECT_GE(seen.size(), 4U); // every kind of outcome came up, 0 among them
    EXPECT_GT(seen[0], 0);
}

TEST(FreeEdgeLoops, ASegmentAlongTheLineIsNoCrossing)
{
    // a strip on edge: seen from above its boundary is a line, and every x lies within 1e-6 of the mean
    VOZCatMesh const mesh = samples::mesh({{0, 0, 0}, {1e-7, 1, 0}, {0, 2, 0}, {0, 0, 1}, {1e-7, 1, 1}, {0, 2, 1}},
                                          Quads{{1, 2, 5, 4}, {2, 3, 6, 5}});
    Chained const chained(mesh);
    EXPECT_EQ(chained.error, 0);
    EXPECT_EQ(chained.loops.outerLoopNum(), slowOuterLoop(mesh, chained));
}

class FreeEdgeLoopsHost : public HostFixture
{
};

TEST_F(FreeEdgeLoopsHost, ReportsNothingOnCleanMeshes)
{
    for (Sample const & sample : samples::cleanSamples())
        Chained const chained(sample.mesh);
    EXPECT_TRUE(host.reports.empty());
}
} // namespace
