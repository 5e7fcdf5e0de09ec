// SvgPlot.h: line plots as self-contained SVG, the same bytes for the same numbers.

#ifndef SVGPLOT_H
#define SVGPLOT_H

#include <array>
#include <string>
#include <vector>

namespace plot
{

struct Series
{
    std::string name;
    std::vector<std::array<double, 2>> points;
    bool line = true;  // joined
    bool marks = true; // a mark at each point
    bool dashed = false;
};

struct Axes
{
    std::string title, x, y;  // captions with units
    bool logarithmic = false; // both axes, base 10
};

// A picture of 640 x 400. Series are told apart by colour, mark and dash; colours are fit for the colour-blind.
std::string svgOf(Axes const & axes, std::vector<Series> const & series);

} // namespace plot

#endif
