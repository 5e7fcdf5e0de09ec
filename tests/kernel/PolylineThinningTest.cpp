// PolylineThinningTest.cpp: points of a polyline that lie near what is left of it are dropped.

#include "VOZGeoUtil.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>
#include <memory>
#include <numbers>
#include <random>
#include <vector>

namespace
{

using Point = std::array<double, 3>;
using Polyline = std::vector<Point>;
constexpr double kNan = std::numeric_limits<double>::quiet_NaN();

Polyline thinned(Polyline const & line, double tolerance)
{
    int count = -1;
    double * points = nullptr;
    VOZGeoUtil::DeletePointsPolyline3D(static_cast<int>(line.size()), line.empty() ? nullptr : line[0].data(),
                                       tolerance, count, points);
    std::unique_ptr<double[]> const owner(points);
    Polyline result;
    for (int i = 0; i < count; ++i)
        result.push_back({points[3 * i], points[3 * i + 1], points[3 * i + 2]});
    return result;
}

// An independent measure: the least distance along the segment, found by thirds.
double distanceToSegment(Point const & p, Point const & a, Point const & b)
{
    auto const distanceAt = [&](double t)
    {
        return std::hypot(p[0] - a[0] - t * (b[0] - a[0]), p[1] - a[1] - t * (b[1] - a[1]),
                          p[2] - a[2] - t * (b[2] - a[2]));
    };
    double low = 0.0;
    double high = 1.0;
    for (int turn = 0; turn < 90; ++turn)
    {
        double const third = (high - low) / 3.0;
        if (distanceAt(low + third) < distanceAt(high - third))
            high -= third;
        else
            low += third;
    }
    return distanceAt(0.5 * (low + high));
}

double distanceToPolyline(Point const & p, Polyline const & line)
{
    double least = std::numeric_limits<double>::infinity();
    for (std::size_t i = 1; i < line.size(); ++i)
        least = std::min(least, distanceToSegment(p, line[i - 1], line[i]));
    return least;
}

void expectThinning(Polyline const & line, double tolerance)
{
    Polyline const result = thinned(line, tolerance);
    ASSERT_GE(result.size(), 2U);
    EXPECT_EQ(result.front(), line.front());
    EXPECT_EQ(result.back(), line.back());
    auto place = line.begin(); // in the order of the line, none twice
    for (Point const & p : result)
    {
        place = std::find(place, line.end(), p);
        ASSERT_NE(place, line.end());
        ++place;
    }
    for (Point const & p : line)
        EXPECT_LE(distanceToPolyline(p, result), tolerance * (1.0 + 1e-9) + 1e-13);
}

TEST(PolylineThinning, DropsWhatLiesOnTheLineAndKeepsTheCorners)
{
    Polyline const line = {{0, 0, 0}, {1, 0, 0}, {2, 0, 0}, {2, 1, 0}, {2, 2, 0}, {2, 2, 3}};
    EXPECT_EQ(thinned(line, 0.0), (Polyline{{0, 0, 0}, {2, 0, 0}, {2, 2, 0}, {2, 2, 3}}));
}

TEST(PolylineThinning, APointExactlyAtTheToleranceIsDroppedAndOneBeyondStays)
{
    Polyline const line = {{0, 0, 0}, {2, 0.5, 0}, {4, 0, 0}};
    EXPECT_EQ(thinned(line, 0.5).size(), 2U);
    EXPECT_EQ(thinned(line, 0.499).size(), 3U);
}

TEST(PolylineThinning, MeasuresToTheSegmentAndNotToItsEndlessLine)
{
    Polyline const line = {{0, 0, 0}, {5, 0, 0}, {1, 0, 0}}; // runs out and comes back
    EXPECT_EQ(thinned(line, 0.1), line);
}

TEST(PolylineThinning, AClosedOutlineKeepsItsCornersThoughItsEndsMeet)
{
    Polyline line;
    for (int i = 0; i <= 40; ++i)
    {
        double const along = i % 10;
        Polyline const corners = {{along, 0, 0}, {10, along, 0}, {10 - along, 10, 0}, {0, 10 - along, 0}};
        line.push_back(corners[static_cast<std::size_t>(i / 10 % 4)]);
    }
    EXPECT_EQ(thinned(line, 0.01), (Polyline{{0, 0, 0}, {10, 0, 0}, {10, 10, 0}, {0, 10, 0}, {0, 0, 0}}));
}

TEST(PolylineThinning, ACircleKeepsAboutAsManyPointsAsItsSagittaAsksFor)
{
    Polyline line;
    constexpr int kPoints = 10000;
    for (int i = 0; i <= kPoints; ++i)
        line.push_back(
            {std::cos(2.0 * std::numbers::pi * i / kPoints), std::sin(2.0 * std::numbers::pi * i / kPoints), 0.0});
    line.back() = line.front();
    // A chord over the angle w has the sagitta 1 - cos(w / 2): 1e-3 gives 70 chords; halving may take twice as many.
    std::size_t const left = thinned(line, 1e-3).size();
    EXPECT_GE(left, 70U);
    EXPECT_LE(left, 141U);
}

TEST(PolylineThinning, EveryDroppedPointOfRandomLinesLiesWithinTheTolerance)
{
    std::mt19937 random(7);
    std::normal_distribution<double> normal;
    for (int turn = 0; turn < 25; ++turn)
    {
        Polyline line(1, {0, 0, 0});
        for (int i = 0; i < 3 + turn; ++i)
        {
            Point next = line.back();
            next[0] += 1.0 + 0.3 * normal(random);
            next[1] += 0.3 * normal(random);
            next[2] += 0.1 * normal(random);
            line.push_back(next);
        }
        for (double tolerance : {0.0, 0.01, 0.1, 0.5, 2.0})
            expectThinning(line, tolerance);
    }
}

TEST(PolylineThinning, EveryDroppedPointOfRandomClosedTanglesLiesWithinTheTolerance)
{
    std::mt19937 random(8);
    std::uniform_int_distribution<int> grid(0, 4); // many points in one place, many on one line
    for (int turn = 0; turn < 25; ++turn)
    {
        Polyline line;
        for (int i = 0; i < 4 + turn; ++i)
            line.push_back({static_cast<double>(grid(random)), static_cast<double>(grid(random)), 0.0});
        line.push_back(line.front());
        for (double tolerance : {0.0, 0.5, 1.0})
            expectThinning(line, tolerance);
    }
}

TEST(PolylineThinning, GivesNothingForNoPointsAndAllOfOneOrTwo)
{
    EXPECT_TRUE(thinned({}, 1.0).empty());
    EXPECT_EQ(thinned({{1, 2, 3}}, 1.0), (Polyline{{1, 2, 3}}));
    EXPECT_EQ(thinned({{1, 2, 3}, {1, 2, 3}}, 1.0), (Polyline{{1, 2, 3}, {1, 2, 3}}));
    int count = 5;
    double some = 0.0;
    double * points = &some;
    VOZGeoUtil::DeletePointsPolyline3D(-1, &some, 1.0, count, points);
    EXPECT_EQ(count, 0);
    EXPECT_EQ(points, nullptr);
}

TEST(PolylineThinning, DropsNothingWithoutAToleranceAndKeepsPointsThatAreNoNumbers)
{
    Polyline const line = {{0, 0, 0}, {1, 0, 0}, {2, 0, 0}};
    EXPECT_EQ(thinned(line, -1.0), line);
    EXPECT_EQ(thinned(line, kNan), line);
    Polyline const broken = {{0, 0, 0}, {1, kNan, 0}, {2, 0, 0}, {3, 0, 0}};
    EXPECT_EQ(thinned(broken, 100.0).size(), 4U); // each piece then ends in a point that is no number
    EXPECT_EQ(thinned(line, std::numeric_limits<double>::infinity()).size(), 2U);
}

// A recursion would go down a level per point.
TEST(PolylineThinning, TakesALineWhosePiecesShrinkByOnePointAtATime)
{
    Polyline line;
    for (int i = 0; i < 4000; ++i)
        line.push_back({0.01 * i, i % 2 == 0 ? 4000.0 - i : 0.0, 0.0}); // the first peak is always the highest
    EXPECT_EQ(thinned(line, 0.0).size(), line.size());
}

} // namespace
