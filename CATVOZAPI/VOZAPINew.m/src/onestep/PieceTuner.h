// PieceTuner.h: what may change the outer actions of a part while it is being solved.

#ifndef PIECETUNER_H
#define PIECETUNER_H

#include "onestep/Partition.h"

namespace voz::onestep
{

class PieceSolver;

class PieceTuner
{
public:
    virtual ~PieceTuner() = default;

    // Before any piece is solved. May order the pieces anew, change what acts on them, or refuse the problem.
    virtual void arrange(Partition & io_parts) = 0;

    // Before a piece is solved. i_shift: how far its positions were moved back from the problem's.
    virtual void prepare(Piece & io_piece, geometry::Vec2 i_shift) = 0;

    // A piece is in equilibrium, and not yet placed over the part.
    virtual void tune(PieceSolver & io_solver) = 0;
};

// Solve of OneStep.h with a tuner, which may be null.
Solution SolveTuned(Problem const & i_problem, Settings const & i_settings, Progress const & i_progress,
                    PieceTuner * io_pTuner);

} // namespace voz::onestep

#endif
