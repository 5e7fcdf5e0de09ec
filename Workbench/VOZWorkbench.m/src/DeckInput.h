// DeckInput.h: a job as the incremental driver takes it: four meshes and the process, all in the stamping frame.

#ifndef DECKINPUT_H
#define DECKINPUT_H

#include "ToolMeshes.h"

#include "JobModel.h"

#include <array>
#include <string>
#include <vector>

namespace voz::workbench
{

struct DeckInput
{
    WholeJob whole;
    ToolSet tools;
    Process process;   // of the blank; of holders the force alone, of beads and pads their lines in the frame
    VOZCatAxis frame;  // the identity: everything stands in the stamping frame already
    Symmetry symmetry; // none: everything is whole
    std::vector<IncrementalMesh> meshes;

    // The blank first: the holder's force is measured along its rim. The last is null without a binder. Lent.
    std::array<VOZCatMesh const *, 4> Meshes() const;
};

// i_flat: as MakeTools takes it. Fills o_input, which must be fresh. Throws InputError.
void BuildDeckInput(Job const & i_job, JobModel const & i_model, Outcome const * i_flat, DeckInput & o_input);

bool HasHolder(Job const & i_job);

// What no deck can say, by name: several materials, wanted strains, prescribed displacements, a held edge, a holder
// without friction. Throws InputError.
void CheckDeckJob(Job const & i_job);

// The whole outer holder of the blank and single ones together, in the driver's units: a level or a force per length
// as they are, a force in kilonewtons. i_rim: length of the blank's outer edge, mm.
FullBlankHolder HolderOf(Job const & i_whole, ElemProperty const & i_property, double i_rim);

// The outlines, closed, of a pad's elements in the frame: x, y and 0 a point, mm. One for each piece; holes are filled.
std::vector<std::vector<Point3>> PadOutlines(JobPad const & i_pad, WholeJob const & i_whole, VOZCatAxis const & i_frame,
                                             std::vector<std::string> & io_warnings);

// The points of a line in the frame, laid on the die along the stamping direction.
std::vector<Point3> BeadLine(JobBead const & i_bead, VOZCatMesh const & i_die, VOZCatAxis const & i_frame,
                             std::vector<std::string> & io_warnings);

} // namespace voz::workbench

#endif
