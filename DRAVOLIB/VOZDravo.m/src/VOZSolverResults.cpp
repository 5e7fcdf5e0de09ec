// VOZSolverResults.cpp: from the solver's log strains to the store: points, elements, nodes, in three layers.
//
// The values travel in single precision. A node's values are the plain means over its elements, zones included, and the
// mid-plane then decides thickness strain and zones at the nodes of all layers.

#include "VOZSolver.h"

#include "SolverRows.h"

#include "CATFatalError.h"
#include "Result.h"
#include "VOZMaterial.h"
#include "VOZMaterialUtility.h"
#include "VOZSolverIOData.h"
#include "VOZStatus.h"
#include "VOZUserUnitBase.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <memory>
#include <vector>

using namespace solverrows;

namespace
{
constexpr double kPi = 3.14159265358979323846;
constexpr double kManyTurns = 1.0e6; // radians
constexpr int kFoldedSafety = 5;     // codes of the kernel's own, and what they show as
constexpr int kShownSafety = 2;
constexpr int kFoldedForming = 6;
constexpr int kShownForming = 1;
constexpr int kNumLayers = 3;
constexpr int kMid = 1;

float PercentOf(double i_dTrueStrain)
{
    return static_cast<float>(VOZUserUnitBase::TrueToEngStrain(i_dTrueStrain));
}

// The integration points that the record of a converted mesh has places for.
std::ptrdiff_t NumPlaces(VOZSolverIOData const & i_record)
{
    return static_cast<std::ptrdiff_t>(i_record.m_psMesh->m_nNumElements) * i_record.m_nNodesPerElement;
}

// The float fields of a record.
constexpr float VOZResult::*kValues[] = {
    &VOZResult::m_fMajorStrain,      &VOZResult::m_fMinorStrain, &VOZResult::m_fTheta,
    &VOZResult::m_fThicknessStrain,  &VOZResult::m_fThickness,   &VOZResult::m_fEquivalentStrain,
    &VOZResult::m_fEquivalentStress,
};

void Add(VOZResult & io_sum, VOZResult const & i_record)
{
    for (float VOZResult::*value : kValues)
        io_sum.*value += i_record.*value;
    io_sum.m_nSafety += i_record.m_nSafety;
    io_sum.m_nForming += i_record.m_nForming;
    ++io_sum.m_nNeighbourElems;
}

// A mean that falls between two zones goes to the one nearer to 0.
void Average(VOZResult & io_sum)
{
    float const fShare = 1.0F / static_cast<float>(io_sum.m_nNeighbourElems);
    for (float VOZResult::*value : kValues)
        io_sum.*value *= fShare;
    io_sum.m_nSafety = static_cast<int>(static_cast<float>(io_sum.m_nSafety) * fShare);
    io_sum.m_nForming = static_cast<int>(static_cast<float>(io_sum.m_nForming) * fShare);
}

// The mean of an element's four points, but for the angle: angles have no mean, and it stays 0.
template <class PointResult>
VOZResult MeanOfFour(PointResult const & i_pointResult)
{
    VOZResult mean;
    for (int point = 0; point < 4; ++point)
        Add(mean, i_pointResult(point));
    for (float VOZResult::*value : kValues)
        mean.*value *= 0.25F;
    mean.m_fTheta = 0.0F;
    mean.m_nSafety = 0;
    mean.m_nForming = 0;
    mean.m_nNeighbourElems = 0;
    return mean;
}
} // namespace

long VOZSolver::GetResults(Result ** io_apLayers)
{
    if (!HasLayers(io_apLayers))
        return E_FAIL;
    SetDisplacementResults(io_apLayers);
    SetStressStrainResults(io_apLayers);
    return 0;
}

double VOZSolver::ConvertAngleToO_PiInterval(double i_dAngle)
{
    if (!std::isfinite(i_dAngle))
        return i_dAngle;
    if (std::fabs(i_dAngle) > kManyTurns) // a subtraction per turn might never end
        i_dAngle = std::fmod(i_dAngle, kPi);
    while (i_dAngle > kPi)
        i_dAngle -= kPi;
    while (i_dAngle < 0.0)
        i_dAngle += kPi;
    return i_dAngle;
}

