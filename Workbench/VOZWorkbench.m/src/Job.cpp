// Job.cpp: reading a job file, table by table.

#include "Job.h"

#include "FormingLimit.h"
#include "JobParts.h"
#include "OutputFile.h"
#include "Sha256.h"
#include "TextFile.h"

#include <cmath>
#include <filesystem>

namespace voz::workbench
{

namespace
{
namespace fs = std::filesystem;

constexpr double kThinnest = 0.001; // mm, of what the solver takes
constexpr double kThickest = 1000.0;

void ReadMeshTable(JobTable & io_root, Job & io_job)
{
    JobTable table = io_root.NeededTable("mesh", "a table with the file of the part's mesh");
    std::string const file = table.NeededText("file");
    io_job.mesh = file == "-" ? file : FromFolder(io_job.folder, file);
    io_job.meshLine = table.LineOf("file");
    if (std::error_code error; io_job.mesh != "-" && !fs::exists(io_job.mesh, error))
        table.Refuse("file", "there is no file \"" + io_job.mesh + "\"");
    io_job.unitLength = ReadLengthUnit(table);
    if (std::optional<double> const weld = table.Quantity("weld_tolerance", Dimension::Length))
    {
        if (*weld < 0.0)
            table.Refuse("weld_tolerance", "must not be negative");
        io_job.weld = *weld;
    }
    io_job.repairOrientation = table.Flag("repair_orientation", io_job.repairOrientation);
    table.Finish();
}

void ReadBlank(JobTable & io_root, Job & io_job)
{
    JobTable table = io_root.NeededTable("blank", "a table with the thickness of the sheet");
    io_job.thickness = table.NeededQuantity("thickness", Dimension::Length);
    if (!(io_job.thickness >= kThinnest && io_job.thickness <= kThickest))
        table.Refuse("thickness", "must be from " + Shortest(kThinnest) + " to " + Shortest(kThickest) + " mm");
    table.Finish();
}

void ReadSymmetry(JobTable & io_root, Job & io_job)
{
    JobTable table = io_root.Table("symmetry");
    bool const isGeneral = table.Has("plane");
    std::string const planes = table.Choice("planes", {"none", "xz", "yz", "both"}, "none");
    double const x = planes == "yz" || planes == "both" ? table.Quantity("x", Dimension::Length, 0.0) : 0.0;
    double const y = planes == "xz" || planes == "both" ? table.Quantity("y", Dimension::Length, 0.0) : 0.0;
    io_job.planes = NamedPlanes(planes, x, y);
    for (JobTable & plane : table.Tables("plane"))
    {
        std::optional<Point3> const normal = plane.Direction("normal");
        if (!normal)
            plane.Refuse("normal", "is missing: the direction of the plane's normal");
        std::vector<double> const point = plane.Quantities("point", Dimension::Length);
        if (point.size() != 3)
            plane.Refuse("point", "must be a place of three lengths, point_mm = [x, y, z]");
        plane.Finish();
        io_job.planes.push_back({*normal, {point[0], point[1], point[2]}});
    }
    if (isGeneral && planes != "none")
        table.Refuse("plane", "the planes are given twice, by name and as tables");
    if (io_job.planes.size() > 2)
        table.Refuse("plane", "there are at most two planes of symmetry");
    if (io_job.planes.size() == 2)
    {
        Point3 const & a = io_job.planes[0].normal;
        Point3 const & b = io_job.planes[1].normal;
        if (double const cosine = a[0] * b[0] + a[1] * b[1] + a[2] * b[2]; !(std::abs(cosine) < 1e-6))
            table.Refuse("plane", "two planes of symmetry must be perpendicular");
    }
    table.Finish();
}

void ReadTip(JobTable & io_root, Job & io_job)
{
    JobTable table = io_root.Table("tip");
    io_job.dieLine = table.Direction("die_line");
    if (!io_job.dieLine)
    {
        table.Note("die_line", "mean normal of the part", "", true);
        return table.Finish();
    }
    if (std::string const fault = DieLineFault(io_job.planes, *io_job.dieLine); !fault.empty())
        table.Refuse("die_line", fault);
    table.Finish();
}

void ReadFriction(JobTable & io_root, Job & io_job)
{
    JobTable table = io_root.Table("friction");
    io_job.friction = table.Number("coefficient", io_job.friction);
    if (!(io_job.friction >= 0.0 && io_job.friction < 1.0))
        table.Refuse("coefficient", "must be from 0 to below 1");
    io_job.toolFriction = table.Flag("tools", io_job.toolFriction);
    table.Finish();
}

void ReadHolder(JobTable & io_root, Job & io_job)
{
    JobTable table = io_root.Table("blank_holder");
    JobHolder & holder = io_job.holder;
    std::optional<double> const perLength = table.Quantity("force_per_length", Dimension::ForcePerLength);
    std::optional<double> const total = table.Quantity("total_force", Dimension::Force);
    bool const hasLevel = table.Has("level");
    int const level = hasLevel || (!perLength && !total) ? table.Integer("level", 0) : 0;
    if (level < 0 || level > 5)
        table.Refuse("level", "must be from 0 (none) to 5 (the total force counts)");
    if (level == 5 && !total)
        table.Refuse("level", "level 5 takes the force from total_force, which is missing");
    if ((perLength ? 1 : 0) + (total ? 1 : 0) + (hasLevel && level != 5 ? 1 : 0) > 1)
        table.Refuse(perLength ? "force_per_length" : "total_force",
                     "the holder's force is given twice; give one of level, force_per_length, total_force");
    if (perLength)
        holder = {HolderKind::ForcePerLength, 0, NotNegative(table, "force_per_length", *perLength)};
    else if (total)
        holder = {HolderKind::TotalForce, 0, NotNegative(table, "total_force", *total)};
    else if (level > 0)
        holder = {HolderKind::Level, level, 0.0};
    if (holder.kind != HolderKind::Level && holder.force == 0.0)
        holder = {};
    table.Finish();
}

double Thinning(JobTable & io_table, std::string const & i_key, double i_default)
{
    double const percent = io_table.Quantity(i_key, Dimension::Ratio, i_default);
    if (!(percent >= 0.0 && percent < 100.0))
        io_table.Refuse(i_key, "must be from 0 % (off) to below 100 %");
    return percent;
}

void ReadLimits(JobTable & io_root, Job & io_job)
{
    JobTable table = io_root.Table("limits");
    JobLimits & limits = io_job.limits;
    if (std::optional<double> const given = table.Quantity("fld0", Dimension::Ratio))
    {
        if (!(*given > 0.0 && *given <= 200.0))
            table.Refuse("fld0", "must be above 0 % and at most 200 %");
        limits.fldZero = *given;
        limits.isFldZeroGiven = true;
    }
    limits.isHalved = table.Choice("curve", {"standard", "halved"}, "standard") == "halved";
    limits.safetyMargin =
        NotNegative(table, "safety_margin", table.Quantity("safety_margin", Dimension::Ratio, limits.safetyMargin));
    limits.planeStrainTolerance =
        NotNegative(table, "plane_strain_tolerance",
                    table.Quantity("plane_strain_tolerance", Dimension::Ratio, limits.planeStrainTolerance));
    limits.thinning = Thinning(table, "thinning", limits.thinning);
    limits.thinningMargin = Thinning(table, "thinning_margin", limits.thinningMargin);
    limits.shear = NotNegative(table, "shear", table.Quantity("shear", Dimension::Ratio, limits.shear));
    limits.shearMargin =
        NotNegative(table, "shear_margin", table.Quantity("shear_margin", Dimension::Ratio, limits.shearMargin));
    limits.wrinkle = NotNegative(table, "wrinkle", table.Quantity("wrinkle", Dimension::Ratio, limits.wrinkle));
    if (limits.thinningMargin > limits.thinning)
        table.Refuse("thinning_margin", "must not be above thinning: it marks what is near the limit");
    if (limits.shearMargin > limits.shear)
        table.Refuse("shear_margin", "must not be above shear: it marks what is near the limit");
    table.Finish();
}

// FLD0 follows from the thickness in millimetres and the hardening exponent unless it is given.
void CompleteLimits(JobTable & io_root, Job & io_job)
{
    if (io_job.limits.isFldZeroGiven || io_job.materials.empty())
        return;
    io_job.limits.fldZero = FldZero::CalculateFLD0(io_job.thickness, io_job.materials.front().exponent);
    io_root.Note("limits.fld0", Shortest(io_job.limits.fldZero), "%", true);
}

void ReadOutputs(JobTable & io_root, Job & io_job)
{
    JobTable table = io_root.Table("output");
    JobOutputs & outputs = io_job.outputs;
    if (std::optional<std::string> const folder = table.Text("folder"))
        outputs.folder = FromFolder(io_job.folder, *folder);
    else
        table.Note("folder", "out (in the current folder)", "", true);
    outputs.report = table.Flag("report", outputs.report);
    outputs.vtu = table.Flag("vtu", outputs.vtu);
    outputs.dxf = table.Flag("dxf", outputs.dxf);
    outputs.svg = table.Flag("svg", outputs.svg);
    outputs.tables = table.Flag("tables", outputs.tables);
    outputs.dyna = table.Flag("dyna", outputs.dyna);
    outputs.nastran = table.Flag("nastran", outputs.nastran);
    outputs.displacements = table.Flag("displacements", outputs.displacements);
    outputs.outlineTolerance = table.Quantity("outline_tolerance", Dimension::Length, outputs.outlineTolerance);
    if (!(outputs.outlineTolerance > 0.0))
        table.Refuse("outline_tolerance", "must be above 0");
    outputs.isDxfR12 = table.Choice("dxf_version", {"R2000", "R12"}, "R2000") == "R12";
    table.Finish();
}

void ReadSolver(JobTable & io_root, Job & io_job)
{
    JobTable table = io_root.Table("solver");
    io_job.steps = table.Integer("steps", 1);
    if (io_job.steps < 1 || io_job.steps > 3)
        table.Refuse("steps", "must be 1, 2 or 3");
    if (io_job.steps > 1 && io_job.autoStrain)
        table.Refuse("steps", "a job with [auto_strain] goes in one step");
    if (io_job.steps > 1 && io_job.tube)
        table.Refuse("steps", "a job with [tube] goes in one step");
    table.Finish();
}

void ReadLock(JobTable & io_root, Job & io_job)
{
    JobTable table = io_root.Table("lock");
    table.Text("version", "");
    for (JobTable & input : table.Tables("input"))
    {
        std::string const path = input.NeededText("path");
        io_job.lockedInputs.push_back({FromFolder(io_job.folder, path), input.NeededText("sha256")});
        input.Finish();
    }
    table.Finish();
}

void ReadTables(JobTable & io_root, Job & io_job)
{
    io_job.title = io_root.Text("title", io_job.name);
    ReadMeshTable(io_root, io_job);
    ReadBlank(io_root, io_job);
    ReadMaterials(io_root, io_job);
    ReadSymmetry(io_root, io_job);
    ReadTip(io_root, io_job);
    ReadFriction(io_root, io_job);
    ReadHolder(io_root, io_job);
    ReadActions(io_root, io_job);
    ReadModes(io_root, io_job);
    ReadIncremental(io_root, io_job);
    ReadLimits(io_root, io_job);
    CompleteLimits(io_root, io_job);
    ReadSolver(io_root, io_job);
    ReadOutputs(io_root, io_job);
}
// "cup.toml" is "cup"; "cup/job.toml" is "cup" as well.
std::string NameFor(fs::path const & i_path)
{
    std::string const stem = i_path.stem().string();
    std::error_code error;
    std::string const folder = fs::absolute(i_path, error).parent_path().filename().string();
    bool const isPlain = stem == "job" || stem == "job.lock";
    return i_path == "-" ? "job" : isPlain && !folder.empty() ? folder : stem;
}
} // namespace

std::vector<JobPlane> NamedPlanes(std::string const & i_name, double i_x, double i_y)
{
    std::vector<JobPlane> planes;
    if (i_name == "yz" || i_name == "both")
        planes.push_back({{1.0, 0.0, 0.0}, {i_x, 0.0, 0.0}});
    if (i_name == "xz" || i_name == "both")
        planes.push_back({{0.0, 1.0, 0.0}, {0.0, i_y, 0.0}});
    return planes;
}

std::string DieLineFault(std::vector<JobPlane> const & i_planes, Point3 const & i_dieLine)
{
    if (i_planes.size() == 2)
        return "with two planes of symmetry the stamping direction is the line that both share";
    for (JobPlane const & plane : i_planes)
    {
        Point3 const & n = plane.normal;
        if (!(std::abs(n[0] * i_dieLine[0] + n[1] * i_dieLine[1] + n[2] * i_dieLine[2]) < 1e-6))
            return "must lie in the plane of symmetry";
    }
    return {};
}

double ReadLengthUnit(JobTable & io_table)
{
    if (!io_table.Has("length_unit"))
    {
        io_table.Text("length_unit", "of the file, else mm");
        return 0.0;
    }
    std::string const unit = io_table.NeededText("length_unit");
    Unit const * const found = FindUnit(unit);
    if (found == nullptr || found->dimension != Dimension::Length)
        io_table.Refuse("length_unit", "\"" + unit + "\" is no unit of length (" + UnitsOf(Dimension::Length) + ")");
    return found->factor;
}

std::string FromFolder(std::string const & i_folder, std::string const & i_path)
{
    fs::path const path(i_path);
    if (i_path.empty() || path.is_absolute() || i_folder.empty())
        return i_path;
    return (fs::path(i_folder) / path).string();
}

Job ParseJob(std::string_view i_text, std::string const & i_path)
{
    JobContext context{i_path, {}, {}};
    toml::table document;
    try
    {
        document = toml::parse(i_text, i_path);
    }
    catch (toml::parse_error const & error)
    {
        throw InputError(i_path, static_cast<int>(error.source().begin.line),
                         static_cast<int>(error.source().begin.column), std::string(error.description()));
    }
    Job job;
    job.path = i_path;
    job.sha256 = Sha256(i_text);
    fs::path const path(i_path);
    job.folder = i_path == "-" ? "" : path.parent_path().string();
    job.name = NameFor(path);
    JobTable root(context, &document, "");
    ReadTables(root, job);
    std::size_t const shown = context.parameters.size();
    ReadLock(root, job);
    context.parameters.resize(shown); // the lock is no value of the run
    root.Finish();
    job.parameters = std::move(context.parameters);
    job.warnings = std::move(context.warnings);
    CheckSense(job, job.warnings);
    return job;
}

Job ReadJob(std::string const & i_path)
{
    return ParseJob(ReadTextFile(i_path, 16 << 20), i_path);
}

} // namespace voz::workbench
