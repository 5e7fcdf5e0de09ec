// VOZSolverIncrementalMeshHandOver.cpp: the four meshes: told apart by name, brought to metres and into the tipping
// frame, measured against each other, written beside the deck.

#include "VOZSolverIncremental.h"

#include "MeshRows.h"
#include "RowMath.h"

#include "CATFatalError.h"
#include "ElemNormal.h"
#include "MeshNormal.h"
#include "VOZAPIMesh.h"
#include "VOZCatAxis.h"
#include "VOZDYNAWriter.h"
#include "VOZGeoUtil.h"
#include "VOZStatus.h"
#include "VOZTemplatePath.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <iterator>
#include <memory>
#include <string>

namespace
{
constexpr int kMostMeshes = 4;
constexpr double kMetresPerMillimetre = 0.001;
constexpr int kToGlobal = 1;
constexpr int kThicknessPoints = 3;
constexpr int kShortenedStroke = 2; // the mode, of either sign, that spares a thickness
constexpr double kSearchCell = 5.0;
constexpr int kNoCorner = -1;

template <std::size_t N>
void Name(char (&o_achName)[N], char const * i_strName)
{
    std::fill(std::begin(o_achName), std::end(o_achName), '\0');
    std::copy_n(i_strName, std::min(std::strlen(i_strName), N - 1), o_achName);
}

char const * NameOf(VOZCatMesh const & i_mesh)
{
    return i_mesh.GetName() != nullptr ? i_mesh.GetName() : "";
}

CATUnicodeString MeshFile(CATUnicodeString const & i_strFolder, VOZCatMesh const & i_mesh)
{
    return i_strFolder + "/" + NameOf(i_mesh) + ".mod";
}

double AlongTipping(VOZCatMesh const & i_mesh, double const * i_adTippingVector)
{
    ElemNormal elements;
    elements.compute(i_mesh);
    MeshNormal mean;
    mean.compute(elements);
    double const adNormal[3] = {mean.normal(0), mean.normal(1), mean.normal(2)};
    return rowmath::dot(adNormal, i_adTippingVector);
}

void Scale(VOZCatMesh & io_mesh, double i_dFactor)
{
    int const nNumNodes = meshrows::Rows(io_mesh).numNode;
    for (int n = 1; n <= nNumNodes; ++n)
        for (double & dCoord : io_mesh.GetNodeData()[n])
            dCoord *= i_dFactor;
}

// A corner that is no node is no corner: the element is refused where the mesh is measured.
void CopyElement(int const * i_anRow, int i_nFirstNode, int i_nNumNodes, int (&o_anNodes)[4])
{
    int const nNumElementNodes = meshrows::cornerCount(i_anRow);
    VOZ_CONTRACT(nNumElementNodes == 4 || nNumElementNodes == 3, "nNumElementNodes == 4 || nNumElementNodes == 3");
    std::fill(std::begin(o_anNodes), std::end(o_anNodes), kNoCorner);
    for (int k = 0; k < nNumElementNodes; ++k)
    {
        int const nNodeId = meshrows::positionOf(meshrows::positionOf(i_anRow[k], i_nFirstNode), 1);
        if (VOZ_CONTRACT(nNodeId >= 0 && nNodeId < i_nNumNodes, "nNodeId >= 0 && nNodeId < pAPIMesh->GetNumNodes()"))
            o_anNodes[k] = nNodeId;
    }
}
} // namespace

long VOZSolverIncremental::GetMeshDisplayName()
{
    char achConfig[VOZTemplatePath::kPathSize] = ""; // what is asked for is whether there is an installation
    if (VOZTemplatePath::GetConfigPath(achConfig) != 0)
        return E_FAIL;
    Name(m_achDieName, "VOZDie");
    Name(m_achPunchName, "VOZPunch");
    Name(m_achBinderName, "VOZBinder");
    Name(m_achBlankName, "VOZBlank");
    return 0;
}

