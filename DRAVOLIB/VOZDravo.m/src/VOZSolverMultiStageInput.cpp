// VOZSolverMultiStageInput.cpp: the process data on their way into the kernel's stage.
//
// Lengths become metres, nodes and elements 0-based; prescribed displacements pass as they stand. What a record takes
// is the record's from that line on. A step that fails leaves no stage.

#include "VOZSolverMultiStage.h"

#include "SolverConditions.h"
#include "SolverRows.h"

#include "CATError.h"
#include "CATFatalError.h"
#include "Material.h"
#include "VOZBHFConfig.h"
#include "VOZCatAxis.h"
#include "VOZFormingResult.h"
#include "VOZMaterial.h"
#include "VOZMechanicalProp.h"
#include "VOZMesh.h"
#include "VOZMeshUtil.h"
#include "VOZMultiStageSolverIOData.h"
#include "VOZSolverBCData.h"
#include "VOZStatus.h"

#include <algorithm>
#include <utility>

using namespace solverrows;

namespace
{
constexpr int kControl = 3; // both control integers
constexpr double kControlValue = 1.0;
constexpr int kNoNode = -2; // -1 in a fourth place would make a triangle of the element
constexpr double kAlongX = 0.0;
constexpr double kAlongY = 1.5707963267948966;
constexpr double kBothDirections = 1001.0; // in the place of an angle: the node does not move at all

int ZeroBased(int i_nLabel, int i_nFirst)
{
    return meshrows::positionOf(meshrows::positionOf(i_nLabel, i_nFirst), 1);
}

// Corners of an element; false for the caller's stride if it is a triangle.
bool FillElement(int const * i_panRow, int i_nFirstNode, int nNumNodes, VOZElement_s & io_element)
{
    int * const panNodeIndices = io_element.m_anNodeIndices;
    for (int k = 0; k < 3; ++k)
        panNodeIndices[k] = ZeroBased(i_panRow[k], i_nFirstNode);
    VOZ_CONTRACT(panNodeIndices[0] < nNumNodes && panNodeIndices[0] >= 0,
                 "panNodeIndices[0] < nNumNodes && panNodeIndices[0] >= 0");
    VOZ_CONTRACT(panNodeIndices[1] < nNumNodes && panNodeIndices[1] >= 0,
                 "panNodeIndices[1] < nNumNodes && panNodeIndices[1] >= 0");
    VOZ_CONTRACT(panNodeIndices[2] < nNumNodes && panNodeIndices[2] >= 0,
                 "panNodeIndices[2] < nNumNodes && panNodeIndices[2] >= 0");
    if (meshrows::isTriangle(i_panRow))
        return false;
    panNodeIndices[3] = ZeroBased(i_panRow[3], i_nFirstNode);
    // This contract looks at the third corner's upper bound, as its text says; EvalMeshBoundaries sees the fourth's.
    if (!VOZ_CONTRACT(panNodeIndices[2] < nNumNodes && panNodeIndices[3] >= 0,
                      "panNodeIndices[2] < nNumNodes && panNodeIndices[3] >= 0"))
        panNodeIndices[3] = std::min(panNodeIndices[3], kNoNode);
    return true;
}

std::unique_ptr<double[]> NewCoordinates(meshrows::Rows const & i_rows)
{
    int const nNumNodes = i_rows.numNode;
    double const(*const padNodesXYZ)[3] = i_rows.nodes;
    if (!VOZ_CONTRACT(nNumNodes > 0 && padNodesXYZ, "nNumNodes > 0 && padNodesXYZ"))
        return nullptr;
    auto padNodalCoords = NewRows<double>(nNumNodes, 3);
    if (VOZ_CONTRACT(padNodalCoords != nullptr, "padNodalCoords"))
        CopyCoordinates(i_rows, padNodalCoords.get());
    return padNodalCoords;
}

std::unique_ptr<double[]> NewNormals(VOZCatMesh const & i_mesh)
{
    double * padNodalNormals = nullptr;
    i_mesh.EvalNodesNormal(padNodalNormals);
    VOZ_CONTRACT(padNodalNormals != nullptr, "padNodalNormals");
    return std::unique_ptr<double[]>(padNodalNormals);
}

// The kernel's data of a material, completed. False if memory runs out.
bool FillProperty(VOZMaterial const & i_material, VOZMechanicalProp_s & io_prop)
{
    i_material.EvalMechanicalDataForSolver(io_prop);
    if (!VOZ_ASSERTION(CopyTable(i_material, io_prop), "pasMaterialProperties[i].m_padPoints"))
        return false;
    VOZMechanicalProp_s::EvalMechanicalDataForSolver(io_prop);
    return true;
}

// The direction in which a table holds its nodes; false if it holds neither x nor y.
bool FillDirection(DispBC const & i_table, VOZSolverNodeConstraint2D_s & io_record)
{
    bool const isX = i_table.flags[0] != 0;
    bool const isY = i_table.flags[1] != 0;
    if (isX && isY)
        io_record.m_dAngle = kBothDirections; // and the two values are dropped
    else if (isX || isY)
    {
        io_record.m_dAngle = isX ? kAlongX : kAlongY;
        io_record.m_dDisplacement = i_table.values[isX ? 0 : 1];
    }
    return isX || isY;
}
} // namespace

