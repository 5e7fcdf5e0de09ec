// HoleFill.h: the holes of a mesh closed with triangles.

#ifndef HOLEFILL_H
#define HOLEFILL_H

#include "MeshFile.h"

namespace voz::workbench
{

struct HoleFill
{
    int holes = 0;
    int nodes = 0; // added
    int elements = 0;
};

// Closes every hole of the mesh: every loop of free edges but the outer one. No node moves and no element changes, but
// for its sense: all run alike afterwards. New nodes and elements stand behind the old ones, their ids go on from the
// highest, and the new elements are a set of their own ("filled", the next id). Cost: that of FillAllHoles.
//
// Throws InputError, of i_name, for a mesh whose holes cannot be told: a boundary that is no set of simple closed
// loops, edges of more than two elements, more than one piece; and where the filling fails.
HoleFill FillHoles(MeshModel & io_model, std::string const & i_name);

} // namespace voz::workbench

#endif
