// Tutte.h: a flat position for every node without a folded cell.

#ifndef TUTTE_H
#define TUTTE_H

#include "onestep/Piece.h"

namespace voz::onestep
{

// The longest loop of the boundary on a circle of the piece's area, by the lengths of its edges; every other node at
// the mean of its neighbours; inner loops closed by a fan to an added vertex. i_crossed: the diagonals of
// quadrilaterals count as edges too. Empty if the system could not be solved.
std::vector<geometry::Vec2> embedByTutte(Piece const & i_piece, bool i_crossed);

} // namespace voz::onestep

#endif
