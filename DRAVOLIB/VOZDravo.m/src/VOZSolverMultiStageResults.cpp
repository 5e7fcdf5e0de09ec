// VOZSolverMultiStageResults.cpp: what the kernel left in the stage, on its way into the three stores.

#include "VOZSolverMultiStage.h"

#include "SolverRows.h"

#include "CATFatalError.h"
#include "Result.h"
#include "VOZFormingResult.h"
#include "VOZMesh.h"
#include "VOZMultiStageSolverIOData.h"
#include "VOZStatus.h"

#include <algorithm>
#include <cstddef>

using namespace solverrows;

namespace
{
constexpr std::ptrdiff_t kPlaces = 4; // integration points that the kernel allocates per element
} // namespace

long VOZSolverMultiStage::GetResults(Result ** io_apLayers)
{
    if (m_psIOData == nullptr || m_psIOData->m_pasStages == nullptr || !HasLayers(io_apLayers))
        return E_FAIL;
    m_psFormingResult = m_psIOData->m_pasStages->m_psFormingResult;
    SetDisplacementResults(io_apLayers);
    SetStressStrainResults(io_apLayers);
    if (m_psFormingResult != nullptr)
        io_apLayers[0]->PunchForce(m_psFormingResult->m_dPunchForce);
    return 0;
}

VOZResult VOZSolverMultiStage::GetResults(int i_nPoint, int i_nElement, double i_dRValue, double i_dThickness,
                                          int i_nLayer)
{
    std::ptrdiff_t const nPlace = m_nNbIntegrationPoints * (std::ptrdiff_t{i_nElement} - 1) + i_nPoint;
    if (m_psFormingResult == nullptr || m_psFormingResult->m_psMesh == nullptr || nPlace < 0 ||
        nPlace >= kPlaces * m_psFormingResult->m_psMesh->GetNumElements())
        return EvalPointResults(nullptr, 0.0, i_dRValue, i_dThickness);
    VOZFormingResult_s const & forming = *m_psFormingResult;
    double const * const padLayer = i_nLayer == 0   ? forming.m_padStrainComponentsTop
                                    : i_nLayer == 2 ? forming.m_padStrainComponentsBot
                                                    : forming.m_padStrainComponentsMid;
    std::ptrdiff_t const index = 3 * nPlace;
    double const dStress = forming.m_padEquivalentStress != nullptr ? forming.m_padEquivalentStress[index] : 0.0;
    return EvalPointResults(padLayer != nullptr ? padLayer + index : nullptr, dStress, i_dRValue, i_dThickness);
}

void VOZSolverMultiStage::SetDisplacementResults(Result ** io_apLayers)
{
    VOZSolverStage_s const * const psStage = m_psIOData != nullptr ? m_psIOData->m_pasStages : nullptr;
    if (psStage == nullptr || !HasCoordinates(psStage->m_psPartMesh) || !HasCoordinates(psStage->m_psBlankMesh) ||
        m_pAxis == nullptr || !HasLayers(io_apLayers))
        return;
    int const iPartMeshNodes = psStage->m_psPartMesh->GetNumNodes();
    int const iBlankMeshNodes = psStage->m_psBlankMesh->GetNumNodes();
    VOZ_ASSERTION(iBlankMeshNodes == iPartMeshNodes, "iBlankMeshNodes == iPartMeshNodes");
    VOZMesh_s const * const psOnBinder = BinderMesh() != nullptr ? m_psIOData->m_psBlankOnBinderMesh : nullptr;
    int const nOnBinder = HasCoordinates(psOnBinder) ? psOnBinder->GetNumNodes() : 0;

    Result & top = *io_apLayers[0];
    rowmath::Frame const frame(*m_pAxis);
    double const * p = psStage->m_psPartMesh->m_padNodalCoords;
    double const * b = psStage->m_psBlankMesh->m_padNodalCoords;
    for (int n = 1; n <= std::min(iPartMeshNodes, iBlankMeshNodes); ++n, p += 3, b += 3)
    {
        // Where there is a binder, what refers to the flat gives way to what refers to the blank on it.
        double const * const q = n <= nOnBinder ? psOnBinder->m_padNodalCoords + 3 * (std::ptrdiff_t{n} - 1) : b;
        double adPlanar[3];
        EvalPlanarDifference(frame, p, q, adPlanar);
        for (int k = 0; k < 3; ++k)
        {
            top.disp(n, k, static_cast<float>(b[k] - p[k]));
            top.dispOnBinder(n, k, static_cast<float>(q[k] - p[k]));
            top.disp2d(n, k, static_cast<float>(adPlanar[k]));
        }
    }
}

void VOZSolverMultiStage::SetStressStrainResults(Result ** io_apLayers)
{
    FillLayers(
        io_apLayers,
        [](VOZSolver & io_driver, int i_nPoint, int i_nElement, double i_dRValue, double i_dThickness, int i_nLayer)
        {
            return static_cast<VOZSolverMultiStage &>(io_driver).GetResults(i_nPoint, i_nElement, i_dRValue,
                                                                            i_dThickness, i_nLayer);
        });
}
