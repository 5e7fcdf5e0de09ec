// VOZSolverInputTest.cpp: the process data in the record of the base driver.

#include "VOZSolver.h"

#include "DriverFixture.h"
#include "EdgeSets.h"
#include "FailingNew.h"
#include "LoopFilters.h"
#include "VOZBHFConfig.h"
#include "VOZMechanicalProp.h"
#include "VOZSolverIOData.h"
#include "VOZStatus.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <memory>
#include <set>

using testing::Contains;
using testing::ElementsAre;

namespace
{
class Probe : public VOZSolver
{
public:
    using VOZSolver::ConvertMeshData;
    using VOZSolver::EvalBinder;
    using VOZSolver::EvalBoundaries;
    using VOZSolver::FillInXenSolverData;
    using VOZSolver::GetFilesFoldersPaths;
    using VOZSolver::SetBlankHolderForce;
    using VOZSolver::SetDispConstraints;
    using VOZSolver::SetDrawBeads;
    using VOZSolver::SetPressurePads;
    long SetConditions() { return VOZSolver::SetBoundaryConditions(); }

    using VOZSolver::m_dBlankHolderForce;
    using VOZSolver::m_nNbIntegrationPoints;
    using VOZSolver::m_pFreeEdge;
    using VOZSolver::m_pProcessEdges;
    using VOZSolver::m_pSolverIOData;
    using VOZSolver::m_pSymmetryFilter;
};

template <class Value>
std::vector<Value> rowsOf(Value const * rows, int count)
{
    return std::vector<Value>(rows, rows + count);
}

//   7---8---9
//   |   |  /|
//   |   | / |
//   4---5---6
//   |   |   |
//   1---2---3     cells of 10 mm x 10 mm; elements: 3 quadrilaterals, then the two triangles
VOZCatMesh mixed()
{
    samples::Points points;
    for (int row = 0; row < 3; ++row)
        for (int column = 0; column < 3; ++column)
            points.push_back({10.0 * column, 10.0 * row, 1.0});
    return samples::mesh(points, samples::Quads{{1, 2, 5, 4}, {2, 3, 6, 5}, {4, 5, 8, 7}, {5, 6, 9, 5}, {5, 9, 8, 5}});
}

class BaseInput : public DriverFixture
{
protected:
    BaseInput() : DriverFixture(mixed())
    {
        driver.m_pSolverIOData = &record;
        give(driver);
    }

    VOZSolverIOData record;
    Probe driver;
};
} // namespace

// The mesh

TEST_F(BaseInput, AMeshGoesInMetresWithOneBasedCornersAndZeroForATriangle)
{
    VOZBasicMeshData_s * made = nullptr;
    int perElement = -7;
    ASSERT_EQ(driver.ConvertMeshData(&part, made, perElement), 0);
    std::unique_ptr<VOZBasicMeshData_s> const mesh(made);
    EXPECT_EQ(perElement, 4);
    ASSERT_EQ(mesh->m_nNumNodes, 9);
    EXPECT_THAT(rowsOf(mesh->m_padNodalCoords + 15, 3), ElementsAre(20.0 * 0.001, 10.0 * 0.001, 1.0 * 0.001));
    ASSERT_EQ(mesh->m_nNumElements, 5);
    EXPECT_THAT(rowsOf(mesh->m_panConnectivity + 4, 4), ElementsAre(2, 3, 6, 5));
    EXPECT_THAT(rowsOf(mesh->m_panConnectivity + 12, 4), ElementsAre(5, 6, 9, 0));
    for (void const * reserved : mesh->m_apReserved)
        EXPECT_EQ(reserved, nullptr);
    EXPECT_EQ(driver.m_nNbIntegrationPoints, 1); // the caller's, not the driver's
}

TEST_F(BaseInput, TrianglesAloneHaveOnePointAnElement)
{
    part = dome(3, 2, true);
    VOZBasicMeshData_s * made = nullptr;
    int perElement = -7;
    ASSERT_EQ(driver.ConvertMeshData(&part, made, perElement), 0);
    std::unique_ptr<VOZBasicMeshData_s> const mesh(made);
    EXPECT_EQ(perElement, 1);
}

