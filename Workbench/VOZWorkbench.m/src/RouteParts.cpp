// RouteParts.cpp: what the routes share.

#include "RouteParts.h"

#include "FileRoute.h"
#include "IncrementalRoute.h"
#include "KernelRoute.h"
#include "OutputFile.h"
#include "Quantity.h"
#include "TextFile.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <filesystem>
#include <sstream>

namespace voz::workbench
{

namespace
{
constexpr std::size_t kPathBytes = 256; // of the configuration's path and of the solver's folder, zero included
} // namespace

std::vector<std::string> RouteNames()
{
    return {kKernelRoute, kFileRoute, kIncrementalRoute};
}

std::unique_ptr<Route> MakeRoute(std::string const & i_name, std::string const & i_solver)
{
    if (i_name == kFileRoute)
        return std::make_unique<FileRoute>(i_solver);
    if (i_name == kKernelRoute)
        return std::make_unique<KernelRoute>();
    if (i_name == kIncrementalRoute)
        return std::make_unique<IncrementalRoute>();
    throw InputError("--route", 0, 0,
                     "there is no route \"" + i_name + "\"; the routes are kernel, file and incremental");
}

std::string InFolder(std::string const & i_folder, char const * i_name)
{
    return (std::filesystem::path(i_folder) / i_name).string();
}

void WriteText(std::string const & i_path, std::string const & i_text)
{
    OutputFile file(i_path);
    file << i_text;
    file.Commit();
}

std::string TextIfThere(std::string const & i_path)
{
    std::error_code error;
    return std::filesystem::is_regular_file(i_path, error) ? ReadTextFile(i_path, std::size_t{1} << 30) : std::string();
}

std::string LastLines(std::string const & i_text, int i_count)
{
    std::string text = i_text;
    while (text.ends_with('\n'))
        text.pop_back();
    std::size_t begin = text.size();
    for (int i = 0; i < i_count && begin != std::string::npos && begin > 0; ++i)
        begin = text.rfind('\n', begin - 1);
    return begin == std::string::npos || begin == 0 ? text : text.substr(begin + 1);
}

void RefuseFolder(std::string const & i_folder, std::string const & i_route, std::string const & i_reason)
{
    throw InputError(i_folder, 0, 0,
                     "the " + i_route + " route cannot work in this folder: " + i_reason + "; choose another");
}

void CheckFolderPath(std::string const & i_folder, std::string const & i_route)
{
    if (std::filesystem::path::preferred_separator == '/' && i_folder.find('\\') != std::string::npos)
        RefuseFolder(i_folder, i_route, "a path with a backslash is read as one with more folders");
    for (char const c : i_folder)
        if (static_cast<unsigned char>(c) < 0x20)
            RefuseFolder(i_folder, i_route, "its path holds a control character");
    if (std::size_t const length = InFolder(i_folder, kConfiguration).size(); length >= kPathBytes)
        RefuseFolder(i_folder, i_route,
                     "its path is " + std::to_string(length - kPathBytes + 1) + " characters too long");
}

std::string WithoutTimes(std::string const & i_log)
{
    std::istringstream lines(i_log);
    std::string kept;
    for (std::string line; std::getline(lines, line);)
        if (!line.starts_with("time:"))
            kept += line + "\n";
    return kept;
}

std::vector<OutcomeCheck> SolverChecks(std::string const & i_summary)
{
    struct Limit
    {
        char const * name;
        char const * text;
        double most;
    };
    // clang-format off
    constexpr std::array<Limit, 3> kLimits = {{{"residual", "equilibrium residual", 1e-8},
                                               {"holding share", "share of forces that do not balance", 0.05},
                                               {"necking points", "points thinner than necking allows", 0.0}}};
    // clang-format on
    std::vector<OutcomeCheck> checks;
    std::istringstream lines(i_summary);
    for (std::string line; std::getline(lines, line);)
        for (Limit const & limit : kLimits)
        {
            if (!line.starts_with(limit.name))
                continue;
            std::optional<double> const value = ParseNumber(line.substr(std::string(limit.name).size()));
            if (value)
                checks.push_back(
                    {limit.text, Shortest(*value), "at most " + Shortest(limit.most), *value <= limit.most, true});
        }
    return checks;
}

namespace
{
void FillLimits(Job const & i_job, JobModel const & i_model, Outcome & o_outcome)
{
    o_outcome.limitSource = i_job.limits.isFldZeroGiven
                                ? "FLD0 as given in the job"
                                : "FLD0 = (356.7 t + 23.36) n / 0.2116, t in inches, at most 0.118";
    std::vector<FormingLimit> limits;
    for (JobMaterial const & material : i_job.materials)
        limits.push_back(LimitOf(i_job, material));
    auto const lowest = std::ranges::min_element(limits, {}, &FormingLimit::fldZero);
    o_outcome.limit = *lowest;
    if (limits.size() == 1)
        return;
    JobMaterial const & drawn = i_job.materials[static_cast<std::size_t>(lowest - limits.begin())];
    o_outcome.limitSource +=
        "; each element is judged by the curve of its own material, drawn is that of " + drawn.name + ", the lowest";
    std::vector<int> const materialOf = MaterialOfElements(i_job, i_model);
    for (std::size_t e = 1; e < materialOf.size(); ++e)
        o_outcome.materials.push_back(materialOf[e] - 1);
    o_outcome.limits = std::move(limits);
}
} // namespace

void FillHead(Job const & i_job, JobModel const & i_model, Tipping const & i_tipping, Outcome & o_outcome)
{
    o_outcome.title = i_job.title;
    o_outcome.part = i_model.mesh.mesh;
    o_outcome.frame = i_tipping.frame;
    o_outcome.symmetry = i_tipping.symmetry;
    for (JobMaterial const & material : i_job.materials)
    {
        std::string const separator = o_outcome.materialName.empty() ? "" : "; ";
        o_outcome.materialName += separator + material.name;
        o_outcome.materialSource += separator + material.source;
    }
    o_outcome.firstThickness = i_job.thickness;
    o_outcome.density = i_job.materials.front().density;
    FillLimits(i_job, i_model, o_outcome);
    o_outcome.undercut = i_tipping.undercut;
    o_outcome.summary.undercutAngle = i_tipping.undercutAngle;
}

void SettleZones(double i_major, double i_minor, int & io_safety, int & io_forming)
{
    constexpr double kNoise = 0.01; // percent; the deck's six decimals of an inch leave about a thousandth
    if (!(std::abs(i_major) < kNoise && std::abs(i_minor) < kNoise))
        return;
    io_safety = 2;
    io_forming = 1;
}

Point3 FlatPlace(double const * i_node, Point3 const & i_displacement, VOZCatAxis const & i_frame)
{
    Point3 flat{};
    for (int row = 0; row < 3; ++row)
        for (int c = 0; c < 3; ++c)
            flat[static_cast<std::size_t>(row)] +=
                i_frame.axis(row, c) * (i_node[c] + i_displacement[static_cast<std::size_t>(c)] - i_frame.origin(c));
    return flat;
}

double ThicknessStrain(FormingLimit const & i_limit, double i_major, double i_minor)
{
    return i_limit.trueToEngStrain(-i_limit.engToTrueStrain(i_major) - i_limit.engToTrueStrain(i_minor));
}

} // namespace voz::workbench
