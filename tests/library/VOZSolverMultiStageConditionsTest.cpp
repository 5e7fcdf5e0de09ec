// VOZSolverMultiStageConditionsTest.cpp: what acts on the sheet, in the records of the stage.

#include "VOZSolverMultiStage.h"

#include "CATError.h"
#include "EdgeSets.h"
#include "LoopFilters.h"
#include "StageFixture.h"
#include "VOZStatus.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <limits>

using testing::ElementsAre;

namespace
{
constexpr double kHalfPi = 1.5707963267948966;

class StageConditions : public Stage
{
};
} // namespace

TEST_F(StageConditions, AHolderEdgeIsARecordAndTheBaseClassesForceIsNotKept)
{
    fullHolder.factor(0.5);
    property.material(1)->m_dYield = 200e6;
    property.sizeBlankHolders(1);
    fill(property.blankHolders(1), 500.0, {edge(1, 1, 2)}); // 40 mm and the rise of the dome: none on the rim
    fillStage();
    VOZSolverBCData_s const & held = driver.conditions();
    int const full = driver.m_pProcessEdges->numBlankHolder();
    ASSERT_EQ(full, 10);
    ASSERT_EQ(held.m_nNumBHFs, full + 1);
    for (int i = 0; i < full; ++i)
    {
        VOZSolverBHF_s const & edge = held.m_pasBHFs[i];
        int const k = driver.m_pProcessEdges->blankHolderEdge(i + 1);
        EXPECT_EQ(edge.m_nElement, driver.m_pFreeEdge->elem(k) - 1);
        EXPECT_DOUBLE_EQ(edge.m_dForce, 0.5 * 0.0008 * 200e6);
        EXPECT_EQ(part.elem(edge.m_nElement + 1, edge.m_nFirstPosition), driver.m_pFreeEdge->startNode(k));
        EXPECT_EQ(part.elem(edge.m_nElement + 1, edge.m_nSecondPosition), driver.m_pFreeEdge->endNode(k));
    }
    EXPECT_EQ(held.m_pasBHFs[full].m_nElement, 0);
    EXPECT_DOUBLE_EQ(held.m_pasBHFs[full].m_dForce, 0.12 * 2.0 * 500.0 / (40.0 / 1000.0));
    EXPECT_EQ(held.m_pasBHFs[full].m_nFirstPosition, 0);
    EXPECT_EQ(held.m_pasBHFs[full].m_nSecondPosition, 1);
    EXPECT_EQ(driver.m_dBlankHolderForce, 0.0);
}

// With the range that asks for it, the yield comes from the kernel's records: the base class has none to give.
TEST_F(StageConditions, TheForceEvaluationGetsTheKernelsRecords)
{
    config("#\nVOZBHRange=1\n");
    fullHolder.factor(0.5);
    property.sizeProperty(2);
    index(part.numElem());
    property.material(1)->m_dThickness = property.material(2)->m_dThickness = 0.001;
    property.material(1)->m_dYield = 100e6;
    property.material(2)->m_dYield = 0.0; // of a table, whose first stress the kernel takes
    property.material(2)->m_nNumPoints = 2;
    property.material(2)->m_padPoints = new double[4]{0.0, 300e6, 0.5, 400e6};
    fillStage();
    EXPECT_DOUBLE_EQ(driver.conditions().m_pasBHFs[0].m_dForce, 0.5 * 0.001 * 200e6);
}

TEST_F(StageConditions, WithoutAHolderNoRecordGoesInAndWithNoEdgesItFails)
{
    fillStage();
    EXPECT_EQ(driver.conditions().m_pasBHFs, nullptr);
    EXPECT_EQ(driver.SetBlankHolderForce(), 0);
    property.sizeBlankHolders(1);
    EXPECT_EQ(driver.SetBlankHolderForce(), E_FAIL);
}

TEST_F(StageConditions, HolderRowsThatAreMissingLeaveRecordsAsTheyAreMade)
{
    property.sizeBlankHolders(1);
    property.blankHolders(1).edgeCount = 2;
    fillStage();
    VOZSolverBCData_s const & held = driver.conditions();
    ASSERT_EQ(held.m_nNumBHFs, 2);
    EXPECT_EQ(held.m_pasBHFs[1].m_nElement, 0);
    EXPECT_EQ(held.m_pasBHFs[1].m_nFirstPosition, -1);
    EXPECT_EQ(held.m_pasBHFs[1].m_nSecondPosition, -1);
    property.blankHolders(1).edgeCount = 0;
}

