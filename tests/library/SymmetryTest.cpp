#include "Symmetry.h"

#include <gtest/gtest.h>

#include <cstring>

namespace
{
TEST(Symmetry, DefaultHasNone)
{
    Symmetry const none;
    EXPECT_FALSE(none.xzSymmetry());
    EXPECT_FALSE(none.yzSymmetry());
    EXPECT_TRUE(none.noSymmetry());
    EXPECT_FALSE(none.halfSymmetry());
    EXPECT_FALSE(none.quarterSymmetry());
}

TEST(Symmetry, AQuarterIsAHalfToo)
{
    Symmetry const quarter(true, true);
    EXPECT_TRUE(quarter.quarterSymmetry());
    EXPECT_TRUE(quarter.halfSymmetry());
    EXPECT_FALSE(quarter.noSymmetry());
}

TEST(Symmetry, OnePlaneIsAHalfOnly)
{
    for (bool const xz : {false, true})
    {
        Symmetry half(xz, !xz);
        EXPECT_EQ(half.xzSymmetry(), xz);
        EXPECT_EQ(half.yzSymmetry(), !xz);
        EXPECT_TRUE(half.halfSymmetry());
        EXPECT_FALSE(half.quarterSymmetry());
        EXPECT_FALSE(half.noSymmetry());
    }
}

TEST(Symmetry, SettersChangeOneFlagEachAndXzStandsFirst)
{
    Symmetry symmetry;
    symmetry.xzSymmetry(true);
    static_assert(sizeof(Symmetry) == 2);
    bool stored[2];
    std::memcpy(stored, &symmetry, 2);
    EXPECT_TRUE(stored[0]);
    EXPECT_FALSE(stored[1]);
    symmetry.yzSymmetry(true);
    symmetry.xzSymmetry(false);
    EXPECT_FALSE(symmetry.xzSymmetry());
    EXPECT_TRUE(symmetry.yzSymmetry());
}
} // namespace
