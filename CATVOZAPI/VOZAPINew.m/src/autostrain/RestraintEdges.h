// RestraintEdges.h: the edges whose restraint is looked for, and how the levels are spread over them.

#ifndef RESTRAINTEDGES_H
#define RESTRAINTEDGES_H

#include "autostrain/AutoStrain.h"
#include "autostrain/LevelSearch.h"
#include "onestep/Partition.h"

namespace voz::autostrain
{

// The edges of a piece, without forces: its holders, each once, or, where the problem has none at all, its rim.
std::vector<onestep::HolderEdge> restraintEdges(onestep::Problem const & i_problem, onestep::Piece const & i_piece);

struct FirstLevel // N/m
{
    double level; // where the search begins
    double scale; // 0.05 of the yield force of the edges' elements
};

// From the forces of the pieces' holders. The level is held below a quarter of what the sheet can carry.
FirstLevel firstLevel(onestep::Problem const & i_problem, std::vector<onestep::Piece> const & i_pieces,
                      double i_guessFactor);

// The shares of the two levels in the force of an edge. i_at: the two nodes in the plane of the frame, less the piece's
// shift.
Pair levelShares(onestep::Piece const & i_piece, onestep::HolderEdge const & i_edge,
                 std::array<geometry::Vec2, 2> const & i_at);

} // namespace voz::autostrain

#endif
