// JobActions.cpp: what acts on the sheet: holders, beads, pads, constraints, and how they select.

#include "JobParts.h"

namespace voz::workbench
{

double NotNegative(JobTable const & i_table, std::string const & i_key, double i_value)
{
    if (!(i_value >= 0.0))
        i_table.Refuse(i_key, "must not be negative");
    return i_value;
}

JobSelection ReadSelection(JobTable & io_table, std::string const & i_idsKey)
{
    JobSelection selection;
    selection.line = io_table.Line();
    selection.where = io_table.Name("");
    selection.where.pop_back(); // the point behind the table's name
    if (std::optional<std::string> const set = io_table.Text("set"))
        selection.set = *set;
    selection.ids = io_table.Integers(i_idsKey);
    if (std::vector<Point3> const box = io_table.Points("box"); !box.empty())
    {
        if (box.size() != 2)
            io_table.Refuse("box", "must be two points, the lower and the upper corner");
        for (std::size_t i = 0; i < 3; ++i)
            if (!(box[0][i] <= box[1][i]))
                io_table.Refuse("box", "its first corner must be the lower one");
        selection.box = {box[0], box[1]};
    }
    if (selection.IsEmpty())
        io_table.Refuse(i_idsKey, "nothing is selected: give set, " + i_idsKey + " or box_mm");
    return selection;
}

void ReadActions(JobTable & io_root, Job & io_job)
{
    for (JobTable & table : io_root.Tables("holder"))
    {
        double const force = NotNegative(table, "force", table.NeededQuantity("force", Dimension::Force));
        io_job.holders.push_back({force, ReadSelection(table, "nodes")});
        table.Finish();
    }
    for (JobTable & table : io_root.Tables("bead"))
    {
        JobBead bead;
        bead.force = NotNegative(table, "force", table.NeededQuantity("force", Dimension::ForcePerLength));
        bead.points = table.Points("points");
        bead.line = table.Line();
        bead.where = table.Name("points");
        if (bead.points.size() < 2)
            table.Refuse("points", "a bead needs at least two points, points_mm = [[x, y, z], [x, y, z]]");
        table.Finish();
        io_job.beads.push_back(std::move(bead));
    }
    for (JobTable & table : io_root.Tables("pad"))
    {
        double const pressure = NotNegative(table, "pressure", table.NeededQuantity("pressure", Dimension::Stress));
        io_job.pads.push_back({pressure, ReadSelection(table, "elements")});
        table.Finish();
    }
    for (JobTable & table : io_root.Tables("constraint"))
    {
        JobConstraint constraint;
        constraint.x = table.Quantity("x", Dimension::Length);
        constraint.y = table.Quantity("y", Dimension::Length);
        if (!constraint.x && !constraint.y)
            table.Refuse("x", "a constraint prescribes x, y or both");
        constraint.nodes = ReadSelection(table, "nodes");
        table.Finish();
        io_job.constraints.push_back(std::move(constraint));
    }
}

} // namespace voz::workbench
