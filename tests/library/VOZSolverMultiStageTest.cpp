// VOZSolverMultiStageTest.cpp: the stage that the multi-stage driver builds, and who owns it.

#include "VOZSolverMultiStage.h"

#include "CATError.h"
#include "FailingNew.h"
#include "StageFixture.h"
#include "VOZFormingResult.h"
#include "VOZMechanicalProp.h"
#include "VOZStatus.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <iterator>
#include <set>

using testing::Contains;
using testing::ElementsAre;

TEST_F(Stage, BeginsWithAnEmptyJobRecord)
{
    ASSERT_NE(driver.m_psIOData, nullptr);
    EXPECT_EQ(driver.m_psIOData->m_pasStages, nullptr);
    EXPECT_EQ(driver.m_psBCData, nullptr);
    EXPECT_EQ(driver.m_psFormingResult, nullptr);
    EXPECT_EQ(driver.m_pasBHFs, nullptr);
    EXPECT_EQ(driver.m_pasDrawbeads, nullptr);
    EXPECT_EQ(driver.m_pasNodeConstraints2D, nullptr);
    EXPECT_EQ(driver.m_padPressureFrictionValues, nullptr);
}

TEST_F(Stage, ItsFieldsLieBehindTheBasesInTheirOrder)
{
    void const * const places[] = {&driver.m_nLoopError,
                                   &driver.m_psIOData,
                                   &driver.m_psBCData,
                                   &driver.m_psFormingResult,
                                   &driver.m_pasBHFs,
                                   &driver.m_pasDrawbeads,
                                   &driver.m_pasNodeConstraints2D,
                                   &driver.m_padPressureFrictionValues};
    EXPECT_TRUE(std::is_sorted(std::begin(places), std::end(places), std::less<>()));
}

TEST_F(Stage, ALostJobRecordIsReportedAndNothingRuns)
{
    if (!FailingNew::reachesTheLibrary())
        GTEST_SKIP() << "the library allocates by operators of its own here";
    FailingNew const failing(1);
    StageProbe lost;
    EXPECT_THAT(reported(), ElementsAre("AssertionFailed:m_psIOData"));
    give(lost);
    EXPECT_EQ(lost.Run(nullptr), E_FAIL);
    LayerStores stores(part);
    EXPECT_EQ(lost.GetResults(stores.layers()), E_FAIL);
    EXPECT_EQ(lost.FillInXenSolverData(), E_FAIL);
}

TEST_F(Stage, TheJobRecordHoldsOneStageNamesAndControls)
{
    axis.axis(0, Vec(0.0, 1.0, 0.0));
    axis.axis(1, Vec(-1.0, 0.0, 0.0));
    axis.origin(Vec(10.0, 20.0, -30.0));
    give(driver, 1, 3);
    fillStage();
    VOZMultiStageSolverIOData_s const & job = *driver.m_psIOData;
    EXPECT_EQ(job.m_nNumStages, 1);
    EXPECT_EQ(job.m_nFirstControl, 3);
    EXPECT_EQ(job.m_nSecondControl, 3);
    EXPECT_EQ(job.m_dControl, 1.0);
    EXPECT_EQ(job.m_strWorkingDir, nullptr); // no folder was asked for yet
    EXPECT_EQ(job.m_psBinderMesh, nullptr);
    EXPECT_EQ(job.m_psBlankOnBinderMesh, nullptr);
    VOZSolverStage_s const & stage = driver.stage();
    EXPECT_THAT(rowsOf(stage.m_adLocalCS, 9), ElementsAre(0, 1, 0, -1, 0, 0, 0, 0, 1));
    EXPECT_THAT(rowsOf(stage.m_adOrigin, 3), ElementsAre(10.0 / 1000.0, 20.0 / 1000.0, -30.0 / 1000.0));
    EXPECT_EQ(stage.m_psPartMesh->m_nProcessMode, 3);
    EXPECT_EQ(stage.m_psBlankMesh->m_nProcessMode, 3);
    EXPECT_EQ(stage.m_psFormingResult->m_psMesh, stage.m_psPartMesh);
    EXPECT_EQ(stage.m_psBCData, driver.m_psBCData);
    EXPECT_EQ(stage.m_psBCData->m_bProcess, 1);
    EXPECT_EQ(stage.m_psBCData->m_dFriction, 0.12);
    EXPECT_TRUE(host.reports.empty());
}

