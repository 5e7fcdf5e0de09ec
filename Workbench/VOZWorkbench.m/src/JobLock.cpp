// JobLock.cpp: a job with every default filled in, as a job file.

#include "Job.h"
#include "OutputFile.h"
#include "Version.h"

#include <cstdio>
#include <filesystem>

namespace voz::workbench
{

namespace
{
std::string Quoted(std::string const & i_text)
{
    std::string quoted = "\"";
    for (char const c : i_text)
    {
        if (c == '"' || c == '\\')
            quoted += '\\';
        if (static_cast<unsigned char>(c) < 0x20 || c == 0x7f)
        {
            char escape[8];
            std::snprintf(escape, sizeof escape, "\\u%04X", static_cast<unsigned>(static_cast<unsigned char>(c)));
            quoted += escape;
        }
        else
            quoted += c;
    }
    return quoted + '"';
}

// Numbers with a point or an exponent, so that they stay reals.
std::string Real(double i_value)
{
    std::string text = Shortest(i_value);
    if (text.find_first_of(".e") == std::string::npos)
        text += ".0";
    return text;
}

std::string Row(Point3 const & i_point)
{
    return "[" + Real(i_point[0]) + ", " + Real(i_point[1]) + ", " + Real(i_point[2]) + "]";
}

class LockWriter
{
public:
    LockWriter(Job const & i_job, std::string const & i_folder) : mJob(i_job), mFolder(i_folder) {}

    std::string Text(std::vector<OutcomeInput> const & i_inputs)
    {
        mText = "# A forming job with every default filled in and its inputs named by their hashes.\n";
        Line("title", Quoted(mJob.title));
        Mesh();
        Materials();
        Symmetry();
        Process();
        Actions();
        Modes();
        Springback();
        Incremental();
        Limits();
        Outputs();
        Lock(i_inputs);
        return mText;
    }

private:
    void Head(std::string const & i_name) { mText += "\n[" + i_name + "]\n"; }
    void HeadOfMany(std::string const & i_name) { mText += "\n[[" + i_name + "]]\n"; }
    void Line(std::string const & i_key, std::string const & i_value) { mText += i_key + " = " + i_value + "\n"; }
    void Line(std::string const & i_key, double i_value) { Line(i_key, Real(i_value)); }
    void Line(std::string const & i_key, bool i_value) { Line(i_key, std::string(i_value ? "true" : "false")); }

    // As seen from the folder of the file; absolute where no relative path leads there.
    std::string Path(std::string const & i_path) const
    {
        if (i_path == "-")
            return Quoted(i_path);
        std::error_code error;
        std::filesystem::path const absolute = std::filesystem::absolute(i_path, error);
        std::filesystem::path const relative = std::filesystem::relative(absolute, mFolder, error);
        return Quoted((error || relative.empty() ? absolute : relative).generic_string());
    }

    void LengthUnit(double i_unitLength)
    {
        for (auto const & [text, length] :
             {std::pair{"mm", 1.0}, {"cm", 10.0}, {"m", 1000.0}, {"um", 0.001}, {"in", 25.4}})
            if (i_unitLength == length)
                Line("length_unit", Quoted(text));
    }

    void Mesh()
    {
        Head("mesh");
        Line("file", Path(mJob.mesh));
        LengthUnit(mJob.unitLength);
        if (mJob.weld >= 0.0)
            Line("weld_tolerance_mm", mJob.weld);
        Line("repair_orientation", mJob.repairOrientation);
        Head("blank");
        Line("thickness_mm", mJob.thickness);
    }

    void Materials()
    {
        for (JobMaterial const & material : mJob.materials)
        {
            HeadOfMany("material");
            Line("name", Quoted(material.name));
            Line("source", Quoted(material.source));
            Line("K_MPa", material.strength);
            Line("n", material.exponent);
            Line("r", material.anisotropy);
            Line("yield_MPa", material.yield);
            Line("E_MPa", material.modulus);
            Line("poisson", material.poisson);
            Line("density_kg_per_m3", material.density);
            if (!material.set.empty())
                Line("set", Quoted(material.set));
            if (!material.curve.empty())
                Curve(material);
        }
    }