void VOZSolver::EvalPrincipalStrains(double i_dE11, double i_dE22, double i_dS, float & o_fE1, float & o_fE2)
{
    double const dDifference = i_dE11 - i_dE22;
    double const dRoot = std::sqrt(dDifference * dDifference + i_dS * i_dS);
    o_fE1 = static_cast<float>((i_dE11 + i_dE22 + dRoot) * 0.5);
    o_fE2 = static_cast<float>((i_dE11 + i_dE22 - dRoot) * 0.5);
}

double VOZSolver::EvalPrincipalAngle(double i_dE11, double i_dE22, double i_dS)
{
    return ConvertAngleToO_PiInterval(0.5 * std::atan2(2.0 * i_dS, i_dE11 - i_dE22));
}

double VOZSolver::EvalEquivalentStrain(double i_dRValue, double i_dE1, double i_dE2, double i_dE3)
{
    VOZ_CONTRACT(i_dRValue > 0.0, "i_dRValue > 0.0");
    double const v =
        (i_dE1 * i_dE1 + i_dE2 * i_dE2) * (i_dRValue + 1.0) + 2.0 * i_dRValue * i_dE1 * i_dE2 + i_dE3 * 0.5 * i_dE3;
    return v <= 0.0 ? 0.0 : std::sqrt(((i_dRValue + 2.0) * v) / (3.0 * i_dRValue + 1.5));
}

double VOZSolver::EvalThickness(double i_dInitialThickness, double i_dStrain)
{
    VOZ_CONTRACT(i_dInitialThickness > 0.0, "i_dInitialThickness > 0.0");
    return i_dInitialThickness * std::exp(i_dStrain);
}

// i_padStrains: e11, e22 and the engineering shear, log strains; null reads as zeros.
VOZResult VOZSolver::EvalPointResults(double const * i_padStrains, double i_dStress, double i_dRValue,
                                      double i_dThickness)
{
    static constexpr double kZeros[3] = {0.0, 0.0, 0.0};
    double const * const e = i_padStrains != nullptr ? i_padStrains : kZeros;
    VOZResult record;
    float fMajor = 0.0F;
    float fMinor = 0.0F;
    EvalPrincipalStrains(e[0], e[1], e[2], fMajor, fMinor);
    record.m_fTheta = static_cast<float>(EvalPrincipalAngle(e[0], e[1], e[2] * 0.5));
    float const fThickness = static_cast<float>((fMajor + fMinor) * -1.0);
    record.m_fThickness = static_cast<float>(EvalThickness(i_dThickness, fThickness));
    record.m_fMajorStrain = PercentOf(fMajor);
    record.m_fMinorStrain = PercentOf(fMinor);
    record.m_fThicknessStrain = PercentOf(fThickness);
    // The components go in as they stand: the law holds in any axes of the sheet.
    record.m_fEquivalentStrain = PercentOf(EvalEquivalentStrain(i_dRValue, e[0], e[1], e[2]));
    record.m_fEquivalentStress = static_cast<float>(i_dStress);
    return record;
}

VOZResult VOZSolver::GetResults(int i_nPoint, int i_nElement, double i_dRValue, double i_dThickness, int i_nLayer)
{
    if (m_pSolverIOData == nullptr)
        return EvalPointResults(nullptr, 0.0, i_dRValue, i_dThickness);
    VOZSolverIOData const & record = *m_pSolverIOData;
    double const * const padLayer = i_nLayer == 0   ? record.m_padStrainComponentsTop
                                    : i_nLayer == 2 ? record.m_padStrainComponentsBot
                                                    : record.m_padStrainComponentsMid;
    std::ptrdiff_t const nPlace = m_nNbIntegrationPoints * (std::ptrdiff_t{i_nElement} - 1) + i_nPoint;
    bool const isOutside = record.m_psMesh != nullptr && nPlace >= NumPlaces(record);
    if (nPlace < 0 || isOutside)
        return EvalPointResults(nullptr, 0.0, i_dRValue, i_dThickness);
    std::ptrdiff_t const index = 3 * nPlace;
    double const dStress = record.m_padEquivalentStress != nullptr ? record.m_padEquivalentStress[index] : 0.0;
    return EvalPointResults(padLayer != nullptr ? padLayer + index : nullptr, dStress, i_dRValue, i_dThickness);
}

