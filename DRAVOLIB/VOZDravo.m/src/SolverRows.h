// SolverRows.h: arrays and mesh rows on their way into the records of the in-process drivers.

#ifndef SOLVERROWS_H
#define SOLVERROWS_H

#include "ElemProperty.h"
#include "MeshRows.h"
#include "RowMath.h"
#include "VOZMaterial.h"
#include "VOZMechanicalProp.h"
#include "VOZMesh.h"

#include <algorithm>
#include <cstddef>
#include <memory>
#include <new>
#include <utility>

class Result;

namespace solverrows
{
// Two factors, since what is divided by one is not to the last bit what is multiplied by the other.
constexpr double kMetresPerMillimetre = 0.001;
constexpr double kMillimetresPerMetre = 1000.0;
constexpr int kTable = 2; // the type of a curve that is given by points

// Rows of `width` values, made as the type makes itself (numbers: 0); null if memory runs out.
template <class Value>
std::unique_ptr<Value[]> NewRows(int i_nRows, int i_nWidth = 1)
{
    std::size_t const nSize = static_cast<std::size_t>(std::max(i_nRows, 0)) * static_cast<std::size_t>(i_nWidth);
    return std::unique_ptr<Value[]>(new (std::nothrow) Value[nSize]());
}

// Puts an array into the field of the record that owns it from here on; what the field held goes.
template <class Value>
void Keep(Value *& io_field, std::unique_ptr<Value[]> io_rows)
{
    delete[] io_field;
    io_field = io_rows.release();
}

template <class Value>
void KeepOne(Value *& io_field, std::unique_ptr<Value> io_record)
{
    delete io_field;
    io_field = io_record.release();
}

// All coordinates in metres, 3 per node, 0-based.
inline void CopyCoordinates(meshrows::Rows const & i_rows, double * o_padCoords)
{
    for (int n = 1; n <= i_rows.numNode; ++n)
        for (int k = 0; k < 3; ++k)
            *o_padCoords++ = i_rows.nodes[n][k] * kMetresPerMillimetre;
}

// 3 per element, 0-based: two curvatures per metre and the third component as it stands.
inline void CopyCurvatures(double const (*i_rows)[3], int i_nNumElements, double * o_padCurvatures)
{
    for (int e = 1; e <= i_nNumElements; ++e)
    {
        *o_padCurvatures++ = i_rows[e][0] / kMetresPerMillimetre;
        *o_padCurvatures++ = i_rows[e][1] / kMetresPerMillimetre;
        *o_padCurvatures++ = i_rows[e][2];
    }
}

// The three rows of a frame, 9, and its origin in metres, 3.
inline void CopyFrame(VOZCatAxis const & i_axis, double * o_padRows, double * o_padOrigin)
{
    for (int i = 0; i < 3; ++i)
    {
        for (int j = 0; j < 3; ++j)
            *o_padRows++ = i_axis.axis(i, j);
        *o_padOrigin++ = i_axis.origin(i) / kMillimetresPerMetre;
    }
}

// Gives the record its own copy of a material's table, where there is one. False if memory runs out.
inline bool CopyTable(VOZMaterial const & i_material, VOZMechanicalProp_s & io_prop)
{
    if (i_material.m_nNumPoints <= 0 || i_material.m_padPoints == nullptr)
        return true;
    auto points = NewRows<double>(i_material.m_nNumPoints, 2);
    if (points == nullptr)
        return false;
    std::copy_n(i_material.m_padPoints, 2 * static_cast<std::size_t>(i_material.m_nNumPoints), points.get());
    io_prop.m_nNumPoints = i_material.m_nNumPoints;
    io_prop.m_nCurveType = kTable;
    Keep(io_prop.m_padPoints, std::move(points));
    return true;
}

// The property of an element; 0 where the process definition has none for it.
inline int PropertyOf(ElemProperty const & i_property, int e)
{
    return e >= 1 && e <= i_property.sizePropertyIndex() ? i_property.propertyIndex(e) : 0;
}

// The kernel's material of a property, 0 .. count; null where there is none.
inline VOZMaterial const * MaterialOf(ElemProperty const & i_property, int i_nIndex)
{
    int const nCount = i_property.sizeProperty();
    return nCount > 0 && i_nIndex >= 0 && i_nIndex <= nCount ? i_property.material(i_nIndex) : nullptr;
}

// A position in metres as the frame of the job sees it, against that of the part, in the sheet plane.
inline void EvalPlanarDifference(rowmath::Frame const & i_frame, double const * i_padPart, double const * i_padMoved,
                                 double * o_adDifference)
{
    double adPart[3];
    double adMoved[3];
    i_frame.fromGlobal(i_padPart, adPart);
    i_frame.fromGlobal(i_padMoved, adMoved);
    rowmath::subtract(adMoved, adPart, o_adDifference);
    o_adDifference[2] = 0.0;
}

// Whether all three stores are there.
inline bool HasLayers(Result ** i_apLayers)
{
    return i_apLayers != nullptr && i_apLayers[0] != nullptr && i_apLayers[1] != nullptr && i_apLayers[2] != nullptr;
}

inline bool HasCoordinates(VOZMesh_s const * i_psMesh)
{
    return i_psMesh != nullptr && i_psMesh->m_padNodalCoords != nullptr;
}
} // namespace solverrows

#endif
