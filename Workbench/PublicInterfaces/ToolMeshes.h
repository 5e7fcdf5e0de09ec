// ToolMeshes.h: blank, die, punch and binder of the incremental route: made from the part, or given and checked.
//
// All meshes of this header are in the stamping frame, mm: the punch lies below and moves along +z, the die above it,
// the binder below the blank; the blank, flat, lies between at one height. The part is the formed sheet's middle
// surface. docs/tools.md draws the arrangement and derives the heights.
//
// Made tools stand as far apart as the route needs: where the route's stroke is over, the punch's face is the lower
// face of the part at the part's own place in the stamping frame, and the die's walls stand one thickness and the
// clearance off the punch. The stroke is the smallest gap along z from punch to die, less one thickness in process mode
// 2 or -2.

#ifndef TOOLMESHES_H
#define TOOLMESHES_H

#include "Outcome.h"
#include "WholeModel.h"

#include <optional>
#include <string>
#include <vector>

namespace voz::workbench
{

// A length below 0 is chosen: docs/tools.md tells how.
struct ToolRequest
{
    // Given meshes, already in the stamping frame (see ToolFrame) and where they begin. Die and punch come together or
    // not at all; the binder comes only with them.
    std::optional<VOZCatMesh> blank;
    std::optional<VOZCatMesh> die;
    std::optional<VOZCatMesh> punch;
    std::optional<VOZCatMesh> binder;

    double clearance =
        -1.0;             // mm between sheet and die along a wall, beside the thickness; default 10 % of the thickness
    double margin = -1.0; // mm by which die and binder reach beyond the blank
    double gap = -1.0;    // mm between the blank's faces and the tools at the start; default 10 % of the thickness
    double dieRadius = -1.0;  // mm, of the shoulder where a part without a flange ends steeply; default 6 thicknesses
    int toolMode = 0;         // 1: the solver sets punch and binder off by one thickness
    int processMode = 2;      // 2, -2: the stroke is one thickness shorter than the smallest gap
    bool wantsBinder = false; // there is a holder force
};

// Copies keep the names: a mesh alone does not.
struct ToolSet
{
    VOZCatMesh blank; // where it is made: element e is element e of the whole part, node n its node n
    VOZCatMesh die;
    VOZCatMesh punch;
    VOZCatMesh binder;
    bool hasBinder = false;
    bool areToolsMade = false;
    bool isBlankMade = false;
    VOZCatAxis frame;                  // the stamping frame, global: for bead lines, pads and results
    double smallestGap = 0.0;          // mm, punch to die along z
    double stroke = 0.0;               // mm, by the route's rule
    std::vector<std::string> remarks;  // what was made and how, in numbers with units
    std::vector<std::string> warnings; // what will form badly

    ToolSet() = default;
    ToolSet(ToolSet const & i_other);
    ToolSet & operator=(ToolSet const & i_other);
    ~ToolSet() = default;
    void NameMeshes(); // "VOZBlank", "VOZDie", "VOZPunch", "VOZBinder"
};

// The frame in which the tools are made: that of the job, turned upside down where the part would open the wrong way
// (its rim must be its lower end). io_isTurned tells whether it was.
VOZCatAxis ToolFrame(WholeJob const & i_whole, bool & o_isTurned);

// i_flat: of a run of the part (of the model, with its planes), for the blank; may be null where the blank is given.
// Labels: the blank's begin at 1, die, punch and binder follow, without overlap; all normals stand as the route wants
// them (blank, punch and binder up, die down).
//
// Throws InputError: a part that no tools can be made of (why, and what to do), given meshes that cannot form the part
// (die below the punch, tools that overlap or meet the blank, a stroke of zero, another unit), labels of 10 000 000
// and above. Cost n log n in nodes, and k^2 in the k nodes of a notch of the part's rim.
ToolSet MakeTools(WholeJob const & i_whole, Outcome const * i_flat, ToolRequest const & i_request);

} // namespace voz::workbench

#endif
