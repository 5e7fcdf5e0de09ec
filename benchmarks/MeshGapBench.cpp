// MeshGapBench.cpp: the gap between punch and die, by the number of elements.
//
// A wavy blank-sized surface of N elements against one of 3 N; N = 100 000 is the size of a large job.

#include "MeshGapFixture.h"

#include <benchmark/benchmark.h>

#include <cmath>

namespace
{

using meshgap::Surface;

Surface wavy(int elements, double level, bool triangles)
{
    int const side = static_cast<int>(std::lround(std::sqrt(triangles ? elements / 2 : elements)));
    auto const height = [level](double x, double y) { return level + 0.04 * std::sin(9.0 * x) * std::cos(7.0 * y); };
    return meshgap::patch(0.0, 1.0, 0.0, 1.0, side, side, height, triangles);
}

void measure(benchmark::State & state, Surface const & first, Surface const & second)
{
    auto const punch = meshgap::kernelMesh(first);
    auto const die = meshgap::kernelMesh(second);
    tagVOZFILEINFO info;
    info.m_nVersion = tagVOZFILEINFO::kVersion;
    meshgap::Point const up = {0, 0, 1};
    double least = 0.0;
    double greatest = 0.0;
    for (auto _ : state)
    {
        if (VOZAPIEvalDistanceBetweenMeshes_Average(*punch, *die, up.data(), 5.0, info, least, greatest) != 0)
            state.SkipWithError("no gap");
        benchmark::DoNotOptimize(least);
    }
    state.SetItemsProcessed(state.iterations() * (punch->GetNumElements() + die->GetNumElements()));
}

void GapOfQuadrilaterals(benchmark::State & state)
{
    int const elements = static_cast<int>(state.range(0));
    measure(state, wavy(elements, 0.0, false), wavy(3 * elements, 0.1, false));
}
BENCHMARK(GapOfQuadrilaterals)->RangeMultiplier(10)->Range(1000, 100000)->Unit(benchmark::kMillisecond);

void GapOfTriangles(benchmark::State & state)
{
    int const elements = static_cast<int>(state.range(0));
    measure(state, wavy(elements, 0.0, true), wavy(3 * elements, 0.1, true));
}
BENCHMARK(GapOfTriangles)->RangeMultiplier(10)->Range(1000, 100000)->Unit(benchmark::kMillisecond);

// As tools come out of a surface mesher: long triangles around one node, and a fine region in a coarse mesh.
void GapOfUnevenTriangles(benchmark::State & state)
{
    int const elements = static_cast<int>(state.range(0));
    Surface fan;
    fan.nodes.push_back({0.5, 0.5, 0.1});
    for (int i = 0; i < elements; ++i)
    {
        double const angle = 6.28 * i / elements;
        fan.nodes.push_back({0.5 + std::cos(angle), 0.5 + std::sin(angle), 0.12});
    }
    for (int i = 1; i < elements; ++i)
        fan.elements.push_back({0, i, i + 1, -1});
    Surface graded = meshgap::plane(0.0, 1.0, 0.0, 1.0, 0.0, 10);
    graded.append(wavy(elements, 0.0, false)
                      .moved(
                          [](meshgap::Point const & p) {
                              return meshgap::Point{0.3 + 0.001 * p[0], 0.3 + 0.001 * p[1], 0.001 * p[2]};
                          }));
    measure(state, graded, fan);
}
BENCHMARK(GapOfUnevenTriangles)->RangeMultiplier(10)->Range(1000, 100000)->Unit(benchmark::kMillisecond);

} // namespace
