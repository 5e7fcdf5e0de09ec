// Ladder.h: Newton's method, and what is tried when it does not converge straight from the start.

#ifndef LADDER_H
#define LADDER_H

#include "onestep/Newton.h"

namespace voz::onestep
{

struct LadderOutcome
{
    NewtonState state; // of io_flat, under the full law and load
    int steps = 0;     // of all runs together
    bool converged = false;
    bool stopped = false;
    int rung = 0; // 0: straight
};

// io_flat: the start, then the best flat found.
LadderOutcome climbLadder(Settings const & i_settings, Newton & io_newton, MembraneSystem & io_system,
                          Monitor & io_monitor, std::vector<geometry::Vec2> & io_flat);

} // namespace voz::onestep

#endif
