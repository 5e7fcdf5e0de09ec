// VOZSolverConditionsTest.cpp: what acts on the sheet, in the record of the base driver.

#include "VOZSolver.h"

#include "BaseInputFixture.h"
#include "EdgeSets.h"
#include "LoopFilters.h"
#include "SolverConditions.h"
#include "VOZStatus.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <limits>
#include <utility>

using testing::ElementsAre;

namespace
{
class BaseConditions : public BaseInput
{
};
} // namespace

// The blank-holder force

TEST_F(BaseConditions, WithoutAHolderNothingIsHeld)
{
    ASSERT_EQ(driver.EvalBoundaries(), 0);
    EXPECT_EQ(driver.SetBlankHolderForce(), 0);
    EXPECT_EQ(record.m_pasBHFs, nullptr);
    EXPECT_EQ(record.m_nNumBHFEdges, 0);
    EXPECT_EQ(driver.m_dBlankHolderForce, 0.0);
}

TEST_F(BaseConditions, TheFullHolderHoldsTheOuterEdgeWithItsForcePerLength)
{
    fullHolder.factor(0.5);
    property.material(1)->m_dYield = 200e6;
    ASSERT_EQ(driver.EvalBoundaries(), 0);
    ASSERT_EQ(driver.SetBlankHolderForce(), 0);
    double const perLength = 0.5 * 0.0008 * 200e6;
    EXPECT_DOUBLE_EQ(driver.m_dBlankHolderForce, 1000.0 * 0.08 * perLength / (2.0 * 0.12)); // 80 mm of edge
    ASSERT_EQ(record.m_nNumBHFEdges, 8);
    for (int i = 0; i < 8; ++i)
    {
        VOZBHFEdge_s const & held = record.m_pasBHFs[i];
        int const k = driver.m_pProcessEdges->blankHolderEdge(i + 1);
        EXPECT_EQ(held.m_nElement, driver.m_pFreeEdge->elem(k) - 1);
        EXPECT_DOUBLE_EQ(held.m_dForce, perLength);
        EXPECT_EQ(part.elem(held.m_nElement + 1, held.m_nFirstPosition), driver.m_pFreeEdge->startNode(k));
        EXPECT_EQ(part.elem(held.m_nElement + 1, held.m_nSecondPosition), driver.m_pFreeEdge->endNode(k));
    }
}

TEST_F(BaseConditions, ASingleHolderSpreadsItsForceOverItsLengthInMetres)
{
    property.sizeBlankHolders(2);
    fill(property.blankHolders(1), 500.0, {edge(1, 1, 2), edge(2, 2, 3)}); // 20 mm
    fill(property.blankHolders(2), 300.0, {edge(4, 9, 6)});                // 10 mm
    ASSERT_EQ(driver.EvalBoundaries(), 0);
    ASSERT_EQ(driver.SetBlankHolderForce(), 0);
    ASSERT_EQ(record.m_nNumBHFEdges, 3);
    EXPECT_EQ(record.m_pasBHFs[0].m_nElement, 0);
    EXPECT_EQ(record.m_pasBHFs[0].m_dForce, 0.12 * 2.0 * 500.0 / (20.0 / 1000.0));
    EXPECT_EQ(record.m_pasBHFs[1].m_nElement, 1);
    EXPECT_EQ(record.m_pasBHFs[2].m_nElement, 3);
    EXPECT_EQ(record.m_pasBHFs[2].m_dForce, 0.12 * 2.0 * 300.0 / (10.0 / 1000.0));
    EXPECT_EQ(record.m_pasBHFs[2].m_nFirstPosition, 2);
    EXPECT_EQ(record.m_pasBHFs[2].m_nSecondPosition, 1);
    EXPECT_TRUE(host.reports.empty());
}

TEST_F(BaseConditions, AHolderOfNoLengthKeepsItsEdgesWithoutForce)
{
    property.sizeBlankHolders(1);
    fill(property.blankHolders(1), 500.0, {edge(1, 1, 1)});
    ASSERT_EQ(driver.EvalBoundaries(), 0);
    ASSERT_EQ(driver.SetBlankHolderForce(), 0);
    ASSERT_EQ(record.m_nNumBHFEdges, 1);
    EXPECT_EQ(record.m_pasBHFs[0].m_dForce, 0.0);
}

TEST_F(BaseConditions, AnActiveHolderWithoutEdgesFailsWithItsForceSet)
{
    property.sizeBlankHolders(1); // of no edges
    property.sizeDrawBeads(1);
    fill(property.drawBeads(1), 10.0, {edge(1, 1, 2)});
    give(driver);
    ASSERT_EQ(driver.EvalBoundaries(), 0);
    EXPECT_EQ(driver.SetBlankHolderForce(), E_FAIL);
    EXPECT_EQ(record.m_pasBHFs, nullptr);
    EXPECT_EQ(driver.SetConditions(), E_FAIL);
    EXPECT_EQ(record.m_pasDrawbeads, nullptr); // what would come after it is left alone
}

