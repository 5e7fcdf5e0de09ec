// NodeNormals.cpp: angle-weighted normals.
//
// G. Thuermer, C. Wuethrich, J. Graph. Tools 3 (1998) 43. Angles, not areas: they do not depend on how a polygon is cut
// into triangles, and on a bent strip they give the bisector, for which equal tensions on both sides balance exactly.

#include "geometry/NodeNormals.h"

namespace voz::geometry
{

namespace
{
constexpr double kSymmetryCosine = 0.5; // a normal nearer than this to the plane's own is not corrected
}

Vec3 weightedCornerNormal(SurfaceMesh const & i_mesh, Cell const & i_cell, int i_corner)
{
    auto const x = [&](int corner)
    { return i_mesh.position[static_cast<std::size_t>(i_cell.node[static_cast<std::size_t>(corner)])]; };
    Vec3 const out = x(i_cell.next(i_corner)) - x(i_corner);
    Vec3 const back = x(i_cell.previous(i_corner)) - x(i_corner);
    Vec3 const normal = cross(out, back);
    double const size = length(normal);
    if (!(size > 0.0))
        return {};
    double const angle = std::atan2(size, dot(out, back));
    return (i_cell.sign * angle / size) * normal;
}

std::vector<Vec3> nodeNormals(SurfaceMesh const & i_mesh, std::vector<SymmetryNode> const & i_symmetry)
{
    std::vector<Vec3> normals(i_mesh.position.size());
    for (Cell const & cell : i_mesh.cells)
        for (int corner = 0; corner < cell.count; ++corner)
        {
            Vec3 & sum = normals[static_cast<std::size_t>(cell.node[static_cast<std::size_t>(corner)])];
            sum = sum + weightedCornerNormal(i_mesh, cell, corner);
        }
    for (Vec3 & normal : normals)
        normal = unit(normal);
    for (SymmetryNode const & held : i_symmetry)
    {
        Vec3 & normal = normals[static_cast<std::size_t>(held.node)];
        Vec3 const along = lifted(held.direction);
        if (std::abs(dot(normal, along)) < kSymmetryCosine)
            normal = unit(normal - dot(normal, along) * along);
    }
    return normals;
}

} // namespace voz::geometry
