// TubeTest.cpp. Tubes lie along x: node (i, j) is station i along the axis and j around it, angles from +z to +y.

#include "Tube.h"

#include "BoundaryFixture.h"
#include "ElemProperty.h"
#include "HostFixture.h"
#include "Result.h"
#include "SampleMeshes.h"
#include "VOZCatAxis.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <map>
#include <memory>
#include <optional>
#include <random>
#include <set>

namespace
{
using samples::Ints;
using samples::Point;
using samples::Points;
using samples::Quads;
using samples::Triangles;

constexpr double kPi = 3.141592653589793;
constexpr double kFloatMax = 3.4028234663852886e38;

std::size_t at(int i)
{
    return static_cast<std::size_t>(i);
}

enum class Cells
{
    quads,
    triangles,
    mixed
};

struct Pipe
{
    int around = 12;
    int along = 6;
    double radius = 10.0;
    double length = 30.0;
    double angle = 0.0; // of node (i, 0)
    Cells cells = Cells::quads;

    int node(int i, int j) const { return i * around + (j + around) % around + 1; }

    VOZCatMesh mesh() const
    {
        Points points;
        for (int i = 0; i <= along; ++i)
            for (int j = 0; j < around; ++j)
            {
                double const turn = angle + 2.0 * kPi * j / around;
                points.push_back({length * i / along, radius * std::sin(turn), radius * std::cos(turn)});
            }
        Quads rows;
        for (int i = 0; i < along; ++i)
            for (int j = 0; j < around; ++j)
            {
                int const a = node(i, j);
                int const b = node(i + 1, j);
                int const c = node(i + 1, j + 1);
                int const d = node(i, j + 1);
                if (cells == Cells::quads || (cells == Cells::mixed && (i * 7 + j * 3) % 5 < 2))
                    rows.push_back({a, b, c, d});
                else
                {
                    rows.push_back({a, b, c, a});
                    rows.push_back({a, c, d, a});
                }
            }
        return samples::mesh(points, rows);
    }
};

VOZCatAxis turnedFrame()
{
    VOZCatAxis frame;
    double const s = std::sqrt(0.5);
    double const rows[3][3] = {{s, s, 0}, {0, 0, 1}, {s, -s, 0}};
    double const origin[3] = {100, -20, 7};
    for (int i = 0; i < 3; ++i)
        frame.axis(i, Vec(static_cast<double const *>(rows[i])));
    frame.origin(Vec(static_cast<double const *>(origin)));
    return frame;
}

Points pointsOf(VOZCatMesh const & mesh)
{
    Points result;
    for (int n = 1; n <= mesh.numNode(); ++n)
        result.push_back({mesh.NodeValue(n, 0), mesh.NodeValue(n, 1), mesh.NodeValue(n, 2)});
    return result;
}

Quads rowsOf(VOZCatMesh const & mesh)
{
    Quads result;
    for (int e = 1; e <= mesh.numElem(); ++e)
        result.push_back(
            {mesh.ElementValue(e, 0), mesh.ElementValue(e, 1), mesh.ElementValue(e, 2), mesh.ElementValue(e, 3)});
    return result;
}

double distance(VOZCatMesh const & mesh, int a, int b)
{
    double sum = 0.0;
    for (int c = 0; c < 3; ++c)
        sum += (mesh.NodeValue(a, c) - mesh.NodeValue(b, c)) * (mesh.NodeValue(a, c) - mesh.NodeValue(b, c));
    return std::sqrt(sum);
}

double area(VOZCatMesh & io_mesh)
{
    double sum = 0.0;
    for (int e = 1; e <= io_mesh.numElem(); ++e)
    {
        Vec const first = io_mesh.node(io_mesh.elem(e, 0));
        sum += first.area(io_mesh.node(io_mesh.elem(e, 1)), io_mesh.node(io_mesh.elem(e, 2)));
        if (io_mesh.isTriangle(e) == 0)
            sum += first.area(io_mesh.node(io_mesh.elem(e, 2)), io_mesh.node(io_mesh.elem(e, 3)));
    }
    return sum;
}

Ints nodesOf(DispBC const & table)
{
    return Ints(table.nodes, table.nodes + table.size);
}

// A job with room for the two tables behind those already there.
struct Opened
{
    VOZCatMesh mesh;
    ElemProperty property;
    VOZCatAxis axis;
    std::optional<Tube> tube;
    bool isOpen;

