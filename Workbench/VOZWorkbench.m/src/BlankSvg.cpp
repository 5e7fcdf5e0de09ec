// BlankSvg.cpp: the blank's outline as a drawing in millimetres, with its dimensions.
//
// One user unit is one millimetre. SVG's y runs down: points are written with y turned, and an arc that turns left in
// the blank turns right on the page. Groups are named as the layers of the DXF.

#include "Exports.h"
#include "FlatGeometry.h"
#include "OutputFile.h"

#include <algorithm>
#include <cmath>

namespace voz::workbench
{
namespace
{

std::string at(double x, double y)
{
    return Fixed(x, 4) + " " + Fixed(-y, 4);
}

std::string path(FittedOutline const & outline)
{
    std::string d;
    std::size_t const count = outline.vertices.size();
    for (std::size_t i = 0; i < count; ++i)
    {
        OutlineVertex const & v = outline.vertices[i];
        OutlineVertex const & w = outline.vertices[(i + 1) % count];
        if (i == 0)
            d += "M " + at(v.x, v.y);
        if (v.bulge == 0.0)
            d += " L " + at(w.x, w.y);
        else
        {
            double const chord = std::hypot(w.x - v.x, w.y - v.y);
            std::string const radius = Fixed(chord * (1.0 + v.bulge * v.bulge) / (4.0 * std::abs(v.bulge)), 4);
            d += " A " + radius + " " + radius + " 0 0 " + (v.bulge > 0.0 ? "0 " : "1 ") + at(w.x, w.y);
        }
    }
    return d + " Z";
}

void dimension(OutputFile & svg, Point2 const & a, Point2 const & b, double textHeight, bool upright)
{
    svg << "<path d=\"M " << at(a[0], a[1]) << " L " << at(b[0], b[1]) << "\"/>\n";
    double const x = 0.5 * (a[0] + b[0]) - (upright ? 0.4 * textHeight : 0.0);
    double const y = 0.5 * (a[1] + b[1]) + (upright ? 0.0 : 0.4 * textHeight);
    svg << "<text x=\"" << Fixed(x, 3) << "\" y=\"" << Fixed(-y, 3) << "\" text-anchor=\"middle\"";
    if (upright)
        svg << " transform=\"rotate(-90 " << Fixed(x, 3) << ' ' << Fixed(-y, 3) << ")\"";
    svg << ">" << Fixed(std::hypot(b[0] - a[0], b[1] - a[1]), 2) << " mm</text>\n";
}

} // namespace

double WriteBlankSvg(Outcome const & i_outcome, BlankExportOptions const & i_options, std::string const & i_path)
{
    if (i_outcome.blank.empty())
        throw OutputError(i_path, "the blank has no closed outline");
    std::vector<Point2> const & outer = i_outcome.blank.front().points;
    auto const x = Extent(outer, 0);
    auto const y = Extent(outer, 1);
    double const size = std::max(x.second - x.first, y.second - y.first);
    double const text = 0.03 * size;
    double const margin = 0.14 * size;

    OutputFile svg(i_path);
    std::string const width = Fixed(x.second - x.first + 2.0 * margin, 3);
    std::string const height = Fixed(y.second - y.first + 2.0 * margin, 3);
    svg << "<svg xmlns=\"http://www.w3.org/2000/svg\" width=\"" << width << "mm\" height=\"" << height
        << "mm\" viewBox=\"" << Fixed(x.first - margin, 3) << ' ' << Fixed(-y.second - margin, 3) << ' ' << width << ' '
        << height << "\">\n<title>Flat blank, millimetres</title>\n"
        << "<g fill=\"none\" stroke=\"#000\" stroke-width=\"" << Fixed(0.002 * size, 4) << "\" font-size=\""
        << Fixed(text, 3) << "\" font-family=\"sans-serif\">\n";

    double deviation = 0.0;
    std::string groups[2];
    for (BlankLoop const & loop : i_outcome.blank)
    {
        FittedOutline const outline = FitOutline(loop.points, i_options.tolerance);
        deviation = std::max(deviation, outline.deviation);
        groups[loop.outer ? 0 : 1] += "<path d=\"" + path(outline) + "\"/>\n";
    }
    svg << "<g id=\"OUTLINE\">\n" << groups[0] << "</g>\n<g id=\"HOLES\" stroke=\"#c00\">\n" << groups[1] << "</g>\n";

    double const below = y.first - 0.05 * size;
    double const aside = x.second + 0.05 * size;
    svg << "<g id=\"TEXT\" stroke=\"#555\" stroke-width=\"" << Fixed(0.001 * size, 4) << "\">\n<g fill=\"#000\">\n";
    dimension(svg, {x.first, below}, {x.second, below}, text, false);
    dimension(svg, {aside, y.first}, {aside, y.second}, text, true);
    svg << "<text x=\"" << Fixed(x.first, 3) << "\" y=\"" << Fixed(-y.second - 0.05 * size, 3) << "\">area "
        << Fixed(i_outcome.summary.blankArea, 1) << " mm&#178;, perimeter "
        << Fixed(i_outcome.summary.blankPerimeter, 1) << " mm, mass " << Fixed(i_outcome.summary.blankMass, 4)
        << " kg</text>\n</g>\n</g>\n";
    double const arrow = y.first - 0.1 * size;
    svg << "<g id=\"ROLLING_DIRECTION\" stroke=\"#00c\">\n<path d=\"M " << at(x.first, arrow) << " L "
        << at(x.first + 0.25 * size, arrow) << " m " << Fixed(-0.03 * size, 3) << ' ' << Fixed(-0.01 * size, 3) << " l "
        << Fixed(0.03 * size, 3) << ' ' << Fixed(0.01 * size, 3) << " l " << Fixed(-0.03 * size, 3) << ' '
        << Fixed(0.01 * size, 3) << "\"/>\n</g>\n</g>\n</svg>\n";
    svg.Commit();
    return deviation;
}

} // namespace voz::workbench
