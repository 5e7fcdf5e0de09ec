// Piece.h: a connected piece of the formed part, ready to be solved.
//
// Nodes, cells and actions carry numbers of the piece; nodeOf and elementOf lead back to the Problem. The mesh is
// oriented and none of its cells is degenerate. 0-based, metres, newtons.

#ifndef PIECE_H
#define PIECE_H

#include "geometry/IntegrationPoints.h"
#include "geometry/NodeNormals.h"
#include "onestep/OneStep.h"

namespace voz::onestep
{

// What the constraints take from a node: up to two directions with given X . direction.
struct Hold
{
    int count = 0;
    std::array<geometry::Vec2, 2> direction; // unit
    std::array<double, 2> target{0.0, 0.0};  // m
};

struct Piece
{
    geometry::SurfaceMesh mesh;
    geometry::SideTable sides;
    std::vector<std::vector<int>> loops; // of the boundary
    geometry::PointTable points;
    bool windingIsOpen = false; // see Orientation.h

    std::vector<int> nodeOf, elementOf; // -> Problem
    std::vector<int> material;          // per cell

    std::vector<HolderEdge> holders; // element: the piece's cell
    std::vector<BeadSegment> beads;
    std::vector<double> padShear; // per cell; empty: no pads
    std::vector<Hold> holds;      // per node
    std::vector<geometry::SymmetryNode> symmetry;
    std::vector<geometry::Side> rimSides; // the free sides that lie in no plane of symmetry
    std::vector<double> weight;           // per node, m^2: its share of the area
    double area = 0.0;
};

// Reads weights, rim and integration points off the mesh.
void completePiece(Piece & io_piece);

} // namespace voz::onestep

#endif
