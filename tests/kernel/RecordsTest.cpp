// RecordsTest.cpp: constructor values and ownership of the kernel's records. Sizes and offsets stand beside the
// records as static assertions.

#include "VOZFormingResult.h"
#include "VOZMechanicalProp.h"
#include "VOZMesh.h"
#include "VOZMultiStageSolverIOData.h"
#include "VOZSolverAutoBC.h"
#include "VOZSolverBCData.h"

#include <gtest/gtest.h>

#include <cstring>
#include <new>
#include <string>
#include <vector>

namespace
{

// Built over a pattern, so that a field that the constructor forgets shows.
template <class Record>
struct Built
{
    Built()
    {
        std::memset(place, 0x5C, sizeof place);
        record = new (place) Record;
    }
    ~Built() { record->~Record(); }

    alignas(Record) unsigned char place[sizeof(Record)];
    Record * record;
};

std::vector<unsigned char> bytes(void const * place, std::size_t size)
{
    auto const * const first = static_cast<unsigned char const *>(place);
    return {first, first + size};
}

TEST(KernelRecords, ABlankHolderEdgeStartsWithElementZeroNoForceAndPositionsMinusOne)
{
    Built<VOZSolverBHF_s> built;
    EXPECT_EQ(built.record->m_nElement, 0);
    EXPECT_EQ(built.record->m_dForce, 0.0);
    EXPECT_EQ(built.record->m_nFirstPosition, -1);
    EXPECT_EQ(built.record->m_nSecondPosition, -1);
}

TEST(KernelRecords, ABeadSegmentStartsWithElementMinusOneAndZeros)
{
    Built<VOZSolverDrawbead_s> built;
    EXPECT_EQ(built.record->m_nElement, -1);
    EXPECT_EQ(built.record->m_dForce, 0.0);
    EXPECT_EQ(built.record->m_dUplift, 0.0);
    for (double value : built.record->m_adEdgeValues)
        EXPECT_EQ(value, 0.0);
}

TEST(KernelRecords, ANodeConstraintStartsWithNodeMinusOneAndZeros)
{
    Built<VOZSolverNodeConstraint2D_s> built;
    EXPECT_EQ(built.record->m_nNode, -1);
    EXPECT_EQ(built.record->m_dAngle, 0.0);
    EXPECT_EQ(built.record->m_dDisplacement, 0.0);
    EXPECT_EQ(built.record->m_dReserved24, 0.0);
}

TEST(KernelRecords, AnElementStartsWithIndicesMinusOneAndMaterialZero)
{
    Built<VOZElement_s> built;
    for (int node : built.record->m_anNodeIndices)
        EXPECT_EQ(node, -1);
    EXPECT_EQ(built.record->GetMaterialIndex(), 0);
}

TEST(KernelRecords, AnAutoStrainRecordStartsWithoutNodes)
{
    Built<VOZSolverAutoBC_s> built;
    EXPECT_EQ(built.record->m_nReferenceNode, -1);
    EXPECT_EQ(built.record->m_nTargetNode, -1);
    EXPECT_EQ(built.record->m_dTargetStrain, 0.0);
    EXPECT_EQ(built.record->m_dReferenceStrain, 0.0);
    EXPECT_EQ(built.record->m_dValue, 0.0);
}

// Zero bytes throughout: no pattern of the memory shines through, reserved fields included.
TEST(KernelRecords, RecordsWithoutOwnStartValuesStartAtZero)
{
    {
        Built<VOZMechanicalProp_s> built;
        EXPECT_EQ(bytes(built.place, 104), std::vector<unsigned char>(104, 0));
    }
    {
        Built<VOZMesh_s> built;
        EXPECT_EQ(bytes(built.place, 80), std::vector<unsigned char>(80, 0));
    }
    {
        Built<VOZTopologyMesh_s> built;
        EXPECT_EQ(bytes(built.place, 32), std::vector<unsigned char>(32, 0));
    }
    {
        Built<VOZSolverBCData_s> built;
        EXPECT_EQ(bytes(built.place, 128), std::vector<unsigned char>(128, 0));
    }
    {
        Built<VOZSBConstraints_s> built;
        EXPECT_EQ(bytes(built.place, 24), std::vector<unsigned char>(24, 0));
    }
    {
        Built<VOZMultiStageSolverIOData_s> built;
        EXPECT_EQ(bytes(built.place, 96), std::vector<unsigned char>(96, 0));
    }
}

TEST(KernelRecords, AStageStartsInTheGlobalFrame)
{
    Built<VOZSolverStage_s> built;
    double const identity[12] = {1, 0, 0, 0, 1, 0, 0, 0, 1, 0, 0, 0};
    EXPECT_EQ(std::memcmp(built.place + 8, identity, sizeof identity), 0);
    EXPECT_EQ(built.record->m_psPartMesh, nullptr);
    EXPECT_EQ(bytes(built.place + 104, 40), std::vector<unsigned char>(40, 0));
}

TEST(KernelRecords, AFormingResultKeepsItsMeshAndStartsEmpty)
{
    VOZMesh_s mesh;
    VOZFormingResult_s const result(&mesh);
    EXPECT_EQ(result.m_psMesh, &mesh);
    EXPECT_EQ(result.m_padStrainComponentsMid, nullptr);
    EXPECT_EQ(result.m_padStrainComponentsTop, nullptr);
    EXPECT_EQ(result.m_padStrainComponentsBot, nullptr);
    EXPECT_EQ(result.m_padEquivalentStress, nullptr);
    EXPECT_EQ(result.m_dPunchForce, 0.0);
}

TEST(KernelRecords, ClearingAFormingResultLeavesNothing)
{
    VOZFormingResult_s result(nullptr);
    result.m_padStrainComponentsTop = new double[12];
    result.m_padEquivalentStress = new double[12];
    result.m_dPunchForce = 3.0;
    result.Clear();
    EXPECT_EQ(result.m_padStrainComponentsTop, nullptr);
    EXPECT_EQ(result.m_padEquivalentStress, nullptr);
    EXPECT_EQ(result.m_dPunchForce, 0.0);
}

TEST(KernelRecords, AMeshWithoutTopologyHasNoNodesAndNoElements)
{
    VOZMesh_s const mesh;
    EXPECT_EQ(mesh.GetNumNodes(), 0);
    EXPECT_EQ(mesh.GetNumElements(), 0);
    EXPECT_EQ(mesh.GetElements(), nullptr);
}

TEST(KernelRecords, AMeshReadsCountsAndElementsFromItsTopology)
{
    VOZMesh_s mesh;
    auto * const elements = new VOZElement_s[2];
    auto * const topology = new VOZTopologyMesh_s;
    topology->SetNodesElements(5, 2, elements);
    mesh.SetData(new double[15], nullptr, nullptr, true, topology);
    EXPECT_EQ(mesh.GetNumNodes(), 5);
    EXPECT_EQ(mesh.GetNumElements(), 2);
    EXPECT_EQ(mesh.GetElements(), elements);
    EXPECT_EQ(mesh.m_psTopology, topology);
}

// The address sanitizer watches the two tests below: nothing is freed twice and nothing is left.
TEST(KernelRecords, ASharedTopologyIsFreedByItsOwnerAloneInEitherOrder)
{
    for (bool ownerFirst : {true, false})
    {
        auto * const topology = new VOZTopologyMesh_s;
        topology->SetNodesElements(3, 1, new VOZElement_s[1]);
        auto * const owner = new VOZMesh_s;
        owner->SetData(new double[9], new double[9], new double[3], true, topology);
        auto * const guest = new VOZMesh_s;
        guest->SetData(new double[9], new double[9], new double[3], false, topology);
        delete (ownerFirst ? owner : guest);
        delete (ownerFirst ? guest : owner);
    }
}

TEST(KernelRecords, ASecondCallOfASetterFreesWhatTheFirstOneGave)
{
    VOZMesh_s mesh;
    VOZSolverBCData_s bc;
    VOZSolverStage_s stage;
    VOZMultiStageSolverIOData_s data;
    for (int turn = 0; turn < 2; ++turn)
    {
        mesh.SetData(new double[9], new double[9], new double[3], true, new VOZTopologyMesh_s);
        mesh.SetElementsStatus(new int[1]);
        bc.SetBHFs(1, new VOZSolverBHF_s[1]);
        bc.SetDrawbeads(1, new VOZSolverDrawbead_s[1]);
        bc.SetNodeConstraints2D(1, new VOZSolverNodeConstraint2D_s[1]);
        bc.SetPressureFrictionValues(new double[1]);
        stage.SetPartMeshData(new VOZMesh_s);
        stage.SetBlankMeshData(new VOZMesh_s);
        stage.SetBCData(new VOZSolverBCData_s);
        stage.SetFormingResult(new VOZFormingResult_s(nullptr));
        data.SetMaterialData(1, new double[1], new VOZMechanicalProp_s[1]);
        data.SetStagesData(1, new VOZSolverStage_s[1]);
        data.SetBinderMeshData(new VOZMesh_s, new VOZMesh_s);
    }
    bc.m_psSBConstraints = new VOZSBConstraints_s;
    bc.m_psSBConstraints->m_panNodeIndices = new int[2];
    bc.m_psSBConstraints->m_panCodes = new int[2];
}

TEST(KernelRecords, HandingOverTheSameArrayAgainKeepsIt)
{
    VOZSolverBCData_s bc;
    auto * const constraints = new VOZSolverNodeConstraint2D_s[2];
    bc.SetNodeConstraints2D(2, constraints);
    constraints[1].m_nNode = 7; // drivers fill the array after handing it over
    bc.SetNodeConstraints2D(2, constraints);
    EXPECT_EQ(bc.m_pasNodeConstraints2D[1].m_nNode, 7);
}

TEST(KernelRecords, TheFrameIsCopied)
{
    double rows[9] = {0, 1, 0, -1, 0, 0, 0, 0, 1};
    double origin[3] = {1, 2, 3};
    VOZSolverStage_s stage;
    stage.SetLocalCS(rows, origin);
    rows[0] = origin[0] = 99.0;
    EXPECT_EQ(stage.m_adLocalCS[0], 0.0);
    EXPECT_EQ(stage.m_adLocalCS[3], -1.0);
    EXPECT_EQ(stage.m_adOrigin[0], 1.0);
    EXPECT_EQ(stage.m_adOrigin[2], 3.0);
    stage.SetLocalCS(nullptr, nullptr);
    EXPECT_EQ(stage.m_adLocalCS[3], -1.0);
    EXPECT_EQ(stage.m_adOrigin[2], 3.0);
}

TEST(KernelRecords, NamesAreCopiedAndANullNameClearsThem)
{
    unsigned short folder[] = {'/', 't', 0x00E4, 0};
    VOZMultiStageSolverIOData_s data;
    data.SetWorkingDir(folder);
    data.SetSummaryFileName(folder);
    folder[0] = 'X';
    EXPECT_EQ(data.m_strWorkingDir[0], '/');
    EXPECT_EQ(data.m_strWorkingDir[2], 0x00E4);
    EXPECT_EQ(data.m_strWorkingDir[3], 0);
    data.SetWorkingDir(data.m_strWorkingDir);
    EXPECT_EQ(data.m_strWorkingDir[1], 't');
    data.SetSummaryFileName(nullptr);
    EXPECT_EQ(data.m_strSummaryFileName, nullptr);
}

TEST(KernelRecords, TheProcessFlagAndTheFrictionAreKept)
{
    VOZSolverBCData_s bc;
    bc.SetProcess(true, 0.144);
    EXPECT_EQ(bc.m_bProcess, 1);
    EXPECT_EQ(bc.m_dFriction, 0.144);
}

// Completing a record.

TEST(MechanicalProp, WithoutATableTheCurveIsAPowerLaw)
{
    VOZMechanicalProp_s prop;
    prop.m_nCurveType = 2;
    prop.m_dKValue = 5.0e8;
    VOZMechanicalProp_s::EvalMechanicalDataForSolver(prop);
    EXPECT_EQ(prop.m_nCurveType, 0);
    EXPECT_EQ(prop.m_dYield, 0.0); // no yield stress is invented: the curve begins at the origin
    EXPECT_EQ(prop.m_dKValue, 5.0e8);
}

TEST(MechanicalProp, WithATableTheTypeIsTwoAndTheYieldIsItsFirstStress)
{
    VOZMechanicalProp_s prop;
    prop.m_nNumPoints = 2;
    prop.m_padPoints = new double[4]{0.0, 1.6e8, 0.2, 4.0e8};
    VOZMechanicalProp_s::EvalMechanicalDataForSolver(prop);
    EXPECT_EQ(prop.m_nCurveType, 2);
    EXPECT_EQ(prop.m_dYield, 1.6e8);
}

TEST(MechanicalProp, GivenValuesStand)
{
    VOZMechanicalProp_s prop;
    prop.m_nNumPoints = 2;
    prop.m_padPoints = new double[4]{0.0, 1.6e8, 0.2, 4.0e8};
    prop.m_dYield = 1.5e8;
    prop.m_dYoungsModulus = 7.0e10;
    prop.m_dPoisson = 0.33;
    VOZMechanicalProp_s::EvalMechanicalDataForSolver(prop);
    VOZMechanicalProp_s::EvalMechanicalDataForSolver(prop);
    EXPECT_EQ(prop.m_dYield, 1.5e8);
    EXPECT_EQ(prop.m_dYoungsModulus, 7.0e10);
    EXPECT_EQ(prop.m_dPoisson, 0.33);
}

TEST(MechanicalProp, MissingModuliBecomeThoseOfSteel)
{
    VOZMechanicalProp_s prop;
    VOZMechanicalProp_s::EvalMechanicalDataForSolver(prop);
    EXPECT_EQ(prop.m_dYoungsModulus, 2.1e11);
    EXPECT_EQ(prop.m_dPoisson, 0.3);
}

} // namespace
