// VOZSolverMultiStageTest.cpp: the stage that the multi-stage driver builds, and its run through the kernel.

#include "VOZSolverMultiStage.h"

#include "CATError.h"
#include "CATIProgressTaskUI.h"
#include "DriverFixture.h"
#include "EdgeSets.h"
#include "FailingNew.h"
#include "LoopFilters.h"
#include "RecordBytes.h"
#include "VOZFormingResult.h"
#include "VOZMechanicalProp.h"
#include "VOZMesh.h"
#include "VOZMultiStageSolverIOData.h"
#include "VOZSolverAutoBC.h"
#include "VOZSolverBCData.h"
#include "VOZStatus.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <random>
#include <set>

using testing::Contains;
using testing::ElementsAre;

namespace
{
constexpr double kHalfPi = 1.5707963267948966;

class Probe : public VOZSolverMultiStage
{
public:
    using VOZSolverMultiStage::ConvertMeshData;
    using VOZSolverMultiStage::EvalAutoBC;
    using VOZSolverMultiStage::FillInXenSolverData;
    using VOZSolverMultiStage::SetAutoStrain;
    using VOZSolverMultiStage::SetBlankHolderForce;
    using VOZSolverMultiStage::SetDispConstraints;
    using VOZSolverMultiStage::SetDrawBeads;
    using VOZSolverMultiStage::SetPressurePads;
    long SetConditions() { return VOZSolverMultiStage::SetBoundaryConditions(); }

    using VOZSolverMultiStage::m_dBlankHolderForce;
    using VOZSolverMultiStage::m_nNbIntegrationPoints;
    using VOZSolverMultiStage::m_padPressureFrictionValues;
    using VOZSolverMultiStage::m_pasBHFs;
    using VOZSolverMultiStage::m_pasDrawbeads;
    using VOZSolverMultiStage::m_pasNodeConstraints2D;
    using VOZSolverMultiStage::m_pFreeEdge;
    using VOZSolverMultiStage::m_pProcessEdges;
    using VOZSolverMultiStage::m_psBCData;
    using VOZSolverMultiStage::m_psFormingResult;
    using VOZSolverMultiStage::m_psIOData;
    using VOZSolverMultiStage::m_pSymmetryFilter;

    VOZSolverStage_s & stage() { return *m_psIOData->m_pasStages; }
    VOZSolverBCData_s & conditions() { return *stage().m_psBCData; }
};

template <class Value>
std::vector<Value> rowsOf(Value const * rows, int count)
{
    return std::vector<Value>(rows, rows + count);
}

class Stage : public DriverFixture
{
protected:
    explicit Stage(VOZCatMesh const & i_part = dome(3, 2, false)) : DriverFixture(i_part) { give(driver); }

    void giveBinder()
    {
        binder = dome(5, 4, true);
        meshes[1] = &binder;
        meshCount = 2;
        give(driver);
    }

    void fillStage() { ASSERT_EQ(driver.FillInXenSolverData(), 0); }

    Probe driver;
};

class TriangleStage : public Stage
{
protected:
    TriangleStage() : Stage(dome(3, 2, true)) {}
};
} // namespace

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

TEST_F(Stage, ALostJobRecordIsReportedAndNothingRuns)
{
    FailingNew const failing(1);
    Probe lost;
    EXPECT_THAT(reported(), ElementsAre("AssertionFailed:m_psIOData"));
    give(lost);
    EXPECT_EQ(lost.Run(nullptr), E_FAIL);
    LayerStores stores(part);
    EXPECT_EQ(lost.GetResults(stores.layers()), E_FAIL);
    EXPECT_EQ(lost.FillInXenSolverData(), E_FAIL);
}

// The mesh

