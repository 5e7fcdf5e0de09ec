#include "UnderCutFilter.h"

#include "ElemNormal.h"
#include "SampleMeshes.h"
#include "VecInspection.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <random>

namespace
{
using samples::Ints;
using samples::Quads;

Ints marks(UnderCutFilter const & filter, int n)
{
    Ints result;
    for (int e = 1; e <= n; ++e)
        result.push_back(filter.isUnderCutElem(e));
    return result;
}

TEST(UnderCutFilter, ExactlyAgainstTheDirectionAllAreMarkedAtNinetyDegrees)
{
    ElemNormal const normals(samples::plateWithHole().mesh());
    UnderCutFilter const filter(normals, vec(0, 0, -1));
    EXPECT_EQ(filter.numUnderCutElem(), 24);
    EXPECT_EQ(marks(filter, 24), Ints(24, 1));
    EXPECT_EQ(filter.maxUnderCutAngle(), 90.0F);
}

TEST(UnderCutFilter, AlongTheDirectionOrAcrossItNoneIsMarked)
{
    ElemNormal const normals(samples::hat()); // with vertical walls
    UnderCutFilter const filter(normals, vec(0, 0, 1));
    EXPECT_EQ(filter.numUnderCutElem(), 0);
    EXPECT_EQ(filter.maxUnderCutAngle(), 0.0F);
    EXPECT_EQ(marks(filter, 10), Ints(10, 0));
}

TEST(UnderCutFilter, MeasuresHowFarTheWorstPassesTheVertical)
{
    double const tilt = 0.1;
    VOZCatMesh const mesh =
        samples::mesh({{0, 0, 0}, {1, 0, 0}, {0, 1, 0}, {-std::sin(tilt), 0, 1}, {-std::sin(2 * tilt), 0, 1}},
                      Quads{{1, 2, 3, 1}, {1, 3, 4, 1}, {1, 3, 5, 1}, {1, 4, 3, 1}});
    ElemNormal const normals(mesh);
    UnderCutFilter const filter(normals, vec(0, 0, 1));
    EXPECT_EQ(marks(filter, 4), (Ints{0, 0, 0, 1}));
    EXPECT_NEAR(static_cast<double>(filter.maxUnderCutAngle()), std::atan(std::sin(tilt)) * 180 / 3.14159265358979,
                1e-5);
}

TEST(UnderCutFilter, OfNothingIsEmpty)
{
    UnderCutFilter const filter(ElemNormal(), vec(0, 0, 1));
    EXPECT_EQ(filter.numUnderCutElem(), 0);
    EXPECT_EQ(filter.maxUnderCutAngle(), 0.0F);
}

TEST(UnderCutFilter, DoesNotDivideByTheDirectionsLength)
{
    ElemNormal normals(samples::triangles({{1, 2, 3}}));
    normals.normal(1) = vec(1, 0, -1);
    float const full = UnderCutFilter(normals, vec(0, 0, 1)).maxUnderCutAngle();
    float const half = UnderCutFilter(normals, vec(0, 0, 0.5)).maxUnderCutAngle();
    EXPECT_FLOAT_EQ(full, 45.0F);
    EXPECT_LT(half, 21.0F);
}

// A direction a little too long makes a cosine below -1, whose angle is not a number and never a maximum.
TEST(UnderCutFilter, AnAngleThatIsNoNumberIsNoMaximum)
{
    ElemNormal normals(samples::triangles({{1, 2, 3}, {1, 2, 3}}));
    normals.normal(1) = vec(0, 0, -1);
    normals.normal(2) = vec(1, 0, -1);
    UnderCutFilter const filter(normals, vec(0, 0, 1.25));
    EXPECT_EQ(filter.numUnderCutElem(), 2);
    EXPECT_NEAR(static_cast<double>(filter.maxUnderCutAngle()), std::asin(1.25 / std::sqrt(2.0)) * 57.29577951308232,
                1e-5);
}

// The rule as it stands, one angle per element, against random normals with many near ties.
TEST(UnderCutFilter, AgreesWithTheAngleOfEveryElement)
{
    std::mt19937 random(53);
    std::uniform_real_distribution<double> within(-1, 1);
    for (int round = 0; round < 300; ++round)
    {
        VOZCatMesh const mesh(3, 40);
        std::fill_n(mesh.GetElemData()[1], 160, 1);
        ElemNormal normals(mesh);
        double const z = within(random);
        for (int e = 1; e <= 40; ++e)
            normals.normal(e) = round % 3 == 0   ? vec(within(random), within(random), within(random))
                                : round % 3 == 1 ? vec(1, within(random) * 1e-8, z * (1 + within(random) * 1e-15))
                                                 : vec(0, 0, 0);
        double const direction[3] = {0.48, -0.6, 0.64};
        float expected = 0.0F;
        int count = 0;
        for (int e = 1; e <= 40; ++e)
        {
            Vec const n = normals.normal(e);
            double const d = Vec(direction).dot(n);
            if (!(d < 0))
                continue;
            ++count;
            double const angle = (std::acos(d / n.length()) - 1.5707963267948966) * 57.29577951308232;
            if (angle > static_cast<double>(expected))
                expected = static_cast<float>(angle);
        }
        UnderCutFilter const filter(normals, Vec(direction));
        ASSERT_EQ(filter.numUnderCutElem(), count);
        ASSERT_EQ(filter.maxUnderCutAngle(), expected) << "round " << round;
    }
}
} // namespace
