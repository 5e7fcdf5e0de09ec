// MeshGap.cpp: the gap between two surface meshes along a direction.
//
// Both meshes are turned so that the direction is z. On a line along z the side of the first mesh that faces the second
// is its highest point, that of the second mesh its lowest: tools may have backs, walls and folds. The second mesh is
// mirrored, so that one search for the highest point serves both.
//
// Where a wall stands along the direction, or outlines lie over each other, several heights belong to one line. A
// corner of an element is therefore seen from inside of its element: the line is moved a thousandth of the way to the
// middle of the triangle, which decides what faces what, and the heights are then taken at the corner itself. What only
// touches the line's place from the side, a wall seen on its edge, is so never taken for a partner.

#include "VOZAPIMesh.h"

#include "PlaneGrid.h"
#include "VOZGeoUtil.h"
#include "VOZStatus.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>
#include <new>
#include <vector>

namespace
{
using Corner = PlaneTriangle::Corner;

constexpr double kInward = 1e-3;        // of the way from a corner to the middle of its triangle
constexpr double kEdgeOn = 1e-4;        // cosine of normal and direction below which a triangle is seen on its edge
constexpr double kHidden = 1e-9;        // of the meshes' size: how much higher another part of the mesh must be
constexpr double kLargestValue = 1e100; // of a coordinate: products of two stay far from overflow

bool IsSound(double const * i_adValues)
{
    return std::all_of(i_adValues, i_adValues + 3, [](double value) { return std::fabs(value) <= kLargestValue; });
}

bool IsSound(VOZAPIMesh const & i_mesh)
{
    if (i_mesh.GetNumElements() <= 0 || !i_mesh.GetElements())
        return false;
    for (int node = 0; node < i_mesh.GetNumNodes(); ++node)
        if (!i_mesh.GetNodeCoord(node) || !IsSound(i_mesh.GetNodeCoord(node)))
            return false;
    auto const isNode = [&](int node) { return node >= 0 && node < i_mesh.GetNumNodes(); };
    auto const pElements = i_mesh.GetElements();
    for (int e = 0; e < i_mesh.GetNumElements(); ++e)
        for (int corner = 0; corner < 4; ++corner)
            if (!isNode(pElements[e][corner]) && !(corner == 3 && pElements[e][3] == -1))
                return false;
    return true;
}

struct View
{
    std::array<double, 9> frame; // rows: two axes across the direction, and the direction
    Corner origin;               // the middle of the first mesh: keeps coordinates small
    double facing;               // 1 as it stands, -1 mirrored at the origin's plane
};

Corner Seen(View const & i_view, double const * i_adPoint)
{
    Corner point = {i_adPoint[0], i_adPoint[1], i_adPoint[2]};
    VOZGeoUtil::ConvertCoordGlobalToLocal(i_view.origin.data(), i_view.frame.data(), point.data());
    point[2] *= i_view.facing;
    return point;
}

Corner MiddleOf(VOZAPIMesh const & i_mesh)
{
    Corner least{};
    Corner greatest{};
    for (std::size_t axis = 0; axis < 3; ++axis)
    {
        least[axis] = greatest[axis] = i_mesh.GetNodeCoord(0)[axis];
        for (int node = 1; node < i_mesh.GetNumNodes(); ++node)
        {
            least[axis] = std::min(least[axis], i_mesh.GetNodeCoord(node)[axis]);
            greatest[axis] = std::max(greatest[axis], i_mesh.GetNodeCoord(node)[axis]);
        }
    }
    return {0.5 * (least[0] + greatest[0]), 0.5 * (least[1] + greatest[1]), 0.5 * (least[2] + greatest[2])};
}

double SquaredLength(Corner const & i_a, Corner const & i_b)
{
    Corner const d = {i_b[0] - i_a[0], i_b[1] - i_a[1], i_b[2] - i_a[2]};
    return d[0] * d[0] + d[1] * d[1] + d[2] * d[2];
}

// Adds the triangle unless it has no area or is seen on its edge.
void AddTriangle(std::array<Corner, 3> const & i_corners, std::vector<PlaneTriangle> & io_triangles)
{
    std::array<Corner, 2> d{};
    for (std::size_t side = 0; side < 2; ++side)
        for (std::size_t axis = 0; axis < 3; ++axis)
            d[side][axis] = i_corners[side + 1][axis] - i_corners[0][axis];
    double const across = d[0][0] * d[1][1] - d[1][0] * d[0][1];
    double const normal =
        std::hypot(d[0][1] * d[1][2] - d[1][1] * d[0][2], d[0][2] * d[1][0] - d[1][2] * d[0][0], across);
    if (std::fabs(across) > kEdgeOn * normal)
        io_triangles.emplace_back(i_corners);
}

// A quadrilateral is two triangles, parted by its shorter diagonal.
std::vector<PlaneTriangle> TrianglesOf(VOZAPIMesh const & i_mesh, View const & i_view)
{
    std::vector<PlaneTriangle> triangles;
    auto const pElements = i_mesh.GetElements();
    for (int e = 0; e < i_mesh.GetNumElements(); ++e)
    {
        int const * const pnNodes = pElements[e];
        std::array<Corner, 4> c{};
        for (std::size_t corner = 0; corner < 4; ++corner)
            if (pnNodes[corner] >= 0)
                c[corner] = Seen(i_view, i_mesh.GetNodeCoord(pnNodes[corner]));
        if (pnNodes[3] < 0)
            AddTriangle({c[0], c[1], c[2]}, triangles);
        else if (SquaredLength(c[0], c[2]) <= SquaredLength(c[1], c[3]))
        {
            AddTriangle({c[0], c[1], c[2]}, triangles);
            AddTriangle({c[0], c[2], c[3]}, triangles);
        }
        else
        {
            AddTriangle({c[0], c[1], c[3]}, triangles);
            AddTriangle({c[1], c[2], c[3]}, triangles);
        }
    }
    return triangles;
}

double SizeOf(std::vector<PlaneTriangle> const & i_triangles)
{
    double size = 0.0;
    for (PlaneTriangle const & triangle : i_triangles)
        for (std::size_t corner = 0; corner < 3; ++corner)
            for (double const value : triangle.At(corner))
                size = std::max(size, std::fabs(value));
    return size;
}

struct Gaps
{
    double least = std::numeric_limits<double>::infinity();
    double greatest = -std::numeric_limits<double>::infinity();
};

// The gaps at the corners of one mesh's triangles that its own mesh leaves in sight and that have the other mesh before
// them. With the second mesh mirrored both heights count against the gap.
void MeasureFrom(std::vector<PlaneTriangle> const & i_own, PlaneGrid & io_ownGrid,
                 std::vector<PlaneTriangle> const & i_other, PlaneGrid & io_otherGrid, double i_dHidden, Gaps & io_gaps)
{
    for (PlaneTriangle const & triangle : i_own)
        for (std::size_t corner = 0; corner < 3; ++corner)
        {
            Corner const & at = triangle.At(corner);
            Corner inside{};
            for (std::size_t axis = 0; axis < 3; ++axis)
            {
                double const middle = (triangle.At(0)[axis] + triangle.At(1)[axis] + triangle.At(2)[axis]) / 3.0;
                inside[axis] = at[axis] + kInward * (middle - at[axis]);
            }
            PlaneGrid::Hit const hit = io_otherGrid.Highest(inside[0], inside[1]);
            if (!std::isfinite(hit.height) || io_ownGrid.Highest(inside[0], inside[1]).height > inside[2] + i_dHidden)
                continue;
            double const gap = -(at[2] + i_other[hit.triangle].HeightAt(at[0], at[1]));
            io_gaps.least = std::min(io_gaps.least, gap);
            io_gaps.greatest = std::max(io_gaps.greatest, gap);
        }
}

Gaps Measure(VOZAPIMesh const & i_first, VOZAPIMesh const & i_second, double const * i_adDirection, double i_dCellSize)
{
    View view{{}, MiddleOf(i_first), 1.0};
    VOZGeoUtil::EvalLocalCoordSystemMatrix(i_adDirection, view.frame.data());
    std::vector<PlaneTriangle> const first = TrianglesOf(i_first, view);
    view.facing = -1.0;
    std::vector<PlaneTriangle> const second = TrianglesOf(i_second, view);
    Gaps gaps;
    if (first.empty() || second.empty())
        return gaps;

    PlaneGrid firstGrid(first, i_dCellSize);
    PlaneGrid secondGrid(second, i_dCellSize);
    double const hidden = kHidden * std::max(SizeOf(first), SizeOf(second));
    MeasureFrom(first, firstGrid, second, secondGrid, hidden, gaps);
    MeasureFrom(second, secondGrid, first, firstGrid, hidden, gaps);
    return gaps;
}
} // namespace

long VOZAPIEvalDistanceBetweenMeshes_Average(VOZAPIMesh const & i_first, VOZAPIMesh const & i_second,
                                             double const * i_adDirection, double i_dCellSize,
                                             tagVOZFILEINFO const & i_info, double & o_dMinDistance,
                                             double & o_dMaxDistance)
{
    o_dMinDistance = 0.0;
    o_dMaxDistance = 0.0;
    if (i_info.m_nVersion != tagVOZFILEINFO::kVersion || !i_adDirection || !IsSound(i_adDirection) ||
        !(VOZGeoUtil::EvalLength3D(i_adDirection) > 0.0) || !IsSound(i_first) || !IsSound(i_second))
        return E_FAIL;
    try
    {
        Gaps const gaps = Measure(i_first, i_second, i_adDirection, i_dCellSize);
        if (!(gaps.least <= gaps.greatest))
            return E_FAIL;
        o_dMinDistance = gaps.least;
        o_dMaxDistance = gaps.greatest;
        return 0;
    }
    catch (std::bad_alloc const &)
    {
        return E_FAIL;
    }
}
