// ExportBench.cpp: node and element files as LS-DYNA cards, 10^5 blank and 3 * 10^5 tool elements.
//
// ExportNumbers formats the same numbers with std::to_chars into memory. The goal is ExportPlain / ExportNumbers at
// most 1.5; the counter "ratio" of ExportPlain is that quotient, from the best of five runs of each, in CPU time of the
// program itself.

#include "BenchClock.h"
#include "BenchMeshes.h"

#include "VOZDYNAWriter.h"

#include <benchmark/benchmark.h>

#include <charconv>
#include <filesystem>
#include <string>
#include <vector>

namespace
{
struct Files
{
    Files() : meshes{benchmeshes::dome(100000, false), benchmeshes::dome(300000, false)} {}
    VOZCatMesh meshes[2];

    static Files & Get()
    {
        static Files files;
        return files;
    }
};

std::size_t formatNumbers(VOZCatMesh const & mesh, std::vector<char> & buffer)
{
    char * at = buffer.data();
    char * const end = at + buffer.size();
    auto const number = [&](int value) { at = std::to_chars(at, end, value).ptr; };
    for (int n = 1; n <= mesh.numNode(); ++n)
    {
        number(n);
        for (int c = 0; c < 3; ++c)
            at = std::to_chars(at, end, mesh.NodeValue(n, c), std::chars_format::scientific, 8).ptr;
    }
    for (int e = 1; e <= mesh.numElem(); ++e)
    {
        number(e);
        number(7);
        for (int k = 0; k < 4; ++k)
            number(mesh.ElementValue(e, k));
    }
    return static_cast<std::size_t>(at - buffer.data());
}

std::vector<char> numberBuffer()
{
    VOZCatMesh const & larger = Files::Get().meshes[1];
    return std::vector<char>(static_cast<std::size_t>(larger.numNode() + larger.numElem()) * 64);
}

void formatAll(std::vector<char> & buffer)
{
    for (VOZCatMesh const & mesh : Files::Get().meshes)
        benchmark::DoNotOptimize(formatNumbers(mesh, buffer));
}

void writeAll()
{
    std::string path = (std::filesystem::temp_directory_path() / "ExportBench.mod").string();
    for (VOZCatMesh & mesh : Files::Get().meshes)
        DYNAWriter(&mesh, nullptr, 3, path.data(), nullptr, 7).Write();
    std::filesystem::remove(path);
}

void ExportNumbers(benchmark::State & state)
{
    std::vector<char> buffer = numberBuffer();
    for (auto _ : state)
        formatAll(buffer);
}

void ExportPlain(benchmark::State & state)
{
    for (auto _ : state)
        writeAll();
    std::vector<char> buffer = numberBuffer();
    double const numbers = benchclock::bestSeconds([&] { formatAll(buffer); });
    state.counters["ratio"] = benchclock::bestSeconds(writeAll) / numbers;
}
} // namespace

BENCHMARK(ExportNumbers)->Unit(benchmark::kMillisecond);
BENCHMARK(ExportPlain)->Unit(benchmark::kMillisecond);
