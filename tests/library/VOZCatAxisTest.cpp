#include "VOZCatAxis.h"

#include "VecInspection.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstring>
#include <random>

namespace
{
using Values = std::array<double, 3>;

Values row(VOZCatAxis const & axis, int i)
{
    return {axis.axis(i, 0), axis.axis(i, 1), axis.axis(i, 2)};
}

TEST(VOZCatAxis, DefaultAndInitAreTheIdentity)
{
    VOZCatAxis axis;
    for (int pass = 0; pass < 2; ++pass)
    {
        EXPECT_EQ(row(axis, 0), (Values{1, 0, 0}));
        EXPECT_EQ(row(axis, 1), (Values{0, 1, 0}));
        EXPECT_EQ(row(axis, 2), (Values{0, 0, 1}));
        EXPECT_EQ(values(axis.origin()), (Values{0, 0, 0}));
        axis.axis(1, vec(4, 5, 6));
        axis.origin(vec(1, 1, 1));
        axis.init();
    }
}

TEST(VOZCatAxis, HoldsTwelveDoublesBehindItsVirtualTable)
{
    VOZCatAxis axis;
    for (int i = 0; i < 3; ++i)
        axis.axis(i, vec(10 * i, 10 * i + 1, 10 * i + 2));
    axis.origin(vec(30, 31, 32));
    double stored[12];
    std::memcpy(stored, reinterpret_cast<char const *>(&axis) + sizeof(void *), sizeof(stored));
    for (int i = 0; i < 12; ++i)
        EXPECT_EQ(stored[i], 10 * (i / 3) + i % 3);
    EXPECT_EQ(sizeof(axis), sizeof(void *) + sizeof(stored));
}

TEST(VOZCatAxis, NothingIsNormalisedOnTheWayInAndCopiesComeOut)
{
    VOZCatAxis axis;
    axis.axis(0, vec(3, 0, 4));
    Vec x = axis.axis(0);
    EXPECT_EQ(values(x), (Values{3, 0, 4}));
    EXPECT_EQ(countOf(x), 1);
    x[0] = 9;
    EXPECT_EQ(axis.axis(0, 0), 3);
}

TEST(VOZCatAxis, TransformsByItsRowsAndOrigin)
{
    VOZCatAxis axis;
    axis.axis(0, vec(0, 2, 0));
    axis.axis(1, vec(0, 0, 1));
    axis.axis(2, vec(1, 0, 0));
    axis.origin(vec(10, 20, 30));
    EXPECT_EQ(values(axis.fromGlobal(vec(11, 22, 33))), (Values{4, 3, 1}));
    EXPECT_EQ(values(axis.toGlobal(vec(1, 2, 3))), (Values{13, 22, 32}));
}

TEST(VOZCatAxis, TransformsUndoEachOtherForOrthonormalAxes)
{
    std::mt19937 random(3);
    std::uniform_real_distribution<double> within(-5, 5);
    for (int i = 0; i < 200; ++i)
    {
        Vec z = vec(within(random), within(random), within(random));
        z.unit();
        Vec x = z.cross(vec(0.3, 0.5, -0.7));
        x.unit();
        VOZCatAxis axis;
        axis.axis(0, x);
        axis.axis(1, z.cross(x));
        axis.axis(2, z);
        axis.origin(vec(within(random), within(random), within(random)));
        Vec const p = vec(within(random), within(random), within(random));
        EXPECT_LT(axis.toGlobal(axis.fromGlobal(p)).distance(p), 1e-13);
    }
}

TEST(VOZCatAxis, OrientTurnsALeftHandedFrameByItsZAlone)
{
    VOZCatAxis axis;
    axis.axis(0, vec(2, 0, 0));
    axis.axis(1, vec(0, 3, 0));
    axis.axis(2, vec(0.5, 0, -4));
    axis.orient();
    EXPECT_EQ(row(axis, 0), (Values{2, 0, 0}));
    EXPECT_EQ(row(axis, 1), (Values{0, 3, 0}));
    EXPECT_EQ(row(axis, 2), (Values{0, 0, 1}));
}

TEST(VOZCatAxis, OrientLeavesARightHandedZAsItIs)
{
    VOZCatAxis axis;
    axis.axis(2, vec(0.5, 0, 4));
    axis.orient();
    EXPECT_EQ(row(axis, 2), (Values{0.5, 0, 4}));
    axis.axis(2, vec(7, 0, 0)); // a dot product of 0 is not below 0
    axis.orient();
    EXPECT_EQ(row(axis, 2), (Values{7, 0, 0}));
}

TEST(VOZCatAxis, CopiesAreIndependent)
{
    VOZCatAxis a;
    a.origin(vec(1, 2, 3));
    VOZCatAxis b(a);
    VOZCatAxis c;
    c = a;
    a.init();
    EXPECT_EQ(values(b.origin()), (Values{1, 2, 3}));
    EXPECT_EQ(values(c.origin()), (Values{1, 2, 3}));
}
} // namespace
