// DeckBench.cpp: writing a deck, reading it, reading the solver's output; 10^4, 10^5, 10^6 triangles.
//
// DeckNumbers formats the numbers of the deck with std::to_chars into memory, DeckBoundary is the boundary pipeline
// that every write runs. The goal is (DeckWrite - DeckBoundary) / DeckNumbers at most 1.5; the counter "ratio" of
// DeckWrite is that quotient, from the best of five runs of each.

#include "BenchClock.h"
#include "DeckReader.h"

#include "EdgeSets.h"
#include "ElemProperty.h"
#include "FreeEdgeLoops.h"
#include "LoopFilters.h"
#include "Material.h"
#include "Mesh.h"
#include "Result.h"
#include "Solver.h"
#include "Symmetry.h"
#include "VOZCatAxis.h"

#include <benchmark/benchmark.h>

#include <algorithm>
#include <charconv>
#include <cmath>
#include <filesystem>
#include <fstream>
#include <memory>
#include <string>
#include <vector>

namespace
{
// A wavy square plate of so many triangles, 1 mm wide each.
struct Plate
{
    explicit Plate(int triangles) : side(static_cast<int>(std::lround(std::sqrt(triangles / 2.0)))), mesh(0, 0)
    {
        int const row = side + 1;
        mesh.sizeNode(row * row);
        mesh.sizeElem(2 * side * side);
        for (int j = 0, n = 0; j < row; ++j)
            for (int i = 0; i < row; ++i)
            {
                double * const p = mesh.GetNodeData()[++n];
                p[0] = i + 0.1 * std::sin(0.7 * j);
                p[1] = j + 0.1 * std::sin(0.9 * i);
                p[2] = 3.0 * std::sin(0.05 * i) * std::cos(0.04 * j);
            }
        for (int j = 0, e = 0; j < side; ++j)
            for (int i = 0; i < side; ++i)
            {
                int const a = j * row + i + 1;
                set(++e, a, a + 1, a + row + 1);
                set(++e, a, a + row + 1, a + row);
            }
        property.sizeProperty(1);
        property.sizePropertyIndex(mesh.numElem());
        for (int e = 1; e <= mesh.numElem(); ++e)
            property.propertyId(e, 1);
    }

    void set(int e, int a, int b, int c)
    {
        int const row[4] = {a, b, c, a};
        std::copy(row, row + 4, mesh.GetElemData()[e]);
    }

    Solver solver()
    {
        char folder[] = ".";
        return Solver(mesh, material, property, symmetry, friction, fullHolder, axis, folder);
    }

    static Plate & of(int triangles) // made once per size
    {
        static std::vector<std::pair<int, std::unique_ptr<Plate>>> made;
        for (auto & entry : made)
            if (entry.first == triangles)
                return *entry.second;
        made.emplace_back(triangles, std::make_unique<Plate>(triangles));
        return *made.back().second;
    }

