// JobProblem.h: from a job's records to the problem that the one-step solver takes.
//
// Positions go into the frame of the first stage. Everything is tested before the solver sees it: indices, counts,
// null arrays, NaN, and values that no sheet can have.

#ifndef JOBPROBLEM_H
#define JOBPROBLEM_H

#include "onestep/OneStep.h"

#include <stdexcept>

struct VOZMultiStageSolverIOData_s;
struct VOZSolverStage_s;

// A record that cannot be solved; the text says what was found, where, and what was expected.
class JobError : public std::runtime_error
{
public:
    using std::runtime_error::runtime_error;
};

// The first stage with a part, a blank on the same topology and a place for the forming result.
VOZSolverStage_s & StageOf(VOZMultiStageSolverIOData_s & io_data);

voz::onestep::Problem ProblemOf(VOZMultiStageSolverIOData_s const & i_data, VOZSolverStage_s const & i_stage);

#endif