TEST_F(BaseInput, LabelsAreRidOfTheMeshesShift)
{
    part.IdsOffset(1000, 5000);
    VOZBasicMeshData_s * made = nullptr;
    int perElement = 0;
    ASSERT_EQ(driver.ConvertMeshData(&part, made, perElement), 0);
    std::unique_ptr<VOZBasicMeshData_s> const mesh(made);
    EXPECT_THAT(rowsOf(mesh->m_panConnectivity + 12, 4), ElementsAre(5, 6, 9, 0));
}

TEST_F(BaseInput, CurvaturesBecomeInverseMetresButForTheThird)
{
    auto * const rows = new double[6][3];
    for (int e = 0; e <= 5; ++e)
        for (int k = 0; k < 3; ++k)
            rows[e][k] = 0.01 * e + 0.1 * k;
    part.SetCurvatureValues(rows);
    VOZBasicMeshData_s * made = nullptr;
    int perElement = 0;
    ASSERT_EQ(driver.ConvertMeshData(&part, made, perElement), 0);
    std::unique_ptr<VOZBasicMeshData_s> const mesh(made);
    EXPECT_THAT(rowsOf(mesh->m_padCurvatureComponents + 6, 3),
                ElementsAre(rows[3][0] / 0.001, rows[3][1] / 0.001, rows[3][2]));
    rows[3][0] = 99.0; // the record has its own
    EXPECT_NE(mesh->m_padCurvatureComponents[6], 99.0 / 0.001);
}

TEST_F(BaseInput, ARecordThatIsGivenIsFilledAnew)
{
    VOZBasicMeshData_s given;
    VOZBasicMeshData_s * pointer = &given;
    int perElement = 0;
    VOZCatMesh const large = dome();
    ASSERT_EQ(driver.ConvertMeshData(&large, pointer, perElement), 0);
    ASSERT_EQ(driver.ConvertMeshData(&part, pointer, perElement), 0);
    EXPECT_EQ(pointer, &given);
    EXPECT_EQ(given.m_nNumNodes, 9);
    part.GetNodeData()[1][0] = 777.0;
    EXPECT_EQ(given.m_padNodalCoords[0], 0.0);
}

TEST_F(BaseInput, AnEmptyMeshIsReportedAndTheWorkGoesOn)
{
    VOZCatMesh const empty;
    VOZBasicMeshData_s * made = nullptr;
    int perElement = 0;
    EXPECT_EQ(driver.ConvertMeshData(&empty, made, perElement), 0);
    std::unique_ptr<VOZBasicMeshData_s> const mesh(made);
    EXPECT_THAT(reported(),
                ElementsAre("AssertionFailed:o_pM->m_nNumNodes > 0", "AssertionFailed:o_pM->m_nNumElements > 0"));
    EXPECT_EQ(perElement, 1);
    EXPECT_NE(mesh->m_padNodalCoords, nullptr);
    EXPECT_EQ(driver.ConvertMeshData(nullptr, made, perElement), E_FAIL);
}

// The whole record

TEST_F(BaseInput, FrameFrictionAndFlagsGoIn)
{
    axis.axis(0, Vec(0.0, 1.0, 0.0));
    axis.axis(1, Vec(-1.0, 0.0, 0.0));
    axis.origin(Vec(100.0, -20.0, 3.0));
    give(driver, 2, 6);
    ASSERT_EQ(driver.FillInXenSolverData(&part, 0), 0);
    EXPECT_THAT(rowsOf(record.m_padTippingMatrix, 9), ElementsAre(0, 1, 0, -1, 0, 0, 0, 0, 1));
    EXPECT_THAT(rowsOf(record.m_padTippingOrigin, 3), ElementsAre(100.0 / 1000.0, -20.0 / 1000.0, 3.0 / 1000.0));
    EXPECT_EQ(*record.m_pdAutobendingFriction, 0.12);
    EXPECT_EQ(record.m_psFlags->m_nProcessMode, 6);
    EXPECT_TRUE(record.m_psFlags->m_bProcess);
    give(driver, 0, 6);
    ASSERT_EQ(driver.FillInXenSolverData(&part, 0), 0);
    EXPECT_FALSE(record.m_psFlags->m_bProcess);
    EXPECT_EQ(record.m_strWorkDir, nullptr); // empty names are not handed over
    EXPECT_EQ(record.m_strSumFileName, nullptr);
}