TEST_F(Stage, AMeshGoesInMetresWithZeroBasedCorners)
{
    part.IdsOffset(100, 200);
    VOZMesh_s mesh;
    ASSERT_EQ(driver.ConvertMeshData(&part, mesh), 0);
    ASSERT_EQ(mesh.GetNumNodes(), part.numNode());
    ASSERT_EQ(mesh.GetNumElements(), part.numElem());
    for (int e = 1; e <= part.numElem(); ++e)
        for (int k = 0; k < 4; ++k)
            EXPECT_EQ(mesh.GetElements()[e - 1].m_anNodeIndices[k], part.elem(e, k) - 1);
    double * normals = nullptr;
    part.EvalNodesNormal(normals);
    for (int n = 1; n <= part.numNode(); ++n)
        for (int k = 0; k < 3; ++k)
        {
            EXPECT_EQ(mesh.m_padNodalCoords[3 * (n - 1) + k], part.node(n, k) * 0.001);
            EXPECT_EQ(mesh.m_padNodalNormals[3 * (n - 1) + k], normals[3 * (n - 1) + k]);
        }
    delete[] normals;
    EXPECT_EQ(mesh.m_padCurvatures, nullptr);
    EXPECT_EQ(mesh.m_bOwnsTopology, 1);
    EXPECT_EQ(mesh.GetElements()[0].m_nMaterialIndex, 0);
    EXPECT_EQ(driver.m_nNbIntegrationPoints, 4);
    EXPECT_TRUE(host.reports.empty());
}

TEST_F(TriangleStage, TrianglesLeaveTheFourthCornerAndTheOnePoint)
{
    VOZMesh_s mesh;
    ASSERT_EQ(driver.ConvertMeshData(&part, mesh), 0);
    EXPECT_EQ(mesh.GetElements()[0].m_anNodeIndices[3], -1);
    EXPECT_EQ(driver.m_nNbIntegrationPoints, 1);
    VOZCatMesh const quads = dome(2, 2, false);
    VOZMesh_s second;
    ASSERT_EQ(driver.ConvertMeshData(&quads, second), 0);
    VOZMesh_s third;
    ASSERT_EQ(driver.ConvertMeshData(&part, third), 0);
    EXPECT_EQ(driver.m_nNbIntegrationPoints, 4); // nothing sets it back
}

TEST_F(TriangleStage, ABinderOfQuadrilateralsGivesAllElementsFourPoints)
{
    giveBinder();
    binder = dome(2, 2, false);
    fillStage();
    EXPECT_EQ(driver.m_nNbIntegrationPoints, 4);
}

TEST_F(Stage, CurvaturesBecomeInverseMetresButForTheThird)
{
    int const count = part.numElem();
    auto * const rows = new double[static_cast<std::size_t>(count) + 1][3];
    for (int e = 0; e <= count; ++e)
        for (int k = 0; k < 3; ++k)
            rows[e][k] = 0.003 * e - 0.2 * k;
    part.SetCurvatureValues(rows);
    VOZMesh_s mesh;
    ASSERT_EQ(driver.ConvertMeshData(&part, mesh), 0);
    EXPECT_THAT(rowsOf(mesh.m_padCurvatures + 3, 3), ElementsAre(rows[2][0] / 0.001, rows[2][1] / 0.001, rows[2][2]));
}

TEST_F(Stage, AnEmptyMeshIsReportedAndFails)
{
    VOZCatMesh const empty;
    VOZMesh_s mesh;
    EXPECT_EQ(driver.ConvertMeshData(&empty, mesh), E_FAIL);
    EXPECT_THAT(reported(), ElementsAre("nNumNodes > 0 && padNodesXYZ", "padNodalNormals"));
    EXPECT_EQ(driver.ConvertMeshData(nullptr, mesh), E_FAIL);
}

TEST_F(Stage, ACornerThatIsNoNodeIsReportedByItsPlaceAndFails)
{
    struct
    {
        int corner, label;
        std::vector<std::string> texts;
    } const rows[] = {
        {0, 99, {"panNodeIndices[0] < nNumNodes && panNodeIndices[0] >= 0"}},
        {1, 0, {"panNodeIndices[1] < nNumNodes && panNodeIndices[1] >= 0"}},
        {2, -5, {"panNodeIndices[2] < nNumNodes && panNodeIndices[2] >= 0"}},
        {2,
         99,
         {"panNodeIndices[2] < nNumNodes && panNodeIndices[2] >= 0",
          "panNodeIndices[2] < nNumNodes && panNodeIndices[3] >= 0"}},
        {3, 0, {"panNodeIndices[2] < nNumNodes && panNodeIndices[3] >= 0"}},
        {3, std::numeric_limits<int>::min(), {}}, // wraps round to a number above all nodes
        {3, 99, {}},                              // nobody looks at this bound before the boundaries are evaluated
    };
    for (auto const & row : rows)
    {
        VOZCatMesh mesh(part);
        mesh.GetElemData()[2][row.corner] = row.label;
        host.reports.clear();
        VOZMesh_s record;
        EXPECT_EQ(driver.ConvertMeshData(&mesh, record), E_FAIL) << row.corner << " " << row.label;
        std::vector<std::string> contracts;
        for (std::string const & text : reported())
            if (text.find("panNodeIndices") != std::string::npos)
                contracts.push_back(text);
        EXPECT_EQ(contracts, row.texts) << row.corner << " " << row.label;
    }
}

