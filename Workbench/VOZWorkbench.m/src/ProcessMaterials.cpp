// ProcessMaterials.cpp: the materials of a job: which element is of which, and both records of each.

#include "JobModel.h"
#include "OutputFile.h"
#include "VOZMaterial.h"

#include <cmath>

namespace voz::workbench
{

namespace
{
constexpr double kMetrePerMillimetre = 0.001;
constexpr double kPascalPerMegapascal = 1e6;

[[noreturn]] void Refuse(Job const & i_job, JobMaterial const & i_material, std::string const & i_message)
{
    throw InputError(i_job.path, i_material.line, 0, "material \"" + i_material.name + "\" " + i_message);
}

// A material without a set takes what the sets of the others leave.
void TakeRest(Job const & i_job, std::vector<int> & io_materialOf)
{
    int rest = 0;
    for (std::size_t i = 0; i < i_job.materials.size(); ++i)
    {
        if (!i_job.materials[i].set.empty())
            continue;
        if (rest != 0)
            Refuse(i_job, i_job.materials[i], "has no set, and neither has one before it; one alone takes the rest");
        rest = static_cast<int>(i) + 1;
    }
    for (std::size_t e = 1; e < io_materialOf.size(); ++e)
        if (io_materialOf[e] == 0)
            io_materialOf[e] = rest;
}
} // namespace

std::vector<int> MaterialOfElements(Job const & i_job, JobModel const & i_model)
{
    std::vector<int> materialOf(static_cast<std::size_t>(i_model.mesh.mesh.numElem()) + 1, 0);
    for (std::size_t i = 0; i < i_job.materials.size(); ++i)
    {
        JobMaterial const & material = i_job.materials[i];
        if (material.set.empty())
            continue;
        JobSelection selection;
        selection.set = material.set;
        selection.line = material.line;
        selection.where = "material \"" + material.name + "\"";
        for (int const e : ElementsOf(selection, i_job, i_model))
        {
            int & mine = materialOf[static_cast<std::size_t>(e)];
            if (mine != 0)
                Refuse(i_job, material,
                       "and \"" + i_job.materials[static_cast<std::size_t>(mine) - 1].name + "\" both take element " +
                           std::to_string(i_model.mesh.elementIds[static_cast<std::size_t>(e) - 1]));
            mine = static_cast<int>(i) + 1;
        }
    }
    TakeRest(i_job, materialOf);
    for (std::size_t e = 1; e < materialOf.size(); ++e)
        if (materialOf[e] == 0)
            Refuse(i_job, i_job.materials.back(),
                   "and the others leave element " + std::to_string(i_model.mesh.elementIds[e - 1]) +
                       " without a material; a material without a set takes the rest");
    return materialOf;
}

double FldZeroOf(Job const & i_job, JobMaterial const & i_material)
{
    return i_job.limits.isFldZeroGiven ? i_job.limits.fldZero
                                       : FldZero::CalculateFLD0(i_job.thickness, i_material.exponent);
}

void FillMaterials(Job const & i_job, JobMaterial const & i_material, Material & io_material,
                   VOZMaterial & io_kernelMaterial)
{
    JobLimits const & limits = i_job.limits;
    int const points = static_cast<int>(i_material.curve.size());
    io_material =
        Material(i_job.thickness, i_material.anisotropy, i_material.exponent, i_material.strength, i_material.yield);
    CATUnicodeString name(i_material.name.c_str());
    io_material.SetName(name);
    io_material.sizeSSData(points);

    VOZMaterial & kernel = io_kernelMaterial;
    kernel.m_strName = name;
    kernel.m_dThickness = i_job.thickness * kMetrePerMillimetre;
    kernel.m_dNValue = i_material.exponent;
    kernel.m_dRValue = i_material.anisotropy;
    kernel.m_dKValue = i_material.strength * kPascalPerMegapascal;
    kernel.m_dYield = i_material.yield * kPascalPerMegapascal;
    delete[] kernel.m_padPoints;
    kernel.m_nNumPoints = points;
    kernel.m_padPoints = points > 0 ? new double[2 * i_material.curve.size()] : nullptr;
    double * point = kernel.m_padPoints;
    for (int i = 0; i < points; ++i)
    {
        auto const & [strain, stress] = i_material.curve[static_cast<std::size_t>(i)];
        io_material.setSSData(i, 0, strain);
        io_material.setSSData(i, 1, stress);
        *point++ = strain;
        *point++ = stress * kPascalPerMegapascal;
    }
    kernel.m_dDensity = i_material.density;
    kernel.m_dYoungsModulus = i_material.modulus * kPascalPerMegapascal;
    kernel.m_dPoisson = i_material.poisson;
    kernel.m_dFldZero = FldZeroOf(i_job, i_material);
    kernel.m_nFldType = limits.isHalved ? 1 : 0;
    kernel.m_dSafetyMargin = limits.safetyMargin;
    kernel.m_dPlaneStrainTol = limits.planeStrainTolerance;
    kernel.m_dThinningLimit = std::log1p(-limits.thinning / 100.0);
    kernel.m_dThinningMargin = std::log1p(-limits.thinningMargin / 100.0);
    kernel.m_dShearLimit = limits.shear / 100.0;
    kernel.m_dShearMargin = limits.shearMargin / 100.0;
    kernel.m_dWrinkleLimit = limits.wrinkle / 100.0;
}

FormingLimit LimitOf(Job const & i_job, JobMaterial const & i_material)
{
    return {i_material.anisotropy,
            i_material.exponent,
            i_job.thickness * kMetrePerMillimetre, // the class reads metres
            i_job.limits.safetyMargin,
            i_job.limits.planeStrainTolerance,
            FldZeroOf(i_job, i_material),
            i_job.limits.isHalved ? 1 : 0};
}

std::string ConfigurationText(JobLimits const & i_limits)
{
    std::string text = "# Settings of one job: the limits of its zones. 0 switches a test off.\nSolverRam=0\n";
    for (auto const & [key, value] : {std::pair{"ThinningLimit", std::log1p(-i_limits.thinning / 100.0)},
                                      {"ThinningMargin", std::log1p(-i_limits.thinningMargin / 100.0)},
                                      {"ShearLimit", i_limits.shear / 100.0},
                                      {"ShearMargin", i_limits.shearMargin / 100.0},
                                      {"WrinkleLimit", i_limits.wrinkle / 100.0}})
        text += std::string(key) + "=" + Shortest(value == 0.0 ? 0.0 : value) + "\n";
    return text;
}

} // namespace voz::workbench