TEST_F(BaseInput, MaterialsGoInWithTheirTables)
{
    property.sizeProperty(2);
    VOZMaterial & first = *property.material(1);
    first.m_dThickness = 0.0015;
    first.m_dNValue = 0.23;
    first.m_dRValue = 1.7;
    first.m_dKValue = 80000.0; // here: psi
    VOZMaterial & second = *property.material(2);
    second.m_nNumPoints = 2;
    second.m_padPoints = new double[4]{0.0, 150e6, 0.5, 400e6};
    second.m_dYield = 1.0;
    for (int e = 1; e <= 5; ++e)
        property.propertyId(e, e == 4 ? 2 : 1);
    ASSERT_EQ(driver.FillInXenSolverData(&part, 0), 0);
    EXPECT_EQ(record.m_nNumMaterials, 2);
    EXPECT_THAT(rowsOf(record.m_panElemMaterialIndices, 5), ElementsAre(0, 0, 0, 1, 0));
    EXPECT_EQ(record.m_padInitMaterialThickness[0], 0.0015);
    VOZMechanicalProp_s const & power = record.m_pasMaterialProperties[0];
    EXPECT_EQ(power.m_dNValue, 0.23);
    EXPECT_EQ(power.m_dRValue, 1.7);
    EXPECT_EQ(power.m_dKValue, 80000.0 * 6894.75729);
    EXPECT_EQ(power.m_nNumPoints, 0);
    EXPECT_EQ(power.m_nCurveType, 0);
    EXPECT_EQ(power.m_dYoungsModulus, 0.0); // completed only with points
    VOZMechanicalProp_s const & table = record.m_pasMaterialProperties[1];
    EXPECT_EQ(table.m_nCurveType, 2);
    EXPECT_EQ(table.m_nNumPoints, 2);
    EXPECT_GT(table.m_dYoungsModulus, 0.0);
    EXPECT_EQ(table.m_dYield, 150e6); // of the table: the record was made without one
    EXPECT_NE(table.m_padPoints, second.m_padPoints);
    second.m_padPoints[3] = 1.0; // the record has its own
    EXPECT_EQ(table.m_padPoints[3], 400e6);
}

TEST_F(BaseInput, AJobWithoutAMaterialIsReportedAndTheWorkGoesOn)
{
    property.clear();
    EXPECT_EQ(driver.FillInXenSolverData(&part, 1), 0);
    EXPECT_THAT(reported(), ElementsAre("AssertionFailed:m_pSolverIOData->m_nNumMaterials > 0"));
    EXPECT_THAT(rowsOf(record.m_panElemMaterialIndices, 5), ElementsAre(-1, -1, -1, -1, -1)); // nobody's
}

TEST_F(BaseInput, PlacesForTheAnswerAreMadeAndZero)
{
    ASSERT_EQ(driver.FillInXenSolverData(&part, 0), 0);
    EXPECT_EQ(driver.m_nNbIntegrationPoints, 4);
    EXPECT_EQ(record.m_nNodesPerElement, 4);
    for (double const * field : {record.m_padNodalCoordsFlatBlank, record.m_padNodalCoordsBlankOnBinder})
        EXPECT_EQ(rowsOf(field, 27), std::vector<double>(27));
    for (double const * field : {record.m_padStrainComponentsMid, record.m_padStrainComponentsTop,
                                 record.m_padStrainComponentsBot, record.m_padEquivalentStress})
        EXPECT_EQ(rowsOf(field, 60), std::vector<double>(60)); // 5 elements of 4 points of 3
    for (double const * value :
         {record.m_pdEnergy, record.m_pdPunchForce, record.m_pdMaxRelativeDisplacement, record.m_pdRelativeDispersion})
        EXPECT_EQ(*value, 0.0);
    EXPECT_EQ(*record.m_pnNumOfIterationsUsedInSolver, 0);
}

TEST_F(BaseInput, ATriangleMeshHasOnePointAgainAfterAQuadrilateralOne)
{
    ASSERT_EQ(driver.FillInXenSolverData(&part, 0), 0);
    VOZCatMesh const triangles = dome(2, 2, true);
    index(8);
    ASSERT_EQ(driver.FillInXenSolverData(&triangles, 1), 0);
    EXPECT_EQ(driver.m_nNbIntegrationPoints, 1);
    EXPECT_EQ(rowsOf(record.m_padEquivalentStress, 24), std::vector<double>(24));
}