long VOZSolverMultiStage::ConvertMeshData(VOZCatMesh const * i_pMesh, VOZMesh_s & o_mesh)
{
    if (i_pMesh == nullptr)
        return E_FAIL;
    meshrows::Rows const rows(*i_pMesh);
    auto pasElements = NewRows<VOZElement_s>(rows.numElem);
    if (!VOZ_CONTRACT(pasElements != nullptr, "pasElements"))
        return E_FAIL;
    for (int e = 1; e <= rows.numElem; ++e)
        if (FillElement(rows.elems[e], rows.firstNode, rows.numNode, pasElements[static_cast<std::size_t>(e) - 1]))
            m_nNbIntegrationPoints = 4;
    std::unique_ptr<VOZTopologyMesh_s> psTopologyMesh(new (std::nothrow) VOZTopologyMesh_s);
    if (!VOZ_CONTRACT(psTopologyMesh != nullptr, "psTopologyMesh"))
        return E_FAIL;
    psTopologyMesh->SetNodesElements(rows.numNode, rows.numElem, pasElements.release());

    auto padNodalCoords = NewCoordinates(rows);
    auto padNodalNormals = NewNormals(*i_pMesh);
    bool isWhole = padNodalCoords != nullptr && padNodalNormals != nullptr;
    std::unique_ptr<double[]> padCurvatures;
    if (i_pMesh->GetCrvData() != nullptr)
    {
        padCurvatures = NewRows<double>(rows.numElem, 3);
        isWhole = isWhole && padCurvatures != nullptr;
        if (padCurvatures != nullptr)
            CopyCurvatures(i_pMesh->GetCrvData(), rows.numElem, padCurvatures.get());
    }
    o_mesh.SetData(padNodalCoords.release(), padNodalNormals.release(), padCurvatures.release(), true,
                   psTopologyMesh.release());
    return isWhole && VOZMeshUtil::EvalMeshBoundaries(&o_mesh) ? 0 : E_FAIL;
}

// What a stage before this one left, and what a stage that could not be finished leaves, rows still in the making
// included.
void VOZSolverMultiStage::DropStage()
{
    Keep<VOZSolverBHF_s>(m_pasBHFs, nullptr);
    Keep<VOZSolverDrawbead_s>(m_pasDrawbeads, nullptr);
    Keep<VOZSolverNodeConstraint2D_s>(m_pasNodeConstraints2D, nullptr);
    Keep<double>(m_padPressureFrictionValues, nullptr);
    m_psFormingResult = nullptr;
    m_psBCData = nullptr;
    if (m_psIOData == nullptr)
        return;
    m_psIOData->SetBinderMeshData(nullptr, nullptr);
    m_psIOData->SetStagesData(0, nullptr);
}

long VOZSolverMultiStage::FillInXenSolverData()
{
    DropStage();
    if (PartMesh() == nullptr || m_psIOData == nullptr || m_pElemProperty == nullptr || m_pAxis == nullptr)
        return E_FAIL;
    long const status = CATXHContext::Guard([this] { return FillInJob(); }, [this] { DropStage(); });
    if (status != 0)
        DropStage();
    return status;
}

