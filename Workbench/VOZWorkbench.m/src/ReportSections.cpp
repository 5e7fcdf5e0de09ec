// ReportSections.cpp: what differs through the thickness, and what happens when the tools let go.

#include "ReportSections.h"

#include "Colour.h"
#include "FieldPictures.h"
#include "Html.h"
#include "OutputFile.h"
#include "SpringbackPictures.h"

#include <algorithm>
#include <cmath>

namespace voz::workbench
{

namespace
{
std::string ShareWith(std::vector<ElementOutcome> const & i_elements, int i_safety)
{
    auto const count = std::ranges::count(i_elements, i_safety, &ElementOutcome::safety);
    return Fixed(100.0 * static_cast<double>(count) / std::max<double>(1.0, static_cast<double>(i_elements.size())), 2);
}

std::vector<std::string> LayerRow(char const * i_name, std::vector<ElementOutcome> const & i_elements)
{
    double major = -INFINITY;
    double minor = INFINITY;
    for (ElementOutcome const & element : i_elements)
    {
        major = std::max(major, element.major);
        minor = std::min(minor, element.minor);
    }
    return {i_name, Fixed(major, 2), Fixed(minor, 2), ShareWith(i_elements, 0), ShareWith(i_elements, 1)};
}

std::string Millimetres(Point3 const & i_point)
{
    return Fixed(i_point[0], 2) + ", " + Fixed(i_point[1], 2) + ", " + Fixed(i_point[2], 2);
}

Point3 PlaceOf(SpringbackOutcome const & i_springback, int i_node)
{
    double const * const p = i_springback.part.GetNodeData()[i_node + 1];
    return {p[0], p[1], p[2]};
}

std::string FiguresTable(SpringbackOutcome const & i_springback)
{
    HtmlTable table{
        "Deviation of the sprung shape from the part", {"Placing", "Largest, mm", "At node", "Mean, mm"}, {}};
    auto const add = [&](char const * i_name, DeviationFigures const & i_figures)
    {
        table.rows.push_back(
            {i_name, Fixed(i_figures.largest, 4), std::to_string(i_figures.largestNode + 1), Fixed(i_figures.mean, 4)});
    };
    add("as the tools let go", i_springback.figuresBefore);
    if (!i_springback.after.empty())
        add("laid on the part at the chosen points", i_springback.figuresAfter);
    return Table(table);
}

std::string PointsTable(SpringbackOutcome const & i_springback)
{
    if (i_springback.points.empty())
        return "";
    HtmlTable table{"Deviation at chosen points", {"Node", "Place on the part, mm", "As the tools let go, mm"}, {}};
    if (!i_springback.after.empty())
        table.header.emplace_back("Laid on the part, mm");
    for (SpringbackPoint const & point : i_springback.points)
    {
        table.rows.push_back(
            {std::to_string(point.node + 1), Millimetres(PlaceOf(i_springback, point.node)), Fixed(point.before, 4)});
        if (point.after)
            table.rows.back().push_back(Fixed(*point.after, 4));
    }
    return Table(table);
}

std::string PlacingText(SpringbackOutcome const & i_springback)
{
    if (i_springback.after.empty())
        return "<p>The pictures show the shape where the solver leaves it; align_points or align_nodes of the job lay "
               "it "
               "on the part.</p>\n";
    std::string text = "<p>The pictures show the shape laid on the part at ";
    text += i_springback.aligned.size() == 1 ? "node" : "nodes";
    for (std::size_t i = 0; i < i_springback.aligned.size(); ++i)
        text += (i == 0 ? " " : ", ") + std::to_string(i_springback.aligned[i] + 1);
    return text + ".</p>\n";
}
} // namespace

std::string LayersSection(Outcome const & i_outcome)
{
    if (i_outcome.top.empty())
        return "";
    using E = ElementOutcome;
    HtmlTable table{
        "Through the thickness",
        {"Layer", "Greatest major strain, %", "Least minor strain, %", "Failure, %", "Marginal, %"},
        {LayerRow("top", i_outcome.top), LayerRow("middle", i_outcome.elements), LayerRow("bottom", i_outcome.bottom)}};
    std::string html = "<section id=\"layers\">\n<h2>Layers</h2>\n<p>The top is the side that the stamping direction "
                       "points to. The zones of the summary are those of the middle.</p>\n" +
                       Table(table);
    struct Layer
    {
        char const * name;
        std::vector<ElementOutcome> const & elements;
    };
    for (Layer const & layer : {Layer{"top", i_outcome.top}, Layer{"bottom", i_outcome.bottom}})
        html += Figure(DrawField(i_outcome, {std::string("major strain, ") + layer.name, "%",
                                             [](E const & e) { return e.major; }, 1, &layer.elements}),
                       std::string("Major strain on the ") + layer.name + " of the sheet, engineering percent.");
    return html + "</section>\n";
}

std::string SpringbackSection(Outcome const & i_outcome)
{
    if (!i_outcome.springback)
        return "";
    SpringbackOutcome const & springback = *i_outcome.springback;
    std::string html = "<section id=\"springback\">\n<h2>Springback</h2>\n" + FiguresTable(springback) +
                       PointsTable(springback) + PlacingText(springback);
    html += Figure(DrawDeviation(i_outcome), "Distance of the sprung shape from the part, on the formed part.");
    std::string const section = DrawSection(i_outcome);
    Point3 const & normal = springback.section.normal;
    std::string const plane = "the plane through " + Millimetres(springback.section.point) + " mm with the normal " +
                              Fixed(normal[0], 3) + ", " + Fixed(normal[1], 3) + ", " + Fixed(normal[2], 3);
    if (section.empty())
        html += "<p>" + Escaped("The section is empty: " + plane + " does not cut the part.") + "</p>\n";
    else
        html += Figure(section, "Section by " + plane +
                                    ": the part, and the same points of the sheet after springback; "
                                    "deviations are " +
                                    ExaggerationText(springback.exaggeration) + ".");
    return html + "</section>\n";
}

} // namespace voz::workbench
