// IncrementalBench.cpp: a whole run of the incremental driver: deck and include files of a blank and three tools.
//
// Each row has meshes of that many elements in all, four alike. per_element is the cost of a run in seconds; the
// counters split it: until the mesh files (roles, stroke, boundary, numbers), the mesh files, the deck. Rows of their
// own: bringing the meshes into place, and the gap between punch and die. ExportBench measures the writer of the mesh
// files against the cost of formatting their numbers. Goal for 4 * 10^5 elements: the gap in under 2 s.

#include "CATUnicodeString.h"
#include "ElemProperty.h"
#include "Material.h"
#include "Mesh.h"
#include "Symmetry.h"
#include "VOZCatAxis.h"
#include "VOZHost.h"
#include "VOZMaterial.h"
#include "VOZSolverIncremental.h"

#include <benchmark/benchmark.h>

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <ctime>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

namespace
{
// Of this process's own time: what else runs on the machine does not count.
double secondsBetween(std::clock_t i_begin, std::clock_t i_end)
{
    return static_cast<double>(i_end - i_begin) / CLOCKS_PER_SEC;
}

// A plate of 300 mm x 300 mm at the height i_z with a dome of i_height.
void fillPlate(VOZCatMesh & o_mesh, int i_cells, double i_z, double i_height)
{
    int const side = i_cells + 1;
    o_mesh = VOZCatMesh(side * side, i_cells * i_cells);
    int e = 0;
    for (int row = 0; row < side; ++row)
        for (int column = 0; column < side; ++column)
        {
            int const n = row * side + column + 1;
            double * const point = o_mesh.GetNodeData()[n];
            point[0] = 300.0 * column / i_cells;
            point[1] = 300.0 * row / i_cells;
            double const u = std::sin(point[0] / 95.5);
            double const v = std::sin(point[1] / 95.5);
            point[2] = i_z + i_height * u * u * v * v;
            if (row == i_cells || column == i_cells)
                continue;
            int const corners[4] = {n, n + 1, n + side + 1, n + side};
            std::copy(std::begin(corners), std::end(corners), o_mesh.GetElemData()[++e]);
        }
}

// The driver with a clock at the two places where a run turns to the next thing.
class Timed : public VOZSolverIncremental
{
public:
    void WriteMeshData() override
    {
        meshesBegin = std::clock();
        VOZSolverIncremental::WriteMeshData();
        meshesEnd = std::clock();
    }
    void place(std::string const & i_folder) { m_strWorkingFolder = CATUnicodeString(i_folder.c_str()); }

    std::clock_t meshesBegin = 0;
    std::clock_t meshesEnd = 0;
};

// A job in a folder of its own.
class Job
{
public:
    explicit Job(std::int64_t i_elements)
        : folder(std::filesystem::temp_directory_path() / "VOZIncrementalBench"),
          mCells(static_cast<int>(std::lround(std::sqrt(static_cast<double>(i_elements) / 4.0))))
    {
        std::filesystem::create_directories(folder);
        std::ofstream(folder / "config.cfg");
        host.environment["VOZDRAVO3D"] = folder.string();
        host.environment["CATTemp"] = folder.string();
        VOZHost::Install(&host);
        property.sizeProperty(1);
        property.material(1)->m_dThickness = 0.0008;
        friction.coefficient(0.12);
        holder.factor(0.1);
    }
    ~Job()
    {
        VOZHost::Install(nullptr);
        std::error_code ignored;
        std::filesystem::remove_all(folder, ignored);
    }
    Job(Job const &) = delete;
    Job & operator=(Job const &) = delete;

    // New meshes, since a run changes them, for a driver.
    void prepare(VOZSolverIncremental & io_driver)
    {
        char const * const names[4] = {"VOZBlank", "VOZDie", "VOZPunch", "VOZBinder"};
        double const heights[4][2] = {{0.0, 0.0}, {60.0, 30.0}, {-10.0, 29.0}, {-1.0, 0.0}};
        for (int i = 0; i < 4; ++i)
        {
            fillPlate(meshes[i], mCells, heights[i][0], heights[i][1]);
            meshes[i].SetName(names[i]);
            meshes[i].IdsOffset(i * meshes[i].numNode(), i * meshes[i].numElem());
            pointers[i] = &meshes[i];
        }
        property.sizePropertyIndex(meshes[0].numElem());
        io_driver.SetBoundaryConditions(pointers, 4, &property, &symmetry, &friction, &holder, &axis, 0, 0, 0);
    }

    double numElements() const { return 4.0 * mCells * mCells; }

    std::filesystem::path folder;
    VOZMemoryHost host;
    VOZCatMesh meshes[4];
    VOZCatMesh const * pointers[4] = {};
    ElemProperty property;
    Symmetry symmetry;
    Friction friction;
    FullBlankHolder holder;
    VOZCatAxis axis;

private:
    int mCells;
};

void report(benchmark::State & state, Job const & job)
{
    state.counters["per_element"] = benchmark::Counter(
        job.numElements(), benchmark::Counter::kIsIterationInvariantRate | benchmark::Counter::kInvert);
}

void wholeRun(benchmark::State & state)
{
    Job job(state.range(0));
    double before = 0.0;
    double files = 0.0;
    double deck = 0.0;
    for (auto _ : state)
    {
        state.PauseTiming();
        Timed driver;
        job.prepare(driver);
        state.ResumeTiming();
        std::clock_t const begin = std::clock();
        if (driver.Run(nullptr) != 0)
            state.SkipWithError("the deck was not written");
        before += secondsBetween(begin, driver.meshesBegin);
        files += secondsBetween(driver.meshesBegin, driver.meshesEnd);
        deck += secondsBetween(driver.meshesEnd, std::clock());
    }
    state.counters["s_before"] = benchmark::Counter(before, benchmark::Counter::kAvgIterations);
    state.counters["s_mesh_files"] = benchmark::Counter(files, benchmark::Counter::kAvgIterations);
    state.counters["s_deck"] = benchmark::Counter(deck, benchmark::Counter::kAvgIterations);
    report(state, job);
}

void meshesIntoPlace(benchmark::State & state)
{
    Job job(state.range(0));
    for (auto _ : state)
    {
        state.PauseTiming();
        Timed driver;
        job.prepare(driver);
        driver.place(job.folder.string());
        state.ResumeTiming();
        if (driver.SetMesh() != 0)
            state.SkipWithError("the meshes were not taken");
    }
    report(state, job);
}

void gapOfTheTools(benchmark::State & state)
{
    Job job(state.range(0));
    Timed driver;
    job.prepare(driver);
    driver.place(job.folder.string());
    driver.SetMesh();
    for (auto _ : state)
        driver.PunchStrokeAsDZmax();
    report(state, job);
}
} // namespace

BENCHMARK(wholeRun)->Arg(40000)->Arg(400000)->Unit(benchmark::kMillisecond);
BENCHMARK(meshesIntoPlace)->Arg(40000)->Arg(400000)->Unit(benchmark::kMillisecond);
BENCHMARK(gapOfTheTools)->Arg(40000)->Arg(400000)->Unit(benchmark::kMillisecond);
