// SymmetryTipTest.cpp: the stamping frames of halves and quarters.

#include "TipFixture.h"

#include "BoundBox.h"
#include "HostFixture.h"
#include "SampleMeshes.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstring>

using namespace tips;

namespace
{
using samples::Grid;
using samples::Point;

// Half a dome over x >= 0, tilted so that the mean normal leaves the plane.
VOZCatMesh halfDome()
{
    Grid grid;
    grid.columns = 5;
    grid.rows = 6;
    grid.x1 = 5;
    grid.y0 = -3;
    grid.y1 = 3;
    grid.surface = [](double x, double y) { return Point{x, y, -0.05 * (x * x + (y - 1) * (y - 1))}; };
    return grid.mesh();
}

TEST(HalfSymmetryTip, TurnsThePlaneInwardsAndLaysTheFrameOnIt)
{
    VOZCatMesh const mesh = halfDome();
    for (double const sign : {1.0, -1.0})
    {
        Tipped const tipped{HalfSymmetryTip(mesh, Plane(sign, 0, 0, 0))};
        EXPECT_EQ(tipped.row(0), (Values{1, 0, 0}));
        EXPECT_NEAR(tipped.axis.axis(2, 0), 0, 1e-15);
        EXPECT_GT(tipped.axis.axis(2, 2), 0.9);
        EXPECT_TRUE(rightHanded(tipped.axis));
        EXPECT_FALSE(tipped.symmetry.xzSymmetry());
        EXPECT_TRUE(tipped.symmetry.yzSymmetry());
        BoundBox box;
        for (int n = 1; n <= mesh.numNode(); ++n)
            box.encompass(tipped.axis.fromGlobal(Vec(static_cast<double const *>(mesh.GetNodeData()[n]))));
        expectNear(values(box.lower()), {0, 0, 0});
        EXPECT_EQ(tipped.numUnderCutElem, 0);
    }
}

TEST(HalfSymmetryTip, TheOriginIsOnThePlaneEvenIfTheMeshStopsShortOfIt)
{
    VOZCatMesh mesh = halfDome();
    mesh.Translate(vec(2, 0, 10));
    Tipped const tipped{HalfSymmetryTip(mesh, Plane(-1, 0, 0, 0))};
    EXPECT_NEAR(tipped.axis.origin(0), 0, 1e-14);
    BoundBox box;
    for (int n = 1; n <= mesh.numNode(); ++n)
        box.encompass(tipped.axis.fromGlobal(mesh.node(n)));
    expectNear(values(box.lower()), {2, 0, 0});
}

TEST(HalfSymmetryTip, WithAsManyNodesOnEachSideThePlaneStays)
{
    VOZCatMesh const mesh = plate(-2, 0, 0);
    EXPECT_EQ((Tipped{HalfSymmetryTip(mesh, Plane(-1, 0, 0, 0))}.row(0)), (Values{-1, 0, 0}));
}

TEST(HalfSymmetryDieLineTip, TakesTheDieLineOnTheNormalsSide)
{
    VOZCatMesh const mesh = halfDome();
    for (double const sign : {1.0, -1.0})
    {
        Tipped const tipped{HalfSymmetryDieLineTip(mesh, Plane(1, 0, 0, 0), vec(0, 0.6 * sign, 0.8 * sign))};
        expectNear(tipped.row(2), {0, 0.6, 0.8});
        expectNear(tipped.row(1), {0, 0.8, -0.6});
        EXPECT_TRUE(tipped.symmetry.yzSymmetry());
        EXPECT_TRUE(rightHanded(tipped.axis));
    }
}

// Row 1 is then shorter than a unit vector, and is left so; the plane through the lowest y is brought to normal form.
TEST(HalfSymmetryDieLineTip, ADieLineOutOfThePlaneIsNotProjectedOnIt)
{
    VOZCatMesh const mesh = plate(1, 2, 3);
    Tipped const tipped{HalfSymmetryDieLineTip(mesh, Plane(1, 0, 0, 0), vec(0.6, 0, 0.8))};
    EXPECT_EQ(tipped.row(0), (Values{1, 0, 0}));
    expectNear(tipped.row(1), {0, 0.8, 0});
    expectNear(tipped.row(2), {0.6, 0, 0.8});
    // the lower corner 1, 1.6, 3 of the box is 2.8, 1.28, 2.4 outside: 3.6 along row 2
    expectNear(tipped.origin(), {3.6 * 0.6, 1.28, 3.6 * 0.8});
}

TEST(HalfSymmetryDieLineTip, ATieGoesToTheReversedDieLine)
{
    VOZCatMesh const mesh = plate(0, 0, 0);
    EXPECT_EQ((Tipped{HalfSymmetryDieLineTip(mesh, Plane(1, 0, 0, 0), vec(0, 1, 0))}.row(2)), (Values{0, -1, 0}));
}

TEST(HalfSymmetryDieLineTip, AShortDieLineLeavesTheArgumentsUntouched)
{
    VOZCatMesh const mesh = halfDome();
    HalfSymmetryDieLineTip tip(mesh, Plane(-1, 0, 0, 0), vec(0, 0, 0.0005));
    VOZCatAxis axis;
    axis.axis(1, vec(7, 8, 9));
    axis.origin(vec(1, 2, 3));
    Symmetry symmetry(true, false);
    int count = 77;
    double angle = 55;
    tip.tip(axis, symmetry, count, angle);
    EXPECT_EQ(values(axis.axis(1)), (Values{7, 8, 9}));
    EXPECT_EQ(values(axis.origin()), (Values{1, 2, 3}));
    EXPECT_TRUE(symmetry.xzSymmetry());
    EXPECT_FALSE(symmetry.yzSymmetry());
    EXPECT_EQ(count, 77);
    EXPECT_EQ(angle, 55);
    // the plane, last in the object, has been through inwards all the same
    double plane[4];
    std::memcpy(plane, reinterpret_cast<char const *>(&tip) + sizeof(tip) - sizeof(plane), sizeof(plane));
    EXPECT_EQ(plane[0], 1);
}

TEST(HalfSymmetryDieLineTip, ADieLineOfExactlyAThousandthRunsInFull)
{
    VOZCatMesh const mesh = halfDome();
    Tipped const tipped{HalfSymmetryDieLineTip(mesh, Plane(-1, 0, 0, 0), vec(0, 0, 0.001))};
    EXPECT_EQ(tipped.row(2), (Values{0, 0, 1}));
    EXPECT_TRUE(tipped.symmetry.yzSymmetry());
    EXPECT_EQ(tipped.numUnderCutElem, 0);
}

// A quarter of a dome over x, y >= 0.
VOZCatMesh quarterDome()
{
    Grid grid;
    grid.columns = grid.rows = 5;
    grid.x1 = 5;
    grid.y1 = 4;
    grid.surface = [](double x, double y) { return Point{x, y, 3 - 0.05 * (x * x + y * y)}; };
    return grid.mesh();
}

// The two planes in the object, as they stand.
std::array<Values, 2> planes(FourthSymmetryTip const & tip)
{
    double stored[8];
    static_assert(sizeof(tip) == 2 * sizeof(void *) + sizeof(stored));
    std::memcpy(stored, reinterpret_cast<char const *>(&tip) + 2 * sizeof(void *), sizeof(stored));
    return {Values{stored[0], stored[1], stored[2]}, Values{stored[4], stored[5], stored[6]}};
}

TEST(FourthSymmetryTip, LaysTheFrameOnBothPlanesInWhicheverOrderTheyCome)
{
    VOZCatMesh const mesh = quarterDome();
    Plane const x(-1, 0, 0, 0);
    Plane const y(0, 1, 0, 0);
    for (bool const exchanged : {false, true})
    {
        Tipped const tipped{FourthSymmetryTip(mesh, exchanged ? x : y, exchanged ? y : x)};
        EXPECT_EQ(tipped.row(0), (Values{1, 0, 0}));
        EXPECT_EQ(tipped.row(1), (Values{0, 1, 0}));
        expectNear(tipped.row(2), {0, 0, 1});
        EXPECT_TRUE(tipped.symmetry.quarterSymmetry());
        expectNear(tipped.origin(), {0, 0, 3 - 0.05 * 41});
        EXPECT_EQ(tipped.numUnderCutElem, 0);
    }
}

TEST(FourthSymmetryTip, ExchangesPlanesThatWouldMakeALeftHandedFrameOnceAndForAll)
{
    VOZCatMesh const mesh = quarterDome();
    Plane const x(1, 0, 0, 0);
    Plane const y(0, 1, 0, 0);
    FourthSymmetryTip inOrder(mesh, y, x); // second x first is X x Y: along n
    Tipped const kept(inOrder);
    EXPECT_EQ(planes(inOrder), (std::array<Values, 2>{Values{0, 1, 0}, Values{1, 0, 0}}));

    FourthSymmetryTip against(mesh, x, y);
    Tipped first(against);
    EXPECT_EQ(planes(against), (std::array<Values, 2>{Values{0, 1, 0}, Values{1, 0, 0}}));
    Tipped const second(against);
    EXPECT_EQ(planes(against), (std::array<Values, 2>{Values{0, 1, 0}, Values{1, 0, 0}}));
    for (int i = 0; i < 3; ++i)
        EXPECT_EQ(first.row(i), second.row(i));
    EXPECT_EQ(first.origin(), second.origin());
    EXPECT_TRUE(rightHanded(first.axis));

    VOZCatMesh down = quarterDome();
    down.reverse();
    FourthSymmetryTip reversed(down, y, x);
    Tipped const facingDown(reversed);
    EXPECT_EQ(planes(reversed), (std::array<Values, 2>{Values{1, 0, 0}, Values{0, 1, 0}}));
    EXPECT_EQ(facingDown.row(0), (Values{0, 1, 0}));
    EXPECT_EQ(facingDown.row(1), (Values{1, 0, 0}));
    expectNear(facingDown.row(2), {0, 0, -1});
    EXPECT_TRUE(rightHanded(facingDown.axis));
}

TEST(FourthSymmetryTip, TheOriginIsOnBothPlanesEvenIfTheMeshStopsShortOfThem)
{
    VOZCatMesh mesh = quarterDome();
    mesh.Translate(vec(2, 3, 0));
    Tipped const tipped{FourthSymmetryTip(mesh, Plane(0, -1, 0, 1), Plane(1, 0, 0, 0.5))}; // y = 1, x = -0.5
    expectNear(tipped.origin(), {-0.5, 1, 3 - 0.05 * 41});
}

TEST(FourthSymmetryTip, ParallelPlanesGiveNaN)
{
    VOZCatMesh const mesh = quarterDome();
    Tipped const tipped{FourthSymmetryTip(mesh, Plane(1, 0, 0, 0), Plane(1, 0, 0, 0))};
    EXPECT_TRUE(std::isnan(tipped.axis.axis(2, 0)));
}

class TipHost : public HostFixture
{
};

TEST_F(TipHost, TipsReportNothing)
{
    VOZCatMesh const mesh = quarterDome();
    Tipped const average{AverageTip(mesh)};
    Tipped const half{HalfSymmetryTip(mesh, Plane(1, 0, 0, 0))};
    VOZCatMesh const empty;
    Tipped const ofNothing{AverageTip(empty)};
    EXPECT_TRUE(host.reports.empty());
}
} // namespace
