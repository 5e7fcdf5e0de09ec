// convergence-study: 400 one-step solves drawn by a Latin hypercube, one row of a table each.
//
//     convergence-study FILE.csv [FIRST LAST]     the runs FIRST to LAST (all), written as they end
//     convergence-study --log NUMBER              one run, with the solver's log on standard output
//
// Parts: those of the examples, at element sizes of 0.5 to 4 times theirs; tool friction 0 to 0.3; holder force 0
// to 10 times the example's; thickness 0.3 to 3 mm; every material of the shipped database; triangles or
// quadrilaterals; nodes and elements numbered at random. The table holds no times: the same code writes the same bytes.

#include "StudyRuns.h"

#include "VOZMaterial.h"
#include "settings/MaterialDatabase.h"

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <exception>

namespace
{

using namespace study;

constexpr int kRuns = 400;
constexpr std::uint64_t kSeed = 1993;

std::vector<NamedLaw> readMaterials()
{
    VOZMaterialDatabase database;
    database.Read(VOZ_SOURCE_DIR "/InstallRoot/dat/materials.xml");
    VOZAPIMaterialList * const list = database.Release();
    std::vector<NamedLaw> materials;
    for (VOZAPIMaterialList const * entry = list; entry != nullptr; entry = entry->GetNext())
    {
        VOZMaterial const & given = *entry->GetMaterial();
        onesteptest::MaterialLaw law;
        law.thickness = given.m_dThickness;
        law.rValue = given.m_dRValue;
        law.nValue = given.m_dNValue;
        law.kValue = given.m_dKValue;
        law.yield = given.m_dYield;
        law.youngsModulus = given.m_dYoungsModulus;
        law.poisson = given.m_dPoisson;
        for (int i = 0; i < given.m_nNumPoints; ++i)
            law.table.push_back({given.m_padPoints[2 * i], given.m_padPoints[2 * i + 1]});
        materials.push_back({given.m_strName.ConvertToChar(), law});
    }
    VOZMaterialDatabase::Delete(list);
    return materials;
}

char const * nameOf(voz::onestep::Status status)
{
    constexpr char const * kNames[] = {"converged", "accepted", "failed", "refused", "stopped"};
    return kNames[static_cast<int>(status)];
}

void writeRow(std::FILE * file, Run const & run, NamedLaw const & material, std::size_t elements,
              voz::onestep::Solution const & solution)
{
    double thinnest = 0.0;
    for (std::size_t i = 0; i + 2 < solution.strains.mid.size(); i += 3)
        thinnest = std::min(thinnest, -(solution.strains.mid[i] + solution.strains.mid[i + 1]));
    std::fprintf(file, "%d,%s,%s,%.3f,%zu,%s,%.3f,%.3f,%.2f,%s,%d,%d,%d,%.1e,%.3f,%.3f,%.3f,%d,%s\n", run.number,
                 run.part.c_str(), run.cells == onesteptest::Cells::Quads ? "quads" : "triangles", run.size, elements,
                 material.name.c_str(), run.thickness, run.friction, run.holderForce, nameOf(solution.status),
                 solution.fallback, solution.startSteps, solution.newtonSteps, solution.residual,
                 solution.leastDeterminant, solution.greatestStrain, thinnest, solution.neckingPoints,
                 solution.message.c_str());
    std::fflush(file);
}

int runAll(char const * path, int first, int last)
{
    std::vector<NamedLaw> const materials = readMaterials();
    std::FILE * const file = std::fopen(path, "wb");
    if (file == nullptr)
    {
        std::fprintf(stderr, "convergence-study: cannot write %s\n", path);
        return 5;
    }
    std::fprintf(file, "run,part,cells,element_size_ratio,elements,material,thickness_mm,friction,holder_N_per_mm,"
                       "outcome,fallback,start_steps,newton_steps,residual,least_det,greatest_strain,"
                       "least_thickness_strain,necking_points,message\n");
    int straight = 0, converged = 0, all = 0;
    for (Run & run : drawRuns(kRuns, kSeed, static_cast<int>(materials.size())))
    {
        if (run.number < first || run.number > last)
            continue;
        voz::onestep::Problem const problem = buildProblem(run, materials);
        voz::onestep::Solution const solution = voz::onestep::Solve(problem, {}, {});
        bool const good = solution.status == voz::onestep::Status::Converged;
        ++all;
        converged += good ? 1 : 0;
        straight += good && solution.fallback == 0 ? 1 : 0;
        writeRow(file, run, materials[static_cast<std::size_t>(run.material)], problem.elements.size(), solution);
    }
    std::fclose(file);
    std::printf("%d of %d converged, %d without a fall-back\n", converged, all, straight);
    return 0;
}

int logOne(int number)
{
    std::vector<NamedLaw> const materials = readMaterials();
    Run run = drawRuns(kRuns, kSeed, static_cast<int>(materials.size())).at(static_cast<std::size_t>(number - 1));
    voz::onestep::Problem const problem = buildProblem(run, materials);
    voz::onestep::Progress progress;
    progress.log = [](std::string const & line) { std::printf("%s\n", line.c_str()); };
    voz::onestep::Solution const solution = voz::onestep::Solve(problem, {}, progress);
    writeRow(stdout, run, materials[static_cast<std::size_t>(run.material)], problem.elements.size(), solution);
    return 0;
}

} // namespace

int main(int argc, char ** argv)
{
    try
    {
        if (argc == 3 && std::strcmp(argv[1], "--log") == 0)
            return logOne(std::atoi(argv[2]));
        if ((argc == 2 || argc == 4) && argv[1][0] != '-')
            return runAll(argv[1], argc == 4 ? std::atoi(argv[2]) : 1, argc == 4 ? std::atoi(argv[3]) : kRuns);
    }
    catch (std::exception const & error)
    {
        std::fprintf(stderr, "convergence-study: %s\n", error.what());
        return 3;
    }
    std::fprintf(stderr, "use: convergence-study FILE.csv [FIRST LAST] | --log NUMBER\n");
    return 2;
}
