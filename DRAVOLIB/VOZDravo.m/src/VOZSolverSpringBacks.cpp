// VOZSolverSpringBacks.cpp: the multi-stage input, a trimmed mesh and a deformed one, the kernel's springback solve,
// and its answer laid back on the part.

#include "VOZSolverSpringBacks.h"

#include "PointAlignment.h"
#include "SolverConditions.h"
#include "SolverRows.h"

#include "CATError.h"
#include "CATFatalError.h"
#include "CATRawColl.h"
#include "FreeEdgeLoops.h"
#include "Result.h"
#include "VOZMeshGenerator.h"
#include "VOZMultiStageSolverIOData.h"
#include "VOZSolverBCData.h"
#include "VOZSolverSpringback.h"
#include "VOZStatus.h"

#include <algorithm>
#include <cstring>
#include <vector>

using namespace solverrows;

CATImplementClass(VOZSolverSpringBacks, VOZSolverMultiStage)

namespace
{
// Its low byte fills every byte of a code, so that each reads 0x5C5C5C5C.
constexpr int kHeldCode = 11100;
constexpr int kNoNode = -1;
constexpr int kFewestNodes = 3;

VOZSolverStage_s * StageOf(VOZMultiStageSolverIOData_s * i_psIOData)
{
    return i_psIOData != nullptr ? i_psIOData->m_pasStages : nullptr;
}

// The mesh with node n moved by row n - 1, in mm.
VOZCatMesh MovedBy(VOZCatMesh const & i_mesh, double const (*i_adDisp)[3])
{
    VOZCatMesh moved(i_mesh);
    int const nNumNodes = meshrows::Rows(moved).numNode;
    for (int n = 1; n <= nNumNodes; ++n)
        rowmath::add(moved.GetNodeData()[n], i_adDisp[n - 1]);
    return moved;
}

// Gives the elements the materials that those of the stage's mesh have: the conversion alone leaves them the first.
void CopyMaterialIndices(VOZMesh_s const & i_from, VOZMesh_s & io_to)
{
    for (int e = 0; e < std::min(i_from.GetNumElements(), io_to.GetNumElements()); ++e)
        io_to.GetElements()[e].m_nMaterialIndex = i_from.GetElements()[e].m_nMaterialIndex;
}

// Visits the start node, from 0, of each edge of each loop in order.
template <class Visit>
void ForEachLoopNode(FreeEdgeLoops const & i_loops, FreeEdgeSet const & i_edges, Visit i_visit)
{
    for (int l = 1; l <= i_loops.numLoops(); ++l)
        for (int i = 1; i <= i_loops.numLoopEdges(l); ++i)
            i_visit(i_edges.startNode(i_loops.loopEdge(l, i)) - 1);
}

int CountLoopNodes(FreeEdgeLoops const & i_loops)
{
    return conditions::CountRows(i_loops.numLoops(), [&](int l) { return i_loops.numLoopEdges(l); });
}

bool HoldsBoth(DispBC const & i_table)
{
    return i_table.flags[0] != 0 && i_table.flags[1] != 0;
}

// The elements that trimming leaves, in order.
CATRawCollint RemainingElements(ElemProperty const & i_property, int i_nFirstElem, int iSize)
{
    CATRawCollint trimmed;
    for (int i = 0; i < i_property.getTrimmingSize(); ++i)
    {
        int const iElem = meshrows::positionOf(i_property.getTrimming()[i], i_nFirstElem);
        if (VOZ_CONTRACT(iElem <= iSize && iElem > 0, "iElem <= iSize && iElem > 0"))
            trimmed.Append(iElem);
    }
    CATRawCollint remaining;
    for (int e = 1; e <= iSize; ++e)
        remaining.Append(e);
    remaining.Remove(trimmed);
    return remaining;
}
} // namespace

VOZSolverSpringBacks::VOZSolverSpringBacks() : m_padXYZ(nullptr) {}

VOZSolverSpringBacks::~VOZSolverSpringBacks()
{
    DropShape();
}

void VOZSolverSpringBacks::DropShape()
{
    delete[] m_padXYZ;
    m_padXYZ = nullptr;
}

