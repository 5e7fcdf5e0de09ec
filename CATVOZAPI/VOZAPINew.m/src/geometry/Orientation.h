// Orientation.h: pieces of a mesh and one winding for each.

#ifndef ORIENTATION_H
#define ORIENTATION_H

#include "geometry/SurfaceMesh.h"

namespace voz::geometry
{

// Cells that are joined by sides form a piece; a common node alone does not join.
struct Pieces
{
    std::vector<int> ofCell; // piece of each cell, numbered by the first cell
    int count = 0;
    int twisted = -1;                // a cell where the winding comes back reversed (one-sided surface); -1: none
    std::vector<bool> windingIsOpen; // per piece: it faces up as much as down, so the winding stayed as given
};

// Sets the sign of every cell: the same winding throughout a piece, turned so that its mean normal has a positive third
// component. Where that component is below 0.05 of the area (a tube that was cut open) the first cell decides.
Pieces orient(SideTable const & i_sides, SurfaceMesh & io_mesh);

} // namespace voz::geometry

#endif
