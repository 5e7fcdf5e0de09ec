// JobLock.cpp: a job with every default filled in, as a job file; and the commented file to begin with.

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

    void Mesh()
    {
        Head("mesh");
        Line("file", Path(mJob.mesh));
        if (mJob.unitLength > 0.0)
            for (auto const & [text, length] :
                 {std::pair{"mm", 1.0}, {"cm", 10.0}, {"m", 1000.0}, {"um", 0.001}, {"in", 25.4}})
                if (mJob.unitLength == length)
                    Line("length_unit", Quoted(text));
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
        if (!i_selection.ids.empty())
        {
            std::string ids;
            for (int const id : i_selection.ids)
                ids += (ids.empty() ? "" : ", ") + std::to_string(id);
            Line(i_idsKey, "[" + ids + "]");
        }
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
            std::string points;
            for (Point3 const & point : bead.points)
                points += (points.empty() ? "" : ", ") + Row(point);
            Line("points_mm", "[" + points + "]");
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

    void Limits()
    {
        JobLimits const & limits = mJob.limits;
        Head("limits");
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
        Line("threads", std::to_string(mJob.threads));
        Head("output");
        if (!mJob.outputs.folder.empty())
            Line("folder", Path(mJob.outputs.folder));
        Line("report", mJob.outputs.report);
        Line("vtu", mJob.outputs.vtu);
        Line("dxf", mJob.outputs.dxf);
        Line("svg", mJob.outputs.svg);
        Line("tables", mJob.outputs.tables);
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

std::string StarterJob()
{
    return R"(# A forming job. Lines with # are comments; what is left out takes the value shown here, unless it is needed.
# Values carry their unit: in the key (thickness_mm = 0.78) or in the text (thickness = "0.78 mm").
# Run it with: dravo run job.toml        Check it with: dravo check job.toml
title = "My part"

[mesh]
file = "part.bdf"             # needed; Nastran bulk data, LS-DYNA keyword, OBJ or STL; relative to this file
# length_unit = "mm"          # of the mesh file: mm, cm, m, um, in; what the file says goes first
# weld_tolerance = "0.001 mm" # for STL: corners nearer than this are one node
# repair_orientation = true   # elements that run against their neighbours are turned

[blank]
thickness = "0.8 mm"          # needed

[material]
from = "mild-140-270"         # from the database ("dravo materials" lists it); or inline:
# name = "mild steel"
# K = "565 MPa"               # strength coefficient of K (e0 + e)^n
# n = 0.26                    # hardening exponent
# r = 1.79                    # normal anisotropy
# yield = "157 MPa"           # or e0 = 0.0071
# E = "210 GPa"
# poisson = 0.3
# density = "7850 kg/m3"
# [material.curve]            # in place of the power law
# strain_kind = "engineering" # or "true" (total), or "plastic" (log plastic)
# strain_percent = [0.2, 2, 5, 10, 20]
# stress_MPa = [160, 200, 240, 270, 290]

# [symmetry]
# planes = "none"             # none, xz, yz, both: the model's edge lies on y = 0, x = 0 or both
# x = "0 mm"                  # where the yz plane stands
# y = "0 mm"                  # where the xz plane stands

# [tip]
# die_line = [0, 0, 1]        # stamping direction; left out: the mean normal of the part

[friction]
coefficient = 0.12
# tools = false               # friction on punch and die as well as under the holder

[blank_holder]                # one of the three
level = 2                     # 0 none, 1 light, 2 medium, 3 strong, 4 no draw-in at all
# force_per_length = "9.4 N/mm"
# total_force = "19.6 kN"     # of the whole part, whatever the symmetry

# [[holder]]                  # a holder on some free edges
# force = "5 kN"
# nodes = [11, 12, 13]        # ids of the mesh file; or box_mm = [[x, y, z], [x, y, z]]

# [[bead]]
# force = "80 N/mm"
# points_mm = [[60, -40, 40], [60, 40, 40]]

# [[pad]]
# pressure = "2 MPa"
# set = "1"                   # element set by name or id; or elements = [...]; or box_mm = [...]

# [[constraint]]              # displacement from the part to the flat, in the stamping frame
# x = "0 mm"
# nodes = [1, 2, 3]

# [limits]
# fld0 = "36 %"               # left out: from thickness and n
# safety_margin = "10 %"
# thinning = "25 %"           # thinner than this is failure, whatever the curve says; 0: off
# thinning_margin = "20 %"

# [output]
# folder = "out"              # left out: out, in the current folder
# report = true
# vtu = true
# dxf = true
# svg = true
# tables = false
)";
}

} // namespace voz::workbench