long VOZSolverSpringBacks::Run(CATIProgressTaskUI * i_task)
{
    DropShape();
    if (m_psIOData == nullptr)
        return E_FAIL;
    if (GetFilesFoldersPaths() != 0)
        return E_FAIL;
    m_nMesh = std::min(m_nMesh, 1); // never a binder
    if (VOZSolverMultiStage::FillInXenSolverData() != 0)
        return E_FAIL;
    m_padXYZ = NewRows<double>(meshrows::Rows(*PartMesh()).numNode, 3).release();
    if (!VOZ_ASSERTION(m_padXYZ != nullptr, "m_padXYZ"))
        return E_FAIL;

    auto const solve = [&]() -> long
    {
        VOZMesh_s blankMesh;
        VOZCatMesh const blank(*PartMesh());
        if (ConvertMeshData(&blank, blankMesh) != 0)
            return E_FAIL;
        CopyMaterialIndices(*StageOf(m_psIOData)->m_psPartMesh, blankMesh);
        if (!VOZ_ASSERTION(m_adDisp != nullptr, "m_adDisp != NULL"))
            return E_FAIL;
        VOZMesh_s deformedMesh;
        VOZCatMesh const deformed = MovedBy(*PartMesh(), m_adDisp);
        if (ConvertMeshData(&deformed, deformedMesh) != 0)
            return E_FAIL;
        if (SetDispConstraints() != 0)
            return E_FAIL;
        Trimming(blankMesh);
        return Unfold(i_task, blankMesh, deformedMesh);
    };
    long const status = CATXHContext::Guard(solve, [this] { DropShape(); });
    if (status != 0)
        DropShape();
    return status;
}

long VOZSolverSpringBacks::Unfold(CATIProgressTaskUI * i_task, VOZMesh_s & io_blankMesh, VOZMesh_s & io_deformedMesh)
{
    VOZSolverStage_s * const psStage = StageOf(m_psIOData);
    if (!VOZ_ASSERTION(psStage != nullptr, "psStage != NULL"))
        return E_FAIL;
    VOZMeshGenerator::ModifyMeshTopolgyForSpringBack(&io_blankMesh, m_szWorkDir, ProgressIndicator, i_task, nullptr);
    std::fill(std::begin(psStage->m_adOrigin), std::end(psStage->m_adOrigin), 0.0);
    VOZSBConstraints_s const * const psConstraints =
        psStage->m_psBCData != nullptr ? psStage->m_psBCData->m_psSBConstraints : nullptr;
    int const nStatus = VOZSolverSpringback::Unfold(
        m_szSummaryFile, m_szWorkDir, m_nProcessMode, m_psIOData->m_nNumMaterials,
        m_psIOData->m_padInitMaterialThickness, m_psIOData->m_pasMaterialProperties, psStage->m_adLocalCS,
        psStage->m_adOrigin, nullptr, ProgressIndicator, i_task, nullptr, &io_blankMesh, psConstraints, nullptr,
        nullptr, nullptr, nullptr, &io_deformedMesh, m_bProcessFlag != 0, m_padXYZ);
    if (nStatus != 0)
        throw CATMfErrUpdate(CATUnicodeString("Failed to compute springback results!"), "VOZSolverSpringBacks",
                             __LINE__);
    return 0;
}

