// FlatCheckBench.cpp: crossings and folds of a flat pattern, from the mesh to the list.
//
// Each row is a plate with a hole, of about 10^4, 10^5 and 10^6 triangles, its nodes moved a little within their cells.
// The probe looks for the same crossings on plain arrays: edges sorted into square cells of about their own size, each
// compared with those of the cells that its box touches. per_edge_log is seconds over n log2 n. Goal: 10^5 below 1 s.

#include "BenchMeshes.h"
#include "EdgeSets.h"
#include "FlatCheck.h"

#include <benchmark/benchmark.h>

#include <array>
#include <vector>

namespace
{
VOZCatMesh pattern(std::int64_t triangles)
{
    VOZCatMesh mesh = benchmeshes::dome(static_cast<int>(triangles), false);
    std::mt19937 random(2);
    double const shake = 40.0 / std::sqrt(static_cast<double>(triangles)); // about an eighth of a cell
    std::uniform_real_distribution<double> number(-shake, shake);
    for (int n = 1; n <= mesh.numNode(); ++n)
        for (int c = 0; c < 2; ++c)
            mesh.GetNodeData()[n][c] += number(random);
    return mesh;
}

void report(benchmark::State & state, VOZCatMesh const & mesh, std::size_t found)
{
    double const n = 1.5 * mesh.numElem();
    state.counters["found"] = static_cast<double>(found);
    state.counters["per_edge_log"] = benchmark::Counter(
        n * std::log2(n), benchmark::Counter::kIsIterationInvariantRate | benchmark::Counter::kInvert);
}

void flatCheck(benchmark::State & state)
{
    VOZCatMesh const mesh = pattern(state.range(0));
    std::size_t found = 0;
    for (auto _ : state)
        found = voz::workbench::CheckFlat(mesh).crossings.size();
    report(state, mesh, found);
}

struct Edge
{
    int a, b;
};

std::vector<Edge> edgesOf(VOZCatMesh const & mesh)
{
    FreeEdgeSet const free(mesh);
    InternalEdgeSet const inner(mesh);
    std::vector<Edge> edges;
    for (int k = 1; k <= free.numEdge(); ++k)
        edges.push_back({free.startNode(k), free.endNode(k)});
    for (int k = 1; k <= inner.numEdge(); ++k)
        edges.push_back({inner.startNode(k), inner.endNode(k)});
    return edges;
}

bool cross(VOZCatMesh const & mesh, Edge const & p, Edge const & q)
{
    if (p.a == q.a || p.a == q.b || p.b == q.a || p.b == q.b)
        return false;
    auto const side = [&](int a, int b, int c)
    {
        auto const * const x = mesh.GetNodeData();
        return (x[b][0] - x[a][0]) * (x[c][1] - x[a][1]) - (x[b][1] - x[a][1]) * (x[c][0] - x[a][0]);
    };
    return side(p.a, p.b, q.a) * side(p.a, p.b, q.b) < 0.0 && side(q.a, q.b, p.a) * side(q.a, q.b, p.b) < 0.0;
}

std::size_t crossingsOfCells(VOZCatMesh const & mesh)
{
    std::vector<Edge> const edges = edgesOf(mesh);
    int const side = std::max(1, static_cast<int>(std::sqrt(static_cast<double>(edges.size()) / 3.0)));
    double const width = 320.0 / side;
    auto const cell = [&](double x) { return std::clamp(static_cast<int>((x + 10.0) / width), 0, side - 1); };
    auto const forEachCell = [&](Edge const & edge, auto const & visit)
    {
        double const * const p = mesh.GetNodeData()[edge.a];
        double const * const q = mesh.GetNodeData()[edge.b];
        for (int i = cell(std::min(p[0], q[0])); i <= cell(std::max(p[0], q[0])); ++i)
            for (int j = cell(std::min(p[1], q[1])); j <= cell(std::max(p[1], q[1])); ++j)
                if (visit(static_cast<std::size_t>(i * side + j)))
                    return;
    };
    std::vector<std::vector<int>> cells(static_cast<std::size_t>(side) * static_cast<std::size_t>(side));
    for (std::size_t e = 0; e < edges.size(); ++e)
        forEachCell(edges[e],
                    [&](std::size_t c)
                    {
                        cells[c].push_back(static_cast<int>(e));
                        return false;
                    });
    std::size_t found = 0;
    for (Edge const & edge : edges)
        forEachCell(edge,
                    [&](std::size_t c)
                    {
                        for (int const other : cells[c])
                            if (cross(mesh, edge, edges[static_cast<std::size_t>(other)]))
                            {
                                ++found;
                                return true;
                            }
                        return false;
                    });
    return found;
}

void plainArrayProbe(benchmark::State & state)
{
    VOZCatMesh const mesh = pattern(state.range(0));
    std::size_t found = 0;
    for (auto _ : state)
        found = crossingsOfCells(mesh);
    report(state, mesh, found);
}

BENCHMARK(flatCheck)->ArgName("triangles")->Unit(benchmark::kMillisecond)->Arg(10000)->Arg(100000)->Arg(1000000);
BENCHMARK(plainArrayProbe)->ArgName("triangles")->Unit(benchmark::kMillisecond)->Arg(10000)->Arg(100000)->Arg(1000000);
} // namespace