TEST_F(BaseInput, ConditionsAreSkippedOnDemandAndCountsZeroedAlways)
{
    hold({1, 2}, true, 0.0, true, 0.0);
    property.sizeDrawBeads(1);
    fill(property.drawBeads(1), 10.0, {edge(1, 1, 2)});
    property.sizeBlankHolders(1);
    fill(property.blankHolders(1), 10.0, {edge(1, 1, 2)});
    ASSERT_EQ(driver.FillInXenSolverData(&part, 0), 0);
    EXPECT_EQ(record.m_nNumConstrainedNodes, 2);
    EXPECT_EQ(record.m_nNumDrawbeadSegments, 1);
    EXPECT_EQ(record.m_nNumBHFEdges, 1);
    ASSERT_EQ(driver.FillInXenSolverData(&part, 1), 0);
    EXPECT_EQ(record.m_nNumConstrainedNodes, 0);
    EXPECT_EQ(record.m_nNumDrawbeadSegments, 0);
    EXPECT_EQ(record.m_nNumBHFEdges, 0);
}

TEST_F(BaseInput, NothingIsFilledWithoutWhatItTakes)
{
    EXPECT_EQ(driver.FillInXenSolverData(nullptr, 0), E_FAIL);
    driver.SetBoundaryConditions(meshes.data(), 1, nullptr, &symmetry, &friction, &fullHolder, &axis, 0, 0, 0);
    EXPECT_EQ(driver.FillInXenSolverData(&part, 0), E_FAIL);
    driver.SetBoundaryConditions(meshes.data(), 1, &property, &symmetry, nullptr, &fullHolder, &axis, 0, 0, 0);
    EXPECT_EQ(driver.FillInXenSolverData(&part, 0), E_FAIL);
    driver.SetBoundaryConditions(meshes.data(), 1, &property, &symmetry, &friction, &fullHolder, nullptr, 0, 0, 0);
    EXPECT_EQ(driver.FillInXenSolverData(&part, 0), E_FAIL);
    give(driver);
    driver.m_pSolverIOData = nullptr;
    EXPECT_EQ(driver.FillInXenSolverData(&part, 0), E_FAIL);
    EXPECT_EQ(record.m_psMesh, nullptr);
}

TEST_F(BaseInput, ABrokenBoundaryFailsTheFilling)
{
    part = samples::closedBox();
    EXPECT_EQ(driver.FillInXenSolverData(&part, 0), E_FAIL);
    EXPECT_EQ(driver.FillInXenSolverData(&part, 1), 0); // without conditions nobody looks at it
}

// The blank-holder force

TEST_F(BaseInput, WithoutAHolderNothingIsHeld)
{
    ASSERT_EQ(driver.EvalBoundaries(), 0);
    EXPECT_EQ(driver.SetBlankHolderForce(), 0);
    EXPECT_EQ(record.m_pasBHFs, nullptr);
    EXPECT_EQ(record.m_nNumBHFEdges, 0);
    EXPECT_EQ(driver.m_dBlankHolderForce, 0.0);
}

TEST_F(BaseInput, TheFullHolderHoldsTheOuterEdgeWithItsForcePerLength)
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

TEST_F(BaseInput, ASingleHolderSpreadsItsForceOverItsLengthInMetres)
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

TEST_F(BaseInput, AHolderOfNoLengthKeepsItsEdgesWithoutForce)
{
    property.sizeBlankHolders(1);
    fill(property.blankHolders(1), 500.0, {edge(1, 1, 1)});
    ASSERT_EQ(driver.EvalBoundaries(), 0);
    ASSERT_EQ(driver.SetBlankHolderForce(), 0);
    ASSERT_EQ(record.m_nNumBHFEdges, 1);
    EXPECT_EQ(record.m_pasBHFs[0].m_dForce, 0.0);
}

TEST_F(BaseInput, AnActiveHolderWithoutEdgesFailsWithItsForceSet)
{
    property.sizeBlankHolders(1); // of no edges
    give(driver);
    ASSERT_EQ(driver.EvalBoundaries(), 0);
    EXPECT_EQ(driver.SetBlankHolderForce(), E_FAIL);
    EXPECT_EQ(record.m_pasBHFs, nullptr);
    EXPECT_EQ(driver.SetConditions(), E_FAIL);
}

