// GeometryBench.cpp: the walks over a mesh: normals, node-to-element map, free edges, loops, tip.
//
// Each row is a walk on a domed plate with a hole, of about 10^4, 10^5 and 10^6 triangles; "scattered" has its nodes
// and elements numbered at random, as no mesher does and every merge can. per_element is the cost in seconds; the last
// lines of a series say how it grows. Goals: free edges at most 4 times the map, loops with their tip at most 3 times.

#include "BenchMeshes.h"
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

#include <map>
#include <utility>

namespace
{
VOZCatMesh const & meshOf(benchmark::State const & state)
{
    static std::map<std::pair<std::int64_t, std::int64_t>, VOZCatMesh> meshes;
    auto const [at, isNew] = meshes.try_emplace({state.range(0), state.range(1)});
    if (isNew)
        at->second = benchmeshes::dome(static_cast<int>(state.range(0)), state.range(1) != 0);
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
