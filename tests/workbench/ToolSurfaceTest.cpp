// ToolSurfaceTest.cpp. Offsets, extensions and regions on surfaces whose answer is known.

#include "ToolMeshesFixture.h"

#include <numbers>
#include <stdexcept>

using namespace voz::workbench;
using namespace toolcases;

namespace
{
constexpr double kPi = std::numbers::pi;

Surface exact(voz::examples::SurfaceMesh const & i_mesh)
{
    return surfaceOf(meshOf(i_mesh));
}

// A level grid of unit cells over x, y in 0 .. columns, 0 .. rows, where the test says that a cell is there.
template <class IsThere>
Surface cells(int i_columns, int i_rows, IsThere isThere)
{
    Surface grid;
    std::vector<char> taken;
    for (int y = 0; y <= i_rows; ++y)
        for (int x = 0; x <= i_columns; ++x)
            grid.nodes.push_back({static_cast<double>(x), static_cast<double>(y), 0.0});
    for (int y = 0; y < i_rows; ++y)
        for (int x = 0; x < i_columns; ++x)
        {
            int const n = y * (i_columns + 1) + x;
            grid.elements.push_back({n, n + 1, n + i_columns + 2, n + i_columns + 1});
            taken.push_back(isThere(x, y) ? 1 : 0);
        }
    return Subset(grid, taken);
}

Surface plate(int i_columns, int i_rows)
{
    return cells(i_columns, i_rows, [](int, int) { return true; });
}

// Three faces of a cube around the corner (1, 1, 1), facing outward.
Surface boxCorner()
{
    Surface box;
    box.nodes = {{1, 1, 1}, {0, 1, 1}, {0, 0, 1}, {1, 0, 1}, {1, 0, 0}, {1, 1, 0}, {0, 1, 0}};
    box.elements = {{0, 1, 2, 3}, {0, 3, 4, 5}, {0, 5, 6, 1}};
    return box;
}

ExtendedSurface extended(Surface const & i_surface, double i_margin, std::vector<Point3> const & i_outline = {})
{
    return ExtendSurface(i_surface, std::vector<char>(i_surface.elements.size(), 0), {6.0, i_margin, i_outline});
}

VOZCatAxis upsideDown()
{
    VOZCatAxis turned;
    turned.axis(1, Vec(0.0, -1.0, 0.0));
    turned.axis(2, Vec(0.0, 0.0, -1.0));
    return turned;
}

std::size_t count(std::vector<char> const & i_marks)
{
    return static_cast<std::size_t>(std::ranges::count(i_marks, 1));
}
} // namespace

TEST(ToolSurfaceOffset, AtACornerOfABoxTheNodeGoesWhereTheMovedPlanesMeet)
{
    Surface const moved = OffsetSurface(boxCorner(), 0.25).surface;
    for (std::size_t c = 0; c < 3; ++c)
        EXPECT_NEAR(moved.nodes[0][c], 1.25, 1e-9);
    EXPECT_NEAR(moved.nodes[1][1], 1.25, 1e-3) << "an edge: out along both of its faces";
    EXPECT_NEAR(moved.nodes[1][2], 1.25, 1e-3);
    EXPECT_NEAR(moved.nodes[2][2], 1.25, 1e-9);
}

TEST(ToolSurfaceOffset, BelowAFacetedCylinderAndAboveItFacetsKeepTheDistance)
{
    Surface const sheet = exact(voz::examples::cylinder(5.0, 0.5 * kPi, 8, 10.0, 4, voz::examples::Cells::Quads));
    for (double const distance : {-2.0, -0.5, 0.5, 2.0})
    {
        OffsetResult const moved = OffsetSurface(sheet, distance);
        EXPECT_EQ(moved.mended + moved.folded, 0);
        auto const [least, greatest] = distances(moved.surface, sheet);
        EXPECT_NEAR(least, std::abs(distance), 2e-3 * std::abs(distance)) << distance;
        EXPECT_NEAR(greatest, std::abs(distance), 2e-3 * std::abs(distance)) << distance;
    }
}

TEST(ToolSurfaceOffset, AFilletTighterThanTheOffsetIsSmoothedWithoutComingNearerToTheSheet)
{
    voz::examples::VBend bend;
    bend.radius = 0.4;
    bend.leg = 10.0;
    bend.near = 2.0;
    bend.rowsNear = 8;
    bend.rowsArc = 6;
    Surface const sheet = exact(voz::examples::vBend(bend, 5.0, 5, voz::examples::Cells::Quads));
    double const upward = sheet.AreaVector(sheet.elements.front())[2] > 0.0 ? 1.0 : -1.0;
    OffsetResult const inner = OffsetSurface(sheet, 0.6 * upward); // the V opens upward: its inner side
    EXPECT_GT(inner.mended, 0);
    EXPECT_EQ(inner.folded, 0);
    EXPECT_EQ(foldedPairs(inner.surface), 0);
    EXPECT_TRUE(FoldedElements(sheet, inner.surface).empty());
    EXPECT_GE(distances(inner.surface, sheet).first, 0.6 * 0.97);
    EXPECT_EQ(OffsetSurface(sheet, -0.6 * upward).mended, 0) << "the outer side has room";
}

