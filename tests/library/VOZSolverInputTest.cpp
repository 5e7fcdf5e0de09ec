// VOZSolverInputTest.cpp: mesh, materials and binder in the record of the base driver.

#include "VOZSolver.h"

#include "BaseInputFixture.h"
#include "FailingNew.h"
#include "VOZMechanicalProp.h"
#include "VOZStatus.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <iterator>
#include <memory>
#include <set>

using testing::Contains;
using testing::ElementsAre;

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
    property.sizePressPads(1);
    givePad(1, 1e6, {1});
    ASSERT_EQ(driver.FillInXenSolverData(&part, 0), 0);
    EXPECT_NE(record.m_padPressureFrictionValues, nullptr);
    EXPECT_EQ(record.m_nNumConstrainedNodes, 2);
    EXPECT_EQ(record.m_nNumDrawbeadSegments, 1);
    EXPECT_EQ(record.m_nNumBHFEdges, 1);
    ASSERT_EQ(driver.FillInXenSolverData(&part, 1), 0);
    EXPECT_EQ(record.m_nNumConstrainedNodes, 0);
    EXPECT_EQ(record.m_nNumDrawbeadSegments, 0);
    EXPECT_EQ(record.m_nNumBHFEdges, 0);
    EXPECT_EQ(record.m_padPressureFrictionValues, nullptr); // these have no count that would hide them
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

// The records' fields

// Each lies behind the one before it.
TEST(BaseRecords, HaveTheirFieldsInTheirOrder)
{
    VOZSolverIOData record;
    void const * const places[] = {
        &record.m_strSumFileName,
        &record.m_nSumFileNameLength,
        &record.m_strWorkDir,
        &record.m_nWorkDirLength,
        &record.m_nNodesPerElement,
        &record.m_psMesh,
        &record.m_panElemMaterialIndices,
        &record.m_nNumMaterials,
        &record.m_padInitMaterialThickness,
        &record.m_pasMaterialProperties,
        &record.m_pdAutobendingFriction,
        &record.m_padTippingMatrix,
        &record.m_padTippingOrigin,
        &record.m_psFlags,
        &record.m_nNumNodesBinder,
        &record.m_padNodalCoordsBinder,
        &record.m_padNodalCoordsFlatBlankBinder,
        &record.m_nNumElementsBinder,
        &record.m_panConnectivityBinder,
        &record.m_nNumConstrainedNodes,
        &record.m_psConstrainedNodes,
        &record.m_nUnused1,
        &record.m_nUnused2,
        &record.m_pUnused,
        &record.m_nNumDrawbeadSegments,
        &record.m_pasDrawbeads,
        &record.m_nUnused3,
        &record.m_nNumBHFEdges,
        &record.m_pasBHFs,
        &record.m_padPressureFrictionValues,
        &record.m_padNodalCoordsFlatBlank,
        &record.m_padNodalCoordsBlankOnBinder,
        &record.m_padStrainComponentsMid,
        &record.m_padStrainComponentsTop,
        &record.m_padStrainComponentsBot,
        &record.m_padEquivalentStress,
        &record.m_pdEnergy,
        &record.m_pdPunchForce,
        &record.m_pnNumOfIterationsUsedInSolver,
        &record.m_pdMaxRelativeDisplacement,
        &record.m_pdRelativeDispersion,
    };
    EXPECT_TRUE(std::is_sorted(std::begin(places), std::end(places), std::less<>()));

    VOZBasicMeshData_s mesh;
    void const * const ofMesh[] = {&mesh.m_nNumNodes,       &mesh.m_padNodalCoords,         &mesh.m_nNumElements,
                                   &mesh.m_panConnectivity, &mesh.m_padCurvatureComponents, &mesh.m_apReserved};
    EXPECT_TRUE(std::is_sorted(std::begin(ofMesh), std::end(ofMesh), std::less<>()));

    VOZDrawbeadSegment_s segment;
    void const * const ofSegment[] = {&segment.m_adEdgeValues, &segment.m_dForce, &segment.m_dUplift,
                                      &segment.m_nElement};
    EXPECT_TRUE(std::is_sorted(std::begin(ofSegment), std::end(ofSegment), std::less<>()));
}

// Memory

TEST_F(BaseInput, EveryAllocationThatFailsIsReportedByItsTextAndFailsTheRun)
{
    if (!FailingNew::reachesTheLibrary())
        GTEST_SKIP() << "the library allocates by operators of its own here";
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
        InputProbe runner;
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

// Without conditions all such allocations are the filling's own: none may be lost unnoticed.
TEST_F(BaseInput, NoAllocationOfTheFillingFailsUnnoticed)
{
    if (!FailingNew::reachesTheLibrary())
        GTEST_SKIP() << "the library allocates by operators of its own here";
    property.material(1)->m_nNumPoints = 2;
    property.material(1)->m_padPoints = new double[4]{0.0, 150e6, 0.5, 400e6};
    int number = 0;
    for (bool refused = true; refused;)
    {
        VOZSolverIOData fresh;
        InputProbe filler;
        filler.m_pSolverIOData = &fresh;
        give(filler);
        FailingNew const failing(++number);
        long const status = filler.FillInXenSolverData(&part, 1);
        refused = failing.refused();
        EXPECT_EQ(status, refused ? E_FAIL : 0) << number;
    }
    EXPECT_GT(number, 20);
}
