// Colour.cpp: the colour tables.

#include "Colour.h"

#include <algorithm>
#include <cmath>

namespace voz::workbench
{
namespace
{

constexpr Colour kUndefined{187, 187, 187};

// clang-format off
constexpr std::array<Colour, 9> kScale{{
    {68, 1, 84}, {71, 45, 123}, {59, 82, 139}, {44, 114, 142}, {33, 145, 140},
    {40, 174, 128}, {94, 201, 98}, {173, 220, 48}, {253, 231, 37},
}};

struct Zone { char const * name; Colour colour; };
constexpr std::array<Zone, 5> kSafety{{
    {"failure",            {213, 94, 0}},
    {"marginal",           {240, 228, 66}},
    {"safe",               {0, 158, 115}},
    {"compression",        {86, 180, 233}},
    {"strong compression", {0, 64, 140}},
}};
constexpr std::array<Zone, 6> kForming{{
    {"biaxial stretching",                       {213, 94, 0}},
    {"plane strain",                             {230, 159, 0}},
    {"plane strain to uniaxial tension",         {240, 228, 66}},
    {"uniaxial tension to pure shear",           {0, 158, 115}},
    {"pure shear to uniaxial compression",       {86, 180, 233}},
    {"beyond uniaxial compression",              {0, 64, 140}},
}};
// clang-format on

template <std::size_t N>
Zone zone(std::array<Zone, N> const & zones, int code)
{
    return code >= 0 && code < static_cast<int>(N) ? zones[static_cast<std::size_t>(code)]
                                                   : Zone{"undefined", kUndefined};
}

std::uint8_t mix(std::uint8_t a, std::uint8_t b, double share)
{
    return static_cast<std::uint8_t>(std::lround(a + share * (b - a)));
}

} // namespace

std::string Hex(Colour i_colour)
{
    constexpr char digits[] = "0123456789abcdef";
    std::string text = "#";
    for (std::uint8_t const part : {i_colour.red, i_colour.green, i_colour.blue})
    {
        text += digits[part / 16];
        text += digits[part % 16];
    }
    return text;
}

Colour ScaleColour(double i_share)
{
    if (std::isnan(i_share))
        return kUndefined;
    double const place = std::clamp(i_share, 0.0, 1.0) * (kScale.size() - 1);
    std::size_t const low = std::min<std::size_t>(static_cast<std::size_t>(place), kScale.size() - 2);
    Colour const a = kScale[low];
    Colour const b = kScale[low + 1];
    double const share = place - static_cast<double>(low);
    return {mix(a.red, b.red, share), mix(a.green, b.green, share), mix(a.blue, b.blue, share)};
}

Colour SafetyColour(int i_code)
{
    return zone(kSafety, i_code).colour;
}

Colour FormingColour(int i_code)
{
    return zone(kForming, i_code).colour;
}

char const * SafetyName(int i_code)
{
    return zone(kSafety, i_code).name;
}

char const * FormingName(int i_code)
{
    return zone(kForming, i_code).name;
}

} // namespace voz::workbench
