// VOZSolverInput.cpp: the process data on their way into the record of the base driver.
//
// Lengths become metres, element numbers 0-based; prescribed displacements and the nodes that they act on pass as they
// stand. A step that fails leaves what was filled until the record goes.

#include "VOZSolver.h"

#include "SolverConditions.h"
#include "SolverRows.h"

#include "CATFatalError.h"
#include "Material.h"
#include "VOZBHFConfig.h"
#include "VOZCatAxis.h"
#include "VOZMaterial.h"
#include "VOZMechanicalProp.h"
#include "VOZSolverIOData.h"
#include "VOZStatus.h"

#include <algorithm>
#include <iterator>
#include <utility>

using namespace solverrows;

namespace
{
// The base record states its K in psi; a record that is solved has pascals throughout.
constexpr double kPascalsPerPsi = 6894.75729;

// Nodes, coordinates and corners, 1-based and 0 in a triangle's fourth place. E_FAIL if memory runs out.
long FillMesh(VOZCatMesh const & i_mesh, VOZBasicMeshData_s * o_pM, int & o_nNodesPerElem)
{
    meshrows::Rows const rows(i_mesh);
    o_pM->m_nNumNodes = rows.numNode;
    VOZ_ASSERTION(o_pM->m_nNumNodes > 0, "o_pM->m_nNumNodes > 0");
    Keep(o_pM->m_padNodalCoords, NewRows<double>(rows.numNode, 3));
    if (!VOZ_ASSERTION(o_pM->m_padNodalCoords != nullptr, "o_pM->m_padNodalCoords != NULL"))
        return E_FAIL;
    CopyCoordinates(rows, o_pM->m_padNodalCoords);

    o_pM->m_nNumElements = rows.numElem;
    VOZ_ASSERTION(o_pM->m_nNumElements > 0, "o_pM->m_nNumElements > 0");
    Keep(o_pM->m_panConnectivity, NewRows<int>(rows.numElem, 4));
    if (!VOZ_ASSERTION(o_pM->m_panConnectivity != nullptr, "o_pM->m_panConnectivity != NULL"))
        return E_FAIL;
    o_nNodesPerElem = 1;
    int * panCorner = o_pM->m_panConnectivity;
    for (int e = 1; e <= rows.numElem; ++e)
    {
        bool const isTriangle = meshrows::isTriangle(rows.elems[e]);
        if (!isTriangle)
            o_nNodesPerElem = 4;
        for (int k = 0; k < 4; ++k)
            *panCorner++ = k == 3 && isTriangle ? 0 : rows.corner(e, k);
    }

    Keep(o_pM->m_padCurvatureComponents, NewRows<double>(rows.numElem, 3));
    if (!VOZ_ASSERTION(o_pM->m_padCurvatureComponents != nullptr, "o_pM->m_padCurvatureComponents != NULL"))
        return E_FAIL;
    if (i_mesh.GetCrvData() != nullptr)
        CopyCurvatures(i_mesh.GetCrvData(), rows.numElem, o_pM->m_padCurvatureComponents);
    return 0;
}

long FillFrame(VOZCatAxis const & i_axis, VOZSolverIOData & io_record)
{
    auto padTippingMatrix = NewRows<double>(9);
    auto padOrigin = NewRows<double>(3);
    if (!VOZ_ASSERTION(padTippingMatrix && padOrigin, "padTippingMatrix && padOrigin"))
        return E_FAIL;
    CopyFrame(i_axis, padTippingMatrix.get(), padOrigin.get());
    Keep(io_record.m_padTippingMatrix, std::move(padTippingMatrix));
    Keep(io_record.m_padTippingOrigin, std::move(padOrigin));
    return 0;
}

// An empty name is not handed over.
template <std::size_t N>
void FillName(unsigned short const (&i_name)[N], unsigned short *& io_field, int & o_nLength)
{
    if (i_name[0] == 0)
        return;
    int const nLength = static_cast<int>(std::find(i_name, i_name + N, 0) - i_name);
    auto copy = std::make_unique<unsigned short[]>(static_cast<std::size_t>(nLength) + 1);
    std::copy_n(i_name, nLength, copy.get());
    Keep(io_field, std::move(copy));
    o_nLength = nLength;
}

// The record of a material, completed only if it has a table; false if memory runs out.
bool FillProperty(VOZMaterial const & i_material, VOZMechanicalProp_s & io_prop)
{
    io_prop.m_dNValue = i_material.m_dNValue;
    io_prop.m_dRValue = i_material.m_dRValue;
    io_prop.m_dKValue = i_material.m_dKValue * kPascalsPerPsi;
    if (!VOZ_ASSERTION(CopyTable(i_material, io_prop), "m_pSolverIOData->m_pasMaterialProperties[i].m_padPoints"))
        return false;
    if (io_prop.m_nNumPoints > 0)
        VOZMechanicalProp_s::EvalMechanicalDataForSolver(io_prop);
    return true;
}

long FillMaterialIndices(ElemProperty const & i_property, VOZSolverIOData & io_record)
{
    int const nNumElements = io_record.m_psMesh->m_nNumElements;
    Keep(io_record.m_panElemMaterialIndices, NewRows<int>(nNumElements));
    if (!VOZ_ASSERTION(io_record.m_panElemMaterialIndices != nullptr, "m_pSolverIOData->m_panElemMaterialIndices"))
        return E_FAIL;
    for (int e = 0; e < nNumElements; ++e)
        io_record.m_panElemMaterialIndices[e] = PropertyOf(i_property, e + 1) - 1;
    return 0;
}

long FillMaterials(ElemProperty const & i_property, VOZSolverIOData & io_record)
{
    int const nCount = i_property.sizeProperty();
    io_record.m_nNumMaterials = nCount;
    VOZ_ASSERTION(io_record.m_nNumMaterials > 0, "m_pSolverIOData->m_nNumMaterials > 0");
    if (FillMaterialIndices(i_property, io_record) != 0)
        return E_FAIL;
    Keep(io_record.m_padInitMaterialThickness, NewRows<double>(nCount));
    if (!VOZ_ASSERTION(io_record.m_padInitMaterialThickness != nullptr, "m_pSolverIOData->m_padInitMaterialThickness"))
        return E_FAIL;
    Keep(io_record.m_pasMaterialProperties, NewRows<VOZMechanicalProp_s>(nCount));
    if (!VOZ_ASSERTION(io_record.m_pasMaterialProperties != nullptr, "m_pSolverIOData->m_pasMaterialProperties"))
        return E_FAIL;
    for (int i = 0; i < nCount; ++i)
    {
        VOZMaterial const & material = *i_property.material(i + 1);
        io_record.m_padInitMaterialThickness[i] = material.m_dThickness;
        if (!FillProperty(material, io_record.m_pasMaterialProperties[i]))
            return E_FAIL;
    }
    return 0;
}

// The pads have no count: they are there if their array is.
void ZeroCounts(VOZSolverIOData & io_record)
{
    Keep<double>(io_record.m_padPressureFrictionValues, nullptr);
    io_record.m_nNumConstrainedNodes = 0;
    io_record.m_nUnused1 = 0;
    io_record.m_nUnused2 = 0;
    io_record.m_nNumDrawbeadSegments = 0;
    io_record.m_nUnused3 = 0;
    io_record.m_nNumBHFEdges = 0;
}

// Places for an answer, all zero. False if memory runs out.
bool AllocateOutputs(int i_nIntegrationPoints, VOZSolverIOData & io_record)
{
    int const nNumNodes = io_record.m_psMesh->m_nNumNodes;
    int const nNumElements = io_record.m_psMesh->m_nNumElements;
    bool isWhole = true;
    auto const place = [&](auto *& io_field, auto i_rows)
    {
        isWhole = isWhole && i_rows != nullptr;
        Keep(io_field, std::move(i_rows));
    };
    for (auto field : {&VOZSolverIOData::m_padNodalCoordsFlatBlank, &VOZSolverIOData::m_padNodalCoordsBlankOnBinder})
        place(io_record.*field, NewRows<double>(nNumNodes, 3));
    for (auto field : {&VOZSolverIOData::m_padStrainComponentsMid, &VOZSolverIOData::m_padStrainComponentsTop,
                       &VOZSolverIOData::m_padStrainComponentsBot, &VOZSolverIOData::m_padEquivalentStress})
        place(io_record.*field, NewRows<double>(nNumElements, 3 * i_nIntegrationPoints));
    for (auto field : {&VOZSolverIOData::m_pdEnergy, &VOZSolverIOData::m_pdPunchForce,
                       &VOZSolverIOData::m_pdMaxRelativeDisplacement, &VOZSolverIOData::m_pdRelativeDispersion})
        place(io_record.*field, NewRows<double>(1));
    place(io_record.m_pnNumOfIterationsUsedInSolver, NewRows<int>(1));
    return isWhole;
}
} // namespace

