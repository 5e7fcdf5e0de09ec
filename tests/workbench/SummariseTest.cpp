// SummariseTest.cpp: the figures that an engineer asks first, on a plate with a hole.

#include "SyntheticOutcome.h"

#include <gtest/gtest.h>

namespace voz::workbench
{
namespace
{

using test::plateWithHole;

// 100 x 60 with a 64-gon of radius 10
struct Summary : testing::Test
{
    Outcome outcome = plateWithHole(100.0, 60.0, 10.0, 64, 6);
    void SetUp() override { Summarise(outcome); }
};

TEST_F(Summary, TheBlankIsItsOutlineLessItsHole)
{
    double const hole = 0.5 * 64 * 100.0 * std::sin(2.0 * std::numbers::pi / 64);
    // Columns do not meet the corners of the rectangle exactly: the outline cuts them a little.
    double outline = 0.0;
    for (int j = 0; j < 64; ++j)
    {
        double const * const p = outcome.part.GetNodeData()[6 * 64 + j + 1];
        double const * const q = outcome.part.GetNodeData()[6 * 64 + (j + 1) % 64 + 1];
        outline += 0.5 * (p[0] * q[1] - p[1] * q[0]);
    }
    EXPECT_NEAR(outcome.summary.blankArea, outline - hole, 1e-9);
    EXPECT_NEAR(outcome.summary.blankWidth, 100.0, 1e-9);
    EXPECT_NEAR(outcome.summary.blankHeight, 60.0, 1e-9);
    EXPECT_NEAR(outcome.summary.blankMass, outcome.summary.blankArea * 0.8 * 1e-9 * 7850.0, 1e-12);
    EXPECT_EQ(outcome.summary.symmetryFactor, 1);
}

TEST_F(Summary, TheOuterLoopComesFirstCounterClockwiseAndTheHoleRunsClockwise)
{
    ASSERT_EQ(outcome.blank.size(), 2u);
    EXPECT_TRUE(outcome.blank[0].outer);
    EXPECT_FALSE(outcome.blank[1].outer);
    auto const area = [](BlankLoop const & loop)
    {
        double twice = 0.0;
        for (std::size_t i = 0; i < loop.points.size(); ++i)
        {
            auto const & p = loop.points[i];
            auto const & q = loop.points[(i + 1) % loop.points.size()];
            twice += p[0] * q[1] - p[1] * q[0];
        }
        return 0.5 * twice;
    };
    EXPECT_GT(area(outcome.blank[0]), 0.0);
    EXPECT_LT(area(outcome.blank[1]), 0.0);
    EXPECT_EQ(outcome.blank[0].nodes.size(), 64u);
    for (std::size_t i = 0; i < 64; ++i)
    {
        Point3 const & flat = outcome.nodes[static_cast<std::size_t>(outcome.blank[0].nodes[i])].flat;
        EXPECT_EQ(outcome.blank[0].points[i], (std::array<double, 2>{flat[0], flat[1]}));
    }
}

TEST_F(Summary, SharesCountElementsAndAddUpToOne)
{
    double sum = 0.0;
    for (double const share : outcome.summary.safetyShare)
        sum += share;
    EXPECT_NEAR(sum, 1.0, 1e-12);
    EXPECT_DOUBLE_EQ(outcome.summary.safetyShare[2], 0.5); // code 1
    EXPECT_DOUBLE_EQ(outcome.summary.safetyShare[3], 0.5); // code 2
}

TEST_F(Summary, ExtremesOfThicknessNameTheirElements)
{
    EXPECT_DOUBLE_EQ(outcome.summary.greatestThickness, 0.8);
    EXPECT_EQ(outcome.summary.greatestThicknessElement, 0);
    EXPECT_EQ(outcome.summary.leastThicknessElement, 64 * 6 - 1);
}

TEST_F(Summary, FormedAreasAddUpToThePlate)
{
    double sum = 0.0;
    for (ElementOutcome const & element : outcome.elements)
        sum += element.area;
    EXPECT_NEAR(sum, outcome.summary.blankArea, 1e-9);
    EXPECT_EQ(outcome.summary.drawDepth, 0.0);
}

TEST(SummaryOfSymmetry, AQuarterModelStandsForFour)
{
    Outcome outcome = plateWithHole(100.0, 60.0, 10.0, 16, 2);
    outcome.symmetry = Symmetry(true, true);
    Summarise(outcome);
    EXPECT_EQ(outcome.summary.symmetryFactor, 4);
    outcome.symmetry = Symmetry(false, true);
    Summarise(outcome);
    EXPECT_EQ(outcome.summary.symmetryFactor, 2);
}

TEST(SummaryOfABadBoundary, SaysSoAndDrawsNoOutline)
{
    Outcome outcome = plateWithHole(100.0, 60.0, 10.0, 16, 2);
    // A fan of two elements that meet at a node alone.
    double const nodes[5][3] = {{0, 0, 0}, {1, 0, 0}, {1, 1, 0}, {-1, 0, 0}, {-1, -1, 0}};
    int const elems[2][4] = {{1, 2, 3, 1}, {1, 4, 5, 1}};
    outcome.part = VOZCatMesh(5, 2, nodes, elems);
    outcome.nodes.resize(5);
    outcome.elements.resize(2);
    outcome.undercut.assign(2, 0);
    Summarise(outcome);
    EXPECT_TRUE(outcome.blank.empty());
    ASSERT_EQ(outcome.warnings.size(), 1u);
    EXPECT_NE(outcome.warnings[0].find("simple closed loops"), std::string::npos);
}

} // namespace
} // namespace voz::workbench
