// SurfacesTest.cpp: the example surfaces have the sizes and radii that their names promise.

#include "surfaces/Surfaces.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <map>
#include <string>

namespace
{

using namespace voz::examples;

constexpr double kPi = 3.141592653589793;

int corners(std::array<int, 4> const & element)
{
    return element[3] < 0 ? 3 : 4;
}

Point3 normal(SurfaceMesh const & mesh, std::array<int, 4> const & e)
{
    auto const & a = mesh.nodes[static_cast<std::size_t>(e[0])];
    auto const & b = mesh.nodes[static_cast<std::size_t>(e[1])];
    auto const & c = mesh.nodes[static_cast<std::size_t>(e[2])];
    Point3 const u{b[0] - a[0], b[1] - a[1], b[2] - a[2]};
    Point3 const v{c[0] - a[0], c[1] - a[1], c[2] - a[2]};
    return {u[1] * v[2] - u[2] * v[1], u[2] * v[0] - u[0] * v[2], u[0] * v[1] - u[1] * v[0]};
}

// Each side of an element is met by at most one other, which runs it the other way; the free sides are counted.
int freeSidesOfManifold(SurfaceMesh const & mesh, std::string const & name)
{
    std::map<std::pair<int, int>, int> sides;
    for (auto const & e : mesh.elements)
        for (int i = 0; i < corners(e); ++i)
            ++sides[{e[static_cast<std::size_t>(i)], e[static_cast<std::size_t>((i + 1) % corners(e))]}];
    int free = 0;
    for (auto const & [side, count] : sides)
    {
        EXPECT_EQ(count, 1) << name << ": side " << side.first << "-" << side.second << " is run twice the same way";
        free += sides.count({side.second, side.first}) == 0 ? 1 : 0;
    }
    return free;
}

struct Sample
{
    std::string name;
    SurfaceMesh mesh;
    int freeSides;
    double trueArea; // of the smooth surface; 0: not known in closed form
};

double cupArea(Cup const & c)
{
    double const r = c.bottom + c.punchArc; // wall
    double const R = r + c.dieArc;          // inner rim of the flange
    double const punch = 2.0 * kPi * c.punchArc * (c.bottom * kPi / 2.0 + c.punchArc);
    double const die = 2.0 * kPi * c.dieArc * (R * kPi / 2.0 - c.dieArc);
    return kPi * c.bottom * c.bottom + punch + 2.0 * kPi * r * c.wall + die +
           kPi * ((R + c.flange) * (R + c.flange) - R * R);
}

std::vector<Sample> samples(int k)
{
    std::vector<Sample> all;
    for (Cells cells : {Cells::Triangles, Cells::Quads})
    {
        std::string const kind = cells == Cells::Quads ? " quads" : " triangles";
        all.push_back({"whole cup" + kind, cup({}, k, Extent::Whole, cells), 24 * k, cupArea({})});
        all.push_back({"half cup" + kind, cup({}, k, Extent::Half, cells), 12 * k + 28 * k, cupArea({}) / 2.0});
        all.push_back({"quarter cup" + kind, cup({}, k, Extent::Quarter, cells), 6 * k + 28 * k, cupArea({}) / 4.0});
        all.push_back(
            {"hemisphere" + kind, dome(50.0, kPi / 2.0, k, Extent::Whole, cells), 24 * k, 2.0 * kPi * 50.0 * 50.0});
        Hat const hat;
        all.push_back({"half hat" + kind, halfHat(hat, 10.0, 3 * k, 2 * k, cells), 2 * (18 * k + 2 * k),
                       10.0 * halfProfile(hat, 3).length()});
        all.push_back({"whole hat" + kind, wholeHat(hat, 10.0, 3 * k, 2 * k, cells), 2 * (36 * k + 2 * k),
                       20.0 * halfProfile(hat, 3).length()});
        all.push_back({"cylinder" + kind, cylinder(20.0, 0.6, 6 * k, 30.0, 4 * k, cells), 20 * k, 20.0 * 1.2 * 30.0});
        all.push_back({"cone" + kind, cone(0.6, 20.0, 60.0, 1.0, 6 * k, 4 * k, cells), 20 * k,
                       0.5 * (3600.0 - 400.0) * 2.0 * std::sin(0.6)});
        Bracket angle;
        angle.cellsAcross = 10 * k;
        angle.rowsRound = 5 * k;
        angle.rowsPerArc = 4 * k;
        angle.rowsFlange = 5 * k;
        all.push_back({"bracket" + kind, bracket(angle, cells), 2 * 44 * k - 10 * k + 2 * 9 * k + 10 * k,
                       60.0 * 50.0 - kPi * 100.0 + 50.0 * (5.39 * angle.bendAngle + 25.0)});
        for (auto const & [depth, shape] : {std::pair{" 15", squareCup15()}, std::pair{" 40", squareCup40()}})
        {
            all.push_back({"whole square cup" + kind + depth, squareCup(shape, Extent::Whole, cells), 112, 0.0});
            all.push_back({"half square cup" + kind + depth, squareCup(shape, Extent::Half, cells), 56 + 80, 0.0});
            all.push_back(
                {"quarter square cup" + kind + depth, squareCup(shape, Extent::Quarter, cells), 28 + 80, 0.0});
        }
    }
    return all;
}

TEST(Surfaces, EverySampleIsAnOrientedManifoldWithTheFreeSidesOfItsOutline)
{
    for (Sample const & sample : samples(2))
        EXPECT_EQ(freeSidesOfManifold(sample.mesh, sample.name), sample.freeSides) << sample.name;
}

TEST(Surfaces, EverySampleFacesUpward)
{
    for (Sample const & sample : samples(1))
        for (auto const & e : sample.mesh.elements)
        {
            Point3 const n = normal(sample.mesh, e);
            double const length = std::hypot(n[0], n[1], n[2]);
            ASSERT_GT(length, 1e-6) << sample.name; // no element without area
            ASSERT_GT(n[2], -1e-9 * length) << sample.name;
        }
}

TEST(Surfaces, FacetedAreaTendsToTheTrueAreaWithTheSquareOfTheMeshSize)
{
    std::vector<Sample> const coarse = samples(2);
    std::vector<Sample> const fine = samples(4);
    for (std::size_t i = 0; i < coarse.size(); ++i)
    {
        if (coarse[i].trueArea == 0.0)
            continue;
        double const before = area(coarse[i].mesh) / coarse[i].trueArea - 1.0;
        double const after = area(fine[i].mesh) / fine[i].trueArea - 1.0;
        EXPECT_LT(std::fabs(after), 1e-2) << coarse[i].name;
        EXPECT_NEAR(before / after, 4.0, 0.2) << coarse[i].name;
    }
}

TEST(Surfaces, EveryNodeIsUsedAndNoneIsTwice)
{
    for (Sample const & sample : samples(1))
    {
        std::vector<int> used(sample.mesh.nodes.size(), 0);
        for (auto const & e : sample.mesh.elements)
            for (int i = 0; i < corners(e); ++i)
                used[static_cast<std::size_t>(e[static_cast<std::size_t>(i)])] = 1;
        EXPECT_EQ(std::count(used.begin(), used.end(), 0), 0) << sample.name;
        std::vector<Point3> sorted = sample.mesh.nodes;
        std::sort(sorted.begin(), sorted.end());
        for (std::size_t i = 1; i < sorted.size(); ++i)
        {
            double const gap = std::hypot(sorted[i][0] - sorted[i - 1][0], sorted[i][1] - sorted[i - 1][1],
                                          sorted[i][2] - sorted[i - 1][2]);
            EXPECT_GT(gap, 1e-6) << sample.name;
        }
    }
}

//        _____
//       /          die arc 5 about (45, 15)
//      |           wall 7
//  ___/            punch arc 8 about (32, 8)
TEST(Surfaces, CupMeridianHasItsLengthRimAndRadii)
{
    Profile const profile = meridian(Cup{}, 2);
    EXPECT_NEAR(profile.length(), 71.420352248333657, 1e-12);
    EXPECT_NEAR(profile.points().back()[0], 57.0, 1e-12);
    EXPECT_NEAR(profile.points().back()[1], 20.0, 1e-12);
    EXPECT_EQ(profile.points().size(), 29U); // 14 k rows
    for (int row = 8; row <= 14; ++row)
    {
        Point2 const & p = profile.points()[static_cast<std::size_t>(row)];
        EXPECT_NEAR(std::hypot(p[0] - 32.0, p[1] - 8.0), 8.0, 1e-13);
    }
    for (int row = 18; row <= 24; ++row)
    {
        Point2 const & p = profile.points()[static_cast<std::size_t>(row)];
        EXPECT_NEAR(std::hypot(p[0] - 45.0, p[1] - 15.0), 5.0, 1e-13);
    }
}

TEST(Surfaces, DeepCupOfTheBenchmarkEndsAtItsRim)
{
    Profile const profile = meridian(Cup{32.0, 8.0, 22.0, 5.0, 16.0, 4}, 1);
    EXPECT_NEAR(profile.length(), 90.420352248333657, 1e-12);
    EXPECT_NEAR(profile.points().back()[0], 61.0, 1e-12);
}

TEST(Surfaces, DomeLiesOnItsSphere)
{
    SurfaceMesh const mesh = dome(50.0, kPi / 3.0, 3, Extent::Whole, Cells::Triangles);
    double rim = 0.0;
    for (Point3 const & p : mesh.nodes)
    {
        EXPECT_NEAR(std::hypot(p[0], p[1], p[2] + 50.0), 50.0, 1e-12);
        rim = std::fmax(rim, std::hypot(p[0], p[1]));
    }
    EXPECT_NEAR(rim, 43.30127018922193, 1e-12);
}

TEST(Surfaces, QuarterModelEndsOnItsPlanesExactly)
{
    for (Cells cells : {Cells::Triangles, Cells::Quads})
    {
        SurfaceMesh const cup1 = cup({}, 1, Extent::Quarter, cells);
        EXPECT_EQ(std::count_if(cup1.nodes.begin(), cup1.nodes.end(), [](Point3 const & p) { return p[0] == 0.0; }),
                  15);
        EXPECT_EQ(std::count_if(cup1.nodes.begin(), cup1.nodes.end(), [](Point3 const & p) { return p[1] == 0.0; }),
                  15);
        SurfaceMesh const square = squareCup(squareCup40(), Extent::Quarter, cells);
        EXPECT_EQ(std::count_if(square.nodes.begin(), square.nodes.end(), [](Point3 const & p) { return p[0] == 0.0; }),
                  41);
        EXPECT_EQ(std::count_if(square.nodes.begin(), square.nodes.end(), [](Point3 const & p) { return p[1] == 0.0; }),
                  41);
    }
}

TEST(Surfaces, SquareCupHasTheCountsOfTheBenchmarkMesh)
{
    EXPECT_EQ(squareCup(squareCup40(), Extent::Quarter, Cells::Triangles).elements.size(), 2212U);
    EXPECT_EQ(squareCup(squareCup40(), Extent::Whole, Cells::Triangles).elements.size(), 8848U);
}

TEST(Surfaces, SquareCupGoesThroughTheMeasuredRim)
{
    for (auto const & [shape, side, diagonal] :
         {std::tuple{squareCup15(), 68.83, 102.826}, std::tuple{squareCup40(), 47.04, 90.706}})
    {
        SurfaceMesh const mesh = squareCup(shape, Extent::Quarter, Cells::Triangles);
        double onSide = 0.0;
        double onDiagonal = 0.0;
        for (Point3 const & p : mesh.nodes)
        {
            if (p[1] == 0.0)
                onSide = std::fmax(onSide, p[0]);
            if (std::fabs(p[0] - p[1]) < 1e-9)
                onDiagonal = std::fmax(onDiagonal, std::hypot(p[0], p[1]));
        }
        EXPECT_NEAR(onSide, side, 1e-12);
        EXPECT_NEAR(onDiagonal, diagonal, 1e-3);
    }
}

TEST(Surfaces, SquareCupSectionsHaveTheToolRadii)
{
    SurfaceMesh const mesh = squareCup(squareCup40(), Extent::Quarter, Cells::Triangles);
    int punch = 0;
    int die = 0;
    for (Point3 const & p : mesh.nodes)
    {
        if (p[1] != 0.0)
            continue;
        punch += std::fabs(std::hypot(p[0] - 27.0, p[2] - 8.39) - 8.39) < 1e-12 ? 1 : 0;
        die += std::fabs(std::hypot(p[0] - 42.0, p[2] - 34.61) - 5.39) < 1e-12 ? 1 : 0;
    }
    EXPECT_EQ(punch, 6);
    EXPECT_EQ(die, 6);
}

TEST(Surfaces, SquareCupIsItsOwnMirrorImageAboutTheDiagonal)
{
    SurfaceMesh const mesh = squareCup(squareCup40(), Extent::Quarter, Cells::Triangles);
    for (Point3 const & p : mesh.nodes)
    {
        double nearest = 1.0;
        for (Point3 const & q : mesh.nodes)
            nearest = std::fmin(nearest, std::hypot(p[0] - q[1], p[1] - q[0], p[2] - q[2]));
        EXPECT_LT(nearest, 1e-12);
    }
}

// Rows of section 0 degrees and 45 degrees along the part, as the benchmark's tables name them.
TEST(Surfaces, SquareCupStationsStandWhereTheTablesHaveThem)
{
    SurfaceMesh const mesh = squareCup(squareCup40(), Extent::Quarter, Cells::Triangles);
    auto const stations = [&](int ray)
    {
        std::vector<double> s{0.0};
        Point3 last = mesh.nodes[0];
        for (int row = 1; row <= 40; ++row)
        {
            Point3 const & p = mesh.nodes[static_cast<std::size_t>(1 + (row - 1) * 29 + ray)];
            s.push_back(s.back() + std::hypot(p[0] - last[0], p[1] - last[1], p[2] - last[2]));
            last = p;
        }
        return s;
    };
    std::vector<double> const side = stations(0);
    for (double wanted : {27.0, 32.1, 37.2, 42.4, 53.2, 63.9, 68.3, 71.5, 74.8, 79.9})
        EXPECT_TRUE(std::any_of(side.begin(), side.end(), [&](double s) { return std::fabs(s - wanted) <= 0.051; }))
            << wanted;
    std::vector<double> const diagonal = stations(14);
    for (double wanted : {28.0, 37.4, 42.5, 47.6, 52.8, 58.2, 63.5, 74.3, 81.9, 85.2, 98.1, 123.9})
        EXPECT_TRUE(
            std::any_of(diagonal.begin(), diagonal.end(), [&](double s) { return std::fabs(s - wanted) <= 0.051; }))
            << wanted;
}

TEST(Surfaces, ConeHasItsSlantAndChords)
{
    SurfaceMesh const mesh = cone(0.6, 20.0, 60.0, 1.0, 24, 8, Cells::Triangles);
    Point3 const & inner = mesh.nodes.front();
    Point3 const & outer = mesh.nodes[mesh.nodes.size() - 25];
    EXPECT_NEAR(std::hypot(outer[0] - inner[0], outer[1] - inner[1], outer[2] - inner[2]), 40.0, 1e-12);
    EXPECT_NEAR(std::hypot(inner[0], inner[1], inner[2]), 20.0, 1e-12);
}

// Unrolling keeps every side of every facet.
TEST(Surfaces, BracketAndItsBlankAreIsometric)
{
    for (Cells cells : {Cells::Triangles, Cells::Quads})
    {
        SurfaceMesh const part = bracket({}, cells);
        SurfaceMesh const blank = bracketBlank({}, cells);
        ASSERT_EQ(part.elements, blank.elements);
        for (auto const & e : part.elements)
            for (int i = 0; i < corners(e); ++i)
            {
                auto const a = static_cast<std::size_t>(e[static_cast<std::size_t>(i)]);
                auto const b = static_cast<std::size_t>(e[static_cast<std::size_t>((i + 1) % corners(e))]);
                auto const length = [&](SurfaceMesh const & m) {
                    return std::hypot(m.nodes[a][0] - m.nodes[b][0], m.nodes[a][1] - m.nodes[b][1],
                                      m.nodes[a][2] - m.nodes[b][2]);
                };
                EXPECT_NEAR(length(part), length(blank), 1e-12);
            }
        EXPECT_NEAR(area(part), area(blank), 1e-9);
    }
}

TEST(Surfaces, BracketHoleIsRound)
{
    SurfaceMesh const part = bracket({}, Cells::Triangles);
    int onHole = 0;
    for (Point3 const & p : part.nodes)
        onHole += std::fabs(std::hypot(p[0] - 30.0, p[1] - 25.0) - 10.0) < 1e-12 ? 1 : 0;
    EXPECT_EQ(onHole, 88);
}

TEST(Surfaces, HatSectionsBendByTheWallAngleTwice)
{
    Hat const hat;
    Profile const profile = halfProfile(hat, 4);
    EXPECT_NEAR(profile.heading(), 0.0, 1e-15); // the flange is flat again
    EXPECT_NEAR(profile.length(), 25.0 + 20.0 + 15.0 + 13.0 * hat.wallAngle, 1e-12);
}

} // namespace
