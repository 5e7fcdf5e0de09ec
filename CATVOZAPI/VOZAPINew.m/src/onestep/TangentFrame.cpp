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

} // namespace

TangentFrames buildTangentFrames(Piece const & i_piece, double i_friction)
{
    TangentFrames frames;
    frames.normal = geometry::nodeNormals(i_piece.mesh, i_piece.symmetry);
    for (Vec3 const & normal : frames.normal)
    {
        Vec3 const t1 = anyPerpendicular(normal);
        Vec3 const t2 = cross(normal, t1);
        frames.tangent.push_back({t1, t2});
        double const rise = std::max(std::hypot(t1.z, t2.z), kLeastRise);
        frames.projection.push_back(
            {t1 - (i_friction * t1.z / rise) * normal, t2 - (i_friction * t2.z / rise) * normal});
    }
    return frames;
}

} // namespace voz::onestep