long VOZSolver::ConvertMeshData(VOZCatMesh const * i_pMesh, VOZBasicMeshData_s *& io_pM, int & o_nNodesPerElem)
{
    if (i_pMesh == nullptr)
        return E_FAIL;
    if (io_pM == nullptr)
        io_pM = new (std::nothrow) VOZBasicMeshData_s;
    if (!VOZ_ASSERTION(io_pM != nullptr, "o_pM != NULL"))
        return E_FAIL;
    return FillMesh(*i_pMesh, io_pM, o_nNodesPerElem);
}

long VOZSolver::FillInXenSolverData(VOZCatMesh const * i_pMesh, unsigned char i_bSkipConditions)
{
    if (i_pMesh == nullptr || m_pSolverIOData == nullptr || m_pElemProperty == nullptr || m_pAxis == nullptr ||
        m_pFriction == nullptr)
        return E_FAIL;
    VOZSolverIOData & record = *m_pSolverIOData;
    if (FillFrame(*m_pAxis, record) != 0)
        return E_FAIL;
    FillName(m_szSummaryFile, record.m_strSumFileName, record.m_nSumFileNameLength);
    FillName(m_szWorkDir, record.m_strWorkDir, record.m_nWorkDirLength);

    m_nNbIntegrationPoints = 1;
    VOZBasicMeshData_s * psMesh = nullptr;
    long const status = ConvertMeshData(i_pMesh, psMesh, m_nNbIntegrationPoints);
    std::unique_ptr<VOZBasicMeshData_s> mesh(psMesh);
    if (status != 0)
        return E_FAIL;
    record.m_nNodesPerElement = m_nNbIntegrationPoints;
    KeepOne(record.m_psMesh, std::move(mesh));

    if (FillMaterials(*m_pElemProperty, record) != 0)
        return E_FAIL;
    auto friction = std::make_unique<double[]>(1);
    friction[0] = m_pFriction->coefficient();
    Keep(record.m_pdAutobendingFriction, std::move(friction));
    KeepOne(record.m_psFlags, std::make_unique<VOZSolverFlags_s>());
    record.m_psFlags->m_nProcessMode = m_nProcessMode;
    record.m_psFlags->m_bProcess = m_bProcessFlag != 0;
    ZeroCounts(record);
    if (i_bSkipConditions == 0 && SetBoundaryConditions() != 0)
        return E_FAIL;
    return AllocateOutputs(m_nNbIntegrationPoints, record) ? 0 : E_FAIL;
}

