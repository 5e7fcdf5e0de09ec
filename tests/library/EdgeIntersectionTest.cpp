// EdgeIntersectionTest.cpp.

#include "EdgeIntersection.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <random>

namespace
{
struct P
{
    float xy[2];
};

bool crosses(P const & a, P const & b, P const & c, P const & d)
{
    return EdgeIntersection().isIntersecting(a.xy, b.xy, c.xy, d.xy);
}

//   d   b
//     X
//   a   c
TEST(EdgeIntersection, DiagonalsCrossInEitherDirectionAndOrder)
{
    P const a{0, 0};
    P const b{1, 1};
    P const c{1, 0};
    P const d{0, 1};
    EXPECT_TRUE(crosses(a, b, c, d));
    EXPECT_TRUE(crosses(b, a, c, d));
    EXPECT_TRUE(crosses(a, b, d, c));
    EXPECT_TRUE(crosses(c, d, a, b));
}

TEST(EdgeIntersection, SegmentsThatShareAnEndDoNotCross)
{
    EXPECT_FALSE(crosses({0, 0}, {1, 1}, {0, 0}, {1, 0}));
    EXPECT_FALSE(crosses({0, 0}, {1, 1}, {1, 0}, {1, 1}));
    EXPECT_FALSE(crosses({0.1F, 0.7F}, {1.3F, 0.2F}, {1.3F, 0.2F}, {2.7F, 4.1F}));
}

TEST(EdgeIntersection, ASegmentThatEndsOnTheOtherDoesNotCrossIt)
{
    EXPECT_FALSE(crosses({0, 0}, {2, 0}, {1, 0}, {1, 1}));
    EXPECT_FALSE(crosses({0, 0}, {2, 0}, {1, 1}, {1, 0}));
}

TEST(EdgeIntersection, LinesThatMeetBeyondASegmentDoNotCross)
{
    EXPECT_FALSE(crosses({0, 0}, {1, 0}, {2, -1}, {2, 1}));
    EXPECT_FALSE(crosses({0, 0}, {1, 0}, {-1, -1}, {-1, 1}));
    EXPECT_FALSE(crosses({0, 0}, {2, 0}, {1, 1}, {1, 2}));
    EXPECT_FALSE(crosses({0, 0}, {2, 0}, {1, -2}, {1, -1}));
}

TEST(EdgeIntersection, ParallelAndCollinearSegmentsDoNotCross)
{
    EXPECT_FALSE(crosses({0, 0}, {1, 0}, {0, 1}, {1, 1}));
    EXPECT_FALSE(crosses({0, 0}, {2, 0}, {1, 0}, {3, 0}));
    EXPECT_FALSE(crosses({0, 0}, {2, 0}, {0, 0}, {2, 0}));
}

TEST(EdgeIntersection, ASegmentWithoutLengthDoesNotCross)
{
    EXPECT_FALSE(crosses({0.5F, 0}, {0.5F, 0}, {0, 0}, {1, 0}));
    EXPECT_FALSE(crosses({0, 0}, {0, 0}, {0, 0}, {0, 0}));
}

// Right-angled crosses with arms of length h: den is h squared, in single precision.
TEST(EdgeIntersection, ADenominatorBelowAMillionthIsNoCrossing)
{
    auto const cross = [](float h) { return crosses({-h / 2, 0}, {h / 2, 0}, {0, -h / 2}, {0, h / 2}); };
    EXPECT_TRUE(cross(1.001e-3F));
    EXPECT_FALSE(cross(0.999e-3F));
}

// 1e-06 as a float is 9.99999997e-07, below the double: such a den is parallel.
TEST(EdgeIntersection, TheDenominatorIsComparedInDouble)
{
    float const at = 1e-06F;
    float const above = std::nextafter(at, 1.0F);
    auto const cross = [](float den) { return crosses({-0.5F, 0}, {0.5F, 0}, {0, -den / 2}, {0, den / 2}); };
    EXPECT_FALSE(cross(at));
    EXPECT_TRUE(cross(above));
}

// c-d stands upright on x = t; a-b is the unit of the x axis, so that the crossing's place on it is t itself.
TEST(EdgeIntersection, ACrossingNearAnEndCountsFromTheSinglePrecisionBoundsOn)
{
    auto const at = [](float t) { return crosses({0, 0}, {1, 0}, {t, -1}, {t, 1}); };
    float const low = 1e-05F;
    float const high = 0.99999F;
    EXPECT_EQ(static_cast<double>(low), 9.999999747378752e-06);
    EXPECT_EQ(static_cast<double>(high), 0.9999899864196777);
    EXPECT_TRUE(at(low));
    EXPECT_FALSE(at(std::nextafter(low, 0.0F)));
    EXPECT_TRUE(at(high));
    EXPECT_FALSE(at(std::nextafter(high, 1.0F)));
    EXPECT_FALSE(at(0.0F));
    EXPECT_FALSE(at(1.0F));
    EXPECT_FALSE(at(-1e-06F));
}

TEST(EdgeIntersection, TheBoundsHoldOnTheSecondSegmentToo)
{
    auto const at = [](float u) { return crosses({-1, 0}, {1, 0}, {0, -u}, {0, 1 - u}); };
    EXPECT_TRUE(at(0.5F));
    EXPECT_TRUE(at(1.1e-05F));
    EXPECT_FALSE(at(0.9e-05F));
    EXPECT_TRUE(at(0.99998F));
    EXPECT_FALSE(at(0.999995F));
}

// Near 1000 a float's step is 6e-05: the crossing at 0.00002 of the length is lost, as it must be.
TEST(EdgeIntersection, ComputesInSinglePrecision)
{
    EXPECT_TRUE(crosses({0, 0}, {1, 0}, {2e-05F, -1}, {2e-05F, 1}));
    EXPECT_FALSE(crosses({1000.0F, 0}, {1001.0F, 0}, {1000.00002F, -1}, {1000.00002F, 1}));
    // halves of one another; both products are 1024 x 1024 x (1 + 2^-11) in single precision, in exact numbers they
    // differ by 1/16
    EXPECT_FALSE(crosses({0, 0}, {1024.25F, 1024}, {-0.125F, -0.125F}, {1024.375F, 1024.125F}));
    EXPECT_TRUE(crosses({0, 0}, {1024.25F, 1024}, {-0.125F, -0.25F}, {1024.375F, 1024.25F})); // 0.5 the other way
}

// Two edges of a plate that go on in line, to within a thousandth, in the node that they share.
TEST(EdgeIntersection, RoundingCanCrossSegmentsThatGoOnNearlyInLine)
{
    P const shared{63.8682591F, 112.19311F};
    EXPECT_TRUE(crosses({59.7414667F, 108.291357F}, shared, {67.8448262F, 115.965381F}, shared));
    EXPECT_FALSE(crosses(shared, {59.7414667F, 108.291357F}, shared, {67.8448262F, 115.965381F})); // q is 0 there
}

TEST(EdgeIntersection, NumbersThatAreNoneDoNotCross)
{
    float const nan = std::numeric_limits<float>::quiet_NaN();
    float const inf = std::numeric_limits<float>::infinity();
    for (float const bad : {nan, inf, -inf, 3e38F})
    {
        EXPECT_FALSE(crosses({bad, 0}, {1, 1}, {1, 0}, {0, 1}));
        EXPECT_FALSE(crosses({0, 0}, {1, bad}, {1, 0}, {0, 1}));
        EXPECT_FALSE(crosses({0, 0}, {1, 1}, {bad, bad}, {0, 1}));
    }
}

// Away from every bound, exact arithmetic on the sides of the four ends agrees.
TEST(EdgeIntersection, RandomSegmentsAgreeWithTheSidesOfTheirEnds)
{
    std::mt19937 random(851);
    std::uniform_int_distribution<int> number(-20, 20);
    int crossings = 0;
    for (int round = 0; round < 20000; ++round)
    {
        int p[4][2];
        for (int(&point)[2] : p)
            for (int & value : point)
                value = number(random);
        auto const side = [&](int i, int j, int k) // exact: of small integers
        {
            int const s = (p[j][0] - p[i][0]) * (p[k][1] - p[i][1]) - (p[j][1] - p[i][1]) * (p[k][0] - p[i][0]);
            return (s > 0) - (s < 0);
        };
        bool const expected = side(0, 1, 2) * side(0, 1, 3) < 0 && side(2, 3, 0) * side(2, 3, 1) < 0;
        auto const point = [&](int i) { return P{static_cast<float>(p[i][0]), static_cast<float>(p[i][1])}; };
        ASSERT_EQ(crosses(point(0), point(1), point(2), point(3)), expected) << "round " << round;
        crossings += expected ? 1 : 0;
    }
    EXPECT_GT(crossings, 1000);
}
} // namespace