    void Curve(JobMaterial const & i_material)
    {
        Head("material.curve");
        Line("strain_kind", Quoted("plastic"));
        std::string strain;
        std::string stress;
        for (auto const & [e, s] : i_material.curve)
        {
            strain += (strain.empty() ? "" : ", ") + Real(e);
            stress += (stress.empty() ? "" : ", ") + Real(s);
        }
        Line("strain_fraction", "[" + strain + "]");
        Line("stress_MPa", "[" + stress + "]");
    }

    void Symmetry()
    {
        for (JobPlane const & plane : mJob.planes)
        {
            HeadOfMany("symmetry.plane");
            Line("normal", Row(plane.normal));
            Line("point_mm", Row(plane.point));
        }
        if (mJob.dieLine)
        {
            Head("tip");
            Line("die_line", Row(*mJob.dieLine));
        }
    }

    void Process()
    {
        Head("friction");
        Line("coefficient", mJob.friction);
        Line("tools", mJob.toolFriction);
        Head("blank_holder");
        switch (mJob.holder.kind)
        {
        case HolderKind::None:
        case HolderKind::Level:
            Line("level", std::to_string(mJob.holder.level));
            break;
        case HolderKind::ForcePerLength:
            Line("force_per_length_N_per_mm", mJob.holder.force);
            break;
        case HolderKind::TotalForce:
            Line("total_force_N", mJob.holder.force);
            break;
        }
    }

    void Selection(JobSelection const & i_selection, std::string const & i_idsKey)
    {
        if (!i_selection.set.empty())
            Line("set", Quoted(i_selection.set));
        Ids(i_idsKey, i_selection.ids);
        if (i_selection.box)
            Line("box_mm", "[" + Row((*i_selection.box)[0]) + ", " + Row((*i_selection.box)[1]) + "]");
    }

    void Actions()
    {
        for (JobEdgeHolder const & holder : mJob.holders)
        {
            HeadOfMany("holder");
            Line("force_N", holder.force);
            Selection(holder.edges, "nodes");
        }
        for (JobBead const & bead : mJob.beads)
        {
            HeadOfMany("bead");
            Line("force_N_per_mm", bead.force);
            Points("points_mm", bead.points);
        }
        for (JobPad const & pad : mJob.pads)
        {
            HeadOfMany("pad");
            Line("pressure_MPa", pad.pressure);
            Selection(pad.elements, "elements");
        }
        for (JobConstraint const & constraint : mJob.constraints)
        {
            HeadOfMany("constraint");
            if (constraint.x)
                Line("x_mm", *constraint.x);
            if (constraint.y)
                Line("y_mm", *constraint.y);
            Selection(constraint.nodes, "nodes");
        }
    }

    void Tube()
    {
        if (!mJob.tube)
            return;
        Head("tube");
        if (mJob.tube->axis)
            Line("axis", Row(*mJob.tube->axis));
        if (mJob.tube->point)
            Line("point_mm", Row(*mJob.tube->point));
        if (mJob.tube->cut)
            Line("cut", Row(*mJob.tube->cut));
        if (mJob.tube->radius > 0.0)
            Line("radius_mm", mJob.tube->radius);
    }

    void Modes()
    {
        Tube();
        if (mJob.binder)
        {
            Head("binder");
            Line("file", Path(mJob.binder->mesh));
            LengthUnit(mJob.binder->unitLength);
        }
        if (!mJob.autoStrain)
            return;
        JobAutoStrain const & wanted = *mJob.autoStrain;
        Head("auto_strain");
        if (wanted.target)
        {
            Line("target_point_mm", Row(*wanted.target));
            Line("target_strain_percent", wanted.targetStrain);
        }
        if (wanted.reference)
        {
            Line("reference_point_mm", Row(*wanted.reference));
            Line("reference_strain_percent", wanted.referenceStrain);
        }
        Line("value", wanted.value);
    }

    void Ids(std::string const & i_key, std::vector<int> const & i_ids)
    {
        std::string row;
        for (int const id : i_ids)
            row += (row.empty() ? "" : ", ") + std::to_string(id);
        if (!i_ids.empty())
            Line(i_key, "[" + row + "]");
    }

