// JobIncremental.cpp: what a job says of the incremental route.

#include "JobParts.h"

#include <cstdlib>
#include <filesystem>

namespace voz::workbench
{

namespace
{
constexpr int kShortStroke = 2;

// Empty where the job names none: the mesh is then made.
std::string ToolPath(JobTable & io_table, std::string const & i_key, char const * i_default, Job const & i_job)
{
    if (!io_table.Has(i_key))
    {
        io_table.Text(i_key, i_default);
        return "";
    }
    std::string const path = FromFolder(i_job.folder, io_table.NeededText(i_key));
    if (std::error_code error; !std::filesystem::is_regular_file(path, error))
        io_table.Refuse(i_key, "there is no file \"" + path + "\"");
    return path;
}

void ReadProcess(JobTable & io_table, JobIncremental & io_incremental)
{
    if (io_table.Has("template"))
        io_incremental.templateName = io_table.NeededText("template");
    else
        io_table.Text("template", "the settings' own defaults");
    io_incremental.processFlag = io_table.Flag("process_flag", io_incremental.processFlag);
    io_table.Effect(io_incremental.processFlag ? "the punch runs at the settings' velocity for the flag set"
                                               : "the punch runs at the settings' velocity for the flag clear");
    io_incremental.processMode = io_table.Integer("process_mode", io_incremental.processMode);
    if (std::abs(io_incremental.processMode) > kShortStroke)
        io_table.Refuse("process_mode", "must be from -2 to 2");
    io_table.Effect(std::abs(io_incremental.processMode) == kShortStroke
                        ? "the stroke ends one thickness before punch and die would touch"
                        : "the stroke ends where punch and die would touch");
    io_incremental.toolMode = io_table.Integer("tool_mode", io_incremental.toolMode);
    if (io_incremental.toolMode != 0 && io_incremental.toolMode != 1)
        io_table.Refuse("tool_mode", "must be 0 (the tools stand as they are) or 1 (punch and binder are offset)");
    io_table.Effect(io_incremental.toolMode == 1
                        ? "contact takes punch and binder one thickness nearer to the sheet than their meshes"
                        : "contact takes the tools where their meshes are");
}
} // namespace

void ReadIncremental(JobTable & io_root, Job & io_job)
{
    JobTable table = io_root.Table("incremental");
    if (!table.IsPresent())
        return;
    JobIncremental incremental;
    incremental.line = table.Line();
    ReadProcess(table, incremental);
    if (std::optional<double> const clearance = table.Quantity("clearance", Dimension::Length))
        incremental.clearance = NotNegative(table, "clearance", *clearance);
    else
        table.Note("clearance", "a tenth of the thickness", "", true);
    incremental.blank = ToolPath(table, "blank", "the flat mesh of a kernel run", io_job);
    incremental.die = ToolPath(table, "die", "made from the part", io_job);
    incremental.punch = ToolPath(table, "punch", "made from the part", io_job);
    incremental.binder = ToolPath(table, "binder", "made from the part", io_job);
    incremental.unitLength = ReadLengthUnit(table);
    incremental.isOpenSolver = table.Flag("open_solver", incremental.isOpenSolver);
    table.Finish();
    io_job.incremental = std::move(incremental);
}

} // namespace voz::workbench
