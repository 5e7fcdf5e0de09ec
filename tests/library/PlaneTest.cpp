#include "Plane.h"

#include "VecInspection.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstring>
#include <random>

namespace
{
std::array<double, 4> coefficients(Plane const & plane)
{
    static_assert(sizeof(Plane) == 4 * sizeof(double));
    std::array<double, 4> result;
    std::memcpy(result.data(), &plane, sizeof(plane));
    return result;
}

using Four = std::array<double, 4>;

TEST(Plane, DefaultIsTheXyPlaneFacingUp)
{
    EXPECT_EQ(coefficients(Plane()), (Four{0, 0, 1, 0}));
}

TEST(Plane, EveryConstructorOfCoefficientsBringsThemToNormalForm)
{
    double const abcd[4] = {0, 3, 4, 10};
    Four const expected{0, 0.6, 0.8, 2};
    EXPECT_EQ(coefficients(Plane(0, 3, 4, 10)), expected);
    EXPECT_EQ(coefficients(Plane(abcd, 10)), expected);
    EXPECT_EQ(coefficients(Plane(abcd)), expected);
    EXPECT_EQ(coefficients(Plane(vec(0, 3, 4), 10)), expected);
}

TEST(Plane, ThroughAPointItHoldsThePoint)
{
    EXPECT_EQ(coefficients(Plane(vec(7, 1, 2), vec(0, 3, 4))), (Four{0, 0.6, 0.8, -2.2}));
}

TEST(Plane, ThroughThreePointsItFacesAlongTheirTurn)
{
    EXPECT_EQ(coefficients(Plane(vec(0, 0, 5), vec(2, 0, 5), vec(0, 2, 5))), (Four{0, 0, 1, -5}));
    EXPECT_EQ(coefficients(Plane(vec(0, 0, 5), vec(0, 2, 5), vec(2, 0, 5))), (Four{0, 0, -1, 5}));
}

TEST(Plane, AZeroNormalKeepsItsCoefficientsUndivided)
{
    EXPECT_EQ(coefficients(Plane(0, 0, 0, 8)), (Four{0, 0, 0, 8}));
    Plane plane(0, 0, 2, 8);
    plane.normal(Vec());
    EXPECT_EQ(coefficients(plane), (Four{0, 0, 0, 4}));
}

TEST(Plane, TheNormalsSetterDividesThePresentOffsetToo)
{
    Plane plane(0, 0, 1, 6);
    plane.normal(vec(0, 2, 0));
    EXPECT_EQ(coefficients(plane), (Four{0, 1, 0, 3}));
}

TEST(Plane, TheOffsetsSetterDividesNothing)
{
    Plane plane(0, 0, 2, 6);
    plane.offset(9);
    EXPECT_EQ(plane.offset(), 9);
    EXPECT_EQ(coefficients(plane), (Four{0, 0, 1, 9}));
}

TEST(Plane, TheNormalIsACountedCopy)
{
    Plane const plane(0, 0, 1, 6);
    Vec normal = plane.normal();
    EXPECT_EQ(countOf(normal), 1);
    normal[2] = 5;
    EXPECT_EQ(coefficients(plane), (Four{0, 0, 1, 6}));
}

TEST(Plane, CopiesAreTheFourNumbersAsTheyStand)
{
    Plane odd;
    odd.offset(3);
    odd.normal(Vec());
    EXPECT_EQ(coefficients(Plane(odd)), coefficients(odd));
}

TEST(Plane, ReverseNegatesAllFour)
{
    Plane plane(0, 0, 1, 6);
    plane.reverse();
    EXPECT_EQ(coefficients(plane), (Four{0, 0, -1, -6}));
}

TEST(Plane, ProjectsOnItselfAndMeasuresWithoutASign)
{
    Plane const plane(0, 0, 1, -5); // z = 5
    EXPECT_EQ(values(plane.project(vec(1, 2, 9))), (std::array<double, 3>{1, 2, 5}));
    EXPECT_EQ(plane.distance(vec(1, 2, 9)), 4);
    EXPECT_EQ(plane.distance(vec(1, 2, 1)), 4);
}

TEST(Plane, SideHasItsBoundsWithin)
{
    Plane const plane;
    EXPECT_EQ(plane.side(vec(0, 0, 0.5), 0.5), 0);
    EXPECT_EQ(plane.side(vec(0, 0, -0.5), 0.5), 0);
    EXPECT_EQ(plane.side(vec(0, 0, std::nextafter(0.5, 1.0)), 0.5), 1);
    EXPECT_EQ(plane.side(vec(0, 0, -std::nextafter(0.5, 1.0)), 0.5), -1);
}

TEST(Plane, WithoutToleranceOnlyAPointOnThePlaneHasSideZero)
{
    Plane const plane;
    EXPECT_EQ(plane.side(vec(3, 4, 0), 0), 0);
    EXPECT_EQ(plane.side(vec(0, 0, 1e-300), 0), 1);
    EXPECT_EQ(plane.side(vec(0, 0, -1e-300), 0), -1);
}

TEST(Plane, ProjectionsOfRandomPointsLieOnIt)
{
    std::mt19937 random(11);
    std::uniform_real_distribution<double> within(-10, 10);
    for (int i = 0; i < 500; ++i)
    {
        Plane const plane(within(random), within(random), within(random), within(random));
        Vec const p = vec(within(random), within(random), within(random));
        EXPECT_NEAR(plane.normal().length(), 1.0, 1e-14);
        EXPECT_LT(plane.distance(plane.project(p)), 1e-12);
        EXPECT_NEAR(p.distance(plane.project(p)), plane.distance(p), 1e-12);
    }
}
} // namespace