    explicit Opened(VOZCatMesh const & i_mesh, double factor = 1.0, double radius = 0.0, int tables = 2) : mesh(i_mesh)
    {
        property.sizeDispBC(tables);
        tube.emplace(mesh, property, axis, radius);
        isOpen = tube->Eval(factor);
    }
    Opened(Opened const &) = delete;
    Opened & operator=(Opened const &) = delete;
};

class TubeTest : public HostFixture
{
};

//   z ^    the cut goes along node 1 of each station, at the top
TEST_F(TubeTest, ATubeOfQuadrilateralsIsOpenedAlongItsTop)
{
    Pipe const pipe;
    VOZCatMesh const before = pipe.mesh();
    Opened opened(before);
    ASSERT_TRUE(opened.isOpen);
    EXPECT_NEAR(opened.tube->Radius(), 10.0, 1e-12);
    EXPECT_EQ(opened.mesh.numNode(), 84 + 7);
    Ints path;
    Ints doubles;
    for (int i = 0; i <= 6; ++i)
    {
        path.push_back(pipe.node(i, 0));
        doubles.push_back(84 + i + 1);
        for (int c = 0; c < 3; ++c)
            EXPECT_EQ(opened.mesh.NodeValue(doubles.back(), c), opened.mesh.NodeValue(path.back(), c));
        EXPECT_EQ(opened.mesh.NodeValue(path.back(), 1), 0.0);
    }
    EXPECT_EQ(nodesOf(opened.property.dispBCs(2)), path);
    EXPECT_EQ(nodesOf(opened.property.dispBCs(1)), doubles);
    // cells (i, 0) lie at positive y and keep the path; cells (i, 11) at negative y take the doubles; all turned round
    for (int i = 0; i < 6; ++i)
    {
        Ints const kept(opened.mesh.elem(12 * i + 1), opened.mesh.elem(12 * i + 1) + 4);
        EXPECT_EQ(kept, (Ints{path[at(i)], pipe.node(i, 1), pipe.node(i + 1, 1), path[at(i + 1)]}));
        Ints const moved(opened.mesh.elem(12 * i + 12), opened.mesh.elem(12 * i + 12) + 4);
        EXPECT_EQ(moved, (Ints{pipe.node(i, 11), doubles[at(i)], doubles[at(i + 1)], pipe.node(i + 1, 11)}));
    }
}

TEST_F(TubeTest, TheTwoLastTablesPushTheLipsApart)
{
    Opened const opened(Pipe().mesh(), 1.0, 0.0, 5);
    ASSERT_TRUE(opened.isOpen);
    double const half = opened.tube->Radius() * kPi;
    for (int i = 1; i <= 3; ++i)
        EXPECT_EQ(opened.property.dispBCs(i).size, 0) << i;
    for (int i : {4, 5})
    {
        DispBC const & table = opened.property.dispBCs(i);
        EXPECT_EQ(table.size, 7);
        EXPECT_EQ(table.tableFlag, 0);
        EXPECT_EQ(Ints(table.flags, table.flags + 6), (Ints{0, 1, 0, 0, 0, 0}));
        for (int k = 0; k < 6; ++k)
        {
            // the last element at the first node of the path is cell (0, 0), at positive y
            double const wanted = k != 1 ? 0.0 : i == 5 ? half : -half;
            EXPECT_EQ(table.values[k], wanted) << i << " " << k;
        }
        VOZCatAxis const identity;
        for (int r = 0; r < 3; ++r)
            for (int c = 0; c < 3; ++c)
                EXPECT_EQ(table.frame.axis(r, c), identity.axis(r, c));
    }
}

TEST_F(TubeTest, APropertyWithoutRoomIsABrokenContractAndNothingIsWrittenBeyondIt)
{
    for (int const tables : {0, 1})
    {
        host.reports.clear();
        Opened const opened(Pipe().mesh(), 1.0, 0.0, tables);
        EXPECT_TRUE(opened.isOpen);
        ASSERT_EQ(host.reports.size(), 1U);
        EXPECT_EQ(opened.property.sizeDispBC(), tables);
        EXPECT_EQ(tables == 0 ? 7 : opened.property.dispBCs(1).size, 7);
    }
}

TEST_F(TubeTest, TheFactorGivesARadiusThatWasNotGiven)
{
    Opened const half(Pipe().mesh(), 0.5);
    EXPECT_TRUE(half.isOpen);
    EXPECT_NEAR(half.tube->Radius(), 5.0, 1e-12);
    EXPECT_NEAR(half.property.dispBCs(2).values[1], 5.0 * kPi, 1e-12);
    for (double const given : {7.5, 1e-3})
    {
        Opened const kept(Pipe().mesh(), 0.5, given);
        EXPECT_TRUE(kept.isOpen);
        EXPECT_EQ(kept.tube->Radius(), given);
        EXPECT_EQ(kept.property.dispBCs(2).values[1], given * kPi);
    }
}

TEST_F(TubeTest, ARadiusOfZeroOrLessIsMinusOneUntilItIsFound)
{
    for (double const given : {0.0, -0.0, -3.0, std::numeric_limits<double>::quiet_NaN()})
    {
        VOZCatMesh mesh = Pipe().mesh();
        ElemProperty property;
        property.sizeDispBC(2);
        VOZCatAxis const axis;
        Tube tube(mesh, property, axis, given);
        EXPECT_EQ(tube.Radius(), -1.0);
        EXPECT_TRUE(tube.Eval(1.0));
        EXPECT_NEAR(tube.Radius(), 10.0, 1e-12);
    }
}

TEST_F(TubeTest, ConstructionAndDestructionLeaveTheMeshWhereItWas)
{
    VOZCatMesh mesh = Pipe().mesh();
    Points const before = pointsOf(mesh);
    Quads const rows = rowsOf(mesh);
    ElemProperty property;
    VOZCatAxis const axis = turnedFrame();
    {
        Tube const tube(mesh, property, axis, 0.0);
        double const p[3] = {before[20][0], before[20][1], before[20][2]};
        Vec const local = axis.fromGlobal(Vec(static_cast<double const *>(p)));
        for (int c = 0; c < 3; ++c)
            EXPECT_EQ(mesh.NodeValue(21, c), local[c]);
    }
    Points const after = pointsOf(mesh);
    for (std::size_t n = 0; n < before.size(); ++n)
        for (std::size_t c = 0; c < 3; ++c)
            EXPECT_NEAR(after[n][c], before[n][c], 1e-12);
    EXPECT_EQ(rowsOf(mesh), rows);
}

TEST_F(TubeTest, DestructionMovesTheDoublesBackToo)
{
    Pipe const pipe;
    VOZCatMesh const local = pipe.mesh();
    VOZCatAxis const axis = turnedFrame();
    VOZCatMesh mesh = local;
    mesh.Transform(&axis, 1);
    Points const before = pointsOf(mesh);
    ElemProperty property;
    property.sizeDispBC(2);
    {
        Tube tube(mesh, property, axis, 0.0);
        ASSERT_TRUE(tube.Eval(1.0));
    }
    Points const after = pointsOf(mesh);
    ASSERT_EQ(after.size(), before.size() + 7);
    for (std::size_t n = 0; n < after.size(); ++n)
    {
        std::size_t const original = n < before.size() ? n : 12 * (n - before.size());
        for (std::size_t c = 0; c < 3; ++c)
            EXPECT_NEAR(after[n][c], before[original][c], 1e-10) << n;
    }
}

// What a failure leaves: the mesh as it was, once the frame is undone.
void expectRefused(VOZCatMesh const & i_mesh, char const * what)
{
    VOZCatMesh mesh = i_mesh;
    ElemProperty property;
    property.sizeDispBC(2);
    VOZCatAxis const axis;
    {
        Tube tube(mesh, property, axis, 0.0);
        EXPECT_FALSE(tube.Eval(1.0)) << what;
    }
    EXPECT_EQ(pointsOf(mesh), pointsOf(i_mesh)) << what;
    EXPECT_EQ(rowsOf(mesh), rowsOf(i_mesh)) << what;
    EXPECT_EQ(property.dispBCs(1).size, 0) << what;
    EXPECT_EQ(property.dispBCs(2).size, 0) << what;
}

TEST_F(TubeTest, WhatIsNoOpenTubeIsRefusedAndStaysAsItWas)
{
    expectRefused(VOZCatMesh(), "no mesh");
    expectRefused(samples::closedBox(), "closed");
    expectRefused(samples::quads({{1, 2, 3, 4}, {3, 5, 7, 6}}), "a refused boundary");
    samples::Grid plate;
    expectRefused(plate.mesh(), "a plate has one loop");

    Pipe const pipe;
    VOZCatMesh const tube = pipe.mesh();
    Points points = pointsOf(tube);
    points.push_back({30, 0, 0});
    Quads rows = rowsOf(tube);
    for (int j = 0; j < 12; ++j)
        rows.push_back({pipe.node(6, j), 85, pipe.node(6, j + 1), pipe.node(6, j)});
    expectRefused(samples::mesh(points, rows), "one end is closed");

    VOZCatMesh beside = tube;
    double const aside[3] = {0, 25, 0};
    beside.Translate(aside);
    expectRefused(beside, "the plane misses it");
}

TEST_F(TubeTest, NodesThatAreNoNumbersAreRefusedOrOpenedWithoutHarm)
{
    for (int n = 1; n <= 84; n += 5)
        for (double const bad : {std::numeric_limits<double>::quiet_NaN(), std::numeric_limits<double>::infinity()})
        {
            VOZCatMesh mesh = Pipe().mesh();
            for (int c = 0; c < 3; ++c)
                mesh.GetNodeData()[n][c] = bad;
            Opened const opened(mesh);
            EXPECT_EQ(opened.mesh.numNode() > 84, opened.isOpen);
        }
}

//  a tube with a window in its wall has three loops: the path from the near end stops at whichever it comes to
TEST_F(TubeTest, APathEndsAtTheFirstOtherLoopThatItMeets)
{
    Pipe pipe;
    pipe.along = 10;
    VOZCatMesh const tube = pipe.mesh();
    Quads rows;
    for (int i = 0; i < 10; ++i)
        for (int j = 0; j < 12; ++j)
            if (i < 4 || i > 6 || (j != 0 && j != 11)) // a window of two cells by three at the top
                rows.push_back({pipe.node(i, j), pipe.node(i + 1, j), pipe.node(i + 1, j + 1), pipe.node(i, j + 1)});
    Opened const opened(samples::mesh(pointsOf(tube), rows));
    EXPECT_TRUE(opened.isOpen);
    Ints path;
    for (int i = 0; i <= 4; ++i)
        path.push_back(pipe.node(i, 0));
    EXPECT_EQ(nodesOf(opened.property.dispBCs(2)), path);
}

TEST_F(TubeTest, TheTubesOfAnyTwoLoopsStartAtTheNearerToTheOrigin)
{
    VOZCatMesh mesh = Pipe().mesh();
    double const back[3] = {-29, 0, 0};
    mesh.Translate(back);
    Opened const opened(mesh); // the far end is now at x = 1
    ASSERT_TRUE(opened.isOpen);
    EXPECT_EQ(nodesOf(opened.property.dispBCs(2)), (Ints{73, 61, 49, 37, 25, 13, 1}));
    EXPECT_NEAR(opened.tube->Radius(), std::sqrt(101.0), 1e-12);
}

TEST_F(TubeTest, ATieBetweenTheEndsGoesToTheLowerLoop)
{
    VOZCatMesh mesh = Pipe().mesh();
    double const back[3] = {-15, 0, 0};
    mesh.Translate(back);
    Opened const opened(mesh);
    ASSERT_TRUE(opened.isOpen);
    EXPECT_EQ(nodesOf(opened.property.dispBCs(2)).front(), 1);
}

class OpenTube : public Tube
{
public:
    using Tube::BuildMap;
    using Tube::IntersectEdge;
    using Tube::IntersectElem;
    using Tube::Side;
    using Tube::Tube;
    using Tube::UpdateConnectivity;
};

TEST_F(TubeTest, AnEdgeMissesThePlaneOnlyIfBothEndsAreOnTheSameSide)
{
    VOZCatMesh mesh =
        samples::mesh({{0, 1, 0}, {0, -1, 0}, {0, 2, 0}, {0, 0.001, 0}, {0, -0.001, 0}, {0, 0.0011, 0}, {0, -3, 0}},
                      Triangles{{1, 2, 3}});
    ElemProperty property;
    VOZCatAxis const axis;
    OpenTube const tube(mesh, property, axis, 1.0);
    EXPECT_TRUE(tube.IntersectEdge(1, 2));
    EXPECT_FALSE(tube.IntersectEdge(1, 3));
    EXPECT_FALSE(tube.IntersectEdge(2, 7));
    EXPECT_TRUE(tube.IntersectEdge(1, 4)); // the bound itself is on the plane
    EXPECT_TRUE(tube.IntersectEdge(2, 5));
    EXPECT_FALSE(tube.IntersectEdge(1, 6));
    EXPECT_TRUE(tube.IntersectEdge(4, 5));
}

//   4---3
//   |   |     only corner 3 is below: the sides 2-3 and 3-4 cross, and the diagonal 1-3
//   1---2
TEST_F(TubeTest, AQuadrilateralIsTestedByItsDiagonals)
{
    auto const crosses = [](std::array<double, 4> const & y, bool triangle)
    {
        VOZCatMesh mesh =
            samples::mesh({{0, y[0], 0}, {1, y[1], 0}, {1, y[2], 1}, {0, y[3], 1}}, Quads{{1, 2, 3, triangle ? 1 : 4}});
        ElemProperty property;
        VOZCatAxis const axis;
        return OpenTube(mesh, property, axis, 1.0).IntersectElem(1);
    };
    EXPECT_TRUE(crosses({1, 1, -1, 1}, false));
    EXPECT_TRUE(crosses({1, -1, 1, 1}, false));
    EXPECT_FALSE(crosses({1, -1, 1, -1}, false)); // all four sides cross, but no diagonal does
    EXPECT_FALSE(crosses({1, 1, 1, 1}, false));
    EXPECT_TRUE(crosses({1, 1, -1, 0}, true));
    EXPECT_TRUE(crosses({-1, 1, 1, 0}, true));
    EXPECT_TRUE(crosses({1, -1, 1, 0}, true));
    EXPECT_FALSE(crosses({1, 1, 1, -1}, true));
}

TEST_F(TubeTest, TheSideOfAnElementIsThatOfItsFarthestNode)
{
    auto const side = [](double a, double b, double c, bool skip = false)
    {
        VOZCatMesh mesh = samples::mesh({{0, a, 0}, {1, b, 0}, {0, c, 1}}, Triangles{{1, 2, 3}});
        ElemProperty property;
        VOZCatAxis const axis;
        return OpenTube(mesh, property, axis, 1.0).Side(1, skip);
    };
    EXPECT_EQ(side(1, -2, 0), -1);
    EXPECT_EQ(side(2, -1, 0), 1);
    EXPECT_EQ(side(-1, 1, 0), -1); // of two as far the first
    EXPECT_EQ(side(1, -1, 0), 1);
    EXPECT_EQ(side(0, 0, 0), 0);
    EXPECT_EQ(side(0.0005, -0.0009, 0), 0);
    EXPECT_EQ(side(5, 5, 5, true), 0);
    VOZCatMesh mesh = samples::mesh({{0, 9, 0}, {1, 9, 0}}, Triangles{{1, 2, 3}});
    ElemProperty property;
    VOZCatAxis const axis;
    OpenTube const tube(mesh, property, axis, 1.0);
    EXPECT_EQ(tube.Side(1, false), -1); // a node that is not there yet
    EXPECT_EQ(tube.Side(1, true), -1);
}

TEST_F(TubeTest, WithoutAPathNothingIsMoved)
{
    VOZCatMesh mesh = Pipe().mesh();
    ElemProperty property;
    VOZCatAxis const axis;
    OpenTube tube(mesh, property, axis, 1.0);
    tube.BuildMap();
    EXPECT_EQ(tube.UpdateConnectivity(), 84);
}

TEST_F(TubeTest, CopiesHaveTheSameMeshPlaneAndRadius)
{
    VOZCatMesh mesh = Pipe().mesh();
    ElemProperty property;
    property.sizeDispBC(2);
    VOZCatAxis const axis; // the identity: moving back twice is moving back once
    auto first = std::make_unique<Tube>(mesh, property, axis, 4.0);
    Tube copy(*first);
    first.reset();
    EXPECT_EQ(copy.Radius(), 4.0);
    EXPECT_TRUE(copy.Eval(1.0));
}

TEST_F(TubeTest, LabelOffsetsChangeNothing)
{
    for (Cells const cells : {Cells::quads, Cells::triangles, Cells::mixed})
    {
        Pipe pipe;
        pipe.cells = cells;
        Opened const plain(pipe.mesh());
        VOZCatMesh labelled = pipe.mesh();
        labelled.IdsOffset(1000, 5000);
        Opened const opened(labelled);
        ASSERT_TRUE(opened.isOpen);
        EXPECT_EQ(pointsOf(opened.mesh), pointsOf(plain.mesh));
        for (int e = 1; e <= plain.mesh.numElem(); ++e)
            for (int k = 0; k < 4; ++k)
                EXPECT_EQ(opened.mesh.elem(e, k), plain.mesh.elem(e, k));
        EXPECT_EQ(nodesOf(opened.property.dispBCs(1)), nodesOf(plain.property.dispBCs(1)));
    }
}

TEST_F(TubeTest, TheFourthEntryOfATriangleFollowsItsFirst)
{
    Pipe pipe;
    pipe.cells = Cells::triangles;
    VOZCatMesh before = pipe.mesh();
    for (int e = 1; e <= before.numElem(); ++e) // c a b: below the plane c is on the path
    {
        int * const row = before.elem(e);
        row[3] = row[2];
        row[2] = row[1];
        row[1] = row[0];
        row[0] = row[3];
    }
    Opened const opened(before);
    ASSERT_TRUE(opened.isOpen);
    int moved = 0;
    for (int e = 1; e <= before.numElem(); ++e)
    {
        EXPECT_EQ(opened.mesh.ElementValue(e, 3), opened.mesh.ElementValue(e, 0));
        moved += opened.mesh.ElementValue(e, 0) > before.numNode() ? 1 : 0;
    }
    EXPECT_GT(moved, 0);
}

// Of many sizes and turned so that the cut runs along nodes or between them: the sheet is the tube, cut.
TEST_F(TubeTest, OpenedTubesKeepTheirAreaAndTheirEdges)
{
    std::mt19937 random(102);
    for (int round = 0; round < 120; ++round)
    {
        Pipe pipe;
        pipe.around = 8 + static_cast<int>(random() % 40);
        pipe.along = 3 + static_cast<int>(random() % 30);
        pipe.radius = 5.0 + static_cast<double>(random() % 100);
        pipe.length = pipe.radius * 2.0 * kPi / pipe.around * pipe.along; // square cells
        pipe.cells = static_cast<Cells>(round % 3);
        double const cell = 2.0 * kPi / pipe.around;
        bool const onNodes = round % 2 == 0;
        double const between = onNodes ? 0.0 : std::uniform_real_distribution<double>(-0.45, 0.45)(random);
        pipe.angle = cell * (static_cast<double>(random() % 100) + between);
        VOZCatMesh tube = pipe.mesh();
        Opened opened(tube);
        ASSERT_TRUE(opened.isOpen) << "round " << round;
        int const length = opened.property.dispBCs(2).size;
        ASSERT_EQ(length, pipe.along + 1) << "round " << round;
        ASSERT_EQ(opened.mesh.numNode(), tube.numNode() + length);

        // one boundary, round the whole sheet: both ends and both lips
        Chained const chained(opened.mesh);
        EXPECT_EQ(chained.error, 0);
        EXPECT_EQ(chained.loops.numLoops(), 1) << "round " << round;
        EXPECT_EQ(chained.edges.numEdge(), 2 * pipe.around + 2 * (length - 1));

        // where the cut runs along nodes nothing has moved but by rounding; else by the way to the plane
        double const moved = onNodes ? 1e-9 * pipe.radius : pipe.radius * std::sin(0.45 * cell) + 1e-9;
        Ints const path = nodesOf(opened.property.dispBCs(2));
        for (int e = 1; e <= tube.numElem(); ++e)
        {
            bool const isTriangle = tube.isTriangle(e) != 0;
            auto const turned = [isTriangle](int k) { return isTriangle ? Ints{0, 2, 1, 3}[at(k)] : (4 - k) % 4; };
            for (int k = 0; k < 4; ++k)
            {
                int const before = tube.elem(e, k);
                int const after = opened.mesh.elem(e, turned(k));
                int const original = after > tube.numNode() ? path[at(after - tube.numNode() - 1)] : after;
                ASSERT_EQ(original, before) << "round " << round;
                double gap = 0.0;
                for (int c = 0; c < 3; ++c)
                    gap = std::max(gap, std::fabs(opened.mesh.NodeValue(after, c) - tube.NodeValue(before, c)));
                ASSERT_LE(gap, moved) << "round " << round;
                ASSERT_NEAR(distance(opened.mesh, after, opened.mesh.elem(e, turned((k + 1) % 4))),
                            distance(tube, before, tube.elem(e, (k + 1) % 4)), 2.0 * moved);
            }
        }
        double const wanted = area(tube);
        EXPECT_NEAR(area(opened.mesh), wanted, onNodes ? 1e-9 * wanted : 0.02 * wanted) << "round " << round;
        EXPECT_NEAR(opened.tube->Radius(), pipe.radius, 1e-9 * pipe.radius);

        // elements with doubles are below the plane, those with the path above it
        for (int e = 1; e <= opened.mesh.numElem(); ++e)
            for (int k = 0; k < 4; ++k)
            {
                int const n = opened.mesh.elem(e, k);
                bool const isDouble = n > tube.numNode();
                bool const isPath = std::find(path.begin(), path.end(), n) != path.end();
                for (int other = 0; (isDouble || isPath) && other < 4; ++other)
                {
                    double const y = opened.mesh.NodeValue(opened.mesh.elem(e, other), 1);
                    ASSERT_TRUE(isDouble ? y <= 1e-9 : y >= -1e-9) << "round " << round << " element " << e;
                }
            }
    }
}

TEST_F(TubeTest, UpdateWrapsTheFlatSheetBackOntoTheTube)
{
    for (bool const isTurned : {false, true})
    {
        Pipe const pipe;
        VOZCatAxis axis = isTurned ? turnedFrame() : VOZCatAxis();
        double const nowhere[3] = {0, 0, 0};
        axis.origin(Vec(static_cast<double const *>(nowhere)));
        VOZCatMesh mesh = pipe.mesh();
        mesh.Transform(&axis, 1);
        VOZCatMesh const before = mesh;
        ElemProperty property;
        property.sizeDispBC(2);
        {
            Tube tube(mesh, property, axis, 0.0);
            ASSERT_TRUE(tube.Eval(1.0));
        }
        // the sheet, rolled out by hand: y is the arc from the bottom, z is 0; 1 mm longer
        Result result(mesh);
        for (int n = 1; n <= mesh.numNode(); ++n)
        {
            int const original = n <= 84 ? n : 12 * (n - 85) + 1;
            Vec const local = axis.fromGlobal(mesh.node(original));
            double arc = 10.0 * std::atan2(local[1], -local[2]);
            if (std::fabs(local[1]) < 1e-9 && local[2] > 0.0)
                arc = n <= 84 ? 10.0 * kPi : -10.0 * kPi;
            double const flat[3] = {local[0] + 1.0, arc, 0.0};
            Vec const global = axis.toGlobal(Vec(static_cast<double const *>(flat)));
            for (int c = 0; c < 3; ++c)
                result.disp(n, c, static_cast<float>(0.001 * (global[c] - mesh.NodeValue(n, c))));
        }
        Tube::Update(result, mesh, 84, axis, 0.010);
        EXPECT_EQ(mesh.numNode(), 84);
        EXPECT_EQ(result.numNodeResult(), 84);
        for (int n = 1; n <= 84; ++n)
            for (int c = 0; c < 3; ++c)
            {
                double const wanted = 0.001 * axis.axis(0, c); // 1 mm along the tube, and nothing else
                EXPECT_NEAR(result.disp(n, c), wanted, 1e-7) << n;
                EXPECT_EQ(result.dispOnBinder(n, c), result.disp(n, c));
                EXPECT_NEAR(mesh.NodeValue(n, c), before.NodeValue(n, c), 1e-12);
            }
        EXPECT_TRUE(host.reports.empty());
    }
}

TEST_F(TubeTest, UpdateWithoutARadiusLeavesAllAlone)
{
    for (double const radius : {0.0, -1.0, 1.19e-7, std::numeric_limits<double>::quiet_NaN()})
    {
        VOZCatMesh mesh = Pipe().mesh();
        Result result(mesh);
        result.disp(3, 1, 0.25F);
        Tube::Update(result, mesh, 10, VOZCatAxis(), radius);
        EXPECT_EQ(mesh.numNode(), 84);
        EXPECT_EQ(result.numNodeResult(), 84);
        EXPECT_EQ(result.disp(3, 1), 0.25F);
        EXPECT_EQ(result.dispOnBinder(3, 1), 0.0F);
    }
    VOZCatMesh mesh = Pipe().mesh();
    Result result(mesh);
    Tube::Update(result, mesh, 10, VOZCatAxis(), 1.1920928955078125e-07); // the bound itself is a radius
    EXPECT_EQ(mesh.numNode(), 10);
    EXPECT_EQ(result.numNodeResult(), 10);
}

TEST_F(TubeTest, UpdateFollowsItsFormulaToTheLastBit)
{
    VOZCatAxis const axis = turnedFrame();
    VOZCatMesh mesh = Pipe().mesh();
    Result result(mesh);
    std::mt19937 random(1021);
    std::uniform_real_distribution<float> number(-0.05F, 0.05F);
    std::vector<Vec> wanted;
    for (int n = 1; n <= 84; ++n)
    {
        for (int c = 0; c < 3; ++c)
            result.disp(n, c, number(random));
        Vec const p = mesh.node(n) * 0.001;
        Vec const l = axis.fromGlobal(p + result.disp(n));
        double const w[3] = {l[0], 0.02 * std::sin(l[1] / 0.02), -0.02 * std::cos(l[1] / 0.02)};
        wanted.push_back(axis.toGlobal(Vec(static_cast<double const *>(w))) - p);
    }
    Tube::Update(result, mesh, 84, axis, 0.02);
    for (int n = 1; n <= 84; ++n)
        for (int c = 0; c < 3; ++c)
            EXPECT_EQ(result.disp(n, c), static_cast<float>(wanted[at(n - 1)][c]));
}

TEST_F(TubeTest, UpdateBeyondTheMeshKeepsTheMeshsCount)
{
    for (int const count : {85, -1, std::numeric_limits<int>::max(), std::numeric_limits<int>::min()})
    {
        host.reports.clear();
        VOZCatMesh mesh = Pipe().mesh();
        Result result(mesh);
        Tube::Update(result, mesh, count, VOZCatAxis(), 0.01);
        EXPECT_EQ(host.reports.size(), 1U) << count;
        EXPECT_EQ(mesh.numNode(), 84);
        EXPECT_EQ(result.numNodeResult(), 84);
    }
}

// The rules told once more, step by step, in local coordinates.
class SlowTube
{
public:
    explicit SlowTube(VOZCatMesh const & i_mesh, double i_radius) : mesh(i_mesh), radius(i_radius > 0 ? i_radius : -1)
    {
    }