// Places of tables that do not hold a node wholly stay at -1, and the count that the kernel gets includes them.
long VOZSolverSpringBacks::SetDispConstraints()
{
    VOZSolverStage_s * const psStage = StageOf(m_psIOData);
    if (m_pElemProperty == nullptr || m_pFreeEdge == nullptr || m_pFreeLoops == nullptr || m_nLoopError != 0 ||
        psStage == nullptr || PartMesh() == nullptr)
        return E_FAIL;
    if (psStage->m_psBCData == nullptr)
    {
        m_psBCData = new VOZSolverBCData_s;
        psStage->SetBCData(m_psBCData);
    }
    bool const isFixed = m_pElemProperty->getSprinkbackFixity();
    if (isFixed && BoundaryFixity(*PartMesh()) != 0)
        return E_FAIL;
    int const nCount = (isFixed ? CountLoopNodes(*m_pFreeLoops) : 0) + conditions::CountTableNodes(*m_pElemProperty);
    if (nCount == 0)
        return 0;
    auto panNodeIndices = NewRows<int>(nCount);
    if (!VOZ_ASSERTION(panNodeIndices != nullptr, "panNodeIndices"))
        return E_FAIL;
    auto panDisplCodes = NewRows<int>(nCount);
    if (!VOZ_ASSERTION(panDisplCodes != nullptr, "panDisplCodes"))
        return E_FAIL;
    std::fill_n(panNodeIndices.get(), nCount, kNoNode);
    std::memset(panDisplCodes.get(), kHeldCode & 0xFF, static_cast<std::size_t>(nCount) * sizeof(int));

    int * panNext = panNodeIndices.get();
    if (isFixed)
        ForEachLoopNode(*m_pFreeLoops, *m_pFreeEdge, [&](int node) { *panNext++ = node; });
    conditions::ForEachTableNode(*m_pElemProperty,
                                 [&](int node, DispBC const & table)
                                 {
                                     if (HoldsBoth(table))
                                         *panNext++ = meshrows::positionOf(node, 1);
                                 });
    if (panNext == panNodeIndices.get()) // nothing is held
        return 0;
    auto * const psConstraints = new VOZSBConstraints_s;
    psConstraints->m_nCount = nCount;
    psConstraints->m_panNodeIndices = panNodeIndices.release();
    psConstraints->m_panCodes = panDisplCodes.release();
    delete psStage->m_psBCData->m_psSBConstraints;
    psStage->m_psBCData->m_psSBConstraints = psConstraints;
    return 0;
}

long VOZSolverSpringBacks::BoundaryFixity(VOZCatMesh const & i_mesh)
{
    if (m_pElemProperty == nullptr)
        return E_FAIL;
    if (m_pElemProperty->getTrimmingSize() <= 0 || m_pElemProperty->getTrimming() == nullptr)
        return 0;
    meshrows::Rows const rows(i_mesh);
    CATRawCollint const remaining = RemainingElements(*m_pElemProperty, i_mesh.GetFirstElementNumber(), rows.numElem);
    if (remaining.Size() == 0 || rows.numNode < kFewestNodes)
        return E_FAIL;

    std::vector<int> elems;
    for (int i = 1; i <= remaining.Size(); ++i)
        elems.insert(elems.end(), rows.elems[remaining[i]], rows.elems[remaining[i]] + 4);
    VOZCatMesh trimmed(rows.numNode, remaining.Size(), rows.nodes + 1, reinterpret_cast<int const(*)[4]>(elems.data()));
    trimmed.SetFirstNodeNumber(i_mesh.GetFirstNodeNumber()); // the rows hold labels

    delete m_pFreeLoops;
    m_pFreeLoops = nullptr;
    delete m_pFreeEdge;
    m_pFreeEdge = nullptr;
    m_pFreeEdge = new (std::nothrow) FreeEdgeSet(trimmed);
    if (!VOZ_ASSERTION(m_pFreeEdge != nullptr, "m_pFreeEdge"))
        return E_FAIL;
    m_nLoopError = 0;
    m_pFreeLoops = new (std::nothrow) FreeEdgeLoops(*m_pFreeEdge, trimmed, &m_nLoopError);
    if (!VOZ_ASSERTION(m_pFreeLoops != nullptr, "m_pFreeLoops"))
        return E_FAIL;
    return m_nLoopError != 0 ? E_FAIL : 0;
}

void VOZSolverSpringBacks::Trimming(VOZMesh_s & io_mesh)
{
    if (m_pElemProperty == nullptr || PartMesh() == nullptr || m_pElemProperty->getTrimmingSize() <= 0)
        return;
    int const * const panTrimElems = m_pElemProperty->getTrimming();
    bool const hasList = VOZ_ASSERTION(panTrimElems != nullptr, "panTrimElems");
    int const iSize = io_mesh.GetNumElements();
    if (!VOZ_ASSERTION(iSize > 0, "iSize > 0") || !hasList)
        return;
    auto panStatus = NewRows<int>(iSize);
    if (panStatus == nullptr)
        return;
    for (int i = 0; i < m_pElemProperty->getTrimmingSize(); ++i)
    {
        int const nPosition = meshrows::positionOf(panTrimElems[i], PartMesh()->GetFirstElementNumber());
        int const iElem = meshrows::positionOf(nPosition, 1);
        if (VOZ_CONTRACT(iElem < iSize && iElem >= 0, "iElem < iSize && iElem >= 0"))
            panStatus[static_cast<std::size_t>(iElem)] = 1;
    }
    io_mesh.SetElementsStatus(panStatus.release());
}