    int side;
    VOZCatMesh mesh;
    Material material{1.0, 1.5, 0.22, 520.0, 160.0};
    ElemProperty property;
    Symmetry symmetry;
    Friction friction;
    FullBlankHolder fullHolder;
    VOZCatAxis axis;
};

std::string inTemporaryFolder(char const * name)
{
    return (std::filesystem::temp_directory_path() / name).string();
}

std::size_t formatNumbers(Plate const & plate, std::vector<char> & buffer)
{
    char * at = buffer.data();
    char * const end = at + buffer.size();
    auto const number = [&](int value) { at = std::to_chars(at, end, value).ptr; };
    for (int n = 1; n <= plate.mesh.numNode(); ++n)
    {
        number(n);
        for (int c = 0; c < 3; ++c)
            at = std::to_chars(at, end, plate.mesh.NodeValue(n, c) / 25.4, std::chars_format::fixed, 6).ptr;
    }
    for (int e = 1; e <= plate.mesh.numElem(); ++e)
    {
        for (int const fixed : {e, 1, 1, 0, 2})
            number(fixed);
        for (int k = 0; k < 3; ++k)
            number(plate.mesh.ElementValue(e, k));
    }
    return static_cast<std::size_t>(at - buffer.data());
}

std::vector<char> numberBuffer(Plate const & plate)
{
    return std::vector<char>(static_cast<std::size_t>(plate.mesh.numNode() + plate.mesh.numElem()) * 96);
}

int boundary(Plate const & plate)
{
    FreeEdgeSet const edges(plate.mesh);
    int error = 0;
    FreeEdgeLoops const loops(edges, plate.mesh, &error);
    LoopSizeFilter const large(loops, 0.2f);
    LoopSymmetryFilter const onPlane(plate.mesh, edges, loops, plate.symmetry, plate.axis);
    ProcessEdgeSequence const held(plate.mesh, edges, loops, plate.symmetry, onPlane, plate.fullHolder, large);
    return error + held.numBlankHolder();
}

void DeckNumbers(benchmark::State & state)
{
    Plate & plate = Plate::of(static_cast<int>(state.range(0)));
    std::vector<char> buffer = numberBuffer(plate);
    for (auto _ : state)
        benchmark::DoNotOptimize(formatNumbers(plate, buffer));
    state.SetItemsProcessed(state.iterations() * plate.mesh.numElem());
}

void DeckBoundary(benchmark::State & state)
{
    Plate & plate = Plate::of(static_cast<int>(state.range(0)));
    for (auto _ : state)
        benchmark::DoNotOptimize(boundary(plate));
    state.SetItemsProcessed(state.iterations() * plate.mesh.numElem());
}

void DeckWrite(benchmark::State & state)
{
    Plate & plate = Plate::of(static_cast<int>(state.range(0)));
    std::string const path = inTemporaryFolder("DeckBench.fpi");
    Solver solver = plate.solver();
    for (auto _ : state)
        solver.write(path.c_str(), false, false, 0);
    state.SetItemsProcessed(state.iterations() * plate.mesh.numElem());
    std::vector<char> buffer = numberBuffer(plate);
    double const numbers = benchclock::bestSeconds([&] { benchmark::DoNotOptimize(formatNumbers(plate, buffer)); });
    double const edges = benchclock::bestSeconds([&] { benchmark::DoNotOptimize(boundary(plate)); });
    double const whole = benchclock::bestSeconds([&] { solver.write(path.c_str(), false, false, 0); });
    state.counters["ratio"] = (whole - edges) / numbers;
    std::filesystem::remove(path);
}

void DeckRead(benchmark::State & state)
{
    Plate & plate = Plate::of(static_cast<int>(state.range(0)));
    std::string const path = inTemporaryFolder("DeckBench.fpi");
    plate.solver().write(path.c_str(), false, false, 0);
    for (auto _ : state)
        benchmark::DoNotOptimize(voz::deck::ReadDeck(path).nodes.data());
    state.SetItemsProcessed(state.iterations() * plate.mesh.numElem());
    std::filesystem::remove(path);
}

void OutputRead(benchmark::State & state)
{
    Plate & plate = Plate::of(static_cast<int>(state.range(0)));
    std::string const path = inTemporaryFolder("DeckBench.fpo");
    {
        std::ofstream stream(path);
        stream.precision(17);
        stream << "*\n*\n*\n";
        for (int n = 1; n <= plate.mesh.numNode(); ++n)
        {
            double const * const p = plate.mesh.GetNodeData()[n];
            stream << n << ' ' << p[0] / 25.4 << ' ' << p[1] / 25.4 << " 0 " << p[0] / 25.4 << ' ' << p[1] / 25.4
                   << " 0\n";
        }
        stream << "*\n";
        for (int e = 1; e <= plate.mesh.numElem(); ++e)
            stream << e << ' ' << 1.0 / 25.4 << ' ' << -0.01 * (e % 700) / 7.0 << ' ' << 0.01 * (e % 900) / 7.0 << ' '
                   << 3.0e8 / 6895.0 << ' ' << 0.01 * (e % 800) / 7.0 << ' ' << 0.001 * (e % 3141) << '\n';
        stream << "*\n*\npunch force 1\n";
    }
    Result result(plate.mesh);
    Solver solver = plate.solver();
    for (auto _ : state)
        solver.read(path.c_str(), result, false);
    state.SetItemsProcessed(state.iterations() * plate.mesh.numElem());
    std::filesystem::remove(path);
}
} // namespace

#define SIZES Arg(10000)->Arg(100000)->Arg(1000000)->Unit(benchmark::kMillisecond)
BENCHMARK(DeckNumbers)->SIZES;
BENCHMARK(DeckBoundary)->SIZES;
BENCHMARK(DeckWrite)->SIZES;
BENCHMARK(DeckRead)->SIZES;
BENCHMARK(OutputRead)->SIZES;