long VOZSolver::SetBoundaryConditions()
{
    if (EvalBoundaries() != 0)
        return E_FAIL;
    if (SetBlankHolderForce() != 0 || SetDrawBeads() != 0 || SetPressurePads() != 0 || SetDispConstraints() != 0)
        return E_FAIL;
    return 0;
}

long VOZSolver::SetBlankHolderForce()
{
    if (m_pElemProperty == nullptr || m_pFullBlankHolder == nullptr || m_pProcessEdges == nullptr ||
        m_pFriction == nullptr || PartMesh() == nullptr)
        return E_FAIL;
    if (m_pElemProperty->sizeBlankHolders() == 0 && !m_pFullBlankHolder->isActive())
        return 0;
    VOZBHFConfig config(m_pFriction, m_pFullBlankHolder, m_pElemProperty, m_pProcessEdges);
    config.EvalForce(nullptr, 0);
    m_dBlankHolderForce = config.m_dForce * 1000.0;

    int const nCount = conditions::CountHeldEdges(*m_pElemProperty, *m_pProcessEdges);
    if (nCount == 0 || m_pSolverIOData == nullptr)
        return E_FAIL;
    m_pSolverIOData->m_nNumBHFEdges = nCount;
    Keep(m_pSolverIOData->m_pasBHFs, NewRows<VOZBHFEdge_s>(nCount));
    if (!VOZ_ASSERTION(m_pSolverIOData->m_pasBHFs != nullptr, "m_pSolverIOData->m_pasBHFs"))
        return E_FAIL;
    VOZBHFEdge_s * psBHF = m_pSolverIOData->m_pasBHFs;
    conditions::ForEachHeldEdge(*PartMesh(), *m_pFreeEdge, *m_pProcessEdges, *m_pElemProperty, config.m_dRestraint,
                                m_pFriction->coefficient(),
                                [&](int element, double force, int first, int second) {
                                    *psBHF++ = {element, force, first, second};
                                });
    VOZ_ASSERTION(psBHF - m_pSolverIOData->m_pasBHFs == m_pSolverIOData->m_nNumBHFEdges,
                  "psBHF - m_pSolverIOData->m_pasBHFs == m_pSolverIOData->m_nNumBHFEdges");
    return 0;
}

