// WholeModel.h: the whole of a part that is modelled in part: its mesh, and the job that acts on it.

#ifndef WHOLEMODEL_H
#define WHOLEMODEL_H

#include "Job.h"
#include "JobModel.h"

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

// A job without planes of symmetry that says what the given one says of the whole part; the same job, where it has no
// planes. For what knows no symmetry.
struct WholeJob
{
    Job job;         // selections, beads and forces along edges with their images; a total force is that of the whole
    JobModel model;  // ids of images begin above the highest of the file; sets hold the images, too
    Tipping tipping; // the frame of the given model; no planes
    WholePart part;  // its mesh is that of `model`
    std::vector<std::string> remarks; // what was done
};

// Throws InputError for selections that the model does not have. Cost n log n.
WholeJob MakeWholeJob(Job const & i_job, JobModel const & i_model, Tipping const & i_tipping);

} // namespace voz::workbench

#endif