TEST_F(BaseInput, WithoutARecordTheForceIsKeptAllTheSame)
{
    fullHolder.factor(0.5);
    driver.m_pSolverIOData = nullptr;
    ASSERT_EQ(driver.EvalBoundaries(), 0);
    EXPECT_EQ(driver.SetBlankHolderForce(), E_FAIL);
    EXPECT_GT(driver.m_dBlankHolderForce, 0.0);
}

TEST_F(BaseInput, TheForceNeedsItsObjects)
{
    EXPECT_EQ(driver.SetBlankHolderForce(), E_FAIL); // no process edges yet
    ASSERT_EQ(driver.EvalBoundaries(), 0);
    driver.SetBoundaryConditions(meshes.data(), 1, nullptr, &symmetry, &friction, &fullHolder, &axis, 0, 0, 0);
    EXPECT_EQ(driver.SetBlankHolderForce(), E_FAIL);
    driver.SetBoundaryConditions(meshes.data(), 1, &property, &symmetry, &friction, nullptr, &axis, 0, 0, 0);
    EXPECT_EQ(driver.SetBlankHolderForce(), E_FAIL);
}

TEST_F(BaseInput, HolderRowsThatAreMissingAreReportedAndTheRestStands)
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

// Beads

TEST_F(BaseInput, EachBeadEdgeIsASegment)
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

TEST_F(BaseInput, BeadRowsThatAreMissingAreReported)
{
    property.sizeDrawBeads(1);
    property.drawBeads(1).edgeCount = 2;
    EXPECT_EQ(driver.SetDrawBeads(), 0);
    EXPECT_THAT(reported(), ElementsAre("AssertionFailed:psDrawBeadSeg - m_pSolverIOData->m_pasDrawbeads == "
                                        "m_pSolverIOData->m_nNumDrawbeadSegments"));
    property.drawBeads(1).edgeCount = 0;
}

TEST_F(BaseInput, BeadsWithoutEdgesAreNone)
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

TEST_F(BaseInput, APadRubsOnItsElementsAndALaterOneOverwrites)
{
    property.sizePressPads(2);
    givePad(1, 2e6, {1, 3, 5});
    givePad(2, 7e6, {3});
    ASSERT_EQ(driver.SetPressurePads(), 0);
    EXPECT_THAT(rowsOf(record.m_padPressureFrictionValues, 5),
                ElementsAre(2e6 * 0.12, 0.0, 7e6 * 0.12, 0.0, 2e6 * 0.12));
}

TEST_F(BaseInput, PadRowsThatAreNoElementsOrMissingAreLeftOut)
{
    property.sizePressPads(2);
    givePad(1, 2e6, {0, 6, -4, 1000000, 2});
    ASSERT_EQ(driver.SetPressurePads(), 0);
    EXPECT_THAT(rowsOf(record.m_padPressureFrictionValues, 5), ElementsAre(0.0, 2e6 * 0.12, 0.0, 0.0, 0.0));

    property.setPressurePad(); // the rows are another's now: only sizes and values come back
    property.setNbPressurePads(1);
    property.pressPadSize(new int[2]{0, 4});
    EXPECT_EQ(driver.SetPressurePads(), 0);
    property.pressPadVal(new double[2]{0.0, 9e6});
    EXPECT_EQ(driver.SetPressurePads(), 0);
    EXPECT_EQ(rowsOf(record.m_padPressureFrictionValues, 5), std::vector<double>(5));
}

TEST_F(BaseInput, PadsWithoutElementsAreNone)
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

TEST_F(BaseInput, TablesGoInNodeByNodeUnscaled)
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
TEST_F(BaseInput, SymmetryNodesComeBehindTheTables)
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
TEST_F(BaseInput, OneXZPlaneAloneHoldsNothing)
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

TEST_F(BaseInput, ATableWithoutItsRowsLeavesPlacesThatAreNoNode)
{
    property.sizeDispBC(1);
    property.dispBCs(1).size = 2;
    ASSERT_EQ(driver.EvalBoundaries(), 0);
    ASSERT_EQ(driver.SetDispConstraints(), 0);
    EXPECT_THAT(rowsOf(record.m_psConstrainedNodes->m_panNodeIndices, 2), ElementsAre(-1, -1));
}

