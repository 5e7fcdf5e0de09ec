// VOZSolverMultiStageRunTest.cpp: the run through the kernel, and which way it takes.

#include "VOZSolverMultiStage.h"

#include "CATError.h"
#include "CATIProgressTaskUI.h"
#include "FailingNew.h"
#include "RecordBytes.h"
#include "StageFixture.h"
#include "VOZFormingResult.h"
#include "VOZSolverAutoBC.h"
#include "VOZStatus.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <random>

namespace
{
class StageRun : public Stage
{
};
} // namespace

// Nearest nodes

TEST_F(StageRun, TheNearestNodesAreZeroBasedAndTheFirstOfEqualsCounts)
{
    double target[3] = {41.0, 1.0, 0.5};    // node 2, at 40, 0
    double reference[3] = {20.0, 0.0, 0.0}; // midway between nodes 1 and 2
    int targetNode = -1;
    int referenceNode = -1;
    driver.SetAutoStrain(target, reference, targetNode, referenceNode);
    EXPECT_EQ(targetNode, 1);
    EXPECT_EQ(referenceNode, 0);
    int other = -7;
    targetNode = -7;
    driver.SetAutoStrain(nullptr, reference, targetNode, other);
    EXPECT_EQ(targetNode, -7); // one that is not asked for is left alone
    EXPECT_EQ(other, 0);
    driver.SetAutoStrain(nullptr, nullptr, targetNode, other);
    EXPECT_EQ(targetNode, -1);
    EXPECT_EQ(other, -1);
}

TEST_F(StageRun, NearestNodesAgreeWithASearch)
{
    part = dome(9, 8, true);
    std::mt19937 generator(5);
    std::uniform_real_distribution<double> place(-20.0, 140.0);
    for (int i = 0; i < 100; ++i)
    {
        double target[3] = {place(generator), place(generator), place(generator)};
        double reference[3] = {place(generator), place(generator), place(generator)};
        int nodes[2] = {-1, -1};
        driver.SetAutoStrain(target, reference, nodes[0], nodes[1]);
        for (int which = 0; which < 2; ++which)
        {
            double const * const p = which == 0 ? target : reference;
            auto const distance = [&](int n)
            { return std::hypot(part.node(n, 0) - p[0], part.node(n, 1) - p[1], part.node(n, 2) - p[2]); };
            for (int n = 1; n <= part.numNode(); ++n)
                EXPECT_GE(distance(n), distance(nodes[which] + 1) - 1e-12);
        }
    }
}

TEST_F(StageRun, APlaceThatIsNoNumberOrBeyondAllFloatsHasNoNode)
{
    for (double const bad : {std::numeric_limits<double>::quiet_NaN(), 1e39})
    {
        double target[3] = {bad, 0.0, 0.0};
        int targetNode = -1;
        int referenceNode = -1;
        driver.SetAutoStrain(target, nullptr, targetNode, referenceNode);
        EXPECT_EQ(targetNode, -1);
    }
    meshes[0] = nullptr;
    double target[3] = {0.0, 0.0, 0.0};
    int targetNode = -1;
    int referenceNode = -1;
    driver.SetAutoStrain(target, target, targetNode, referenceNode);
    EXPECT_EQ(targetNode, -1);
}

// The run

namespace
{
class Progress : public CATIProgressTaskUI
{
public:
    void SetProgress(short i_percent) override { shown.push_back(i_percent); }
    std::vector<short> shown;
};
} // namespace

TEST_F(StageRun, AOneStageRunSolvesAndFillsTheStage)
{
    give(driver, 0, 3);
    Progress task;
    ASSERT_EQ(driver.Run(&task), 0);
    VOZSolverStage_s const & stage = driver.stage();
    EXPECT_EQ(stage.m_psPartMesh->m_nProcessMode, 6); // twice the mode, in this way of solving alone
    EXPECT_EQ(stage.m_psBlankMesh->m_nProcessMode, 3);
    ASSERT_NE(stage.m_psFormingResult->m_padStrainComponentsMid, nullptr);
    for (int n = 0; n < part.numNode(); ++n)
        EXPECT_NEAR(stage.m_psBlankMesh->m_padNodalCoords[3 * n + 2], 0.0, 1e-12); // flat, in the plane of the frame
    EXPECT_EQ(CATUnicodeString(driver.m_psIOData->m_strSummaryFileName), CATUnicodeString("sum.txt"));
    EXPECT_EQ(CATUnicodeString(driver.m_psIOData->m_strWorkingDir), CATUnicodeString(work.Path().c_str()));
    EXPECT_FALSE(work.Read("sum.txt").empty());
    EXPECT_FALSE(work.Read("sum.log").empty());
    ASSERT_FALSE(task.shown.empty());
    EXPECT_TRUE(std::is_sorted(task.shown.begin(), task.shown.end()));
    EXPECT_EQ(task.shown.back(), 100);
    EXPECT_TRUE(host.reports.empty());
}

