#include "MeshNormal.h"

#include "ElemNormal.h"
#include "Plane.h"
#include "SampleMeshes.h"
#include "VecInspection.h"

#include <gtest/gtest.h>

#include <cmath>
#include <random>

namespace
{
using samples::Quads;
using samples::Sample;
using Values = std::array<double, 3>;

Values held(MeshNormal const & normal)
{
    return {normal.normal(0), normal.normal(1), normal.normal(2)};
}

// A 3 x 4 rectangle facing z and a 1 x 4 one facing x: normals (0, 0, 24) and (8, 0, 0).
VOZCatMesh corner()
{
    return samples::mesh({{0, 0, 0}, {3, 0, 0}, {3, 4, 0}, {0, 4, 0}, {0, 0, 1}, {0, 4, 1}},
                         Quads{{1, 2, 3, 4}, {1, 4, 6, 5}});
}

TEST(MeshNormal, DefaultIsZero)
{
    EXPECT_EQ(held(MeshNormal()), (Values{0, 0, 0}));
}

TEST(MeshNormal, WithoutAPlaneIsTheUnitSum)
{
    double const length = std::sqrt(8.0 * 8.0 + 24.0 * 24.0);
    EXPECT_EQ(held(MeshNormal(ElemNormal(corner()))), (Values{8 / length, 0, 24 / length}));
}

TEST(MeshNormal, WithAPlaneThroughTheOriginLiesInIt)
{
    EXPECT_EQ(held(MeshNormal(ElemNormal(corner()), Plane(1, 0, 0, 0))), (Values{0, 0, 1}));
    EXPECT_EQ(held(MeshNormal(ElemNormal(corner()), Plane(0, 0, -1, 0))), (Values{1, 0, 0}));
}

// The projection takes its argument for a point: an offset enters once per element.
TEST(MeshNormal, WithAPlaneOffTheOriginTakesTheNormalsForPoints)
{
    double const length = std::sqrt(10.0 * 10.0 + 24.0 * 24.0);
    EXPECT_EQ(held(MeshNormal(ElemNormal(corner()), Plane(1, 0, 0, -5))), (Values{10 / length, 0, 24 / length}));
}

TEST(MeshNormal, WithTwoPlanesIsAlongTheirLine)
{
    Plane const x(1, 0, 0, 3);
    Plane const y(0, 1, 0, -9);
    EXPECT_EQ(held(MeshNormal(ElemNormal(corner()), x, y)), (Values{0, 0, 1}));
    EXPECT_EQ(held(MeshNormal(ElemNormal(corner()), y, x)), (Values{0, 0, 1}));
    VOZCatMesh reversed = corner();
    reversed.reverse();
    EXPECT_EQ(held(MeshNormal(ElemNormal(reversed), x, y)), (Values{0, 0, -1}));
}

TEST(MeshNormal, WithTwoPlanesStaysOnTheLineForAnyNormals)
{
    std::mt19937 random(31);
    std::uniform_real_distribution<double> within(-1, 1);
    for (int i = 0; i < 200; ++i)
    {
        Plane const p(within(random), within(random), within(random), within(random));
        Plane const q(within(random), within(random), within(random), within(random));
        ElemNormal normals(samples::hat());
        double mean = 0;
        Vec line = q.normal().cross(p.normal());
        line.unit();
        for (int e = 1; e <= normals.numNormal(); ++e)
        {
            normals.normal(e) = vec(within(random), within(random), within(random));
            mean += normals.normal(e).dot(line);
        }
        Vec const n = MeshNormal(normals, p, q).normal();
        EXPECT_LT(n.distance(mean > 0 ? line : -line), 1e-12);
    }
}

TEST(MeshNormal, OfNothingOrOfNormalsThatCancelIsNaN)
{
    for (double const component : held(MeshNormal(ElemNormal())))
        EXPECT_TRUE(std::isnan(component));
    for (double const component : held(MeshNormal(ElemNormal(samples::closedBox()))))
        EXPECT_TRUE(std::isnan(component));
}

TEST(MeshNormal, ComputesAnewInEachForm)
{
    ElemNormal const normals(corner());
    MeshNormal normal(normals);
    Values const first = held(normal);
    normal.compute(normals, Plane(1, 0, 0, 0));
    EXPECT_EQ(held(normal), (Values{0, 0, 1}));
    normal.compute(normals, Plane(0, 1, 0, 0), Plane(0, 0, 1, 0));
    EXPECT_EQ(held(normal), (Values{1, 0, 0}));
    normal.compute(normals);
    EXPECT_EQ(held(normal), first);
}

TEST(MeshNormal, GivesACountedCopy)
{
    MeshNormal const normal{ElemNormal(corner())};
    Vec copy = normal.normal();
    EXPECT_EQ(countOf(copy), 1);
    copy[0] = 9;
    EXPECT_NE(normal.normal(0), 9);
}

TEST(MeshNormal, CopiesItsThreeDoubles)
{
    MeshNormal const a{ElemNormal(corner())};
    MeshNormal b;
    b = a;
    EXPECT_EQ(held(b), held(a));
    EXPECT_EQ(held(MeshNormal(a)), held(a));
}

TEST(MeshNormal, TurnsWithTheMesh)
{
    for (Sample & sample : samples::cleanSamples())
    {
        Vec const before = MeshNormal(ElemNormal(sample.mesh)).normal();
        sample.mesh.reverse();
        EXPECT_EQ(MeshNormal(ElemNormal(sample.mesh)).normal(), -before) << sample.name;
    }
}
} // namespace