long VOZSolverMultiStage::FillInJob()
{
    if (m_szSummaryFile[0] != 0)
        m_psIOData->SetSummaryFileName(m_szSummaryFile);
    if (m_szWorkDir[0] != 0)
        m_psIOData->SetWorkingDir(m_szWorkDir);
    m_psIOData->m_nFirstControl = kControl;
    m_psIOData->m_nSecondControl = kControl;
    m_psIOData->m_dControl = kControlValue;

    std::unique_ptr<VOZMesh_s> psMainMesh(new (std::nothrow) VOZMesh_s);
    if (!VOZ_ASSERTION(psMainMesh != nullptr, "psMainMesh"))
        return E_FAIL;
    psMainMesh->m_nProcessMode = m_nProcessMode;
    if (ConvertMeshData(PartMesh(), *psMainMesh) != 0)
        return E_FAIL;
    int const nNumPartNodes = psMainMesh->GetNumNodes();
    int const nNumPartElements = psMainMesh->GetNumElements();
    VOZ_CONTRACT(nNumPartNodes > 0 && nNumPartElements > 0, "nNumPartNodes > 0 && nNumPartElements > 0");

    if (FillInMaterials() != 0)
        return E_FAIL;
    FillInMaterialIndices(*psMainMesh);
    if (BinderMesh() != nullptr && FillInBinder(*psMainMesh) != 0)
        return E_FAIL;
    return FillInStage(psMainMesh.release());
}

long VOZSolverMultiStage::FillInMaterials()
{
    int const nNumMaterials = m_pElemProperty->sizeProperty();
    VOZ_ASSERTION(nNumMaterials > 0, "nNumMaterials > 0");
    auto padInitMaterialThickness = NewRows<double>(nNumMaterials);
    if (!VOZ_ASSERTION(padInitMaterialThickness != nullptr, "padInitMaterialThickness"))
        return E_FAIL;
    auto pasMaterialProperties = NewRows<VOZMechanicalProp_s>(nNumMaterials);
    if (!VOZ_ASSERTION(pasMaterialProperties != nullptr, "pasMaterialProperties"))
        return E_FAIL;
    for (int i = 0; i < nNumMaterials; ++i)
    {
        VOZMaterial const & material = *m_pElemProperty->material(i + 1);
        padInitMaterialThickness[static_cast<std::size_t>(i)] = material.m_dThickness;
        if (!FillProperty(material, pasMaterialProperties[static_cast<std::size_t>(i)]))
            return E_FAIL;
    }
    m_psIOData->SetMaterialData(nNumMaterials, padInitMaterialThickness.release(), pasMaterialProperties.release());
    return 0;
}

// With one material every element has the first one, whatever its property is.
void VOZSolverMultiStage::FillInMaterialIndices(VOZMesh_s & io_mesh)
{
    if (m_pElemProperty->sizeProperty() <= 1)
        return;
    for (int e = 1; e <= io_mesh.GetNumElements(); ++e)
    {
        VOZElement_s * const psElement = io_mesh.GetElements() + (e - 1);
        psElement->m_nMaterialIndex = PropertyOf(*m_pElemProperty, e) - 1;
        VOZ_ASSERTION(psElement->GetMaterialIndex() >= 0, "psElement->GetMaterialIndex() >= 0");
    }
}

// A mesh on the part's topology, with places for what the kernel writes; null, with the loss reported, if memory runs
// out.
VOZMesh_s * VOZSolverMultiStage::NewMeshLike(VOZMesh_s & i_mainMesh) const
{
    auto padNodesXYZ = NewRows<double>(i_mainMesh.GetNumNodes(), 3);
    auto padNodeNormalsXYZ = NewRows<double>(i_mainMesh.GetNumNodes(), 3);
    auto padCurvatureComponents = NewRows<double>(i_mainMesh.GetNumElements(), 3);
    std::unique_ptr<VOZMesh_s> mesh(new (std::nothrow) VOZMesh_s);
    if (mesh == nullptr || padNodesXYZ == nullptr || padNodeNormalsXYZ == nullptr || padCurvatureComponents == nullptr)
        return nullptr;
    mesh->SetData(padNodesXYZ.release(), padNodeNormalsXYZ.release(), padCurvatureComponents.release(), false,
                  i_mainMesh.m_psTopology);
    mesh->m_nProcessMode = m_nProcessMode;
    return mesh.release();
}

