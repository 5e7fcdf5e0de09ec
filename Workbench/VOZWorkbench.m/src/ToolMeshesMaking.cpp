// ToolMeshesMaking.cpp: die, punch and binder out of the part.
//
// With t the thickness, c the clearance, o the contact offset (t in tool mode 1, else 0), the part's middle surface M
// and upward offsets:
//
//     die     M + (t/2 + c), lowered by c: its level faces are the upper faces of the formed sheet
//     punch   M - (t/2 - o) inside the shoulder: what the solver's contact sees is the formed sheet's lower face
//     binder  the flange - (t/2 - o), and level rows beyond it
//
// That is where they stand at the end of the stroke. At the start the punch and the binder are lowered until what their
// contact sees is one gap below the blank's lower face.

#include "ToolMeshesParts.h"

#include "OutputFile.h"

#include <numbers>

namespace voz::workbench
{

namespace
{
constexpr double kUndercut = 1.0;      // degrees beyond the vertical
constexpr double kFilletRadius = 25.0; // thicknesses: wider bends are curved lands

std::size_t CountOf(std::vector<char> const & i_marks)
{
    return static_cast<std::size_t>(std::ranges::count_if(i_marks, [](char mark) { return mark != 0; }));
}

std::string Elements(Surface const & i_surface)
{
    return std::to_string(i_surface.elements.size()) + " elements";
}

Surface Offset(Surface const & i_surface, double i_distance, char const * i_name, ToolSet & io_tools)
{
    OffsetResult result = OffsetSurface(i_surface, i_distance);
    if (result.mended > 0)
        io_tools.remarks.push_back(std::string(i_name) + ": " + std::to_string(result.mended) +
                                   " elements of fillets tighter than the offset of " +
                                   Millimetres(std::abs(i_distance)) + " were smoothed");
    if (result.folded > 0)
        io_tools.warnings.push_back(std::string(i_name) + ": " + std::to_string(result.folded) +
                                    " elements are folded, because the part is bent tighter there than half its "
                                    "thickness; give a mesh of the " +
                                    i_name + " instead");
    return std::move(result.surface);
}

void WarnOfUndercuts(Surface const & i_part, ToolSet & io_tools)
{
    double const limit = -std::sin(kUndercut * std::numbers::pi / 180.0);
    auto const count = std::ranges::count_if(i_part.elements, [&](std::array<int, 4> const & row)
                                             { return Unit(i_part.AreaVector(row))[2] < limit; });
    if (count > 0)
        io_tools.warnings.push_back(std::to_string(count) +
                                    " elements of the part face away from the stamping direction: the punch cannot "
                                    "reach them without passing through the sheet; choose another direction");
}

// Marks over the part's elements, made for those of the extended surface.
std::vector<char> BinderElements(ExtendedSurface const & i_extended, std::vector<char> const & i_isFlange)
{
    std::vector<char> isBinder = i_extended.isLevel;
    std::vector<char> isHeld = isBinder;
    for (std::size_t e = 0; e < isBinder.size(); ++e)
    {
        if (e < i_isFlange.size() && i_isFlange[e] != 0)
            isBinder[e] = isHeld[e] = 1;
        if (e < i_isFlange.size())
            continue;
        for (int const n : i_extended.surface.elements[e])
            isHeld[e] = static_cast<char>(isHeld[e] & i_extended.isHolderNode[static_cast<std::size_t>(n)]);
    }
    return CountOf(isHeld) > 0 ? isHeld : isBinder; // a part whose rim is neither flange nor wall: all around it
}

Surface MakePunch(Surface const & i_part, std::vector<char> const & i_isFlange, ToolPlan const & i_plan,
                  ToolSet & io_tools)
{
    Surface const offset = Offset(i_part, i_plan.contactOffset - 0.5 * i_plan.thickness, "punch", io_tools);
    if (CountOf(i_isFlange) == 0)
    {
        io_tools.remarks.push_back("punch: the whole part's lower face, " + Elements(offset));
        return offset;
    }
    std::vector<char> const isShoulder = ShoulderOf(i_part, i_isFlange);
    std::vector<char> isPunch(i_isFlange.size(), 1);
    for (std::size_t e = 0; e < isPunch.size(); ++e)
        isPunch[e] = i_isFlange[e] == 0 && isShoulder[e] == 0 ? 1 : 0;
    if (CountOf(isPunch) == 0)
        throw std::runtime_error("the part has a flange and a shoulder, and nothing that a punch would form");
    Surface punch = Subset(offset, isPunch);
    io_tools.remarks.push_back("punch: the part's lower face inside the die's shoulder, " + Elements(punch));
    return punch;
}

void TellFaces(ToolPlan const & i_plan, ExtendedSurface const & i_extended, Surface const & i_die, ToolSet & io_tools)
{
    std::string text = "die: the part's upper face, walls " + Millimetres(i_plan.clearance) +
                       " off the sheet, extended by " + Fixed(i_extended.reach, 1) + " mm, which is " +
                       Fixed(i_plan.margin, 1) + " mm beyond the blank; " + Elements(i_die);
    io_tools.remarks.push_back(text);
    if (i_extended.steepest > 3.0)
        io_tools.remarks.push_back("the part's rim slopes by up to " + Fixed(i_extended.steepest, 1) +
                                   " degrees: the die goes on with a shoulder of radius " +
                                   Millimetres(i_plan.dieRadius));
    if (i_plan.contactOffset > 0.0)
        io_tools.remarks.push_back("punch and binder are meshed one thickness (" + Millimetres(i_plan.thickness) +
                                   ") above their faces: the solver sets their contact off by it");
}
} // namespace

MadeTools MakeToolSurfaces(Surface const & i_part, std::vector<Point3> const & i_outline, ToolPlan const & i_plan,
                           ToolSet & io_tools)
{
    WarnOfUndercuts(i_part, io_tools);
    std::vector<char> const isFlange = i_plan.wantsBinder ? FlangeOf(i_part, kFilletRadius * i_plan.thickness)
                                                          : std::vector<char>(i_part.elements.size(), 0);
    ExtendedSurface const extended = ExtendSurface(i_part, isFlange, {i_plan.dieRadius, i_plan.margin, i_outline});
    MadeTools made;
    made.die = Offset(extended.surface, 0.5 * i_plan.thickness + i_plan.clearance, "die", io_tools);
    Lift(made.die, -i_plan.clearance);
    TellFaces(i_plan, extended, made.die, io_tools);
    made.blankHeight = made.die.Box().low[2] - 0.5 * i_plan.thickness - i_plan.gap;
    double const start = made.blankHeight - 0.5 * i_plan.thickness - i_plan.gap + i_plan.contactOffset;
    made.punch = MakePunch(i_part, isFlange, i_plan, io_tools);
    made.travel = made.punch.Box().high[2] - start;
    Lift(made.punch, -made.travel);
    io_tools.remarks.push_back("the punch starts " + Millimetres(i_plan.gap) + " below the blank and travels " +
                               Millimetres(made.travel));
    if (!i_plan.wantsBinder)
    {
        io_tools.remarks.emplace_back("no binder: the job has no holder force");
        return made;
    }
    Surface const held = Subset(extended.surface, BinderElements(extended, isFlange));
    made.binder = Offset(held, i_plan.contactOffset - 0.5 * i_plan.thickness, "binder", io_tools);
    Lift(made.binder, start - made.binder.Box().high[2]);
    io_tools.remarks.push_back(
        std::string("binder: ") +
        (CountOf(isFlange) > 0 ? "the flange and level rows beyond it, " : "level rows beyond the part's rim, ") +
        Elements(made.binder) + ", " + Millimetres(i_plan.gap) + " below the blank");
    return made;
}

} // namespace voz::workbench
