// FlatGeometryTest.cpp

#include "FlatGeometry.h"

#include <gtest/gtest.h>

#include <cmath>
#include <random>

namespace voz::workbench
{
namespace
{

std::vector<Point2> const kTriangle{{0.0, 0.0}, {4.0, 0.0}, {0.0, 3.0}};

TEST(FlatGeometry, AreaIsPositiveCounterClockwiseAndNegativeClockwise)
{
    EXPECT_DOUBLE_EQ(SignedArea(kTriangle), 6.0);
    EXPECT_DOUBLE_EQ(SignedArea({kTriangle.rbegin(), kTriangle.rend()}), -6.0);
}

TEST(FlatGeometry, ALoopFarFromTheOriginKeepsItsDigits)
{
    std::vector<Point2> far;
    for (Point2 const & p : kTriangle)
        far.push_back({p[0] + 1e6, p[1] - 1e6});
    EXPECT_DOUBLE_EQ(SignedArea(far), 6.0);
}

TEST(FlatGeometry, PerimeterClosesTheLoop)
{
    EXPECT_DOUBLE_EQ(Perimeter(kTriangle), 12.0);
}

TEST(FlatGeometry, NothingHasNoAreaNoLengthAndNoExtent)
{
    EXPECT_EQ(SignedArea({}), 0.0);
    EXPECT_EQ(Perimeter({}), 0.0);
    EXPECT_EQ(Extent({}, 0), std::make_pair(0.0, 0.0));
    EXPECT_EQ(SmallestRectangle({}), (std::array<double, 3>{}));
}

TEST(FlatGeometry, TheHullLeavesInnerAndCollinearPointsOut)
{
    std::vector<Point2> const hull = ConvexHull({{0, 0}, {1, 0}, {2, 0}, {2, 2}, {0, 2}, {1, 1}, {0, 1}});
    EXPECT_EQ(hull, (std::vector<Point2>{{0, 0}, {2, 0}, {2, 2}, {0, 2}}));
}

TEST(FlatGeometry, ATurnedRectangleIsFoundWithItsAngle)
{
    double const angle = 25.0 * M_PI / 180.0;
    std::vector<Point2> points;
    for (Point2 const & p : {Point2{0, 0}, Point2{10, 0}, Point2{10, 4}, Point2{0, 4}, Point2{5, 2}})
        points.push_back(
            {p[0] * std::cos(angle) - p[1] * std::sin(angle), p[0] * std::sin(angle) + p[1] * std::cos(angle)});
    std::array<double, 3> const rectangle = SmallestRectangle(points);
    EXPECT_NEAR(rectangle[0], 10.0, 1e-12);
    EXPECT_NEAR(rectangle[1], 4.0, 1e-12);
    EXPECT_NEAR(rectangle[2], 25.0, 1e-10);
}

// The calipers against every hull side tried with every point.
TEST(FlatGeometry, TheSmallestRectangleAgreesWithBruteForceOnRandomPoints)
{
    std::mt19937 random(7);
    std::normal_distribution<double> normal;
    for (int trial = 0; trial < 200; ++trial)
    {
        std::vector<Point2> points;
        for (int i = 0; i < 3 + trial % 40; ++i)
            points.push_back({3.0 * normal(random), normal(random)});
        std::vector<Point2> const hull = ConvexHull(points);
        double least = INFINITY;
        for (std::size_t i = 0; i < hull.size(); ++i)
        {
            Point2 const & a = hull[i];
            Point2 const & b = hull[(i + 1) % hull.size()];
            double const length = std::hypot(b[0] - a[0], b[1] - a[1]);
            double low = INFINITY, high = -INFINITY, top = 0.0;
            for (Point2 const & p : points)
            {
                double const along = ((p[0] - a[0]) * (b[0] - a[0]) + (p[1] - a[1]) * (b[1] - a[1])) / length;
                low = std::min(low, along);
                high = std::max(high, along);
                top = std::max(top, ((b[0] - a[0]) * (p[1] - a[1]) - (b[1] - a[1]) * (p[0] - a[0])) / length);
            }
            least = std::min(least, (high - low) * top);
        }
        std::array<double, 3> const rectangle = SmallestRectangle(points);
        EXPECT_NEAR(rectangle[0] * rectangle[1], least, 1e-9 * least) << trial;
        EXPECT_GE(rectangle[0], rectangle[1]);
    }
}

} // namespace
} // namespace voz::workbench
