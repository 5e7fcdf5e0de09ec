// VOZSolverIncrementalImport.cpp: one record of "output.voz" as a mesh and, through the base driver's read-back, as
// results on it.

#include "VOZSolverIncremental.h"

#include "SolverRows.h"

#include "CATFatalError.h"
#include "Result.h"
#include "VOZDynaResults.h"
#include "VOZSolverIOData.h"
#include "VOZStatus.h"

#include <algorithm>
#include <cstddef>
#include <limits>
#include <memory>
#include <new>

using namespace solverrows;

namespace
{
constexpr int kComponents = 3;

// Rows in mm, one more than there are nodes; null if memory runs out.
std::unique_ptr<double[]> CoordinatesOf(VOZDynaResults const & i_record)
{
    int const nNodes = i_record.m_nNumNodes;
    std::unique_ptr<double[]> rows(new (std::nothrow) double[3 * (static_cast<std::size_t>(nNodes) + 1)]());
    if (rows != nullptr)
        for (std::size_t i = 0; i < 3 * static_cast<std::size_t>(nNodes); ++i)
            rows[i] = static_cast<double>(i_record.m_padNodalCoords[i]) * kMillimetresPerMetre;
    return rows;
}

// Rows of labels, one more than there are elements; null if memory runs out.
std::unique_ptr<int[]> CornersOf(VOZDynaResults const & i_record)
{
    std::size_t const nElems = static_cast<std::size_t>(i_record.m_nNumElements);
    std::unique_ptr<int[]> rows(new (std::nothrow) int[4 * (nElems + 1)]());
    if (rows != nullptr)
        for (std::size_t e = 0; e < nElems; ++e)
        {
            int const * const row = i_record.m_panConnectivity + 4 * e;
            std::copy_n(row, 4, &rows[4 * e]);
            if (row[3] == 0)
                rows[4 * e + 3] = row[0];
        }
    return rows;
}

// The values that there are, the rest stays as it is.
void CopyValues(float const * i_values, std::size_t i_nCount, double * o_padValues)
{
    if (i_values != nullptr && o_padValues != nullptr)
        std::copy_n(i_values, i_nCount, o_padValues);
}
} // namespace

long VOZSolverIncremental::GetResults(Result ** io_apLayers)
{
    if (GetTemplateSettings() < 0 || GetWorkingFolder() < 0)
        return E_FAIL;
    CATUnicodeString const strFile = m_strWorkingFolder + "/output.voz";
    VOZDynaResults record(m_nOutputPoints, strFile);
    if (record.ReadStep(m_nCurrentStepIndex) == 0)
        return E_FAIL;
    if (KeepResultMesh(record) != 0)
        return E_FAIL;
    if (io_apLayers == nullptr)
        return 0;
    if (io_apLayers[0] != nullptr) // an explicit step has no way from the flat: the mesh is where the sheet is
        for (int n = 1; n <= io_apLayers[0]->numNodeResult(); ++n)
            for (int k = 0; k < 3; ++k)
                io_apLayers[0]->disp(n, k, 0.0F);
    if (KeepComponents(record) != 0)
        return E_FAIL;
    VOZSolver::SetStressStrainResults(io_apLayers);
    return 0;
}

// Whoever had the mesh of an earlier call keeps it.
long VOZSolverIncremental::KeepResultMesh(VOZDynaResults const & i_record)
{
    int const nNodes = i_record.m_nNumNodes;
    float const * const pfNodes = i_record.m_padNodalCoords;
    bool const hasNodes = VOZ_ASSERTION(nNodes > 0, "nNodes > 0");
    if (!VOZ_ASSERTION(pfNodes != nullptr, "pfNodes != NULL") || !hasNodes)
        return E_FAIL;
    std::unique_ptr<double[]> const ar_dNodes = CoordinatesOf(i_record);
    if (!VOZ_ASSERTION(ar_dNodes != nullptr, "ar_dNodes"))
        return E_FAIL;
    int const nElems = i_record.m_nNumElements;
    int const * const pnElems = i_record.m_panConnectivity;
    bool const hasElements = VOZ_ASSERTION(nElems > 0, "nElems > 0");
    if (!VOZ_ASSERTION(pnElems != nullptr, "pnElems != NULL") || !hasElements)
        return E_FAIL;
    std::unique_ptr<int[]> const ar_nElems = CornersOf(i_record);
    if (!VOZ_ASSERTION(ar_nElems != nullptr, "ar_nElems"))
        return E_FAIL;
    m_pResultMesh = new (std::nothrow) VOZCatMesh(nNodes, nElems, reinterpret_cast<double(*)[3]>(ar_dNodes.get()),
                                                  reinterpret_cast<int(*)[4]>(ar_nElems.get()));
    return m_pResultMesh != nullptr ? 0 : E_FAIL;
}

// The record's values into the base driver's, whose mesh data say just how many points they are for.
long VOZSolverIncremental::KeepComponents(VOZDynaResults const & i_record)
{
    int const nElems = i_record.m_nNumElements;
    int const nPoints = std::max(m_nNbIntegrationPoints, 0);
    if (nPoints > std::numeric_limits<int>::max() / kComponents / nElems)
        return E_FAIL; // more values than a record can count
    if (m_pSolverIOData == nullptr)
        m_pSolverIOData = new (std::nothrow) VOZSolverIOData;
    auto psMesh = std::unique_ptr<VOZBasicMeshData_s>(new (std::nothrow) VOZBasicMeshData_s);
    if (m_pSolverIOData == nullptr || psMesh == nullptr)
        return E_FAIL;
    VOZSolverIOData & data = *m_pSolverIOData;
    psMesh->m_nNumNodes = i_record.m_nNumNodes;
    psMesh->m_nNumElements = nElems;
    data.m_nNodesPerElement = nPoints;
    KeepOne(data.m_psMesh, std::move(psMesh));

    auto const place = [&](double *& io_field) { Keep(io_field, NewRows<double>(nElems, kComponents * nPoints)); };
    place(data.m_padStrainComponentsMid);
    VOZ_ASSERTION(data.m_padStrainComponentsMid != nullptr, "m_pSolverIOData->m_padStrainComponentsMid");
    place(data.m_padStrainComponentsTop);
    VOZ_ASSERTION(data.m_padStrainComponentsTop != nullptr, "m_pSolverIOData->m_padStrainComponentsTop");
    place(data.m_padStrainComponentsBot);
    VOZ_ASSERTION(data.m_padStrainComponentsBot != nullptr, "m_pSolverIOData->m_padStrainComponentsBot");
    place(data.m_padEquivalentStress);
    VOZ_ASSERTION(data.m_padEquivalentStress != nullptr, "m_pSolverIOData->m_padEquivalentStress");

    std::size_t const nPlaces = static_cast<std::size_t>(nElems) * static_cast<std::size_t>(nPoints) * kComponents;
    std::size_t const nCount = std::min(nPlaces, static_cast<std::size_t>(std::max(i_record.m_nNumComponents, 0)));
    CopyValues(i_record.m_padStrainComponentsMid, nCount, data.m_padStrainComponentsMid);
    CopyValues(i_record.m_padStrainComponentsTop, nCount, data.m_padStrainComponentsTop);
    CopyValues(i_record.m_padStrainComponentsBot, nCount, data.m_padStrainComponentsBot);
    CopyValues(i_record.m_padEquivalentStress, nCount, data.m_padEquivalentStress);
    return 0;
}
