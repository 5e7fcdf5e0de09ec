// Summarise.cpp: the figures that an engineer asks first, from the arrays of an outcome.

#include "EdgeSets.h"
#include "FlatGeometry.h"
#include "FreeEdgeLoops.h"
#include "JobModel.h"
#include "Outcome.h"

#include <algorithm>
#include <cmath>

namespace voz::workbench
{
namespace
{

constexpr double kMm3ToM3 = 1.0e-9;

double formedArea(VOZCatMesh const & mesh, int e)
{
    int const * const row = mesh.GetElemData()[e];
    auto const corner = [&](int k) { return mesh.GetNodeData()[row[k] - mesh.GetFirstNodeNumber()]; };
    bool const triangle = row[0] == row[3];
    double d1[3];
    double d2[3];
    for (int c = 0; c < 3; ++c)
    {
        d1[c] = triangle ? corner(1)[c] - corner(0)[c] : corner(2)[c] - corner(0)[c];
        d2[c] = triangle ? corner(2)[c] - corner(0)[c] : corner(3)[c] - corner(1)[c];
    }
    double const x = d1[1] * d2[2] - d1[2] * d2[1];
    double const y = d1[2] * d2[0] - d1[0] * d2[2];
    double const z = d1[0] * d2[1] - d1[1] * d2[0];
    return 0.5 * std::sqrt(x * x + y * y + z * z);
}

// The nodes of one boundary loop in walking order, 0-based.
std::vector<int> loopNodes(FreeEdgeSet const & edges, FreeEdgeLoops const & loops, int l)
{
    int const count = loops.numLoopEdges(l);
    std::vector<int> nodes;
    nodes.reserve(static_cast<std::size_t>(count));
    int at = edges.startNode(loops.loopEdge(l, 1));
    for (int i = 1; i <= count; ++i)
    {
        int const k = loops.loopEdge(l, i);
        nodes.push_back(at - 1);
        at = edges.startNode(k) == at ? edges.endNode(k) : edges.startNode(k);
    }
    return nodes;
}

BlankLoop flatLoop(Outcome const & outcome, std::vector<int> nodes, bool outer)
{
    BlankLoop loop;
    loop.outer = outer;
    loop.nodes = std::move(nodes);
    for (int const n : loop.nodes)
    {
        Point3 const & flat = outcome.nodes[static_cast<std::size_t>(n)].flat;
        loop.points.push_back({flat[0], flat[1]});
    }
    if ((SignedArea(loop.points) > 0.0) != outer)
    {
        std::reverse(loop.points.begin(), loop.points.end());
        std::reverse(loop.nodes.begin(), loop.nodes.end());
    }
    loop.length = Perimeter(loop.points);
    return loop;
}

void findLoops(Outcome & outcome)
{
    outcome.blank.clear();
    FreeEdgeSet const edges(outcome.part);
    int error = 0;
    FreeEdgeLoops const loops(edges, outcome.part, &error);
    if (error != 0)
    {
        outcome.warnings.emplace_back("The boundary of the part is no set of simple closed loops; the outline of the "
                                      "blank is not drawn.");
        return;
    }
    int outer = loops.outerLoopNum();
    if (outer == 0) // the vote found no crossing: the longest stands
        for (int l = 1; l <= loops.numLoops(); ++l)
            if (outer == 0 || loops.loopLength(l) > loops.loopLength(outer))
                outer = l;
    outcome.blank.push_back(flatLoop(outcome, loopNodes(edges, loops, outer), true));
    for (int l = 1; l <= loops.numLoops(); ++l)
        if (l != outer)
            outcome.blank.push_back(flatLoop(outcome, loopNodes(edges, loops, l), false));
}

void measureBlank(Outcome & outcome)
{
    OutcomeSummary & summary = outcome.summary;
    summary.blankArea = 0.0;
    for (BlankLoop const & loop : outcome.blank)
        summary.blankArea += SignedArea(loop.points); // a hole runs clockwise
    if (!outcome.blank.empty())
    {
        std::vector<std::array<double, 2>> const & outline = outcome.blank.front().points;
        summary.blankPerimeter = outcome.blank.front().length;
        auto const [minX, maxX] = Extent(outline, 0);
        auto const [minY, maxY] = Extent(outline, 1);
        summary.blankWidth = maxX - minX;
        summary.blankHeight = maxY - minY;
        summary.smallestRectangle = SmallestRectangle(outline);
    }
    summary.blankMass = summary.blankArea * outcome.firstThickness * kMm3ToM3 * outcome.density;
    summary.symmetryFactor = outcome.symmetry.quarterSymmetry() ? 4 : outcome.symmetry.halfSymmetry() ? 2 : 1;
}

void measureElements(Outcome & outcome)
{
    OutcomeSummary & summary = outcome.summary;
    summary.safetyShare = {};
    summary.safetyAreaShare = {};
    double whole = 0.0;
    for (int e = 0; e < static_cast<int>(outcome.elements.size()); ++e)
    {
        ElementOutcome & element = outcome.elements[static_cast<std::size_t>(e)];
        element.area = formedArea(outcome.part, e + 1);
        whole += element.area;
        auto const zone = static_cast<std::size_t>(std::clamp(element.safety, -1, 4) + 1);
        summary.safetyShare[zone] += 1.0;
        summary.safetyAreaShare[zone] += element.area;
        if (e == 0 || element.thickness < summary.leastThickness)
        {
            summary.leastThickness = element.thickness;
            summary.leastThicknessElement = e;
        }
        if (e == 0 || element.thickness > summary.greatestThickness)
        {
            summary.greatestThickness = element.thickness;
            summary.greatestThicknessElement = e;
        }
    }
    for (double & share : summary.safetyShare)
        share /= std::max<double>(1.0, static_cast<double>(outcome.elements.size()));
    for (double & share : summary.safetyAreaShare)
        share = whole > 0.0 ? share / whole : 0.0;
}

} // namespace

void Summarise(Outcome & io_outcome)
{
    if (io_outcome.hasBlank)
        findLoops(io_outcome);
    measureBlank(io_outcome);
    measureElements(io_outcome);
    io_outcome.summary.drawDepth = ExtentAlong(io_outcome.part, io_outcome.frame, 2);
    io_outcome.summary.undercutElements =
        static_cast<int>(std::count(io_outcome.undercut.begin(), io_outcome.undercut.end(), 1));
}

} // namespace voz::workbench
