// BeadSegments.h: the pieces of a bead line in the elements that it crosses.

#ifndef BEADSEGMENTS_H
#define BEADSEGMENTS_H

#include "ElemProperty.h"
#include "Mesh.h"
#include "Outcome.h"

#include <vector>

namespace voz::workbench
{

struct BeadSegments
{
    std::vector<EdgeProperty> segments; // element, and natural coordinates of both ends
    double length = 0.0;                // mm, of the line, seen along the stamping direction
    double covered = 0.0;               // mm of it that lies on elements
};

// The line is dropped on the sheet along the stamping direction; where the sheet lies there in several layers, on the
// one nearest to the line. Every place of the line belongs to one element. Triangles have natural coordinates (0, 0),
// (1, 0), (0, 1); quadrilaterals (-1, -1), (1, -1), (1, 1), (-1, 1).
BeadSegments FindBeadSegments(VOZCatMesh const & i_mesh, VOZCatAxis const & i_frame,
                              std::vector<Point3> const & i_line);

} // namespace voz::workbench

#endif