// The stage

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

// What acts on the sheet

TEST_F(Stage, AHolderEdgeIsARecordAndTheBaseClassesForceIsNotKept)
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
TEST_F(Stage, TheForceEvaluationGetsTheKernelsRecords)
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

TEST_F(Stage, WithoutAHolderNoRecordGoesInAndWithNoEdgesItFails)
{
    fillStage();
    EXPECT_EQ(driver.conditions().m_pasBHFs, nullptr);
    EXPECT_EQ(driver.SetBlankHolderForce(), 0);
    property.sizeBlankHolders(1);
    EXPECT_EQ(driver.SetBlankHolderForce(), E_FAIL);
}

TEST_F(Stage, HolderRowsThatAreMissingLeaveRecordsAsTheyAreMade)
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

TEST_F(Stage, ABeadEdgeIsARecord)
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

TEST_F(Stage, APadRubsOnItsElementsAndALaterOneOverwrites)
{
    property.sizePressPads(2);
    givePad(1, 2e6, {1, 3, 6, 7, 0});
    givePad(2, 7e6, {3});
    fillStage();
    EXPECT_THAT(rowsOf(driver.conditions().m_padPressureFrictionValues, 6),
                ElementsAre(2e6 * 0.12, 0.0, 7e6 * 0.12, 0.0, 0.0, 2e6 * 0.12));
}

TEST_F(Stage, TablesTakeOneRecordOfTwoPlacesANode)
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

TEST_F(Stage, SymmetryNodesComeBehindTheTablesAndTheirCountIsNotDoubled)
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

TEST_F(Stage, WithOnePlaneTheListIsThatOfTheYZPlane)
{
    symmetry = Symmetry(true, false);
    fillStage();
    EXPECT_EQ(driver.conditions().m_nNumNodeConstraints2D, 0);
    symmetry = Symmetry(false, true);
    fillStage();
    EXPECT_EQ(driver.conditions().m_nNumNodeConstraints2D, driver.m_pSymmetryFilter->numYZsymmetry());
    EXPECT_GT(driver.conditions().m_nNumNodeConstraints2D, 0);
}

TEST_F(Stage, ConditionsNeedTheirObjects)
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
TEST_F(Stage, OperationsOfDerivedClassesAreHiddenNotOverridden)
{
    class Derived : public Probe
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

// Nearest nodes

TEST_F(Stage, TheNearestNodesAreZeroBasedAndTheFirstOfEqualsCounts)
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

TEST_F(Stage, NearestNodesAgreeWithASearch)
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

TEST_F(Stage, APlaceThatIsNoNumberOrBeyondAllFloatsHasNoNode)
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

TEST_F(Stage, AOneStageRunSolvesAndFillsTheStage)
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

TEST_F(Stage, ARunNeedsAFolderAndACleanBoundary)
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
TEST_F(Stage, TheKernelsErrorsPassThrough)
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

TEST_F(Stage, ASecondRunStartsAnew)
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

TEST_F(Stage, TheAutoStrainRecordHasNodesReferenceFirstAndStrainsTargetFirst)
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

TEST_F(Stage, AStrainOfMinus98PercentHasAFixedLogarithm)
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

TEST_F(WaysToSolve, ALostAutoStrainRecordIsReportedAndFails)
{
    property.setAutoStrain(nullptr, nullptr, 1.0, 0.0, 0.0, true);
    std::vector<std::string> const lostRecord = {"AssertionFailed:psAutoBCData"};
    bool isFound = false;
    bool refused = true;
    for (int number = 2; refused && !isFound; ++number)
    {
        host.reports.clear();
        FailingNew const failing(number);
        Probe lost;
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

// Memory

TEST_F(Stage, EveryAllocationThatFailsIsReportedByItsTextAndFailsTheFilling)
{
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
        Probe filler;
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
