// BlankSvg.cpp: the blank's outline as a drawing in millimetres, with its dimensions.
//
// One user unit is one millimetre. SVG's y runs down: points are written with y turned, and an arc that turns left in
// the blank turns right on the page. Groups are named as the layers of the DXF.

#include "BlankDrawing.h"
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

void dimension(std::string & svg, Point2 const & a, Point2 const & b, double textHeight, bool upright)
{
    svg += "<path d=\"M " + at(a[0], a[1]) + " L " + at(b[0], b[1]) + "\"/>\n";
    std::string const x = Fixed(0.5 * (a[0] + b[0]) - (upright ? 0.4 * textHeight : 0.0), 3);
    std::string const y = Fixed(-0.5 * (a[1] + b[1]) - (upright ? 0.0 : 0.4 * textHeight), 3);
    svg += "<text x=\"" + x + "\" y=\"" + y + "\" text-anchor=\"middle\"";
    if (upright)
        svg += " transform=\"rotate(-90 " + x + " " + y + ")\"";
    svg += ">" + Fixed(std::hypot(b[0] - a[0], b[1] - a[1]), 2) + " mm</text>\n";
}

std::string figures(Outcome const & outcome)
{
    return "area " + Fixed(outcome.summary.blankArea, 1) + " mm&#178;, perimeter " +
           Fixed(outcome.summary.blankPerimeter, 1) + " mm, mass " + Fixed(outcome.summary.blankMass, 4) + " kg";
}

// Where the blank lies over itself. A crossing brings many edges with it: so many marks say as much as all.
std::string crossings(FlatFaults const & faults, double size)
{
    constexpr std::size_t kMost = 100;
    if (faults.crossings.empty())
        return {};
    std::string svg = "<g id=\"CROSSINGS\" stroke=\"#c00\" stroke-width=\"" + Fixed(0.003 * size, 4) + "\">\n";
    for (std::size_t i = 0; i < std::min(kMost, faults.crossings.size()); ++i)
        svg += "<circle cx=\"" + Fixed(faults.crossings[i].place[0], 3) + "\" cy=\"" +
               Fixed(-faults.crossings[i].place[1], 3) + "\" r=\"" + Fixed(0.012 * size, 3) + "\"/>\n";
    return svg + "</g>\n";
}

} // namespace

BlankDrawing DrawBlank(Outcome const & i_outcome, double i_tolerance)
{
    std::vector<Point2> const & outer = i_outcome.blank.front().points;
    auto const x = Extent(outer, 0);
    auto const y = Extent(outer, 1);
    double const size = std::max(x.second - x.first, y.second - y.first);
    double const text = 0.03 * size;
    double const margin = 0.14 * size;

    BlankDrawing drawing;
    drawing.width = x.second - x.first + 2.0 * margin;
    drawing.height = y.second - y.first + 2.0 * margin;
    drawing.viewBox = Fixed(x.first - margin, 3) + " " + Fixed(-y.second - margin, 3) + " " + Fixed(drawing.width, 3) +
                      " " + Fixed(drawing.height, 3);
    std::string & svg = drawing.content;
    svg = "<g fill=\"none\" stroke=\"#000\" stroke-width=\"" + Fixed(0.002 * size, 4) + "\" font-size=\"" +
          Fixed(text, 3) + "\" font-family=\"sans-serif\">\n";
    std::string groups[2];
    for (BlankLoop const & loop : i_outcome.blank)
    {
        FittedOutline const outline = FitOutline(loop.points, i_tolerance);
        drawing.deviation = std::max(drawing.deviation, outline.deviation);
        groups[loop.outer ? 0 : 1] += "<path d=\"" + path(outline) + "\"/>\n";
    }
    svg += "<g id=\"OUTLINE\">\n" + groups[0] + "</g>\n<g id=\"HOLES\" stroke=\"#c00\">\n" + groups[1] + "</g>\n" +
           crossings(i_outcome.flat, size);

    double const below = y.first - 0.05 * size;
    double const aside = x.second + 0.05 * size;
    svg += "<g id=\"TEXT\" stroke=\"#555\" stroke-width=\"" + Fixed(0.001 * size, 4) + "\">\n";
    std::string texts;
    dimension(texts, {x.first, below}, {x.second, below}, text, false);
    dimension(texts, {aside, y.first}, {aside, y.second}, text, true);
    svg += "<g class=\"dimension\">\n" + texts + "</g>\n<text x=\"" + Fixed(x.first, 3) + "\" y=\"" +
           Fixed(-y.second - 0.05 * size, 3) + "\">" + figures(i_outcome) + "</text>\n</g>\n";
    double const arrow = y.first - 0.1 * size;
    std::string const barb = Fixed(0.03 * size, 3);
    std::string const wide = Fixed(0.01 * size, 3);
    svg += "<g id=\"ROLLING_DIRECTION\" stroke=\"#00c\">\n<path d=\"M " + at(x.first, arrow) + " L " +
           at(x.first + 0.25 * size, arrow) + " m -" + barb + " -" + wide + " l " + barb + " " + wide + " l -" + barb +
           " " + wide + "\"/>\n</g>\n</g>\n";
    return drawing;
}

double WriteBlankSvg(Outcome const & i_outcome, BlankExportOptions const & i_options, std::string const & i_path)
{
    if (i_outcome.blank.empty())
        throw OutputError(i_path, "the blank has no closed outline");
    BlankDrawing const drawing = DrawBlank(i_outcome, i_options.tolerance);
    OutputFile svg(i_path);
    svg << "<svg xmlns=\"http://www.w3.org/2000/svg\" width=\"" << Fixed(drawing.width, 3) << "mm\" height=\""
        << Fixed(drawing.height, 3) << "mm\" viewBox=\"" << drawing.viewBox
        << "\">\n<title>Flat blank, millimetres</title>\n<style>text{fill:#000;stroke:none}</style>\n"
        << drawing.content << "</svg>\n";
    svg.Commit();
    return drawing.deviation;
}

} // namespace voz::workbench
