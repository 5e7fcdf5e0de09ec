// TubeTest.cpp: how a tube is opened, and what is refused.

#include "Tube.h"

#include "TubeFixture.h"

#include <gtest/gtest.h>

#include <array>
#include <limits>
#include <memory>
#include <utility>

using namespace tubes;

namespace
{
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

//   1 --- 2   z ^    a square tube of exact numbers: the top edge of the start loop runs from 2 to 1, both as far from
//   |     |          the plane; at 2, nodes 6 (along the tube) and 3 are both at right angles to it
//   4 --- 3   -> y
TEST_F(TubeTest, OfTwoEndsAsNearThePathTakesTheStartAndOfTwoNodesAsUprightTheFirstMet)
{
    Points points;
    Quads rows;
    for (int i = 0; i < 4; ++i)
        for (Point const & corner : {Point{0, -1, 1}, Point{0, 1, 1}, Point{0, 1, -1}, Point{0, -1, -1}})
            points.push_back({2.0 * i, corner[1], corner[2]});
    for (int i = 0; i < 3; ++i)
        for (int j = 0; j < 4; ++j)
        {
            int const next = (j + 1) % 4;
            rows.push_back({4 * i + j + 1, 4 * i + j + 5, 4 * i + next + 5, 4 * i + next + 1});
        }
    VOZCatMesh const tube = samples::mesh(points, rows);
    Opened const opened(tube);
    ASSERT_TRUE(opened.isOpen);
    EXPECT_EQ(nodesOf(opened.property.dispBCs(2)), (Ints{2, 6, 10, 14}));
    EXPECT_EQ(opened.mesh.NodeValue(2, 1), 0.0);
    EXPECT_EQ(opened.mesh.NodeValue(1, 1), -1.0);
    for (std::array<int, 4> & row : rows) // the other way round, the edge starts at 1
        std::swap(row[1], row[3]);
    Opened const turned(samples::mesh(points, rows));
    ASSERT_TRUE(turned.isOpen);
    EXPECT_EQ(nodesOf(turned.property.dispBCs(2)), (Ints{1, 5, 9, 13}));
}

//   1 --- 2   z ^    2-1 and 1-3 cross the plane and start as far from it and from the target: the first walked stands;
//     \ /           of 2-1 the path takes 2, of 1-3 it takes 3
//      3      -> y
TEST_F(TubeTest, OfTwoEdgesOfTheSameScoreTheFirstWalkedBeginsThePath)
{
    Points points;
    for (int i = 0; i < 3; ++i)
        for (Point const & corner : {Point{0, -1, 1}, Point{0, 1, 1}, Point{0, 0.5, -1}})
            points.push_back({2.0 * i, corner[1], corner[2]});
    for (int const first : {0, 2}) // the cell whose edge is walked first
    {
        Quads rows;
        for (int i = 0; i < 2; ++i)
            for (int k = 0; k < 3; ++k)
            {
                int const j = (first + k) % 3;
                int const next = (j + 1) % 3;
                rows.push_back({3 * i + j + 1, 3 * i + j + 4, 3 * i + next + 4, 3 * i + next + 1});
            }
        Opened const opened(samples::mesh(points, rows));
        ASSERT_TRUE(opened.isOpen);
        EXPECT_EQ(nodesOf(opened.property.dispBCs(2)), first == 0 ? (Ints{2, 5, 8}) : (Ints{3, 6, 9}));
    }
}

TEST_F(TubeTest, CopiesHaveTheSameMeshPropertyPlaneAndRadius)
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
    EXPECT_EQ(mesh.numNode(), 84 + 7);
    EXPECT_EQ(property.dispBCs(2).values[1], 4.0 * kPi);
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
} // namespace
