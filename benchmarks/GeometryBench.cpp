// GeometryBench.cpp: the walks over a mesh: normals, node-to-element map, free edges, loops, tip.
//
// Each row is a walk on a domed plate with a hole, of about 10^4, 10^5 and 10^6 triangles; "scattered" has its nodes
// and elements numbered at random, as no mesher does and every merge can. per_element is the cost in seconds; the last
// lines of a series say how it grows. Goals: free edges at most 4 times the map, loops with their tip at most 3 times.

#include "BoundBox.h"
#include "EdgeSets.h"
#include "ElemNormal.h"
#include "FreeEdgeLoops.h"
#include "Mesh.h"
#include "MeshNormal.h"
#include "Symmetry.h"
#include "Tip.h"
#include "VOZCatAxis.h"

#include <benchmark/benchmark.h>

#include <algorithm>
#include <cmath>
#include <map>
#include <numeric>
#include <random>
#include <utility>
#include <vector>

namespace
{
std::vector<int> oneTo(int n, bool scattered)
{
    std::vector<int> result(static_cast<std::size_t>(n) + 1);
    std::iota(result.begin(), result.end(), 0);
    if (scattered)
        std::shuffle(result.begin() + 1, result.end(), std::mt19937(1));
    return result;
}

bool isHole(int column, int row, int cells)
{
    int const third = cells / 3;
    return column >= third && column < 2 * third && row >= third && row < 2 * third;
}

// A plate of about that many triangles, domed, with a square hole of a ninth of its area.
VOZCatMesh dome(int triangles, bool scattered)
{
    int const cells = static_cast<int>(std::lround(std::sqrt(triangles / 2.0 * 9.0 / 8.0)));
    int const side = cells + 1;
    int const hole = (cells / 3) * (cells / 3);
    VOZCatMesh mesh(side * side, 2 * (cells * cells - hole));
    std::vector<int> const node = oneTo(mesh.numNode(), scattered);
    std::vector<int> const elem = oneTo(mesh.numElem(), scattered);
    auto const at = [&](int column, int row) { return node[static_cast<std::size_t>(row * side + column) + 1]; };
    std::size_t e = 0;
    auto const add = [&](int a, int b, int c)
    {
        int * const row = mesh.GetElemData()[elem[++e]];
        row[0] = row[3] = a;
        row[1] = b;
        row[2] = c;
    };
    for (int row = 0; row < side; ++row)
        for (int column = 0; column < side; ++column)
        {
            double const x = 300.0 * column / cells;
            double const y = 300.0 * row / cells;
            double * const point = mesh.GetNodeData()[at(column, row)];
            point[0] = x;
            point[1] = y;
            point[2] = 40.0 * std::sin(x / 95.0) * std::sin(y / 95.0) + 0.1 * x;
            if (column == cells || row == cells || isHole(column, row, cells))
                continue;
            add(at(column, row), at(column + 1, row), at(column + 1, row + 1));
            add(at(column, row), at(column + 1, row + 1), at(column, row + 1));
        }
    return mesh;
}

VOZCatMesh const & meshOf(benchmark::State const & state)
{
    static std::map<std::pair<std::int64_t, std::int64_t>, VOZCatMesh> meshes;
    auto const [at, isNew] = meshes.try_emplace({state.range(0), state.range(1)});
    if (isNew)
        at->second = dome(static_cast<int>(state.range(0)), state.range(1) != 0);
    return at->second;
}

void report(benchmark::State & state, VOZCatMesh const & mesh)
{
    state.SetComplexityN(mesh.numElem());
    state.counters["per_element"] =
        benchmark::Counter(static_cast<double>(mesh.numElem()),
                           benchmark::Counter::kIsIterationInvariantRate | benchmark::Counter::kInvert);
}

void elementNormals(benchmark::State & state)
{
    VOZCatMesh const & mesh = meshOf(state);
    for (auto _ : state)
        benchmark::DoNotOptimize(ElemNormal(mesh).numNormal());
    report(state, mesh);
}

void meshNormal(benchmark::State & state)
{
    VOZCatMesh const & mesh = meshOf(state);
    ElemNormal const normals(mesh);
    for (auto _ : state)
        benchmark::DoNotOptimize(MeshNormal(normals).normal(2));
    report(state, mesh);
}

void nodeElemMap(benchmark::State & state)
{
    VOZCatMesh const & mesh = meshOf(state);
    for (auto _ : state)
        benchmark::DoNotOptimize(NodeElemMap(mesh).references(1));
    report(state, mesh);
}

void freeEdges(benchmark::State & state)
{
    VOZCatMesh const & mesh = meshOf(state);
    for (auto _ : state)
        benchmark::DoNotOptimize(FreeEdgeSet(mesh).numEdge());
    report(state, mesh);
}

void internalEdges(benchmark::State & state)
{
    VOZCatMesh const & mesh = meshOf(state);
    for (auto _ : state)
        benchmark::DoNotOptimize(InternalEdgeSet(mesh).numEdge());
    report(state, mesh);
}

void freeEdgeLoops(benchmark::State & state)
{
    VOZCatMesh const & mesh = meshOf(state);
    FreeEdgeSet const edges(mesh);
    for (auto _ : state)
    {
        int error = 0;
        benchmark::DoNotOptimize(FreeEdgeLoops(edges, mesh, &error).outerLoopNum());
        if (error != 0)
            state.SkipWithError("the boundary was refused");
    }
    report(state, mesh);
}

void averageTip(benchmark::State & state)
{
    VOZCatMesh const & mesh = meshOf(state);
    for (auto _ : state)
    {
        VOZCatAxis axis;
        Symmetry symmetry;
        int numUnderCutElem = 0;
        double maxUnderCutAngle = 0.0;
        AverageTip(mesh).tip(axis, symmetry, numUnderCutElem, maxUnderCutAngle);
        benchmark::DoNotOptimize(axis);
    }
    report(state, mesh);
}

void repairOrientation(benchmark::State & state)
{
    VOZCatMesh mesh(meshOf(state)); // consistent: the walk flips nothing, and can be repeated
    ElemNormal normals;
    for (auto _ : state)
        benchmark::DoNotOptimize(normals.CheckFlipAllElemNormals(&mesh));
    report(state, mesh);
}

void sizes(benchmark::internal::Benchmark * series)
{
    series->ArgNames({"triangles", "scattered"})->Unit(benchmark::kMillisecond);
    for (int const scattered : {0, 1})
        for (int const triangles : {10000, 100000, 1000000})
            series->Args({triangles, scattered});
}

BENCHMARK(elementNormals)->Apply(sizes);
BENCHMARK(meshNormal)->Apply(sizes);
BENCHMARK(nodeElemMap)->Apply(sizes);
BENCHMARK(freeEdges)->Apply(sizes);
BENCHMARK(internalEdges)->Apply(sizes);
BENCHMARK(freeEdgeLoops)->Apply(sizes);
BENCHMARK(averageTip)->Apply(sizes);
BENCHMARK(repairOrientation)->Apply(sizes);
} // namespace