    bool eval(double factor)
    {
        FreeEdgeSet const edges(mesh);
        int error = 0;
        FreeEdgeLoops const loops(edges, mesh, &error);
        if (error != 0)
            return false;
        for (int e = 1; e <= mesh.numElem(); ++e)
            for (int k = 0; k < corners(e); ++k)
                map[mesh.elem(e, k)].push_back(e);
        if (!split(edges, loops, factor))
            return false;
        for (int const n : path)
            mesh.GetNodeData()[n][1] = 0.0;
        int next = mesh.numNode();
        for (int const p : path)
        {
            ++next;
            for (int const x : map[p])
                if (side(x) < 0)
                    replace(x, p, next);
        }
        for (int const p : path)
        {
            double const row[1][3] = {{y(p, 0), y(p, 1), y(p, 2)}};
            mesh.addNode(row, 1);
        }
        for (int e = 1; e <= mesh.numElem(); ++e)
            for (int k = 0; k < corners(e); ++k)
                if (mesh.elem(e, k) == path[0])
                    last = e;
        mesh.reverse();
        return true;
    }

    VOZCatMesh mesh;
    double radius;
    double half = 0.0;
    Ints path;
    int last = 0;
    int rounds = 0;

private:
    double y(int n, int c) const { return mesh.NodeValue(n, c); }
    Vec p(int n) const
    {
        double const row[3] = {y(n, 0), y(n, 1), y(n, 2)};
        return Vec(static_cast<double const *>(row));
    }
    int corners(int e) const { return mesh.isTriangle(e) != 0 ? 3 : 4; }
    int nodeSide(int n) const { return y(n, 1) > 0.001 ? 1 : y(n, 1) < -0.001 ? -1 : 0; }
    bool crosses(int a, int b) const { return std::abs(nodeSide(a) + nodeSide(b)) < 2; }
    bool elementCrosses(int e) const
    {
        if (corners(e) == 4)
            return crosses(mesh.elem(e, 0), mesh.elem(e, 2)) || crosses(mesh.elem(e, 1), mesh.elem(e, 3));
        return crosses(mesh.elem(e, 0), mesh.elem(e, 1)) || crosses(mesh.elem(e, 1), mesh.elem(e, 2)) ||
               crosses(mesh.elem(e, 2), mesh.elem(e, 0));
    }
    int side(int e) const
    {
        double farthest = 0.0;
        int node = 0;
        for (int k = 0; k < corners(e); ++k)
        {
            int const n = mesh.elem(e, k);
            if (n > mesh.numNode())
                return -1;
            if (std::fabs(y(n, 1)) > farthest)
            {
                farthest = std::fabs(y(n, 1));
                node = n;
            }
        }
        return node == 0 ? 0 : nodeSide(node);
    }
    void replace(int e, int n, int next)
    {
        bool const triangle = corners(e) == 3;
        for (int k = 0; k < 4; ++k)
            if (mesh.elem(e, k) == n)
            {
                mesh.elem(e, k, next);
                if (triangle && k == 0)
                    mesh.elem(e, 3, next);
                return;
            }
    }

