// OffsetPolyline.h: the outward offset of a closed line in the plane.
//
// Points are x, y in the plane with z carried along: an offset point has the z of the wire's point that it belongs to,
// a crossing the mean of the two lines that meet there. Lengths in any one unit.

#ifndef OFFSETPOLYLINE_H
#define OFFSETPOLYLINE_H

#include "geometry/SmallVector.h"

#include <vector>

namespace voz::geometry
{

struct OffsetRules
{
    double offset = 0.0;  // above 0
    double minEdge = 0.0; // edges below it are merged where that keeps the distance; 0: a thousandth of the offset
    double minAngle =
        0.0; // radians; a convex corner is divided into turns of at least this angle, or 0.001; 0: 15 degrees
};

// The boundary, without its holes, of all that lies inside the wire or within the offset of it; a convex corner is a
// chain of tangents to its arc. It runs in the wire's own sense and meets itself nowhere. Empty if the wire has fewer
// than three distinct points, or crosses itself so that there is no such line. Quadratic in the points.
std::vector<Vec3> offsetOutward(std::vector<Vec3> i_wire, OffsetRules const & i_rules);

// Whether no two edges of the closed line that are not neighbours come closer than the clearance.
bool isApart(std::vector<Vec3> const & i_line, double i_clearance);

// The least distance between two closed lines, in the plane.
double distanceBetween(std::vector<Vec3> const & i_line, std::vector<Vec3> const & i_other);

} // namespace voz::geometry

#endif
