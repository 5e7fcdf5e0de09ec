// SpringbackBench.cpp: unloading of a formed sheet.
//
// Half of a hat section, 200 mm long, with a plane of symmetry along its middle, cut into even triangles; the blank is
// the profile unrolled, so that no one-step solve is needed. 10^4 and 10^5 triangles. Counters: load steps and steps of
// Newton's method; seconds of the analysis, the assemblies, the numeric factorisations and the solves; units, the time
// of the whole run over that of one numeric factorisation in it; peak memory of the process so far.

#include "SpringbackCases.h"

#include <benchmark/benchmark.h>

#include <chrono>
#include <cstdio>
#include <string>

#if defined(__unix__)
#include <sys/resource.h>
#endif

namespace
{

using namespace springtest;

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

// size: edge length, mm.
Problem halfHat(double size)
{
    constexpr double kLength = 200.0;
    Hat const hat;
    auto const rows = [size](double length) { return std::max(2, static_cast<int>(std::lround(length / size))); };
    Profile profile({0.0, 0.0}, 0.0);
    profile.line(hat.bottom, rows(hat.bottom))
        .arc(hat.punchArc, hat.wallAngle, rows(hat.punchArc * hat.wallAngle))
        .line(hat.wall, rows(hat.wall))
        .arc(hat.dieArc, -hat.wallAngle, rows(hat.dieArc * hat.wallAngle))
        .line(hat.flange, rows(hat.flange));
    Problem problem = strip(profile, kLength, rows(kLength), Cells::Triangles);
    for (int const node : nodesAt(problem, [](auto const & x) { return std::abs(x[0]) < 1.0e-9; }))
        problem.symmetry.push_back({node, {1.0, 0.0}});
    return problem;
}

struct Times
{
    double total = 0.0, analysis = 0.0, assembly = 0.0, factorisation = 0.0, solves = 0.0;
    int factorisations = 0;
};

void HatTriangles(benchmark::State & state)
{
    Problem const problem = halfHat(0.01 * static_cast<double>(state.range(0)));
    Times times;
    voz::onestep::Progress progress;
    progress.log = [&times](std::string const & line)
    {
        Times t;
        if (std::sscanf(line.c_str(),
                        "time: unloading %lf s (analysis %lf, assembly %lf, factorisation %lf in %d, solves %lf)",
                        &t.total, &t.analysis, &t.assembly, &t.factorisation, &t.factorisations, &t.solves) == 6)
            times = t;
    };
    Solution solution;
    double seconds = 0.0;
    for (auto _ : state)
    {
        auto const begin = std::chrono::steady_clock::now();
        solution = voz::springback::Solve(problem, {}, progress);
        seconds = std::chrono::duration<double>(std::chrono::steady_clock::now() - begin).count();
        if (solution.status != Status::Converged)
        {
            state.SkipWithError(solution.message.c_str());
            return;
        }
    }
    state.counters["elements"] = static_cast<double>(problem.elements.size());
    state.counters["load_steps"] = solution.loadSteps;
    state.counters["steps"] = solution.newtonSteps;
    state.counters["analysis_s"] = times.analysis;
    state.counters["assembly_s"] = times.assembly;
    state.counters["factor_s"] = times.factorisation;
    state.counters["solves_s"] = times.solves;
    state.counters["units"] = seconds / (times.factorisation / times.factorisations);
    state.counters["peak_MB"] = peakMegabytes();
    state.counters["move_mm"] = 1000.0 * solution.greatestMove;
}

// Edge length in hundredths of a millimetre.
BENCHMARK(HatTriangles)->Arg(178)->Arg(56)->Unit(benchmark::kMillisecond)->Iterations(1);

} // namespace