TEST_F(StageConditions, ABeadEdgeIsARecord)
{
    property.sizeDrawBeads(2);
    fill(property.drawBeads(1), 1000.0, {edge(1, 0, 0), edge(5, 0, 0)});
    fill(property.drawBeads(2), 3000.0, {edge(2, 0, 0)});
    double const values[4] = {-0.5, 0.25, 0.75, 1.0};
    std::copy(values, values + 4, property.drawBeads(1).edges[1].edgeValues);
    fillStage();
    VOZSolverBCData_s const & held = driver.conditions();
    ASSERT_EQ(held.m_nNumDrawbeads, 3);
    EXPECT_EQ(held.m_pasDrawbeads[1].m_nElement, 4);
    EXPECT_EQ(held.m_pasDrawbeads[1].m_dForce, 1000.0);
    EXPECT_EQ(held.m_pasDrawbeads[1].m_dUplift, 1000.0 * 8.9934075e-07);
    EXPECT_THAT(rowsOf(held.m_pasDrawbeads[1].m_adEdgeValues, 4), ElementsAre(-0.5, 0.25, 0.75, 1.0));
    EXPECT_EQ(held.m_pasDrawbeads[2].m_dForce, 3000.0);
}

TEST_F(StageConditions, APadRubsOnItsElementsAndALaterOneOverwrites)
{
    property.sizePressPads(2);
    givePad(1, 2e6, {1, 3, 6, 7, 0});
    givePad(2, 7e6, {3});
    fillStage();
    EXPECT_THAT(rowsOf(driver.conditions().m_padPressureFrictionValues, 6),
                ElementsAre(2e6 * 0.12, 0.0, 7e6 * 0.12, 0.0, 0.0, 2e6 * 0.12));
}

TEST_F(StageConditions, TablesTakeOneRecordOfTwoPlacesANode)
{
    hold({3, 9}, true, 12.5, false, 4.0);
    hold({7}, false, 1.0, true, -2.5);
    hold({5}, true, 3.0, true, 6.0);
    hold({1}, false, 3.0, false, 6.0);
    fillStage();
    VOZSolverBCData_s const & held = driver.conditions();
    ASSERT_EQ(held.m_nNumNodeConstraints2D, 10);
    struct
    {
        int node;
        double angle, displacement;
    } const rows[10] = {{2, 0.0, 12.5}, {8, 0.0, 12.5}, {6, kHalfPi, -2.5}, {4, 1001.0, 0.0}, {-1, 0.0, 0.0},
                        {-1, 0.0, 0.0}, {-1, 0.0, 0.0}, {-1, 0.0, 0.0},     {-1, 0.0, 0.0},   {-1, 0.0, 0.0}};
    for (int i = 0; i < 10; ++i)
    {
        VOZSolverNodeConstraint2D_s const & record = held.m_pasNodeConstraints2D[i];
        EXPECT_EQ(record.m_nNode, rows[i].node) << i;
        EXPECT_EQ(record.m_dAngle, rows[i].angle) << i;
        EXPECT_EQ(record.m_dDisplacement, rows[i].displacement) << i;
        EXPECT_EQ(record.m_dReserved24, 0.0) << i;
    }
}

TEST_F(StageConditions, SymmetryNodesComeBehindTheTablesAndTheirCountIsNotDoubled)
{
    hold({5}, true, 3.0, false, 0.0);
    symmetry = Symmetry(true, true);
    fillStage();
    LoopSymmetryFilter const & onPlane = *driver.m_pSymmetryFilter;
    int const yz = onPlane.numYZsymmetry();
    int const xz = onPlane.numXZsymmetry();
    ASSERT_GT(yz, 0);
    ASSERT_GT(xz, 0);
    VOZSolverBCData_s const & held = driver.conditions();
    ASSERT_EQ(held.m_nNumNodeConstraints2D, 2 + yz + xz);
    for (int i = 0; i < yz + xz; ++i)
    {
        VOZSolverNodeConstraint2D_s const & record = held.m_pasNodeConstraints2D[1 + i];
        EXPECT_EQ(record.m_nNode, (i < yz ? onPlane.yzNode(i) : onPlane.xzNode(i - yz)) - 1);
        EXPECT_EQ(record.m_dAngle, i < yz ? 0.0 : kHalfPi);
        EXPECT_EQ(record.m_dDisplacement, 0.0);
    }
    EXPECT_EQ(held.m_pasNodeConstraints2D[1 + yz + xz].m_nNode, -1); // the place that was kept twice
}

TEST_F(StageConditions, WithOnePlaneTheListIsThatOfTheYZPlane)
{
    symmetry = Symmetry(true, false);
    fillStage();
    EXPECT_EQ(driver.conditions().m_nNumNodeConstraints2D, 0);
    symmetry = Symmetry(false, true);
    fillStage();
    EXPECT_EQ(driver.conditions().m_nNumNodeConstraints2D, driver.m_pSymmetryFilter->numYZsymmetry());
    EXPECT_GT(driver.conditions().m_nNumNodeConstraints2D, 0);
}

