// DeckLines.cpp: pads and beads as a deck has them: lines in the stamping frame.
//
// A pad is a tool that stands still: its outline is that of its elements of the formed part, seen along the stamping
// direction. A bead rides on the die: its points are laid on the die along that direction.

#include "DeckInput.h"
#include "OutputFile.h"
#include "RouteParts.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <map>
#include <optional>
#include <utility>

namespace voz::workbench
{

namespace
{
// The sides of some elements that belong to one of them alone, by the node that they leave, in the elements' sense.
std::multimap<int, int> OuterSides(VOZCatMesh const & i_mesh, std::vector<int> const & i_elements)
{
    std::map<std::pair<int, int>, int> sides;
    for (int const e : i_elements)
    {
        int const corners = i_mesh.isTriangle(e) != 0 ? 3 : 4;
        for (int k = 0; k < corners; ++k)
            ++sides[{i_mesh.ElementValue(e, k), i_mesh.ElementValue(e, (k + 1) % corners)}];
    }
    std::multimap<int, int> outer;
    for (auto const & [side, count] : sides)
        if (sides.find({side.second, side.first}) == sides.end())
            outer.emplace(side.first, side.second);
    return outer;
}

// Closed walks along the sides; each side is walked once.
std::vector<std::vector<int>> Walks(std::multimap<int, int> i_sides)
{
    std::vector<std::vector<int>> walks;
    while (!i_sides.empty())
    {
        std::vector<int> walk{i_sides.begin()->first};
        for (auto next = i_sides.begin(); next != i_sides.end(); next = i_sides.find(walk.back()))
        {
            int const to = next->second;
            i_sides.erase(next);
            walk.push_back(to);
        }
        walks.push_back(std::move(walk));
    }
    return walks;
}

double SignedArea(std::vector<Point3> const & i_points)
{
    double area = 0.0;
    for (std::size_t i = 0; i + 1 < i_points.size(); ++i)
        area += 0.5 * (i_points[i][0] * i_points[i + 1][1] - i_points[i + 1][0] * i_points[i][1]);
    return area;
}

// Height of the mesh at a place, seen along z: of several the one nearest to i_point's.
std::optional<double> HeightAt(VOZCatMesh const & i_mesh, Point3 const & i_point)
{
    constexpr double kRounding = 1e-9;
    std::optional<double> nearest;
    auto const tryTriangle = [&](double const * a, double const * b, double const * c)
    {
        double const det = (b[0] - a[0]) * (c[1] - a[1]) - (c[0] - a[0]) * (b[1] - a[1]);
        if (det == 0.0)
            return;
        double const u = ((i_point[0] - a[0]) * (c[1] - a[1]) - (c[0] - a[0]) * (i_point[1] - a[1])) / det;
        double const v = ((b[0] - a[0]) * (i_point[1] - a[1]) - (i_point[0] - a[0]) * (b[1] - a[1])) / det;
        if (!(u >= -kRounding && v >= -kRounding && u + v <= 1.0 + kRounding))
            return;
        double const z = a[2] + u * (b[2] - a[2]) + v * (c[2] - a[2]);
        if (!nearest || std::abs(z - i_point[2]) < std::abs(*nearest - i_point[2]))
            nearest = z;
    };
    for (int e = 1; e <= i_mesh.numElem(); ++e)
    {
        auto const corner = [&](int k)
        { return i_mesh.GetNodeData()[i_mesh.GetElemData()[e][k] - i_mesh.GetFirstNodeNumber()]; };
        tryTriangle(corner(0), corner(1), corner(2));
        if (i_mesh.isTriangle(e) == 0)
            tryTriangle(corner(0), corner(2), corner(3));
    }
    return nearest;
}
} // namespace

std::vector<std::vector<Point3>> PadOutlines(JobPad const & i_pad, WholeJob const & i_whole, VOZCatAxis const & i_frame,
                                             std::vector<std::string> & io_warnings)
{
    VOZCatMesh const & mesh = i_whole.model.mesh.mesh;
    std::vector<std::vector<Point3>> outlines;
    std::vector<double> areas;
    double sum = 0.0;
    for (std::vector<int> const & walk :
         Walks(OuterSides(mesh, ElementsOf(i_pad.elements, i_whole.job, i_whole.model))))
    {
        std::vector<Point3> points;
        for (int const node : walk)
        {
            points.push_back(FlatPlace(mesh.GetNodeData()[node], {}, i_frame));
            points.back()[2] = 0.0;
        }
        areas.push_back(SignedArea(points));
        sum += areas.back();
        outlines.push_back(std::move(points));
    }
    std::vector<std::vector<Point3>> outer; // a hole runs the other way round
    for (std::size_t i = 0; i < outlines.size(); ++i)
        if (areas[i] * sum > 0.0)
            outer.push_back(std::move(outlines[i]));
    if (outer.empty())
        throw InputError(i_whole.job.path, i_pad.elements.line, 0,
                         i_pad.elements.where + ": its elements have no outline, seen along the stamping direction");
    if (outer.size() < outlines.size())
        io_warnings.push_back(i_pad.elements.where + ": the deck knows a pad by its outline; its " +
                              std::to_string(outlines.size() - outer.size()) + " holes are under pressure, too");
    return outer;
}

std::vector<Point3> BeadLine(JobBead const & i_bead, VOZCatMesh const & i_die, VOZCatAxis const & i_frame,
                             std::vector<std::string> & io_warnings)
{
    std::vector<Point3> line;
    int beside = 0;
    for (Point3 const & point : i_bead.points)
    {
        line.push_back(FlatPlace(point.data(), {}, i_frame));
        std::optional<double> const height = HeightAt(i_die, line.back());
        beside += height ? 0 : 1;
        line.back()[2] = height.value_or(line.back()[2]);
    }
    if (beside > 0)
        io_warnings.push_back(i_bead.where + ": " + std::to_string(beside) + " of its " +
                              std::to_string(i_bead.points.size()) +
                              " points lie beside the die and keep their height");
    return line;
}

} // namespace voz::workbench