long VOZSolverIncremental::SetMesh()
{
    VOZ_ASSERTION(m_nMesh <= kMostMeshes, "m_nMesh <= 4");
    if (m_pAxis == nullptr || m_ppMesh == nullptr)
        return E_FAIL;
    for (int k = 0; k < 3; ++k)
        m_adTippingVector[k] = m_pAxis->axis(k, 2);
    double adMatrix[9] = {};
    VOZGeoUtil::EvalLocalCoordSystemMatrix(m_adTippingVector, adMatrix);
    VOZCatAxis tipping;
    for (int i = 0; i < 3; ++i)
        tipping.axis(i, Vec(static_cast<double const *>(adMatrix + 3 * i)));
    if (GetMeshDisplayName() != 0 || m_strWorkingFolder.IsNull())
        return E_FAIL;

    m_pDieMesh = m_pPunchMesh = m_pBinderMesh = m_pBlankMesh = nullptr;
    std::fill(std::begin(m_astrMeshFiles), std::end(m_astrMeshFiles), CATUnicodeString());
    for (int i = 0; i < std::min(m_nMesh, kMostMeshes); ++i)
    {
        if (m_ppMesh[i] == nullptr)
            continue;
        // The protocol lends meshes to be read; this route is the one that works on them.
        VOZCatMesh & mesh = const_cast<VOZCatMesh &>(*m_ppMesh[i]);
        double const dAlongTipping = AlongTipping(mesh, m_adTippingVector);
        m_astrMeshFiles[i] = MeshFile(m_strWorkingFolder, mesh);
        Scale(mesh, kMetresPerMillimetre);
        if (!TakeRole(mesh, dAlongTipping))
            return E_FAIL;
    }

    VOZ_ASSERTION(m_pDieMesh != nullptr, "m_pDieMesh");
    VOZ_ASSERTION(m_pBlankMesh != nullptr, "m_pBlankMesh");
    VOZ_ASSERTION(m_pPunchMesh != nullptr, "m_pPunchMesh");
    for (VOZCatMesh * const pMesh : {m_pDieMesh, m_pBlankMesh, m_pPunchMesh, m_pBinderMesh})
        if (pMesh != nullptr)
            pMesh->Transform(&tipping, kToGlobal);
    VOZ_ASSERTION(m_dMaxBlankElementSize > 0.0, "m_dMaxBlankElementSize > 0.0");
    return 0;
}

// The die looks against the tipping vector, punch and binder along it; across it a mesh stays as it is.
bool VOZSolverIncremental::TakeRole(VOZCatMesh & io_mesh, double i_dAlongTipping)
{
    struct Role
    {
        char const * name;
        double against; // times the component along the tipping vector: above 0 the mesh is turned round
        VOZCatMesh *& mesh;
    };
    Role const aRoles[] = {
        {m_achDieName, 1.0, m_pDieMesh},
        {m_achPunchName, -1.0, m_pPunchMesh},
        {m_achBinderName, -1.0, m_pBinderMesh},
        {m_achBlankName, 0.0, m_pBlankMesh},
    };
    for (Role const & role : aRoles)
        if (std::strcmp(NameOf(io_mesh), role.name) == 0)
        {
            if (role.against * i_dAlongTipping > 0.0)
                io_mesh.reverse();
            role.mesh = &io_mesh;
            if (&role.mesh == &m_pBlankMesh)
                io_mesh.EvalMeshElementSize(m_dMaxBlankElementSize, m_dMinBlankElementSize);
            return true;
        }
    return false;
}

