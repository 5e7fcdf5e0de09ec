// SolverOutputFuzz.cpp: any text as the solver's output, of forming and of springback.
//
//     SolverOutputFuzz fuzz/seeds/SolverOutputFuzz

#include "CATError.h"
#include "ElemProperty.h"
#include "Material.h"
#include "Mesh.h"
#include "Result.h"
#include "Solver.h"
#include "Symmetry.h"
#include "VOZCatAxis.h"
#include "VOZHost.h"

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <ctime>
#include <filesystem>
#include <memory>
#include <string>

namespace
{
constexpr double kNodes[5][3] = {{0, 0, 0}, {1, 0, 0}, {1, 1, 0}, {0, 1, 0}, {0, 2, 0}};
constexpr int kElements[2][4] = {{1, 2, 3, 4}, {4, 3, 5, 4}}; // a quadrilateral and a triangle

// One job for all inputs: what it reads into is not looked at.
struct Job
{
    Job() : mesh(5, 2, kNodes, kElements), result(mesh)
    {
        host.environment["VOZDRAVO3D"] = VOZ_SOURCE_DIR "/InstallRoot";
        VOZHost::Install(&host);
        property.sizeProperty(1);
        property.sizePropertyIndex(2);
        property.propertyId(1, 1);
        property.propertyId(2, 1);
    }

    VOZMemoryHost host;
    VOZCatMesh mesh;
    Material material{1.0, 1.0, 0.2, 500.0, 200.0};
    ElemProperty property;
    Symmetry symmetry;
    Friction friction;
    FullBlankHolder fullHolder;
    VOZCatAxis axis;
    Result result;
};

void readAs(Job & job, std::string const & path, std::uint8_t const * data, std::size_t size)
{
    if (std::FILE * const file = std::fopen(path.c_str(), "wb"))
    {
        std::fwrite(data, 1, size, file);
        std::fclose(file);
    }
    char folder[] = "";
    Solver solver(job.mesh, job.material, job.property, job.symmetry, job.friction, job.fullHolder, job.axis, folder);
    try
    {
        solver.read(path.c_str(), job.result, false);
    }
    catch (CATError const &)
    {
    }
}
} // namespace

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const * i_data, std::size_t i_size)
{
    static Job job;
    static std::string const stem = (std::filesystem::temp_directory_path() /
                                     ("SolverOutputFuzz." + std::to_string(static_cast<long long>(std::time(nullptr)))))
                                        .string();
    readAs(job, stem + ".fpo", i_data, i_size);
    readAs(job, stem + ".spo", i_data, i_size);
    return 0;
}