void VOZSolver::EvalZones(int i_nElement, VOZResult & io_sRecord)
{
    if (m_pElemProperty == nullptr)
        return;
    VOZMaterial const * const pMaterial = MaterialOf(*m_pElemProperty, PropertyOf(*m_pElemProperty, i_nElement));
    if (pMaterial == nullptr)
        return;
    double const dMajor = VOZUserUnitBase::EngToTrueStrain(io_sRecord.m_fMajorStrain);
    double const dMinor = VOZUserUnitBase::EngToTrueStrain(io_sRecord.m_fMinorStrain);
    VOZMaterialUtility::EvalFormingSafetyZones(pMaterial, dMajor, dMinor, io_sRecord.m_nForming, io_sRecord.m_nSafety);
    if (io_sRecord.m_nSafety == kFoldedSafety)
        io_sRecord.m_nSafety = kShownSafety;
    if (io_sRecord.m_nForming == kFoldedForming)
        io_sRecord.m_nForming = kShownForming;
}

void VOZSolver::SetElemResults(int i_nElement, VOZResult & i_sRecord, Result & io_result)
{
    io_result.equivalentStrain(i_nElement, i_sRecord.m_fEquivalentStrain);
    io_result.thickness(i_nElement, i_sRecord.m_fThickness);
    io_result.strain(i_nElement, 0, i_sRecord.m_fMajorStrain);
    io_result.strain(i_nElement, 1, i_sRecord.m_fMinorStrain);
    io_result.strain(i_nElement, 2, i_sRecord.m_fThicknessStrain);
    io_result.safety(i_nElement, i_sRecord.m_nSafety);
    io_result.forming(i_nElement, i_sRecord.m_nForming);
    io_result.theta(i_nElement, i_sRecord.m_fTheta);
}

void VOZSolver::SetNodeResults(int i_nNode, VOZResult & i_sRecord, Result & io_result)
{
    io_result.EquivalentStrain(i_nNode, i_sRecord.m_fEquivalentStrain);
    io_result.NodeThickness(i_nNode, i_sRecord.m_fThickness);
    io_result.stress(i_nNode, i_sRecord.m_fEquivalentStress);
    io_result.nstrain(i_nNode, 0, i_sRecord.m_fMajorStrain);
    io_result.nstrain(i_nNode, 1, i_sRecord.m_fMinorStrain);
    io_result.nstrain(i_nNode, 2, i_sRecord.m_fThicknessStrain);
    io_result.nsafety(i_nNode, i_sRecord.m_nSafety);
    io_result.nforming(i_nNode, i_sRecord.m_nForming);
}

// Positions first, then the part's own position is taken off what was stored.
void VOZSolver::SetDisplacementResults(Result ** io_apLayers)
{
    if (m_pSolverIOData == nullptr || PartMesh() == nullptr || !HasLayers(io_apLayers))
        return;
    double const * const padFlat = m_pSolverIOData->m_padNodalCoordsFlatBlank;
    if (padFlat == nullptr)
        return;
    bool const isOnBinder = BinderMesh() != nullptr && m_pSolverIOData->m_padNodalCoordsBlankOnBinder != nullptr;
    double const * const padOnBinder = isOnBinder ? m_pSolverIOData->m_padNodalCoordsBlankOnBinder : padFlat;
    Result & top = *io_apLayers[0];
    meshrows::Rows const rows(*PartMesh());
    VOZBasicMeshData_s const * const psMesh = m_pSolverIOData->m_psMesh; // what the places were made for
    int const nNumNodes = psMesh != nullptr ? std::min(psMesh->m_nNumNodes, rows.numNode) : rows.numNode;
    for (int n = 1; n <= nNumNodes; ++n)
        for (int k = 0; k < 3; ++k)
        {
            std::ptrdiff_t const i = 3 * (static_cast<std::ptrdiff_t>(n) - 1) + k;
            double const dPart = rows.nodes[n][k] * kMetresPerMillimetre;
            top.disp(n, k, static_cast<float>(static_cast<float>(padFlat[i]) - dPart));
            top.dispOnBinder(n, k, static_cast<float>(static_cast<float>(padOnBinder[i]) - dPart));
        }
}