    void Points(std::string const & i_key, std::vector<Point3> const & i_points)
    {
        std::string rows;
        for (Point3 const & point : i_points)
            rows += (rows.empty() ? "" : ", ") + Row(point);
        if (!i_points.empty())
            Line(i_key, "[" + rows + "]");
    }

    void Springback()
    {
        if (!mJob.springback)
            return;
        JobSpringback const & springback = *mJob.springback;
        Head("springback");
        Line("on", springback.isOn);
        Line("fixity", springback.isBoundaryHeld);
        Ids("align_nodes", springback.alignNodes);
        Points("align_points_mm", springback.alignPoints);
        Ids("watch_nodes", springback.watchNodes);
        Points("watch_points_mm", springback.watchPoints);
        if (springback.section)
        {
            Line("section_normal", Row(springback.section->normal));
            Line("section_point_mm", Row(springback.section->point));
        }
        Line("exaggeration", springback.exaggeration);
        if (springback.trimmed)
        {
            Head("springback.trim");
            Selection(*springback.trimmed, "elements");
        }
        for (JobSelection const & constraint : springback.constraints)
        {
            HeadOfMany("springback.constraint");
            Selection(constraint, "nodes");
        }
    }

    void Incremental()
    {
        if (!mJob.incremental)
            return;
        JobIncremental const & incremental = *mJob.incremental;
        Head("incremental");
        if (!incremental.templateName.empty())
            Line("template", Quoted(incremental.templateName));
        Line("process_flag", incremental.processFlag);
        Line("process_mode", std::to_string(incremental.processMode));
        Line("tool_mode", std::to_string(incremental.toolMode));
        if (incremental.clearance >= 0.0)
            Line("clearance_mm", incremental.clearance);
        for (auto const & [key, path] : {std::pair{"blank", &incremental.blank},
                                         {"die", &incremental.die},
                                         {"punch", &incremental.punch},
                                         {"binder", &incremental.binder}})
            if (!path->empty())
                Line(key, Path(*path));
        LengthUnit(incremental.unitLength);
        Line("open_solver", incremental.isOpenSolver);
    }

    void Limits()
    {
        JobLimits const & limits = mJob.limits;
        Head("limits");
        if (limits.isFldZeroGiven || mJob.materials.size() == 1) // else each material has its own
            Line("fld0_percent", limits.fldZero);
        Line("curve", Quoted(limits.isHalved ? "halved" : "standard"));
        Line("safety_margin_percent", limits.safetyMargin);
        Line("plane_strain_tolerance_percent", limits.planeStrainTolerance);
        Line("thinning_percent", limits.thinning);
        Line("thinning_margin_percent", limits.thinningMargin);
        Line("shear_percent", limits.shear);
        Line("shear_margin_percent", limits.shearMargin);
        Line("wrinkle_percent", limits.wrinkle);
    }

    void Outputs()
    {
        Head("solver");
        Line("steps", std::to_string(mJob.steps));
        Head("output");
        if (!mJob.outputs.folder.empty())
            Line("folder", Path(mJob.outputs.folder));
        Line("report", mJob.outputs.report);
        Line("vtu", mJob.outputs.vtu);
        Line("dxf", mJob.outputs.dxf);
        Line("svg", mJob.outputs.svg);
        Line("tables", mJob.outputs.tables);
        Line("dyna", mJob.outputs.dyna);
        Line("nastran", mJob.outputs.nastran);
        Line("displacements", mJob.outputs.displacements);
        Line("outline_tolerance_mm", mJob.outputs.outlineTolerance);
        Line("dxf_version", Quoted(mJob.outputs.isDxfR12 ? "R12" : "R2000"));
    }

    void Lock(std::vector<OutcomeInput> const & i_inputs)
    {
        Head("lock");
        Line("version", Quoted(kVersion));
        for (OutcomeInput const & input : i_inputs)
        {
            HeadOfMany("lock.input");
            Line("path", Path(input.path));
            Line("sha256", Quoted(input.sha256));
        }
    }

    Job const & mJob;
    std::string mFolder;
    std::string mText;
};
} // namespace

std::string LockedJob(Job const & i_job, std::vector<OutcomeInput> const & i_inputs, std::string const & i_folder)
{
    return LockWriter(i_job, i_folder).Text(i_inputs);
}

} // namespace voz::workbench