TEST_F(Stage, TheBlankSharesThePartsTopologyWithPlacesOfItsOwn)
{
    fillStage();
    VOZMesh_s const & partMesh = *driver.stage().m_psPartMesh;
    VOZMesh_s const & blank = *driver.stage().m_psBlankMesh;
    EXPECT_EQ(blank.m_psTopology, partMesh.m_psTopology);
    EXPECT_EQ(partMesh.m_bOwnsTopology, 1);
    EXPECT_EQ(blank.m_bOwnsTopology, 0);
    std::size_t const nodes = 3 * static_cast<std::size_t>(part.numNode());
    std::size_t const elements = 3 * static_cast<std::size_t>(part.numElem());
    EXPECT_EQ(rowsOf(blank.m_padNodalCoords, static_cast<int>(nodes)), std::vector<double>(nodes));
    EXPECT_EQ(rowsOf(blank.m_padNodalNormals, static_cast<int>(nodes)), std::vector<double>(nodes));
    EXPECT_EQ(rowsOf(blank.m_padCurvatures, static_cast<int>(elements)), std::vector<double>(elements));
    partMesh.GetElements()[0].m_nMaterialIndex = 5; // one topology: what is written here is read there
    EXPECT_EQ(blank.GetElements()[0].m_nMaterialIndex, 5);
}

TEST_F(Stage, ABinderGoesInBesideABlankThatWillLieOnIt)
{
    giveBinder();
    give(driver, 0, 4);
    fillStage();
    VOZMultiStageSolverIOData_s const & job = *driver.m_psIOData;
    ASSERT_NE(job.m_psBinderMesh, nullptr);
    EXPECT_EQ(job.m_psBinderMesh->GetNumElements(), binder.numElem());
    EXPECT_EQ(job.m_psBinderMesh->m_nProcessMode, 4);
    EXPECT_EQ(job.m_psBinderMesh->m_bOwnsTopology, 1);
    ASSERT_NE(job.m_psBlankOnBinderMesh, nullptr);
    EXPECT_EQ(job.m_psBlankOnBinderMesh->m_psTopology, driver.stage().m_psPartMesh->m_psTopology);
    EXPECT_EQ(job.m_psBlankOnBinderMesh->m_bOwnsTopology, 0);
    EXPECT_EQ(job.m_psBlankOnBinderMesh->m_nProcessMode, 4);
    EXPECT_NE(job.m_psBlankOnBinderMesh->m_padNodalCoords, driver.stage().m_psBlankMesh->m_padNodalCoords);
    EXPECT_EQ(job.m_psBlankOnBinderMesh->m_padNodalCoords[3], 0.0);
}

TEST_F(Stage, ASecondMeshThatIsNotCountedIsNoBinder)
{
    giveBinder();
    meshCount = 1;
    give(driver);
    fillStage();
    EXPECT_EQ(driver.m_psIOData->m_psBinderMesh, nullptr);
    meshCount = 3;
    give(driver);
    fillStage();
    EXPECT_EQ(driver.m_psIOData->m_psBinderMesh, nullptr);
}

TEST_F(Stage, MaterialsAreTheKernelsOwnEvaluationInPascals)
{
    property.sizeProperty(3);
    VOZMaterial & power = *property.material(1);
    power.m_dThickness = 0.0011;
    power.m_dNValue = 0.21;
    power.m_dRValue = 1.3;
    power.m_dKValue = 540e6;
    power.m_dYield = 190e6;
    VOZMaterial & table = *property.material(2);
    table.m_nNumPoints = 2;
    table.m_padPoints = new double[4]{0.0, 150e6, 0.5, 400e6};
    property.material(3)->m_nNumPoints = 7; // a count without points
    for (int e = 1; e <= part.numElem(); ++e)
        property.propertyId(e, 1 + e % 3);
    fillStage();
    VOZMultiStageSolverIOData_s const & job = *driver.m_psIOData;
    ASSERT_EQ(job.m_nNumMaterials, 3);
    EXPECT_EQ(job.m_padInitMaterialThickness[0], 0.0011);
    VOZMechanicalProp_s const * const props = job.m_pasMaterialProperties;
    EXPECT_EQ(props[0].m_dKValue, 540e6); // not a pound in it
    EXPECT_EQ(props[0].m_dNValue, 0.21);
    EXPECT_EQ(props[0].m_dRValue, 1.3);
    EXPECT_EQ(props[0].m_dYield, 190e6);
    EXPECT_EQ(props[0].m_nCurveType, 0);
    EXPECT_EQ(props[0].m_dYoungsModulus, power.m_dYoungsModulus);
    EXPECT_EQ(props[1].m_nCurveType, 2);
    EXPECT_EQ(props[1].m_nNumPoints, 2);
    EXPECT_NE(props[1].m_padPoints, table.m_padPoints);
    table.m_padPoints[1] = 1.0; // the record has its own
    EXPECT_EQ(props[1].m_padPoints[1], 150e6);
    EXPECT_EQ(props[2].m_nNumPoints, 0);
    EXPECT_EQ(props[2].m_padPoints, nullptr);
    for (int e = 1; e <= part.numElem(); ++e)
        EXPECT_EQ(driver.stage().m_psPartMesh->GetElements()[e - 1].m_nMaterialIndex, e % 3);
    property.material(3)->m_nNumPoints = 0;
}