long VOZSolverSpringBacks::GetResults(Result ** io_apLayers)
{
    VOZSolverStage_s * const psStage = StageOf(m_psIOData);
    if (psStage == nullptr)
        return E_FAIL;
    Alignment();
    m_psFormingResult = psStage->m_psFormingResult;
    SetDisplacementResults(io_apLayers);
    return 0;
}

void VOZSolverSpringBacks::Alignment()
{
    VOZSolverStage_s const * const psStage = StageOf(m_psIOData);
    if (m_pElemProperty == nullptr || m_pElemProperty->getAlignmentSize() <= 0 || m_padXYZ == nullptr ||
        psStage == nullptr || !HasCoordinates(psStage->m_psPartMesh))
        return;
    int const * const p_arAlignment = m_pElemProperty->getAlignment();
    if (!VOZ_ASSERTION(p_arAlignment != nullptr, "p_arAlignment != NULL"))
        return;
    int const nNumNodes = psStage->m_psPartMesh->GetNumNodes();
    std::vector<double> target;
    std::vector<double> source;
    for (int i = 0; i < m_pElemProperty->getAlignmentSize(); ++i)
    {
        if (p_arAlignment[i] < 1 || p_arAlignment[i] > nNumNodes) // no node, no pair
            continue;
        std::ptrdiff_t const nRow = 3 * (std::ptrdiff_t{p_arAlignment[i]} - 1);
        double const * const padPart = psStage->m_psPartMesh->m_padNodalCoords + nRow;
        target.insert(target.end(), padPart, padPart + 3);
        source.insert(source.end(), m_padXYZ + nRow, m_padXYZ + nRow + 3);
    }
    double adMatrix[16];
    pointalignment::AlignPoints(target.data(), source.data(), static_cast<int>(target.size() / 3), adMatrix);
    for (std::ptrdiff_t n = 0; n < nNumNodes; ++n)
        pointalignment::TransformPoint(m_padXYZ + 3 * n, adMatrix);
}

void VOZSolverSpringBacks::SetDisplacementResults(Result ** io_apLayers)
{
    VOZSolverStage_s const * const psStage = StageOf(m_psIOData);
    if (psStage == nullptr || !HasCoordinates(psStage->m_psPartMesh) || psStage->m_psBlankMesh == nullptr ||
        m_padXYZ == nullptr || m_pAxis == nullptr || io_apLayers == nullptr || io_apLayers[0] == nullptr)
        return;
    VOZMesh_s const * const pPartMesh = psStage->m_psPartMesh;
    VOZMesh_s const * const pBlankMesh = psStage->m_psBlankMesh;
    VOZ_ASSERTION(pBlankMesh->GetNumNodes() == pPartMesh->GetNumNodes(),
                  "pBlankMesh->GetNumNodes() == pPartMesh->GetNumNodes()");
    Result & top = *io_apLayers[0];
    rowmath::Frame const frame(*m_pAxis);
    double const * p = pPartMesh->m_padNodalCoords;
    double const * x = m_padXYZ;
    for (int n = 1; n <= pPartMesh->GetNumNodes(); ++n, p += 3, x += 3)
    {
        double adPlanar[3];
        EvalPlanarDifference(frame, p, x, adPlanar);
        for (int k = 0; k < 3; ++k)
        {
            float const difference = static_cast<float>(x[k] - p[k]);
            top.disp(n, k, difference);
            top.dispOnBinder(n, k, difference);
            top.disp2d(n, k, static_cast<float>(adPlanar[k]));
        }
    }
}
