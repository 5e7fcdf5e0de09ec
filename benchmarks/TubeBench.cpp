// TubeBench.cpp: opening a tube, and wrapping its results back.
//
// Each row is a straight tube of about 10^4, 10^5 and 10^6 triangles in square cells; opening includes the copy of the
// mesh that it changes. The probe does what cannot be left out on plain arrays: the copy, the boundary pipeline, the
// elements at each node, and the nodes into and out of the frame. per_element is the cost in seconds. Goal: linear in
// the mesh.

#include "BenchMeshes.h"
#include "EdgeSets.h"
#include "ElemProperty.h"
#include "FreeEdgeLoops.h"
#include "Result.h"
#include "Tube.h"
#include "VOZCatAxis.h"

#include <benchmark/benchmark.h>

namespace
{
VOZCatMesh tubeOf(int triangles)
{
    int const side = static_cast<int>(std::lround(std::sqrt(triangles / 2.0)));
    VOZCatMesh mesh(side * (side + 1), 2 * side * side);
    auto const node = [side](int i, int j) { return i * side + j % side + 1; };
    int e = 0;
    for (int i = 0; i <= side; ++i)
        for (int j = 0; j < side; ++j)
        {
            double const angle = 6.283185307179586 * j / side;
            double * const point = mesh.GetNodeData()[node(i, j)];
            point[0] = 314.0 * i / side;
            point[1] = 50.0 * std::sin(angle);
            point[2] = 50.0 * std::cos(angle);
            if (i == side)
                continue;
            int const cells[2][3] = {{node(i, j), node(i + 1, j), node(i + 1, j + 1)},
                                     {node(i, j), node(i + 1, j + 1), node(i, j + 1)}};
            for (int const(&cell)[3] : cells)
            {
                int * const row = mesh.GetElemData()[++e];
                std::copy(std::begin(cell), std::end(cell), row);
                row[3] = row[0];
            }
        }
    return mesh;
}

void report(benchmark::State & state, VOZCatMesh const & mesh)
{
    state.counters["per_element"] =
        benchmark::Counter(static_cast<double>(mesh.numElem()),
                           benchmark::Counter::kIsIterationInvariantRate | benchmark::Counter::kInvert);
}

void openTube(benchmark::State & state)
{
    VOZCatMesh const closed = tubeOf(static_cast<int>(state.range(0)));
    VOZCatAxis const axis;
    for (auto _ : state)
    {
        VOZCatMesh mesh(closed);
        ElemProperty property;
        property.sizeDispBC(2);
        Tube tube(mesh, property, axis, 0.0);
        if (!tube.Eval(1.0))
            state.SkipWithError("the tube was not opened");
    }
    report(state, closed);
}

void plainArrayProbe(benchmark::State & state)
{
    VOZCatMesh const closed = tubeOf(static_cast<int>(state.range(0)));
    VOZCatAxis const axis;
    for (auto _ : state)
    {
        VOZCatMesh mesh(closed);
        mesh.Transform(&axis, 2);
        int error = 0;
        FreeEdgeSet const edges(mesh);
        FreeEdgeLoops const loops(edges, mesh, &error);
        benchmark::DoNotOptimize(loops.numLoops());
        benchmark::DoNotOptimize(NodeElemMap(mesh).references(1));
        mesh.reverse();
        mesh.Transform(&axis, 1);
    }
    report(state, closed);
}

void wrapBack(benchmark::State & state)
{
    VOZCatMesh mesh = tubeOf(static_cast<int>(state.range(0)));
    Result result(mesh);
    VOZCatAxis const axis;
    for (auto _ : state)
        Tube::Update(result, mesh, mesh.numNode(), axis, 0.05);
    report(state, mesh);
}

BENCHMARK(openTube)->ArgName("triangles")->Unit(benchmark::kMillisecond)->Arg(10000)->Arg(100000)->Arg(1000000);
BENCHMARK(plainArrayProbe)->ArgName("triangles")->Unit(benchmark::kMillisecond)->Arg(10000)->Arg(100000)->Arg(1000000);
BENCHMARK(wrapBack)->ArgName("triangles")->Unit(benchmark::kMillisecond)->Arg(10000)->Arg(100000)->Arg(1000000);
} // namespace