    bool split(FreeEdgeSet const & edges, FreeEdgeLoops const & loops, double factor)
    {
        int start = 0;
        double best = kFloatMax;
        double const none[3] = {0, 0, 0};
        for (int l = 1; l <= loops.numLoops(); ++l)
        {
            double mean = 0.0;
            for (int const k : walk(loops, l))
                mean += p(edges.startNode(k)).distance(Vec(static_cast<double const *>(none)));
            mean /= loops.numLoopEdges(l);
            if (mean < best)
            {
                best = mean;
                start = l;
            }
        }
        if (radius < 0)
            radius = best * factor;
        half = radius * kPi;
        std::set<int> targets;
        for (int l = 1; l <= loops.numLoops(); ++l)
            for (int const k : walk(loops, l))
                if (l != start)
                    targets.insert(edges.startNode(k));
        double const top[3] = {0, 0, half};
        best = kFloatMax;
        int P = -1;
        int Q = -1;
        for (int const k : walk(loops, start))
        {
            int const s = edges.startNode(k);
            int const e = edges.endNode(k);
            double const score = std::fabs(y(s, 1)) + Vec(static_cast<double const *>(top)).distance(p(s));
            if (score < best && crosses(s, e))
            {
                best = score;
                P = std::fabs(y(s, 1)) <= std::fabs(y(e, 1)) ? s : e;
                Q = P == s ? e : s;
            }
        }
        if (map.count(P) == 0)
            return false;
        path.push_back(P);
        Vec v = p(Q) - p(P);
        v.unit();
        best = kFloatMax;
        int C = -1;
        for (int const x : map[P])
            for (int k = 0; k < corners(x); ++k)
            {
                int const u = mesh.elem(x, k);
                if (u == P || u == Q)
                    continue;
                Vec w = p(u) - p(P);
                w.unit();
                if (std::fabs(w.dot(v)) < best)
                {
                    best = std::fabs(w.dot(v));
                    C = u;
                }
            }
        path.push_back(C);
        return map.count(C) != 0 && follow(P, C, targets);
    }