long VOZSolverMultiStage::FillInBinder(VOZMesh_s & i_mainMesh)
{
    std::unique_ptr<VOZMesh_s> psBlankOnBinderMesh(NewMeshLike(i_mainMesh));
    if (!VOZ_ASSERTION(psBlankOnBinderMesh != nullptr, "psBlankOnBinderMesh"))
        return E_FAIL;
    std::unique_ptr<VOZMesh_s> psBinderMesh(new (std::nothrow) VOZMesh_s);
    if (!VOZ_CONTRACT(psBinderMesh != nullptr, "psBinderMesh"))
        return E_FAIL;
    psBinderMesh->m_nProcessMode = m_nProcessMode;
    if (ConvertMeshData(BinderMesh(), *psBinderMesh) != 0)
        return E_FAIL;
    m_psIOData->SetBinderMeshData(psBinderMesh.release(), psBlankOnBinderMesh.release());
    return 0;
}

long VOZSolverMultiStage::FillInStage(VOZMesh_s * i_psMainMesh)
{
    std::unique_ptr<VOZMesh_s> psMainMesh(i_psMainMesh);
    auto pasStages = NewRows<VOZSolverStage_s>(1);
    if (!VOZ_CONTRACT(pasStages != nullptr, "pasStages"))
        return E_FAIL;
    VOZSolverStage_s & stage = pasStages[0];
    double adRows[9];
    double adOrigin[3];
    CopyFrame(*m_pAxis, adRows, adOrigin);
    stage.SetLocalCS(adRows, adOrigin);

    VOZMesh_s * const psBlankMesh = NewMeshLike(*psMainMesh);
    if (!VOZ_CONTRACT(psBlankMesh != nullptr, "psBlankMesh"))
        return E_FAIL;
    stage.SetPartMeshData(psMainMesh.release());
    stage.SetBlankMeshData(psBlankMesh);
    auto * const psFormingResult = new (std::nothrow) VOZFormingResult_s(stage.m_psPartMesh);
    if (!VOZ_CONTRACT(psFormingResult != nullptr, "psFormingResult"))
        return E_FAIL;
    stage.SetFormingResult(psFormingResult);
    m_psBCData = new VOZSolverBCData_s;
    stage.SetBCData(m_psBCData);
    if (SetBoundaryConditions() != 0)
        return E_FAIL;
    m_psIOData->SetStagesData(1, pasStages.release());
    return 0;
}

long VOZSolverMultiStage::SetBoundaryConditions()
{
    if (m_psBCData == nullptr || m_pFriction == nullptr || EvalBoundaries() != 0)
        return E_FAIL;
    if (SetBlankHolderForce() != 0 || SetDrawBeads() != 0 || SetPressurePads() != 0 || SetDispConstraints() != 0)
        return E_FAIL;
    m_psBCData->SetProcess(m_bProcessFlag != 0, m_pFriction->coefficient());
    return 0;
}

long VOZSolverMultiStage::SetBlankHolderForce()
{
    if (m_pElemProperty == nullptr || m_pFullBlankHolder == nullptr || m_pProcessEdges == nullptr ||
        m_pFriction == nullptr || PartMesh() == nullptr)
        return E_FAIL;
    if (m_pElemProperty->sizeBlankHolders() == 0 && !m_pFullBlankHolder->isActive())
        return 0;
    if (m_psBCData == nullptr || m_psIOData == nullptr)
        return E_FAIL;
    VOZBHFConfig config(m_pFriction, m_pFullBlankHolder, m_pElemProperty, m_pProcessEdges);
    config.EvalForce(m_psIOData->m_pasMaterialProperties, m_psIOData->m_nNumMaterials);

    int const nCount = conditions::CountHeldEdges(*m_pElemProperty, *m_pProcessEdges);
    if (nCount == 0)
        return E_FAIL;
    Keep(m_pasBHFs, NewRows<VOZSolverBHF_s>(nCount));
    if (!VOZ_ASSERTION(m_pasBHFs != nullptr, "m_pasBHFs"))
        return E_FAIL;
    VOZSolverBHF_s * psBHF = m_pasBHFs;
    conditions::ForEachHeldEdge(*PartMesh(), *m_pFreeEdge, *m_pProcessEdges, *m_pElemProperty, config.m_dRestraint,
                                m_pFriction->coefficient(),
                                [&](int element, double force, int first, int second)
                                {
                                    psBHF->m_nElement = element;
                                    psBHF->m_dForce = force;
                                    psBHF->m_nFirstPosition = first;
                                    psBHF->m_nSecondPosition = second;
                                    ++psBHF;
                                });
    m_psBCData->SetBHFs(nCount, std::exchange(m_pasBHFs, nullptr));
    return 0;
}

