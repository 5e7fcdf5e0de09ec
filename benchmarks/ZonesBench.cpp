// ZonesBench.cpp: zones of marked nodes, from the mesh to the list.
//
// Each row is a domed plate with a hole, of about 10^4, 10^5 and 10^6 triangles, with stripes of marked nodes, a third
// of them all. The probe gathers the same zones on plain arrays: the elements at each node, a mark per node, and the
// boundary pipeline that the types need. per_element is the cost in seconds. Goal: linear in the mesh.

#include "BenchMeshes.h"
#include "CATRawColl.h"
#include "EdgeSets.h"
#include "FreeEdgeLoops.h"
#include "Zones.h"

#include <benchmark/benchmark.h>

#include <vector>

namespace
{
bool isMarked(VOZCatMesh const & mesh, int n)
{
    return static_cast<int>(mesh.NodeValue(n, 0) / 10.0) % 3 == 0;
}

void report(benchmark::State & state, VOZCatMesh const & mesh, int zones)
{
    state.counters["zones"] = zones;
    state.counters["per_element"] =
        benchmark::Counter(static_cast<double>(mesh.numElem()),
                           benchmark::Counter::kIsIterationInvariantRate | benchmark::Counter::kInvert);
}

void zonesOfNodes(benchmark::State & state)
{
    VOZCatMesh mesh = benchmeshes::dome(static_cast<int>(state.range(0)), false);
    CATRawColldouble values;
    for (int n = 1; n <= mesh.numNode(); ++n)
        for (double const value : {0.0, 0.0, isMarked(mesh, n) ? 4.5 : 2.0})
            values.Append(value);
    int count = 0;
    for (auto _ : state)
    {
        Zones zones(mesh);
        zones.Eval(&values);
        count = zones.NbZones();
    }
    report(state, mesh, count);
}

int zonesOfArrays(VOZCatMesh const & mesh)
{
    int error = 0;
    FreeEdgeSet const edges(mesh);
    FreeEdgeLoops const loops(edges, mesh, &error);
    benchmark::DoNotOptimize(loops.outerLoopNum());
    NodeElemMap const elementsAt(mesh);
    std::vector<char> isSeen(static_cast<std::size_t>(mesh.numNode()) + 1, 0);
    std::vector<int> reached;
    int zones = 0;
    for (int seed = 1; seed <= mesh.numNode(); ++seed)
    {
        if (isSeen[static_cast<std::size_t>(seed)] != 0 || !isMarked(mesh, seed))
            continue;
        ++zones;
        reached.assign(1, seed);
        isSeen[static_cast<std::size_t>(seed)] = 1;
        while (!reached.empty())
        {
            int const n = reached.back();
            reached.pop_back();
            for (int i = 0; i < elementsAt.references(n); ++i)
                for (int k = 0; k < 3; ++k)
                {
                    int const m = mesh.ElementValue(elementsAt.elem(n, i), k);
                    if (isSeen[static_cast<std::size_t>(m)] != 0 || !isMarked(mesh, m))
                        continue;
                    isSeen[static_cast<std::size_t>(m)] = 1;
                    reached.push_back(m);
                }
        }
    }
    return zones;
}

void plainArrayProbe(benchmark::State & state)
{
    VOZCatMesh const mesh = benchmeshes::dome(static_cast<int>(state.range(0)), false);
    int count = 0;
    for (auto _ : state)
        count = zonesOfArrays(mesh);
    report(state, mesh, count);
}

BENCHMARK(zonesOfNodes)->ArgName("triangles")->Unit(benchmark::kMillisecond)->Arg(10000)->Arg(100000)->Arg(1000000);
BENCHMARK(plainArrayProbe)->ArgName("triangles")->Unit(benchmark::kMillisecond)->Arg(10000)->Arg(100000)->Arg(1000000);
} // namespace