    bool follow(int prev, int cur, std::set<int> const & targets)
    {
        int next = -1;
        for (;;)
        {
            ++rounds;
            double best = kFloatMax;
            for (int const x : map[cur])
            {
                if (!elementCrosses(x))
                    continue;
                int const skip = corners(x) == 4 ? (mesh.GetElementNodePosition(x, cur) + 2) % 4 : -1;
                for (int k = 0; k < corners(x); ++k)
                {
                    int const u = mesh.elem(x, k);
                    if (k == skip || u == cur || u == prev)
                        continue;
                    Vec a = p(prev) - p(cur);
                    a[1] = 0.0;
                    a.unit();
                    Vec b = p(u) - p(cur);
                    b.unit();
                    double const cosine = a.dot(b);
                    double const cost = (cosine + 1) * std::fabs(y(u, 1));
                    if (cost < best && cosine < 0.1)
                    {
                        best = cost;
                        next = u;
                    }
                }
            }
            if (next < 0)
                return false;
            prev = cur;
            cur = next;
            path.push_back(next);
            if (rounds > static_cast<int>(map.size()))
                return false;
            if (map.count(next) == 0)
                return false;
            if (targets.count(next) != 0)
                return true;
        }
    }

    std::map<int, Ints> map;
};

// Crooked tubes with windows and unused nodes, numbered at random: cut, cut short, refused, or walked in vain.
VOZCatMesh crookedTube(std::mt19937 & random)
{
    Pipe pipe;
    pipe.around = 5 + static_cast<int>(random() % 12);
    pipe.along = 1 + static_cast<int>(random() % 12);
    pipe.cells = static_cast<Cells>(random() % 3);
    pipe.angle = static_cast<double>(random() % 100);
    VOZCatMesh const straight = pipe.mesh();
    Points points = pointsOf(straight);
    double const shake = 0.5 * static_cast<double>(random() % 8);
    std::uniform_real_distribution<double> number(-shake, shake);
    for (Point & point : points)
        for (double & value : point)
            value += number(random);
    Quads rows;
    unsigned const windows = random() % 3 == 0 ? 20 : 100000;
    for (std::array<int, 4> const & row : rowsOf(straight))
        if (random() % windows != 0)
            rows.push_back(row);
    Ints place = oneTo(static_cast<int>(points.size()));
    std::shuffle(place.begin(), place.end(), random);
    std::shuffle(rows.begin(), rows.end(), random);
    Points moved(points.size());
    for (std::size_t n = 0; n < points.size(); ++n)
        moved[at(place[n] - 1)] = points[n];
    for (std::array<int, 4> & row : rows)
        for (int & n : row)
            n = place[at(n - 1)];
    return samples::mesh(moved, rows);
}

TEST_F(TubeTest, RandomTubesAgreeWithTheRulesToTheLastBit)
{
    std::mt19937 random(1022);
    int opened = 0;
    int refused = 0;
    int stoodStill = 0;
    int unheld = 0;
    for (int round = 0; round < 1500; ++round)
    {
        VOZCatMesh mesh = crookedTube(random);
        double const radius = random() % 3 == 0 ? 3.0 : 0.0;
        double const factor = 0.1 * static_cast<double>(1 + random() % 20);
        SlowTube slow(mesh, radius);
        bool const wanted = slow.eval(factor);
        Opened got(mesh, factor, radius);
        ASSERT_EQ(got.isOpen, wanted) << "round " << round;
        ASSERT_EQ(got.tube->Radius(), slow.radius) << "round " << round;
        ASSERT_EQ(pointsOf(got.mesh), pointsOf(slow.mesh)) << "round " << round;
        ASSERT_EQ(rowsOf(got.mesh), rowsOf(slow.mesh)) << "round " << round;
        (wanted ? opened : refused) += 1;
        stoodStill += !wanted && slow.rounds > 20 ? 1 : 0;
        if (!wanted)
            continue;
        Ints doubles;
        for (std::size_t i = 0; i < slow.path.size(); ++i)
            doubles.push_back(mesh.numNode() + static_cast<int>(i) + 1);
        bool const isHeld = slow.last != 0; // where no element keeps the path's first node there are no tables
        ASSERT_EQ(nodesOf(got.property.dispBCs(2)), isHeld ? slow.path : Ints{}) << "round " << round;
        ASSERT_EQ(nodesOf(got.property.dispBCs(1)), isHeld ? doubles : Ints{}) << "round " << round;
        unheld += isHeld ? 0 : 1;
        if (!isHeld)
            continue;
        int sum = 0;
        for (int k = 0; k < (slow.mesh.isTriangle(slow.last) != 0 ? 3 : 4); ++k)
        {
            double const y = slow.mesh.node(slow.mesh.elem(slow.last, k), 1);
            sum += y > 0.001 ? 1 : y < -0.001 ? -1 : 0;
        }
        EXPECT_EQ(got.property.dispBCs(2).values[1], sum >= 0 ? slow.half : -slow.half) << "round " << round;
        EXPECT_EQ(got.property.dispBCs(1).values[1], sum >= 0 ? -slow.half : slow.half) << "round " << round;
    }
    EXPECT_GT(opened, 200);
    EXPECT_GT(refused, 200);
    EXPECT_GT(stoodStill, 50);
    EXPECT_GT(unheld, 0);
    EXPECT_TRUE(host.reports.empty());
}
} // namespace
