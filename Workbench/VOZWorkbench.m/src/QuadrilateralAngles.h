// QuadrilateralAngles.h: the directions of the strains of quadrilaterals, which the in-process drivers tell for
// triangles alone.

#ifndef QUADRILATERALANGLES_H
#define QUADRILATERALANGLES_H

#include "Outcome.h"

namespace voz::workbench
{

// Sets the angle of each quadrilateral of all layers that the outcome has, radians from side 1-2, within [0, pi); 0
// where both strains are the same. Needs the places of the nodes in the flat, and thicknesses. Linear in the elements.
void FillQuadrilateralAngles(Outcome & io_outcome);

} // namespace voz::workbench

#endif
