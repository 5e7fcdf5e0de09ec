// TangentFrame.cpp: see the header for the method.

#include "onestep/TangentFrame.h"

#include <algorithm>
#include <cmath>

namespace voz::onestep
{

using geometry::Vec2;
using geometry::Vec3;

namespace
{

constexpr double kLeastRise = 0.001; // |T a3| on a level surface, where friction has no direction

Vec3 anyPerpendicular(Vec3 n)
{
    double const x = std::abs(n.x), y = std::abs(n.y), z = std::abs(n.z);
    Vec3 const axis = x <= y && x <= z ? Vec3{1, 0, 0} : (y <= z ? Vec3{0, 1, 0} : Vec3{0, 0, 1});
    return unit(axis - dot(axis, n) * n);
}

// Of all pairs of tangents the one that lies nearest to the two axes of the flat (greatest t1.x + t2.y): equation and
// unknown of a node then belong together, and the diagonal of the matrix, on which pivots and holding rely, is strong.
std::array<Vec3, 2> tangentsAt(Vec3 i_normal)
{
    Vec3 const s1 = anyPerpendicular(i_normal), s2 = cross(i_normal, s1);
    double const along = s1.x + s2.y, across = s2.x - s1.y, size = std::hypot(along, across);
    if (!(size > 1.0e-12)) // seen from below: all pairs are alike
        return {s1, s2};
    double const c = along / size, s = across / size;
    return {c * s1 + s * s2, c * s2 - s * s1};
}

} // namespace

TangentFrames buildTangentFrames(Piece const & i_piece, double i_friction)
{
    TangentFrames frames;
    frames.normal = geometry::nodeNormals(i_piece.mesh, i_piece.symmetry);
    for (Vec3 const & normal : frames.normal)
    {
        auto const [t1, t2] = tangentsAt(normal);
        frames.tangent.push_back({t1, t2});
        double const rise = std::max(std::hypot(t1.z, t2.z), kLeastRise);
        frames.projection.push_back(
            {t1 - (i_friction * t1.z / rise) * normal, t2 - (i_friction * t2.z / rise) * normal});
    }
    return frames;
}

} // namespace voz::onestep
