// QuadrilateralAngles.h: the directions of the strains of quadrilaterals. The in-process drivers tell them for
// triangles alone, and the file route the sum over four points, which says nothing where the points lie on both sides
// of 0.

#ifndef QUADRILATERALANGLES_H
#define QUADRILATERALANGLES_H

#include "Outcome.h"

namespace voz::workbench
{

// Sets the angle of each quadrilateral of all layers that the outcome has, radians from side 1-2, within [0, pi); one
// whose strains are the same both ways, or without area, is left alone. Needs the places of the nodes in the flat, and
// thicknesses. Linear in the elements.
void FillQuadrilateralAngles(Outcome & io_outcome);

} // namespace voz::workbench

#endif