TEST_F(StageConditions, NumbersBeyondAnyRangeGoInAsNoneAndTheKernelRefusesThem)
{
    int const least = std::numeric_limits<int>::min();
    hold({least}, true, 1.0, false, 0.0);
    property.sizeDrawBeads(1);
    fill(property.drawBeads(1), 10.0, {edge(least, 1, 2)});
    property.sizeBlankHolders(1);
    fill(property.blankHolders(1), 10.0, {edge(least, 1, 2)});
    fillStage();
    VOZSolverBCData_s const & held = driver.conditions();
    EXPECT_GE(held.m_pasNodeConstraints2D[0].m_nNode, part.numNode());
    EXPECT_GE(held.m_pasDrawbeads[0].m_nElement, part.numElem());
    EXPECT_GE(held.m_pasBHFs[0].m_nElement, part.numElem());
    EXPECT_THROW(driver.Run(nullptr), CATError);
}

namespace
{
// A host that ends the work at a broken contract, as a program's does.
class StrictHost : public VOZMemoryHost
{
public:
    void BrokenContract(std::string const & i_text, std::string const & i_file, int i_line) override
    {
        throw CATError(CATUnicodeString(i_text.c_str()), i_file.c_str(), i_line);
    }
};
} // namespace

// Where the report does not return, what was in the making is freed all the same: leaks are errors.
TEST_F(StageConditions, AReportThatRaisesLeavesNeitherRowsNorAStage)
{
    fillStage();
    StrictHost strict;
    strict.environment = host.environment;
    VOZHost::Install(&strict);
    property.sizeBlankHolders(1);
    fill(property.blankHolders(1), 10.0, {edge(99, 1, 2)});
    EXPECT_THROW(driver.FillInXenSolverData(), CATError);
    VOZHost::Install(&host);
    EXPECT_EQ(driver.m_pasBHFs, nullptr);
    EXPECT_EQ(driver.m_psBCData, nullptr);
    EXPECT_EQ(driver.m_psIOData->m_pasStages, nullptr);
}

TEST_F(StageConditions, TheFirstThatFailsEndsThem)
{
    fillStage();
    property.sizeBlankHolders(1); // active, and without an edge
    property.sizeDrawBeads(1);
    fill(property.drawBeads(1), 10.0, {edge(1, 1, 2)});
    EXPECT_EQ(driver.SetConditions(), E_FAIL);
    EXPECT_EQ(driver.conditions().m_nNumDrawbeads, 0);
}

TEST_F(StageConditions, ConditionsNeedTheirObjects)
{
    EXPECT_EQ(driver.SetConditions(), E_FAIL); // no stage
    EXPECT_EQ(driver.SetBlankHolderForce(), E_FAIL);
    EXPECT_EQ(driver.SetDispConstraints(), E_FAIL);
    property.sizePressPads(1);
    givePad(1, 1.0, {1});
    property.sizeDrawBeads(1);
    fill(property.drawBeads(1), 1.0, {edge(1, 0, 0)});
    EXPECT_EQ(driver.SetPressurePads(), E_FAIL);
    EXPECT_EQ(driver.SetDrawBeads(), E_FAIL);
    ElemProperty const * const noProperty = nullptr;
    driver.SetBoundaryConditions(meshes.data(), 1, noProperty, &symmetry, &friction, &fullHolder, &axis, 0, 0, 0);
    EXPECT_EQ(driver.SetPressurePads(), E_FAIL);
    EXPECT_EQ(driver.SetDrawBeads(), E_FAIL);
    EXPECT_EQ(driver.SetDispConstraints(), E_FAIL);
}

// A class derived from this one that has such an operation hides it: the driver still calls its own.
TEST_F(StageConditions, OperationsOfDerivedClassesAreHiddenNotOverridden)
{
    class Derived : public StageProbe
    {
    public:
        long SetDispConstraints() { return E_FAIL; }
        long SetDrawBeads() { return E_FAIL; }
        long SetPressurePads() { return E_FAIL; }
        long SetBlankHolderForce() { return E_FAIL; }
        long SetBoundaryConditions() { return E_FAIL; }
    };
    Derived derived;
    VOZSolver & base = derived;
    give(base);
    hold({1}, true, 1.0, false, 0.0);
    EXPECT_EQ(derived.FillInXenSolverData(), 0);
    EXPECT_EQ(derived.conditions().m_nNumNodeConstraints2D, 2);
}
