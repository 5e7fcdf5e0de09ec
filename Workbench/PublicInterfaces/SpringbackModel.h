// SpringbackModel.h: what of a job acts on the whole part that springs back, and the figures of what came out.

#ifndef SPRINGBACKMODEL_H
#define SPRINGBACKMODEL_H

#include "Job.h"
#include "JobModel.h"
#include "Outcome.h"
#include "WholeModel.h"

#include <vector>

namespace voz::workbench
{

// What of the job acts on the whole: positions, 1-based, ascending but for `aligned`. Throws InputError.
struct SpringbackSelections
{
    std::vector<int> trimmed; // elements
    std::vector<int> held;    // nodes
    std::vector<int> aligned; // nodes in the order of the job, ids first
};
SpringbackSelections SelectForSpringback(Job const & i_job, JobModel const & i_model, WholePart const & i_whole);

// Mesh, points, figures and section of an outcome whose displacements are there. Throws SolverError where nothing
// sprang: the solver found no forming to unload.
void FinishSpringback(Job const & i_job, JobModel const & i_model, VOZCatAxis const & i_frame,
                      SpringbackOutcome & io_springback);

} // namespace voz::workbench

#endif
