// JobResults.h: from the solver's answer to a job's records.

#ifndef JOBRESULTS_H
#define JOBRESULTS_H

#include "binder/Binder.h"
#include "onestep/OneStep.h"

struct VOZMultiStageSolverIOData_s;
struct VOZSolverStage_s;

// Why an answer cannot be written: a field of another size than the mesh, a value that is no number. Empty: it can.
std::string FlawOf(voz::onestep::Problem const & i_problem, voz::onestep::Solution const & i_solution,
                   voz::binder::Closing const * i_pClosing);

// Writes the forming result and the coordinates of the blank, and, where i_pClosing is given, those of the blank on the
// binder. The answer has no flaw.
void WriteResults(voz::onestep::Problem const & i_problem, voz::onestep::Solution const & i_solution,
                  voz::binder::Closing const * i_pClosing, VOZMultiStageSolverIOData_s & io_data,
                  VOZSolverStage_s & io_stage);

[[noreturn]] void RaiseKernelError(std::string const & i_text);

#endif
