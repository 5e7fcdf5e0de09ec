// SurfaceMesh.h: a surface of triangles and quadrilaterals, and how its cells hang together.
//
// Indices are 0-based. A cell keeps the corners in the order in which they came; `sign` is -1 where the cell has to be
// read backwards to agree with the piece that it belongs to (see Orientation.h). Results of a cell are reported
// in the order that came in, which is why corners are never swapped.

#ifndef SURFACEMESH_H
#define SURFACEMESH_H

#include "geometry/SmallVector.h"

#include <array>
#include <vector>

namespace voz::geometry
{

struct Cell
{
    std::array<int, 4> node{-1, -1, -1, -1};
    int count = 3;     // of corners: 3 or 4
    double sign = 1.0; // -1: the normal of the given winding is turned
    int next(int i_corner) const { return i_corner + 1 < count ? i_corner + 1 : 0; }
    int previous(int i_corner) const { return i_corner > 0 ? i_corner - 1 : count - 1; }
};

struct SurfaceMesh
{
    std::vector<Vec3> position; // metres
    std::vector<Cell> cells;
};

struct Side // of a cell, directed as the cell's given winding goes
{
    int a, b; // its nodes
    int cell;
    int corner; // of the cell at a
};

// The sides of a mesh and the cell across each.
struct SideTable
{
    std::vector<std::array<int, 4>> across;           // per cell and corner: the other cell of the side; -1: free
    std::vector<std::array<bool, 4>> acrossIsAligned; // both cells run along the side the same way
    std::vector<Side> free;                           // cells ascending, then corners
    int numberOfEdges = 0;                            // each counted once
    int crowded = -1;                                 // a cell on a side that more than two cells share; -1: none
};

SideTable buildSideTable(SurfaceMesh const & i_mesh);

// Cells by node: those of node i are cell[start[i]] .. cell[start[i + 1] - 1], ascending.
struct NodeCells
{
    std::vector<int> start, cell;
};

NodeCells buildNodeCells(SurfaceMesh const & i_mesh);

// The free sides, walked in the sense that has the surface on the left, as simple closed loops of nodes. A node
// where two loops touch is passed once by each of them.
std::vector<std::vector<int>> traceLoops(SurfaceMesh const & i_mesh, SideTable const & i_sides);

// Vector area of a cell (half the cross product of the diagonals), with its sign, and its size.
Vec3 vectorArea(SurfaceMesh const & i_mesh, Cell const & i_cell);
double cellArea(SurfaceMesh const & i_mesh, Cell const & i_cell);

} // namespace voz::geometry

#endif
