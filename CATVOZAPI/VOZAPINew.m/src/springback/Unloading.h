// Unloading.h: the stresses of a piece let go in steps, each brought to balance by Newton's method.

#ifndef UNLOADING_H
#define UNLOADING_H

#include "onestep/Monitor.h"
#include "onestep/SparseSolver.h"
#include "springback/SheetSystem.h"

namespace voz::springback
{

struct UnloadingOutcome
{
    Status status = Status::Failed;
    double load = 0.0;     // share of the stresses that was let go
    double residual = 0.0; // relative, of the last state
    int loadSteps = 0, newtonSteps = 0;
    int worstNode = -1;       // of the piece, where the greatest force is out of balance
    double pinReaction = 0.0; // relative
    struct Cost
    {
        double analysis = 0.0, assembly = 0.0, factorisation = 0.0, solves = 0.0, total = 0.0; // seconds
        int factorisations = 0;
    } cost;
};

// io_state: the formed state; the sprung one afterwards.
UnloadingOutcome unload(SheetSystem & io_system, Settings const & i_settings, onestep::Monitor & io_monitor,
                        SheetState & io_state);

} // namespace voz::springback

#endif
