// NodeNormals.h: normals of a surface at its nodes.
//
// They follow the sign of the cells, so on an oriented mesh they all look to the same side.

#ifndef NODENORMALS_H
#define NODENORMALS_H

#include "geometry/SurfaceMesh.h"

namespace voz::geometry
{

// A node held to a plane of symmetry (vertical, normal `direction`) together with a neighbour along a free side.
struct SymmetryNode
{
    int node;
    Vec2 direction; // unit
};

// Unit normal per node: mean of the corner normals weighted by the corner angles, less its part along the planes of
// symmetry. A node without cells has a null vector.
std::vector<Vec3> nodeNormals(SurfaceMesh const & i_mesh, std::vector<SymmetryNode> const & i_symmetry);

// The same for a single corner: unit normal of its two sides times the angle between them.
Vec3 weightedCornerNormal(SurfaceMesh const & i_mesh, Cell const & i_cell, int i_corner);

} // namespace voz::geometry

#endif
