// JobModes.cpp: what a run does beside forming in one stage: a binder, strains to be reached, springback.

#include "JobParts.h"

#include <cmath>
#include <filesystem>

namespace voz::workbench
{

namespace
{
constexpr std::size_t kMostAligned = 4;   // of the point-pair alignment
constexpr double kMostStrain = 200.0;     // percent
constexpr double kMostExaggeration = 1e4; // of a picture

void ReadBinder(JobTable & io_root, Job & io_job)
{
    JobTable table = io_root.Table("binder");
    if (!table.IsPresent())
        return;
    JobBinder binder;
    binder.mesh = FromFolder(io_job.folder, table.NeededText("file"));
    binder.line = table.LineOf("file");
    if (std::error_code error; !std::filesystem::exists(binder.mesh, error))
        table.Refuse("file", "there is no file \"" + binder.mesh + "\"");
    binder.unitLength = ReadLengthUnit(table);
    table.Finish();
    io_job.binder = std::move(binder);
}

std::optional<Point3> OnePoint(JobTable & io_table, std::string const & i_key)
{
    std::vector<double> const place = io_table.Quantities(i_key, Dimension::Length);
    if (place.empty())
        return std::nullopt;
    if (place.size() != 3)
        io_table.Refuse(i_key, "must be a place of three lengths, " + i_key + "_mm = [x, y, z]");
    return Point3{place[0], place[1], place[2]};
}

// A point and the strain that is wanted there: both or neither.
std::optional<Point3> WantedStrain(JobTable & io_table, std::string const & i_name, double & o_strain)
{
    std::string const strainKey = i_name + "_strain";
    std::optional<Point3> const point = OnePoint(io_table, i_name + "_point");
    std::optional<double> const strain = io_table.Quantity(strainKey, Dimension::Ratio);
    if (point.has_value() != strain.has_value())
        io_table.Refuse(strainKey, point ? "is missing: the major strain that is wanted at " + i_name + "_point"
                                         : "has no place: give " + i_name + "_point_mm = [x, y, z]");
    if (strain && !(*strain > -98.0 && *strain <= kMostStrain))
        io_table.Refuse(strainKey, "must be above -98 % and at most 200 %");
    o_strain = strain.value_or(0.0);
    return point;
}

void ReadAutoStrain(JobTable & io_root, Job & io_job)
{
    JobTable table = io_root.Table("auto_strain");
    if (!table.IsPresent())
        return;
    JobAutoStrain wanted;
    wanted.line = table.Line();
    wanted.target = WantedStrain(table, "target", wanted.targetStrain);
    wanted.reference = WantedStrain(table, "reference", wanted.referenceStrain);
    if (!wanted.target && !wanted.reference)
        table.Refuse("target_point", "no strain is wanted: give target_point_mm and target_strain");
    wanted.value = NotNegative(table, "value", table.Number("value", 0.0));
    table.Finish();
    io_job.autoStrain = wanted;
}

void ReadSection(JobTable & io_table, JobSpringback & io_springback)
{
    std::optional<Point3> const normal = io_table.Direction("section_normal");
    std::optional<Point3> const point = OnePoint(io_table, "section_point");
    if (normal.has_value() != point.has_value())
        io_table.Refuse(normal ? "section_normal" : "section_point",
                        "a section needs both section_normal and section_point_mm");
    if (normal)
        io_springback.section = JobPlane{*normal, *point};
    io_springback.exaggeration = NotNegative(io_table, "exaggeration", io_table.Number("exaggeration", 0.0));
    if (io_springback.exaggeration > kMostExaggeration)
        io_table.Refuse("exaggeration", "must be at most 10000");
}

// What acts on a sheet between tools has no meaning on a tube.
void RefuseBesideTube(JobTable const & i_table, Job const & i_job)
{
    struct Other
    {
        char const * name;
        bool isThere;
    };
    for (Other const & other :
         {Other{"[symmetry]", !i_job.planes.empty()}, Other{"[tip]", i_job.dieLine.has_value()},
          Other{"[blank_holder]",
                i_job.holder.kind != HolderKind::None && i_job.holder.force + i_job.holder.level > 0.0},
          Other{"[[holder]]", !i_job.holders.empty()}, Other{"[[bead]]", !i_job.beads.empty()},
          Other{"[[pad]]", !i_job.pads.empty()}, Other{"[binder]", i_job.binder.has_value()},
          Other{"[auto_strain]", i_job.autoStrain.has_value()}, Other{"[springback]", i_job.HasSpringback()}})
        if (other.isThere)
            throw InputError(i_job.path, i_table.Line(), 0,
                             std::string("tube: a job with [tube] goes without ") + other.name);
}

void ReadTube(JobTable & io_root, Job & io_job)
{
    JobTable table = io_root.Table("tube");
    if (!table.IsPresent())
        return;
    JobTube tube;
    tube.line = table.Line();
    tube.axis = table.Direction("axis");
    if (!tube.axis)
        table.Note("axis", "from the middle of one end to that of the other", "", true);
    tube.point = OnePoint(table, "point");
    if (!tube.point)
        table.Note("point", "the middle of an end", "", true);
    tube.cut = table.Direction("cut");
    if (!tube.cut)
        table.Note("cut", "the global axis most nearly across", "", true);
    if (std::optional<double> const radius = table.Quantity("radius", Dimension::Length))
    {
        if (!(*radius > 0.0))
            table.Refuse("radius", "must be above 0");
        tube.radius = *radius;
    }
    else
        table.Note("radius", "that of an end", "", true);
    RefuseBesideTube(table, io_job);
    table.Finish();
    io_job.tube = tube;
}

void ReadSpringback(JobTable & io_root, Job & io_job)
{
    JobTable table = io_root.Table("springback");
    if (!table.IsPresent())
        return;
    JobSpringback springback;
    springback.line = table.Line();
    springback.isOn = table.Flag("on", true);
    springback.isBoundaryHeld = table.Flag("fixity", false);
    for (JobTable & constraint : table.Tables("constraint"))
    {
        springback.constraints.push_back(ReadSelection(constraint, "nodes"));
        constraint.Finish();
    }
    if (JobTable trim = table.Table("trim"); trim.IsPresent())
    {
        springback.trimmed = ReadSelection(trim, "elements");
        trim.Finish();
    }
    springback.alignNodes = table.Integers("align_nodes");
    springback.alignPoints = table.Points("align_points");
    if (springback.alignNodes.size() + springback.alignPoints.size() > kMostAligned)
        table.Refuse(springback.alignPoints.empty() ? "align_nodes" : "align_points",
                     "the sprung shape is laid on at most four points");
    springback.watchNodes = table.Integers("watch_nodes");
    springback.watchPoints = table.Points("watch_points");
    ReadSection(table, springback);
    table.Finish();
    io_job.springback = std::move(springback);
}
} // namespace

void ReadModes(JobTable & io_root, Job & io_job)
{
    ReadBinder(io_root, io_job);
    ReadAutoStrain(io_root, io_job);
    ReadSpringback(io_root, io_job);
    ReadTube(io_root, io_job);
}

} // namespace voz::workbench