TEST(ToolSurfaceOffset, FoldedElementsAreThoseThatTurnedOverOrShrankToNothing)
{
    Surface const before = plate(2, 1);
    Surface after = before;
    EXPECT_TRUE(FoldedElements(before, after).empty());
    after.nodes[0] = {5.0, 0.0, 0.0};
    EXPECT_EQ(FoldedElements(before, after), std::vector<int>{0});
    after = before;
    after.nodes[2] = after.nodes[1];
    EXPECT_EQ(FoldedElements(before, after), std::vector<int>{1});
}

TEST(ToolSurfaceRims, WalkTheSidesInTheSenseOfTheElements)
{
    Surface const ring = cells(3, 3, [](int x, int y) { return x != 1 || y != 1; });
    std::vector<RimLoop> const rims = RimsOf(ring);
    ASSERT_EQ(rims.size(), 2U);
    EXPECT_EQ(rims[0].size(), 12U);
    EXPECT_EQ(rims[1].size(), 4U);
    for (RimLoop const & rim : rims)
        for (std::size_t i = 0; i < rim.size(); ++i)
            EXPECT_EQ(rim[i].to, rim[(i + 1) % rim.size()].from);
}

TEST(ToolSurfaceRims, WhatIsNoSheetIsRefusedInWords)
{
    Surface const bow = cells(2, 2, [](int x, int y) { return x == y; });
    EXPECT_THROW(RimsOf(bow), std::runtime_error) << "two rims touch at the middle";
    Surface mixed = plate(2, 1);
    std::swap(mixed.elements[0][1], mixed.elements[0][3]);
    EXPECT_THROW(RimsOf(mixed), std::runtime_error);
    int holes = 0;
    Surface const apart = cells(3, 1, [](int x, int) { return x != 1; });
    EXPECT_THROW(PartSurface(MeshOf(apart), VOZCatAxis(), holes), std::runtime_error);
}

TEST(ToolSurfacePart, FacesUpWithItsHolesFilled)
{
    Surface ring = cells(5, 5, [](int x, int y) { return x != 2 || y != 2; });
    Reverse(ring);
    int holes = 0;
    Surface const part = PartSurface(MeshOf(ring), VOZCatAxis(), holes);
    EXPECT_EQ(holes, 1);
    EXPECT_EQ(RimsOf(part).size(), 1U);
    EXPECT_NEAR(part.Area(), 25.0, 1e-6);
    for (auto const & row : part.elements)
        EXPECT_GT(part.AreaVector(row)[2], 0.0);
}

TEST(ToolSurfaceNotch, PolygonsAreCutIntoTrianglesOfTheSameArea)
{
    using Polygon = std::vector<std::array<double, 2>>;
    Polygon const comb = {{0, 0}, {6, 0}, {6, 3}, {5, 3}, {5, 1}, {4, 1},
                          {4, 3}, {2, 3}, {2, 1}, {1, 1}, {1, 3}, {0, 3}};
    double area = 0.0;
    auto const triangles = TrianglesOf(comb);
    EXPECT_EQ(triangles.size(), comb.size() - 2);
    for (auto const & t : triangles)
    {
        auto const at = [&](int k) { return comb[static_cast<std::size_t>(t[static_cast<std::size_t>(k)])]; };
        double const twice =
            (at(1)[0] - at(0)[0]) * (at(2)[1] - at(0)[1]) - (at(1)[1] - at(0)[1]) * (at(2)[0] - at(0)[0]);
        EXPECT_GT(twice, 0.0);
        area += 0.5 * twice;
    }
    EXPECT_NEAR(area, 14.0, 1e-12);
    EXPECT_TRUE(TrianglesOf(Polygon{{0, 0}, {2, 2}, {2, 0}, {0, 2}}).empty()) << "it crosses itself";
    EXPECT_TRUE(TrianglesOf(Polygon{{0, 0}, {0, 2}, {2, 0}}).empty()) << "it runs clockwise";
}

