#include "BoundBox.h"

#include "VecInspection.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstring>
#include <limits>

namespace
{
using Six = std::array<double, 6>;

constexpr double kLargest = 1.7976931348623157e308;

Six bounds(BoundBox const & box)
{
    static_assert(sizeof(BoundBox) == sizeof(Six));
    Six result;
    std::memcpy(result.data(), &box, sizeof(box));
    return result;
}

struct OpenBox : BoundBox
{
    using BoundBox::conform;
    using BoundBox::expandLower;
    using BoundBox::expandUpper;
};

Six const kEmpty{kLargest, kLargest, kLargest, -kLargest, -kLargest, -kLargest};

TEST(BoundBox, EmptyHasItsBoundsAtTheLargestDoubles)
{
    EXPECT_EQ(bounds(BoundBox()), kEmpty);
    BoundBox box;
    box.encompass(vec(1, 2, 3));
    box.reset();
    EXPECT_EQ(bounds(box), kEmpty);
}

TEST(BoundBox, GrowsOverPointsAndBoxes)
{
    BoundBox box;
    box.encompass(vec(1, 5, 3));
    EXPECT_EQ(bounds(box), (Six{1, 5, 3, 1, 5, 3}));
    box.encompass(vec(2, 4, 3));
    EXPECT_EQ(bounds(box), (Six{1, 4, 3, 2, 5, 3}));
    BoundBox other;
    other.encompass(vec(0, 4.5, 9));
    box.encompass(other);
    EXPECT_EQ(bounds(box), (Six{0, 4, 3, 2, 5, 9}));
    EXPECT_EQ(box.lower(1), 4);
    EXPECT_EQ(box.upper(2), 9);
}

TEST(BoundBox, AnEmptyBoxAddsNothing)
{
    BoundBox box;
    box.encompass(vec(1, 2, 3));
    Six const before = bounds(box);
    box.encompass(BoundBox());
    EXPECT_EQ(bounds(box), before);
    BoundBox empty;
    empty.encompass(BoundBox());
    EXPECT_EQ(bounds(empty), kEmpty);
}

TEST(BoundBox, CornersAreCountedCopies)
{
    BoundBox box;
    box.encompass(vec(1, 2, 3));
    Vec corner = box.lower();
    EXPECT_EQ(countOf(corner), 1);
    corner[0] = -9;
    EXPECT_EQ(box.lower(0), 1);
    EXPECT_EQ(values(box.upper()), (std::array<double, 3>{1, 2, 3}));
}

TEST(BoundBox, EqualValuesLeaveItUnchanged)
{
    BoundBox box;
    box.encompass(vec(0.0, 0.0, 0.0));
    box.encompass(vec(-0.0, -0.0, -0.0));
    EXPECT_FALSE(std::signbit(box.lower(0))); // strict: a negative zero is not below zero
}

TEST(BoundBox, NaNNeverGrowsIt)
{
    BoundBox box;
    double const nan = std::numeric_limits<double>::quiet_NaN();
    box.encompass(vec(nan, 1, nan));
    EXPECT_EQ(bounds(box), (Six{kLargest, 1, kLargest, -kLargest, 1, -kLargest}));
}

TEST(BoundBox, OneCornerGrowsAloneAndConformExchangesPerAxis)
{
    OpenBox box;
    box.expandLower(vec(5, 1, 2));
    EXPECT_EQ(bounds(box), (Six{5, 1, 2, -kLargest, -kLargest, -kLargest}));
    box.expandUpper(vec(3, 4, 2));
    EXPECT_EQ(bounds(box), (Six{5, 1, 2, 3, 4, 2}));
    box.conform();
    EXPECT_EQ(bounds(box), (Six{3, 1, 2, 5, 4, 2}));
}
} // namespace
