// JobSense.cpp: values that are possible but unusual in sheet-metal forming.

#include "JobParts.h"
#include "OutputFile.h"

namespace voz::workbench
{

namespace
{
struct UsualRange
{
    char const * name;
    double low;
    double high;
    char const * unit;
};

// clang-format off
constexpr UsualRange kThickness = {"thickness", 0.2, 8.0, " mm"};
constexpr UsualRange kModulus   = {"E", 60000.0, 220000.0, " MPa"};
constexpr UsualRange kYield     = {"yield", 50.0, 1500.0, " MPa"};
constexpr UsualRange kExponent  = {"n", 0.05, 0.6, ""};
constexpr UsualRange kAnisotropy= {"r", 0.3, 3.0, ""};
constexpr UsualRange kFriction  = {"friction coefficient", 0.0, 0.3, ""};
// clang-format on
constexpr double kLooksLikePascal = 1e5; // of a yield stress that should be in MPa

void Check(UsualRange const & i_range, double i_value, std::string const & i_where,
           std::vector<std::string> & io_warnings)
{
    if (i_value >= i_range.low && i_value <= i_range.high)
        return;
    io_warnings.push_back(i_where + i_range.name + " " + Shortest(i_value) + i_range.unit + " is outside the usual " +
                          Shortest(i_range.low) + " to " + Shortest(i_range.high) + i_range.unit);
}

void CheckMaterial(JobMaterial const & i_material, std::string const & i_where, std::vector<std::string> & io_warnings)
{
    Check(kModulus, i_material.modulus, i_where, io_warnings);
    if (i_material.yield > kLooksLikePascal)
        io_warnings.push_back(i_where + "yield " + Shortest(i_material.yield) +
                              " MPa looks like a value in Pa; usual are 50 to 1500 MPa");
    else
        Check(kYield, i_material.yield, i_where, io_warnings);
    Check(kExponent, i_material.exponent, i_where, io_warnings);
    Check(kAnisotropy, i_material.anisotropy, i_where, io_warnings);
    for (std::size_t i = 1; i < i_material.curve.size(); ++i)
        if (i_material.curve[i][1] < i_material.curve[i - 1][1])
        {
            io_warnings.push_back(i_where + "the hardening curve falls from " + Shortest(i_material.curve[i - 1][1]) +
                                  " to " + Shortest(i_material.curve[i][1]) + " MPa at strain " +
                                  Shortest(i_material.curve[i][0]) + "; it usually rises");
            break;
        }
}
} // namespace

void CheckSense(Job const & i_job, std::vector<std::string> & io_warnings)
{
    Check(kThickness, i_job.thickness, "", io_warnings);
    Check(kFriction, i_job.friction, "", io_warnings);
    for (JobMaterial const & material : i_job.materials)
        CheckMaterial(material, "material " + material.name + ": ", io_warnings);
    JobHolder const & holder = i_job.holder;
    if (holder.kind == HolderKind::TotalForce && !(i_job.friction > 0.001))
        io_warnings.push_back("a holder's total force of " + Shortest(holder.force) +
                              " N restrains nothing with a friction coefficient of " + Shortest(i_job.friction) +
                              "; usual are 0.05 to 0.2");
    if (holder.kind == HolderKind::ForcePerLength && !i_job.materials.empty())
    {
        double const yielding = i_job.materials.front().yield * i_job.thickness;
        if (holder.force > yielding)
            io_warnings.push_back("the holder's restraint of " + Shortest(holder.force) + " N/mm is above the " +
                                  Fixed(yielding, 1) + " N/mm at which the sheet yields; usual are 0 to " +
                                  Fixed(0.8 * yielding, 1) + " N/mm");
    }
}

} // namespace voz::workbench