TEST_F(Stage, WithOneMaterialTheIndicesStayWhatTheRecordMakesThem)
{
    for (int e = 1; e <= part.numElem(); ++e)
        property.propertyId(e, 40 + e);
    fillStage();
    for (int e = 0; e < part.numElem(); ++e)
        EXPECT_EQ(driver.stage().m_psPartMesh->GetElements()[e].m_nMaterialIndex, 0);
}

TEST_F(Stage, AnElementOfNoMaterialIsReportedAndTheWorkGoesOn)
{
    property.sizeProperty(2);
    property.propertyId(3, 0);
    fillStage();
    EXPECT_THAT(reported(), ElementsAre("AssertionFailed:psElement->GetMaterialIndex() >= 0"));
    EXPECT_EQ(driver.stage().m_psPartMesh->GetElements()[2].m_nMaterialIndex, -1);
    EXPECT_THROW(driver.Run(nullptr), CATError); // the kernel looks at every index
}

TEST_F(Stage, AJobWithoutAMaterialIsReportedAndTheKernelRefusesIt)
{
    property.clear();
    EXPECT_THROW(driver.Run(nullptr), CATError);
    EXPECT_THAT(reported(), Contains("AssertionFailed:nNumMaterials > 0"));
}

// Who owns what: what the driver was lent is disturbed, and the records stay.
TEST_F(Stage, TheRecordsShareNothingWithWhatTheDriverWasLent)
{
    giveBinder();
    hold({1}, true, 5.0, false, 0.0);
    property.sizePressPads(1);
    givePad(1, 3e6, {2});
    property.sizeDrawBeads(1);
    fill(property.drawBeads(1), 700.0, {edge(2, 0, 0)});
    property.sizeBlankHolders(1);
    fill(property.blankHolders(1), 900.0, {edge(1, 1, 2)});
    property.material(1)->m_nNumPoints = 2;
    property.material(1)->m_padPoints = new double[4]{0.0, 150e6, 0.5, 400e6};
    fillStage();

    double const x = part.node(2, 0) * 0.001;
    double const force = driver.conditions().m_pasBHFs[0].m_dForce;
    part.GetNodeData()[2][0] = 1e9;
    binder.GetNodeData()[1][0] = 1e9;
    property.dispBCs(1).values[0] = 1e9;
    property.dispBCs(1).nodes[0] = 2;
    property.pressPadVal(1, 1e9);
    property.drawBeads(1).force = 1e9;
    property.drawBeads(1).edges[0].element = 3;
    property.blankHolders(1).force = 1e9;
    property.material(1)->m_padPoints[1] = 1e9;
    property.material(1)->m_dThickness = 1e9;
    axis.origin(Vec(1e9, 0.0, 0.0));
    friction.coefficient(1e9);

    VOZSolverBCData_s const & held = driver.conditions();
    EXPECT_EQ(driver.stage().m_psPartMesh->m_padNodalCoords[3], x);
    EXPECT_EQ(driver.m_psIOData->m_psBinderMesh->m_padNodalCoords[0], 0.0);
    EXPECT_EQ(held.m_pasNodeConstraints2D[0].m_nNode, 0);
    EXPECT_EQ(held.m_pasNodeConstraints2D[0].m_dDisplacement, 5.0);
    EXPECT_EQ(held.m_padPressureFrictionValues[1], 3e6 * 0.12);
    EXPECT_EQ(held.m_pasDrawbeads[0].m_nElement, 1);
    EXPECT_EQ(held.m_pasDrawbeads[0].m_dForce, 700.0);
    EXPECT_EQ(held.m_pasBHFs[0].m_dForce, force);
    EXPECT_EQ(held.m_dFriction, 0.12);
    EXPECT_EQ(driver.m_psIOData->m_pasMaterialProperties[0].m_padPoints[1], 150e6);
    EXPECT_EQ(driver.m_psIOData->m_padInitMaterialThickness[0], 0.0008);
    EXPECT_EQ(driver.stage().m_adOrigin[0], 0.0);
    // And the driver lets go of what it handed over: each array is freed once, by its record.
    EXPECT_EQ(driver.m_pasBHFs, nullptr);
    EXPECT_EQ(driver.m_pasDrawbeads, nullptr);
    EXPECT_EQ(driver.m_pasNodeConstraints2D, nullptr);
    EXPECT_EQ(driver.m_padPressureFrictionValues, nullptr);
}