TEST_F(BaseConditions, WithoutARecordTheForceIsKeptAllTheSame)
{
    fullHolder.factor(0.5);
    driver.m_pSolverIOData = nullptr;
    ASSERT_EQ(driver.EvalBoundaries(), 0);
    EXPECT_EQ(driver.SetBlankHolderForce(), E_FAIL);
    EXPECT_GT(driver.m_dBlankHolderForce, 0.0);
}

TEST_F(BaseConditions, TheForceNeedsItsObjects)
{
    EXPECT_EQ(driver.SetBlankHolderForce(), E_FAIL); // no process edges yet
    ASSERT_EQ(driver.EvalBoundaries(), 0);
    driver.SetBoundaryConditions(meshes.data(), 1, nullptr, &symmetry, &friction, &fullHolder, &axis, 0, 0, 0);
    EXPECT_EQ(driver.SetBlankHolderForce(), E_FAIL);
    driver.SetBoundaryConditions(meshes.data(), 1, &property, &symmetry, &friction, nullptr, &axis, 0, 0, 0);
    EXPECT_EQ(driver.SetBlankHolderForce(), E_FAIL);
}

TEST_F(BaseConditions, HolderRowsThatAreMissingAreReportedAndTheRestStands)
{
    property.sizeBlankHolders(2);
    property.blankHolders(1).edgeCount = 3; // without the rows
    fill(property.blankHolders(2), 300.0, {edge(4, 9, 6)});
    ASSERT_EQ(driver.EvalBoundaries(), 0);
    EXPECT_EQ(driver.SetBlankHolderForce(), 0);
    EXPECT_THAT(reported(), ElementsAre("AssertionFailed:psBHF - m_pSolverIOData->m_pasBHFs == "
                                        "m_pSolverIOData->m_nNumBHFEdges"));
    EXPECT_EQ(record.m_nNumBHFEdges, 4);
    EXPECT_EQ(record.m_pasBHFs[0].m_nElement, 3);
    property.blankHolders(1).edgeCount = 0;
}

// Counts and numbers that no job has

TEST(ConditionCounts, StopAtTheLargestNumberAndTakeNegativeOnesForNone)
{
    int const largest = std::numeric_limits<int>::max();
    EXPECT_EQ(conditions::CountRows(3, [](int i) { return i == 2 ? -5 : i; }), 4);
    EXPECT_EQ(conditions::CountRows(3, [](int) { return std::numeric_limits<int>::max(); }), largest);
    EXPECT_EQ(conditions::CountRows(-1, [](int) { return 1; }), 0);
    EXPECT_EQ(conditions::CountOf(2LL * largest), largest);
}

TEST_F(BaseConditions, ElementsBeyondAnyRangeAreReportedAndGoInAsNone)
{
    int const least = std::numeric_limits<int>::min();
    property.sizeBlankHolders(1);
    fill(property.blankHolders(1), 10.0, {edge(least, 1, 2)});
    property.sizeDrawBeads(1);
    fill(property.drawBeads(1), 10.0, {edge(least, 1, 2)});
    ASSERT_EQ(driver.SetConditions(), 0);
    EXPECT_FALSE(host.reports.empty());
    for (int const element : {record.m_pasBHFs[0].m_nElement, record.m_pasDrawbeads[0].m_nElement})
        EXPECT_TRUE(element < 0 || element >= part.numElem()) << element;
}

// Beads

TEST_F(BaseConditions, EachBeadEdgeIsASegment)
{
    property.sizeDrawBeads(2);
    fill(property.drawBeads(1), 1000.0, {edge(1, 0, 0), edge(5, 0, 0)});
    fill(property.drawBeads(2), 3000.0, {edge(2, 0, 0)});
    double const values[4] = {-0.5, 0.25, 0.75, 1.0};
    std::copy(values, values + 4, property.drawBeads(1).edges[1].edgeValues);
    ASSERT_EQ(driver.SetDrawBeads(), 0);
    ASSERT_EQ(record.m_nNumDrawbeadSegments, 3);
    VOZDrawbeadSegment_s const & segment = record.m_pasDrawbeads[1];
    EXPECT_THAT(rowsOf(segment.m_adEdgeValues, 4), ElementsAre(-0.5, 0.25, 0.75, 1.0));
    EXPECT_EQ(segment.m_dForce, 1000.0);
    EXPECT_EQ(segment.m_dUplift, 1000.0 * 8.9934075e-07);
    EXPECT_EQ(segment.m_nElement, 4);
    EXPECT_EQ(record.m_pasDrawbeads[2].m_dForce, 3000.0);
    EXPECT_EQ(record.m_pasDrawbeads[2].m_nElement, 1);
    EXPECT_TRUE(host.reports.empty());
}

