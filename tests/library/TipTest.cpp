// TipTest.cpp: the stamping frames of the average tips, and what all tips share.

#include "TipFixture.h"

#include "BoundBox.h"
#include "ElemNormal.h"
#include "MeshNormal.h"
#include "SampleMeshes.h"
#include "UnderCutFilter.h"

#include <gtest/gtest.h>

#include <cmath>
#include <random>

using namespace tips;

namespace
{
using samples::Point;
using samples::Quads;
using samples::Sample;

// Turned about an axis through the origin.
void turn(VOZCatMesh & mesh, Vec const & about, double angle)
{
    for (int n = 1; n <= mesh.numNode(); ++n)
    {
        Vec const p = Vec(static_cast<double const *>(mesh.GetNodeData()[n]));
        mesh.node(n, p * std::cos(angle) + about.cross(p) * std::sin(angle) +
                         about * (about.dot(p) * (1 - std::cos(angle))));
    }
}

TEST(AverageTip, OfAFlatPlateIsTheIdentityAtItsLowerCorner)
{
    VOZCatMesh const mesh = plate();
    Tipped const tipped{AverageTip(mesh)};
    EXPECT_EQ(tipped.row(0), (Values{1, 0, 0}));
    EXPECT_EQ(tipped.row(1), (Values{0, 1, 0}));
    EXPECT_EQ(tipped.row(2), (Values{0, 0, 1}));
    EXPECT_EQ(tipped.origin(), (Values{5, -7, 2}));
    EXPECT_TRUE(tipped.symmetry.noSymmetry());
    EXPECT_EQ(tipped.numUnderCutElem, 0);
    EXPECT_EQ(tipped.maxUnderCutAngle, 0);
}

TEST(AverageTip, OfAReversedPlateIsNotTheMirrorOfThat)
{
    VOZCatMesh mesh = plate();
    mesh.reverse();
    Tipped const tipped{AverageTip(mesh)};
    EXPECT_EQ(tipped.row(0), (Values{0, -1, 0}));
    EXPECT_EQ(tipped.row(1), (Values{-1, 0, 0}));
    EXPECT_EQ(tipped.row(2), (Values{0, 0, -1}));
    EXPECT_EQ(tipped.origin(), (Values{9, -4, 2}));
    EXPECT_EQ(tipped.numUnderCutElem, 0);
    EXPECT_TRUE(rightHanded(tipped.axis));
}

TEST(AverageTip, ClearsBothSymmetryFlags)
{
    VOZCatMesh const mesh = plate();
    VOZCatAxis axis;
    Symmetry symmetry(true, true);
    int count = 0;
    double angle = 0;
    AverageTip(mesh).tip(axis, symmetry, count, angle);
    EXPECT_TRUE(symmetry.noSymmetry());
}

TEST(AverageTip, ATiltedPlateHasItsFrameFromTheDirection)
{
    VOZCatMesh mesh = plate();
    turn(mesh, vec(0, 1, 0), 0.5); // n = (sin, 0, cos)
    Tipped const tipped{AverageTip(mesh)};
    expectNear(tipped.row(0), {0, -1, 0});                         // n x Z
    expectNear(tipped.row(1), {std::cos(0.5), 0, -std::sin(0.5)}); // n x row 0
    expectNear(tipped.row(2), {std::sin(0.5), 0, std::cos(0.5)});
    EXPECT_TRUE(rightHanded(tipped.axis));
}

TEST(AverageTip, SnapsWithinATenThousandthInZAndCountsUndercutsAgainstTheUnsnappedDirection)
{
    // the wall of a hat is undercut by the tilt, though the frame is exactly the identity
    VOZCatMesh mesh = samples::hat();
    turn(mesh, vec(0, 1, 0), 0.0141);
    Tipped const snapped{AverageTip(mesh)};
    EXPECT_EQ(snapped.row(0), (Values{1, 0, 0}));
    EXPECT_EQ(snapped.row(2), (Values{0, 0, 1}));
    ElemNormal const normals(mesh);
    Vec const n = MeshNormal(normals).normal();
    UnderCutFilter const filter(normals, n);
    EXPECT_NE(n, vec(0, 0, 1));
    EXPECT_EQ(snapped.numUnderCutElem, filter.numUnderCutElem());
    EXPECT_EQ(snapped.maxUnderCutAngle, static_cast<double>(filter.maxUnderCutAngle()));
    EXPECT_GT(UnderCutFilter(normals, vec(0, 0, 1)).maxUnderCutAngle(), 0.8F); // against the frame's own z
    EXPECT_LT(filter.maxUnderCutAngle(), 1e-5F);

    VOZCatMesh further = samples::hat();
    turn(further, vec(0, 1, 0), 0.0142); // 1 - cos is above 0.0001
    EXPECT_NE(Tipped{AverageTip(further)}.row(2), (Values{0, 0, 1}));
    VOZCatMesh down = samples::hat();
    down.reverse();
    turn(down, vec(0, 1, 0), 0.0141);
    EXPECT_EQ(Tipped{AverageTip(down)}.row(2), (Values{0, 0, -1}));
}

TEST(AverageTip, TheVerticalWallsOfAHatAreNotUndercut)
{
    VOZCatMesh const mesh = samples::hat();
    Tipped const tipped{AverageTip(mesh)};
    EXPECT_EQ(tipped.numUnderCutElem, 0);
    EXPECT_EQ(tipped.maxUnderCutAngle, 0);
}

TEST(AverageTip, LaysAllNodesAtOrAboveZeroWhateverTheAxisHeld)
{
    std::mt19937 random(59);
    std::uniform_real_distribution<double> within(-1, 1);
    for (Sample & sample : samples::cleanSamples())
    {
        if (sample.name == "two patches" || sample.name == "a triangle beside a quadrilateral")
            continue; // points on a circle: not a surface
        Vec about = vec(within(random), within(random), within(random));
        about.unit();
        turn(sample.mesh, about, 3 * within(random));
        Tipped tipped{AverageTip(sample.mesh)};
        EXPECT_TRUE(rightHanded(tipped.axis)) << sample.name;
        BoundBox box;
        for (int n = 1; n <= sample.mesh.numNode(); ++n)
            box.encompass(tipped.axis.fromGlobal(sample.mesh.node(n)));
        for (int c = 0; c < 3; ++c)
            EXPECT_NEAR(box.lower(c), 0, 1e-12) << sample.name;
        Values const origin = tipped.origin();
        tipped.axis.origin(vec(1e6, -1e7, 3e5));
        tipped.axis.axis(1, vec(3, 3, 3));
        AverageTip again(sample.mesh);
        tipped.again(again);
        EXPECT_EQ(tipped.origin(), origin) << sample.name; // the same bits
    }
}

TEST(AverageTip, OfAMeshWithoutElementsIsNaN)
{
    VOZCatMesh const mesh(3, 0);
    std::memset(mesh.GetNodeData(), 0, 4 * sizeof(double[3]));
    Tipped const tipped{AverageTip(mesh)};
    EXPECT_TRUE(std::isnan(tipped.axis.axis(2, 2)));
    EXPECT_TRUE(std::isnan(tipped.axis.axis(0, 0)));
    EXPECT_EQ(tipped.numUnderCutElem, 0);
}

TEST(AverageDieLineTip, TakesTheDieLineOnTheMeshsSide)
{
    VOZCatMesh const mesh = plate();
    double const s = std::sqrt(0.5);
    for (double const sign : {1.0, -1.0})
    {
        Tipped const tipped{AverageDieLineTip(mesh, vec(3 * sign, 0, 3 * sign))};
        expectNear(tipped.row(2), {s, 0, s});
        expectNear(tipped.row(0), {0, -1, 0});
        EXPECT_TRUE(rightHanded(tipped.axis));
        EXPECT_TRUE(tipped.symmetry.noSymmetry());
    }
}

TEST(AverageDieLineTip, AnExactTieGoesToTheReversedDieLine)
{
    VOZCatMesh const mesh = plate();
    EXPECT_EQ((Tipped{AverageDieLineTip(mesh, vec(2, 0, 0))}.row(2)), (Values{-1, 0, 0}));
    EXPECT_EQ((Tipped{AverageDieLineTip(mesh, vec(-2, 0, 0))}.row(2)), (Values{1, 0, 0}));
}

TEST(AverageDieLineTip, AZeroDieLineIsNaN)
{
    VOZCatMesh const mesh = plate();
    EXPECT_TRUE(std::isnan(Tipped{AverageDieLineTip(mesh, Vec())}.axis.axis(2, 0)));
}

TEST(AverageDieLineTip, KeepsTheDieLineForItself)
{
    VOZCatMesh const mesh = plate();
    double row[3] = {0, 1, 1};
    AverageDieLineTip tip(mesh, Vec(row));
    row[1] = 50;
    Tipped const first(tip);
    Tipped const second(tip); // the first call has not changed it either
    expectNear(first.row(2), {0, std::sqrt(0.5), std::sqrt(0.5)});
    EXPECT_EQ(first.row(2), second.row(2));
}

struct OpenTip : AverageTip
{
    using AverageTip::AverageTip;
    using AverageTip::extents;
    using AverageTip::intersect;
    using AverageTip::inwards;
    using AverageTip::orient;
};

TEST(AverageTip, OrientDividesTheDirectionUnlessItSnaps)
{
    VOZCatMesh const mesh;
    VOZCatAxis axis;
    Vec n = vec(0, 5, 0);
    OpenTip(mesh).orient(axis, n);
    EXPECT_EQ(values(axis.axis(0)), (Values{1, 0, 0}));
    EXPECT_EQ(values(axis.axis(1)), (Values{0, 0, -1}));
    EXPECT_EQ(values(axis.axis(2)), (Values{0, 1, 0}));
    EXPECT_EQ(values(n), (Values{0, 1, 0}));
    for (double const z : {7.0, -7.0})
    {
        Vec steep = vec(1, 2, z);
        OpenTip(mesh).orient(axis, steep);
        EXPECT_EQ(values(steep), (Values{1, 2, z}));
        EXPECT_EQ(axis.axis(2, 2), z / 7.0);
    }
}

// A frame and a direction of its own.
template <class Base>
struct TurnedTip : Base
{
    using Base::Base;

protected:
    void orient(VOZCatAxis & o_axis, Vec & io_normal) const override
    {
        o_axis.axis(0, vec(0, 0, 1));
        o_axis.axis(1, vec(1, 0, 0));
        o_axis.axis(2, vec(0, 1, 0));
        io_normal = vec(0, 0, -1);
    }
};

TEST(AverageTip, LeavesFrameAndDirectionToAnOverriddenOrient)
{
    VOZCatMesh const mesh = plate();
    for (Tipped const & tipped :
         {Tipped{TurnedTip<AverageTip>(mesh)}, Tipped{TurnedTip<AverageDieLineTip>(mesh, vec(1, 0, 1))}})
    {
        EXPECT_EQ(tipped.row(0), (Values{0, 0, 1}));
        EXPECT_EQ(tipped.row(2), (Values{0, 1, 0}));
        EXPECT_EQ(tipped.origin(), (Values{5, -7, 2}));
        EXPECT_EQ(tipped.numUnderCutElem, 12);
        EXPECT_EQ(tipped.maxUnderCutAngle, 90);
    }
}

double coefficient(Plane const & plane, int i)
{
    return i < 3 ? plane.normal()[i] : plane.offset();
}

TEST(Tip, InwardsTurnsAPlaneTowardsTheMoreNodes)
{
    VOZCatMesh const mesh = plate(0, 0, 0);
    OpenTip tip(mesh);
    Plane behind(-1, 0, 0, -1); // x = -1, facing away
    tip.inwards(behind);
    EXPECT_EQ(coefficient(behind, 0), 1);
    EXPECT_EQ(coefficient(behind, 3), 1);
    tip.inwards(behind);
    EXPECT_EQ(coefficient(behind, 0), 1);
    Plane off(-1, 0, 0, 1); // x = 1: three columns of nodes before, one behind, one on it
    tip.inwards(off);
    EXPECT_EQ(coefficient(off, 0), 1);
}

TEST(Tip, InwardsLeavesAPlaneWithAsManyNodesOnEachSide)
{
    VOZCatMesh const mesh = plate(-2, 0, 0);
    OpenTip tip(mesh);
    Plane middle(-1, 0, 0, 0);
    tip.inwards(middle);
    EXPECT_EQ(coefficient(middle, 0), -1);
    VOZCatMesh const empty;
    Plane any(-1, 0, 0, 0);
    OpenTip(empty).inwards(any);
    EXPECT_EQ(coefficient(any, 0), -1);
}

TEST(Tip, ExtentsAreTheBoxOfAllNodesInTheFrame)
{
    VOZCatMesh const mesh = plate(5, -7, 2);
    VOZCatAxis axis;
    axis.origin(vec(1, 1, 1));
    axis.axis(0, vec(0, 1, 0));
    axis.axis(1, vec(-1, 0, 0));
    BoundBox box;
    box.encompass(vec(1e6, 1e6, 1e6)); // is reset
    OpenTip(mesh).extents(axis, box);
    EXPECT_EQ(values(box.lower()), (Values{-8, -8, 1}));
    EXPECT_EQ(values(box.upper()), (Values{-5, -4, 1}));
}

TEST(Tip, IntersectSumsTheFeetOfThreePlanes)
{
    VOZCatMesh const mesh;
    Vec point;
    OpenTip(mesh).intersect(point, Plane(1, 0, 0, -3), Plane(0, -1, 0, -4), Plane(0, 0, 2, 10));
    EXPECT_EQ(values(point), (Values{3, -4, -5}));
}
} // namespace
