// ToolMeshesParts.h: the steps of MakeTools. Lengths mm, stamping frame.

#ifndef TOOLMESHESPARTS_H
#define TOOLMESHESPARTS_H

#include "ToolMeshes.h"
#include "ToolSurface.h"

#include <optional>
#include <string>

namespace voz::workbench
{

// The request with every default filled in.
struct ToolPlan
{
    std::string file; // for messages: the part's mesh, or the job where it gives meshes of tools
    int line = 0;     // of it, where there is one
    double thickness = 0.0;
    double clearance = 0.0;
    double margin = 0.0;
    double gap = 0.0;
    double dieRadius = 0.0;
    double contactOffset = 0.0; // by which the solver's contact lies under the meshes of punch and binder
    double shortened = 0.0;     // by which the stroke is less than the smallest gap
    bool wantsBinder = false;
};

[[noreturn]] void RefuseTools(ToolPlan const & i_plan, std::string const & i_what);
std::string Millimetres(double i_length); // "0.39 mm"

// The flat blank of the whole part at height 0, facing up, with the rows of the whole part. Throws InputError where the
// outcome is not of this job.
Surface FlatBlank(WholeJob const & i_whole, Outcome const & i_flat, bool i_isTurned, ToolPlan const & i_plan);

// Die, punch and binder in their places at the start, all facing up; o_blankHeight: of the blank's middle surface.
struct MadeTools
{
    Surface die;
    Surface punch;
    Surface binder; // without elements where there is none
    double blankHeight = 0.0;
    double travel = 0.0; // of the punch, until the sheet is clasped
};
MadeTools MakeToolSurfaces(Surface const & i_part, std::vector<Point3> const & i_outline, ToolPlan const & i_plan,
                           ToolSet & io_tools);

// Names, senses and labels.
void ArrangeTools(ToolPlan const & i_plan, ToolSet & io_tools);

// Gaps and sizes; fills smallestGap and stroke. i_travel: what the stroke ought to be, where the tools are made.
void CheckTools(WholeJob const & i_whole, ToolPlan const & i_plan, std::optional<double> const & i_travel,
                ToolSet & io_tools);

} // namespace voz::workbench

#endif
