// MeshReaderBench.cpp: a plate of 10^5 and 10^6 triangles from each format. Rows: time, elements per second, and the
// peak of memory over the arrays of the mesh (coordinates and corners).

#include "MeshCheck.h"
#include "MeshFile.h"

#include <benchmark/benchmark.h>
#include <cmath>
#include <filesystem>
#include <fstream>
#include <string>

using namespace voz::workbench;

namespace
{
// A wavy plate of side x side squares of two triangles each.
MeshModel plate(int triangles)
{
    int const side = static_cast<int>(std::lround(std::sqrt(triangles / 2.0)));
    int const row = side + 1;
    MeshModel model;
    model.mesh.sizeNode(row * row);
    model.mesh.sizeElem(2 * side * side);
    for (int n = 0; n < row * row; ++n)
    {
        double const x = 0.7 * (n % row), y = 0.7 * (n / row);
        double(&place)[3] = model.mesh.GetNodeData()[n + 1];
        place[0] = x;
        place[1] = y;
        place[2] = 10.0 * std::sin(0.01 * x) * std::cos(0.013 * y);
        model.nodeIds.push_back(n + 1);
    }
    ElementSet all{1, "", {}, 0.8};
    int e = 0;
    auto const add = [&](int a, int b, int c)
    {
        int(&corners)[4] = model.mesh.GetElemData()[++e];
        corners[0] = corners[3] = a;
        corners[1] = b;
        corners[2] = c;
        model.elementIds.push_back(e);
        all.elements.push_back(e);
    };
    for (int y = 0; y < side; ++y)
        for (int x = 0; x < side; ++x)
        {
            int const n = y * row + x + 1;
            add(n, n + 1, n + row + 1);
            add(n, n + row + 1, n + row);
        }
    model.sets.push_back(all);
    return model;
}

void setPeak(char const * what) // Linux alone; elsewhere the figure reads 0
{
    std::ofstream(what) << "5";
}

double memoryOf(std::string const & key) // kB of /proc/self/status
{
    std::ifstream status("/proc/self/status");
    for (std::string word; status >> word;)
        if (word == key)
        {
            double value = 0.0;
            status >> value;
            return value;
        }
    return 0.0;
}

void readMesh(benchmark::State & state, char const * extension)
{
    std::string const path =
        (std::filesystem::temp_directory_path() / ("mesh_reader_bench" + std::string(extension))).string();
    WriteMesh(plate(static_cast<int>(state.range(0))), path);
    double peak = 0.0, arrays = 1.0;
    for (auto _ : state)
    {
        setPeak("/proc/self/clear_refs");
        double const before = memoryOf("VmRSS:");
        MeshModel const model = ReadMesh(path);
        peak = std::max(peak, memoryOf("VmHWM:") - before);
        arrays = (24.0 * model.mesh.numNode() + 16.0 * model.mesh.numElem()) / 1024.0;
        benchmark::DoNotOptimize(model.mesh.numElem());
    }
    std::filesystem::remove(path);
    state.counters["elements/s"] =
        benchmark::Counter(static_cast<double>(state.range(0)), benchmark::Counter::kIsIterationInvariantRate);
    state.counters["peak/arrays"] = peak / arrays;
}

void checkMesh(benchmark::State & state)
{
    MeshModel const model = plate(static_cast<int>(state.range(0)));
    for (auto _ : state)
        benchmark::DoNotOptimize(CheckMesh(model).freeEdges);
    state.counters["elements/s"] =
        benchmark::Counter(static_cast<double>(state.range(0)), benchmark::Counter::kIsIterationInvariantRate);
}
} // namespace

BENCHMARK_CAPTURE(readMesh, Nastran, ".bdf")->Arg(100000)->Arg(1000000)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(readMesh, Dyna, ".k")->Arg(100000)->Arg(1000000)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(readMesh, Obj, ".obj")->Arg(100000)->Arg(1000000)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(readMesh, Stl, ".stl")->Arg(100000)->Arg(1000000)->Unit(benchmark::kMillisecond);
BENCHMARK(checkMesh)->Arg(100000)->Arg(1000000)->Unit(benchmark::kMillisecond);
