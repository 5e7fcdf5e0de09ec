#include "CATMathSetOfPointsND.h"

#include "HostFixture.h"

#include <gtest/gtest.h>

#include <array>
#include <limits>
#include <vector>

namespace
{
using Point = std::array<double, 3>;

CATMathSetOfPointsND setOf(std::vector<Point> const & points)
{
    CATMathSetOfPointsND set(3);
    for (Point const & p : points)
        set.AddPoint(p.data());
    return set;
}

std::vector<Point> pointsOf(CATMathSetOfPointsND const & set)
{
    std::vector<Point> points(static_cast<std::size_t>(set.GetNumberOfPoints()));
    for (std::size_t i = 0; i < points.size(); ++i)
        set.GetPoint(static_cast<int>(i), points[i].data());
    return points;
}

std::vector<Point> const kCorner = {{0, 0, 0}, {3, 0, 0}, {3, 4, 0}, {3, 4, 12}};

TEST(CATMathSetOfPointsND, KeepsPointsInTheirOrder)
{
    EXPECT_EQ(pointsOf(setOf(kCorner)), kCorner);
    EXPECT_EQ(setOf({}).GetNumberOfPoints(), 0);
}

TEST(CATMathSetOfPointsND, LengthIsThatOfTheOpenPolyline)
{
    EXPECT_EQ(setOf(kCorner).Length(), 3.0 + 4.0 + 12.0);
    EXPECT_EQ(setOf({{1, 2, 3}}).Length(), 0.0);
    EXPECT_EQ(setOf({}).Length(), 0.0);
}

TEST(CATMathSetOfPointsND, AppendsASetAndItselfToo)
{
    CATMathSetOfPointsND set = setOf({{1, 0, 0}, {2, 0, 0}});
    set.AddSet(setOf({{3, 0, 0}}));
    EXPECT_EQ(pointsOf(set), (std::vector<Point>{{1, 0, 0}, {2, 0, 0}, {3, 0, 0}}));
    set.AddSet(set);
    EXPECT_EQ(set.GetNumberOfPoints(), 6);
}

TEST(CATMathSetOfPointsND, CopiesAreIndependent)
{
    CATMathSetOfPointsND const set = setOf(kCorner);
    CATMathSetOfPointsND copy = set;
    copy.AutoInvert();
    EXPECT_EQ(pointsOf(set), kCorner);
}

TEST(CATMathSetOfPointsND, AutoInvertPutsTheLastPointFirst)
{
    for (std::size_t n = 0; n <= kCorner.size(); ++n)
    {
        std::vector<Point> const points(kCorner.begin(), kCorner.begin() + static_cast<std::ptrdiff_t>(n));
        CATMathSetOfPointsND set = setOf(points);
        set.AutoInvert();
        EXPECT_EQ(pointsOf(set), std::vector<Point>(points.rbegin(), points.rend()));
    }
}

// Against the last point kept, not the last point: slow steps do not vanish altogether.
TEST(CATMathSetOfPointsND, RemovesPointsNearTheOneKeptBefore)
{
    CATMathSetOfPointsND set = setOf({{0, 0, 0}, {0.4, 0, 0}, {1, 0, 0}, {1.5, 0, 0}, {2.1, 0, 0}, {0, 0, 0}});
    set.RemoveMultiplePoints(1.0, 0);
    EXPECT_EQ(pointsOf(set), (std::vector<Point>{{0, 0, 0}, {1.5, 0, 0}, {0, 0, 0}})) << "the bound is within";
    set.RemoveMultiplePoints(1.0, 1);
    EXPECT_EQ(pointsOf(set), (std::vector<Point>{{0, 0, 0}, {1.5, 0, 0}})) << "closed: the last lies on the first";
    set.RemoveMultiplePoints(-1.0, 0);
    EXPECT_EQ(set.GetNumberOfPoints(), 2);
    CATMathSetOfPointsND one = setOf({{1, 1, 1}, {1, 1, 1}, {1, 1, 1}});
    one.RemoveMultiplePoints(0.0, 1);
    EXPECT_EQ(one.GetNumberOfPoints(), 1);
}

TEST(CATMathSetOfPointsND, TheNearestIsTheFirstOfThoseWithinTheTolerance)
{
    CATMathSetOfPointsND const set = setOf({{9, 0, 0}, {2.0005, 0, 0}, {2, 0, 0}, {-2, 0, 0}});
    double const origin[3] = {0, 0, 0};
    int index = 7;
    EXPECT_EQ(set.DistanceMin(origin, index, CATGetDefaultTolerance()), 2.0);
    EXPECT_EQ(index, 1);
    EXPECT_EQ(set.DistanceMin(origin, index, 0.0), 2.0);
    EXPECT_EQ(index, 2);
    EXPECT_EQ(setOf({}).DistanceMin(origin, index, 0.0), -1.0);
    EXPECT_EQ(index, -1);
    double const nan[3] = {std::numeric_limits<double>::quiet_NaN(), 0, 0};
    set.DistanceMin(nan, index, 0.0);
    EXPECT_EQ(index, 0) << "a place in the set all the same";
}

TEST(CATMathSetOfPointsND, TheDefaultToleranceIsAThousandth)
{
    EXPECT_EQ(CATGetDefaultTolerance(), 0.001);
}

class CATMathSetOfPointsNDContract : public HostFixture
{
};

TEST_F(CATMathSetOfPointsNDContract, PlacesOutsideAreReported)
{
    CATMathSetOfPointsND set = setOf(kCorner);
    Point p = {7, 7, 7};
    set.GetPoint(4, p.data());
    EXPECT_EQ(p, (Point{0, 0, 0}));
    set.GetPoint(-1, p.data());
    set.GetPoint(0, nullptr);
    set.AddPoint(nullptr);
    int index = 0;
    set.DistanceMin(nullptr, index, 0.0);
    set.AddSet(CATMathSetOfPointsND(2));
    EXPECT_EQ(host.reports.size(), 6u);
    EXPECT_EQ(host.reports[0].text, "AssertionFailed:i_index >= 0 && i_index < GetNumberOfPoints()");
    EXPECT_EQ(pointsOf(set), kCorner);
}
} // namespace