TEST_F(Stage, AStageThatCannotBeFinishedLeavesNone)
{
    giveBinder();
    fillStage();
    property.sizeBlankHolders(1); // active, and without an edge
    EXPECT_EQ(driver.FillInXenSolverData(), E_FAIL);
    EXPECT_EQ(driver.m_psIOData->m_pasStages, nullptr);
    EXPECT_EQ(driver.m_psIOData->m_psBinderMesh, nullptr);
    EXPECT_EQ(driver.m_psIOData->m_psBlankOnBinderMesh, nullptr);
    EXPECT_EQ(driver.m_psBCData, nullptr);
    LayerStores stores(part);
    EXPECT_EQ(driver.GetResults(stores.layers()), E_FAIL);
    property.clearBlankHolders();
    fillStage(); // and another attempt stands
}

TEST_F(Stage, NothingIsFilledWithoutWhatItTakes)
{
    meshes[0] = nullptr;
    EXPECT_EQ(driver.FillInXenSolverData(), E_FAIL);
    meshes[0] = &part;
    ElemProperty const * const noProperty = nullptr;
    driver.SetBoundaryConditions(meshes.data(), 1, noProperty, &symmetry, &friction, &fullHolder, &axis, 0, 0, 0);
    EXPECT_EQ(driver.FillInXenSolverData(), E_FAIL);
    driver.SetBoundaryConditions(meshes.data(), 1, &property, nullptr, &friction, &fullHolder, &axis, 0, 0, 0);
    EXPECT_EQ(driver.FillInXenSolverData(), E_FAIL);
    driver.SetBoundaryConditions(meshes.data(), 1, &property, &symmetry, nullptr, &fullHolder, &axis, 0, 0, 0);
    EXPECT_EQ(driver.FillInXenSolverData(), E_FAIL);
    driver.SetBoundaryConditions(meshes.data(), 1, &property, &symmetry, &friction, nullptr, &axis, 0, 0, 0);
    EXPECT_EQ(driver.FillInXenSolverData(), E_FAIL);
    driver.SetBoundaryConditions(meshes.data(), 1, &property, &symmetry, &friction, &fullHolder, nullptr, 0, 0, 0);
    EXPECT_EQ(driver.FillInXenSolverData(), E_FAIL);
    EXPECT_EQ(driver.m_psIOData->m_pasStages, nullptr);
    EXPECT_TRUE(host.reports.empty());
}

// Memory

TEST_F(Stage, EveryAllocationThatFailsIsReportedByItsTextAndFailsTheFilling)
{
    if (!FailingNew::reachesTheLibrary())
        GTEST_SKIP() << "the library allocates by operators of its own here";
    giveBinder();
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
    for (int number = 2; refused; ++number) // the first is the job record's
    {
        ASSERT_LT(number, 1000);
        host.reports.clear();
        FailingNew const failing(number);
        StageProbe filler;
        give(filler);
        long const status = filler.FillInXenSolverData();
        refused = failing.refused();
        for (std::string const & text : reported())
            texts.insert(text);
        EXPECT_TRUE(status == (refused ? E_FAIL : 0) || host.reports.empty()) << number;
        EXPECT_EQ(filler.m_psIOData->m_pasStages != nullptr, status == 0);
    }
    char const * const expected[] = {
        "pasElements",
        "psTopologyMesh",
        "padNodalCoords",
        "padNodalNormals",
        "AssertionFailed:psMainMesh",
        "AssertionFailed:padInitMaterialThickness",
        "AssertionFailed:pasMaterialProperties",
        "AssertionFailed:pasMaterialProperties[i].m_padPoints",
        "AssertionFailed:psBlankOnBinderMesh",
        "psBinderMesh",
        "pasStages",
        "psBlankMesh",
        "psFormingResult",
        "AssertionFailed:m_pasBHFs",
        "AssertionFailed:m_pasDrawbeads",
        "AssertionFailed:m_padPressureFrictionValues",
        "AssertionFailed:m_pasNodeConstraints2D",
    };
    for (char const * text : expected)
        EXPECT_THAT(texts, Contains(text));
}
