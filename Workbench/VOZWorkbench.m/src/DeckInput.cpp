// DeckInput.cpp: the meshes of a deck, and the process beside them.

#include "DeckInput.h"

#include "DeckFolder.h"
#include "EdgeSets.h"
#include "FreeEdgeLoops.h"
#include "MeshFile.h"
#include "OutputFile.h"

#include <algorithm>
#include <cmath>
#include <filesystem>

namespace voz::workbench
{

namespace
{
constexpr double kPascalPerMegapascal = 1e6;
constexpr double kMillimetrePerMetre = 1000.0;
constexpr double kNewtonPerMetre = 1000.0;    // per N/mm
constexpr double kKilonewtonPerNewton = 1e-3; // the driver makes newtons of a given total force by the factor 1000
constexpr double kLeastFriction = 0.001;      // below it the process model knows no holder force
constexpr int kOptionTotalForce = 5;
constexpr int kOptionLocked = 4;
constexpr double kLockFactor = 0.8; // read as "no draw-in", too

[[noreturn]] void Refuse(Job const & i_job, int i_line, std::string const & i_message)
{
    throw InputError(i_job.path, i_line, 0, i_message);
}

// A mesh of the job's files in the frame of the tools, whole.
std::optional<VOZCatMesh> GivenMesh(std::string const & i_path, double i_unitLength, Tipping const & i_tipping,
                                    VOZCatAxis const & i_frame)
{
    if (i_path.empty())
        return std::nullopt;
    ReadOptions options;
    options.unitLength = i_unitLength;
    VOZCatMesh mesh = MakeWhole(ReadMesh(i_path, options).mesh, i_tipping.frame, i_tipping.symmetry).mesh;
    double(*const nodes)[3] = mesh.GetNodeData();
    for (int n = 1; n <= mesh.numNode(); ++n)
        std::ranges::copy(FlatPlace(nodes[n], {}, i_frame), nodes[n]);
    return mesh;
}

ToolRequest RequestOf(Job const & i_job, Tipping const & i_tipping, VOZCatAxis const & i_frame)
{
    JobIncremental const incremental = IncrementalOf(i_job);
    ToolRequest request;
    auto const given = [&](std::string const & i_path)
    { return GivenMesh(i_path, incremental.unitLength, i_tipping, i_frame); };
    request.blank = given(incremental.blank);
    request.die = given(incremental.die);
    request.punch = given(incremental.punch);
    request.binder = given(incremental.binder);
    request.clearance = incremental.clearance;
    request.toolMode = incremental.toolMode;
    request.processMode = incremental.processMode;
    request.wantsBinder = HasHolder(i_job);
    return request;
}

void FillMeshes(Job const & i_job, DeckInput & io_input)
{
    JobIncremental const incremental = IncrementalOf(i_job);
    ToolSet const & tools = io_input.tools;
    auto const add =
        [&](char const * i_role, VOZCatMesh const & i_mesh, std::string const & i_path, char const * i_made)
    {
        std::string const name = std::filesystem::path(i_path).filename().string();
        io_input.meshes.push_back({i_role, i_path.empty() ? i_made : name, i_mesh.numNode(), i_mesh.numElem()});
    };
    add("blank", tools.blank, incremental.blank, "the flat mesh of a kernel run");
    add("die", tools.die, incremental.die, "made from the part");
    add("punch", tools.punch, incremental.punch, "made from the part");
    if (tools.hasBinder)
        add("binder", tools.binder, incremental.binder, "made from the part");
}

double RimOf(VOZCatMesh const & i_blank)
{
    FreeEdgeSet const edges(i_blank);
    int error = 0;
    FreeEdgeLoops const loops(edges, i_blank, &error);
    if (error != 0)
        throw InputError("blank", 0, 0, "the edge of the blank is no set of simple closed loops");
    return loops.loopLength(loops.outerLoopNum());
}

void FillProperties(Job const & i_whole, VOZCatMesh const & i_blank, Process & io_process)
{
    ElemProperty & property = io_process.property;
    property.sizeProperty(1);
    property.sizePropertyIndex(i_blank.numElem());
    for (int e = 1; e <= i_blank.numElem(); ++e)
        property.propertyId(e, 1);
    FillMaterials(i_whole, i_whole.materials.front(), io_process.material, *property.material(1));
    property.formingLimit(1) = LimitOf(i_whole, i_whole.materials.front());
    io_process.friction.coefficient(i_whole.friction);
}

void FillPads(DeckInput & io_input)
{
    struct Outline
    {
        std::vector<Point3> points;
        double pressure;
    };
    std::vector<Outline> outlines;
    for (JobPad const & pad : io_input.whole.job.pads)
        for (std::vector<Point3> & points :
             PadOutlines(pad, io_input.whole, io_input.tools.frame, io_input.process.warnings))
            outlines.push_back({std::move(points), pad.pressure * kPascalPerMegapascal});
    if (outlines.empty())
        return;
    auto * const sizes = new int[outlines.size()]; // the property owns all three
    auto * const values = new double[outlines.size()];
    auto ** const places = new double *[outlines.size()];
    for (std::size_t i = 0; i < outlines.size(); ++i)
    {
        sizes[i] = static_cast<int>(outlines[i].points.size());
        values[i] = outlines[i].pressure;
        places[i] = new double[3 * outlines[i].points.size()];
        for (std::size_t p = 0; p < outlines[i].points.size(); ++p)
            std::ranges::copy(outlines[i].points[p], places[i] + 3 * p);
    }
    ElemProperty & property = io_input.process.property;
    property.setNbPressurePads(static_cast<int>(outlines.size()));
    property.pressPadSize(sizes);
    property.pressPadVal(values);
    property.pressPadXYZ(places);
}

void FillBeads(DeckInput & io_input)
{
    std::vector<JobBead> const & beads = io_input.whole.job.beads;
    ElemProperty & property = io_input.process.property;
    if (!beads.empty())
        property.sizeDrawBeads(static_cast<int>(beads.size()));
    int i = 0;
    for (JobBead const & bead : beads)
    {
        std::vector<Point3> const line =
            BeadLine(bead, io_input.tools.die, io_input.tools.frame, io_input.process.warnings);
        DrawBead record;
        record.force = bead.force * kNewtonPerMetre;
        record.xyzCount = static_cast<int>(line.size());
        record.xyz = new double[3 * line.size()]; // the record owns it
        for (std::size_t p = 0; p < line.size(); ++p)
            std::ranges::copy(line[p], record.xyz + 3 * p);
        property.drawBeads(++i, record);
    }
}
} // namespace

std::array<VOZCatMesh const *, 4> DeckInput::Meshes() const
{
    return {&tools.blank, &tools.die, &tools.punch, tools.hasBinder ? &tools.binder : nullptr};
}

bool HasHolder(Job const & i_job)
{
    return i_job.holder.kind != HolderKind::None ||
           std::ranges::any_of(i_job.holders, [](JobEdgeHolder const & holder) { return holder.force > 0.0; });
}

void CheckDeckJob(Job const & i_job)
{
    if (i_job.materials.size() > 1 || !i_job.materials.front().set.empty())
        Refuse(i_job, i_job.materials.back().line,
               "the incremental route carries one material for the whole sheet; the deck has one part for the blank");
    if (i_job.autoStrain)
        Refuse(i_job, i_job.autoStrain->line,
               "the incremental route cannot be asked for strains; --route kernel finds the restraint that gives them");
    if (i_job.tube)
        Refuse(i_job, i_job.tube->line, "the incremental route forms a sheet from a flat blank; a tube has none");
    if (!i_job.constraints.empty())
        Refuse(i_job, i_job.constraints.front().nodes.line,
               "constraint: the deck prescribes no displacements of the sheet; --route kernel does");
    if (i_job.holder.kind == HolderKind::Level && i_job.holder.level == kOptionLocked)
        Refuse(i_job, 0,
               "blank_holder.level 4 holds the edge fast, which no binder force does; give total_force or another "
               "level");
    if (HasHolder(i_job) && !(i_job.friction > kLeastFriction))
        Refuse(i_job, 0,
               "a binder needs friction: with a coefficient of " + Shortest(i_job.friction) +
                   " the process model knows no holder force; give friction.coefficient above 0.001, or no holder");
}

FullBlankHolder HolderOf(Job const & i_whole, ElemProperty const & i_property, double i_rim)
{
    double single = 0.0;
    for (JobEdgeHolder const & holder : i_whole.holders)
        single += holder.force;
    JobHolder const & given = i_whole.holder;
    FullBlankHolder holder;
    holder.option(0);
    double const yielding = i_property.averageThickness() * i_property.averageYield(); // N/m
    if (given.kind == HolderKind::Level)
        holder.option(given.level);
    if (given.kind == HolderKind::ForcePerLength)
    {
        double const factor = given.force * kNewtonPerMetre / yielding;
        holder.factor(factor == kLockFactor ? std::nextafter(factor, 0.0) : factor);
    }
    bool const isTotal = given.kind == HolderKind::TotalForce;
    if (single == 0.0 && !isTotal)
        return holder;
    // Restraint along the rim over twice the friction; the same rule as the process model's own.
    double const around =
        isTotal ? given.force : holder.factor() * yielding * (i_rim / kMillimetrePerMetre) / (2.0 * i_whole.friction);
    FullBlankHolder total;
    total.option(kOptionTotalForce);
    total.totalForce((single + around) * kKilonewtonPerNewton);
    return total;
}

void BuildDeckInput(Job const & i_job, JobModel const & i_model, Outcome const * i_flat, DeckInput & o_input)
{
    CheckDeckJob(i_job);
    Tipping const tipping = FindTipping(i_job, i_model);
    o_input.whole = MakeWholeJob(i_job, i_model, tipping);
    bool isTurned = false;
    VOZCatAxis const frame = ToolFrame(o_input.whole, isTurned);
    o_input.tools = MakeTools(o_input.whole, i_flat, RequestOf(i_job, tipping, frame));
    o_input.tools.NameMeshes();
    FillMeshes(i_job, o_input);
    Process & process = o_input.process;
    FillProperties(o_input.whole.job, o_input.tools.blank, process);
    if (HasHolder(i_job))
        process.fullHolder = HolderOf(o_input.whole.job, process.property, RimOf(o_input.tools.blank));
    else
        process.fullHolder.option(0);
    FillPads(o_input);
    FillBeads(o_input);
}

} // namespace voz::workbench
