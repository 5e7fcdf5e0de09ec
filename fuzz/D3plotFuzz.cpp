// D3plotFuzz.cpp: any bytes as a result family: converted, or refused with a note. The input is cut into the family's
// files at the lengths that its last four bytes tell.
//
//     D3plotFuzz fuzz/seeds/D3plotFuzz

#include "Conversion.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <ctime>
#include <filesystem>
#include <fstream>
#include <string>

namespace
{
constexpr char const * kFiles[] = {"d3plot", "d3plot01", "d3plotaa", "d3plotaa01", "d3plot02"};

std::filesystem::path folder()
{
    static std::filesystem::path const path = []
    {
        auto made = std::filesystem::temp_directory_path() /
                    ("D3plotFuzz." + std::to_string(static_cast<long long>(std::time(nullptr))));
        std::filesystem::create_directories(made);
        return made;
    }();
    return path;
}
} // namespace

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const * i_data, std::size_t i_size)
{
    if (i_size < 4)
        return 0;
    std::uint8_t const * const cuts = i_data + i_size - 4; // 0: all that is left; else so many 256ths of the whole
    std::size_t const whole = i_size - 4;
    std::size_t at = 0;
    for (std::size_t i = 0; i < std::size(kFiles); ++i)
    {
        std::size_t const left = whole - at;
        std::size_t const length = i < 4 && cuts[i] != 0 ? std::min(left, 4 * (whole * cuts[i] / 1024)) : left;
        std::ofstream(folder() / kFiles[i], std::ios::binary)
            .write(reinterpret_cast<char const *>(i_data + at), static_cast<std::streamsize>(length));
        at += length;
    }
    voz::launch::ConvertResults(folder(), {0.0, 0.25, 0.5, 1.0});
    return 0;
}
