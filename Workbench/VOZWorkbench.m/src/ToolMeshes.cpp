// ToolMeshes.cpp: the meshes of the incremental route, made or given.

#include "ToolMeshes.h"

#include "OutputFile.h"
#include "ToolMeshesParts.h"

#include <stdexcept>

namespace voz::workbench
{

namespace
{
constexpr double kClearanceShare = 0.1; // of the thickness
constexpr double kGapShare = 0.1;       // of the thickness: what the binder's closing time reckons with by default
constexpr double kDieRadius = 6.0;      // thicknesses
constexpr double kMarginShare = 0.02;   // of the part's size
constexpr double kLeastMargin = 5.0;    // thicknesses

double Chosen(double i_given, double i_default)
{
    return i_given < 0.0 ? i_default : i_given;
}

ToolPlan PlanOf(WholeJob const & i_whole, ToolRequest const & i_request)
{
    ToolPlan plan;
    plan.file = i_whole.job.mesh;
    if (i_request.blank || i_request.die || i_request.punch || i_request.binder)
    {
        plan.file = i_whole.job.path;
        plan.line = i_whole.job.incremental ? i_whole.job.incremental->line : 0;
    }
    plan.thickness = i_whole.job.thickness;
    plan.clearance = Chosen(i_request.clearance, kClearanceShare * plan.thickness);
    plan.gap = Chosen(i_request.gap, kGapShare * plan.thickness);
    plan.dieRadius = Chosen(i_request.dieRadius, kDieRadius * plan.thickness);
    plan.margin = Chosen(i_request.margin,
                         std::max(kMarginShare * BoxOf(i_whole.part.mesh).Diagonal(), kLeastMargin * plan.thickness));
    plan.contactOffset = i_request.toolMode == 1 ? plan.thickness : 0.0;
    plan.shortened = std::abs(i_request.processMode) == 2 ? plan.thickness : 0.0;
    plan.wantsBinder = i_request.wantsBinder;
    return plan;
}

void CheckRequest(ToolPlan const & i_plan, ToolRequest const & i_request, Outcome const * i_flat)
{
    if (i_request.die.has_value() != i_request.punch.has_value())
        RefuseTools(i_plan, "a die needs a punch and a punch a die; give both meshes, or neither, and they are made");
    if (i_request.binder && !i_request.die)
        RefuseTools(i_plan, "a binder's mesh alone does not do; give those of die and punch, too, or none");
    if (!i_request.blank && i_flat == nullptr)
        RefuseTools(i_plan, "the blank is made of a run's flat mesh, and there is none; give a mesh of the blank");
    if (!(i_plan.gap > 0.0))
        RefuseTools(i_plan, "the gap between blank and tools is " + Millimetres(i_plan.gap) + "; expected above 0");
    if (!(i_plan.dieRadius > 0.0))
        RefuseTools(i_plan, "the die's radius is " + Millimetres(i_plan.dieRadius) + "; expected above 0");
    if (i_request.die)
        return;
    if (i_plan.contactOffset + i_plan.shortened < i_plan.thickness)
        RefuseTools(i_plan, "tool mode " + std::to_string(i_request.toolMode) + " with process mode " +
                                std::to_string(i_request.processMode) +
                                " would drive the punch through the sheet: the stroke has to end one thickness before "
                                "the tools meet (process mode 2), or punch and binder to be set off by one thickness "
                                "(tool mode 1)");
}

// The mean height of the rim, by length, and of the sheet, by area.
struct Heights
{
    double rim = 0.0;
    double sheet = 0.0;
};
Heights HeightsOf(Surface const & i_part)
{
    Heights heights;
    double area = 0.0;
    for (std::array<int, 4> const & row : i_part.elements)
    {
        double const size = Length(i_part.AreaVector(row));
        int const corners = Surface::Corners(row);
        for (int k = 0; k < corners; ++k)
            heights.sheet += i_part.At(row[static_cast<std::size_t>(k)])[2] * size / corners;
        area += size;
    }
    heights.sheet /= area;
    double longest = 0.0;
    for (RimLoop const & loop : RimsOf(i_part))
    {
        double length = 0.0;
        double sum = 0.0;
        for (RimEdge const & edge : loop)
        {
            double const side = Length(Difference(i_part.At(edge.to), i_part.At(edge.from)));
            length += side;
            sum += 0.5 * side * (i_part.At(edge.from)[2] + i_part.At(edge.to)[2]);
        }
        if (length > longest)
        {
            longest = length;
            heights.rim = sum / length;
        }
    }
    return heights;
}

// What goes wrong with the part is told with the way out.
template <class Make>
auto OrRefuse(std::string const & i_file, Make make)
{
    try
    {
        return make();
    }
    catch (InputError const &)
    {
        throw;
    }
    catch (std::runtime_error const & error)
    {
        throw InputError(i_file, 0, 0,
                         std::string(error.what()) +
                             ", so no tools can be made of it; mend the part, or give meshes of die, punch and binder");
    }
}

void SetHeight(Surface & io_surface, double i_height)
{
    for (Point3 & p : io_surface.nodes)
        p[2] = i_height;
}

std::vector<Point3> NodesOfMesh(VOZCatMesh const & i_mesh)
{
    std::vector<Point3> nodes;
    for (int n = 1; n <= i_mesh.numNode(); ++n)
        nodes.push_back(NodeOf(i_mesh, n));
    return nodes;
}

// A made blank under a given die: one gap below what of the die is lowest.
double HeightBelow(VOZCatMesh const & i_die, ToolPlan const & i_plan)
{
    return BoxOf(i_die).low[2] - 0.5 * i_plan.thickness - i_plan.gap;
}
} // namespace

void RefuseTools(ToolPlan const & i_plan, std::string const & i_what)
{
    throw InputError(i_plan.file, i_plan.line, 0, "tools: " + i_what);
}

std::string Millimetres(double i_length)
{
    return Fixed(i_length, 3) + " mm";
}

ToolSet::ToolSet(ToolSet const & i_other)
    : blank(i_other.blank), die(i_other.die), punch(i_other.punch), binder(i_other.binder),
      hasBinder(i_other.hasBinder), areToolsMade(i_other.areToolsMade), isBlankMade(i_other.isBlankMade),
      frame(i_other.frame), smallestGap(i_other.smallestGap), stroke(i_other.stroke), remarks(i_other.remarks),
      warnings(i_other.warnings)
{
    NameMeshes();
}

ToolSet & ToolSet::operator=(ToolSet const & i_other)
{
    blank = i_other.blank;
    die = i_other.die;
    punch = i_other.punch;
    binder = i_other.binder;
    hasBinder = i_other.hasBinder;
    areToolsMade = i_other.areToolsMade;
    isBlankMade = i_other.isBlankMade;
    frame = i_other.frame;
    smallestGap = i_other.smallestGap;
    stroke = i_other.stroke;
    remarks = i_other.remarks;
    warnings = i_other.warnings;
    NameMeshes();
    return *this;
}

void ToolSet::NameMeshes()
{
    blank.SetName("VOZBlank");
    die.SetName("VOZDie");
    punch.SetName("VOZPunch");
    binder.SetName("VOZBinder");
}

VOZCatAxis ToolFrame(WholeJob const & i_whole, bool & o_isTurned)
{
    VOZCatAxis frame = i_whole.tipping.frame;
    Heights const heights = OrRefuse(i_whole.job.mesh, [&] { return HeightsOf(SurfaceOf(i_whole.part.mesh, frame)); });
    o_isTurned = heights.rim > heights.sheet;
    if (o_isTurned) // by half a turn about local x
        for (int axis = 1; axis < 3; ++axis)
            frame.axis(axis, Vec(-frame.axis(axis, 0), -frame.axis(axis, 1), -frame.axis(axis, 2)));
    return frame;
}

ToolSet MakeTools(WholeJob const & i_whole, Outcome const * i_flat, ToolRequest const & i_request)
{
    ToolPlan const plan = PlanOf(i_whole, i_request);
    CheckRequest(plan, i_request, i_flat);
    ToolSet tools;
    bool isTurned = false;
    tools.frame = ToolFrame(i_whole, isTurned);
    tools.remarks = i_whole.remarks;
    if (isTurned)
        tools.remarks.emplace_back(
            "the stamping frame was turned upside down, so that the part's rim is its lower end: "
            "the punch moves up, into the part");
    tools.isBlankMade = !i_request.blank;
    tools.areToolsMade = !i_request.die;
    Surface blank;
    if (tools.isBlankMade)
        blank = FlatBlank(i_whole, *i_flat, isTurned, plan);
    std::vector<Point3> const outline = tools.isBlankMade ? blank.nodes : NodesOfMesh(*i_request.blank);
    double blankHeight = 0.0;
    std::optional<double> travel;
    if (tools.areToolsMade)
    {
        MadeTools made = OrRefuse(plan.file,
                                  [&]
                                  {
                                      int holes = 0;
                                      Surface const part = PartSurface(i_whole.part.mesh, tools.frame, holes);
                                      if (holes > 0)
                                          tools.remarks.push_back("the tools go across the part's " +
                                                                  std::to_string(holes) + " hole(s)");
                                      return MakeToolSurfaces(part, outline, plan, tools);
                                  });
        tools.die = MeshOf(made.die);
        tools.punch = MeshOf(made.punch);
        tools.hasBinder = !made.binder.elements.empty();
        if (tools.hasBinder)
            tools.binder = MeshOf(made.binder);
        blankHeight = made.blankHeight;
        travel = made.travel;
    }
    else
    {
        tools.die = *i_request.die;
        tools.punch = *i_request.punch;
        tools.hasBinder = i_request.binder.has_value();
        if (tools.hasBinder)
            tools.binder = *i_request.binder;
        blankHeight = HeightBelow(tools.die, plan);
    }
    if (tools.isBlankMade)
    {
        SetHeight(blank, blankHeight);
        tools.blank = MeshOf(blank);
        tools.remarks.push_back("blank: the flat mesh of the run, " + std::to_string(tools.blank.numElem()) +
                                " elements, at z = " + Millimetres(blankHeight) + ", " + Millimetres(plan.gap) +
                                " below the die");
    }
    else
        tools.blank = *i_request.blank;
    ArrangeTools(plan, tools);
    CheckTools(i_whole, plan, travel, tools);
    return tools;
}

} // namespace voz::workbench
