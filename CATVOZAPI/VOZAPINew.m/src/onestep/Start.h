// Start.h: a flat without folds from which Newton converges.
//
// Tutte's embedding, then the flat of least distortion, placed over the part; constraints are brought in by penalties
// of rising weight and set exactly at the end. The solution does not depend on the start; only whether it is reached
// does.

#ifndef START_H
#define START_H

#include "onestep/Monitor.h"
#include "onestep/Piece.h"

namespace voz::onestep
{

struct Start
{
    std::vector<geometry::Vec2> flat; // empty: none was found
    std::string reason;               // why none was found
    int steps = 0;                    // of the energy
};

// May turn the winding of a piece that left it open: the constraints tell which side is up.
Start findStart(Monitor & io_monitor, Piece & io_piece);

} // namespace voz::onestep

#endif