TEST_F(BaseConditions, BeadRowsThatAreMissingAreReported)
{
    property.sizeDrawBeads(1);
    property.drawBeads(1).edgeCount = 2;
    EXPECT_EQ(driver.SetDrawBeads(), 0);
    EXPECT_THAT(reported(), ElementsAre("AssertionFailed:psDrawBeadSeg - m_pSolverIOData->m_pasDrawbeads == "
                                        "m_pSolverIOData->m_nNumDrawbeadSegments"));
    property.drawBeads(1).edgeCount = 0;
}

TEST_F(BaseConditions, BeadsWithoutEdgesAreNone)
{
    EXPECT_EQ(driver.SetDrawBeads(), 0);
    property.sizeDrawBeads(3);
    EXPECT_EQ(driver.SetDrawBeads(), 0);
    EXPECT_EQ(record.m_pasDrawbeads, nullptr);
    driver.m_pSolverIOData = nullptr;
    EXPECT_EQ(driver.SetDrawBeads(), 0);
    fill(property.drawBeads(1), 1.0, {edge(1, 0, 0)});
    EXPECT_EQ(driver.SetDrawBeads(), E_FAIL);
    driver.SetBoundaryConditions(meshes.data(), 1, nullptr, &symmetry, &friction, &fullHolder, &axis, 0, 0, 0);
    EXPECT_EQ(driver.SetDrawBeads(), E_FAIL);
}

// Pads

TEST_F(BaseConditions, APadRubsOnItsElementsAndALaterOneOverwrites)
{
    property.sizePressPads(2);
    givePad(1, 2e6, {1, 3, 5});
    givePad(2, 7e6, {3});
    ASSERT_EQ(driver.SetPressurePads(), 0);
    EXPECT_THAT(rowsOf(record.m_padPressureFrictionValues, 5),
                ElementsAre(2e6 * 0.12, 0.0, 7e6 * 0.12, 0.0, 2e6 * 0.12));
}

TEST_F(BaseConditions, PadRowsThatAreNoElementsOrMissingAreLeftOut)
{
    property.sizePressPads(2);
    givePad(1, 2e6, {0, 6, -4, 1000000, 2});
    ASSERT_EQ(driver.SetPressurePads(), 0);
    EXPECT_THAT(rowsOf(record.m_padPressureFrictionValues, 5), ElementsAre(0.0, 2e6 * 0.12, 0.0, 0.0, 0.0));

    ElemProperty const keeper(property);
    property.setPressurePad(); // the rows are the keeper's now: only sizes and values come back
    property.setNbPressurePads(1);
    property.pressPadSize(new int[2]{0, 4});
    delete[] std::exchange(record.m_padPressureFrictionValues, nullptr);
    EXPECT_EQ(driver.SetPressurePads(), 0);
    property.pressPadVal(new double[2]{0.0, 9e6});
    EXPECT_EQ(driver.SetPressurePads(), 0);
    EXPECT_EQ(record.m_padPressureFrictionValues, nullptr); // no rows, no elements
}

TEST_F(BaseConditions, PadsThatAreOutlinesListNoElements)
{
    // Their arrays are rows 0 .. n - 1; the entry behind is not to be looked at.
    property.setNbPressurePads(1);
    property.pressPadSize(new int[2]{3, 1000});
    property.pressPadVal(new double[2]{9e6, 1e300});
    EXPECT_EQ(driver.SetPressurePads(), 0);
    EXPECT_EQ(record.m_padPressureFrictionValues, nullptr);
    driver.m_pSolverIOData = nullptr;
    EXPECT_EQ(driver.SetPressurePads(), 0);
}

TEST_F(BaseConditions, PadsWithoutElementsAreNone)
{
    EXPECT_EQ(driver.SetPressurePads(), 0);
    property.sizePressPads(2);
    givePad(1, 2e6, {});
    EXPECT_EQ(driver.SetPressurePads(), 0);
    EXPECT_EQ(record.m_padPressureFrictionValues, nullptr);
    driver.m_pSolverIOData = nullptr;
    EXPECT_EQ(driver.SetPressurePads(), 0);
    givePad(1, 2e6, {1});
    EXPECT_EQ(driver.SetPressurePads(), E_FAIL);
    driver.SetBoundaryConditions(meshes.data(), 1, nullptr, &symmetry, &friction, &fullHolder, &axis, 0, 0, 0);
    EXPECT_EQ(driver.SetPressurePads(), E_FAIL);
}

// Constraints