TEST_F(StageRun, ARunNeedsAFolderAndACleanBoundary)
{
    host.environment.erase("CATTemp");
    EXPECT_EQ(driver.Run(nullptr), E_FAIL);
    host.environment["CATTemp"] = work.Path();
    part = samples::closedBox();
    EXPECT_EQ(driver.Run(nullptr), E_FAIL);
    part = VOZCatMesh();
    EXPECT_EQ(driver.Run(nullptr), E_FAIL);
    LayerStores stores(binder);
    EXPECT_EQ(driver.GetResults(stores.layers()), E_FAIL);
}

// What the kernel refuses reaches the caller as an error of the host's kind, and the driver can be used again.
TEST_F(StageRun, TheKernelsErrorsPassThrough)
{
    double const z = part.GetNodeData()[6][2];
    for (double const bad : {std::numeric_limits<double>::quiet_NaN(), std::numeric_limits<double>::infinity()})
    {
        part.GetNodeData()[6][2] = bad;
        try
        {
            EXPECT_EQ(driver.Run(nullptr), E_FAIL); // where the preparation sees it already
        }
        catch (CATError const & error)
        {
            EXPECT_STRNE(error.Message(), "");
        }
    }
    part.GetNodeData()[6][2] = z;
    hold({2}, true, std::numeric_limits<double>::infinity(), false, 0.0);
    EXPECT_THROW(driver.Run(nullptr), CATError);
    property.clearDispBC();
    EXPECT_EQ(driver.Run(nullptr), 0);
}

TEST_F(StageRun, ASecondRunStartsAnew)
{
    ASSERT_EQ(driver.Run(nullptr), 0);
    LayerStores first(part);
    ASSERT_EQ(driver.GetResults(first.layers()), 0);
    EXPECT_NE(driver.m_psFormingResult, nullptr);
    ASSERT_EQ(driver.Run(nullptr), 0);
    EXPECT_EQ(driver.m_psFormingResult, nullptr);
    LayerStores second(part);
    ASSERT_EQ(driver.GetResults(second.layers()), 0);
    for (int n = 1; n <= part.numNode(); ++n)
        EXPECT_EQ(first.top.disp(n, 0), second.top.disp(n, 0));
    EXPECT_EQ(driver.stage().m_psPartMesh->m_nProcessMode, 0);
}

TEST_F(StageRun, TheAutoStrainRecordHasNodesReferenceFirstAndStrainsTargetFirst)
{
    double const target[3] = {41.0, 1.0, 0.5};     // node 2
    double const reference[3] = {119.0, 0.0, 0.0}; // node 4
    property.setAutoStrain(target, reference, 12.0, -5.0, 0.75, true);
    VOZSolverAutoBC_s record;
    ASSERT_TRUE(driver.EvalAutoBC(record));
    EXPECT_EQ(valueAt<int>(&record, 0), 3);
    EXPECT_EQ(valueAt<int>(&record, 4), 1);
    EXPECT_EQ(valueAt<double>(&record, 8), std::log(12.0 / 100.0 + 1.0));
    EXPECT_EQ(valueAt<double>(&record, 16), std::log(-5.0 / 100.0 + 1.0));
    EXPECT_EQ(valueAt<double>(&record, 24), 0.75);
}

TEST_F(StageRun, AStrainOfMinus98PercentHasAFixedLogarithm)
{
    property.setAutoStrain(nullptr, nullptr, -98.0, -97.9, 0.0, true);
    VOZSolverAutoBC_s record;
    ASSERT_TRUE(driver.EvalAutoBC(record));
    EXPECT_EQ(record.m_nTargetNode, -1); // without a point there is no node, and the run is asked for all the same
    EXPECT_EQ(record.m_nReferenceNode, -1);
    EXPECT_EQ(record.m_dTargetStrain, -3.91);
    EXPECT_EQ(record.m_dReferenceStrain, std::log(-97.9 / 100.0 + 1.0));
    property.setAutoStrain(nullptr, nullptr, -150.0, -1e300, 0.0, true);
    ASSERT_TRUE(driver.EvalAutoBC(record));
    EXPECT_EQ(record.m_dTargetStrain, -3.91);
    EXPECT_EQ(record.m_dReferenceStrain, -3.91);
    property.setAutoStrain(nullptr, nullptr, 10.0, 10.0, 0.0, false);
    EXPECT_FALSE(driver.EvalAutoBC(record));
}