VOZAPIMesh * VOZSolverIncremental::CreateAPIMesh(VOZCatMesh * i_pMesh)
{
    VOZAPIMesh * const pAPIMesh = VOZAPIMesh::Create();
    if (pAPIMesh == nullptr)
        return nullptr;
    bool const isThere = VOZ_CONTRACT(i_pMesh && pAPIMesh, "i_pMesh && pAPIMesh");
    pAPIMesh->Clear();
    if (!isThere)
        return pAPIMesh;
    pAPIMesh->SetNumNodes(i_pMesh->numNode());
    VOZ_CONTRACT(pAPIMesh->GetNumNodes() > 0, "pAPIMesh->GetNumNodes() > 0");
    pAPIMesh->SetNumElements(i_pMesh->numElem());
    VOZ_CONTRACT(pAPIMesh->GetNumElements() > 0, "pAPIMesh->GetNumElements() > 0");
    bool const isMade = pAPIMesh->AllocateData();

    double(*const padCoord)[3] = i_pMesh->GetNodeData();
    int const(*const padElems)[4] = i_pMesh->GetElemData();
    bool const hasNodes = VOZ_CONTRACT(padCoord, "padCoord");
    if (isMade && hasNodes)
        for (int k = 0; k < pAPIMesh->GetNumNodes(); ++k)
            pAPIMesh->SetNodeCoord(k, padCoord[k + 1]);
    bool const hasElements = VOZ_CONTRACT(padElems, "padElems");
    if (isMade && hasElements)
        for (int e = 0; e < pAPIMesh->GetNumElements(); ++e)
            CopyElement(padElems[e + 1], i_pMesh->GetFirstNodeNumber(), pAPIMesh->GetNumNodes(),
                        pAPIMesh->GetElements()[e]);
    return pAPIMesh;
}

void VOZSolverIncremental::PunchStrokeAsDZmax()
{
    std::unique_ptr<VOZAPIMesh> const pMeshDie(CreateAPIMesh(m_pDieMesh));
    bool const isDie = VOZ_ASSERTION(pMeshDie != nullptr, "pMeshDie != NULL");
    std::unique_ptr<VOZAPIMesh> const pMeshPunch(CreateAPIMesh(m_pPunchMesh));
    bool const isPunch = VOZ_ASSERTION(pMeshPunch != nullptr, "pMeshPunch != NULL");
    double dMinDistance = 0.0;
    double dMaxDistance = 0.0;
    if (isDie && isPunch)
    {
        double const adDirection[3] = {0.0, 0.0, 1.0};
        tagVOZFILEINFO info;
        info.m_nVersion = tagVOZFILEINFO::kVersion;
        VOZAPIEvalDistanceBetweenMeshes_Average(*pMeshPunch, *pMeshDie, adDirection, kSearchCell, info, dMinDistance,
                                                dMaxDistance);
    }
    VOZ_CONTRACT(dMinDistance > 0.0 && dMaxDistance > 0.0 && dMinDistance < dMaxDistance,
                 "dMinDistance > 0.0 && dMaxDistance > 0.0 && dMinDistance < dMaxDistance");
    bool const isShortened = m_nProcessMode == kShortenedStroke || m_nProcessMode == -kShortenedStroke;
    m_dStrokeAsDZmax = isShortened ? dMinDistance - m_dThickness : dMinDistance;
}

void VOZSolverIncremental::WriteMeshData()
{
    if (m_pBlankMesh != nullptr && m_pBlankMesh->GetFirstNodeNumber() > 0)
    {
        // The blank's labels begin at 1; each tool moves up by what the blank gave back.
        int const nNodeOffset = m_pBlankMesh->GetFirstNodeNumber();
        int const nElemOffset = m_pBlankMesh->GetFirstElementNumber();
        m_pBlankMesh->IdsOffset(meshrows::positionOf(0, nNodeOffset), meshrows::positionOf(0, nElemOffset));
        for (VOZCatMesh * const pTool : {m_pPunchMesh, m_pDieMesh, m_pBinderMesh})
            if (pTool != nullptr)
                pTool->IdsOffset(nNodeOffset, nElemOffset);
    }
    WriteMeshFile(m_pBlankMesh, m_nPartBlank);
    WriteMeshFile(m_pPunchMesh, m_nPartPunch);
    WriteMeshFile(m_pDieMesh, m_nPartDie);
    if (m_dBlankHolderForce > 0.0)
        WriteMeshFile(m_pBinderMesh, m_nPartBinder);
}

void VOZSolverIncremental::WriteMeshFile(VOZCatMesh * i_pMesh, int i_nPart)
{
    if (i_pMesh == nullptr)
        return;
    std::string strPath = MeshFile(m_strWorkingFolder, *i_pMesh).ConvertToChar();
    DYNAWriter writer(i_pMesh, nullptr, kThicknessPoints, strPath.data(), nullptr, i_nPart);
    writer.Write();
}
