// VOZSolverSpringBacksShapeTest.cpp: the shape that the springback driver gives back, and its alignment.

#include "SpringBacksFixture.h"

#include "PointAlignment.h"
#include "VOZFormingResult.h"
#include "VOZMesh.h"
#include "VOZStatus.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>

using springbacks::SpringBacks;
using testing::ElementsAre;

TEST_F(SpringBacks, WithoutAStageThereAreNoResults)
{
    LayerStores stores(part);
    EXPECT_EQ(driver.GetResults(stores.layers()), E_FAIL);
}

TEST_F(SpringBacks, WithoutAShapeTheDisplacementsStayAsTheyAre)
{
    prepare();
    LayerStores stores(part);
    stores[0].disp(3, 1, 7.0F);
    EXPECT_EQ(driver.GetResults(stores.layers()), 0);
    EXPECT_EQ(stores[0].disp(3, 1), 7.0F);
    EXPECT_EQ(driver.m_psFormingResult, driver.stage().m_psFormingResult);
}

TEST_F(SpringBacks, DisplacementsAreMetresFromThePartToTheShape)
{
    double const s = std::sqrt(0.5); // the frame is turned by 45 degrees about x, its origin aside
    double const rows[3][3] = {{1, 0, 0}, {0, s, s}, {0, -s, s}};
    for (int i = 0; i < 3; ++i)
        axis.axis(i, Vec(rows[i]));
    prepare();
    giveShape(0.1, 0.004);
    LayerStores stores(part);
    EXPECT_EQ(driver.GetResults(stores.layers()), 0);
    for (int n = 1; n <= part.numNode(); ++n)
    {
        double d[3];
        for (int k = 0; k < 3; ++k)
        {
            d[k] = driver.m_padXYZ[3 * (n - 1) + k] - driver.stage().m_psPartMesh->m_padNodalCoords[3 * (n - 1) + k];
            EXPECT_EQ(stores[0].disp(n, k), static_cast<float>(d[k]));
            EXPECT_EQ(stores[0].dispOnBinder(n, k), static_cast<float>(d[k]));
            EXPECT_EQ(stores[1].disp(n, k), 0.0F);
            EXPECT_EQ(stores[2].disp(n, k), 0.0F);
        }
        EXPECT_NEAR(stores[0].disp2d(n, 0), d[0], 1e-8);
        EXPECT_NEAR(stores[0].disp2d(n, 1), s * d[1] + s * d[2], 1e-8);
        EXPECT_EQ(stores[0].disp2d(n, 2), 0.0F);
    }
}

TEST_F(SpringBacks, OnlyTheFirstStoreIsNeeded)
{
    prepare();
    giveShape(0.1, 0.004);
    Result top(part);
    Result * layers[3] = {&top, nullptr, nullptr};
    EXPECT_EQ(driver.GetResults(layers), 0);
    EXPECT_NE(top.disp(1, 0), 0.0F);
    Result * none[3] = {nullptr, nullptr, nullptr};
    EXPECT_EQ(driver.GetResults(none), 0);
    EXPECT_EQ(driver.GetResults(nullptr), 0);
}

TEST_F(SpringBacks, WithoutAlignmentNodesTheShapeStays)
{
    prepare();
    giveShape(0.1, 0.004);
    double const before = farthest();
    driver.Alignment();
    EXPECT_EQ(farthest(), before);
}

TEST_F(SpringBacks, ARigidMotionIsTakenBackByThreeNodes)
{
    align({1, 4, 9});
    prepare();
    giveShape(0.1, 0.004);
    EXPECT_GT(farthest(), 0.004);
    driver.Alignment();
    EXPECT_LT(farthest(), 1e-7) << "single precision of millimetres";
}

TEST_F(SpringBacks, AlignmentIsThatOfThePointPairs)
{
    for (std::vector<int> const & nodes : {std::vector<int>{6}, {6, 7}, {1, 2, 3}, {1, 4, 9, 12}, {1, 4, 9, 12, 6}})
    {
        align(nodes);
        prepare();
        giveShape(0.2, 0.01);
        std::vector<double> target;
        std::vector<double> source;
        for (int const n : nodes)
            for (int k = 0; k < 3; ++k)
            {
                target.push_back(driver.stage().m_psPartMesh->m_padNodalCoords[3 * (n - 1) + k]);
                source.push_back(driver.m_padXYZ[3 * (n - 1) + k]);
            }
        double matrix[16];
        pointalignment::AlignPoints(target.data(), source.data(), static_cast<int>(nodes.size()), matrix);
        std::vector<double> expected(driver.m_padXYZ, driver.m_padXYZ + 3 * part.numNode());
        for (int n = 0; n < part.numNode(); ++n)
            pointalignment::TransformPoint(expected.data() + 3 * n, matrix);
        driver.Alignment();
        EXPECT_EQ(std::vector<double>(driver.m_padXYZ, driver.m_padXYZ + 3 * part.numNode()), expected);
    }
}

// Two pairs of another distance: the first run fits the second pair, and the second run finds it fitted.
TEST_F(SpringBacks, ASecondReadingAlignsOnceMore)
{
    align({1, 4, 9, 12});
    prepare();
    giveShape(0.1, 0.004);
    driver.m_padXYZ[3 * 11 + 2] += 0.002; // the shape is no rigid image: each fit leaves something
    LayerStores stores(part);
    driver.GetResults(stores.layers());
    std::vector<double> const once(driver.m_padXYZ, driver.m_padXYZ + 3 * part.numNode());
    driver.GetResults(stores.layers());
    std::vector<double> const twice(driver.m_padXYZ, driver.m_padXYZ + 3 * part.numNode());
    EXPECT_NE(once, twice);
    for (std::size_t i = 0; i < once.size(); ++i)
        EXPECT_NEAR(once[i], twice[i], 1e-3);
    EXPECT_EQ(stores[0].disp(1, 2), static_cast<float>(twice[2] - driver.stage().m_psPartMesh->m_padNodalCoords[2]));
}

TEST_F(SpringBacks, AlignmentNodesOutsideTheMeshAreNoPairs)
{
    align({0, -1, 13, 2147483647, 6});
    prepare();
    giveShape(0.0, 0.004);
    driver.Alignment();
    EXPECT_LT(farthest(), 1e-8) << "one pair is left";
}

TEST_F(SpringBacks, AnAlignmentSizeWithoutItsListIsReported)
{
    property.setAlignmentSize(2);
    prepare();
    giveShape(0.0, 0.004);
    driver.Alignment();
    EXPECT_THAT(reported(), ElementsAre("AssertionFailed:p_arAlignment != NULL"));
}