TEST_F(BaseInput, ConstraintsNeedTheirObjects)
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

// The binder

TEST_F(BaseInput, ABinderGoesInWithItsOwnMeshAndAFlatOfZeros)
{
    binder = dome(2, 1, false);
    meshes[1] = &binder;
    meshCount = 2;
    give(driver);
    ASSERT_EQ(driver.EvalBinder(), 0);
    ASSERT_EQ(record.m_nNumNodesBinder, 6);
    EXPECT_EQ(record.m_padNodalCoordsBinder[3], 60.0 * 0.001);
    ASSERT_EQ(record.m_nNumElementsBinder, 2);
    EXPECT_THAT(rowsOf(record.m_panConnectivityBinder + 4, 4), ElementsAre(2, 3, 6, 5));
    EXPECT_EQ(rowsOf(record.m_padNodalCoordsFlatBlankBinder, 18), std::vector<double>(18));
    EXPECT_NE(record.m_padNodalCoordsFlatBlankBinder, record.m_padNodalCoordsFlatBlank);
    EXPECT_NE(record.m_padNodalCoordsBinder, record.m_psMesh->m_padNodalCoords);
    ASSERT_EQ(driver.FillInXenSolverData(&part, 0), 0);
    EXPECT_EQ(record.m_nNumNodesBinder, 6); // the part leaves it alone
}

TEST_F(BaseInput, ABinderNeedsTwoMeshesAndARecord)
{
    EXPECT_EQ(driver.EvalBinder(), E_FAIL);
    meshes[1] = &part;
    meshCount = 3;
    give(driver);
    EXPECT_EQ(driver.EvalBinder(), E_FAIL);
    meshCount = 2;
    meshes[1] = nullptr;
    give(driver);
    EXPECT_EQ(driver.EvalBinder(), E_FAIL);
    meshes[1] = &part;
    driver.m_pSolverIOData = nullptr;
    EXPECT_EQ(driver.EvalBinder(), E_FAIL);
}

// Memory

TEST_F(BaseInput, EveryAllocationThatFailsIsReportedByItsTextAndFailsTheRun)
{
    binder = dome(2, 1, false);
    meshes[1] = &binder;
    meshCount = 2;
    property.material(1)->m_nNumPoints = 2;
    property.material(1)->m_padPoints = new double[4]{0.0, 150e6, 0.5, 400e6};
    property.sizePressPads(1);
    givePad(1, 1.0, {1});
    property.sizeDrawBeads(1);
    fill(property.drawBeads(1), 1.0, {edge(1, 1, 2)});
    fullHolder.factor(0.5);
    hold({1}, true, 0.0, true, 0.0);
    std::set<std::string> texts;
    bool refused = true;
    for (int number = 1; refused; ++number)
    {
        ASSERT_LT(number, 1000);
        VOZSolverIOData fresh;
        Probe runner;
        runner.m_pSolverIOData = &fresh;
        give(runner);
        host.reports.clear();
        FailingNew const failing(number);
        long const status = runner.Run(nullptr);
        refused = failing.refused();
        for (std::string const & text : reported())
            texts.insert(text);
        EXPECT_TRUE(status == (refused ? E_FAIL : 0) || host.reports.empty()) << number;
    }
    char const * const expected[] = {
        "o_pM != NULL",
        "o_pM->m_padNodalCoords != NULL",
        "o_pM->m_panConnectivity != NULL",
        "o_pM->m_padCurvatureComponents != NULL",
        "padTippingMatrix && padOrigin",
        "m_pSolverIOData->m_panElemMaterialIndices",
        "m_pSolverIOData->m_padInitMaterialThickness",
        "m_pSolverIOData->m_pasMaterialProperties",
        "m_pSolverIOData->m_pasMaterialProperties[i].m_padPoints",
        "m_pSolverIOData->m_pasBHFs",
        "m_pSolverIOData->m_padPressureFrictionValues",
        "padNodalCoordsFlatBlankBinder",
        "m_pSolverIOData->m_padNodalCoordsBinder",
        "m_pSolverIOData->m_panConnectivityBinder",
    };
    for (char const * text : expected)
        EXPECT_THAT(texts, Contains(std::string("AssertionFailed:") + text));
}
