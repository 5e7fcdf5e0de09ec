// Colour.h: colours that stay apart for colour-blind eyes and in grey.

#ifndef COLOUR_H
#define COLOUR_H

#include <array>
#include <cstdint>
#include <string>

namespace voz::workbench
{

struct Colour
{
    std::uint8_t red = 0;
    std::uint8_t green = 0;
    std::uint8_t blue = 0;
};

std::string Hex(Colour i_colour); // "#rrggbb"

// A quantity on a scale: dark blue over green to yellow, lightness rising steadily (the anchor colours of the "viridis"
// map, S. van der Walt and N. Smith, 2015, CC0). i_share within 0 .. 1, clamped; NaN is grey.
Colour ScaleColour(double i_share);

// Zones by code; -1 is grey. Hues after M. Okabe and K. Ito, "Color universal design" (2008).
Colour SafetyColour(int i_code);
Colour FormingColour(int i_code);
char const * SafetyName(int i_code);
char const * FormingName(int i_code);

} // namespace voz::workbench

#endif
