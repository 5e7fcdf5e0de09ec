// D3plotBench.cpp: a result family into records: bytes of input per second of one core, and the peak of memory, which
// the number of states must not move.
//
// A blank of 20 000 quadrilaterals with five points through the thickness and tools of 60 000, a file per state as the
// deck asks for: 5.7 MB each, so that 36 states are about 200 MB. The family is written once per number of states.

#include "Conversion.h"
#include "D3plotWriter.h"

#include <benchmark/benchmark.h>
#include <cmath>
#include <filesystem>
#include <fstream>
#include <string>

#if defined(__GLIBC__)
#include <malloc.h>
#endif

namespace
{
namespace fs = std::filesystem;

constexpr int kColumns = 200;
constexpr int kBlankRows = 100;
constexpr int kToolRows = 300;

void addSheet(d3plot::Model & io_model, int rows, int material, double height)
{
    int const first = static_cast<int>(io_model.nodes.size()) + 1;
    for (int row = 0; row <= rows; ++row)
        for (int column = 0; column <= kColumns; ++column)
        {
            io_model.nodes.push_back({0.002 * column, 0.002 * row, height + 0.01 * std::sin(0.1 * column)});
            io_model.nodeLabels.push_back(static_cast<int>(io_model.nodes.size()));
        }
    for (int row = 0; row < rows; ++row)
        for (int column = 0; column < kColumns; ++column)
        {
            int const n = first + row * (kColumns + 1) + column;
            io_model.shells.push_back({{n, n + 1, n + kColumns + 2, n + kColumns + 1}, material});
            io_model.shellLabels.push_back(static_cast<int>(io_model.shells.size()));
        }
}

d3plot::Model job()
{
    d3plot::Model model;
    model.options.layers = 5;
    model.parts = {5, 1};
    model.types = {37, d3plot::kRigid};
    addSheet(model, kBlankRows, 1, 0.0);
    addSheet(model, kToolRows, 2, 0.05);
    return model;
}

// A folder with so many states, gone with it.
struct Family
{
    explicit Family(int i_states) : folder(fs::temp_directory_path() / ("d3plot_bench_" + std::to_string(i_states)))
    {
        fs::create_directories(folder);
        d3plot::Model const model = job();
        d3plot::Writer const writer(model);
        Write("d3plot", writer.Geometry() + writer.EndMark());
        d3plot::State state;
        state.nodes = model.nodes;
        d3plot::ShellValues values;
        values.stress.assign(5, {2.0e8, 1.0e8, 0, 3.0e7, 0, 0});
        values.inner = values.outer = {0.2, 0.1, -0.3, 0.02, 0.01, 0.0};
        state.shells.assign(model.shells.size(), values);
        for (int i = 0; i < i_states; ++i)
        {
            state.time = 0.001 * i;
            times.push_back(state.time);
            Write("d3plot" + std::string(i < 9 ? "0" : "") + std::to_string(i + 1),
                  writer.Of(state) + writer.EndMark());
        }
    }
    ~Family() { fs::remove_all(folder); }
    Family(Family const &) = delete;
    Family & operator=(Family const &) = delete;

    void Write(std::string const & i_name, std::string const & i_bytes)
    {
        std::ofstream(folder / i_name, std::ios::binary) << i_bytes;
        bytes += i_bytes.size();
    }

    fs::path folder;
    std::vector<double> times;
    std::size_t bytes = 0;
};

double memoryOf(std::string const & key) // MB of /proc/self/status; 0 where there is none
{
    std::ifstream status("/proc/self/status");
    for (std::string word; status >> word;)
        if (word == key)
        {
            double value = 0.0;
            status >> value;
            return value / 1024.0;
        }
    return 0.0;
}

void convert(benchmark::State & state)
{
    Family const family(static_cast<int>(state.range(0)));
    double peak = 0.0;
#if defined(__GLIBC__)
    malloc_trim(0); // what the writing of the family has freed is not to hide the peak
#endif
    for (auto _ : state)
    {
        std::ofstream("/proc/self/clear_refs") << "5";
        double const before = memoryOf("VmRSS:");
        voz::launch::Converted const converted = voz::launch::ConvertResults(family.folder, family.times);
        if (converted.records != static_cast<int>(family.times.size()))
            state.SkipWithError("not every state became a record");
        peak = std::max(peak, memoryOf("VmHWM:") - before);
    }
    state.SetBytesProcessed(static_cast<std::int64_t>(family.bytes) * static_cast<std::int64_t>(state.iterations()));
    state.counters["input MB"] = static_cast<double>(family.bytes) / 1.0e6;
    state.counters["peak MB"] = peak;
}
} // namespace

BENCHMARK(convert)->Arg(4)->Arg(12)->Arg(36)->Unit(benchmark::kMillisecond);
