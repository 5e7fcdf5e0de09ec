// OneStepBench.cpp: the one-step solve, start to results.
//
// Cup A2 of the verification (restraint 20 N/mm) as a quarter, whose two symmetry planes cost the start three more
// runs, and as a whole, free of constraints; in triangles and in quadrilaterals; and the square cup of NUMISHEET'93, 40
// mm deep. 10^4, 10^5 and 3 10^5 elements. Counters, per solve: Newton iterations; seconds of the start and of Newton,
// and in it of assembly, numeric factorisation and solves; start_share, the start over Newton; overhead, Newton over
// its assemblies, factorisations and solves; units, the time of the whole solve over that of one numeric factorisation
// of the tangent in the same run, and start_units likewise; peak memory of the process so far, which the largest mesh
// of the run sets.

#include "OneStepProblems.h"

#include <benchmark/benchmark.h>

#include <chrono>
#include <cstdio>
#include <string>

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

// Restraint along the free sides (the solver leaves out those in a plane of symmetry).
Problem heldPart(SurfaceMesh const & mesh, double restraint, Extent extent)
{
    Problem problem = onesteptest::problemOf(mesh, onesteptest::mildSteel());
    if (extent == Extent::Quarter)
        onesteptest::quarterSymmetry(problem, mesh);
    onesteptest::restrain(problem, mesh, restraint, [](Point3 const &) { return true; });
    return problem;
}

struct Times
{
    double start = 0.0, newton = 0.0, assembly = 0.0, factorisation = 0.0, solves = 0.0;
};

void run(benchmark::State & state, SurfaceMesh const & mesh, double restraint, Extent extent)
{
    Problem const problem = heldPart(mesh, restraint, extent);
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
    double seconds = 0.0;
    for (auto _ : state)
    {
        auto const begin = std::chrono::steady_clock::now();
        voz::onestep::Solution const solution = voz::onestep::Solve(problem, {}, progress);
        if (solution.status != voz::onestep::Status::Converged)
        {
            state.SkipWithError(solution.message.c_str());
            return;
        }
        seconds = std::chrono::duration<double>(std::chrono::steady_clock::now() - begin).count();
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
    state.counters["units"] = seconds / (times.factorisation / iterations);
    state.counters["start_units"] = times.start / (times.factorisation / iterations);
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

void WholeCupQuads(benchmark::State & state)
{
    run(state, cup({}, static_cast<int>(state.range(0)), Extent::Whole, Cells::Quads), 20.0, Extent::Whole);
}

// 168 k^2 - 6 k triangles (the whole: four times that), half as many quadrilaterals; 2240 k^2 - 28 k triangles of the
// square cup. The largest ones are long: --benchmark_filter chooses.
BENCHMARK(CupTriangles)->Arg(8)->Arg(17)->Arg(24)->Arg(42)->Unit(benchmark::kMillisecond)->Iterations(1);
BENCHMARK(WholeCupTriangles)->Arg(4)->Arg(12)->Arg(21)->Unit(benchmark::kMillisecond)->Iterations(1);
BENCHMARK(CupQuads)->Arg(11)->Unit(benchmark::kMillisecond)->Iterations(1);
BENCHMARK(WholeCupQuads)->Arg(6)->Arg(17)->Arg(30)->Unit(benchmark::kMillisecond)->Iterations(1);
BENCHMARK(SquareCupTriangles)->Arg(2)->Arg(7)->Unit(benchmark::kMillisecond)->Iterations(1);

} // namespace
