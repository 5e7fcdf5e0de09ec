// OneStepBench.cpp: the one-step solve, start to results.
//
// Cup A2 of the verification (restraint 20 N/mm) with 10^4, 5 10^4 and 10^5 triangles as a quarter, whose two symmetry
// planes cost the start three more runs, and with 10^4 and 10^5 as a whole, free of constraints; with quadrilaterals;
// and the square cup of NUMISHEET'93, 40 mm deep. Counters, per solve: Newton iterations; seconds of the start and of
// Newton, and in it of assembly, numeric factorisation and solves; start_share, the start over Newton; overhead, Newton
// over its iterations times (one assembly + one factorisation + its solves); microseconds per element; peak memory of
// the process so far, which the largest mesh of the run sets.

#include "onestep/OneStep.h"
#include "surfaces/Surfaces.h"

#include <benchmark/benchmark.h>

#include <array>
#include <cmath>
#include <cstdio>
#include <cstring>
#include <map>
#include <string>
#include <utility>

#if defined(__unix__)
#include <sys/resource.h>
#endif

namespace
{

using namespace voz::examples;
using voz::onestep::Problem;

double peakMegabytes()
{
#if defined(__unix__)
    rusage usage{};
    getrusage(RUSAGE_SELF, &usage);
    return static_cast<double>(usage.ru_maxrss) / 1024.0;
#else
    return 0.0;
#endif
}

// Restraint along the free sides; of a quarter: off its two symmetry planes.
Problem problemOf(SurfaceMesh const & mesh, double restraint, Extent extent)
{
    Problem problem;
    for (Point3 const & p : mesh.nodes)
    {
        int const node = static_cast<int>(problem.nodes.size());
        problem.nodes.push_back({0.001 * p[0], 0.001 * p[1], 0.001 * p[2]});
        if (extent == Extent::Quarter && p[0] == 0.0)
            problem.constraints.push_back({node, 0.0, 0.0});
        if (extent == Extent::Quarter && p[1] == 0.0)
            problem.constraints.push_back({node, 1.5707963267948966, 0.0});
    }
    std::map<std::pair<int, int>, voz::onestep::HolderEdge> sides;
    for (auto const & nodes : mesh.elements)
    {
        int const element = static_cast<int>(problem.elements.size());
        problem.elements.push_back({nodes, 0});
        int const corners = nodes[3] < 0 ? 3 : 4;
        for (int i = 0; i < corners; ++i)
        {
            int const j = (i + 1) % corners;
            int const a = nodes[static_cast<std::size_t>(i)];
            int const b = nodes[static_cast<std::size_t>(j)];
            if (sides.erase({b, a}) == 0)
                sides[{a, b}] = {element, i, j, 1000.0 * restraint};
        }
    }
    for (auto const & [nodes, edge] : sides)
    {
        Point3 const & a = mesh.nodes[static_cast<std::size_t>(nodes.first)];
        Point3 const & b = mesh.nodes[static_cast<std::size_t>(nodes.second)];
        if (!(a[0] == 0.0 && b[0] == 0.0) && !(a[1] == 0.0 && b[1] == 0.0))
            problem.holders.push_back(edge);
    }
    voz::onestep::MaterialLaw steel;
    steel.thickness = 0.00078;
    steel.kValue = 565.32e6;
    steel.nValue = 0.2589;
    steel.rValue = 1.79;
    steel.yield = steel.kValue * std::pow(0.007117, steel.nValue);
    problem.materials.push_back(steel);
    return problem;
}

struct Times
{
    double start = 0.0, newton = 0.0, assembly = 0.0, factorisation = 0.0, solves = 0.0;
};

void run(benchmark::State & state, SurfaceMesh const & mesh, double restraint, Extent extent)
{
    Problem const problem = problemOf(mesh, restraint, extent);
    Times times;
    int iterations = 0;
    voz::onestep::Progress progress;
    progress.log = [&times](std::string const & line)
    {
        Times t;
        if (std::sscanf(line.c_str(), "time: start %lf s, Newton %lf s (assembly %lf, factorisation %lf, solves %lf)",
                        &t.start, &t.newton, &t.assembly, &t.factorisation, &t.solves) == 5)
            times = t;
    };
    for (auto _ : state)
    {
        voz::onestep::Solution const solution = voz::onestep::Solve(problem, {}, progress);
        if (solution.status != voz::onestep::Status::Converged)
        {
            state.SkipWithError(solution.message.c_str());
            return;
        }
        iterations = solution.newtonSteps;
    }
    state.counters["elements"] = static_cast<double>(problem.elements.size());
    state.counters["iterations"] = iterations;
    state.counters["start_s"] = times.start;
    state.counters["newton_s"] = times.newton;
    state.counters["assembly_s"] = times.assembly;
    state.counters["factor_s"] = times.factorisation;
    state.counters["solves_s"] = times.solves;
    state.counters["start_share"] = times.start / times.newton;
    state.counters["overhead"] = times.newton / (times.assembly + times.factorisation + times.solves);
    state.counters["peak_MB"] = peakMegabytes();
    state.counters["us_per_element"] =
        benchmark::Counter(1e6 * (times.start + times.newton) / static_cast<double>(problem.elements.size()));
}

void CupTriangles(benchmark::State & state)
{
    run(state, cup({}, static_cast<int>(state.range(0)), Extent::Quarter, Cells::Triangles), 20.0, Extent::Quarter);
}

void WholeCupTriangles(benchmark::State & state)
{
    run(state, cup({}, static_cast<int>(state.range(0)), Extent::Whole, Cells::Triangles), 20.0, Extent::Whole);
}

void CupQuads(benchmark::State & state)
{
    run(state, cup({}, static_cast<int>(state.range(0)), Extent::Quarter, Cells::Quads), 20.0, Extent::Quarter);
}

void SquareCupTriangles(benchmark::State & state)
{
    int const k = static_cast<int>(state.range(0));
    SquareCup shape = squareCup40();
    for (int * count :
         {&shape.rowsBottom, &shape.rowsArc, &shape.rowsWall, &shape.rowsFlange, &shape.cellsSide, &shape.cellsCorner})
        *count *= k;
    run(state, squareCup(shape, Extent::Quarter, Cells::Triangles), 9.4, Extent::Quarter);
}

// 168 k^2 - 6 k triangles (the whole: four times that), 84 k^2 quadrilaterals; 2240 k^2 - 28 k triangles of the square
// cup.
BENCHMARK(CupTriangles)->Arg(8)->Arg(17)->Arg(24)->Unit(benchmark::kMillisecond)->Iterations(1);
BENCHMARK(WholeCupTriangles)->Arg(4)->Arg(12)->Unit(benchmark::kMillisecond)->Iterations(1);
BENCHMARK(CupQuads)->Arg(11)->Unit(benchmark::kMillisecond)->Iterations(1);
BENCHMARK(SquareCupTriangles)->Arg(2)->Unit(benchmark::kMillisecond)->Iterations(1);

} // namespace