void VOZSolver::SetStressStrainResults(Result ** io_apLayers)
{
    FillLayers(io_apLayers, [](VOZSolver & io_driver, int i_nPoint, int i_nElement, double i_dRValue,
                               double i_dThickness, int i_nLayer)
               { return io_driver.GetResults(i_nPoint, i_nElement, i_dRValue, i_dThickness, i_nLayer); });
    if (HasLayers(io_apLayers) && m_pSolverIOData != nullptr && m_pSolverIOData->m_pdPunchForce != nullptr)
        io_apLayers[0]->PunchForce(*m_pSolverIOData->m_pdPunchForce);
}

// One filling of the three stores.
class VOZSolver::Layers
{
public:
    Layers(VOZSolver & io_driver, VOZCatMesh const & i_mesh, Result ** io_apLayers)
        : mDriver(io_driver), mRows(i_mesh), mLayers(io_apLayers), mSums(static_cast<std::size_t>(mRows.numNode) + 1)
    {
    }

    void FillElements(PointResults i_pointResults)
    {
        ElemProperty const & property = *mDriver.m_pElemProperty;
        for (int e = 1; e <= mRows.numElem; ++e)
        {
            VOZMaterial const * const pMaterial = MaterialOf(property, PropertyOf(property, e));
            double const t0 = pMaterial != nullptr ? pMaterial->m_dThickness : 0.0;
            double const r = pMaterial != nullptr ? pMaterial->m_dRValue : 0.0;
            for (int layer = 0; layer < kNumLayers; ++layer)
            {
                auto const point = [&](int i) { return i_pointResults(mDriver, i, e, r, t0, layer); };
                VOZResult record = meshrows::isTriangle(mRows.elems[e]) ? point(0) : MeanOfFour(point);
                mDriver.EvalZones(e, record);
                mDriver.SetElemResults(e, record, *mLayers[layer]);
                AddToCorners(e, static_cast<std::size_t>(layer), record);
            }
        }
    }

    void FillNodes()
    {
        for (int n = 1; n <= mRows.numNode; ++n)
            for (std::size_t layer = 0; layer < kNumLayers; ++layer)
            {
                VOZResult & sum = mSums[static_cast<std::size_t>(n)][layer];
                if (!VOZ_ASSERTION(sum.m_nNeighbourElems > 0, "pNodeRes[i][k].m_nNeighbourElems > 0"))
                    continue; // such a node keeps what the store holds
                Average(sum);
                mDriver.SetNodeResults(n, sum, *mLayers[layer]);
            }
    }

    void SpreadMid()
    {
        Result const & mid = *mLayers[kMid];
        for (Result * const pOuter : {mLayers[0], mLayers[2]})
            for (int n = 1; n <= mRows.numNode; ++n)
            {
                pOuter->nstrain(n, 2, mid.nstrain(n, 2));
                pOuter->nsafety(n, mid.nsafety(n));
                pOuter->nforming(n, mid.nforming(n));
            }
    }

private:
    // A corner that is no node counts in row 0.
    void AddToCorners(int e, std::size_t i_nLayer, VOZResult const & i_record)
    {
        int const nCorners = meshrows::cornerCount(mRows.elems[e]);
        for (int corner = 0; corner < nCorners; ++corner)
        {
            int const position = mRows.corner(e, corner);
            std::size_t const n = mRows.isNode(position) ? static_cast<std::size_t>(position) : 0;
            Add(mSums[n][i_nLayer], i_record);
        }
    }

    VOZSolver & mDriver;
    meshrows::Rows mRows;
    Result ** mLayers;
    std::vector<std::array<VOZResult, kNumLayers>> mSums; // by node
};

void VOZSolver::FillLayers(Result ** io_apLayers, PointResults i_pointResults)
{
    VOZCatMesh const * const pMesh = m_pResultMesh != nullptr ? m_pResultMesh : PartMesh();
    if (!VOZ_ASSERTION(pMesh != nullptr, "pMesh != NULL") || m_pElemProperty == nullptr || !HasLayers(io_apLayers))
        return;
    Layers layers(*this, *pMesh, io_apLayers);
    layers.FillElements(i_pointResults);
    layers.FillNodes();
    layers.SpreadMid();
}