long VOZSolver::SetDrawBeads()
{
    if (m_pElemProperty == nullptr)
        return E_FAIL;
    int const nCount = conditions::CountBeadEdges(*m_pElemProperty);
    if (nCount == 0)
        return 0;
    if (m_pSolverIOData == nullptr)
        return E_FAIL;
    Keep(m_pSolverIOData->m_pasDrawbeads, NewRows<VOZDrawbeadSegment_s>(nCount));
    if (m_pSolverIOData->m_pasDrawbeads == nullptr)
        return E_FAIL;
    m_pSolverIOData->m_nNumDrawbeadSegments = nCount;
    VOZDrawbeadSegment_s * psDrawBeadSeg = m_pSolverIOData->m_pasDrawbeads;
    conditions::ForEachBeadEdge(*m_pElemProperty,
                                [&](EdgeProperty const & edge, double force, double uplift)
                                {
                                    VOZDrawbeadSegment_s & segment = *psDrawBeadSeg++;
                                    std::copy_n(edge.edgeValues, 4, segment.m_adEdgeValues);
                                    segment.m_dForce = force;
                                    segment.m_dUplift = uplift;
                                    segment.m_nElement = meshrows::positionOf(edge.element, 1);
                                });
    VOZ_ASSERTION(psDrawBeadSeg - m_pSolverIOData->m_pasDrawbeads == m_pSolverIOData->m_nNumDrawbeadSegments,
                  "psDrawBeadSeg - m_pSolverIOData->m_pasDrawbeads == m_pSolverIOData->m_nNumDrawbeadSegments");
    return 0;
}

long VOZSolver::SetPressurePads()
{
    if (m_pElemProperty == nullptr)
        return E_FAIL;
    if (conditions::CountPadElements(*m_pElemProperty) == 0)
        return 0;
    if (m_pSolverIOData == nullptr || m_pFriction == nullptr || PartMesh() == nullptr)
        return E_FAIL;
    int const nNumElements = meshrows::Rows(*PartMesh()).numElem;
    Keep(m_pSolverIOData->m_padPressureFrictionValues, NewRows<double>(nNumElements));
    if (!VOZ_ASSERTION(m_pSolverIOData->m_padPressureFrictionValues != nullptr,
                       "m_pSolverIOData->m_padPressureFrictionValues"))
        return E_FAIL;
    conditions::FillPadShear(*m_pElemProperty, m_pFriction->coefficient(), nNumElements,
                             m_pSolverIOData->m_padPressureFrictionValues);
    return 0;
}

