// JobResults.cpp: places of the answer in the records.

#include "JobResults.h"

#include "CATError.h"
#include "VOZFormingResult.h"
#include "VOZMesh.h"
#include "VOZMultiStageSolverIOData.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <memory>
#include <vector>

using voz::onestep::Problem;
using voz::onestep::Solution;

namespace
{

constexpr std::size_t kPlaces = 4;     // integration points that are allocated per element
constexpr std::size_t kComponents = 3; // values per integration point

bool HasQuad(VOZMesh_s const * i_pMesh)
{
    if (!i_pMesh || !i_pMesh->GetElements() || i_pMesh->GetNumElements() < 1)
        return false;
    VOZElement_s const * const pFirst = i_pMesh->GetElements();
    return std::any_of(pFirst, pFirst + i_pMesh->GetNumElements(),
                       [](VOZElement_s const & element) { return element.m_anNodeIndices[3] != -1; });
}

// Spreads the solver's points over the places of the record: the reader has one stride for all meshes of the job, so
// a triangle among quadrilaterals, and a triangle beside a binder that has one, repeats its only point.
std::unique_ptr<double[]> Placed(std::vector<double> const & i_values, std::size_t i_numElements,
                                 std::size_t i_strideFrom, std::size_t i_strideTo)
{
    auto padPlaces = std::make_unique<double[]>(i_numElements * kPlaces * kComponents); // zeros
    for (std::size_t e = 0; e < i_numElements; ++e)
        for (std::size_t point = 0; point < i_strideTo; ++point)
        {
            std::size_t const from = (e * i_strideFrom + std::min(point, i_strideFrom - 1)) * kComponents;
            std::copy_n(i_values.begin() + static_cast<std::ptrdiff_t>(from), kComponents,
                        padPlaces.get() + (e * i_strideTo + point) * kComponents);
        }
    return padPlaces;
}

bool AllFinite(std::vector<double> const & i_values)
{
    return std::all_of(i_values.begin(), i_values.end(), [](double value) { return std::isfinite(value); });
}

// The flat lies in the plane of the frame's first two axes through its origin.
void WriteBlank(Solution const & i_solution, VOZSolverStage_s & io_stage)
{
    double * padPoint = io_stage.m_psBlankMesh->m_padNodalCoords;
    double const * const a1 = io_stage.m_adLocalCS;
    double const * const a2 = io_stage.m_adLocalCS + 3;
    for (auto const & [x, y] : i_solution.flat)
        for (int k = 0; k < 3; ++k)
            *padPoint++ = io_stage.m_adOrigin[k] + a1[k] * x + a2[k] * y;
}

template <std::size_t N>
bool AllFinite(std::vector<std::array<double, N>> const & i_points)
{
    return std::all_of(i_points.begin(), i_points.end(),
                       [](std::array<double, N> const & point)
                       { return std::all_of(point.begin(), point.end(), [](double x) { return std::isfinite(x); }); });
}

void WriteOnBinder(voz::binder::Closing const & i_closing, VOZSolverStage_s const & i_stage, VOZMesh_s & io_mesh)
{
    double * padPoint = io_mesh.m_padNodalCoords;
    double const * const a = i_stage.m_adLocalCS;
    for (auto const & q : i_closing.position)
        for (int k = 0; k < 3; ++k)
            *padPoint++ = i_stage.m_adOrigin[k] + a[k] * q[0] + a[3 + k] * q[1] + a[6 + k] * q[2];
}

} // namespace

void RaiseKernelError(std::string const & i_text)
{
    throw CATError(CATUnicodeString(i_text.c_str()), "VOZUtilitySolving", __LINE__);
}

std::string FlawOf(Problem const & i_problem, Solution const & i_solution, voz::binder::Closing const * i_pClosing)
{
    std::size_t const numNodes = i_problem.nodes.size();
    std::size_t const numValues = i_problem.elements.size() * static_cast<std::size_t>(i_solution.stride) * kComponents;
    bool bSized = i_solution.flat.size() == numNodes && (!i_pClosing || i_pClosing->position.size() == numNodes);
    bool bFinite = std::isfinite(i_solution.punchForce) && AllFinite(i_solution.flat) &&
                   (!i_pClosing || AllFinite(i_pClosing->position));
    for (std::vector<double> const * const pField :
         {&i_solution.strains.mid, &i_solution.strains.top, &i_solution.strains.bottom, &i_solution.equivalentStress})
    {
        bSized = bSized && pField->size() == numValues;
        bFinite = bFinite && AllFinite(*pField);
    }
    if (!bSized)
        return "the solver gave a field of another size than the mesh; the part is not solved";
    return bFinite ? "" : "the solver's answer holds a value that is no number; the part is not solved";
}

void WriteResults(Problem const & i_problem, Solution const & i_solution, voz::binder::Closing const * i_pClosing,
                  VOZMultiStageSolverIOData_s & io_data, VOZSolverStage_s & io_stage)
{
    bool const bFourPoints = i_solution.stride > 1 || HasQuad(io_stage.m_psPartMesh) || HasQuad(io_data.m_psBinderMesh);
    std::size_t const numElements = i_problem.elements.size();
    std::size_t const strideFrom = static_cast<std::size_t>(i_solution.stride);
    std::size_t const strideTo = bFourPoints ? kPlaces : 1;
    auto mid = Placed(i_solution.strains.mid, numElements, strideFrom, strideTo);
    auto top = Placed(i_solution.strains.top, numElements, strideFrom, strideTo);
    auto bottom = Placed(i_solution.strains.bottom, numElements, strideFrom, strideTo);
    auto stress = Placed(i_solution.equivalentStress, numElements, strideFrom, strideTo);

    WriteBlank(i_solution, io_stage);
    if (i_pClosing)
        WriteOnBinder(*i_pClosing, io_stage, *io_data.m_psBlankOnBinderMesh);
    VOZFormingResult_s & result = *io_stage.m_psFormingResult;
    result.m_padStrainComponentsMid = mid.release();
    result.m_padStrainComponentsTop = top.release();
    result.m_padStrainComponentsBot = bottom.release();
    result.m_padEquivalentStress = stress.release();
    result.m_dPunchForce = i_solution.punchForce;
}