TEST_F(StageRun, AWantedStrainThatIsNoNumberIsRefused)
{
    double const target[3] = {40.0, 0.0, 0.0};
    property.setAutoStrain(target, nullptr, std::numeric_limits<double>::quiet_NaN(), 0.0, 0.0, true);
    VOZSolverAutoBC_s record;
    ASSERT_TRUE(driver.EvalAutoBC(record));
    EXPECT_TRUE(std::isnan(record.m_dTargetStrain));
    EXPECT_THROW(driver.Run(nullptr), CATError);
}

TEST_F(StageRun, AnyNumberWillDoAsAMode)
{
    give(driver, 0, std::numeric_limits<int>::max());
    ASSERT_EQ(driver.Run(nullptr), 0);
    EXPECT_EQ(driver.stage().m_psPartMesh->m_nProcessMode, -2); // twice the largest number, wrapped
}

// Which way is taken: the one-stage solve alone doubles the mode, the way with a binder alone puts its banner ahead of
// the log.
class WaysToSolve : public Stage
{
protected:
    static constexpr char const * kBanner = "X E N   S O L V E R   S T A R T E D.\n";

    // Whether it solves or not: the way is what counts here.
    void run()
    {
        give(driver, 0, 5);
        try
        {
            driver.Run(nullptr);
        }
        catch (CATError const & error)
        {
            EXPECT_STRNE(error.Message(), "");
        }
        mode = driver.stage().m_psPartMesh->m_nProcessMode;
        banner = work.Read("sum.log").rfind(kBanner, 0) == 0;
    }

    int mode = 0;
    bool banner = false;
};

TEST_F(WaysToSolve, OneStageDoublesTheMode)
{
    run();
    EXPECT_EQ(mode, 10);
    EXPECT_FALSE(banner);
}

TEST_F(WaysToSolve, ABinderLeavesTheModeAndGetsABannerInItsLog)
{
    giveBinder();
    run();
    EXPECT_EQ(mode, 5);
    EXPECT_TRUE(banner);
}

TEST_F(WaysToSolve, ABinderThatIsNotCountedIsNone)
{
    giveBinder();
    meshCount = 1;
    run();
    EXPECT_EQ(mode, 10);
    EXPECT_FALSE(banner);
}

TEST_F(WaysToSolve, AutoStrainGoesBeforeABinder)
{
    giveBinder();
    double const target[3] = {60.0, 40.0, 12.0};
    property.setAutoStrain(target, nullptr, 1.0, 0.0, 0.0, true);
    run();
    EXPECT_EQ(mode, 5);
    EXPECT_FALSE(banner);
}

TEST_F(WaysToSolve, AutoStrainWithoutAPointIsAskedForAllTheSame)
{
    property.setAutoStrain(nullptr, nullptr, 1.0, 0.0, 0.0, true);
    run();
    EXPECT_EQ(mode, 5); // not doubled: the one-stage way was not taken
    EXPECT_FALSE(banner);
    EXPECT_NE(driver.stage().m_psFormingResult->m_padStrainComponentsMid, nullptr);
}

TEST_F(WaysToSolve, ALostAutoStrainRecordIsReportedAndFails)
{
    if (!FailingNew::reachesTheLibrary())
        GTEST_SKIP() << "the library allocates by operators of its own here";
    property.setAutoStrain(nullptr, nullptr, 1.0, 0.0, 0.0, true);
    std::vector<std::string> const lostRecord = {"AssertionFailed:psAutoBCData"};
    bool isFound = false;
    bool refused = true;
    for (int number = 2; refused && !isFound; ++number)
    {
        host.reports.clear();
        FailingNew const failing(number);
        StageProbe lost;
        give(lost);
        long status = 0;
        try
        {
            status = lost.Run(nullptr);
        }
        catch (CATError const & error)
        {
            EXPECT_STRNE(error.Message(), ""); // an allocation that can be done without was refused
        }
        refused = failing.refused();
        isFound = reported() == lostRecord;
        EXPECT_TRUE(!isFound || status == E_FAIL);
    }
    EXPECT_TRUE(isFound);
}
