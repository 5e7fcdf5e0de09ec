// IntegrationPoints.h: triangles and quadrilaterals reduced to points of a tangent plane.
//
// A point carries a weight (area), a right-handed orthonormal frame e1, e2, n of the formed surface and the gradients
// of the shape functions in it. n follows the cell's sign; e1 lies along the cell's first side, so that for a cell with
// sign -1 only e2 and n differ from those of the given winding.

#ifndef INTEGRATIONPOINTS_H
#define INTEGRATIONPOINTS_H

#include "geometry/SurfaceMesh.h"

namespace voz::geometry
{

struct IntegrationPoint
{
    std::array<int, 4> node{-1, -1, -1, -1};
    std::array<int, 4> corner{0, 1, 2, 3}; // of the cell, per node of the point
    int count = 3;                         // of nodes
    int cell = 0;
    double area = 0.0; // m^2
    Vec3 e1, e2, n;
    std::array<Vec2, 4> gradient; // of the shape function of each node, 1/m
};

struct PointTable
{
    std::vector<IntegrationPoint> points;     // cells ascending
    std::vector<std::array<int, 4>> reported; // per cell: the points behind its four places of result
    int numberOfSplit = 0;                    // quadrilaterals solved as two triangles
};

// One point in a triangle, 2x2 in a quadrilateral in the order (-,-), (+,-), (+,+), (-,+). A quadrilateral that is
// folded, or whose least Jacobian is below 0.05 of its greatest, becomes two triangles over its shorter diagonal.
PointTable buildIntegrationPoints(SurfaceMesh const & i_mesh);

} // namespace voz::geometry

#endif
