// JobMaterial.cpp: the material of a job: from the database, inline, or one with some figures changed.

#include "JobParts.h"
#include "MaterialDatabase.h"
#include "OutputFile.h"

#include <algorithm>
#include <cmath>

namespace voz::workbench
{

namespace
{
JobMaterial FromDatabase(JobTable & io_table, std::string const & i_name, std::string const & i_folder)
{
    std::optional<std::string> const given = io_table.Text("database");
    std::string const path = given ? FromFolder(i_folder, *given) : DefaultDatabase();
    if (path.empty())
        io_table.Refuse("from", "there is no installation (VOZDRAVO3D) to take a material from; give database");
    try
    {
        return FindMaterial(ReadDatabase(path), i_name, path).material;
    }
    catch (InputError const & error)
    {
        io_table.Refuse("from", error.what());
    }
}

double Above0(JobTable const & i_table, std::string const & i_key, double i_value)
{
    if (!(i_value > 0.0))
        i_table.Refuse(i_key, "must be above 0");
    return i_value;
}

// A figure that the job may leave out only where the database (or a default) has one.
double Figure(JobTable & io_table, std::string const & i_key, Dimension i_dimension, double i_known)
{
    if (io_table.Has(i_key) || !(i_known > 0.0))
        return Above0(io_table, i_key, io_table.NeededQuantity(i_key, i_dimension));
    return io_table.Quantity(i_key, i_dimension, i_known);
}

double Figure(JobTable & io_table, std::string const & i_key, double i_known)
{
    if (std::optional<double> const value = io_table.Number(i_key))
        return Above0(io_table, i_key, *value);
    if (!(i_known > 0.0))
        io_table.Refuse(i_key, "is missing: a number");
    return io_table.Number(i_key, i_known);
}

// K and n of the power law nearest to a curve: least squares on the logarithms. They serve where a route or a formula
// knows the power law alone.
void FitPowerLaw(std::vector<std::array<double, 2>> const & i_curve, double & o_strength, double & o_exponent)
{
    double n = 0.0, sx = 0.0, sy = 0.0, sxx = 0.0, sxy = 0.0;
    for (auto const & [strain, stress] : i_curve)
    {
        if (!(strain > 0.002)) // below it the yield point, not the hardening, gives the stress
            continue;
        double const x = std::log(strain);
        double const y = std::log(stress);
        n += 1.0;
        sx += x;
        sy += y;
        sxx += x * x;
        sxy += x * y;
    }
    double const spread = n * sxx - sx * sx;
    o_exponent = n >= 2.0 && spread > 1e-12 ? (n * sxy - sx * sy) / spread : 0.0;
    o_strength = n > 0.0 ? std::exp((sy - o_exponent * sx) / n) : 0.0;
}

void ReadYield(JobTable & io_table, JobMaterial & io_material)
{
    std::optional<double> const prestrain = io_table.Number("e0");
    if (prestrain && io_table.Has("yield"))
        io_table.Refuse("e0", "yield and e0 say the same thing; give one");
    if (!prestrain)
    {
        double const known = io_material.curve.empty() ? io_material.yield : io_material.curve.front()[1];
        io_material.yield = Figure(io_table, "yield", Dimension::Stress, known);
        return;
    }
    if (!(*prestrain > 0.0 && *prestrain < 1.0))
        io_table.Refuse("e0", "must be between 0 and 1");
    io_material.yield = io_material.strength * std::pow(*prestrain, io_material.exponent);
    io_table.Note("yield", Shortest(io_material.yield), "MPa", true);
}

JobMaterial ReadMaterial(JobTable & io_table, std::string const & i_folder)
{
    JobMaterial material;
    material.modulus = 210000.0;
    material.anisotropy = 0.0; // there is no usual one
    std::optional<std::string> const from = io_table.Text("from");
    if (from)
        material = FromDatabase(io_table, *from, i_folder);
    else if (io_table.Has("database"))
        io_table.Refuse("database", "names a database, but \"from\" names no material of it");
    material.line = io_table.Line();
    material.name = io_table.Text("name", from ? material.name : "inline");
    material.source = io_table.Text("source", from ? material.source : "job file");
    material.modulus = Figure(io_table, "E", Dimension::Stress, material.modulus);
    JobTable curve = io_table.Table("curve");
    if (curve.IsPresent())
    {
        ReadCurve(curve, material);
        FitPowerLaw(material.curve, material.strength, material.exponent);
    }
    material.strength = Figure(io_table, "K", Dimension::Stress, material.strength);
    material.exponent = Figure(io_table, "n", material.exponent);
    if (!(material.exponent < 1.0))
        io_table.Refuse("n", "must be below 1");
    material.anisotropy = Figure(io_table, "r", material.anisotropy);
    ReadYield(io_table, material);
    material.poisson = io_table.Number("poisson", material.poisson);
    if (!(material.poisson > 0.0 && material.poisson < 0.5))
        io_table.Refuse("poisson", "must be between 0 and 0.5");
    material.density = Figure(io_table, "density", Dimension::Density, material.density);
    if (std::optional<std::string> const set = io_table.Text("set"))
        material.set = *set;
    io_table.Finish();
    return material;
}
} // namespace

void ReadCurve(JobTable & io_curve, JobMaterial & io_material)
{
    std::string const kind = io_curve.NeededText("strain_kind");
    if (kind != "engineering" && kind != "true" && kind != "plastic")
        io_curve.Refuse("strain_kind", "must be \"engineering\" (both measured), \"true\" (true stress over total "
                                       "true strain) or \"plastic\" (true stress over log plastic strain)");
    std::vector<double> const strain = io_curve.Quantities("strain", Dimension::Ratio);
    std::vector<double> const stress = io_curve.Quantities("stress", Dimension::Stress);
    io_curve.Finish();
    if (strain.size() != stress.size())
        io_curve.Refuse("stress",
                        "has " + std::to_string(stress.size()) + " values, strain " + std::to_string(strain.size()));
    io_material.curve.clear();
    for (std::size_t i = 0; i < strain.size(); ++i)
    {
        double total = strain[i] / 100.0;
        double force = stress[i];
        if (!(force > 0.0))
            io_curve.Refuse("stress", "must be above 0 in every point");
        if (kind == "engineering")
        {
            if (!(total > -1.0))
                io_curve.Refuse("strain", "must be above -100 % in every point");
            force *= 1.0 + total;
            total = std::log1p(total);
        }
        double const plastic = kind == "plastic" ? total : total - force / io_material.modulus;
        if (plastic < 0.0) // on the elastic line
            continue;
        if (!io_material.curve.empty() && !(plastic > io_material.curve.back()[0]))
            io_curve.Refuse("strain", "must rise from point to point");
        io_material.curve.push_back({plastic, force});
    }
    if (io_material.curve.size() < 4)
        io_curve.Refuse("strain", "a curve needs at least 4 points beyond the elastic line, there are " +
                                      std::to_string(io_material.curve.size()));
}

void ReadMaterials(JobTable & io_root, Job & io_job)
{
    std::vector<JobTable> tables = io_root.Tables("material");
    if (tables.empty())
        tables.push_back(io_root.NeededTable("material", "a table with from = \"NAME\" or K, n, r, yield"));
    for (JobTable & table : tables)
        io_job.materials.push_back(ReadMaterial(table, io_job.folder));
}

} // namespace voz::workbench