long VOZSolver::SetDispConstraints()
{
    if (m_pElemProperty == nullptr || m_pSymmetry == nullptr || m_pSymmetryFilter == nullptr)
        return E_FAIL;
    long long const nTableNodes = conditions::CountTableNodes(*m_pElemProperty);
    int const nCount =
        conditions::CountOf(nTableNodes + conditions::CountSymmetryNodes(*m_pSymmetry, *m_pSymmetryFilter));
    if (nCount == 0)
        return 0;
    if (m_pSolverIOData == nullptr)
        return E_FAIL;
    auto record = std::make_unique<VOZConstrainedNodes_s>();
    Keep(record->m_panNodeIndices, NewRows<int>(nCount));
    Keep(record->m_padDisplacements, NewRows<double>(nCount, 2));
    Keep(record->m_panDisplFlags, NewRows<int>(nCount, 2));
    if (record->m_panNodeIndices == nullptr || record->m_padDisplacements == nullptr ||
        record->m_panDisplFlags == nullptr)
        return E_FAIL;
    std::fill_n(record->m_panNodeIndices, nCount, -1);

    std::size_t k = 0;
    auto const write = [&](int node, bool isX, double x, bool isY, double y)
    {
        record->m_panNodeIndices[k] = node;
        record->m_panDisplFlags[2 * k] = isX ? 1 : 0;
        record->m_panDisplFlags[2 * k + 1] = isY ? 1 : 0;
        record->m_padDisplacements[2 * k] = isX ? x : 0.0;
        record->m_padDisplacements[2 * k + 1] = isY ? y : 0.0;
        ++k;
    };
    conditions::ForEachTableNode(
        *m_pElemProperty, [&](int node, DispBC const & table)
        { write(node, table.flags[0] != 0, table.values[0], table.flags[1] != 0, table.values[1]); });
    conditions::ForEachSymmetryNode(*m_pSymmetry, *m_pSymmetryFilter,
                                    [&](int node, bool onYZ) { write(node, onYZ, 0.0, !onYZ, 0.0); });
    m_pSolverIOData->m_nNumConstrainedNodes = nCount;
    KeepOne(m_pSolverIOData->m_psConstrainedNodes, std::move(record));
    return 0;
}

long VOZSolver::EvalBinder()
{
    if (BinderMesh() == nullptr || FillInXenSolverData(BinderMesh(), 1) != 0)
        return E_FAIL;
    VOZBasicMeshData_s * psBinder = nullptr;
    int nNodesPerElem = 1;
    long const status = ConvertMeshData(BinderMesh(), psBinder, nNodesPerElem);
    std::unique_ptr<VOZBasicMeshData_s> const binder(psBinder);
    if (status != 0)
        return E_FAIL;

    int const nNumNodes = binder->m_nNumNodes;
    auto padNodalCoordsFlatBlankBinder = NewRows<double>(nNumNodes, 3);
    if (!VOZ_ASSERTION(padNodalCoordsFlatBlankBinder != nullptr, "padNodalCoordsFlatBlankBinder"))
        return E_FAIL;
    if (!VOZ_ASSERTION(m_pSolverIOData != nullptr, "m_pSolverIOData"))
        return E_FAIL;
    VOZSolverIOData & record = *m_pSolverIOData;
    std::copy_n(record.m_padNodalCoordsFlatBlank, 3 * static_cast<std::size_t>(nNumNodes),
                padNodalCoordsFlatBlankBinder.get());

    record.m_nNumNodesBinder = nNumNodes;
    Keep(record.m_padNodalCoordsBinder, NewRows<double>(nNumNodes, 3));
    if (!VOZ_ASSERTION(record.m_padNodalCoordsBinder != nullptr, "m_pSolverIOData->m_padNodalCoordsBinder"))
        return E_FAIL;
    std::copy_n(binder->m_padNodalCoords, 3 * static_cast<std::size_t>(nNumNodes), record.m_padNodalCoordsBinder);
    record.m_nNumElementsBinder = binder->m_nNumElements;
    Keep(record.m_panConnectivityBinder, NewRows<int>(binder->m_nNumElements, 4));
    if (!VOZ_ASSERTION(record.m_panConnectivityBinder != nullptr, "m_pSolverIOData->m_panConnectivityBinder"))
        return E_FAIL;
    std::copy_n(binder->m_panConnectivity, 4 * static_cast<std::size_t>(binder->m_nNumElements),
                record.m_panConnectivityBinder);
    Keep(record.m_padNodalCoordsFlatBlankBinder, std::move(padNodalCoordsFlatBlankBinder));
    return 0;
}
