// DynaResultsFuzz.cpp: any bytes as "output.voz": record by record, and through the driver into results.
//
//     DynaResultsFuzz fuzz/seeds/DynaResultsFuzz

#include "CATUnicodeString.h"
#include "ElemProperty.h"
#include "Mesh.h"
#include "Result.h"
#include "VOZDynaResults.h"
#include "VOZHost.h"
#include "VOZSolverIncremental.h"

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <ctime>
#include <filesystem>
#include <string>

namespace
{
struct Job
{
    Job()
    {
        folder = (std::filesystem::temp_directory_path() /
                  ("DynaResultsFuzz." + std::to_string(static_cast<long long>(std::time(nullptr)))))
                     .string();
        std::filesystem::create_directories(folder);
        file = CATUnicodeString((folder + "/output.voz").c_str());
        host.environment["VOZDRAVO3D"] = VOZ_SOURCE_DIR "/InstallRoot";
        host.environment["CATTemp"] = folder;
        VOZHost::Install(&host);
        property.sizeProperty(1);
    }

    std::string folder;
    CATUnicodeString file;
    VOZMemoryHost host;
    ElemProperty property;
};

// The mesh first, then stores of its size, as a caller does.
void import(Job & io_job, int i_step)
{
    VOZSolverIncremental driver;
    driver.SetBoundaryConditions(nullptr, 0, &io_job.property, nullptr, nullptr, nullptr, nullptr, 0, 0, 0);
    driver.SetCurrentStepIndex(i_step);
    if (driver.GetResults(nullptr) != 0)
        return;
    VOZCatMesh * const mesh = driver.GetResultMesh();
    Result top(*mesh);
    Result mid(*mesh);
    Result bottom(*mesh);
    Result * layers[3] = {&top, &mid, &bottom};
    driver.GetResults(layers);
    if (driver.GetResultMesh() != mesh) // replaced: the first one is ours
        delete mesh;
}
} // namespace

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const * i_data, std::size_t i_size)
{
    static Job job;
    job.host.reports.clear();
    if (std::FILE * const file = std::fopen(job.file.ConvertToChar(), "wb"))
    {
        std::fwrite(i_data, 1, i_size, file);
        std::fclose(file);
    }
    VOZDynaResults reader(20, job.file);
    reader.ReadStep(-2);
    import(job, 0);
    import(job, 1);
    return 0;
}
