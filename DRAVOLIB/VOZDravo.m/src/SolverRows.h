// SolverRows.h: arrays and mesh rows on their way into the records of the in-process drivers.

#ifndef SOLVERROWS_H
#define SOLVERROWS_H

#include "ElemProperty.h"
#include "MeshRows.h"
#include "RowMath.h"
#include "VOZMesh.h"

#include <algorithm>
#include <cstddef>
#include <memory>
#include <new>

namespace solverrows
{
constexpr double kMetresPerMillimetre = 0.001;

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
        *o_padCurvatures++ = i_rows[e][0] / 0.001;
        *o_padCurvatures++ = i_rows[e][1] / 0.001;
        *o_padCurvatures++ = i_rows[e][2];
    }
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

inline bool HasCoordinates(VOZMesh_s const * i_psMesh)
{
    return i_psMesh != nullptr && i_psMesh->m_padNodalCoords != nullptr;
}
} // namespace solverrows

#endif
