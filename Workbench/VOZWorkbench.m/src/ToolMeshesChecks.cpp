// ToolMeshesChecks.cpp: whether blank and tools can form the part as they stand.

#include "ToolMeshesParts.h"

#include "ElemNormal.h"
#include "MeshNormal.h"
#include "OutputFile.h"
#include "VOZAPIMesh.h"

#include <memory>

namespace voz::workbench
{

namespace
{
constexpr double kSearchCell = 5.0;   // mm, as the route measures
constexpr double kLargestLabel = 1e7; // from here on labels belong to the nodes of draw beads
constexpr double kSizeRatio = 20.0;   // a tool so much larger or smaller than the part is in another unit
constexpr double kUpright = 0.1;      // cosine of a mean normal to the stamping direction below which it has no side
constexpr double kTouch = 1e-6;       // mm
constexpr double kStrokeError = 0.05; // of the thickness: rounding and facets aside the stroke is the travel

struct Gaps
{
    double least = 0.0;
    double greatest = 0.0;
};

std::unique_ptr<VOZAPIMesh> ForKernel(VOZCatMesh const & i_mesh)
{
    std::unique_ptr<VOZAPIMesh> mesh(VOZAPIMesh::Create());
    if (!mesh)
        throw std::bad_alloc();
    mesh->SetNumNodes(i_mesh.numNode());
    mesh->SetNumElements(i_mesh.numElem());
    if (!mesh->AllocateData())
        throw std::bad_alloc();
    for (int n = 1; n <= i_mesh.numNode(); ++n)
        mesh->SetNodeCoord(n - 1, i_mesh.GetNodeData()[n]);
    for (int e = 1; e <= i_mesh.numElem(); ++e)
    {
        int const corners = i_mesh.isTriangle(e) != 0 ? 3 : 4;
        for (int k = 0; k < corners; ++k)
            mesh->GetElements()[e - 1][k] = i_mesh.elem(e, k) - 1;
    }
    return mesh;
}

// Along z from the lower to the upper mesh; nothing where none lies over the other.
std::optional<Gaps> GapsBetween(VOZCatMesh const & i_lower, VOZCatMesh const & i_upper)
{
    double const up[3] = {0.0, 0.0, 1.0};
    tagVOZFILEINFO info;
    info.m_nVersion = tagVOZFILEINFO::kVersion;
    Gaps gaps;
    if (VOZAPIEvalDistanceBetweenMeshes_Average(*ForKernel(i_lower), *ForKernel(i_upper), up, kSearchCell, info,
                                                gaps.least, gaps.greatest) != 0)
        return std::nullopt;
    return gaps;
}

struct Tool
{
    char const * name;
    VOZCatMesh * mesh;
    bool facesUp;
};

std::vector<Tool> ToolsOf(ToolSet & io_tools) // in the order of their labels
{
    std::vector<Tool> tools{
        {"blank", &io_tools.blank, true}, {"die", &io_tools.die, false}, {"punch", &io_tools.punch, true}};
    if (io_tools.hasBinder)
        tools.push_back({"binder", &io_tools.binder, true});
    return tools;
}

void CheckSizes(WholeJob const & i_whole, ToolPlan const & i_plan, ToolSet & io_tools)
{
    double const part = BoxOf(i_whole.part.mesh).Diagonal();
    for (Tool const & tool : ToolsOf(io_tools))
    {
        double const size = BoxOf(*tool.mesh).Diagonal();
        if (!(size > part / kSizeRatio) || !(size < part * kSizeRatio))
            RefuseTools(i_plan, std::string("the ") + tool.name + " measures " + Millimetres(size) +
                                    " across, the part " + Millimetres(part) +
                                    "; is its length unit another one? Say which");
    }
}

// The blank's contact faces are half a thickness off its mesh, those of punch and binder the contact offset below
// theirs.
void CheckRoom(ToolPlan const & i_plan, char const * i_lowerName, char const * i_upperName, VOZCatMesh const & i_lower,
               VOZCatMesh const & i_upper, double i_needed, bool i_mustMeet)
{
    std::optional<Gaps> const gaps = GapsBetween(i_lower, i_upper);
    std::string const lower = std::string("the ") + i_lowerName;
    std::string const upper = std::string("the ") + i_upperName;
    if (!gaps && !i_mustMeet)
        return;
    if (!gaps)
        RefuseTools(i_plan, "no point of " + upper + " lies over " + lower +
                                ", seen along the stamping direction; lay them over each other");
    if (!(gaps->least > i_needed - kTouch))
        RefuseTools(i_plan, lower + " comes as near as " + Millimetres(gaps->least) + " to " + upper +
                                " along the stamping direction; with half the sheet's thickness " +
                                Millimetres(i_needed) + " are needed: move " + upper + " up, or " + lower +
                                " down, by " + Millimetres(i_needed - gaps->least));
}

void CheckBlank(ToolPlan const & i_plan, ToolSet const & i_tools)
{
    double const half = 0.5 * i_plan.thickness;
    CheckRoom(i_plan, "blank", "die", i_tools.blank, i_tools.die, half, true);
    CheckRoom(i_plan, "punch", "blank", i_tools.punch, i_tools.blank, half - i_plan.contactOffset, true);
    if (i_tools.hasBinder)
        CheckRoom(i_plan, "binder", "blank", i_tools.binder, i_tools.blank, half - i_plan.contactOffset, true);
}

void CheckStroke(ToolPlan const & i_plan, std::optional<double> const & i_travel, ToolSet & io_tools)
{
    std::optional<Gaps> const gaps = GapsBetween(io_tools.punch, io_tools.die);
    if (!gaps)
        RefuseTools(i_plan, "no point of the die lies over the punch, seen along the stamping direction; lay them over "
                            "each other");
    if (!(gaps->least > 0.0))
        RefuseTools(i_plan, "the die lies below the punch: the smallest gap from punch to die is " +
                                Millimetres(gaps->least) +
                                " along the stamping direction. The punch must lie below the die, apart by the stroke: "
                                "exchange the two meshes, or move the die up");
    if (!(gaps->least < gaps->greatest))
        RefuseTools(i_plan, "punch and die are " + Millimetres(gaps->least) +
                                " apart everywhere: such tools form nothing; the part is flat");
    io_tools.smallestGap = gaps->least;
    io_tools.stroke = gaps->least - i_plan.shortened;
    if (!(io_tools.stroke > kTouch))
        RefuseTools(i_plan, "the stroke is " + Millimetres(io_tools.stroke) +
                                ": the smallest gap from punch to die is " + Millimetres(gaps->least) +
                                " and the sheet " + Millimetres(i_plan.thickness) + " thick; move the die up");
    if (!i_travel)
        return;
    double const left = *i_travel - io_tools.stroke; // of the way to the closed tools
    if (std::abs(left) > kStrokeError * i_plan.thickness)
        io_tools.warnings.push_back(
            "the route's stroke is " + Millimetres(io_tools.stroke) +
            ", the punch's way until the tools clasp the sheet " + Millimetres(*i_travel) +
            (left > 0.0 ? ": the tools do not close; with tool mode 1 another process mode than 2 closes them"
                        : ": the sheet is squeezed where the part is steep, since it has no level place"));
}
} // namespace

void ArrangeTools(ToolPlan const & i_plan, ToolSet & io_tools)
{
    int nodes = 0;
    int elements = 0;
    for (Tool const & tool : ToolsOf(io_tools))
    {
        if (tool.mesh->numNode() < 3 || tool.mesh->numElem() < 1)
            RefuseTools(i_plan, std::string("the ") + tool.name + " has no elements");
        if (double const last = std::max(static_cast<double>(nodes) + tool.mesh->numNode(),
                                         static_cast<double>(elements) + tool.mesh->numElem());
            last >= kLargestLabel)
            RefuseTools(i_plan, "with the " + std::string(tool.name) + " the labels reach " + Fixed(last, 0) +
                                    ", and 10000000 is the first that is taken; coarser meshes would do");
        double const up = MeshNormal(ElemNormal(*tool.mesh)).normal(2);
        if (!(std::abs(up) > kUpright))
            RefuseTools(i_plan, std::string("the ") + tool.name +
                                    " has no upper side: its mean normal stands across the stamping direction, or its "
                                    "elements run in both senses; make them run one way");
        if ((up > 0.0) != tool.facesUp)
            tool.mesh->reverse();
        tool.mesh->IdsOffset(nodes - tool.mesh->GetFirstNodeNumber(), elements - tool.mesh->GetFirstElementNumber());
        nodes += tool.mesh->numNode();
        elements += tool.mesh->numElem();
    }
    io_tools.NameMeshes();
}

void CheckTools(WholeJob const & i_whole, ToolPlan const & i_plan, std::optional<double> const & i_travel,
                ToolSet & io_tools)
{
    CheckSizes(i_whole, i_plan, io_tools);
    CheckStroke(i_plan, i_travel, io_tools);
    CheckBlank(i_plan, io_tools);
    if (i_plan.wantsBinder && !io_tools.hasBinder)
        io_tools.warnings.emplace_back("the job has a holder force and no binder: nothing will hold the blank; give "
                                       "the binder's mesh, too");
}

} // namespace voz::workbench
