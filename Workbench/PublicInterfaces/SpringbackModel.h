// SpringbackModel.h: what springs back: the whole of a part that is modelled in part, and the figures of what came out.

#ifndef SPRINGBACKMODEL_H
#define SPRINGBACKMODEL_H

#include "Job.h"
#include "JobModel.h"
#include "Outcome.h"

#include <vector>

namespace voz::workbench
{

// The model with its images in its planes of symmetry: its own nodes and elements first, in their order. Nodes on a
// plane are their own images.
struct WholePart
{
    VOZCatMesh mesh;
    std::vector<int> nodeOf;        // per node: the model's, 0-based
    std::vector<int> elementOf;     // per element: the model's, 0-based
    std::vector<unsigned> mirrored; // per node: bit 0 in local x, bit 1 in local y
};
WholePart MakeWhole(VOZCatMesh const & i_model, VOZCatAxis const & i_frame, Symmetry const & i_symmetry);

// A vector of the model's at a node of the whole.
Point3 ImageOf(Point3 i_vector, unsigned i_mirrored, VOZCatAxis const & i_frame);

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