TEST_F(BaseConditions, TablesGoInNodeByNodeUnscaled)
{
    hold({3, 9}, true, 12.5, false, 4.0);
    hold({7}, false, 1.0, true, -2.5);
    hold({5}, true, 3.0, true, 6.0);
    hold({1}, false, 3.0, false, 6.0);
    ASSERT_EQ(driver.EvalBoundaries(), 0);
    ASSERT_EQ(driver.SetDispConstraints(), 0);
    ASSERT_EQ(record.m_nNumConstrainedNodes, 5);
    VOZConstrainedNodes_s const & held = *record.m_psConstrainedNodes;
    EXPECT_THAT(rowsOf(held.m_panNodeIndices, 5), ElementsAre(3, 9, 7, 5, 1)); // as stored
    EXPECT_THAT(rowsOf(held.m_panDisplFlags, 10), ElementsAre(1, 0, 1, 0, 0, 1, 1, 1, 0, 0));
    EXPECT_THAT(rowsOf(held.m_padDisplacements, 10), ElementsAre(12.5, 0, 12.5, 0, 0, -2.5, 3, 6, 0, 0));
}

// The plate's corner stands in the origin: x = 0 is the yz plane, y = 0 the xz plane.
TEST_F(BaseConditions, SymmetryNodesComeBehindTheTables)
{
    hold({5}, true, 3.0, false, 0.0);
    symmetry = Symmetry(true, true);
    ASSERT_EQ(driver.EvalBoundaries(), 0);
    ASSERT_EQ(driver.SetDispConstraints(), 0);
    LoopSymmetryFilter const & onPlane = *driver.m_pSymmetryFilter;
    ASSERT_GT(onPlane.numYZsymmetry(), 0);
    ASSERT_GT(onPlane.numXZsymmetry(), 0);
    int const count = 1 + onPlane.numYZsymmetry() + onPlane.numXZsymmetry();
    ASSERT_EQ(record.m_nNumConstrainedNodes, count);
    VOZConstrainedNodes_s const & held = *record.m_psConstrainedNodes;
    for (int i = 1; i < count; ++i)
    {
        bool const onYZ = i <= onPlane.numYZsymmetry();
        int const node = onYZ ? onPlane.yzNode(i - 1) : onPlane.xzNode(i - 1 - onPlane.numYZsymmetry());
        EXPECT_EQ(held.m_panNodeIndices[i], node);
        EXPECT_EQ(held.m_panDisplFlags[2 * i], onYZ ? 1 : 0);
        EXPECT_EQ(held.m_panDisplFlags[2 * i + 1], onYZ ? 0 : 1);
        EXPECT_EQ(held.m_padDisplacements[2 * i], 0.0);
        EXPECT_EQ(held.m_padDisplacements[2 * i + 1], 0.0);
    }
}

// With one plane, whichever it is, the list is that of the yz plane.
TEST_F(BaseConditions, OneXZPlaneAloneHoldsNothing)
{
    symmetry = Symmetry(true, false);
    ASSERT_EQ(driver.EvalBoundaries(), 0);
    ASSERT_EQ(driver.m_pSymmetryFilter->numYZsymmetry(), 0);
    EXPECT_EQ(driver.SetDispConstraints(), 0);
    EXPECT_EQ(record.m_psConstrainedNodes, nullptr);
    symmetry = Symmetry(false, true);
    ASSERT_EQ(driver.EvalBoundaries(), 0);
    EXPECT_EQ(driver.SetDispConstraints(), 0);
    EXPECT_EQ(record.m_nNumConstrainedNodes, driver.m_pSymmetryFilter->numYZsymmetry());
    EXPECT_GT(record.m_nNumConstrainedNodes, 0);
}

TEST_F(BaseConditions, ATableWithoutItsRowsLeavesPlacesThatAreNoNode)
{
    property.sizeDispBC(1);
    property.dispBCs(1).size = 2;
    ASSERT_EQ(driver.EvalBoundaries(), 0);
    ASSERT_EQ(driver.SetDispConstraints(), 0);
    EXPECT_THAT(rowsOf(record.m_psConstrainedNodes->m_panNodeIndices, 2), ElementsAre(-1, -1));
}

TEST_F(BaseConditions, ConstraintsNeedTheirObjects)
{
    EXPECT_EQ(driver.SetDispConstraints(), E_FAIL); // no symmetry filter yet
    ASSERT_EQ(driver.EvalBoundaries(), 0);
    EXPECT_EQ(driver.SetDispConstraints(), 0);
    driver.m_pSolverIOData = nullptr;
    EXPECT_EQ(driver.SetDispConstraints(), 0); // none to write
    hold({1}, true, 0.0, true, 0.0);
    EXPECT_EQ(driver.SetDispConstraints(), E_FAIL);
    driver.SetBoundaryConditions(meshes.data(), 1, nullptr, &symmetry, &friction, &fullHolder, &axis, 0, 0, 0);
    EXPECT_EQ(driver.SetDispConstraints(), E_FAIL);
}