TEST(ToolSurfaceExtension, OfALevelPlateIsLevelAndCoversTheOutlineWithItsMargin)
{
    Surface const part = plate(6, 4);
    ExtendedSurface const wide = extended(part, 2.0, {{-3.0, 2.0, 7.0}, {6.0, 9.0, 7.0}});
    EXPECT_NEAR(wide.reach, 7.0, 1e-12) << "the outline reaches 5 mm beyond, and 2 mm more";
    EXPECT_LT(wide.steepest, 1e-9);
    ASSERT_EQ(RimsOf(wide.surface).size(), 1U);
    PointBox const box = wide.surface.Box();
    EXPECT_NEAR(box.low[0], -7.0, 1e-9);
    EXPECT_NEAR(box.high[1], 11.0, 1e-9);
    for (Point3 const & p : wide.surface.nodes)
        EXPECT_EQ(p[2], 0.0);
    for (auto const & row : wide.surface.elements)
        EXPECT_GT(wide.surface.AreaVector(row)[2], 0.0);
    EXPECT_TRUE(isInside({-4.9, -4.9, 0.0}, wide.surface)) << "corners are round, and no nearer than the reach";
    EXPECT_FALSE(isInside({-6.9, -6.9, 0.0}, wide.surface));
}

TEST(ToolSurfaceExtension, NotchesAreClosedBeforeItGoesOutward)
{
    Surface const part = cells(6, 6, [](int x, int y) { return x < 2 || y < 2; });
    ExtendedSurface const wide = extended(part, 3.0);
    ASSERT_EQ(RimsOf(wide.surface).size(), 1U);
    double area = 0.0;
    for (auto const & row : wide.surface.elements)
    {
        EXPECT_GT(wide.surface.AreaVector(row)[2], 0.0);
        area += wide.surface.AreaVector(row)[2];
    }
    double outline = 0.0; // by the rim alone: equal to the sum of the elements, so that nothing overlaps
    for (RimEdge const & edge : FreeEdgesOf(wide.surface))
    {
        Point3 const & a = wide.surface.At(edge.from);
        Point3 const & b = wide.surface.At(edge.to);
        outline += 0.5 * (a[0] * b[1] - b[0] * a[1]);
    }
    EXPECT_NEAR(area, outline, 1e-9 * area);
}

// The wall of the cup ends vertical: the shoulder turns it to level over the die's radius, outward and down by it.
TEST(ToolSurfaceExtension, AWallThatEndsSteeplyGetsAShoulderOfTheDiesRadius)
{
    voz::examples::Cup shape;
    shape.dieArc = 0.0;
    voz::examples::Profile profile({0.0, 0.0}, 0.0);
    profile.line(32.0, 8).arc(8.0, 0.5 * kPi, 6).line(7.0, 2);
    int holes = 0;
    Surface const part = PartSurface(
        meshOf(voz::examples::revolve(profile, 12, voz::examples::Extent::Whole, voz::examples::Cells::Quads)),
        upsideDown(), holes);
    ExtendedSurface const wide = extended(part, 5.0);
    EXPECT_NEAR(wide.steepest, 90.0, 1e-6);
    EXPECT_NEAR(wide.surface.Box().low[2], -15.0 - 6.0, 1e-9) << "the wall's end lies 15 mm below the bottom";
    EXPECT_EQ(foldedPairs(wide.surface), 0);
    std::size_t onShoulder = 0;
    for (std::size_t n = part.nodes.size(); n < wide.surface.nodes.size(); ++n)
    {
        Point3 const & p = wide.surface.nodes[n];
        if (p[2] < -20.999)
            continue; // level
        ++onShoulder;
        EXPECT_NEAR(std::hypot(std::hypot(p[0], p[1]) - 46.0, p[2] + 15.0), 6.0, 0.06) << "about the shoulder's middle";
    }
    EXPECT_EQ(onShoulder, 5U * 48U) << "six rows of 15 degrees, the last of them level";
}

TEST(ToolSurfaceRegions, TheFlangeIsTheLevelLandFromWhichTheWallsGoUp)
{
    voz::examples::Hat const shape;
    int holes = 0;
    Surface const part = PartSurface(meshOf(voz::examples::wholeHat(shape, 30.0, 6, 6, voz::examples::Cells::Quads)),
                                     upsideDown(), holes);
    double const low = part.Box().low[2];
    std::vector<char> const isFlange = FlangeOf(part, 25.0);
    for (std::size_t e = 0; e < isFlange.size(); ++e)
    {
        double highest = -INFINITY;
        for (int const n : part.elements[e])
            highest = std::max(highest, part.At(n)[2]);
        if (isFlange[e] != 0)
        {
            EXPECT_LT(highest, low + 0.2) << "neither wall nor the top, which reaches the rim, too";
        }
        else
        {
            EXPECT_GT(highest, low + 1e-6);
        }
    }
    EXPECT_GT(count(isFlange), 0U);
    std::vector<char> const isShoulder = ShoulderOf(part, isFlange);
    for (std::size_t e = 0; e < isShoulder.size(); ++e)
        EXPECT_FALSE(isShoulder[e] != 0 && isFlange[e] != 0);
    EXPECT_EQ(count(isShoulder), 2U * 6U * 7U) << "on both sides the six rows of the arc and the first of the wall";
}

TEST(ToolSurfaceRegions, APlateHasNoFlange)
{
    EXPECT_EQ(count(FlangeOf(plate(5, 5), 25.0)), 0U);
}
