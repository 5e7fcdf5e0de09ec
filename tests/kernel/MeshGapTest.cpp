// MeshGapTest.cpp: the smallest and the largest gap between two meshes along a direction.

#include "MeshGapFixture.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <random>

namespace
{

using namespace meshgap;
constexpr double kNan = std::numeric_limits<double>::quiet_NaN();
constexpr double kInf = std::numeric_limits<double>::infinity();

void expectGap(Gap const & gap, double least, double greatest, double tolerance = 1e-12)
{
    EXPECT_EQ(gap.result, 0);
    EXPECT_NEAR(gap.least, least, tolerance);
    EXPECT_NEAR(gap.greatest, greatest, tolerance);
}

void expectFailure(Gap const & gap)
{
    EXPECT_EQ(gap.result, E_FAIL);
    EXPECT_EQ(gap.least, 0.0);
    EXPECT_EQ(gap.greatest, 0.0);
}

TEST(MeshGap, OfTwoParallelPlanesIsTheirDistance)
{
    for (bool triangles : {false, true})
        expectGap(gapBetween(plane(0, 10, 0, 10, 1.0, 4, triangles), plane(0, 10, 0, 10, 8.0, 7, triangles)), 7, 7);
}

TEST(MeshGap, IsNegativeWhereTheSecondMeshLiesBehindTheFirst)
{
    expectGap(gapBetween(plane(0, 10, 0, 10, 8.0), plane(0, 10, 0, 10, 1.0)), -7, -7);
    expectGap(gapBetween(plane(0, 10, 0, 10, 1.0), plane(0, 10, 0, 10, 8.0), {0, 0, -1}), -7, -7);
}

TEST(MeshGap, DoesNotDependOnTheLengthOfTheDirection)
{
    for (double length : {1e-200, 1e-3, 5.0, 1e99})
        expectGap(gapBetween(plane(0, 10, 0, 10, 1.0), plane(0, 10, 0, 10, 8.0), {0, 0, length}), 7, 7);
}

TEST(MeshGap, OfATiltedPlaneRunsFromOneEdgeToTheOther)
{
    Surface const tilted = patch(0, 10, 0, 10, 5, 3, [](double x, double) { return 4.0 + 0.5 * x; });
    expectGap(gapBetween(plane(0, 10, 0, 10, 1.0), tilted), 3.0, 8.0);
}

// Planes square to (1, 0, 1), seen along z: sqrt(2) times as far as along their normal.
TEST(MeshGap, IsMeasuredAlongTheDirectionAndNotAlongTheNormal)
{
    auto const slope = [](double offset)
    { return patch(0, 10, 0, 10, 4, 4, [offset](double x, double) { return offset - x; }); };
    expectGap(gapBetween(slope(0.0), slope(3.0)), 3.0, 3.0);
    expectGap(gapBetween(slope(0.0), slope(3.0), {1, 0, 1}), 3.0 / std::sqrt(2.0), 3.0 / std::sqrt(2.0));
}

// A ball of radius 10 in facets, its lowest node 2 above the plane.
TEST(MeshGap, OfABallOverAPlaneIsLeastBelowItsPoleAndGreatestAtItsEdge)
{
    Surface const ball =
        patch(-6, 6, -6, 6, 24, 24, [](double x, double y) { return 12.0 - std::sqrt(100.0 - x * x - y * y); });
    expectGap(gapBetween(plane(-20, 20, -20, 20, 0.0, 9), ball), 2.0, 12.0 - std::sqrt(28.0));
    expectGap(gapBetween(ball, plane(-20, 20, -20, 20, 30.0, 9)), 18.0 + std::sqrt(28.0), 28.0);
}

TEST(MeshGap, PointsWithoutAPartnerDoNotCount)
{
    // Beyond x = 5 the lower mesh has nothing above it, there it would rise to the gap 1.
    Surface const lower = patch(0, 10, 0, 10, 10, 10, [](double x, double) { return x > 5.5 ? 9.0 : 0.0; });
    expectGap(gapBetween(lower, plane(-5, 5, 0, 10, 10.0, 3)), 10.0, 10.0);
    expectGap(gapBetween(plane(0, 10, 0, 10, 0.0), plane(4.3, 30, 7.7, 30, 2.5)), 2.5, 2.5);
}

// Overlapping in x from 6 to 10 and in y from 3 to 10, where every node of the one is a node of the other: the gap is
// the formulas' difference on a lattice, 6.96 to 10.19. Beyond the overlap it would run from -2.5 to 13.7.
TEST(MeshGap, OfPartlyOverlappingSurfacesIsThatOfTheOverlapAlone)
{
    auto const low = [](double x, double y) { return 0.05 * x * x - 0.1 * y; };
    auto const high = [](double x, double y) { return 12.0 + std::sin(0.7 * x) - 0.04 * (y - 8.0) * (y - 8.0); };
    double least = kInf;
    double greatest = -kInf;
    for (int i = 24; i <= 40; ++i)
        for (int k = 12; k <= 40; ++k)
        {
            double const gap = high(0.25 * i, 0.25 * k) - low(0.25 * i, 0.25 * k);
            least = std::min(least, gap);
            greatest = std::max(greatest, gap);
        }
    for (bool triangles : {false, true})
    {
        Surface const punch = patch(0, 10, 0, 10, 40, 40, low, triangles);
        Surface const die = patch(6, 16, 3, 13, 40, 40, high, triangles);
        expectGap(gapBetween(punch, die), least, greatest);
        auto const turned = [](Point const & p) { return Point{p[1], p[2], p[0]}; };
        expectGap(gapBetween(punch.moved(turned), die.moved(turned), {0, 3, 0}), least, greatest);
    }
}

TEST(MeshGap, OfASmallMeshUnderAHugeTriangleIsFound)
{
    Surface huge;
    huge.nodes = {{-1000, -1000, 5}, {1000, -1000, 5}, {0, 2000, 5}};
    huge.elements = {{0, 1, 2, -1}};
    expectGap(gapBetween(plane(1, 2, 1, 2, 1.0), huge), 4.0, 4.0);
    expectGap(gapBetween(huge, plane(1, 2, 1, 2, 7.0)), 2.0, 2.0);
}

TEST(MeshGap, NodesThatLieOnEdgesAndNodesOfTheOtherMeshFindIt)
{
    // Every node of the one lies on an edge or a node of the other.
    expectGap(gapBetween(plane(0, 8, 0, 8, 0.0, 8), plane(0, 8, 0, 8, 3.0, 4)), 3.0, 3.0);
    expectGap(gapBetween(plane(2, 6, 2, 6, 0.0, 4), plane(0, 8, 0, 8, 3.0, 8, true)), 3.0, 3.0);
}

TEST(MeshGap, OutlinesThatOnlyTouchMakeNoPair)
{
    expectFailure(gapBetween(plane(0, 5, 0, 10, 0.0), plane(5, 10, 0, 10, 3.0)));
    expectFailure(gapBetween(plane(0, 5, 0, 5, 0.0), plane(5, 10, 5, 10, 3.0)));
}

// A step: low plateau, wall along the direction, high plateau.
//        ______ high
//       |
//  _____| wallX
//   low
Surface step(double low, double high, double wallX)
{
    Surface surface = plane(-10, wallX, 0, 10, low, 5);
    surface.append(plane(wallX, 10, 0, 10, high, 5));
    Surface wall = patch(0, 1, 0, 10, 6, 5, [](double, double) { return 0.0; });
    surface.append(wall.moved([&](Point const & p) { return Point{wallX, p[1], low + (high - low) * p[0]}; }));
    return surface;
}

TEST(MeshGap, ToolsWithWallsAlongTheDirectionAndNoClearanceHaveTheirStroke)
{
    for (double stroke : {0.5, 4.0, 25.0}) // less than the wall's height, equal to it, more
        expectGap(gapBetween(step(0, 4, 0), step(stroke, 4 + stroke, 0)), stroke, stroke);
}

TEST(MeshGap, ToolsWithWallsAndAClearanceSeeTheOpenDieBesideTheFlangeOnly)
{
    // Punch wall at 0, die wall at -1: between them the punch's flange faces the die's floor.
    expectGap(gapBetween(step(0, 4, 0), step(6, 10, -1)), 6.0, 10.0);
}

TEST(MeshGap, ToolsThatWouldCutIntoEachOtherShowIt)
{
    // Die wall at 1: the punch's edge meets the die's shoulder after 2.
    expectGap(gapBetween(step(0, 4, 0), step(6, 10, 1)), 2.0, 6.0);
}

// A body: its face, and its back 5 behind it.
TEST(MeshGap, ABackOfATooLCountsForNothing)
{
    Surface punch = patch(0, 10, 0, 10, 6, 6, [](double x, double) { return 0.1 * x; });
    Surface die = patch(0, 10, 0, 10, 4, 4, [](double x, double) { return 7.0 + 0.1 * x; });
    Surface const back = plane(0, 10, 0, 10, -5.0, 3);
    Surface const lid = plane(0, 10, 0, 10, 20.0, 3);
    punch.append(back);
    die.append(lid);
    expectGap(gapBetween(punch, die), 7.0, 7.0);
}

TEST(MeshGap, QuadrilateralsAreTwoTrianglesAlongTheirShorterDiagonal)
{
    Surface warped;
    warped.nodes = {{0, 0, 0}, {4, 0, 0}, {4, 4, 0}, {0, 4, 2}};
    warped.elements = {{0, 1, 2, 3}};
    // Diagonals: first to third sqrt(32), second to fourth sqrt(36). So the middle lies on the first one, at 0.
    Surface probe;
    probe.nodes = {{2, 2, -3}, {2.5, 1, -3}, {3, 1.5, -3}};
    probe.elements = {{0, 1, 2, -1}};
    expectGap(gapBetween(probe, warped), 3.0, 3.0);
    for (std::array<int, 4> & element : warped.elements) // however the numbering begins
        element = {1, 2, 3, 0};
    expectGap(gapBetween(probe, warped), 3.0, 3.0);
}

TEST(MeshGap, EqualsTheOneByTryingEveryTriangleOnRandomPairs)
{
    std::mt19937 random(12);
    std::normal_distribution<double> normal;
    std::uniform_real_distribution<double> uniform(-1.0, 1.0);
    int nPairs = 0;
    for (int turn = 0; turn < 120; ++turn)
    {
        RandomTurn const rotate(random);
        auto const wavy = [&](double level, bool triangles, double shift)
        {
            Surface s = patch(
                shift, shift + 10, 0, 10, 3 + turn % 7, 2 + turn % 5,
                [&](double, double) { return level + 0.3 * normal(random); }, triangles);
            for (Point & node : s.nodes)
                for (std::size_t i = 0; i < 2; ++i)
                    node[i] += 0.2 * uniform(random);
            return s;
        };
        Surface first = wavy(0.0, turn % 2 == 0, 0.0);
        Surface second = wavy(2.0, turn % 3 == 0, 12.0 * uniform(random));
        for (Surface * surface : {&first, &second}) // loose triangles: folds, backs, overlaps
            for (int i = 0; i < turn % 8; ++i)
            {
                int const base = static_cast<int>(surface->nodes.size());
                for (int corner = 0; corner < 3; ++corner)
                    surface->nodes.push_back({10.0 * uniform(random), 10.0 * uniform(random), 5.0 * normal(random)});
                surface->elements.push_back({base, base + 1, base + 2, -1});
            }
        Point const offset = {100.0 * uniform(random), 100.0 * uniform(random), 0.0};
        auto const place = [&](Point const & p) { return rotate({p[0] + offset[0], p[1] + offset[1], p[2]}); };
        Point const direction = rotate({0, 0, 3.0});
        Surface const one = first.moved(place);
        Surface const two = second.moved(place);
        Gap const expected = bruteForce(one, two, direction);
        Gap const gap = gapBetween(one, two, direction, turn % 4 == 0 ? 0.3 : 50.0);
        EXPECT_EQ(gap.result, expected.result) << turn;
        EXPECT_NEAR(gap.least, expected.least, 1e-9) << turn;
        EXPECT_NEAR(gap.greatest, expected.greatest, 1e-9) << turn;
        nPairs += gap.result == 0;
    }
    EXPECT_GT(nPairs, 90);
}

// Fans, strips and clusters: what a grid of even cells is slow or wrong on.
TEST(MeshGap, EqualsTheOneByTryingEveryTriangleOnUnevenMeshes)
{
    std::mt19937 random(13);
    std::uniform_real_distribution<double> uniform(-1.0, 1.0);
    Surface fan;
    fan.nodes.push_back({0, 0, 1});
    for (int i = 0; i < 400; ++i)
        fan.nodes.push_back({10 * std::cos(0.0157 * i), 10 * std::sin(0.0157 * i), uniform(random)});
    for (int i = 1; i < 400; ++i)
        fan.elements.push_back({0, i, i + 1, -1});
    Surface strips = patch(-9, 9, -9, 9, 1, 300, [&](double x, double y) { return 5.0 + 0.1 * x + std::sin(y); })
                         .moved(
                             [](Point const & p) {
                                 return Point{p[0] - p[1], p[0] + p[1], p[2]};
                             });
    Surface cluster = plane(-10, 10, -10, 10, 8.0, 2);
    cluster.append(patch(3, 3.001, 2, 2.001, 15, 15, [&](double, double) { return 7.0 + 0.1 * uniform(random); }));
    for (Surface const * one : {&fan, &strips, &cluster})
        for (Surface const * two : {&fan, &strips, &cluster})
        {
            Gap const expected = bruteForce(*one, *two, {0, 0, 1});
            expectGap(gapBetween(*one, *two), expected.least, expected.greatest, 1e-9);
        }
}

TEST(MeshGap, TheCellSizeChangesNothing)
{
    Surface const low = patch(0, 10, 0, 10, 20, 20, [](double x, double y) { return std::sin(x) * std::cos(y); });
    Surface const high = patch(
        2, 12, 1, 11, 13, 17, [](double x, double y) { return 5 + std::cos(x + y); }, true);
    Gap const gap = gapBetween(low, high);
    for (double cell : {1e-300, 1e-6, 0.01, 1.0, 1e300, 0.0, -1.0, kNan, kInf})
        expectGap(gapBetween(low, high, {0, 0, 1}, cell), gap.least, gap.greatest, 0.0);
}

TEST(MeshGap, TheUnitOfLengthChangesTheGapByItsFactorAlone)
{
    Surface const low = patch(0, 10, 0, 10, 20, 20, [](double x, double y) { return std::sin(x) * std::cos(y); });
    Surface const high = patch(2, 12, 1, 11, 13, 17, [](double x, double y) { return 5 + std::cos(x + y); });
    Gap const gap = gapBetween(low, high);
    for (double factor : {1e-90, 0.001, 1e6, 1e90})
    {
        auto const scaled = [factor](Point const & p) { return Point{factor * p[0], factor * p[1], factor * p[2]}; };
        expectGap(gapBetween(low.moved(scaled), high.moved(scaled)), factor * gap.least, factor * gap.greatest,
                  1e-12 * factor);
    }
}

TEST(MeshGap, FailsWhereNothingLiesBeforeTheOther)
{
    expectFailure(gapBetween(plane(0, 1, 0, 1, 0.0), plane(5, 6, 5, 6, 1.0)));
    expectFailure(gapBetween(plane(0, 1, 0, 1, 0.0), plane(0, 1, 0, 1, 1.0), {1, 0, 0})); // both seen on their edges
}

TEST(MeshGap, FailsForWhatIsNoMeshAndNoDirection)
{
    Surface const good = plane(0, 1, 0, 1, 0.0, 2);
    Surface const none;
    expectFailure(gapBetween(good, none));
    expectFailure(gapBetween(none, good));
    for (Point const & direction : {Point{0, 0, 0}, Point{0, kNan, 1}, Point{kInf, 0, 1}})
        expectFailure(gapBetween(good, good, direction));
    for (double bad : {kNan, kInf, -kInf, 1e101})
        for (std::size_t axis = 0; axis < 3; ++axis)
        {
            Surface broken = good;
            broken.nodes[4][axis] = bad;
            expectFailure(gapBetween(broken, good));
            expectFailure(gapBetween(good, broken));
        }
    for (int node : {-1, -2, 9, 1000000, std::numeric_limits<int>::min()})
        for (std::size_t corner = 0; corner < 4; ++corner)
        {
            Surface broken = good;
            broken.elements[1][corner] = node;
            if (corner == 3 && node == -1) // a triangle
                continue;
            expectFailure(gapBetween(broken, good));
            expectFailure(gapBetween(good, broken));
        }
}

TEST(MeshGap, FailsForAnotherVersionAndForNoDirectionAtAll)
{
    auto const low = kernelMesh(plane(0, 1, 0, 1, 0.0));
    auto const high = kernelMesh(plane(0, 1, 0, 1, 1.0));
    Point const up = {0, 0, 1};
    double least = 9.0;
    double greatest = 9.0;
    tagVOZFILEINFO info;
    EXPECT_EQ(VOZAPIEvalDistanceBetweenMeshes_Average(*low, *high, up.data(), 5.0, info, least, greatest), E_FAIL);
    EXPECT_EQ(least, 0.0);
    EXPECT_EQ(greatest, 0.0);
    info.m_nVersion = 6;
    EXPECT_EQ(VOZAPIEvalDistanceBetweenMeshes_Average(*low, *high, up.data(), 5.0, info, least, greatest), E_FAIL);
    info.m_nVersion = 5;
    EXPECT_EQ(VOZAPIEvalDistanceBetweenMeshes_Average(*low, *high, nullptr, 5.0, info, least, greatest), E_FAIL);
    EXPECT_EQ(VOZAPIEvalDistanceBetweenMeshes_Average(*low, *high, up.data(), 5.0, info, least, greatest), 0);
    EXPECT_EQ(least, 1.0);
}

TEST(MeshGap, IgnoresElementsWithoutAreaAndNodesOfNoElement)
{
    Surface low = plane(0, 10, 0, 10, 0.0);
    low.nodes.push_back({5, 5, 2.9}); // of no element
    low.nodes.push_back({5, 5, 2.5});
    int const spike = static_cast<int>(low.nodes.size()) - 1;
    low.elements.push_back({spike, spike, spike, -1});
    low.elements.push_back({0, spike, 0, -1});
    low.elements.push_back({0, 1, 1, 0});
    expectGap(gapBetween(low, plane(0, 10, 0, 10, 3.0)), 3.0, 3.0);
}

} // namespace
