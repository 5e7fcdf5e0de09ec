// HoleFillingBench.cpp: the patch of one wire of 50 to 1600 points: a circle, and a strip ten times as long as wide.
//
// Each round looks at every edge and moves every point, so the cost grows as the square of the wire, or faster where
// flips are many. seconds_per_point2 is the cost over the square of the wire's points.

#include "HoleFilling.h"

#include <benchmark/benchmark.h>

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <vector>

namespace
{
using Row = float[3];

void circle(int n, Row * o_rows)
{
    double const radius = n / 6.283185307179586; // segments of length 1
    for (int i = 0; i < n; ++i)
    {
        o_rows[i][0] = static_cast<float>(radius * std::cos(i / radius));
        o_rows[i][1] = static_cast<float>(radius * std::sin(i / radius));
        o_rows[i][2] = 0.0F;
    }
}

void strip(int n, Row * o_rows)
{
    int const length = n * 5 / 11;
    int const width = n / 2 - length;
    for (int i = 0; i < n; ++i)
    {
        bool const back = i >= n / 2;
        int const along = back ? i - n / 2 : i;
        int const x = std::min(along, length);
        int const y = std::max(along - length, 0);
        o_rows[i][0] = static_cast<float>(back ? length - x : x);
        o_rows[i][1] = static_cast<float>(back ? width - y : y);
        o_rows[i][2] = 0.0F;
    }
}

void measure(benchmark::State & io_state, void (*i_shape)(int, Row *))
{
    int const n = static_cast<int>(io_state.range(0));
    for (auto _ : io_state)
    {
        int numPoint = n;
        int * ids = static_cast<int *>(std::calloc(static_cast<std::size_t>(n), sizeof(int)));
        Row * coords = static_cast<Row *>(std::calloc(static_cast<std::size_t>(n), sizeof(Row)));
        int nextId = n + 1;
        int numFace = 0;
        int(*faces)[4] = nullptr;
        for (int i = 0; i < n; ++i)
            ids[i] = i + 1;
        i_shape(n, coords);
        benchmark::DoNotOptimize(MeshBoundaryWire(&numPoint, &ids, &coords, &nextId, &numFace, &faces, 0));
        io_state.counters["triangles"] = numFace;
        std::free(ids);
        std::free(coords);
        std::free(faces);
    }
    double const square = static_cast<double>(n) * n;
    io_state.counters["seconds_per_point2"] =
        benchmark::Counter(square, benchmark::Counter::kIsIterationInvariantRate | benchmark::Counter::kInvert);
}

void Circle(benchmark::State & io_state)
{
    measure(io_state, circle);
}
BENCHMARK(Circle)->RangeMultiplier(2)->Range(50, 1600)->Unit(benchmark::kMillisecond);

void Strip(benchmark::State & io_state)
{
    measure(io_state, strip);
}
BENCHMARK(Strip)->RangeMultiplier(2)->Range(50, 1600)->Unit(benchmark::kMillisecond);
} // namespace