long VOZSolverMultiStage::SetDrawBeads()
{
    if (m_pElemProperty == nullptr)
        return E_FAIL;
    int const nCount = conditions::CountBeadEdges(*m_pElemProperty);
    if (nCount == 0)
        return 0;
    if (m_psBCData == nullptr)
        return E_FAIL;
    Keep(m_pasDrawbeads, NewRows<VOZSolverDrawbead_s>(nCount));
    if (!VOZ_ASSERTION(m_pasDrawbeads != nullptr, "m_pasDrawbeads"))
        return E_FAIL;
    VOZSolverDrawbead_s * psDrawbead = m_pasDrawbeads;
    conditions::ForEachBeadEdge(*m_pElemProperty,
                                [&](EdgeProperty const & edge, double force, double uplift)
                                {
                                    psDrawbead->m_nElement = meshrows::positionOf(edge.element, 1);
                                    psDrawbead->m_dForce = force;
                                    psDrawbead->m_dUplift = uplift;
                                    std::copy_n(edge.edgeValues, 4, psDrawbead->m_adEdgeValues);
                                    ++psDrawbead;
                                });
    m_psBCData->SetDrawbeads(nCount, std::exchange(m_pasDrawbeads, nullptr));
    return 0;
}

long VOZSolverMultiStage::SetPressurePads()
{
    if (m_pElemProperty == nullptr)
        return E_FAIL;
    if (conditions::CountPadElements(*m_pElemProperty) == 0)
        return 0;
    if (m_psBCData == nullptr || m_pFriction == nullptr || PartMesh() == nullptr)
        return E_FAIL;
    int const nNumElements = meshrows::Rows(*PartMesh()).numElem;
    Keep(m_padPressureFrictionValues, NewRows<double>(nNumElements));
    if (!VOZ_ASSERTION(m_padPressureFrictionValues != nullptr, "m_padPressureFrictionValues"))
        return E_FAIL;
    conditions::FillPadShear(*m_pElemProperty, m_pFriction->coefficient(), nNumElements, m_padPressureFrictionValues);
    m_psBCData->SetPressureFrictionValues(std::exchange(m_padPressureFrictionValues, nullptr));
    return 0;
}

// Two places are kept for each node of a table although it takes one: the rest stay at node -1, and the count that the
// kernel gets includes them.
long VOZSolverMultiStage::SetDispConstraints()
{
    if (m_pElemProperty == nullptr || m_pSymmetry == nullptr || m_pSymmetryFilter == nullptr)
        return E_FAIL;
    long long const nTableNodes = conditions::CountTableNodes(*m_pElemProperty);
    int const nCount =
        conditions::CountOf(2 * nTableNodes + conditions::CountSymmetryNodes(*m_pSymmetry, *m_pSymmetryFilter));
    if (nCount == 0)
        return 0;
    if (m_psBCData == nullptr)
        return E_FAIL;
    Keep(m_pasNodeConstraints2D, NewRows<VOZSolverNodeConstraint2D_s>(nCount));
    if (!VOZ_ASSERTION(m_pasNodeConstraints2D != nullptr, "m_pasNodeConstraints2D"))
        return E_FAIL;
    m_psBCData->SetNodeConstraints2D(nCount, std::exchange(m_pasNodeConstraints2D, nullptr));

    VOZSolverNodeConstraint2D_s * psConstraint = m_psBCData->m_pasNodeConstraints2D;
    conditions::ForEachTableNode(*m_pElemProperty,
                                 [&](int node, DispBC const & table)
                                 {
                                     if (FillDirection(table, *psConstraint))
                                         (psConstraint++)->m_nNode = meshrows::positionOf(node, 1);
                                 });
    conditions::ForEachSymmetryNode(*m_pSymmetry, *m_pSymmetryFilter,
                                    [&](int node, bool onYZ)
                                    {
                                        psConstraint->m_nNode = node - 1;
                                        psConstraint->m_dAngle = onYZ ? kAlongX : kAlongY;
                                        ++psConstraint;
                                    });
    return 0;
}
