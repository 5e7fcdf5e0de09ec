// ResultZonesBench.cpp: the connected zones of a result, with places, areas and normals.
//
// Each row is a domed plate with a hole, of about 10^4, 10^5 and 10^6 triangles, with stripes of failing and of
// marginal nodes. The probe gathers the same zones and areas on plain arrays. per_element is the cost in seconds. Goal:
// linear.

#include "BenchMeshes.h"
#include "EdgeSets.h"
#include "OutcomeAnalysis.h"

#include <benchmark/benchmark.h>

#include <vector>

namespace
{
using namespace voz::workbench;

Outcome striped(std::int64_t triangles)
{
    Outcome outcome;
    outcome.part = benchmeshes::dome(static_cast<int>(triangles), false);
    outcome.nodes.resize(static_cast<std::size_t>(outcome.part.numNode()));
    for (int n = 1; n <= outcome.part.numNode(); ++n)
        outcome.nodes[static_cast<std::size_t>(n) - 1].safety =
            static_cast<int>(outcome.part.NodeValue(n, 0) / 10.0) % 4;
    outcome.elements.resize(static_cast<std::size_t>(outcome.part.numElem()));
    for (ElementOutcome & element : outcome.elements)
        element.area = 1.0;
    return outcome;
}

void report(benchmark::State & state, Outcome const & outcome, std::size_t zones)
{
    state.counters["zones"] = static_cast<double>(zones);
    state.counters["per_element"] =
        benchmark::Counter(static_cast<double>(outcome.part.numElem()),
                           benchmark::Counter::kIsIterationInvariantRate | benchmark::Counter::kInvert);
}

void zonesOfResult(benchmark::State & state)
{
    Outcome const outcome = striped(state.range(0));
    std::size_t zones = 0;
    for (auto _ : state)
        zones = GatherZones(outcome).size();
    report(state, outcome, zones);
}

std::size_t zonesOfArrays(Outcome const & outcome)
{
    VOZCatMesh const & mesh = outcome.part;
    NodeElemMap const elementsAt(mesh);
    FreeEdgeSet const edges(mesh);
    std::vector<char> isEdge(outcome.nodes.size(), 0);
    for (int k = 1; k <= edges.numEdge(); ++k)
        isEdge[static_cast<std::size_t>(edges.startNode(k)) - 1] = 1;
    std::vector<char> isSeen(outcome.nodes.size(), 0);
    std::vector<int> reached;
    std::size_t zones = 0;
    double area = 0.0;
    for (int seed = 1; seed <= mesh.numNode(); ++seed)
    {
        int const code = outcome.nodes[static_cast<std::size_t>(seed) - 1].safety;
        if (isSeen[static_cast<std::size_t>(seed) - 1] != 0 || code > 1)
            continue;
        ++zones;
        reached.assign(1, seed);
        isSeen[static_cast<std::size_t>(seed) - 1] = 1;
        while (!reached.empty())
        {
            int const n = reached.back();
            reached.pop_back();
            area += isEdge[static_cast<std::size_t>(n) - 1];
            for (int i = 0; i < elementsAt.references(n); ++i)
            {
                int const e = elementsAt.elem(n, i);
                area += outcome.elements[static_cast<std::size_t>(e) - 1].area / 3.0;
                for (int k = 0; k < 3; ++k)
                {
                    std::size_t const m = static_cast<std::size_t>(mesh.ElementValue(e, k)) - 1;
                    if (isSeen[m] != 0 || outcome.nodes[m].safety != code)
                        continue;
                    isSeen[m] = 1;
                    reached.push_back(static_cast<int>(m) + 1);
                }
            }
        }
    }
    benchmark::DoNotOptimize(area);
    return zones;
}

void plainArrayProbe(benchmark::State & state)
{
    Outcome const outcome = striped(state.range(0));
    std::size_t zones = 0;
    for (auto _ : state)
        zones = zonesOfArrays(outcome);
    report(state, outcome, zones);
}

BENCHMARK(zonesOfResult)->ArgName("triangles")->Unit(benchmark::kMillisecond)->Arg(10000)->Arg(100000)->Arg(1000000);
BENCHMARK(plainArrayProbe)->ArgName("triangles")->Unit(benchmark::kMillisecond)->Arg(10000)->Arg(100000)->Arg(1000000);
} // namespace
