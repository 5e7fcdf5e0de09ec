// StrokeHistory.h: what the shapes on the way have made of each point's material.
//
// A shape is given by the places of the mesh's nodes on it. From one shape to the next the strain increment is the
// logarithm of the left stretch, and the stress turns with the polar rotation.

#ifndef STROKEHISTORY_H
#define STROKEHISTORY_H

#include "onestep/MembraneSystem.h"

namespace voz::multistep
{

using NodePlaces = std::vector<geometry::Vec3>; // per node of the piece, m

// Per integration point of i_piece, which has the nodes of the shapes: the history after all of i_shapes, in order,
// of a sheet that lay at i_flat. i_laws: per material. The rotation of the step that follows is that of i_flat.
std::vector<onestep::PointHistory> strokeHistory(onestep::Piece const & i_piece,
                                                 std::vector<material::MembraneLaw> const & i_laws,
                                                 std::span<geometry::Vec2 const> i_flat,
                                                 std::span<NodePlaces const> i_shapes);

} // namespace voz::multistep

#endif
